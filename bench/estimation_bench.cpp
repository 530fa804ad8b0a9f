#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "rasch/estimation/estimate_gllrm.h"

namespace tarven {
namespace {

std::size_t At(int i) {
    return static_cast<std::size_t>(i);
}

/// The stream that rasch_peers.R draws too, so that both fit the same persons.
/// Park & Miller (1988), CACM 31, 1192-1201.
struct Lehmer {
    std::int64_t state = 1;
    double Draw() {
        state = state * 16807 % 2147483647;
        return static_cast<double>(state) / 2147483647.0;
    }
};

/// Items of these highest scores with thresholds spread over -1.5 to 1.5, persons with abilities
/// near normal; exogenous variables in turn.
struct Sample {
    GLLRM model;
    ResponseTable table;
};
Sample Sample_of(const std::vector<int>& highest, int persons, const std::vector<int>& exo = {}) {
    Sample sample;
    for (const int top : highest) {
        Item& item = sample.model.items[At(++sample.model.NITEMS)];
        item.item_dim = top + 1;
        item.highest_Item_score = top;
    }
    for (const int dim : exo) sample.model.Exogene[At(++sample.model.NEXOGENE)].exo_dim = dim;
    sample.table.NITEMS = sample.model.NITEMS;
    sample.table.NEXOGENE = sample.model.NEXOGENE;
    Lehmer stream;
    const int n = sample.model.NITEMS;
    for (int p = 0; p < persons; ++p) {
        double theta = -6;
        for (int k = 0; k < 12; ++k) theta += stream.Draw();
        for (int i = 1; i <= n; ++i) {
            const double beta = -1.5 + 3.0 * (i - 1) / (n - 1);
            const int top = highest[At(i - 1)];
            std::vector<double> weights = {1};
            double sum = 1;
            for (int x = 1; x <= top; ++x) {
                const double shift = top > 1 ? (x - (top + 1) / 2.0) * 0.5 : 0;
                weights.push_back(weights.back() * std::exp(theta - beta - shift));
                sum += weights.back();
            }
            double rest = stream.Draw() * sum;
            int x = top;  // from the top, so that a dichotomous item is solved when u < P
            while (x > 0 && rest >= weights[At(x)]) rest -= weights[At(x--)];
            sample.table.codes.push_back(static_cast<std::uint8_t>(x));
        }
        int turn = p;
        for (const int dim : exo) {
            sample.table.codes.push_back(static_cast<std::uint8_t>(1 + turn % dim));
            turn /= dim;
        }
        sample.table.counts.push_back(1);
    }
    return sample;
}

void Depend(GLLRM& model, int i, int j) {
    model.LocalDependence[At(i)] |= Number(j);
    model.LocalDependence[At(j)] |= Number(i);
}

/// Critical Delta is 10 to the -k persons.
void Estimate(benchmark::State& state, const Sample& sample, int k) {
    EstimationSettings settings;
    settings.stops.critical_Delta = std::pow(10.0, -k);
    EstimationMemory memory;
    int steps = 0;
    for (auto _ : state) {
        const auto estimate = Estimate_GLLRM(sample.model, sample.table, settings, memory);
        steps = estimate->iteration.steps;
        benchmark::DoNotOptimize(estimate);
    }
    state.counters["steps"] = steps;
}

void Rasch_model_of_30_items_and_1000_persons(benchmark::State& state) {
    Estimate(state, Sample_of(std::vector<int>(30, 1), 1000), static_cast<int>(state.range(0)));
}
BENCHMARK(Rasch_model_of_30_items_and_1000_persons)
    ->DenseRange(2, 8, 2)
    ->Unit(benchmark::kMicrosecond);

void Partial_credit_model_of_24_items_and_316_persons(benchmark::State& state) {
    Estimate(state, Sample_of(std::vector<int>(24, 2), 316), static_cast<int>(state.range(0)));
}
BENCHMARK(Partial_credit_model_of_24_items_and_316_persons)
    ->DenseRange(2, 8, 2)
    ->Unit(benchmark::kMicrosecond);

/// Three terms of DIF (two sources, 2 by 3) and two dependent pairs.
Sample Sample_with_terms() {
    Sample sample = Sample_of(std::vector<int>(24, 2), 316, {2, 3});
    Depend(sample.model, 1, 2);
    Depend(sample.model, 5, 9);
    sample.model.ItemBias[2] = Number(1);
    sample.model.ItemBias[7] = Number(1) | Number(2);
    return sample;
}

void Steps_with_3_DIF_terms_and_2_pairs(benchmark::State& state) {
    Estimate(state, Sample_with_terms(), 4);
}
BENCHMARK(Steps_with_3_DIF_terms_and_2_pairs)->Unit(benchmark::kMicrosecond);

/// Its peer: one table at a time, as textbooks fit a loglinear model, to the same gap.
void Sweeps_with_3_DIF_terms_and_2_pairs(benchmark::State& state) {
    const Sample sample = Sample_with_terms();
    const ModelStructure structure = Structure_of(sample.model);
    PolynomialMemory memory;
    ExpectedMargins expected;
    for (auto _ : state) {
        const SufficientMargins margins =
            Complete_margins(sample.model, structure, sample.table, {});
        GLLRMParameters parameters = Start_parameters(structure, margins);
        while (*Take_a_sweep(structure, margins, {}, memory, expected, parameters) >= 1e-4) {
        }
        benchmark::DoNotOptimize(parameters);
    }
}
BENCHMARK(Sweeps_with_3_DIF_terms_and_2_pairs)->Unit(benchmark::kMicrosecond);

void Scores_to_253_of_54_items(benchmark::State& state) {
    std::vector<int> highest(37, 5);
    highest.resize(54, 4);
    Estimate(state, Sample_of(highest, 1000), 4);
}
BENCHMARK(Scores_to_253_of_54_items)->Unit(benchmark::kMicrosecond);

void Growth_with_items(benchmark::State& state) {
    Estimate(state, Sample_of(std::vector<int>(At(static_cast<int>(state.range(0))), 1), 1000), 4);
}
BENCHMARK(Growth_with_items)->Arg(10)->Arg(20)->Arg(40)->Unit(benchmark::kMicrosecond);

void Growth_with_persons(benchmark::State& state) {
    Estimate(state, Sample_of(std::vector<int>(20, 1), static_cast<int>(state.range(0))), 4);
}
BENCHMARK(Growth_with_persons)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// Three items of 20 have DIF by 1 to 3 sources of four categories.
void Growth_with_cells_of_DIF(benchmark::State& state) {
    const int sources = static_cast<int>(state.range(0));
    Sample sample = Sample_of(std::vector<int>(20, 1), 10000, std::vector<int>(At(sources), 4));
    for (int x = 1; x <= sources; ++x) sample.model.ItemBias[At(5 * x)] = Number(x);
    Estimate(state, sample, 4);
}
BENCHMARK(Growth_with_cells_of_DIF)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

/// The dense road of one component: 3^k response vectors.
void One_component(benchmark::State& state) {
    const int items = static_cast<int>(state.range(0));
    Sample sample = Sample_of(std::vector<int>(24, 2), 316);
    for (int i = 1; i < items; ++i) Depend(sample.model, i, i + 1);
    Estimate(state, sample, 4);
}
BENCHMARK(One_component)->Arg(3)->Arg(6)->Arg(9)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tarven

BENCHMARK_MAIN();
