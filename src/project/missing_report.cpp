#include "project/missing_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

TakeCase Count_missing(const std::vector<int>& variables, MissingResult& result) {
    result.observed.assign(variables.size(), 0);
    result.missing.assign(variables.size(), 0);
    result.distribution.assign(variables.size() + 1, 0);
    result.total = 0;
    return [&variables, &result](const std::uint8_t* codes, std::int32_t count) {
        std::size_t missing = 0;
        for (std::size_t k = 0; k < variables.size(); ++k) {
            const bool observed = codes[variables[k] - 1] != 0;
            (observed ? result.observed : result.missing)[k] += count;
            missing += observed ? 0 : 1;
        }
        result.distribution[missing] += count;
        result.total += count;
        return true;
    };
}

std::vector<std::string> Missing_report_lines(const std::vector<std::string>& labels,
                                              const MissingResult& result) {
    std::vector<std::string> lines = {"Report on missing responses", ""};
    for (std::size_t k = 0; k < labels.size(); ++k)
        lines.push_back(fmt::format("{}  Observed = {}  Missing = {}", Right(labels[k], 8),
                                    Field(result.observed[k], 6), Field(result.missing[k], 6)));
    lines.insert(lines.end(),
                 {"",
                  fmt::format("Number of cases with complete responses = {} out of {}",
                              result.complete(), result.total),
                  "", "Distribution of number of missing variables", "     Count", "----------"});
    for (std::size_t m = 0; m < result.distribution.size(); ++m)
        lines.push_back(Field(m, 2) + Field(result.distribution[m], 8));
    lines.emplace_back("----------");
    return lines;
}

}  // namespace tarven
