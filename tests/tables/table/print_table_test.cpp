#include "tables/table/print_table.h"

#include <gtest/gtest.h>

#include "support/reference_figures.h"
#include "support/session.h"
#include "tables/independence/tested_table_report.h"

namespace tarven {

namespace {

const TableVariable sex{.label = 'S', .DIM = 2, .name = "Sex", .categories = {"male", "female"}};
const TableVariable grade{.label = 'G', .DIM = 3, .categories = {"low", "", "excellent"}};
const TableVariable age{.label = 'A', .DIM = 2, .name = "Age", .categories = {"child", "adult"}};

std::vector<std::string> Box(const std::vector<std::vector<int>>& rows,
                             const TableOptions& options) {
    return Stratum_lines(sex, grade, {},
                         {.category = {}, .counts = Table_of_rows(rows), .result = {}}, options);
}

}  // namespace

TEST(PrintTable, ABoxHasALineForEachOptionInAFixedOrder) {
    const TableOptions all{.RowPercentages = true,
                           .ColumnPercentages = true,
                           .JointProbabilities = true,
                           .ExpectedCounts = true};
    const std::vector<std::string> lines = Box({{10, 20, 10}, {30, 0, 30}}, all);
    const std::vector<std::string> expected = {"     + S:",
                                               "     | | G:",
                                               "       |   low |     2 |excell | TOTAL |",
                                               "-------+-------+-------+-------+-------+",
                                               "  male |    10 |    20 |    10 |    40 |",
                                               "  row% |  25.0%|  50.0%|  25.0%| 100.0%|",
                                               "  col% |  25.0%| 100.0%|  25.0%|  40.0%|",
                                               "  tot% |  10.0%|  20.0%|  10.0%|  40.0%|",
                                               "   exp |  16.0 |   8.0 |  16.0 |  40.0 |",
                                               "female |    30 |     0 |    30 |    60 |",
                                               "  row% |  50.0%|   0.0%|  50.0%| 100.0%|",
                                               "  col% |  75.0%|   0.0%|  75.0%|  60.0%|",
                                               "  tot% |  30.0%|   0.0%|  30.0%|  60.0%|",
                                               "   exp |  24.0 |  12.0 |  24.0 |  60.0 |",
                                               "-------+-------+-------+-------+-------+",
                                               " TOTAL |    40 |    20 |    40 |   100 |",
                                               "  row% |  40.0%|  20.0%|  40.0%| 100.0%|",
                                               "  col% | 100.0%| 100.0%| 100.0%| 100.0%|",
                                               "  tot% |  40.0%|  20.0%|  40.0%| 100.0%|",
                                               "   exp |  40.0 |  20.0 |  40.0 | 100.0 |",
                                               "-------+-------+-------+-------+-------+",
                                               ""};
    EXPECT_EQ(lines, expected) << Joined(lines);
}

TEST(PrintTable, WithoutCountsTheFirstLineOfARowBearsItsLabel) {
    const std::vector<std::string> lines =
        Box({{1, 1, 2}, {0, 0, 4}}, {.Observed = false, .RowPercentages = true});
    EXPECT_EQ(lines[4], "  male |  25.0%|  25.0%|  50.0%| 100.0%|");
    EXPECT_EQ(lines[5], "female |   0.0%|   0.0%| 100.0%| 100.0%|");
}

TEST(PrintTable, AnEmptyStratumSaysSo) {
    const std::vector<std::string> lines = Box({{0, 0, 0}, {0, 0, 0}}, {.RowPercentages = true});
    EXPECT_EQ(lines[4], "       | empty table           |     0 |");
    EXPECT_EQ(lines[5], "-------+-------+-------+-------+-------+");
}

TEST(PrintTable, ConditioningVariablesStandInAStackOverTheBox) {
    const PrintedStratum stratum{.category = {1, 3},
                                 .counts = Table_of_rows({{1, 0, 0}, {0, 1, 0}}),
                                 .result = "  the test"};
    const TableVariable unnamed{.label = 'U', .DIM = 2};
    const std::vector<std::string> lines = Stratum_lines(sex, grade, {age, unnamed}, stratum, {});
    EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.begin() + 5),
              (std::vector<std::string>{"Conditioning variables:", "     | + U = TOTAL",
                                        "     + A Age = 1 child", "     + S:", "     | | G:"}));
    EXPECT_EQ(lines[lines.size() - 2], "  the test");
}

TEST(PrintTable, StrataAtAMarginArePrintedOnlyWhenAskedFor) {
    ContingencyTable table = Make_table({{.label = 'A'}, {.label = 'B'}, {.label = 'C', .DIM = 3}});
    table.cells[static_cast<std::size_t>(Cell_number(table, std::vector<int>{1, 2, 3}) - 1)] = 7;
    Add_margins(table);
    const std::vector<double> fitted(table.cells.begin(), table.cells.end());
    const auto heads = [&](const TableOptions& options) {
        std::vector<std::string> found;
        std::string text;
        Print_table(table, options, fitted, [&](const std::string& line) {
            if (line.find("+ C") != std::string::npos) found.push_back(line.substr(5));
            text += line + "\n";
        });
        EXPECT_EQ(options.FittedCounts,
                  text.find("   fit |   0.0 |   7.0 |   7.0 |") != std::string::npos)
            << text;
        return found;
    };
    EXPECT_EQ(heads({}), (std::vector<std::string>{"+ C = 1", "+ C = 2", "+ C = 3"}));
    EXPECT_EQ(heads({.PrintMarginals = true, .FittedCounts = true}).back(), "+ C = TOTAL");
}

TEST(PrintTable, TheResultOfAStratumStandsInOneLine) {
    StratumResult result;
    result.statistic = {.statistic = 12.34L, .df = 2, .p = 0.0021};
    result.gamma = {.gamma = -0.456, .p = 0.012};
    EXPECT_EQ(Stratum_result_line(result, true, "X\xB2"),
              "  X\xB2 =  12.3  df =   2   p = 0.002 Gam = -0.46   p = 0.012");
    EXPECT_EQ(Stratum_result_line(result, false, "G\xB2"), "  G\xB2 =  12.3  df =   2   p = 0.002");
}

}  // namespace tarven
