#include "tables/ordinal/gamma_homogeneity_report.h"

#include <fmt/format.h>

#include <cmath>

#include "shell/fields.h"
#include "tables/independence/multiple_testing_report.h"
#include "tables/independence/summary_report.h"
#include "tables/ordinal/weighted_estimate_report.h"

namespace tarven {

namespace {

std::string Title_of(const LocalHypothesis& hypothesis, const ConditioningSet& set) {
    std::string title;
    for (const std::size_t m : set.members)
        title += (title.empty() ? "" : ", ") + Titled(hypothesis.Z[m]);
    return title;
}

/// "2 Second, 1 male" for the categories of a stratum.
std::string Level_label(const LocalHypothesis& hypothesis, const ConditioningSet& set,
                        const std::vector<int>& level) {
    std::string label;
    for (std::size_t k = 0; k < level.size(); ++k)
        label += (k == 0 ? "" : ", ") + Titled_category(hypothesis.Z[set.members[k]], level[k]);
    return label;
}

std::string Estimate_line(const WeightedGroup& group, bool has_estimate) {
    std::string line = Field(group.value, 7, 3);
    if (!group.available) return Left(line + "   standard error is not available", 42);
    line += Field(group.variance, 9, 5) + Field(std::sqrt(group.variance), 9, 4);
    line = Beside(line, Field(group.weight, 7, 1));
    return line + (has_estimate ? Field(group.residual, 10, 2) : Blanks(10));
}

std::vector<std::string> Estimate_lines(const LocalHypothesis& hypothesis,
                                        const ConditioningSet& set) {
    const WeightedEstimate& estimate = set.record.estimate;
    std::vector<std::string> lines{"  Gamma variance     s.e. weight  residual"};
    for (std::size_t s = 0; s < set.levels.size(); ++s)
        lines.push_back(Estimate_line(estimate.groups[s], estimate.has_estimate) + "  " +
                        Level_label(hypothesis, set, set.levels[s]));
    if (estimate.has_estimate)
        Append_lines(lines,
                     {"Least square estimate:", "  Gamma = " + Field(estimate.estimate, 7, 3),
                      " s.e.  = " + Field(estimate.se, 7, 3)});
    return lines;
}

std::vector<std::string> Verdict_lines(const LocalHypothesis& hypothesis,
                                       const ConditioningSet& set) {
    if (!set.record.estimate.tested()) return {};
    if (!set.record.interaction()) return {"No higher order interaction"};
    std::vector<std::string> lines{"Possible higher order interaction with:"};
    for (const std::size_t m : set.members) {
        const TableVariable& z = hypothesis.Z[m];
        std::string line = "  " + Titled(z) + ":";
        for (int c = 1; c <= z.DIM; ++c) line += (c == 1 ? " " : ", ") + Titled_category(z, c);
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> Local_value_lines(const LocalHypothesis& hypothesis,
                                           const ConditioningSet& set, bool fitted) {
    const HomogeneityRecord& record = set.record;
    std::vector<std::string> lines{
        "Local values", "Strata defined by " + Title_of(hypothesis, set), Blanks(12) + "cumulated",
        "  no  gamma   down     up" + std::string(fitted ? " fitted      z" : "")};
    int number = 0;
    for (const LocalGamma& stratum : record.strata) {
        std::string line =
            Field(++number, 4) +
            (stratum.sums.P > 0 ? Field(stratum.sums.gamma(), 7, 3) : Right(".", 7)) +
            Field(stratum.down, 7, 3) + Field(stratum.up, 7, 3);
        const FittedGamma against = Fitted_gamma(stratum.sums);
        if (fitted) {
            line += Field(against.expected, 7, 3);
            line = Beside(line, against.se > 0 ? Field(against.z, 7, 2) : Right(".", 7));
        }
        lines.push_back(line);
    }
    const WeightedEstimate& estimate = record.estimate;
    if (!estimate.tested()) return lines;
    lines.push_back(fmt::format("Chi square = {}  df = {}  p = {}", Field(estimate.X2, 8, 2),
                                Field(estimate.df, 3), Field(estimate.p, 6, 4)));
    const int k = static_cast<int>(record.strata.size());
    const std::string rest =
        record.split + 1 == k ? fmt::format("{}", k) : fmt::format("{}-{}", record.split + 1, k);
    lines.push_back(fmt::format("{} strata. U-test compares no 1-{} and {}   u = {}", k,
                                record.split, rest, Field(record.u, 6, 2)));
    return lines;
}

}  // namespace

std::vector<std::string> Fitted_gamma_lines(const FittedGamma& gamma) {
    std::vector<std::string> lines{
        "Fitted partial Gamma:", "Observed = " + Field(gamma.observed, 7, 3),
        "Expected = " + Field(gamma.expected, 7, 3)};
    if (gamma.se > 0)
        Append_lines(lines,
                     {"    s.e. = " + Field(gamma.se, 7, 3), "       Z = " + Field(gamma.z, 7, 3),
                      "       p = " + Field(gamma.p, 7, 3)});
    else
        lines.push_back("    s.e. is not available");
    return lines;
}

std::vector<std::string> Homogeneity_lines(const LocalHypothesis& hypothesis,
                                           const HomogeneityAnalysis& analysis) {
    std::vector<std::string> lines{"", "Analysis of homogeneity of Gamma coefficients"};
    if (!analysis.has_gamma) {
        lines.push_back("Gamma requires variables that are ordinal or binary");
        return lines;
    }
    for (const ConditioningSet& set : analysis.sets) {
        Append_lines(lines, {"", "** Strata defined by " + Title_of(hypothesis, set) + " **"});
        Append_lines(lines, Estimate_lines(hypothesis, set));
        Append_lines(lines, Equality_lines(set.record.estimate, "Test for partial association:",
                                           "The set of Gammas is incomplete"));
        Append_lines(lines, Verdict_lines(hypothesis, set));
        lines.push_back("");
        Append_lines(lines, Local_value_lines(hypothesis, set, analysis.fitted));
        if (set.comparison.groups == 0) continue;
        lines.push_back("");
        Append_lines(lines, Pairwise_comparison_lines(set.comparison));
    }
    lines.push_back("");
    if (analysis.fitted)
        Append_lines(lines, Fitted_gamma_lines(analysis.partial));
    else
        lines.push_back("Fitted partial Gamma: the fit of two-factor association did not converge");
    return lines;
}

}  // namespace tarven
