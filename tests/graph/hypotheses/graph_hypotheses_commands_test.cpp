#include <gtest/gtest.h>

#include "graph/hypotheses/separation_report.h"
#include "graph/model/graph_workspace.h"
#include "project/data.h"
#include "project/project.h"
#include "shell/user.h"
#include "support/graphs.h"
#include "support/session.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/table/table_workspace.h"

namespace tarven {
namespace {

class GraphHypothesisCommands : public SessionTest {
  protected:
    void SetUp() override {
        SessionTest::SetUp();
        Copy_example("survey");
        Run({"OPE survey", "NEW 1", "ADD PE PW EC EH ES KS CW CA WF WH HS AS"});
    }
};

TEST_F(GraphHypothesisCommands, RefusalsLeaveTheListBefore) {
    Run({"SEP P*"});
    const std::vector<Hypothesis> before = The_hypotheses.list;
    ASSERT_EQ(before.size(), 8u);
    const char* const ChoosingFailed =
        "Failure choosing variables. Use \"test <variables> to test all separation hypotheses\"";
    const struct {
        const char* line;
        const char* message;
    } refused[] = {{"SEP PX", "Failure: SEP PX"},
                   {"GMP P#", "Failure: GMP P#"},
                   {"RED PP", "No hypotheses generated: no such pair (RED PP)"},
                   {"REL PEX", "Improper parameters for analysis of relevance"},
                   {"REL PPEC", "Improper parameters for analysis of relevance"},
                   {"GTE XY", "Failure: GTE XY"},
                   {"TES XY", "does not define a test: no hypotheses relating to the graph"},
                   {"TES R", "does not define a proper test: no table hypotheses"},
                   {"CHO", "Select one of the hypotheses on the list"},
                   {"CHO 9", "You must choose one of the hypotheses."},
                   {"CHO -1", "You must choose one of the hypotheses."},
                   {"CHO 2.5", ChoosingFailed},
                   {"CHO A", ChoosingFailed}};
    for (const auto& [line, message] : refused) {
        const std::vector<std::string> report = Run({line});
        EXPECT_TRUE(Has_line_with(report, message)) << line << "\n" << Joined(report);
        EXPECT_EQ(The_hypotheses.list, before) << line;
    }
}

TEST_F(GraphHypothesisCommands, TestsLeaveTheTableAndWithPairsTheListToo) {
    Run({"SEP PE PW"});
    Run({"TAB KS"});
    EXPECT_EQ(The_hypotheses.scope, HypothesisScope::graph) << "a table takes no list of the graph";
    const ContingencyTable table = The_table.table;
    const std::vector<std::string> of_list = Run({"TES"});
    EXPECT_TRUE(The_hypotheses.tested);
    EXPECT_EQ(The_table.table, table);
    EXPECT_FLOAT_EQ(The_hypotheses.results[0].Statistic, 12.2325065595F);  // P&E|W, by scipy
    const std::vector<TestResult> results = The_hypotheses.results;
    EXPECT_TRUE(Has_line_with(Run({"GTE KS"}), "Testing 1 hypothesis"));
    EXPECT_EQ(The_hypotheses.results, results);
    // Labels that are option letters name pairs of the graph until there are table hypotheses.
    EXPECT_TRUE(Has_line_with(Run({"TES EC"}), "Test of separation and core hypotheses"));
    Run({"HYP KS", "GTE EC"});
    EXPECT_EQ(The_hypotheses.scope, HypothesisScope::table);
    EXPECT_TRUE(Has_line_with(Run({"TES EC"}), "Table 1. The KS distribution."));
}

TEST_F(GraphHypothesisCommands, ARowWithoutCasesOrOfAnotherProjectIsNotTested) {
    Run({"SEP PE"});
    The_project.variables[1].label = 'Q';
    for (const char* line : {"TES", "CHO 1"})
        EXPECT_TRUE(Has_line_with(Run({line}), "Graphs are not compatible.")) << line;
    The_project.variables[1].label = 'P';
    Dispose_data();
    The_project.files.DAT.exists = The_project.files.SYS.exists = The_project.files.TAB.exists =
        false;
    // One refusal, and not a failure for each hypothesis of the list.
    for (const char* line : {"TES", "GTE PE PW"})
        EXPECT_EQ(Run({line}), std::vector<std::string>{"Data is not available"}) << line;
    EXPECT_FALSE(The_hypotheses.tested);
}

TEST_F(GraphHypothesisCommands, WhatReadsAListOfTheTableRefusesOneOfTheGraph) {
    // P and E are variables 1 and 2 of the project and have no place in the table of K and S.
    Run({"SEP PE", "TAB KS"});
    const std::vector<Hypothesis> before = The_hypotheses.list;
    for (const char* line : {"MAN", "HOM"})
        EXPECT_TRUE(Has_line_with(Run({line}), "The hypotheses are those of the graph")) << line;
    EXPECT_EQ(The_hypotheses.list, before);
}

TEST_F(GraphHypothesisCommands, AStopWhileHypothesesAreMadeTestsNone) {
    The_user.user.progress = [](const std::string&, std::int64_t, std::int64_t) {
        Stop_requested.store(true);
    };
    const std::vector<std::string> report = Run({"GTE PE PW"});
    The_user.user.progress = {};
    Stop_requested.store(false);
    EXPECT_EQ(report, std::vector<std::string>{"Stopped: the hypotheses were not tested"});
}

TEST_F(GraphHypothesisCommands, RelevanceSaysThatItFoundNothingAndLeavesTheListBefore) {
    Run({"SEP PE"});
    const std::vector<Hypothesis> before = The_hypotheses.list;
    // The two lowest blocks differ, whatever the edge.
    const std::vector<std::string> report = Run({"REL HSP*S"});
    EXPECT_TRUE(Has_line_with(report, "No edge influences the analysis of the pairs"));
    EXPECT_TRUE(Has_line_with(report, "No hypotheses generated.")) << Joined(report);
    EXPECT_EQ(The_hypotheses.list, before);
}

TEST_F(GraphHypothesisCommands, RelevanceTakesALastLetterAsOptionBehindFourLabelsOnly) {
    // S is a variable of the project, R is none.
    EXPECT_TRUE(Has_line_with(Run({"REL PEES"}), "The core of the ES-problem"));
    const std::vector<std::string> separation = Run({"REL ECEAS"});
    EXPECT_TRUE(Has_line_with(separation, "Separators for EA"));
    EXPECT_FALSE(Has_line_with(separation, "-problem"));
    const std::vector<std::string> core = Run({"REL E C E A r"});
    EXPECT_FALSE(Has_line_with(core, "Separators"));
    EXPECT_TRUE(Has_line_with(core, " excluded: PEWHAS"));
    EXPECT_TRUE(Has_line_with(Run({"REL CWPE"}), "the lowest blocks of the two pairs differ"));
}

TEST(SeparationReport, TellsOfEveryLimitThatWasMet) {
    const ChainGraph graph = Chain_graph_of_pairs("ABC", {3}, {"AB", "BC"});
    SeparationList list = Separate(graph, std::vector<std::pair<int, int>>{{1, 3}, {1, 2}});
    EXPECT_TRUE(Local_markov_lines(graph, list.pairs).empty());
    list.too_many_pairs = list.incomplete = list.stopped = true;
    list.pairs[0].smallest = false;
    list.pairs[0].too_many_partial_paths = true;
    const std::vector<std::string> lines = Separation_lines(graph, list);
    for (const char* message :
         {"Only the first 1800 have been used.", "The list of separation hypotheses is incomplete",
          "Incomplete set of paths between variables A & C",
          "Separation by Local Markov properties in 1 case:",
          "Stopped: the pairs behind A & B are left out"})
        EXPECT_TRUE(Has_line_with(lines, message)) << message;
    ReductionList reduction = Reduce(graph, std::vector<std::pair<int, int>>(1801, {1, 2}));
    EXPECT_TRUE(Has_line_with(Reduction_lines(graph, reduction, "AB"),
                              "Only the first 1800 interactions have been considered"));

    CheckHypotheses made;
    made.rows.resize(2500);
    made.statuses = {CheckedStatus{1, 1, 0, 1}, {}, CheckedStatus{70, 60, 1, 2700}, {}};
    made.generated = 2701;
    EXPECT_EQ(
        Check_range_lines(made),
        (std::vector<std::string>{"Hypotheses 1 to 1 refer to inadmissible edges",
                                  "Hypotheses 2 to 2701 refer to existing edges",
                                  "Hypotheses generated for the first 60 out of 70 edges",
                                  "The maximum number of hypotheses is 2500",
                                  "For this reason, hypotheses 2501 to 2701 will not be tested"}));
}

}  // namespace
}  // namespace tarven
