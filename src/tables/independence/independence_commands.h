#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "shell/commands.h"
#include "tables/independence/hypothesis_run.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/independence/local_engine.h"

namespace tarven {

/// TEST and CHOOSE.

/// The analyses that TEST runs by its letters after the local test of a hypothesis. An empty one
/// answers that it is not available yet. Each returns the lines of its report.
using TestAnalysis =
    std::function<std::vector<std::string>(const LocalHypothesis&, const LocalResult&)>;
struct TestAnalyses {
    TestAnalysis local_gammas;  ///< L, two-way tables
    TestAnalysis homogeneity;   ///< D, hypotheses with conditioning variables
    TestAnalysis pseudo_gamma;  ///< G
    TestAnalysis collapse;      ///< K
    TestAnalysis power_series;  ///< Q, two-way tables
    /// TEST with parameters that are no letters of a test of table hypotheses: hypotheses of the
    /// project graph. Nothing when the parameters name no pair of it, without a word.
    std::function<std::optional<Outcome>()> graph_tests;
};

inline TestAnalyses The_test_analyses;

/// The progress display of a simulation.
RunControl Progress_of(const TestSettings& settings);

/// TEST: tests the list of hypotheses on the current table by the letters of The_line, stores the
/// rows and writes the report.
Outcome Run_tests();

/// Tests a list over the project's variables globally, each hypothesis on the cases that it needs,
/// with the settings of the workspace; stores its rows and writes the report. The current table
/// takes no part.
Outcome Test_project_hypotheses(HypothesisWorkspace& hypotheses);

/// Whether there are cases to test hypotheses on; says so when there are none.
bool Cases_to_test();

/// Why a list over the project's variables cannot be tested or chosen from; empty when it can.
std::string Incompatibility_of_list(const HypothesisWorkspace& hypotheses);

void Register_independence_commands();

}  // namespace tarven
