#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "shell/settings.h"
#include "tables/independence/hypotheses.h"
#include "tables/independence/hypothesis_run.h"
#include "tables/independence/local_engine.h"
#include "tables/independence/multiple_testing.h"

namespace tarven {

/// The printed results of tests. Every procedure returns lines and decides nothing that the rows do
/// not say; which of one- and two-sided p-values of gamma are shown follows settings.TwoSided, and
/// Monte Carlo columns are blank unless settings.ExactTests and the row has replicates.

/// One row of a summary.
struct SummaryRow {
    std::string label;  ///< "A&B|CD"
    TestResult result{};
    bool has_gamma = false;
    std::int64_t cases = 0;
};

/// The summary of local tests: marks by fixed levels.
std::vector<std::string> exa_summary(const std::vector<SummaryRow>& rows,
                                     const TestSettings& settings);

/// The summary of global tests: a 95 % interval for the Monte Carlo p of the statistic, and marks
/// by the limits. Without a p-value there are no limits to print.
std::vector<std::string> exa_summary1(const std::vector<SummaryRow>& rows,
                                      const RejectionLimits& limits, const TestSettings& settings);

/// The result of one hypothesis with heading, and a 99 % interval for each Monte Carlo p.
std::vector<std::string> single_exa_summary(const SummaryRow& row, const TestSettings& settings);

/// Its line alone.
std::string brief_single_exa_summary(const SummaryRow& row, const TestSettings& settings);

/// Remarks of the global engine on one hypothesis: missing slices, too many, no df. None on a
/// hypothesis that was not reached.
std::vector<std::string> Remarks(const TestedHypothesis& outcome, const std::string& label);

/// A hypothesis, by its number from 1, that has no table or no cases, and why.
std::vector<std::string> Test_failure_lines(std::size_t number, const std::string& label,
                                            const std::vector<std::string>& why);

/// What a run that the user stopped has left out; empty for one that came to its end. `labels` are
/// those of the hypotheses, parallel to the outcomes.
std::vector<std::string> Stopped_lines(std::span<const TestedHypothesis> outcomes,
                                       std::span<const std::string> labels,
                                       const TestSettings& settings);

/// The test against two-factor association.
std::vector<std::string> Partial_test_lines(const LocalResult& result);

/// Results by categories of each conditioning variable, then the count of strata by sign and p of
/// their gamma.
std::vector<std::string> Local_result_lines(const LocalHypothesis& hypothesis,
                                            const LocalResult& result,
                                            const TestSettings& settings);

/// "Table 3. The AB|CD distribution."
std::string Distribution_line(int number, const LocalHypothesis& hypothesis);

/// "C Class", the label alone without a name; and "2 Second" of a category.
std::string Titled(const TableVariable& variable);
std::string Titled_category(const TableVariable& variable, int category);

/// The label of a hypothesis in the form of `Hypothesis_label`.
std::string Hypothesis_label(const LocalHypothesis& hypothesis);

}  // namespace tarven
