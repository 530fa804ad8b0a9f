#include "tables/ordinal/pseudo_gamma.h"

#include <algorithm>
#include <cmath>

#include "tables/draws/cell_draws.h"

namespace tarven {

namespace {

using Classes = std::vector<std::vector<int>>;

constexpr std::size_t MostForMedian = 1'000'000;

double Median(std::vector<double>& values) {
    if (values.empty()) return 0;
    const std::size_t middle = values.size() / 2;
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(middle);
    std::nth_element(values.begin(), at, values.end());
    if (values.size() % 2 == 1) return *at;
    return (*at + *std::max_element(values.begin(), at)) / 2;
}

Permutability Permutability_of(const TableVariable& variable, std::size_t categories) {
    if (variable.VTYPE >= 3) return Permutability::fixed;
    return categories > 2 ? Permutability::permutable : Permutability::restricted;
}

Classes Single(const std::vector<int>& categories) {
    Classes classes;
    for (const int c : categories) classes.push_back({c});
    return classes;
}

std::vector<int> First_numbers(std::size_t n) {
    std::vector<int> numbers(n);
    for (std::size_t k = 0; k < n; ++k) numbers[k] = static_cast<int>(k + 1);
    return numbers;
}

std::vector<TwoWayTable> Regroup_all(std::span<const TwoWayTable> strata, const Classes& rows,
                                     const Classes& columns) {
    std::vector<TwoWayTable> result;
    for (const TwoWayTable& table : strata) result.push_back(Regrouped(table, rows, columns));
    return result;
}

std::vector<TwoWayTable> Turn_all(std::span<const TwoWayTable> strata) {
    std::vector<TwoWayTable> result;
    for (const TwoWayTable& table : strata) {
        TwoWayTable& turned = result.emplace_back(table.columns, table.rows);
        for (int i = 1; i <= table.rows + 1; ++i)
            for (int j = 1; j <= table.columns + 1; ++j) turned(j, i) = table(i, j);
    }
    return result;
}

std::vector<ExpectedTable> Expected_of(std::span<const TwoWayTable> strata) {
    std::vector<ExpectedTable> expected;
    for (const TwoWayTable& table : strata) expected.push_back(Expected_under_independence(table));
    return expected;
}

/// Runs simulations until one is stopped; from then on everything is asymptotic.
struct Simulator {
    MonteCarloRule rule;
    std::uint32_t seed = 0;
    bool wanted = false;
    StopCheck stop;
    DrawMemory memory{};

