#include "graph/sets/cliques.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "graph/model/chain_graph.h"
#include "graph/sets/set_lists.h"
#include "support/graphs.h"
#include "support/reference_figures.h"

namespace tarven {
namespace {

using Row = std::vector<int>;

VariableSet Set_of_row(const Row& row) {
    VariableSet set = 0;
    for (const int v : row) set |= Only(v);
    return set;
}

/// The search by levels that the order of the list comes from: complete sets of one size are
/// extended upwards to those of the next, and what cannot be extended replaces its subsets.
SetList Cliques_by_levels(const UndirectedGraph& graph, int m) {
    VariableSet active = graph.vertices, universal = 0;
    for (const int v : Members(graph.vertices))
        if (Size(graph.Neighbours(v)) + 1 == Size(graph.vertices)) universal |= Only(v);
    active &= ~universal;
    if (active == 0) return SetList(universal == 0 ? 0 : 1, universal);
    SetList cliques;
    std::vector<Row> candidates;
    if ((active & ~Variables_between(1, m)) != 0)
        cliques.push_back(active & ~Variables_between(1, m));
    for (const int v : Members(active & Variables_between(1, m))) {
        if ((graph.Neighbours(v) & active) == 0)
            cliques.push_back(Only(v));
        else
            candidates.push_back({v});
    }
    while (!candidates.empty()) {
        std::vector<Row> next;
        SetList terminal;
        for (const Row& row : candidates) {
            const std::size_t before = next.size();
            for (const int v : Members(active)) {
                const auto near = [&](int w) { return graph.Adjacent(v, w); };
                if (v <= row.back() || !std::all_of(row.begin(), row.end(), near)) continue;
                next.push_back(row);
                next.back().push_back(v);
            }
            if (next.size() == before) terminal.push_back(Set_of_row(row));
        }
        for (const VariableSet clique : cliques)
            if (std::none_of(terminal.begin(), terminal.end(),
                             [&](VariableSet t) { return Is_subset(clique, t); }))
                terminal.push_back(clique);
        cliques = terminal;
        candidates = next;
    }
    for (VariableSet& clique : cliques) clique |= universal;
    return cliques;
}

SetList Maximal_complete_sets(const UndirectedGraph& graph) {
    SetList complete;
    for (VariableSet set = 1; set < VariableSet{1} << graph.nvar; ++set)
        if (Is_complete(graph, set)) complete.push_back(set);
    std::erase_if(complete, [&](VariableSet set) {
        return std::any_of(complete.begin(), complete.end(), [&](VariableSet other) {
            return set != other && Is_subset(set, other);
        });
    });
    return complete;
}

TEST(Cliques, EqualTheSearchByLevelsInSetsAndOrder) {
    std::mt19937 random(1);
    for (int k = 0; k < 3000; ++k) {
        const int nvar = 1 + k % 14;
        UndirectedGraph graph = Random_graph(random, nvar, 0.1 * (1 + k % 9));
        if (k % 3 == 0) graph = InducedSubgraph(graph, random());
        const int m = k % 2 == 0 ? nvar : static_cast<int>(random() % (nvar + 1));
        const CliqueList found = FindCliques(graph, m);
        EXPECT_TRUE(found.complete);
        EXPECT_EQ(found.cliques, Cliques_by_levels(graph, m)) << "m " << m << ", " << Show(graph);
    }
}

TEST(Cliques, AreTheMaximalCompleteSets) {
    std::mt19937 random(2);
    for (int k = 0; k < 150; ++k) {
        const UndirectedGraph graph = Random_graph(random, 1 + k % 12, 0.1 * (1 + k % 9));
        EXPECT_TRUE(SameSetLists(FindCliques(graph).cliques, Maximal_complete_sets(graph)))
            << Show(graph);
    }
}

TEST(Cliques, OfRegressionGraphsAgreeWithNetworkx) {
    for (const auto& one : Reference_figures("graphs.json", "graphs")) {
        if (!one.contains("cliques")) continue;
        const std::string labels = one.at("labels");
        const ChainGraph graph = Chain_graph_of_rows(labels, one.at("blocks"), one.at("status"));
        for (const auto& level : one.at("cliques")) {
            const int b = level.at("block");
            const UndirectedGraph regression = RegressionGraph(graph, b, LaterVariables::complete);
            const CliqueList found =
                FindCliques(regression, graph.Cutpoints[static_cast<std::size_t>(b)]);
            EXPECT_TRUE(SameSetLists(found.cliques, Sets_of(labels, level.at("cliques"))))
                << one.at("name") << ", block " << b;
        }
    }
}

TEST(Cliques, StandInTheirOrder) {
    // 9 is universal; 7 and 8 are later; 3-4-5 is larger than 1-2 and 2-7; 6 is isolated.
    UndirectedGraph graph = Graph_of_edges(9, {{1, 2}, {2, 7}, {3, 4}, {3, 5}, {4, 5}, {7, 8}});
    for (int v = 1; v <= 8; ++v) Join(graph, v, 9);
    EXPECT_EQ(FindCliques(graph, 6).cliques,
              Sets_of("123456789", {"3459", "129", "279", "789", "69"}));
    // The later set goes when a clique holds it, and stands for itself where nothing else is.
    Join(graph, 2, 8);
    EXPECT_EQ(FindCliques(graph, 6).cliques, Sets_of("123456789", {"2789", "3459", "129", "69"}));
    EXPECT_EQ(FindCliques(InducedSubgraph(graph, Variables_between(7, 8)), 6).cliques,
              Sets_of("123456789", {"78"}));
    EXPECT_TRUE(FindCliques(InducedSubgraph(graph, 0), 6).cliques.empty());
}

/// Moon and Moser (1965): vertices in groups of three, joined between groups alone, have 3^groups
/// cliques, and groups of other sizes the product of these.
UndirectedGraph Many_cliques(const std::vector<int>& groups) {
    int nvar = 0;
    std::vector<int> group;
    for (std::size_t g = 0; g < groups.size(); ++g)
        for (int k = 0; k < groups[g]; ++k, ++nvar) group.push_back(static_cast<int>(g));
    UndirectedGraph graph{nvar, Variables_between(1, nvar), {}};
    for (int v = 1; v <= nvar; ++v)
        for (int w = v + 1; w <= nvar; ++w)
            if (group[static_cast<std::size_t>(v - 1)] != group[static_cast<std::size_t>(w - 1)])
                Join(graph, v, w);
    return graph;
}

TEST(Cliques, UpToTwentyThousandAreFoundAndNotOneMore) {
    // 2^5 5^4 = 20000, and with an isolated variable one more.
    UndirectedGraph graph = Many_cliques({2, 2, 2, 2, 2, 5, 5, 5, 5});
    const CliqueList most = FindCliques(graph);
    EXPECT_TRUE(most.complete);
    EXPECT_EQ(most.cliques.size(), MaxCliques);
    graph.nvar = 31;
    graph.vertices |= Only(31);
    EXPECT_FALSE(FindCliques(graph).complete);
    EXPECT_TRUE(FindCliques(graph).cliques.empty());
    EXPECT_FALSE(FindCliques(Many_cliques(std::vector<int>(19, 3))).complete);  // 3^19
}

TEST(Cliques, ManyParentsOverflowNothing) {
    // Six variables with sixteen parents each, some of 40 later variables: seven cliques, where a
    // search by levels meets more than 40,000 complete sets of one size.
    One_based<int, MaxVariables> LevelEnd;
    LevelEnd[1] = 6;
    LevelEnd[2] = 46;
    ChainGraph graph = New_chain_graph(std::string(46, '?'), 2, LevelEnd, Absent);
    SetList expected;
    for (int i = 1; i <= 6; ++i) {
        expected.push_back(Only(i) | Variables_between(4 + 3 * i, 19 + 3 * i));
        for (const int j : Members(expected.back() & ~Only(i))) Set_status(graph, i, j, Free);
    }
    expected.push_back(Variables_between(7, 46));
    EXPECT_EQ(FindCliques(RegressionGraph(graph, 1, LaterVariables::complete), 6).cliques,
              expected);
}

TEST(SetLists, KeepTheLastOfEqualSetsAndTheOrder) {
    const std::string labels = "ABCDE";
    EXPECT_EQ(RemoveSubsets(Sets_of(labels, {"E", "AB", "CD", "A", "", "ABC", "CD"})),
              Sets_of(labels, {"E", "ABC", "CD"}));
    EXPECT_EQ(RemoveSubsets(SetList{0, 0}), SetList{0});
    EXPECT_TRUE(SameSetLists(Sets_of(labels, {"AB", "C"}), Sets_of(labels, {"C", "AB"})));
    EXPECT_FALSE(SameSetLists(Sets_of(labels, {"AB"}), Sets_of(labels, {"AB", "AB"})));
    EXPECT_FALSE(SameSetLists(Sets_of(labels, {"AB", "C"}), Sets_of(labels, {"AB", "D"})));
}

}  // namespace
}  // namespace tarven
