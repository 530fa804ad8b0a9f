#include "graph/sets/core.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <vector>

#include "support/graphs.h"
#include "support/reference_figures.h"

namespace tarven {
namespace {

/// The core by growing connected sets one variable at a time, each until it can be left out.
VariableSet Core_by_growing_sets(const UndirectedGraph& graph, int x, int y) {
    const VariableSet ends = Only(x) | Only(y);
    VariableSet left_out = 0;
    std::set<VariableSet> level, tried;
    for (const int v : Members(graph.vertices & ~ends)) level.insert(Only(v));
    while (!level.empty()) {
        std::set<VariableSet> next;
        for (const VariableSet set : level) {
            const Boundary found = FindBoundary(graph, set);
            if (found.complete && !Is_subset(ends, found.boundary)) {
                left_out |= set;
                continue;
            }
            for (const int v : Members(found.boundary & ~ends))
                if (tried.insert(set | Only(v)).second) next.insert(set | Only(v));
        }
        level = next;
    }
    return graph.vertices & ~left_out;
}

TEST(Core, IsWhatNoConnectedSetBehindACompleteBoundaryHolds) {
    std::mt19937 random(11);
    for (int k = 0; k < 1500; ++k) {
        const int nvar = 2 + k % 10;
        const UndirectedGraph graph = Random_graph(random, nvar, 0.1 * (1 + k % 9));
        const int x = 1 + static_cast<int>(random() % static_cast<unsigned>(nvar));
        const int y = 1 + (x + k / 10 % (nvar - 1)) % nvar;
        if (x == y) continue;
        const VariableSet core = FindCore(graph, x, y);
        EXPECT_EQ(core, Core_by_growing_sets(graph, x, y))
            << x << " and " << y << " in " << Show(graph);
        for (const LeftOut& part : Left_out(graph, core)) {
            EXPECT_TRUE(Is_complete(graph, part.boundary));
            EXPECT_FALSE(Contains(part.boundary, x) && Contains(part.boundary, y));
        }
    }
}

struct Example {
    const char* what;
    int nvar;
    std::vector<std::pair<int, int>> edges;
    int x, y;
    std::vector<int> core;
};

// A chordal graph keeps a chain of cliques, a cycle without chords is prime and stays whole: the
// examples are those by which decomposable models are told from others (Lauritzen 1996, 2.1).
TEST(Core, OfDecomposableAndOtherGraphs) {
    const std::vector<Example> examples = {
        {"a path", 5, {{1, 2}, {2, 3}, {3, 4}, {4, 5}}, 2, 4, {2, 3, 4}},
        {"an edge on a path", 4, {{1, 2}, {2, 3}, {3, 4}}, 2, 3, {2, 3}},
        {"two triangles with a common edge",
         4,
         {{1, 2}, {1, 3}, {2, 3}, {2, 4}, {3, 4}},
         1,
         4,
         {1, 2, 3, 4}},
        {"the common edge of two triangles",
         4,
         {{1, 2}, {1, 3}, {2, 3}, {2, 4}, {3, 4}},
         2,
         3,
         {1, 2, 3, 4}},
        {"an edge of one of them", 4, {{1, 2}, {1, 3}, {2, 3}, {2, 4}, {3, 4}}, 1, 2, {1, 2, 3}},
        {"the cycle of four", 4, {{1, 2}, {2, 3}, {3, 4}, {4, 1}}, 1, 2, {1, 2, 3, 4}},
        {"a cycle with a tail",
         6,
         {{1, 2}, {2, 3}, {3, 4}, {4, 1}, {4, 5}, {5, 6}},
         1,
         3,
         {1, 2, 3, 4}},
        {"the tail of a cycle", 6, {{1, 2}, {2, 3}, {3, 4}, {4, 1}, {4, 5}, {5, 6}}, 5, 6, {5, 6}},
        {"unconnected", 4, {{1, 2}, {3, 4}}, 1, 3, {1, 3}},
        {"no edge at all", 3, {}, 1, 3, {1, 3}}};
    for (const Example& e : examples) {
        VariableSet core = 0;
        for (const int v : e.core) core |= Only(v);
        EXPECT_EQ(FindCore(Graph_of_edges(e.nvar, e.edges), e.x, e.y), core) << e.what;
    }
}

// Triangles in a row have so many connected sets that no list could hold them, and the complement
// of a perfect matching of 58 variables has two to the twenty-ninth cliques.
TEST(Core, OfLargeGraphsIsFoundWithoutListsOfSetsOrCliques) {
    UndirectedGraph strip{MaxVariables, Variables_between(1, MaxVariables), {}};
    for (int v = 1; v < MaxVariables; ++v) {
        Join(strip, v, v + 1);
        if (v + 2 <= MaxVariables) Join(strip, v, v + 2);
    }
    EXPECT_EQ(FindCore(strip, 20, 24), Variables_between(20, 24));

    UndirectedGraph matching{MaxVariables, Variables_between(1, MaxVariables), {}};
    Complete(matching, Variables_between(1, 58));
    for (int v = 1; v < 58; v += 2) Part(matching, v, v + 1);
    Join(matching, 58, 59);
    EXPECT_EQ(FindCore(matching, 1, 2), Variables_between(1, 58));
}

}  // namespace
}  // namespace tarven
