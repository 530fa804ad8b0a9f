#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "support/reference_figures.h"
#include "support/session.h"
#include "tables/numbers/stream_workspace.h"
#include "tables/ordinal/pseudo_gamma_report.h"
#include "tables/table/contingency_table.h"
#include "tables/table/table_workspace.h"

namespace tarven {
namespace {

using Classes = std::vector<std::vector<int>>;

TwoWayTable Random_counts(std::mt19937& random, int R, int C, int most) {
    std::uniform_int_distribution<int> count(0, most);
    TwoWayTable table(R, C);
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j) table(i, j) = count(random);
    Fill_margins(table);
    return table;
}

std::vector<int> Numbers(int n) {
    std::vector<int> numbers(static_cast<std::size_t>(n));
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

Classes Single(const std::vector<int>& order) {
    Classes classes;
    for (const int c : order) classes.push_back({c});
    return classes;
}

TwoWayTable Ordered(const TwoWayTable& table, const std::vector<int>& rows,
                    const std::vector<int>& columns) {
    return Regrouped(table, Single(rows), Single(columns));
}

/// Every order of both variables, each table counted anew.
double Largest_gamma_by_force(const std::vector<TwoWayTable>& strata, const OrderProblem& problem) {
    double largest = 0;
    std::vector<int> rows = problem.rows;
    do {
        std::vector<int> columns = problem.columns;
        do {
            std::int64_t P = 0, Q = 0;
            for (const TwoWayTable& table : strata) {
                const Concordance pairs = Concordance_of(Ordered(table, rows, columns));
                P += pairs.P;
                Q += pairs.Q;
            }
            largest = std::max(largest, std::abs(Gamma_of_pairs(P, Q)));
        } while (problem.permute_columns && std::next_permutation(columns.begin(), columns.end()));
    } while (problem.permute_rows && std::next_permutation(rows.begin(), rows.end()));
    return largest;
}

double Gamma_in_order(const std::vector<TwoWayTable>& strata, const BestOrder& order) {
    std::int64_t P = 0, Q = 0;
    for (const TwoWayTable& table : strata) {
        const Concordance pairs = Concordance_of(Ordered(table, order.rows, order.columns));
        P += pairs.P;
        Q += pairs.Q;
    }
    return Gamma_of_pairs(P, Q);
}

TEST(OrderSearch, FindsTheLargestGammaOfAllOrders) {
    std::mt19937 random(3);
    for (int k = 0; k < 120; ++k) {
        const int R = 2 + k % 4, C = 2 + (k / 4) % 4;
        std::vector<TwoWayTable> strata;
        for (int s = 0; s <= k % 3; ++s) strata.push_back(Random_counts(random, R, C, 1 + k % 9));
        OrderProblem problem = Categories_with_cases(strata);
        if (problem.rows.empty()) continue;
        problem.permute_rows = k % 3 != 0;
        problem.permute_columns = k % 3 != 1;
        OrderSearch search(problem);
        const double largest = Largest_gamma_by_force(strata, problem);
        const BestOrder best = search.Find_best_order(strata);
        EXPECT_EQ(best.gamma(), largest) << R << " by " << C;
        EXPECT_EQ(Gamma_in_order(strata, best), largest);
        EXPECT_EQ(search.Largest_gamma(strata), largest);
    }
}

/// Counts that grow along a diagonal.
TwoWayTable Ordinal_counts(int R, int C) {
    TwoWayTable table(R, C);
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j)
            table(i, j) = static_cast<int>(
                60 * std::exp(-4 * std::pow((i - 1.0) / (R - 1) - (j - 1.0) / (C - 1), 2)));
    Fill_margins(table);
    return table;
}

TEST(OrderSearch, FindsTheOrderOfShuffledCategoriesAgain) {
    std::mt19937 random(8);
    for (const auto& [R, C, both] :
         {std::tuple{3, 16, false}, {5, 9, false}, {6, 5, true}, {7, 8, true}}) {
        std::vector<int> rows = Numbers(R), columns = Numbers(C);
        if (both) std::shuffle(rows.begin(), rows.end(), random);
        std::shuffle(columns.begin(), columns.end(), random);
        const std::vector<TwoWayTable> shuffled{Ordered(Ordinal_counts(R, C), rows, columns)};
        OrderProblem problem = Categories_with_cases(shuffled);
        problem.permute_rows = both;
        problem.permute_columns = true;
        const BestOrder best = OrderSearch(problem).Find_best_order(shuffled);
        std::vector<int> found;
        for (const int j : best.columns) found.push_back(columns[static_cast<std::size_t>(j - 1)]);
        if (found.front() > found.back()) std::reverse(found.begin(), found.end());
        EXPECT_EQ(found, Numbers(C));
        EXPECT_EQ(best.gamma(), Gamma_of_table(Ordinal_counts(R, C)).gamma);
    }
}

TEST(OrderSearch, TakesTheFirstOfEqualOrdersAndLeavesEmptyCategoriesOut) {
    // Columns 1 and 4 are alike, 3 is empty.
    const TwoWayTable table = Table_of_rows({{5, 1, 0, 5}, {2, 8, 0, 2}});
    OrderProblem problem = Categories_with_cases(std::vector{table});
    problem.permute_columns = true;
    EXPECT_EQ(problem.column_permutations(), 3);
    EXPECT_EQ(OrderSearch(problem).Find_best_order(std::vector{table}).columns,
              (std::vector<int>{1, 4, 2}));
}

LocalHypothesis Hypothesis_of(std::vector<TwoWayTable> strata, int type_x, int type_y) {
    LocalHypothesis h{.X = {.label = 'X', .DIM = strata[0].rows, .VTYPE = type_x},
                      .Y = {.label = 'Y', .DIM = strata[0].columns, .VTYPE = type_y}};
    if (strata.size() > 1)
        h.Z.push_back({.label = 'Z', .DIM = static_cast<int>(strata.size()), .VTYPE = 3});
    for (std::size_t s = 0; s < strata.size(); ++s) {
        std::vector<int> category;
        if (strata.size() > 1) category.push_back(static_cast<int>(s + 1));
        h.slices.push_back({category, strata[s]});
    }
    return h;
}

TEST(PseudoGamma, PermutesNominalVariablesWithThreeCategoriesAndMore) {
    const TestSettings settings;
    const auto outcome = [&](int R, int C, int type_x, int type_y) {
        return Analyse_pseudo_gamma(Hypothesis_of({Ordinal_counts(R, C)}, type_x, type_y), settings)
            .outcome;
    };
    EXPECT_EQ(outcome(3, 3, 3, 3), PseudoGammaOutcome::no_permutations);
    EXPECT_EQ(outcome(2, 2, 2, 2), PseudoGammaOutcome::no_permutations) << "mirror images";
    EXPECT_EQ(outcome(2, 3, 2, 2), PseudoGammaOutcome::searched);
    EXPECT_EQ(outcome(2, 16, 3, 2), PseudoGammaOutcome::searched);
    EXPECT_EQ(outcome(2, 17, 3, 2), PseudoGammaOutcome::too_many);
    EXPECT_EQ(outcome(17, 3, 3, 2), PseudoGammaOutcome::searched) << "the long one is ordinal";
    EXPECT_EQ(outcome(3, 9, 2, 2), PseudoGammaOutcome::too_many);
    const TwoWayTable one_row = Table_of_rows({{4, 4, 4}, {0, 0, 0}});
    EXPECT_EQ(Analyse_pseudo_gamma(Hypothesis_of({one_row}, 3, 2), settings).outcome,
              PseudoGammaOutcome::no_pairs);
    EXPECT_EQ(Analyse_pseudo_gamma(Hypothesis_of({TwoWayTable(2, 3)}, 3, 2), settings).outcome,
              PseudoGammaOutcome::no_pairs);
}

// 400 null tables: the share of p-values at most a is that of a, within 3.3 standard errors.
TEST(PseudoGamma, HasUniformMonteCarloPValuesUnderIndependence) {
    TwoWayTable margins(3, 4);
    for (int i = 1; i <= 3; ++i)
        for (int j = 1; j <= 4; ++j) margins(i, j) = 3 * i + 5 * j;
    Fill_margins(margins);
    const std::vector<ExpectedTable> expected{Expected_under_independence(margins)};
    OrderProblem problem = Categories_with_cases(std::vector{margins});
    problem.permute_columns = true;
    OrderSearch search(problem);
    MonteCarloRule rule;
    rule.nsim = 199;
    DrawMemory memory;
    const int tables = 400;
    std::vector<double> p;
    for (int k = 0; k < tables; ++k) {
        RandomStream stream{static_cast<std::uint32_t>(7919 * k + 1)};
        const std::vector<TwoWayTable> null_table{Random_table(expected[0], stream)};
        stream.word = static_cast<std::uint32_t>(104729 * k + 5);
        p.push_back(Simulate_pseudo_gamma(expected, search.Largest_gamma(null_table), search, rule,
                                          stream, memory)
                        .counts.PExact());
    }
    for (const double a : {0.05, 0.1, 0.25, 0.5, 0.75, 0.9}) {
        const double share = static_cast<double>(std::count_if(
                                 p.begin(), p.end(), [&](double one) { return one <= a; })) /
                             tables;
        EXPECT_NEAR(share, a, 3.3 * std::sqrt(a * (1 - a) / tables)) << "at " << a;
    }
}

TEST(PseudoGamma, StartsItsOwnStreamAndEndsByTheRuleOrTheUser) {
    std::mt19937 random(12);
    const LocalHypothesis h =
        Hypothesis_of({Random_counts(random, 3, 4, 9), Random_counts(random, 3, 4, 9)}, 3, 2);
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 400;
    The_stream.word = 77;
    const PseudoGammaAnalysis first = Analyse_pseudo_gamma(h, settings);
    EXPECT_EQ(The_stream.word, 77U);
    EXPECT_EQ(first.simulation.counts.n, 400);
    EXPECT_EQ(first.simulation.counts, Analyse_pseudo_gamma(h, settings).simulation.counts);
    ASSERT_TRUE(first.two_factor);
    settings.SequentialTests = true;
    settings.SequentialLimit = 20;
    settings.SimBoundary = 1000;
    // Gamma 0: every random table counts.
    const TwoWayTable flat = Table_of_rows({{5, 5, 5, 5}, {5, 5, 5, 5}, {5, 5, 5, 5}});
    EXPECT_EQ(Analyse_pseudo_gamma(Hypothesis_of({flat}, 3, 2), settings).simulation.counts.n, 20);
    const PseudoGammaAnalysis by_user = Analyse_pseudo_gamma(h, settings, [] { return true; });
    EXPECT_EQ(by_user.simulation.counts.n, 1);
    EXPECT_EQ(by_user.comparisons.size(), 1) << "the rest is asymptotic";
}

TEST(PseudoGamma, CollapsesCategoriesThatPairsDoNotTellApart) {
    // Categories 2 and 3 have the same rows; 1 and 4 lie on either side.
    const TwoWayTable table = Table_of_rows({{60, 30, 31, 5}, {20, 30, 30, 20}, {5, 30, 29, 70}});
    const PseudoGammaAnalysis analysis =
        Analyse_pseudo_gamma(Hypothesis_of({table}, 3, 2), TestSettings{});
    ASSERT_EQ(analysis.comparisons.size(), 1);
    Classes classes = analysis.collapsed.columns;
    for (std::vector<int>& one : classes) std::sort(one.begin(), one.end());
    EXPECT_EQ(classes, (Classes{{1}, {2, 3}, {4}}));
    EXPECT_EQ(analysis.columns_against, 0);
    const TwoWayTable collapsed = Regrouped(table, Single({1, 2, 3}), analysis.collapsed.columns);
    EXPECT_EQ(analysis.collapsed.gamma, Gamma_of_table(collapsed).gamma);
}

TEST(PseudoGamma, SaysWhyThereIsNoSearch) {
    const TestSettings settings;
    const auto lines = [&](int R, int C, int type_y) {
        const LocalHypothesis h = Hypothesis_of({Ordinal_counts(R, C)}, 3, type_y);
        return Pseudo_gamma_lines(h, Analyse_pseudo_gamma(h, settings), settings);
    };
    EXPECT_TRUE(Has_line_with(lines(2, 17, 2), "too many categories for this procedure:"));
    EXPECT_TRUE(Has_line_with(lines(3, 3, 3), "Both variables are ordinal"));
    EXPECT_TRUE(Has_line_with(lines(3, 3, 3), "Pseudo gamma: no permutations"));
}

struct PseudoGammaCommand : SessionTest {};

TEST_F(PseudoGammaCommand, RecodesTheTableOnlyWhenTold) {
    Copy_example("titanic");
    Run({"OPE titanic", "TAB SG", "PGA CS", "N"});
    EXPECT_EQ(The_table.table.labels(), "SG");
    Run({"PGA CS"});
    EXPECT_EQ(The_table.table.labels(), "SG") << "no answer is a no";
    Run({"PGA CS", "Y"});
    const ContingencyTable& table = The_table.table;
    ASSERT_EQ(table.labels(), "CS");
    EXPECT_EQ(table.DIM(1), 3);
    EXPECT_EQ(table.variable(1).VTYPE, 3);
    EXPECT_EQ(table.variables[0].categories, (std::vector<std::string>{"Crew+3rd", "2nd", "1st"}));
    const int cell[] = {1, 2}, total[] = {4, 3};
    EXPECT_EQ(Read_cell(table, cell), 178 + 212);
    EXPECT_EQ(Read_cell(table, total), 2201);
}

TEST(PseudoGamma, AStopIsSaidBesideTheP) {
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 100;
    const LocalHypothesis h = Hypothesis_of({Ordinal_counts(3, 3)}, 2, 2);
    int asked = 0;
    const PseudoGammaAnalysis stopped =
        Analyse_pseudo_gamma(h, settings, [&] { return ++asked == 7; });
    EXPECT_TRUE(stopped.stopped);
    EXPECT_TRUE(Has_line_with(Pseudo_gamma_lines(h, stopped, settings),
                              "Stopped: p rests on 7 of 100 random tables"));
    EXPECT_FALSE(Analyse_pseudo_gamma(h, settings, [] { return false; }).stopped);
}

}  // namespace
}  // namespace tarven
