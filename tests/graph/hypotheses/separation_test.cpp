#include "graph/hypotheses/separation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/graphs.h"
#include "support/reference_figures.h"

namespace tarven {
namespace {

TEST(Separation, AgreesWithSeparatorsFoundElsewhere) {
    for (const auto& one : Reference_figures("graphs.json", "graphs")) {
        const std::string labels = one.at("labels");
        const ChainGraph graph = Chain_graph_of_rows(labels, one.at("blocks"), one.at("status"));
        const SeparationGraphs graphs = Separation_graphs(graph);
        for (const char* section : {"smallest_separators", "separate"}) {
            if (!one.contains(section)) continue;
            for (const auto& pair : one.at(section)) {
                const std::vector<int> ends = Numbers_of(labels, pair.at("pair"));
                const Separators found = Separators_of_pair(graphs, ends[0], ends[1]);
                const std::string what =
                    one.at("name").get<std::string>() + " " + pair.at("pair").get<std::string>();
                EXPECT_EQ(found.smallest, !pair.contains("search_limits_hit")) << what;
                SetList expected = Sets_of(labels, pair.at("separators"));
                if (!found.smallest) {
                    const UndirectedGraph its = Separation_graph(graphs, ends[0], ends[1]);
                    const bool first = its.Degree(ends[0]) < its.Degree(ends[1]);
                    expected = {its.Neighbours(ends[first ? 0 : 1])};
                }
                EXPECT_EQ(found.sets, expected) << what;
                EXPECT_TRUE(
                    std::is_sorted(found.sets.begin(), found.sets.end(), Lexicographically_before))
                    << what;
            }
        }
    }
}

/// Every pair i < j.
std::vector<std::pair<int, int>> All_pairs(int nvar) {
    std::vector<std::pair<int, int>> pairs;
    for (int i = 1; i <= nvar; ++i)
        for (int j = i + 1; j <= nvar; ++j) pairs.push_back({i, j});
    return pairs;
}

std::vector<std::string> Labels_of_rows(const ChainGraph& graph, const SeparationList& list) {
    std::vector<std::string> rows;
    for (const Hypothesis& row : list.rows) rows.push_back(Hypothesis_label(row, graph.Labels));
    return rows;
}

TEST(Separation, LeavesOutLaterVariablesThatAreNoParents) {
    // C and D are parents of the first block, E and F are not; E takes part as the end of a pair,
    // joined to the other later ones.
    const ChainGraph graph = Chain_graph_of_pairs("ABCDEF", {2, 6}, {"AB", "AC", "BD", "DE", "EF"});
    const std::vector<std::pair<int, int>> pairs = {{2, 1}, {1, 4}, {5, 1}, {3, 4}};
    const SeparationList list = Separate(graph, pairs);
    EXPECT_EQ(Labels_of_rows(graph, list),
              (std::vector<std::string>{"A&B|C", "A&B|D", "A&D|BC", "A&E|BC", "A&E|CD", "C&D"}));
    EXPECT_EQ(list.pairs[0].count, 2u);
    EXPECT_EQ(list.pairs[3].first, 5u);
    EXPECT_EQ(list.rows[0].Role(5), role::excluded);
}

TEST(Separation, TakesTheEndsOfATieInTheirOrderAtALimit) {
    // Ten paths of two inner variables have too many smallest cuts, and both ends ten neighbours.
    UndirectedGraph ladder{22, Variables_between(1, 22), {}};
    for (int k = 2; k <= 11; ++k) {
        Join(ladder, 1, k);
        Join(ladder, k, k + 10);
        Join(ladder, k + 10, 22);
    }
    const SetList of_ends{Variables_between(2, 11), Variables_between(12, 21)};
    EXPECT_EQ(Separators_in(ladder, 1, 22).sets, of_ends);
}

TEST(Separation, HoldsAsManyPairsAndRowsAsThereIsRoomFor) {
    // Two variables joined by six paths of two inner vertices have 64 smallest sets; the fortieth
    // such pair is cut at row 2500.
    std::vector<std::string> edges;
    const std::string labels = "ABCDEFGHIJKLMN";
    for (std::size_t k = 0; k < 6; ++k) {
        edges.push_back({'A', labels[1 + k]});
        edges.push_back({labels[1 + k], labels[7 + k]});
        edges.push_back({labels[7 + k], 'N'});
    }
    const ChainGraph graph = Chain_graph_of_pairs(labels, {14}, edges);
    const std::vector<std::pair<int, int>> pairs(41, {1, 14});
    const SeparationList list = Separate(graph, pairs);
    EXPECT_EQ(list.rows.size(), static_cast<std::size_t>(MaxHypotheses));
    EXPECT_TRUE(list.incomplete);
    ASSERT_EQ(list.pairs.size(), 40u);
    EXPECT_EQ(list.pairs[38].count, 64u);
    EXPECT_EQ(list.pairs[39].count, 4u);
    EXPECT_TRUE(Separate(graph, std::span(pairs).first(40)).incomplete) << "the last pair alone";

    std::vector<std::pair<int, int>> many(MaxPairs + 1, {2, 3});
    const SeparationList unconnected = Separate(Chain_graph_of_pairs("ABC", {3}, {}), many);
    EXPECT_TRUE(unconnected.too_many_pairs);
    EXPECT_EQ(unconnected.pairs.size(), MaxPairs);
    EXPECT_FALSE(unconnected.incomplete);
}

TEST(Separation, FollowsFromTheGraph) {
    // Whatever the limits did: the set separates the pair in its graph, and the rows of all pairs
    // stand in the order of the pairs.
    std::mt19937 random(5);
    for (const double density : {0.03, 0.5}) {
        const ChainGraph graph = Random_chain_graph(random, {12, 30, 45, 59}, density);
        const SeparationGraphs graphs = Separation_graphs(graph);
        for (const auto& [i, j] : All_pairs(graph.nvar)) {
            UndirectedGraph its = Separation_graph(graphs, i, j);
            if (its.Adjacent(i, j)) Part(its, i, j);
            for (const VariableSet set : Separators_of_pair(graphs, i, j).sets) {
                const UndirectedGraph rest = InducedSubgraph(its, its.vertices & ~set);
                EXPECT_TRUE(Contains(rest.vertices, i) && Contains(rest.vertices, j));
                EXPECT_FALSE(Contains(ReachableInSteps(rest, 59)[static_cast<std::size_t>(i)], j));
            }
        }
    }
}

}  // namespace
}  // namespace tarven
