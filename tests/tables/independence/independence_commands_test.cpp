#include "tables/independence/independence_commands.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>

#include "project/data.h"
#include "project/project.h"
#include "shell/lifecycle.h"
#include "shell/settings.h"
#include "shell/user.h"
#include "support/block_of_cases.h"
#include "support/session.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/independence/own_table.h"
#include "tables/independence/summary_report.h"
#include "tables/table/contingency_table.h"
#include "tables/table/table_workspace.h"

namespace tarven {
namespace {

/// Commands on a current table of random cases.
class IndependenceCommands : public SessionTest {
  protected:
    void Table_of(const std::vector<int>& dims, const std::vector<int>& LevelEnd = {},
                  int VTYPE = 3) {
        const BlockOfCases block = Random_block(dims, 300, 11);
        std::vector<TableVariable> variables;
        for (std::size_t k = 0; k < dims.size(); ++k) {
            const char label = static_cast<char>('A' + k);
            variables.push_back({.label = label,
                                 .number = static_cast<int>(k) + 1,
                                 .DIM = dims[k],
                                 .VTYPE = VTYPE,
                                 .name = std::string("Name") + label});
        }
        ContingencyTable table = Make_table(variables, dims.size() <= 8, LevelEnd);
        table.cells = block.cells;
        table.NTOTAL = static_cast<std::int64_t>(block.cases.size());
        Set_current_table(table);
    }
};

TEST_F(IndependenceCommands, HypothesesReadPairsAndWildcards) {
    Table_of({2, 2, 3}, {1, 3});
    EXPECT_TRUE(Has_line_with(Run({"HYP **"}), "3 Hypotheses:"));
    EXPECT_TRUE(Has_line_with(Run({"HYP ab c*"}), "HYPOTHESIS 2: A & C  B"));
    EXPECT_EQ(The_hypotheses.list.size(), 3U);  // A&B|C, A&C|B, B&C
    EXPECT_TRUE(Has_line_with(Run({"HYP *"}), "HYPOTHESIS 3: B & C"));
    EXPECT_EQ(Hypothesis_label(The_hypotheses.list[2], The_hypotheses.labels), "B&C");
    EXPECT_TRUE(Has_line_with(Run({"HYP 1 2"}), "1 Hypothesis:"));
    EXPECT_TRUE(Has_line_with(Run({"ELA CA"}), "HYPOTHESIS 1: A & C  B"));
    EXPECT_TRUE(Has_line_with(Run({"THR"}), "HYPOTHESIS 2: A & C  B"));
    EXPECT_TRUE(Has_line_with(Run({"SHO H"}), "relative to the current table"));
}

TEST_F(IndependenceCommands, RefusedLinesLeaveTheListAsItWas) {
    EXPECT_TRUE(Has_line_with(Run({"HYP AB"}), "Table has not been defined"));
    EXPECT_TRUE(Has_line_with(Run({"TES"}), "No table"));
    EXPECT_TRUE(Has_line_with(Run({"FIS"}), "No table"));
    EXPECT_TRUE(Has_line_with(Run({"CHO 1"}), "Hypotheses not ready."));
    Table_of({2, 2, 3});
    EXPECT_TRUE(Has_line_with(Run({"TES"}), "No hypotheses"));
    EXPECT_TRUE(Has_line_with(Run({"TES o"}),
                              "\"TES o\" does not define a proper test: no table hypotheses"));
    Run({"HYP AB"});
    const std::vector<Hypothesis> before = The_hypotheses.list;
    const struct {
        const char* line;
        const char* message;
    } refused[] = {
        {"HYP AX", "Failure: HYP AX"},
        {"HYP AA", "Failure: HYP AA"},
        {"HYP #A", "Failure: HYP #A"},
        {"ELA AX", "Failure converting labels for elaboration hypotheses"},
        {"ELA A", "Failure converting labels for elaboration hypotheses"},
        {"ELA AA", "Improper variables:"},
        {"ELA A 9", "Improper variables:"},
        {"ELA AB 0", "Failure: ELA AB 0"},
        {"TES XY", "\"TES XY\" does not define a test: no hypotheses relating to the graph"},
        {"CHO", "Select one of the hypotheses on the list"},
        {"CHO 2", "You must choose one of the hypotheses."},
        {"FIS", "Fisher\xB4s exact test requires a twoway table"},
    };
    for (const auto& [line, message] : refused) {
        const std::vector<std::string> report = Run({line});
        EXPECT_TRUE(Has_line_with(report, message)) << line << "\n" << Joined(report);
        EXPECT_EQ(The_hypotheses.list, before) << line;
    }
}

TEST_F(IndependenceCommands, APrintingLetterTurnsLocalTestsOn) {
    Table_of({2, 2, 3});
    Run({"HYP AB", "TES"});
    EXPECT_FALSE(The_settings.LocalTests);
    const std::vector<std::string> report = Run({"TES O"});
    EXPECT_TRUE(The_settings.LocalTests);
    EXPECT_TRUE(Has_line_with(report, "Table 1. The AB|C distribution."));
    EXPECT_TRUE(Has_line_with(report, "** Local testresults for strata defined by NameC (C) **"));
    Table_of({2, 3});
    The_settings.LocalTests = false;
    EXPECT_TRUE(Has_line_with(Run({"HYP AB", "TES"}), "Table 1. The AB distribution."));
    EXPECT_FALSE(The_settings.LocalTests);
}

TEST_F(IndependenceCommands, LocalAndGlobalTestsStoreTheSameAsymptoticRows) {
    Table_of({2, 3, 2, 2});
    Run({"HYP **", "TES"});
    const std::vector<TestResult> global = The_hypotheses.results;
    EXPECT_TRUE(The_hypotheses.tested);
    Run({"LOC", "TES"});
    EXPECT_EQ(The_hypotheses.results, global);
    Run({"DEV", "TES M"});
    EXPECT_NE(The_hypotheses.results, global);
    const std::vector<TestResult> deviance = The_hypotheses.results;
    Run({"GLO", "TES"});
    EXPECT_EQ(The_hypotheses.results, deviance);
}

TEST_F(IndependenceCommands, MonteCarloTestsRepeatFromTheirSeed) {
    Table_of({2, 3, 2, 2});
    Run({"HYP **", "EXA 200 17", "TES"});
    const std::vector<TestResult> first = The_hypotheses.results;
    EXPECT_EQ(first[0].Nsim, 200);
    Run({"TES"});
    EXPECT_EQ(The_hypotheses.results, first);
    Run({"EXA 200 18", "TES"});
    EXPECT_NE(The_hypotheses.results, first);
    Run({"EXA 0", "TES"});
    EXPECT_EQ(The_hypotheses.results[0].Nsim, 0);
    Run({"EXA 1", "TES"});
    EXPECT_EQ(The_hypotheses.results[0].Nsim, 1);
    EXPECT_TRUE(The_hypotheses.results[0].PExact == 0 || The_hypotheses.results[0].PExact == 1);
    // The stream of a local run goes on through all hypotheses.
    Run({"EXA 200 17", "LOC", "TES"});
    EXPECT_EQ(The_hypotheses.results.size(), first.size());
    EXPECT_NE(The_hypotheses.results, first);
}

TEST_F(IndependenceCommands, BigTablesAreTestedWithoutPartialTests) {
    Table_of({2, 2, 2, 2, 2, 2, 2, 2, 2});
    Run({"HYP AB", "TES"});
    EXPECT_GT(The_hypotheses.results[0].Df, 0);
    const TestResult global = The_hypotheses.results[0];
    const std::vector<std::string> report = Run({"PAR", "LOC", "TES K"});
    EXPECT_EQ(The_hypotheses.results[0], global);
    EXPECT_TRUE(Has_line_with(report, "BT_exatest: Partial test not ready yet (2)"));
    EXPECT_TRUE(Has_line_with(report, "Partial test not ready (3)"));
    EXPECT_TRUE(
        Has_line_with(report, "Analysis of category collapse in BT_exanalyse is not ready"));
}

TEST_F(IndependenceCommands, FisherAsksFirst) {
    Table_of({2, 2});
    EXPECT_FALSE(Has_line_with(Run({"FIS", "SHO H"}), "fitting the margins"));
    EXPECT_TRUE(Has_line_with(Run({"FIS", "Y"}), "tables fitting the margins"));
    EXPECT_TRUE(Has_line_with(Run({"FIS L", "YES"}), "Table no. 1"));
}

TEST_F(IndependenceCommands, OtherVariablesLoseTheTableAndItsHypotheses) {
    Table_of({2, 2, 2});
    Run({"HYP **"});
    Table_of({2, 2});
    EXPECT_TRUE(The_hypotheses.list.empty());
    Run({"HYP AB"});
    Run_moment(Moment::variables_changed);
    EXPECT_FALSE(The_table.table_ready);
    EXPECT_TRUE(The_hypotheses.list.empty());
    // A list of the graph rests on the project's variables, not on the table.
    Set_hypotheses({Make_hypothesis(3, 1, 3, {})}, HypothesisScope::graph, "ABC");
    Table_of({2, 2});
    EXPECT_TRUE(The_hypotheses.hypotheses_ready);
    Run_moment(Moment::variables_changed);
    EXPECT_FALSE(The_hypotheses.hypotheses_ready);
}

/// The four variables of the Titanic project: S in block 1, C, A and G after it.
class Choose : public SessionTest {
  protected:
    void SetUp() override {
        SessionTest::SetUp();
        Copy_example("titanic");
        Run({"OPE titanic"});
    }
};

TEST_F(Choose, ReplacesTableAndListAndSaysSo) {
    Run({"TAB SCAG", "HYP **"});
    const std::vector<std::string> report = Run({"CHO 3"});
    EXPECT_TRUE(Has_line_with(report, "HYPOTHESES HAVE BEEN LOST")) << Joined(report);
    ASSERT_EQ(The_hypotheses.list.size(), 1U);
    EXPECT_TRUE(The_hypotheses.tested);
    EXPECT_EQ(Hypothesis_label(The_hypotheses.list[0], The_hypotheses.labels), "S&G|CA");
    EXPECT_EQ(The_table.table.labels(), "SCAG");
    EXPECT_FALSE(Has_line_with(Run({"TES"}), "No hypotheses"));
}

TEST_F(Choose, KeepsAListOfTheGraphAndTheBlocksOfTheProject) {
    // C&G | S over the project's variables, whose blocks differ from the order of the row.
    The_project.variables[1].Levnr = 1;
    for (std::size_t v = 2; v <= 4; ++v) The_project.variables[v].Levnr = v == 2 ? 3 : 2;
    const int z[] = {1};
    const std::vector<Hypothesis> list{Make_hypothesis(4, 1, 2, {}), Make_hypothesis(4, 2, 4, z)};
    Set_hypotheses(list, HypothesisScope::graph, "SCAG");
    const std::vector<std::string> report = Run({"CHO 2"});
    EXPECT_FALSE(Has_line_with(report, "HYPOTHESES HAVE BEEN LOST")) << Joined(report);
    EXPECT_EQ(The_table.table.labels(), "SCG");
    // A block begins at each variable of a higher block than all before it: S, then C with G.
    EXPECT_EQ(The_table.table.Nlevels, 2);
    EXPECT_EQ(The_table.table.LevelEnd[1], 1);
    EXPECT_EQ(The_table.table.LevelEnd[2], 3);
    ASSERT_EQ(The_hypotheses.list.size(), 2U);
    EXPECT_EQ(The_hypotheses.scope, HypothesisScope::graph);
    // Its rows are those of one run with one setting, or of none; the test of CHOOSE is none of it.
    EXPECT_EQ(The_hypotheses.results, std::vector<TestResult>(2)) << "not tested";
    EXPECT_FALSE(The_hypotheses.tested);
    Set_hypotheses({Make_hypothesis(3, 2, 3, z)}, HypothesisScope::table, "SCG");
    EXPECT_EQ(Run({"TES"}), report);
}

TEST_F(Choose, ARefusalLeavesTableAndList) {
    Run({"TAB SCA", "HYP **"});
    const ContingencyTable table = The_table.table;
    const std::vector<Hypothesis> list = The_hypotheses.list;
    Dispose_data();
    The_project.files.DAT.exists = The_project.files.SYS.exists = The_project.files.TAB.exists =
        false;
    const std::vector<std::string> report = Run({"CHO 1"});
    EXPECT_TRUE(Has_line_with(report, "The table has not been created")) << Joined(report);
    EXPECT_FALSE(Has_line_with(report, "LOST"));
    EXPECT_EQ(The_table.table, table);
    EXPECT_EQ(The_hypotheses.list, list);
    // What tabulates for itself refuses as TAB does, and prints no zeros.
    for (const std::string line : {"COR", "GAM M", "GAM M OR", "KAP SA", "PGA SC"}) {
        const std::vector<std::string> refused = Run({line});
        EXPECT_EQ(refused, std::vector<std::string>{"Data is not available"}) << line;
    }
}

TEST_F(Choose, TheRateOfFalseDiscoveriesIsThatOfTheRunWhateverIsSetSince) {
    Run({"TAB SCAG", "HYP **", "EXA 200", "TWO", "TES"});
    const std::vector<std::string> limits = Run({"FDR"});
    Run({"ASY", "ONE"});
    EXPECT_EQ(Run({"FDR"}), limits);
    Run({"TES"});
    EXPECT_NE(Run({"FDR"}), limits);
}

/// Rows over the project's variables, each in a table of its own, beside the same rows in tables
/// that a user makes.
TEST_F(Choose, AListInOwnTablesHasTheRowsOfItsTables) {
    std::vector<Hypothesis> list;
    for (int x = 1; x <= 4; ++x)
        for (int y = x + 1; y <= 4; ++y)
            for (int z = 1; z <= 4; ++z)
                if (z != x && z != y) list.push_back(Make_hypothesis(4, x, y, {&z, 1}));
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 50;
    std::vector<TestResult> rows;
    for (const int jobs : {1, 4}) {
        RandomStream stream;
        const auto outcomes =
            Test_in_own_tables(Cases_of_project(), list, settings, stream, {.jobs = jobs});
        ASSERT_EQ(outcomes.size(), list.size());
        for (std::size_t k = 0; k < list.size(); ++k) {
            const auto label = Hypothesis_label(list[k], "SCAG");
            Run({std::string("TAB ") + label[0] + label[2] + label[4],
                 std::string("HYP ") + label[0] + label[2], "EXA 50", "TES"});
            // A HYP conditions on what the blocks say; the row here on exactly one variable.
            const std::string labels = The_table.table.labels();
            const auto place = [&](char c) { return static_cast<int>(labels.find(c)) + 1; };
            const int z = place(label[4]);
            Set_hypotheses({Make_hypothesis(3, place(label[0]), place(label[2]), {&z, 1})},
                           HypothesisScope::table, labels);
            Run({"TES"});
            EXPECT_EQ(outcomes[k].outcome.row, The_hypotheses.results[0]) << label;
        }
    }
}

TEST_F(Choose, ARowWithoutATableSaysWhyAndAStopReachesNoMore) {
    const std::vector<Hypothesis> list{Make_hypothesis(4, 1, 2, {}), Make_hypothesis(4, 1, 3, {})};
    RandomStream stream;
    Data none;
    const ProjectFiles no_files;
    const CasesAtHand nothing{The_project, none, no_files, 0};
    const auto failed = Test_in_own_tables(nothing, list, {}, stream);
    for (const TestedInOwnTable& one : failed) {
        EXPECT_EQ(one.messages, std::vector<std::string>{"Data is not available"});
        EXPECT_EQ(one.outcome.row, Untested_result());
    }
    // 20000 cases in memory: the stop comes within the pass over the cases of the second table.
    Data many;
    many.data_ready = true;
    for (int c = 0; c < 20000; ++c) many.DATA.insert(many.DATA.end(), {1, 1, 1, 1});
    for (std::size_t k = 0; k < 4000; ++k) many.DATA[k] = 2;
    const CasesAtHand cases{The_project, many, no_files, 20000};
    int asked = 0;
    const auto stopped =
        Test_in_own_tables(cases, list, {}, stream, {.stop = [&] { return ++asked == 4; }});
    EXPECT_EQ(stopped[0].outcome.reached, Reached::end);
    EXPECT_EQ(stopped[1].outcome.reached, Reached::not_reached);
    EXPECT_EQ(asked, 4);
}

/// 20000 cases in memory of ten binary variables: a row of all takes its strata from the cases.
struct ManyCases : ::testing::Test {
    ManyCases() {
        definition.N = 10;
        for (std::size_t v = 1; v <= 10; ++v) {
            definition.variables[v].label = static_cast<char>('A' + v - 1);
            definition.variables[v].dim = 2;
            definition.variables[v].vtype = 3;
            definition.variables[v].Levnr = 1;
        }
        data.data_ready = true;
        std::mt19937 random(29);
        for (int code = 0; code < 200000; ++code)
            data.DATA.push_back(static_cast<std::uint8_t>(1 + random() % 2));
    }
    ProjectDefinition definition;
    Data data;
    const ProjectFiles no_files;
    const CasesAtHand cases{definition, data, no_files, 20000};
    const int others[8] = {3, 4, 5, 6, 7, 8, 9, 10};
    const std::vector<Hypothesis> list{Make_hypothesis(10, 1, 2, others),
                                       Make_hypothesis(10, 1, 3, {}),
                                       Make_hypothesis(10, 1, 2, {})};
    RandomStream stream;
};

TEST_F(ManyCases, AStopWhileTheyArePackedEndsTheRunWithOneLine) {
    // The question is answered with yes once.
    bool asked = false;
    const auto tested = Test_in_own_tables(
        cases, list, {}, stream,
        {.stop = [] { return false; }, .within = [&] { return !std::exchange(asked, true); }});
    std::vector<TestedHypothesis> outcomes;
    for (const TestedInOwnTable& one : tested) {
        EXPECT_EQ(one.outcome.reached, Reached::not_reached);
        EXPECT_TRUE(one.messages.empty());
        outcomes.push_back(one.outcome);
    }
    EXPECT_TRUE(Has_line_with(Stopped_lines(outcomes, std::vector<std::string>(3, "A&B"), {}),
                              "Not tested: hypotheses 1-3"));
}

TEST_F(ManyCases, QuestionsWithinATableAreNoSteps) {
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 10;
    std::int64_t steps = 0, asked = 0, within = 0;
    Test_in_own_tables(cases, list, settings, stream,
                       {.begin = [&](std::int64_t n) { steps = n; },
                        .stop = [&] { return ++asked < 0; },
                        .within = [&] { return ++within < 0; }});
    EXPECT_EQ(steps, 3 * 11);
    EXPECT_EQ(asked, steps);
    EXPECT_EQ(within, 3) << "one pass to pack the cases and one for each of two tables";
}

TEST_F(ManyCases, NoneThatIsCompleteIsToldAlikeByBothRoads) {
    for (std::size_t c = 0; c < 20000; ++c) data.DATA[c * 10] = 0;  // A
    const auto tested = Test_in_own_tables(cases, list, {}, stream);
    EXPECT_FALSE(tested[1].messages.empty());
    EXPECT_EQ(tested[0].messages, tested[1].messages);
    EXPECT_EQ(tested[0].outcome.row, Untested_result());
}

TEST(OwnTable, ABlockBeginsAtEachVariableAboveAllBeforeIt) {
    ProjectDefinition definition;
    definition.N = 4;
    for (std::size_t v = 1; v <= 4; ++v) {
        definition.variables[v].label = static_cast<char>('A' + v - 1);
        definition.variables[v].dim = 2;
        definition.variables[v].Levnr = v % 2 == 0 ? 2 : 1;
    }
    const int z[] = {3, 4};
    EXPECT_EQ(Own_table(Make_hypothesis(4, 1, 2, z), definition).request.LevelEnd,
              (std::vector<int>{1, 4}));
}

}  // namespace
}  // namespace tarven
