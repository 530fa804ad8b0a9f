// Random two-way tables, in tables a second: the cells alone, and with the statistic and gamma.
#include <benchmark/benchmark.h>

#include <vector>

#include "tables/draws/cell_draws.h"
#include "tables/draws/replicates.h"

namespace {

using namespace tarven;

/// R by C with n cases; rows and columns fall off as 2R-i and 2C-j. peers.R makes the same margins.
ExpectedTable Sloping_table(int R, int C, int n) {
    TwoWayTable counts(R, C);
    int left = n;
    for (int i = R; i >= 1; --i)
        for (int j = C; j >= 1; --j) {
            const int weights = R * (3 * R - 1) / 2 * (C * (3 * C - 1) / 2);
            counts(i, j) = n * (2 * R - i) * (2 * C - j) / weights;
            left -= counts(i, j);
        }
    counts(1, 1) += left;
    Fill_margins(counts);
    return Expected_of_slice(counts);
}

void Tables_alone(benchmark::State& state) {
    const ExpectedTable expected =
        Sloping_table(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                      static_cast<int>(state.range(2)));
    const Margins margins = Margins_of_expected(expected);
    DrawMemory memory;
    memory.Cover(margins.total);
    RandomStream stream{9};
    std::vector<std::int32_t> cells(expected.cells.size());
    for (auto _ : state) {
        stream = Draw_cells(margins, stream, memory, cells.data());
        benchmark::DoNotOptimize(cells.data());
    }
    state.SetItemsProcessed(state.iterations());
}

void Plain_tables(benchmark::State& state) {
    const ExpectedTable expected =
        Sloping_table(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                      static_cast<int>(state.range(2)));
    const Margins margins = Margins_of_expected(expected);
    RandomStream stream{9};
    TwoWayTable table(expected.rows, expected.columns);
    for (auto _ : state) {
        Random_table(margins, stream, table);
        benchmark::DoNotOptimize(table.cells.data());
    }
    state.SetItemsProcessed(state.iterations());
}

void Tables_with_statistic_and_gamma(benchmark::State& state) {
    const ExpectedTable expected =
        Sloping_table(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                      static_cast<int>(state.range(2)));
    DrawMemory memory;
    StratumSampler sampler(expected, {}, true, memory);
    RandomStream stream{9};
    for (auto _ : state) {
        const StratumReplicate replicate = sampler.Draw(stream);
        benchmark::DoNotOptimize(replicate.Q);
    }
    state.SetItemsProcessed(state.iterations());
}

void Sizes(benchmark::internal::Benchmark* bench) {
    for (const auto& [R, C] : {std::pair{2, 2}, std::pair{3, 4}, std::pair{5, 6}})
        for (const int n : {100, 500, 1000}) bench->Args({R, C, n});
}

BENCHMARK(Tables_alone)->Apply(Sizes);
BENCHMARK(Tables_with_statistic_and_gamma)->Apply(Sizes);
BENCHMARK(Plain_tables)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
