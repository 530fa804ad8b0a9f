#include <benchmark/benchmark.h>

#include "../tests/support/block_of_cases.h"
#include "tables/independence/hypothesis_run.h"

namespace tarven {
namespace {

/// 2500 hypotheses of an eight-way table, asymptotic, with gamma: all that there are, some twice.
void Hypotheses_of_an_eight_way_table(benchmark::State& state) {
    const BlockOfCases block =
        Random_block({2, 2, 3, 3, 2, 4, 2, 3}, static_cast<int>(state.range(0)), 1);
    const ContingencyTable table = block.table();
    const std::vector<Hypothesis> all = All_hypotheses(8);
    std::vector<Hypothesis> list;
    for (int k = 0; k < MaxHypotheses; ++k)
        list.push_back(all[static_cast<std::size_t>(k) % all.size()]);
    RandomStream stream;
    for (auto _ : state) benchmark::DoNotOptimize(Test_globally(table, list, {}, stream));
    state.SetItemsProcessed(state.iterations() * MaxHypotheses);
}
BENCHMARK(Hypotheses_of_an_eight_way_table)->Arg(500)->Arg(50000)->Unit(benchmark::kMillisecond);

/// Its peer in the same run: every hypothesis collapses the cases anew into its own slices.
void The_same_collapsing_for_each_hypothesis(benchmark::State& state) {
    const BlockOfCases block =
        Random_block({2, 2, 3, 3, 2, 4, 2, 3}, static_cast<int>(state.range(0)), 1);
    const std::vector<Hypothesis> all = All_hypotheses(8);
    std::size_t next = 0;
    for (auto _ : state) {
        const Hypothesis& h = all[next++ % all.size()];
        const TestedPair pair = Tested_pair(h);
        const std::vector<int> z = Conditioning_variables(h);
        std::size_t strata = 1;
        for (const int k : z)
            strata *= static_cast<std::size_t>(block.DIM[static_cast<std::size_t>(k)]);
        std::vector<TwoWayTable> counts(strata,
                                        TwoWayTable(block.DIM[static_cast<std::size_t>(pair.X)],
                                                    block.DIM[static_cast<std::size_t>(pair.Y)]));
        for (const std::vector<int>& one : block.cases) {
            std::size_t at = 0, factor = 1;
            for (const int k : z) {
                at += static_cast<std::size_t>(one[static_cast<std::size_t>(k - 1)] - 1) * factor;
                factor *= static_cast<std::size_t>(block.DIM[static_cast<std::size_t>(k)]);
            }
            ++counts[at](one[static_cast<std::size_t>(pair.X - 1)],
                         one[static_cast<std::size_t>(pair.Y - 1)]);
        }
        StrataSums sums;
        for (TwoWayTable& t : counts) {
            Fill_margins(t);
            Add_stratum(sums, t, Expected_of_slice(t), true, {});
        }
        benchmark::DoNotOptimize(sums);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(The_same_collapsing_for_each_hypothesis)->Arg(500)->Arg(50000);

}  // namespace
}  // namespace tarven

BENCHMARK_MAIN();
