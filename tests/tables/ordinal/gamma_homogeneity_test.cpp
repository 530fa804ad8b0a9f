#include "tables/ordinal/gamma_homogeneity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "support/reference_figures.h"
#include "support/session.h"
#include "tables/numbers/distributions.h"
#include "tables/ordinal/weighted_estimate_report.h"

namespace tarven {
namespace {

GammaSums Sums_of(const std::vector<std::vector<int>>& rows) {
    const GammaRecord g = Gamma_of_table(Table_of_rows(rows));
    return {.P = g.P, .Q = g.Q, .V = g.V};
}

// By hand: the table 3 1 / 1 3 has P = 20, Q = 16 and V = 4 (56 - 256/8) = 96, so gamma 0.8 with
// variance 96/400 = 0.24; the table 2 2 / 2 2 has P = 16, Q = 0, V = 4 * 32, so gamma 0 with
// variance 128/256 = 0.5. The weights are 25/6 and 2, the estimate 0.8 (25/6)/(37/6) = 20/37 with
// standard error sqrt(6/37), and X2 = u^2 = 0.8^2/(0.24 + 0.5).
TEST(GammaHomogeneity, AgreesWithTheHandComputedExample) {
    const std::vector<GammaSums> strata{Sums_of({{3, 1}, {1, 3}}), Sums_of({{2, 2}, {2, 2}})};
    const HomogeneityRecord record = Analysis_of_homogeneity(strata);
    ASSERT_TRUE(record.estimate.tested());
    EXPECT_NEAR(record.estimate.estimate, 20.0 / 37, 1e-12);
    EXPECT_NEAR(record.estimate.se, std::sqrt(6.0 / 37), 1e-12);
    EXPECT_NEAR(record.estimate.X2, 0.64 / 0.74, 1e-12);
    EXPECT_EQ(record.estimate.df, 1);
    EXPECT_NEAR(record.estimate.p, Chi2_tail(1, 0.64 / 0.74), 1e-12);
    EXPECT_EQ(record.split, 1);
    EXPECT_NEAR(record.u, 0.8 / std::sqrt(0.74), 1e-12);
    EXPECT_NEAR(record.strata[0].up, 20.0 / 37, 1e-12);
    EXPECT_NEAR(record.strata[1].down, 20.0 / 37, 1e-12);
    // With two groups both residuals are the standardized difference.
    EXPECT_NEAR(record.estimate.groups[0].residual, record.u, 1e-12);
    EXPECT_NEAR(record.estimate.groups[1].residual, -record.u, 1e-12);
}

// Survival by sex on the Titanic, a class a stratum: every cell compared with every other in
// R 4.2.2.
TEST(GammaHomogeneity, AgreesWithFiguresFromR) {
    const HomogeneityRecord record = Analysis_of_homogeneity(
        std::vector{Sums_of({{118, 62}, {4, 141}}), Sums_of({{154, 25}, {13, 93}}),
                    Sums_of({{422, 88}, {106, 90}}), Sums_of({{670, 192}, {3, 20}})});
    EXPECT_NEAR(record.strata[2].sums.gamma(), 0.60564809334573, 1e-13);
    EXPECT_NEAR(record.strata[2].sums.variance(), 0.00741905388341, 1e-13);
    EXPECT_NEAR(record.estimate.estimate, 0.89346589592988, 1e-12);
    EXPECT_NEAR(record.estimate.se, 0.03765453304481, 1e-13);
    EXPECT_NEAR(record.estimate.X2, 13.88008687464514, 1e-10);
    EXPECT_NEAR(record.estimate.p, 0.00307300312819, 1e-12);
    EXPECT_TRUE(record.interaction());
}

TEST(GammaHomogeneity, HasNoTestWithoutEveryVariance) {
    const auto outcome = [](std::vector<GammaSums> strata) {
        return Analysis_of_homogeneity(strata).estimate.outcome;
    };
    const GammaSums some = Sums_of({{3, 1}, {1, 3}}), none = Sums_of({{4, 3}, {0, 0}});
    EXPECT_EQ(none.variance(), 0);
    EXPECT_EQ(outcome({some, none, some}), WeightedOutcome::incomplete);
    EXPECT_EQ(outcome({none, none}), WeightedOutcome::too_few);
    EXPECT_EQ(outcome({some}), WeightedOutcome::too_few) << "one stratum";
    EXPECT_EQ(outcome({}), WeightedOutcome::too_few);
    EXPECT_EQ(outcome(std::vector<GammaSums>(40, some)), WeightedOutcome::done);
    EXPECT_EQ(outcome(std::vector<GammaSums>(41, some)), WeightedOutcome::too_many);
    const HomogeneityRecord certain =
        Analysis_of_homogeneity(std::vector{Sums_of({{5, 0}, {0, 3}}), Sums_of({{0, 5}, {3, 0}})});
    EXPECT_TRUE(certain.interaction()) << "gamma of 1 and of -1";
    EXPECT_EQ(certain.estimate.estimate, 0);
}

TEST(WeightedEstimate, UsesTheWholeCovarianceMatrix) {
    // Two estimates that share the noise 1: y1 = m + a, y2 = m + a + b with Var a = 1, Var b = 3.
    // The second adds nothing, so the estimate is y1 with variance 1, and X2 = (y2 - y1)^2 / 3.
    Matrix covariance;
    covariance(1, 1) = covariance(1, 2) = covariance(2, 1) = 1;
    covariance(2, 2) = 4;
    const double values[] = {2.0, 5.0};
    const WeightedEstimate estimate = Weighted_estimate(values, covariance);
    ASSERT_TRUE(estimate.tested());
    EXPECT_NEAR(estimate.estimate, 2, 1e-12);
    EXPECT_NEAR(estimate.se, 1, 1e-12);
    EXPECT_NEAR(estimate.X2, 3, 1e-12);
    covariance(2, 2) = 1;  // the same number twice
    EXPECT_EQ(Weighted_estimate(values, covariance).outcome, WeightedOutcome::singular);
    EXPECT_TRUE(Has_line_with(Weighted_estimate_lines(Weighted_estimate(values, covariance),
                                                      std::vector<std::string>{"a", "b"}),
                              "FAILURE INVERTING COVARIANCE MATRIX"));
}

TEST(WeightedEstimate, TellsWhatItCannotTest) {
    const std::vector<std::string> labels{"a", "b"};
    const auto lines = [&](std::vector<double> variances) {
        return Weighted_estimate_lines(Weighted_estimate(std::vector{1.0, 2.0}, variances), labels);
    };
    EXPECT_TRUE(Has_line_with(lines({1, 0}), "Incomplete set of valuess"));
    EXPECT_TRUE(Has_line_with(lines({1, 0}), "Least square estimate =   1.000"));
    EXPECT_TRUE(Has_line_with(lines({1, 0}), "standard error is not available  b"));
    EXPECT_TRUE(Has_line_with(lines({0, 0}), "No test"));
    EXPECT_TRUE(Has_line_with(lines({1, 3}), "X\xB2 =     0.25  df =   1  p = 0.6171"));
}

TEST(WeightedEstimate, OfUncorrelatedGroupsIsTheWeightedSumOfSquares) {
    std::mt19937 random(6);
    std::uniform_real_distribution<double> uniform(0.1, 2);
    for (int k = 2; k <= 40; k += 6) {
        std::vector<double> y, v;
        for (int i = 0; i < k; ++i) {
            y.push_back(uniform(random));
            v.push_back(uniform(random));
        }
        double w = 0, wy = 0, wyy = 0;
        for (std::size_t i = 0; i < y.size(); ++i) {
            w += 1 / v[i];
            wy += y[i] / v[i];
            wyy += y[i] * y[i] / v[i];
        }
        const WeightedEstimate estimate = Weighted_estimate(y, v);
        EXPECT_NEAR(estimate.estimate, wy / w, 1e-12);
        EXPECT_NEAR(estimate.X2, wyy - wy * wy / w, 1e-9);
        EXPECT_EQ(estimate.df, k - 1);
    }
}

TEST(FittedGamma, OfHomogeneousOddsRatiosIsTheObservedOne) {
    // Both strata have odds ratio 4, so two-factor association fits exactly.
    LocalHypothesis h{.X = {.label = 'X', .VTYPE = 3},
                      .Y = {.label = 'Y', .VTYPE = 3},
                      .Z = {{.label = 'Z', .VTYPE = 3}}};
    h.slices = {{{1}, Table_of_rows({{40, 20}, {20, 40}})},
                {{2}, Table_of_rows({{80, 10}, {100, 50}})}};
    RandomStream stream;
    DrawMemory memory;
    const LocalResult result = EXANALYSE(h, TestSettings{}, true, stream, memory);
    const HomogeneityAnalysis analysis = Analyse_homogeneity(h, result);
    ASSERT_TRUE(analysis.fitted);
    ASSERT_EQ(analysis.sets.size(), 1);
    // The fit stops within 0.001 of its margins.
    EXPECT_NEAR(analysis.partial.expected, analysis.partial.observed, 1e-4);
    for (const LocalGamma& stratum : analysis.sets[0].record.strata)
        EXPECT_NEAR(stratum.sums.fitted(), 0.6, 1e-4);
    EXPECT_GT(analysis.partial.p, 0.99);
}

TEST(FittedGamma, CountsTheSamePairsOfFittedAsOfObservedTables) {
    std::mt19937 random(2);
    std::uniform_int_distribution<int> count(0, 9);
    for (int k = 0; k < 50; ++k) {
        TwoWayTable observed(2 + k % 4, 2 + k % 5);
        ExpectedTable fitted(observed.rows, observed.columns);
        for (int i = 1; i <= observed.rows; ++i)
            for (int j = 1; j <= observed.columns; ++j)
                fitted(i, j) = observed(i, j) = count(random);
        const Concordance pairs = Concordance_of(observed);
        const FittedConcordance same = Concordance_of(fitted);
        EXPECT_EQ(same.P, static_cast<double>(pairs.P));
        EXPECT_EQ(same.Q, static_cast<double>(pairs.Q));
    }
}

}  // namespace
}  // namespace tarven
