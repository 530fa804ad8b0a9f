#include "graph/model/marginal_model.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "graph/model/marginal_model_report.h"
#include "graph/sets/set_lists.h"
#include "support/graphs.h"
#include "support/reference_figures.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

MarginalModelRecord Model_of(const ChainGraph& graph, const std::string& variables) {
    return MarginalModel(graph, Numbers_of(graph.Labels, variables));
}

Lines Report_of(const ChainGraph& graph, const std::string& variables) {
    return Marginal_model_lines(graph, Model_of(graph, variables));
}

std::vector<std::string> Statuses(const MarginalModelRecord& model) {
    std::vector<std::string> rows;
    for (const int i : Members(model.members())) {
        rows.emplace_back();
        for (const int j : Members(model.members()))
            rows.back() += static_cast<char>(
                '0' + model.SUBSTATUS[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)]);
    }
    return rows;
}

TEST(MarginalModels, AgreeWithThoseFoundElsewhere) {
    int models = 0;
    for (const auto& one : Reference_figures("graphs.json", "graphs")) {
        const std::string labels = one.at("labels");
        const ChainGraph graph = Chain_graph_of_rows(labels, one.at("blocks"), one.at("status"));
        for (const auto& expected : one.at("marginal_models")) {
            SCOPED_TRACE(one.at("name").get<std::string>() + " " +
                         expected.at("set").get<std::string>());
            const auto sets = [&](const char* name) { return Sets_of(labels, expected.at(name)); };
            const MarginalModelRecord model = Model_of(graph, expected.at("set"));
            EXPECT_EQ(model.SUBCLIQUES, sets("cliques_of_subgraph"));
            EXPECT_EQ(model.components, sets("components"));
            EXPECT_EQ(model.BOUNDARIES, sets("boundaries"));
            EXPECT_EQ(model.strong, expected.at("collapsibility") == "Strong");
            EXPECT_EQ(Statuses(model), expected.at("status").get<std::vector<std::string>>());
            EXPECT_EQ(model.CLIQUES, sets("cliques"));
            EXPECT_EQ(model.generators, sets("generators"));
            EXPECT_EQ(model.graphical, expected.at("graphical").get<bool>());
            EXPECT_EQ(model.FREE.size(), expected.at("n_free").get<std::size_t>());
            if (expected.contains("free")) {
                EXPECT_TRUE(SameSetLists(model.FREE, sets("free")));
            }
            EXPECT_EQ(model.conditionally_independent,
                      expected.at("conditional_independent").get<bool>());
            EXPECT_EQ(model.modifiers, Set_of(labels, expected.at("modified_by")));
            ++models;
        }
    }
    EXPECT_EQ(models, 89);
}

// A - B - C. Onto AB: C is a leaf, and the boundary B of it is complete. Onto AC: the boundary of B
// is not, so that A and C get a term that the graph did not have (Asmussen and Edwards 1983).
TEST(MarginalModels, CollapseStronglyOverALeafAndParametricallyOverTheMiddleOfAChain) {
    const ChainGraph chain = Chain_graph_of_pairs("ABC", {3}, {"AB", "BC"});
    EXPECT_EQ(Report_of(chain, "AB"),
              (Lines{"Marginal model: AB", "The cliques of the subgraph :  AB",
                     "The marginal model is graphical", "Cliques of the marginal graph: AB",
                     "Fixed interactions           : B", "Collapsibility:                Strong.",
                     "Estimable parameters         : A,AB"}));
    EXPECT_EQ(
        Report_of(chain, "AC"),
        (Lines{"Marginal model: AC", "The cliques of the subgraph :  A,C",
               "The marginal model is graphical", "Cliques of the marginal graph: AC",
               "Fixed interactions           : AC", "Collapsibility:                Parametric.",
               "Estimable parameters         : "}));
}

// Each two of A, B and C have a neighbour of their own: collapsing gives the model without
// three-factor interaction, which is not graphical (Whittaker 1990, chapter 7).
TEST(MarginalModels, NeedNotBeGraphical) {
    const ChainGraph graph =
        Chain_graph_of_pairs("ABCDEF", {6}, {"AD", "BD", "BE", "CE", "AF", "CF"});
    EXPECT_EQ(
        Report_of(graph, "CAB"),
        (Lines{"Marginal model: ABC", "The cliques of the subgraph :  A,B,C",
               "The marginal model is not graphical", "Cliques of the marginal graph: ABC",
               "Log linear generators        : AB,BC,AC", "Fixed interactions           : AB,BC,AC",
               "Collapsibility:                Parametric.", "Estimable parameters         : "}));
}

