#include "tables/table/two_way.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "support/reference_figures.h"
#include "tables/numbers/distributions.h"
#include "tables/table/gamma.h"

namespace tarven {
namespace {

constexpr Statistic all_statistics[] = {Statistic::pearson, Statistic::deviance,
                                        Statistic::power_divergence};

std::string Symbol(Statistic statistic) {
    switch (statistic) {
        case Statistic::pearson:
            return "X2";
        case Statistic::deviance:
            return "G2";
        default:
            return "D2";
    }
}

TwoWayTable Random_counts(std::mt19937& random, int R, int C, int most) {
    TwoWayTable t(R, C);
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j) t(i, j) = static_cast<int>(random() % (most + 1));
    Fill_margins(t);
    return t;
}

// Statistics, degrees of freedom, tails and gamma of two-way tables and of strata, from R and
// scipy.
TEST(TwoWayStatistic, AgreesWithTheReferenceFigures) {
    int compared = 0;
    for (const ReferenceHypothesis& h : Reference_hypotheses()) {
        if (!h.figures.contains("test")) continue;
        const auto& figures = h.figures.at("test");
        for (const Statistic statistic : all_statistics) {
            const std::string symbol = Symbol(statistic);
            if (!figures.contains(symbol)) continue;
            Extended sum = 0;
            int df = 0;
            for (std::size_t s = 0; s < h.strata.size(); ++s) {
                const auto one =
                    Two_way_statistic(h.strata[s], h.expected[s], {.statistic = statistic});
                sum += one.statistic;
                df += one.df;
                EXPECT_EQ(one.p,
                          one.df > 0 ? Chi2_tail(one.df, static_cast<double>(one.statistic)) : 1);
            }
            const auto value = static_cast<double>(sum);
            const double expected = figures.at(symbol).get<double>();
            EXPECT_NEAR(value, expected, 6e-12 * expected + 1e-12) << h.name << symbol;
            EXPECT_EQ(df, figures.at("df").get<int>()) << h.name;
            const std::string p = "p_" + symbol;
            const bool rough = figures.contains(p + "_cube_root_df_above_100");
            const double tail = figures.at(rough ? p + "_cube_root_df_above_100" : p).get<double>();
            if (df <= 100 && value >= 170)
                EXPECT_LE(Chi2_tail(df, value), tail) << h.name;
            else
                EXPECT_NEAR(Chi2_tail(df, value), tail, 1e-10 * tail + 1e-18) << h.name << symbol;
            ++compared;
        }
    }
    EXPECT_GT(compared, 300);
}

TEST(Gamma, AgreesWithTheReferenceFigures) {
    int compared = 0;
    for (const ReferenceHypothesis& h : Reference_hypotheses()) {
        if (!h.gamma || !h.figures.contains("test") || !h.figures.at("test").contains("gamma"))
            continue;
        const auto& figures = h.figures.at("test");
        double P = 0, Q = 0, V = 0;
        for (const TwoWayTable& stratum : h.strata) {
            const GammaRecord g = Gamma_of_table(stratum);
            P += g.P, Q += g.Q, V += g.V;
        }
        EXPECT_EQ(P, figures.at("P").get<double>()) << h.name;
        EXPECT_EQ(Q, figures.at("Q").get<double>()) << h.name;
        EXPECT_NEAR(V, figures.at("V").get<double>(), 1e-11 * V) << h.name;
        const PartialGamma partial = Partial_gamma(P, Q, V);
        EXPECT_NEAR(partial.gamma, figures.at("gamma").get<double>(), 1e-11) << h.name;
        EXPECT_NEAR(partial.p, figures.at("p_gamma_1sided").get<double>(), 1e-10) << h.name;
        ++compared;
    }
    EXPECT_GT(compared, 80);
}

/// Every case with every other, as the definition says.
Concordance Pairs_by_definition(const TwoWayTable& t, std::int64_t& squares) {
    std::int64_t P = 0, Q = 0;
    squares = 0;
    for (int i = 1; i <= t.rows; ++i)
        for (int j = 1; j <= t.columns; ++j) {
            std::int64_t A = 0, D = 0;
            for (int k = 1; k <= t.rows; ++k)
                for (int l = 1; l <= t.columns; ++l) {
                    if ((k < i && l < j) || (k > i && l > j)) A += t(k, l);
                    if ((k < i && l > j) || (k > i && l < j)) D += t(k, l);
                }
            P += t(i, j) * (A + D);
            Q += t(i, j) * (A - D);
            squares += t(i, j) * (A - D) * (A - D);
        }
    return {P, Q};
}

TEST(Gamma, CountsEveryPairOfCasesTwice) {
    std::mt19937 random(1);
    for (int k = 0; k < 300; ++k) {
        const int R = 1 + static_cast<int>(random() % 7), C = 1 + static_cast<int>(random() % 7);
        const TwoWayTable t = Random_counts(random, R, C, k % 3 == 0 ? 1 : 30);
        std::int64_t squares = 0;
        const Concordance pairs = Pairs_by_definition(t, squares);
        EXPECT_EQ(Concordance_of(t), pairs);
        const GammaRecord g = Gamma_of_table(t);
        EXPECT_EQ(g.P, static_cast<double>(pairs.P));
        EXPECT_EQ(g.Q, static_cast<double>(pairs.Q));
        if (pairs.P > 0) {
            const double Q = g.Q;
            EXPECT_NEAR(g.V, 4 * (static_cast<double>(squares) - Q * Q / t.Total()),
                        1e-9 * g.V + 1e-9);
        }
        TwoWayTable reversed(R, C);
        for (int i = 1; i <= R; ++i)
            for (int j = 1; j <= C; ++j) reversed(i, j) = t(R + 1 - i, j);
        EXPECT_EQ(Gamma_of_table(reversed).gamma, -g.gamma);
    }
}

TEST(Gamma, EdgesOfTheTest) {
    const GammaRecord nothing = Gamma_of_table(TwoWayTable(3, 3));
    EXPECT_EQ(nothing.gamma, 0);
    EXPECT_EQ(nothing.p, 1);
    const GammaRecord one_row = Gamma_of_table(Table_of_rows({{1, 2, 3}}));
    EXPECT_EQ(one_row.P, 0);
    EXPECT_EQ(one_row.V, 0);
    EXPECT_EQ(Partial_gamma(0, 0, 0).p, 1);
    EXPECT_EQ(Partial_gamma(10, 5, 0).z, 4);
    EXPECT_EQ(Partial_gamma(10, 5, 0).p, Normal_p(4));
    EXPECT_EQ(Partial_gamma(100, 100, 600).p, 0.000001);  // z just above 4
    EXPECT_NEAR(Partial_gamma(100, 100, 10000).p, 0.158655253931457, 1e-15);
    // 2 000 000 cases: more pairs than 32 bits hold.
    const GammaRecord many = Gamma_of_table(Table_of_rows({{1000000, 0}, {0, 1000000}}));
    EXPECT_EQ(many.P, 2e12);
    EXPECT_EQ(many.gamma, 1);
}

TEST(TwoWayStatistic, EmptyRowsAndColumnsDoNotCount) {
    const TwoWayTable t = Table_of_rows({{1, 0, 3}, {0, 0, 0}, {2, 0, 2}});
    const TwoWayTable dense = Table_of_rows({{1, 3}, {2, 2}});
    for (const Statistic statistic : all_statistics) {
        const StatisticRule rule{.statistic = statistic};
        const auto a = Two_way_statistic(t, Expected_of_slice(t), rule);
        const auto b = Two_way_statistic(dense, Expected_of_slice(dense), rule);
        EXPECT_EQ(a.df, 1);
        EXPECT_EQ(a.statistic, b.statistic);
        EXPECT_EQ(a.p, b.p);
    }
    const TwoWayTable empty(3, 3);
    const auto none = Two_way_statistic(empty, Expected_of_slice(empty), {});
    EXPECT_EQ(none.statistic, 0);
    EXPECT_EQ(none.df, 0);
    EXPECT_EQ(none.p, 1);
    const TwoWayTable one_row = Table_of_rows({{3, 4}, {0, 0}});
    EXPECT_EQ(Two_way_statistic(one_row, Expected_of_slice(one_row), {}).df, 0);
}

TEST(TwoWayTable, ExpectedCountsKeepTheMargins) {
    std::mt19937 random(2);
    for (int k = 0; k < 50; ++k) {
        const TwoWayTable t = Random_counts(random, 4, 5, 20);
        for (const ExpectedTable& e : {Expected_under_independence(t), Expected_of_slice(t)}) {
            ExpectedTable summed = e;
            Fill_margins(summed);
            for (int i = 1; i <= 5; ++i) {
                EXPECT_EQ(e(i, 6), t(i, 6));
                EXPECT_NEAR(summed(i, 6), t(i, 6), 1e-12 * t.Total());
            }
        }
    }
}

}  // namespace
}  // namespace tarven
