#include "tables/independence/independence_commands.h"

#include <gtest/gtest.h>

#include "shell/user.h"
#include "support/block_of_cases.h"
#include "support/session.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/table/contingency_table.h"
#include "tables/table/table_workspace.h"

namespace tarven {
namespace {

/// Commands on a current table of random cases.
class TestCommands : public SessionTest {
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

TEST_F(TestCommands, HypothesesReadPairsAndWildcards) {
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

TEST_F(TestCommands, RefusedLinesLeaveTheListAsItWas) {
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

TEST_F(TestCommands, APrintingLetterTurnsLocalTestsOn) {
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

TEST_F(TestCommands, LocalAndGlobalTestsStoreTheSameAsymptoticRows) {
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

TEST_F(TestCommands, MonteCarloTestsRepeatFromTheirSeed) {
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

TEST_F(TestCommands, BigTablesAreTestedWithoutPartialTests) {
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

TEST_F(TestCommands, FisherAsksFirst) {
    Table_of({2, 2});
    EXPECT_FALSE(Has_line_with(Run({"FIS", "SHO H"}), "fitting the margins"));
    EXPECT_TRUE(Has_line_with(Run({"FIS", "Y"}), "tables fitting the margins"));
    EXPECT_TRUE(Has_line_with(Run({"FIS L", "YES"}), "Table no. 1"));
}

TEST_F(TestCommands, AnotherTableLosesTheHypotheses) {
    Table_of({2, 2, 2});
    Run({"HYP **"});
    Table_of({2, 2});
    EXPECT_TRUE(The_hypotheses.list.empty());
}

}  // namespace
}  // namespace tarven
