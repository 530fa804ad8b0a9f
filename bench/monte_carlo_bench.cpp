// Monte Carlo tests: replicates a second with statistic and gamma, whole hypotheses with their
// set-up, and the enumeration of all tables.
#include <benchmark/benchmark.h>

#include <vector>

#include "tables/draws/monte_carlo.h"
#include "tables/independence/fisher.h"
#include "tables/table/gamma.h"

namespace {

using namespace tarven;

/// R by C with n cases; rows and columns fall off as 2R-i and 2C-j. peers.R makes the same margins.
TwoWayTable Sloping_table(int R, int C, int n) {
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
    return counts;
}

struct Strata {
    std::vector<TwoWayTable> counts;
    std::vector<ExpectedTable> expected;
};

Strata Stratified(int R, int C, int strata, int n) {
    Strata s;
    for (int k = 0; k < strata; ++k) {
        s.counts.push_back(Sloping_table(R, C, n / strata));
        s.expected.push_back(Expected_of_slice(s.counts.back()));
    }
    return s;
}

/// One hypothesis with all its set-up; the memory of the drawing is kept, as in a list of them.
void Hypothesis(benchmark::State& state) {
    const Strata strata =
        Stratified(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                   static_cast<int>(state.range(2)), static_cast<int>(state.range(3)));
    MonteCarloRule rule;
    rule.nsim = static_cast<std::int32_t>(state.range(4));
    DrawMemory memory;
    for (auto _ : state) {
        RandomStream stream{9};
        const ObservedTest observed =
            Observed_test(strata.counts, strata.expected, rule.statistic, true);
        const Sim_counts counts = Monte_carlo_test(strata.expected, observed, rule, stream, memory);
        benchmark::DoNotOptimize(counts.statistic);
    }
    state.SetItemsProcessed(state.iterations() * rule.nsim);
}
BENCHMARK(Hypothesis)
    ->Args({5, 6, 1, 500, 20000})
    ->Args({2, 2, 20, 500, 20000})
    ->Args({2, 2, 40, 500, 20000})
    ->Args({3, 4, 12, 500, 20000})
    ->Args({3, 3, 40, 320, 20000})
    ->Args({3, 3, 40, 320, 1000});

/// Statistic, gamma and tails of a hypothesis without random tables.
void Asymptotic(benchmark::State& state) {
    const Strata strata = Stratified(3, 3, 40, 320);
    for (auto _ : state) {
        Extended sum = 0;
        double P = 0, Q = 0, V = 0;
        for (std::size_t s = 0; s < strata.counts.size(); ++s) {
            sum += Two_way_statistic(strata.counts[s], strata.expected[s], {}).statistic;
            const GammaRecord g = Gamma_of_table(strata.counts[s]);
            P += g.P, Q += g.Q, V += g.V;
        }
        benchmark::DoNotOptimize(Partial_gamma(P, Q, V).p);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(Asymptotic);

void Enumeration(benchmark::State& state) {
    const TwoWayTable counts =
        Sloping_table(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                      static_cast<int>(state.range(2)));
    std::int64_t tables = 0;
    for (auto _ : state) {
        const FisherRecord f = Enumerate_tables(counts, {}, true);
        tables = f.tables;
        benchmark::DoNotOptimize(f.p_exact);
    }
    state.counters["tables"] = static_cast<double>(tables);
    state.SetItemsProcessed(state.iterations() * tables);
}
BENCHMARK(Enumeration)->Args({3, 3, 180})->Args({3, 4, 70})->Args({4, 4, 38});

/// The peer of Enumeration: the same tables, each scored by the procedures for a single table.
void Enumeration_scored_one_by_one(benchmark::State& state) {
    const TwoWayTable counts = Sloping_table(3, 3, 180);
    const ExpectedTable expected = Expected_under_independence(counts);
    std::int64_t tables = 0;
    for (auto _ : state) {
        Extended sum = 0;
        const FisherRecord f =
            Enumerate_tables(counts, {}, false, {}, [&](const FisherTable& listed) {
                sum += Sum_of_statistic(listed.table, expected, {});
                sum += Gamma_of_table(listed.table).gamma;
            });
        tables = f.tables;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * tables);
}
BENCHMARK(Enumeration_scored_one_by_one);

}  // namespace

BENCHMARK_MAIN();
