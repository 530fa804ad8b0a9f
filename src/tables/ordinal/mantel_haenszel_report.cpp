#include "tables/ordinal/mantel_haenszel_report.h"

#include <fmt/format.h>

#include <cmath>

#include "shell/fields.h"

namespace tarven {

std::vector<std::string> Mantel_heading() {
    return {"Mantel-Haenszel estimates and partial gamma coefficients", "",
            "Hypothesis       "
            "    Method    odds-ratio     low   high     ln(OR)   s.e.     Gamma   s.e"};
}

std::vector<std::string> Mantel_lines(const std::string& label, const MantelHaenszel& estimate,
                                      double gamma, double gamma_se) {
    const std::string name = Left(label, 17);
    const double odds = Generalized_odds_ratio(gamma);
    const std::string first =
        estimate.defined
            ? fmt::format("{}    M-H       {}  {} {}   {} {}", name,
                          Field(estimate.odds_ratio, 10, 3), Field(estimate.low, 6, 2),
                          Field(estimate.high, 6, 2), Field(estimate.ln_odds_ratio, 8, 3),
                          Field(estimate.se, 6, 3))
            : name + "    M-H       not defined";
    const std::string ln_odds = std::abs(gamma) < 1 ? Field(std::log(odds), 8, 3) : Blanks(8);
    return {first, fmt::format("{}    gamma     {}  {}   {} {}  {} {}", Blanks(17),
                               gamma < 1 ? Field(odds, 10, 3) : Right("unbounded", 10), Blanks(13),
                               ln_odds, Blanks(6), Field(gamma, 8, 3), Field(gamma_se, 5, 3))};
}

}  // namespace tarven
