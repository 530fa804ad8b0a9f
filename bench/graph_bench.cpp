#include <benchmark/benchmark.h>

#include <random>

#include "graph/hypotheses/graph_gammas.h"
#include "graph/hypotheses/separation.h"
#include "graph/model/chain_graph.h"
#include "graph/model/marginal_model.h"
#include "graph/sets/cliques.h"
#include "tables/independence/case_strata.h"

namespace tarven {
namespace {

/// Whether i and j, i < j, are joined: the same in graph_peers.py.
bool Joined(std::uint64_t seed, int i, int j, double density) {
    std::uint64_t x = seed * 1000003 + static_cast<std::uint64_t>(i * 64 + j);
    x += 0x9E3779B97F4A7C15U;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBU;
    x ^= x >> 31;
    return static_cast<double>(x >> 11) * 0x1p-53 < density;
}

/// Variables 1..last[0] are block 1, and so on.
ChainGraph Graph_of(const std::vector<int>& last, double density, std::uint64_t seed) {
    One_based<int, MaxVariables> LevelEnd;
    for (std::size_t b = 0; b < last.size(); ++b) LevelEnd[b + 1] = last[b];
    ChainGraph graph = New_chain_graph(std::string(static_cast<std::size_t>(last.back()), '?'),
                                       static_cast<int>(last.size()), LevelEnd, Absent);
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = i + 1; j <= graph.nvar; ++j)
            if (Joined(seed, i, j, density)) Set_status(graph, i, j, Free);
    return graph;
}

constexpr int Graphs = 10;

/// Ten regression graphs of a first block of all 59 variables, or of 12 or 20 of them.
std::vector<UndirectedGraph> Regressions(const benchmark::State& state) {
    const auto block = static_cast<int>(state.range(1));
    const std::vector<int> last = block == 59 ? std::vector<int>{59} : std::vector<int>{block, 59};
    std::vector<UndirectedGraph> graphs;
    for (std::uint64_t seed = 1; seed <= Graphs; ++seed)
        graphs.push_back(
            RegressionGraph(Graph_of(last, static_cast<double>(state.range(0)) / 100, seed), 1,
                            LaterVariables::complete));
    return graphs;
}

void Cliques(benchmark::State& state) {
    const std::vector<UndirectedGraph> graphs = Regressions(state);
    std::size_t found = 0, refused = 0;
    for (const UndirectedGraph& graph : graphs) {
        const CliqueList list = FindCliques(graph, static_cast<int>(state.range(1)));
        found += list.cliques.size();
        refused += list.complete ? 0 : 1;
    }
    for (auto _ : state)
        for (const UndirectedGraph& graph : graphs)
            benchmark::DoNotOptimize(FindCliques(graph, static_cast<int>(state.range(1))));
    state.SetItemsProcessed(state.iterations() * Graphs);
    state.counters["cliques"] = static_cast<double>(found);
    state.counters["refused"] = static_cast<double>(refused);
}

/// Bron and Kerbosch's first version: no pivot.
void Extend_plainly(const UndirectedGraph& graph, VariableSet set, VariableSet open,
                    VariableSet closed, SetList& found) {
    if (found.size() > MaxCliques) return;
    if (open == 0 && closed == 0) found.push_back(set);
    while (open != 0) {
        const int v = Lowest(open);
        const VariableSet near = graph.Neighbours(v);
        Extend_plainly(graph, set | Only(v), open & near, closed & near, found);
        open &= ~Only(v);
        closed |= Only(v);
    }
}

void Cliques_without_pivot(benchmark::State& state) {
    const std::vector<UndirectedGraph> graphs = Regressions(state);
    for (auto _ : state)
        for (const UndirectedGraph& graph : graphs) {
            SetList found;
            Extend_plainly(graph, 0, graph.vertices, 0, found);
            benchmark::DoNotOptimize(found);
        }
    state.SetItemsProcessed(state.iterations() * Graphs);
}

void One_block(benchmark::internal::Benchmark* bench) {
    for (const int density : {10, 20, 30, 40, 50, 60, 70}) bench->Args({density, 59});
}
void Two_blocks(benchmark::internal::Benchmark* bench) {
    for (const int density : {20, 40}) bench->Args({density, 12});
    bench->Args({20, 20});
}
BENCHMARK(Cliques)
    ->Apply(One_block)
    ->Args({80, 59})
    ->Args({90, 59})
    ->Apply(Two_blocks)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Cliques_without_pivot)->Apply(One_block)->Unit(benchmark::kMillisecond);
// Not on two blocks: 47 complete variables have 2^47 subsets, and it goes through all of them.

void Boundaries(benchmark::State& state) {
    const UndirectedGraph graph = Regressions(state)[0];
    VariableSet set = 0x5A5A5;
    for (auto _ : state) {
        benchmark::DoNotOptimize(FindBoundary(graph, set & graph.vertices));
        set = set * 3 + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(Boundaries)->Args({20, 59});

void Marginal_models(benchmark::State& state) {
    const ChainGraph graph =
        Graph_of({12, 30, 45, 59}, static_cast<double>(state.range(0)) / 100, 1);
    std::vector<std::vector<int>> sets;
    std::mt19937 random(1);
    for (int k = 0; k < 100; ++k) {
        std::vector<int> set;
        for (int v = 1 + static_cast<int>(random() % 30); v <= 59; ++v)
            if (random() % 4 == 0) set.push_back(v);
        sets.push_back(set);
    }
    std::size_t next = 0;
    for (auto _ : state) benchmark::DoNotOptimize(MarginalModel(graph, sets[next++ % sets.size()]));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(Marginal_models)->Arg(3)->Arg(10)->Arg(30)->Unit(benchmark::kMicrosecond);

void Separators_of_all_pairs(benchmark::State& state) {
    const ChainGraph graph = Graph_of({59}, static_cast<double>(state.range(0)) / 100, 1);
    const SeparationGraphs graphs = Separation_graphs(graph);
    int by_neighbours = 0;
    for (auto _ : state) {
        by_neighbours = 0;
        for (const auto& [i, j] : All_pairs_of(graph))
            by_neighbours += Separators_of_pair(graphs, i, j).smallest ? 0 : 1;
    }
    state.counters["by_neighbours"] = by_neighbours;
}
BENCHMARK(Separators_of_all_pairs)
    ->Arg(3)
    ->Arg(5)
    ->Arg(20)
    ->Arg(50)
    ->Arg(80)
    ->Unit(benchmark::kMillisecond);

/// All pairs of a saturated graph of 26 variables of three categories.
void Gammas_of_a_project(benchmark::State& state) {
    const std::vector<int> dims(26, 3), types(26, 3);
    PackedCases packed = Packed_cases_of(dims, types);
    std::mt19937 random(1);
    for (int c = 0; c < state.range(0); ++c) {
        std::vector<std::uint8_t> one;
        for (int v = 0; v < 26; ++v) one.push_back(static_cast<std::uint8_t>(1 + random() % 3));
        Add_cases(packed, one.data(), 1);
    }
    const ChainGraph graph = Graph_of({24, 25, 26}, 1, 1);
    for (auto _ : state)
        benchmark::DoNotOptimize(Gammas_of_graph(packed, graph, All_pairs_of(graph)));
}
BENCHMARK(Gammas_of_a_project)->Arg(316)->Arg(20000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarven

BENCHMARK_MAIN();