    bool Stop() {
        if (stop && stop()) wanted = false;
        return !wanted;
    }
};

/// The two-sided p of partial gamma.
double Two_sided_p(std::span<const TwoWayTable> strata, const PartialGamma& gamma,
                   Simulator& simulator) {
    if (!simulator.wanted) return std::min(1.0, 2 * gamma.p);
    const std::vector<ExpectedTable> expected = Expected_of(strata);
    RandomStream stream{simulator.seed};
    const Sim_counts counts = Monte_carlo_test(
        expected, Observed_test(strata, expected, simulator.rule.statistic, true), simulator.rule,
        stream, simulator.memory, [&] { return simulator.Stop(); });
    return counts.PGammaExact2();
}

/// Gammas of two columns at a time: of places i < j, from 0, at i * columns + j.
std::vector<double> Gammas_of_columns(std::span<const TwoWayTable> strata,
                                      std::vector<double>* p = nullptr,
                                      Simulator* simulator = nullptr) {
    if (strata.empty()) return {};
    const int k = strata[0].columns;
    const Classes rows = Single(First_numbers(static_cast<std::size_t>(strata[0].rows)));
    std::vector<double> gammas(static_cast<std::size_t>(k * k));
    for (int i = 1; i <= k; ++i)
        for (int j = i + 1; j <= k; ++j) {
            const std::vector<TwoWayTable> pair = Regroup_all(strata, rows, {{i}, {j}});
            const PartialGamma gamma = Partial_gamma(pair);
            gammas[static_cast<std::size_t>((i - 1) * k + j - 1)] = gamma.gamma;
            if (p) p->push_back(Two_sided_p(pair, gamma, *simulator));
        }
    return gammas;
}

/// How many pairs of columns have a gamma of the other sign than the whole has.
int Pairs_against(std::span<const TwoWayTable> ordered, double whole) {
    const std::vector<double> gammas = Gammas_of_columns(ordered);
    return static_cast<int>(
        std::count_if(gammas.begin(), gammas.end(), [&](double g) { return g * whole < 0; }));
}

CategoryComparison Compare_columns(std::span<const TwoWayTable> ordered,
                                   const std::vector<int>& categories, Simulator& simulator) {
    CategoryComparison comparison;
    comparison.categories = categories;
    std::vector<double> p;
    comparison.gamma = Gammas_of_columns(ordered, &p, &simulator);
    comparison.pairwise = Compare_groups(static_cast<int>(categories.size()), p);
    return comparison;
}

/// The categories behind the classes of the comparison.
Classes Classes_of(const CategoryComparison& comparison) {
    Classes classes;
    for (const std::vector<int>& group : comparison.pairwise.classes) {
        std::vector<int>& members = classes.emplace_back();
        for (const int place : group)
            members.push_back(comparison.categories[static_cast<std::size_t>(place - 1)]);
    }
    return classes;
}

Classes In_order(const Classes& classes, const std::vector<int>& order) {
    Classes result;
    for (const int n : order) result.push_back(classes[static_cast<std::size_t>(n - 1)]);
    return result;
}

CollapsedOrder Collapse(std::span<const TwoWayTable> strata, const PseudoGammaAnalysis& analysis) {
    CollapsedOrder result;
    Classes rows = Single(analysis.best.rows), columns = Single(analysis.best.columns);
    OrderProblem problem;
    for (const CategoryComparison& comparison : analysis.comparisons) {
        (comparison.columns ? columns : rows) = Classes_of(comparison);
        if (!comparison.pairwise.all_different()) result.collapsed = true;
    }
    problem.rows = First_numbers(rows.size());
    problem.columns = First_numbers(columns.size());
    problem.permute_rows = analysis.problem.permute_rows && rows.size() > 1;
    problem.permute_columns = analysis.problem.permute_columns && columns.size() > 1;
    const std::vector<TwoWayTable> tables = Regroup_all(strata, rows, columns);
    const BestOrder best = OrderSearch(problem).Find_best_order(tables);
    result.rows = In_order(rows, best.rows);
    result.columns = In_order(columns, best.columns);
    result.gamma = best.gamma();
    const std::vector<TwoWayTable> ordered = Regroup_all(strata, result.rows, result.columns);
    result.column_gamma = Gammas_of_columns(ordered);
    result.row_gamma = Gammas_of_columns(Turn_all(ordered));
    return result;
}

void Search(PseudoGammaAnalysis& analysis, std::span<const TwoWayTable> strata,
            Simulator& simulator) {
    OrderSearch search(analysis.problem);
    analysis.best = search.Find_best_order(strata);
    if (analysis.best.P <= 0) {
        analysis.outcome = PseudoGammaOutcome::no_pairs;
        return;
    }
    const std::vector<TwoWayTable> ordered =
        Regroup_all(strata, Single(analysis.best.rows), Single(analysis.best.columns));
    const std::vector<TwoWayTable> turned = Turn_all(ordered);
    analysis.columns_against = Pairs_against(ordered, analysis.best.gamma());
    analysis.rows_against = Pairs_against(turned, analysis.best.gamma());
    analysis.asymptotic = Partial_gamma(ordered);
    if (analysis.outcome != PseudoGammaOutcome::searched) return;
    if (simulator.wanted) {
        RandomStream stream{simulator.seed};
        analysis.simulation = Simulate_pseudo_gamma(
            Expected_of(strata), std::abs(analysis.best.gamma()), search, simulator.rule, stream,
            simulator.memory, [&] { return simulator.Stop(); });
    }
    if (analysis.problem.permute_columns) {
        analysis.comparisons.push_back(Compare_columns(ordered, analysis.best.columns, simulator));
        analysis.comparisons.back().columns = true;
    }
    if (analysis.problem.permute_rows)
        analysis.comparisons.push_back(Compare_columns(turned, analysis.best.rows, simulator));
    analysis.collapsed = Collapse(strata, analysis);
}

}  // namespace

PseudoGammaSimulation Simulate_pseudo_gamma(std::span<const ExpectedTable> expected,
                                            double observed, OrderSearch& search,
                                            const MonteCarloRule& rule, RandomStream& stream,
                                            DrawMemory& memory, const StopCheck& stop) {
    PseudoGammaSimulation result;
    std::vector<Margins> margins;
    std::vector<TwoWayTable> tables;
    for (const ExpectedTable& e : expected) {
        margins.push_back(Margins_of_expected(e));
        tables.emplace_back(e.rows, e.columns);
    }
    result.wanted = rule.nsim;
    const ObservedTest test{.statistic = observed};
    std::vector<double> gammas;
    while (result.counts.n < rule.nsim) {
        for (std::size_t s = 0; s < tables.size(); ++s)
            Draw_table(margins[s], stream, memory, tables[s]);
        const double gamma = search.Largest_gamma(tables);
        if (gammas.size() < MostForMedian) gammas.push_back(gamma);
        const bool settled = Update_sim_counts(result.counts, test, rule, gamma, 0);
        if ((stop && stop()) || settled) break;
    }
    result.median = Median(gammas);
    return result;
}

PseudoGammaAnalysis Analyse_pseudo_gamma(const LocalHypothesis& hypothesis,
                                         const TestSettings& settings, const StopCheck& stop) {
    PseudoGammaAnalysis analysis;
    std::vector<TwoWayTable> strata;
    for (const LocalSlice& slice : hypothesis.slices)
        if (!Is_margin(hypothesis, slice) && slice.counts.Total() > 0)
            strata.push_back(slice.counts);
    analysis.problem = Categories_with_cases(strata);
    analysis.rows = Permutability_of(hypothesis.X, analysis.problem.rows.size());
    analysis.columns = Permutability_of(hypothesis.Y, analysis.problem.columns.size());
    analysis.problem.permute_rows = analysis.rows == Permutability::permutable;
    analysis.problem.permute_columns = analysis.columns == Permutability::permutable;
    if (strata.empty()) {
        analysis.outcome = PseudoGammaOutcome::no_pairs;
        return analysis;
    }
    if (!hypothesis.Z.empty()) analysis.two_factor = Two_factor_test(strata, Expected_of(strata));
    if (analysis.problem.too_many()) {
        analysis.outcome = PseudoGammaOutcome::too_many;
        return analysis;
    }
    if (!analysis.problem.permute_rows && !analysis.problem.permute_columns)
        analysis.outcome = PseudoGammaOutcome::no_permutations;
    Simulator simulator{.rule = Monte_carlo_rule(settings),
                        .seed = settings.Seed,
                        .wanted = settings.ExactTests && settings.Nsim > 0,
                        .stop = stop};
    simulator.rule.two_sided = true;
    const bool wanted = simulator.wanted;
    Search(analysis, strata, simulator);
    analysis.stopped = wanted && !simulator.wanted;
    return analysis;
}

}  // namespace tarven
