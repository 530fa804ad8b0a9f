#include "tables/ordinal/weighted_estimate_report.h"

#include <fmt/format.h>

#include <cmath>

#include "shell/fields.h"

namespace tarven {

std::vector<std::string> Equality_lines(const WeightedEstimate& estimate, const std::string& test,
                                        const std::string& incomplete) {
    switch (estimate.outcome) {
        case WeightedOutcome::done:
            return {test, fmt::format("  X\xB2 = {}  df = {}  p = {}", Field(estimate.X2, 8, 2),
                                      Field(estimate.df, 3), Field(estimate.p, 6, 4))};
        case WeightedOutcome::incomplete:
            return {incomplete, "No test"};
        case WeightedOutcome::too_many:
            return {fmt::format("{} strata are more than {}, the largest covariance matrix",
                                estimate.groups.size(), Matrix::Capacity),
                    "No test"};
        case WeightedOutcome::singular:
            return {"FAILURE INVERTING COVARIANCE MATRIX", "No test"};
        case WeightedOutcome::too_few:
            break;
    }
    return {"No test"};
}

std::vector<std::string> Weighted_estimate_lines(const WeightedEstimate& estimate,
                                                 std::span<const std::string> labels) {
    std::vector<std::string> lines;
    if (estimate.has_estimate)
        lines.push_back(fmt::format("  Least square estimate = {}  s.d.  = {}",
                                    Field(estimate.estimate, 7, 3), Field(estimate.se, 7, 4)));
    lines.push_back("     Value variance     sd   weight  residual");
    for (std::size_t i = 0; i < estimate.groups.size(); ++i) {
        const WeightedGroup& group = estimate.groups[i];
        std::string line = Field(group.value, 10, 3);
        if (group.available)
            line += Field(group.variance, 9, 5) + Field(std::sqrt(group.variance), 7, 4) +
                    Field(group.weight, 9, 2);
        else
            line += "   standard error is not available";
        if (group.available && estimate.has_estimate) line += Field(group.residual, 10, 2);
        lines.push_back(line + "  " + labels[i]);
    }
    Append_lines(lines, Equality_lines(estimate, "Test of equality:", "Incomplete set of valuess"));
    return lines;
}

}  // namespace tarven
