#include "graph/sets/separators.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

#include "graph/sets/paths.h"
#include "support/graphs.h"

namespace tarven {
namespace {

bool Separated(const UndirectedGraph& graph, int x, int y, VariableSet by) {
    UndirectedGraph rest = graph;
    if (rest.Adjacent(x, y)) Part(rest, x, y);
    rest = InducedSubgraph(rest, rest.vertices & ~by);
    const auto reached = ReachableInSteps(rest, graph.nvar);
    return !Contains(reached[static_cast<std::size_t>(x)], y);
}

/// All sets of the smallest size that separate x and y, in lexicographic order.
SetList Smallest_separating_sets(const UndirectedGraph& graph, int x, int y) {
    SetList best;
    for (VariableSet set = 0; set < VariableSet{1} << graph.nvar; ++set) {
        if (Contains(set, x) || Contains(set, y)) continue;
        if (!best.empty() && Size(set) > Size(best[0])) continue;
        if (!Separated(graph, x, y, set)) continue;
        if (!best.empty() && Size(set) < Size(best[0])) best.clear();
        best.push_back(set);
    }
    std::sort(best.begin(), best.end(), Lexicographically_before);
    return best;
}

TEST(Separators, AreAllSetsOfTheSmallestSize) {
    std::mt19937 random(3);
    for (int k = 0; k < 400; ++k) {
        const int nvar = 2 + k % 9;
        const UndirectedGraph graph = Random_graph(random, nvar, 0.1 * (1 + k % 9));
        const int x = 1 + static_cast<int>(random() % static_cast<unsigned>(nvar));
        const int y = 1 + (x + k / 9 % (nvar - 1)) % nvar;
        if (x == y) continue;
        const Separators found = FindSeparators(graph, x, y);
        EXPECT_TRUE(found.smallest);
        EXPECT_EQ(found.sets, Smallest_separating_sets(graph, x, y))
            << x << " and " << y << " in " << Show(graph);
        EXPECT_EQ(found.size, Size(found.sets[0]));
    }
}

TEST(Separators, OfUnconnectedVariablesAreEmptyAndOfCommonNeighboursExactlyThese) {
    EXPECT_EQ(FindSeparators(Graph_of_edges(4, {{1, 2}, {3, 4}}), 1, 4).sets, SetList{0});
    EXPECT_EQ(
        FindSeparators(Graph_of_edges(4, {{1, 4}, {1, 2}, {2, 4}, {1, 3}, {3, 4}}), 1, 4).sets,
        SetList{Only(2) | Only(3)});
}

/// FindPaths as it is told, with whole paths in every queue and no index.
PathList Paths_step_by_step(const UndirectedGraph& graph, int from, int to) {
    PathList list;
    std::vector<std::vector<int>> queue = {{from}};
    const auto set_of = [](const std::vector<int>& path) {
        VariableSet set = 0;
        for (const int v : path) set |= Only(v);
        return set;
    };
    const auto dominated = [&](VariableSet set) {
        return std::any_of(list.inner.begin(), list.inner.end(), [set](VariableSet inner) {
            return inner != 0 && Is_subset(inner, set);
        });
    };
    for (std::size_t level = 1; level < static_cast<std::size_t>(graph.nvar); ++level) {
        std::vector<std::vector<int>> next;
        for (const std::vector<int>& path : queue) {
            VariableSet steps = graph.Neighbours(path.back()) & ~set_of(path);
            if (level >= 2)
                for (const int w : Members(graph.Neighbours(path[level - 2])))
                    if (w != to) steps &= ~Only(w);
            if (Contains(steps, to)) {
                if (list.inner.size() == MaxPaths) {
                    list.complete = false;
                    return list;
                }
                if (!dominated(set_of(path) & ~Only(from))) {
                    list.inner.push_back(set_of(path) & ~Only(from));
                    list.paths.push_back(path);
                    list.paths.back().push_back(to);
                }
                if (level > 1) continue;
            }
            for (const int v : Members(steps & ~Only(to))) {
                if (dominated(set_of(path) | Only(v))) continue;
                if (static_cast<std::int64_t>(next.size()) == Partial_path_limit(graph.nvar)) {
                    list.complete = false;
                    list.too_many_partial_paths = true;
                    return list;
                }
                next.push_back(path);
                next.back().push_back(v);
            }
        }
        list.most_partial_paths =
            std::max(list.most_partial_paths, static_cast<std::int64_t>(next.size()));
        queue = next;
    }
    return list;
}

void Expect_the_same_paths(const UndirectedGraph& graph, int from, int to) {
    const PathList found = FindPaths(graph, from, to);
    const PathList plain = Paths_step_by_step(graph, from, to);
    EXPECT_EQ(found.paths, plain.paths) << from << " to " << to << " in " << Show(graph);
    EXPECT_EQ(found.inner, plain.inner);
    EXPECT_EQ(found.complete, plain.complete);
    EXPECT_EQ(found.too_many_partial_paths, plain.too_many_partial_paths);
    EXPECT_EQ(found.most_partial_paths, plain.most_partial_paths);
    EXPECT_EQ(FindPaths(graph, from, to, PathDetail::inner_vertices).inner, plain.inner);
}

TEST(Paths, EqualTheSearchStepByStep) {
    EXPECT_EQ(Partial_path_limit(59), 82489);
    std::mt19937 random(4);
    for (int k = 0; k < 300; ++k)
        Expect_the_same_paths(Random_graph(random, 2 + k % 12, 0.1 * (1 + k % 9)), 1, 2);
    bool many_partial = false, many_paths = false;
    for (const double density : {0.04, 0.06, 0.08, 0.1, 0.2}) {
        const UndirectedGraph graph = Random_graph(random, 59, density);
        Expect_the_same_paths(graph, 1, 59);
        const PathList found = FindPaths(graph, 1, 59);
        many_partial |= found.too_many_partial_paths;
        many_paths |= !found.complete && !found.too_many_partial_paths;
    }
    // Nothing leads to the last variable, and the partial paths are too many before that is seen.
    UndirectedGraph apart = Random_graph(random, 58, 0.2);
    apart.nvar = 59;
    apart.vertices |= Only(59);
    Expect_the_same_paths(apart, 1, 59);
    many_partial |= FindPaths(apart, 1, 59).too_many_partial_paths;
    EXPECT_TRUE(many_partial);
    EXPECT_TRUE(many_paths);
}

TEST(Paths, LeadPastAnEdgeBetweenTheEnds) {
    const UndirectedGraph graph =
        Graph_of_edges(5, {{1, 5}, {1, 2}, {2, 5}, {2, 3}, {1, 4}, {4, 3}, {3, 5}});
    EXPECT_EQ(FindPaths(graph, 1, 5).paths,
              (std::vector<std::vector<int>>{{1, 5}, {1, 2, 5}, {1, 4, 3, 5}}));
}

/// x and y at the ends of two layers of `a` and `b` variables, every two of different layers
/// joined.
UndirectedGraph Two_layers(int a, int b, int nvar) {
    UndirectedGraph graph{nvar, Variables_between(1, nvar), {}};
    for (int v = 2; v <= 1 + a; ++v) {
        Join(graph, 1, v);
        for (int w = 2 + a; w <= 1 + a + b; ++w) Join(graph, v, w);
    }
    for (int w = 2 + a; w <= 1 + a + b; ++w) Join(graph, w, nvar);
    return graph;
}

TEST(Paths, AreFiveHundredAtMost) {
    EXPECT_TRUE(FindPaths(Two_layers(20, 25, 59), 1, 59).complete);
    EXPECT_EQ(FindPaths(Two_layers(20, 25, 59), 1, 59).paths.size(), MaxPaths);
    EXPECT_FALSE(FindPaths(Two_layers(21, 24, 59), 1, 59).complete);
}

/// 1 and nvar joined by paths of so many inner variables.
UndirectedGraph Side_by_side(const std::vector<int>& inner, int nvar) {
    UndirectedGraph graph{nvar, Variables_between(1, nvar), {}};
    int v = 1;
    for (const int length : inner)
        for (int k = 1; k <= length; ++k) {
            ++v;
            Join(graph, k == 1 ? 1 : v - 1, v);
            if (k == length) Join(graph, v, nvar);
        }
    return graph;
}

TEST(Separators, HaveFourHundredCandidatesAtMost) {
    const Separators most = FindSeparators(Side_by_side({20, 20}, 42), 1, 42);
    EXPECT_TRUE(most.smallest);
    EXPECT_EQ(most.sets.size(), MaxSeparatorCandidates);
    EXPECT_FALSE(FindSeparators(Side_by_side({9, 9, 5}, 25), 1, 25).smallest) << "405";
}

TEST(Separators, AtALimitAreTheNeighboursOfTheSmallerEnd) {
    // 21 times 24 paths.
    const UndirectedGraph graph = Two_layers(21, 24, 59);
    const Separators found = FindSeparators(graph, 1, 59);
    EXPECT_FALSE(found.smallest);
    EXPECT_FALSE(found.too_many_partial_paths);
    EXPECT_EQ(found.sets, SetList{Variables_between(2, 22)});
    EXPECT_EQ(FindSeparators(graph, 59, 1).sets, SetList{Variables_between(2, 22)});
    // As many on both sides, and an edge between the ends that belongs to neither set: the ten
    // disjoint paths have 2^10 smallest cuts, more than 400 candidates.
    UndirectedGraph ladder{22, Variables_between(1, 22), {}};
    for (int k = 2; k <= 11; ++k) {
        Join(ladder, 1, k);
        Join(ladder, k, k + 10);
        Join(ladder, k + 10, 22);
    }
    Join(ladder, 1, 22);
    const Separators tie = FindSeparators(ladder, 22, 1);
    EXPECT_FALSE(tie.smallest);
    EXPECT_EQ(tie.sets, (SetList{Variables_between(12, 21), Variables_between(2, 11)}));
    EXPECT_EQ(tie.size, 10);
}

}  // namespace
}  // namespace tarven
