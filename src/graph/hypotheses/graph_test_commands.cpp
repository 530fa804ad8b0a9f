#include "graph/hypotheses/graph_test_commands.h"

#include <fmt/format.h>

#include "graph/hypotheses/core_and_separation.h"
#include "graph/hypotheses/generation_commands.h"
#include "graph/hypotheses/separation_report.h"
#include "graph/model/graph_workspace.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "tables/independence/independence_commands.h"

namespace tarven {

namespace {

/// Makes and tests the hypotheses of pairs. The table and the list of the workspace stay.
Outcome Test_pairs(const PairList& pairs) {
    if (!Cases_to_test()) return Outcome::refused;
    const ChainGraph& graph = The_graph.model;
    CoreAndSeparation made;
    {
        const GenerationProgress progress(2 * pairs.size(), "Hypotheses");
        made = Core_and_separation(graph, pairs, [] { return StepProgress(); });
    }
    Write_lines(Core_and_separation_lines(graph, made));
    if (made.separation.stopped || made.reduction.stopped) return Outcome::done;
    HypothesisWorkspace tested;
    Fill_hypotheses(tested, made.rows, HypothesisScope::graph, graph.Labels);
    return Test_project_hypotheses(tested);
}

Outcome GTEST() {
    const std::optional<PairList> pairs = Pairs_of_line();
    return pairs ? Test_pairs(*pairs) : Outcome::refused;
}

/// TEST with parameters. Nobody is asked for more of them: a lone letter is no pair.
std::optional<Outcome> Test_pairs_of_line() {
    if (!Graph_defined()) return std::nullopt;
    const std::optional<PairList> pairs = Pairs_of_parameter(The_line.CommandLine, The_graph.model);
    if (!pairs || pairs->empty()) return std::nullopt;
    return Test_pairs(*pairs);
}

constexpr const char* GtestHelp =
    "GTEST pairs\n"
    "\n"
    "Tests what the project graph says of each pair: the hypotheses of SEPARATE and that of "
    "REDUCE\n"
    "for the same pairs, repeated ones once. Each hypothesis is tested globally on the cases that\n"
    "have all its variables, whatever their number: one line each, with marks by the\n"
    "Benjamini-Hochberg limits. EXA, REP and SEQ add Monte Carlo p-values; each hypothesis starts\n"
    "from the seed, so that its p depends neither on its place in the list nor on --jobs. The\n"
    "current table and the current list of hypotheses stay. TEST with labels does the same when\n"
    "there are no hypotheses about a table.\n"
    "\n"
    "Of an edge of the model the hypotheses should be rejected, of a missing one accepted.\n"
    "\n"
    "Variables are named two by two as for SEPARATE: AB CD, A*, A+, A-, *, + and -.\n"
    "\n"
    "Example: GTE AB, GTE +\n"
    "\n"
    "Refused without a graph, for an unknown label and where there is no such pair, and without\n"
    "data.";

}  // namespace

void Register_graph_test_commands() {
    Register_command({.keyword = "GTE",
                      .run = GTEST,
                      .needs = {NeedsGraph},
                      .activity = "Testing",
                      .shows_kind_of_test = true,
                      .report = Report::opened,
                      .spelling = "GTEST",
                      .summary = "tests hypotheses of the project graph",
                      .help = GtestHelp});
    The_test_analyses.graph_tests = Test_pairs_of_line;
}

}  // namespace tarven
