// The report of a graph, its cliques and gammas by level, and the comparison of two graphs.

#include "graph/model/graph_report.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "graph/model/graph_comparison_report.h"
#include "support/graphs.h"
#include "support/session.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

TEST(GraphReport, ShowsEveryStatusAsItStands) {
    const ChainGraph graph = Chain_graph_of_rows(
        "ABCDEF", {2, 6}, {"300123", "034112", "043111", "111371", "211731", "321112"});
    EXPECT_EQ(
        Status_matrix_lines(graph),
        (Lines{"     A B  C D E F", "  A  A .  . - ? *", "  B  . B  ! - - ?", "",
               "  C  . !  C - - -", "  D  - -  - D ! -", "  E  ? -  - ! E -", "  F  * ?  - - - F",
               "", " . Prevented   - Cond.ind.   ? Dependent   * Fixed   ! Local dep."}));
}

TEST(GraphReport, SetsFixedCliquesApart) {
    // Block 1 is A and B. AC is fixed, AB free; C to F are explanatory, and E and F not joined.
    const ChainGraph graph = Chain_graph_of_rows(
        "ABCDEF", {2, 6}, {"323111", "231111", "313333", "113333", "113331", "113313"});
    const Lines lines = Model_lines(graph, Summarize_graph(graph, {}));
    const Lines expected = {"Cliques:",
                            "LEVEL 1: (AB),(AC),(CDEF),",
                            "LEVEL 2: (CDE),(CDF),",
                            "",
                            "Log-linear generators/cliques:",
                            "LEVEL 1: free  (AB),",
                            "LEVEL 1: fixed (AC),(CDEF),",
                            "LEVEL 2: fixed (CDE),(CDF),",
                            "Warning: The model contains only fixed cliques"};
    const auto from = std::find(lines.begin(), lines.end(), "Cliques:");
    EXPECT_EQ(Lines(from, lines.end()), expected);
}

TEST(GraphReport, AveragesRealGammasOfEdgesOnly) {
    const ChainGraph graph = Chain_graph_of_pairs("ABC", {1, 3}, {"AB", "AC"});
    // BC is no edge, though both stand in the clique of level 1: its gamma does not count.
    const std::vector<double> gammas = {999, -0.5, 888, -0.5, 999, 0.9, 888, 0.9, 999};
    const GraphSummary summary = Summarize_graph(graph, gammas);
    const Lines lines = Model_lines(graph, summary);
    EXPECT_TRUE(Has_line_with(lines, "Average absolute gamma coefficients for level 1"));
    EXPECT_TRUE(Has_line_with(lines, "  (ABC) 0.50 (1),")) << Joined(lines);
    EXPECT_FALSE(Has_line_with(lines, "for level 2")) << "no clique has an edge there";
    EXPECT_EQ(lines.back(),
              "The numbers in parentesis are the number of partial Gamma coefficients");
}

TEST(GraphReport, FitsAPageWithFiftyNineVariables) {
    std::mt19937 random(5);
    const ChainGraph graph = Random_chain_graph(random, {20, 40, 59}, 0.1);
    const GraphSummary summary = Summarize_graph(graph, {});
    for (const Lines& lines :
         {Model_lines(graph, summary), Variables_of_graph_lines(graph, Lines(59, "longname"))})
        for (const std::string& line : lines) EXPECT_LE(line.size(), 78U) << line;
    // Every clique of the record stands in the report, whole.
    const std::string text = Joined(Model_lines(graph, summary));
    for (const LevelSummary& level : summary.levels)
        for (const VariableSet clique : level.cliques)
            EXPECT_NE(text.find("(" + Labels_of_set(graph, clique) + ")"), std::string::npos);
}

TEST(GraphReport, NoCliquesWhenThereAreTooMany) {
    // 3^10 cliques: ten groups of three that are not adjacent inside.
    ChainGraph graph = Chain_graph_of_pairs("ABCDEFGHIJKLMNOPQRSTUVWXYZabcd", {30}, {});
    for (int i = 1; i <= 30; ++i)
        for (int j = i + 1; j <= 30; ++j)
            if ((i - 1) / 3 != (j - 1) / 3) Set_status(graph, i, j, Free);
    const Lines lines = Model_lines(graph, Summarize_graph(graph, {}));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "LEVEL 1: Too many cliques"), 2);
}

TEST(GraphComparison, NamesEachPairThatDiffers) {
    const ChainGraph one = Chain_graph_of_rows("ABCD", {4}, {"3210", "2331", "1334", "0143"});
    const ChainGraph other = Chain_graph_of_rows("ABCD", {4}, {"3111", "1312", "1131", "1213"});
    EXPECT_EQ(Comparison_lines({"one", one}, {"other", other}, Compare_graphs(one, other)),
              (Lines{"  Graph1 : one", "  Graph2 : other", "", "  Model differences:", "",
                     "  Edge    Graph1   Graph2", "  ------------------------",
                     "  A &B     +       -  ", "  A &D             -  ", "  B &C     *       -  ",
                     "  B &D     -       +  ", "  C &D     ?       -  ",
                     "  + edge, * fixed edge, - no edge, blank prevented, ? local dependence"}));
}

TEST(GraphComparison, RefusesGraphsOfOtherVariablesOrBlocks) {
    const ChainGraph graph = Chain_graph_of_pairs("ABC", {1, 3}, {"AB"});
    const struct {
        ChainGraph other;
        Lines said;
    } rows[] = {
        {Chain_graph_of_pairs("ABCD", {1, 4}, {}),
         {"INCOMPATIBLE GRAPHS - DIFFERENT NUMBER OF VARIABLES OR BLOCKS",
          "number of variables: 3 4", "number of levels: 2 2"}},
        {Chain_graph_of_pairs("ABC", {3}, {}),
         {"INCOMPATIBLE GRAPHS - DIFFERENT NUMBER OF VARIABLES OR BLOCKS",
          "number of variables: 3 3", "number of levels: 2 1"}},
        {Chain_graph_of_pairs("ABD", {1, 3}, {}), {"INCOMPATIBLE GRAPHS - DIFFERENT LABELS"}},
        {Chain_graph_of_pairs("ABC", {2, 3}, {}),
         {"INCOMPATIBLE GRAPHS - DIFFERENT BLOCKSTRUCTURE"}},
    };
    for (const auto& row : rows) {
        Lines expected = {"  Graph1 : a", "  Graph2 : b", ""};
        expected.insert(expected.end(), row.said.begin(), row.said.end());
        expected.emplace_back("The graphs are not compatible");
        EXPECT_EQ(
            Comparison_lines({"a", graph}, {"b", row.other}, Compare_graphs(graph, row.other)),
            expected);
    }
}

}  // namespace
}  // namespace tarven