// Lauritzen (1996), section 4.6.2: the later variables of a chain graph are conditioned on, so they
// are complete, and terms among them are fixed by their margin.
TEST(MarginalModels, ConditionOnLaterBlocks) {
    const ChainGraph graph = Chain_graph_of_pairs("YABCD", {1, 5}, {"YA", "YB", "AB", "CD"});
    EXPECT_EQ(
        Report_of(graph, "YAC"),
        (Lines{"Marginal model: Y|AC", "The cliques of the subgraph :  AC,YA",
               "The marginal model is graphical", "Cliques of the marginal graph: YAC",
               "Fixed interactions           : YAC", "Collapsibility:                Parametric.",
               "Estimable parameters         : ", "The YA interaction may be modified by C"}));
    // With the parents whole the collapse over the others is strong.
    EXPECT_EQ(Report_of(graph, "CYAB"),
              (Lines{"Marginal model: Y|ABC", "The cliques of the subgraph :  ABC,YAB",
                     "The marginal model is graphical", "Cliques of the marginal graph: ABC,YAB",
                     "Fixed interactions           : ABC", "Collapsibility:                Strong.",
                     "Estimable parameters         : Y,YA,YB,YAB",
                     "C and Y are conditional independent"}));
}

TEST(MarginalModels, AskAboutAPairThatAGeneratorHoldsWithoutAnEdge) {
    // No edge AB, but the boundary of D holds both with C: the model has a term for them.
    const ChainGraph graph = Chain_graph_of_pairs("ABCD", {4}, {"AD", "BD", "CD"});
    const MarginalModelRecord model = Model_of(graph, "ABC");
    EXPECT_FALSE(model.conditionally_independent);
    EXPECT_EQ(model.modifiers, Set_of("ABCD", "C"));
    EXPECT_EQ(Model_of(graph, "A").pair.second, 0);
    EXPECT_EQ(Model_of(graph, "AAB").pair, (std::pair{1, 2}));
}

/// Groups of three; every two of different groups are joined.
ChainGraph Groups_of_three(int groups, int alone) {
    std::string labels;
    for (int v = 0; v < 3 * groups + alone; ++v) labels += static_cast<char>('A' + v);
    One_based<int, MaxVariables> LevelEnd;
    LevelEnd[1] = 3 * groups + alone;
    ChainGraph graph = New_chain_graph(labels, 1, LevelEnd, Absent);
    for (int i = 1; i <= 3 * groups; ++i)
        for (int j = i + 1; j <= 3 * groups; ++j)
            if ((i - 1) / 3 != (j - 1) / 3) Set_status(graph, i, j, Free);
    return graph;
}

TEST(MarginalModels, CountFreeSetsAfterEqualOnesAreReduced) {
    // 3^7 generators of 127 subsets each, 4^7 - 1 of them different; 4^8 - 1 are too many.
    const ChainGraph seven = Groups_of_three(7, 0);
    EXPECT_EQ(Model_of(seven, seven.Labels).FREE.size(), 16383u);
    const ChainGraph eight = Groups_of_three(8, 0);
    const MarginalModelRecord model = Model_of(eight, eight.Labels);
    EXPECT_FALSE(model.free_identified);
    EXPECT_TRUE(model.FREE.empty());
    const Lines lines = Marginal_model_lines(eight, model);
    EXPECT_EQ(lines[lines.size() - 2], "Free parameters were not identified");
    // Generators of nine variables have none.
    const ChainGraph nine = Groups_of_three(9, 1);
    EXPECT_EQ(Model_of(nine, nine.Labels).FREE, SetList{Only(28)});
    const ChainGraph ten = Groups_of_three(10, 0);  // 3^10 cliques
    EXPECT_EQ(Report_of(ten, ten.Labels),
              (Lines{"Marginal model: " + ten.Labels, "Too many cliques"}));
}

TEST(MarginalModels, ListFreeSetsByGeneratorWithRepeatedOnesLast) {
    const ChainGraph graph = Chain_graph_of_pairs("ABCD", {4}, {"AB", "BC", "AC", "CD"});
    EXPECT_EQ(Report_of(graph, "ABCD")[6], "Estimable parameters         : A,B,AB,AC,BC,ABC,");
    EXPECT_EQ(Report_of(graph, "ABCD")[7], "                               C,D,CD");
}

}  // namespace
}  // namespace tarven
