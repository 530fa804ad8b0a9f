#include <benchmark/benchmark.h>

#include <cmath>

#include "project/data.h"
#include "project/project.h"
#include "tables/independence/own_table.h"

namespace tarven {
namespace {

constexpr int Variables = 20;
constexpr int Categories = 3;

/// The answer of a case to a variable, both from 1: the same in hypothesis_list_peer.R.
std::uint8_t Code_of(double c, double v) {
    const double x = std::sin(c * 12.9898 + v * 78.233) * 43758.5453;
    return static_cast<std::uint8_t>(1 + static_cast<int>((x - std::floor(x)) * Categories));
}

struct Cases {
    ProjectDefinition definition;
    Data data;
    ProjectFiles files;
    std::int64_t count;

    explicit Cases(std::int64_t n) : count(n) {
        definition.N = Variables;
        for (std::size_t v = 1; v <= Variables; ++v) {
            definition.variables[v].dim = Categories;
            definition.variables[v].vtype = 3;
            definition.variables[v].label = static_cast<char>('A' + v - 1);
            definition.variables[v].Levnr = 1;
        }
        data.data_ready = true;
        for (std::int64_t c = 1; c <= n; ++c)
            for (int v = 1; v <= Variables; ++v)
                data.DATA.push_back(Code_of(static_cast<double>(c), v));
    }
};

/// Hypothesis k of a list with `size` conditioning variables: those behind the pair, around.
Hypothesis Row(int k, int size) {
    const auto variable = [k](int step) { return 1 + (k + step) % Variables; };
    std::vector<int> z;
    for (int s = 2; s < 2 + size; ++s) z.push_back(variable(s));
    return Make_hypothesis(Variables, variable(0), variable(1), z);
}

void Test_list(benchmark::State& state) {
    const Cases cases(state.range(1));
    std::vector<Hypothesis> list;
    for (int k = 0; k < state.range(2); ++k)
        list.push_back(Row(k, static_cast<int>(state.range(0))));
    const CasesAtHand at_hand{cases.definition, cases.data, cases.files, cases.count};
    for (auto _ : state) {
        RandomStream stream;
        benchmark::DoNotOptimize(Test_in_own_tables(at_hand, list, {}, stream,
                                                    {.jobs = static_cast<int>(state.range(3))}));
    }
}
BENCHMARK(Test_list)
    ->ArgNames({"Z", "cases", "hypotheses", "jobs"})
    ->Args({3, 1000, 2500, 1})
    ->Args({6, 1000, 2500, 1})
    ->Args({12, 1000, 2500, 1})
    ->Args({12, 1000, 2500, 2})
    ->Args({3, 20000, 2500, 1})
    ->Args({6, 20000, 2500, 1})
    ->Args({12, 20000, 2500, 1})
    ->Args({12, 20000, 2500, 2})
    ->Args({3, 1000000, 25, 1})
    ->Args({6, 1000000, 25, 1})
    ->Args({12, 1000000, 25, 1})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace tarven

BENCHMARK_MAIN();
