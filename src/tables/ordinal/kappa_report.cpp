#include "tables/ordinal/kappa_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

std::vector<std::string> Kappa_heading() {
    return {"Kappa coefficients", "",
            "         n  agreement  expected   kappa    s.e.       z      p"};
}

std::string Kappa_line(const std::string& labels, const KappaRecord& record) {
    const std::string line =
        fmt::format("{} {}   {}  {}", Left(labels, 4), Field(record.n, 5),
                    Field(record.agreement, 8, 3), Field(record.expected, 8, 3));
    if (!record.defined) return line + "   not defined";
    return line + fmt::format("  {}  {}  {}  {}", Field(record.kappa, 6, 3), Field(record.se, 6, 3),
                              Field(record.z, 6, 2), Field(record.p, 5, 3));
}

}  // namespace tarven
