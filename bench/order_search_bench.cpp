#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

#include "tables/ordinal/order_search.h"

namespace tarven {
namespace {

std::vector<TwoWayTable> Random_strata(int R, int C, int strata) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> count(0, 20);
    std::vector<TwoWayTable> tables;
    for (int s = 0; s < strata; ++s) {
        TwoWayTable& table = tables.emplace_back(R, C);
        for (int i = 1; i <= R; ++i)
            for (int j = 1; j <= C; ++j) table(i, j) = count(random);
        Fill_margins(table);
    }
    return tables;
}

OrderProblem Problem_of(const std::vector<TwoWayTable>& tables, bool both) {
    OrderProblem problem = Categories_with_cases(tables);
    problem.permute_columns = true;
    problem.permute_rows = both;
    return problem;
}

void Search(benchmark::State& state, bool both) {
    const int C = static_cast<int>(state.range(0));
    const std::vector<TwoWayTable> tables = Random_strata(both ? C : 4, C, 2);
    OrderSearch search(Problem_of(tables, both));
    for (auto _ : state) benchmark::DoNotOptimize(search.Largest_gamma(tables));
}

/// The peer in the same run: the pairs of cases are counted anew for every order.
void Count_every_order(benchmark::State& state, bool both) {
    const int C = static_cast<int>(state.range(0));
    const std::vector<TwoWayTable> tables = Random_strata(both ? C : 4, C, 2);
    std::vector<TwoWayTable> ordered = tables;
    const OrderProblem problem = Problem_of(tables, both);
    for (auto _ : state) {
        double largest = 0;
        std::vector<int> rows = problem.rows;
        do {
            std::vector<int> columns = problem.columns;
            do {
                std::int64_t P = 0, Q = 0;
                for (std::size_t s = 0; s < tables.size(); ++s) {
                    for (int i = 1; i <= tables[s].rows; ++i)
                        for (int j = 1; j <= C; ++j)
                            ordered[s](i, j) = tables[s](rows[static_cast<std::size_t>(i - 1)],
                                                         columns[static_cast<std::size_t>(j - 1)]);
                    const Concordance pairs = Concordance_of(ordered[s]);
                    P += pairs.P;
                    Q += pairs.Q;
                }
                largest = std::max(largest, std::abs(Gamma_of_pairs(P, Q)));
            } while (std::next_permutation(columns.begin(), columns.end()));
        } while (both && std::next_permutation(rows.begin(), rows.end()));
        benchmark::DoNotOptimize(largest);
    }
}

void Orders_of_columns(benchmark::State& state) {
    Search(state, false);
}
void Orders_of_columns_one_by_one(benchmark::State& state) {
    Count_every_order(state, false);
}
void Orders_of_both(benchmark::State& state) {
    Search(state, true);
}
void Orders_of_both_one_by_one(benchmark::State& state) {
    Count_every_order(state, true);
}
BENCHMARK(Orders_of_columns)
    ->Arg(4)
    ->Arg(6)
    ->Arg(8)
    ->Arg(12)
    ->Arg(16)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(Orders_of_columns_one_by_one)->Arg(4)->Arg(6)->Arg(8)->Unit(benchmark::kMicrosecond);
BENCHMARK(Orders_of_both)->Arg(4)->Arg(5)->Arg(8)->Unit(benchmark::kMicrosecond);
BENCHMARK(Orders_of_both_one_by_one)->Arg(4)->Arg(5)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tarven
BENCHMARK_MAIN();
