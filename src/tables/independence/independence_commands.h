#pragma once

#include <functional>
#include <string>
#include <vector>

#include "shell/commands.h"
#include "tables/independence/hypothesis_run.h"
#include "tables/independence/local_engine.h"

namespace tarven {

/// TEST and CHOOSE on the current table.

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
    /// TEST with a list of variables: hypotheses of the project graph.
    std::function<Outcome()> graph_tests;
};

inline TestAnalyses The_test_analyses;

/// The progress display of a simulation.
RunControl Progress_of(const TestSettings& settings);

/// TEST: tests the list of hypotheses on the current table by the letters of The_line, stores the
/// rows and writes the report.
Outcome Run_tests();

void Register_independence_commands();

}  // namespace tarven
