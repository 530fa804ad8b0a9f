// Tables of eight variables from a million cases of twelve, and the margins of a large table.
#include <benchmark/benchmark.h>

#include <random>

#include "project/data.h"
#include "project/pattern_counter.h"
#include "project/project.h"
#include "tables/table/tabulate.h"

namespace {

using namespace tarven;

constexpr int dims[] = {2, 3, 4, 2, 3, 2, 3, 4, 2, 3, 2, 2};  // tables_peers.R has the same
constexpr int cases = 1000000;

/// The workspace with the cases in DATA and in TABdata; low categories are more frequent, and two
/// cases in a hundred lack a response.
void Make_cases() {
    if (The_data.data_ready) return;
    std::mt19937 random(1);
    The_project.N = static_cast<int>(std::size(dims));
    std::vector<int> highest;
    for (const int dim : dims) {
        highest.push_back(dim);
        Variable& v = The_project.variables[highest.size()];
        v.label = static_cast<char>('A' + highest.size() - 1);
        v.dim = static_cast<std::uint8_t>(dim);
        v.vtype = Ordinal;
    }
    PatternCounter patterns(highest);
    std::vector<std::uint8_t> codes(highest.size());
    for (int c = 0; c < cases; ++c) {
        for (std::size_t v = 0; v < highest.size(); ++v) {
            const auto dim = static_cast<unsigned>(highest[v]);
            const auto one = random() % dim;
            const auto other = random() % dim;
            codes[v] =
                static_cast<std::uint8_t>(random() % 600 == 0 ? 0 : 1 + std::min(one, other));
        }
        The_data.DATA.insert(The_data.DATA.end(), codes.begin(), codes.end());
        patterns.Add(codes.data());
    }
    patterns.Move_to(The_data.TABdata);
    The_data.data_ready = The_data.tabdata_ready = true;
    The_project.Nused = cases;
}

std::vector<TableVariable> First_eight() {
    std::vector<TableVariable> variables;
    for (int v = 1; v <= 8; ++v) variables.push_back(Table_variable(The_project, v));
    return variables;
}

void Tabulate_from(benchmark::State& state, DataSource source) {
    Make_cases();
    for (auto _ : state) {
        const auto made = Tabulate(Cases_of_project(), source, {First_eight(), {}});
        if (!made) state.SkipWithError("no table");
        benchmark::DoNotOptimize(made->table.cells.data());
    }
    state.counters["cells"] = static_cast<double>(The_data.TABdata.Ncells());
}

/// Variables 1 to 3 of a table of four, with the score of all twelve variables in six groups in
/// front or variable 4 behind: what "#" costs.
void Tabulate_score(benchmark::State& state, DataSource source, bool with_score) {
    Make_cases();
    ScoreVariable score;
    for (int v = 1; v <= The_project.N; ++v) score.items.push_back({v, dims[v - 1], v % 3 == 0});
    for (int s = 0; s <= MaxTotalScore; ++s)
        score.group_of.push_back(static_cast<std::uint8_t>(std::min(1 + s / 4, 6)));
    score.group_names.assign(6, "group");
    CasesAtHand at_hand = Cases_of_project();
    const CasesAtHand cases_with{at_hand.definition, at_hand.data, at_hand.files, at_hand.Nused,
                                 &score};
    TableRequest request;
    if (with_score) request.variables.push_back(Table_variable(cases_with, 255));
    for (int v = 1; v <= (with_score ? 3 : 4); ++v)
        request.variables.push_back(Table_variable(cases_with, v));
    for (auto _ : state) {
        const auto made = Tabulate(cases_with, source, request);
        if (!made) state.SkipWithError("no table");
        benchmark::DoNotOptimize(made->table.cells.data());
    }
}

ContingencyTable Large_table() {
    std::vector<TableVariable> variables(8);
    for (TableVariable& v : variables) v.DIM = 6;
    variables[7].DIM = 4;  // 7^7 * 5 = 4117715 cells
    ContingencyTable table = Make_table(std::move(variables));
    std::mt19937 random(2);
    for (std::int32_t& cell : table.cells) cell = static_cast<std::int32_t>(random() % 3);
    return table;
}

void Margins_of_a_large_table(benchmark::State& state) {
    ContingencyTable table = Large_table();
    for (auto _ : state) {
        Add_margins(table);
        benchmark::DoNotOptimize(table.cells.data());
    }
}

/// Every non-empty cell added to each of its 255 margins.
void Margins_cell_by_cell(benchmark::State& state) {
    ContingencyTable table = Large_table();
    for (auto _ : state) {
        BTmargins(table);
        benchmark::DoNotOptimize(table.cells.data());
    }
}

BENCHMARK_CAPTURE(Tabulate_from, cases, DataSource::dataset)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Tabulate_from, cell_store, DataSource::tabdata)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Tabulate_score, plain_cases, DataSource::dataset, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Tabulate_score, score_of_cases, DataSource::dataset, true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Margins_of_a_large_table)->Unit(benchmark::kMillisecond);
BENCHMARK(Margins_cell_by_cell)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
