#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "support/reference_figures.h"
#include "tables/independence/global_engine.h"
#include "tables/independence/local_engine.h"
#include "tables/numbers/distributions.h"

namespace tarven {
namespace {

TestSettings Settings(const std::string& symbol, std::int32_t nsim = 0) {
    TestSettings settings;
    settings.ChiSquare = symbol == "X2";
    settings.PowerDivergence = symbol == "D2";
    settings.ExactTests = nsim > 0;
    settings.Nsim = nsim;
    return settings;
}

HypothesisTest Tested(const ReferenceHypothesis& h, const TestSettings& settings,
                      RandomStream stream = {9}) {
    DrawMemory memory;
    return Test_strata(h.strata, h.expected, h.gamma, settings, stream, memory);
}

/// X, Y and one conditioning variable whose categories are the strata.
LocalHypothesis Local(const std::vector<TwoWayTable>& strata, bool ordinal = true) {
    LocalHypothesis local;
    local.X = {.label = 'X', .DIM = strata.front().rows, .VTYPE = ordinal ? 3 : 2};
    local.Y = {.label = 'Y', .DIM = strata.front().columns, .VTYPE = ordinal ? 3 : 2};
    local.Z.push_back({.label = 'Z', .DIM = static_cast<int>(strata.size())});
    for (int k = 1; k <= static_cast<int>(strata.size()); ++k)
        local.slices.push_back({{k}, strata[static_cast<std::size_t>(k - 1)]});
    return local;
}

LocalResult Local_test(const LocalHypothesis& h, const TestSettings& settings,
                       RandomStream stream = {9}) {
    DrawMemory memory;
    return EXANALYSE(h, settings, false, stream, memory);
}

TEST(GlobalEngine, RowsOfHypothesesWithoutATestAreMarked) {
    const std::vector<TwoWayTable> one_row{Table_of_rows({{4, 5}, {0, 0}}),
                                           Table_of_rows({{0, 0}, {0, 7}}),
                                           Table_of_rows({{0, 0}, {0, 0}})};
    std::vector<ExpectedTable> expected;
    for (const TwoWayTable& t : one_row) expected.push_back(Expected_of_slice(t));
    RandomStream stream{9};
    DrawMemory memory;
    const HypothesisTest test =
        Test_strata(one_row, expected, true, Settings("X2", 100), stream, memory);
    EXPECT_EQ(stream.word, 9U);
    EXPECT_EQ(Row_of(test), Untested_result());
    EXPECT_EQ(Row_of(Test_strata({}, {}, true, Settings("X2"), stream, memory)), Untested_result());
}

TEST(GlobalEngine, AnEmptyColumnCostsDegreesOfFreedomInItsStratumAlone) {
    const std::vector<TwoWayTable> strata{Table_of_rows({{4, 0, 5}, {3, 0, 9}, {5, 0, 1}}),
                                          Table_of_rows({{4, 2, 5}, {3, 6, 9}, {5, 1, 1}})};
    const std::vector<ExpectedTable> expected{Expected_of_slice(strata[0]),
                                              Expected_of_slice(strata[1])};
    EXPECT_EQ(Sum_over_strata(strata, expected, true, {}).df, 2 + 4);
}

TEST(GlobalEngine, TheSmallestPDecidesTheStatusOfAnEdge) {
    TestResult row{.PAsymp = 0.03F, .PExact = 0.2F, .PGammaAsymp = 0.004F, .PGammaExact = 0.01F};
    EXPECT_EQ(Edge_status_of(Smallest_p(row, true)), 3);
    EXPECT_EQ(Edge_status_of(Smallest_p(row, false)), 2);
    row.Nsim = 100;
    EXPECT_EQ(Edge_status_of(Smallest_p(row, true)), 3);
    EXPECT_EQ(Edge_status_of(Smallest_p(row, false)), 1);
    EXPECT_EQ(Edge_status_of(0.05F), 2);
}

TEST(LocalEngine, GivesTheHypothesisWhatTheGlobalEngineGives) {
    for (const ReferenceHypothesis& h : Reference_hypotheses()) {
        LocalHypothesis local = Local(h.strata);
        const LocalResult result = Local_test(local, Settings("X2"));
        if (!h.gamma) continue;  // the variables of Local are ordinal
        const TestResult row = Row_of(Tested(h, Settings("X2")));
        EXPECT_EQ(Row_of(result.test), row) << h.name;
        EXPECT_EQ(result.smallest_p, Smallest_p(row, true)) << h.name;
        // One conditioning variable: its categories are the strata, and add up.
        std::int64_t df = 0, cases = 0;
        for (const CategoryResult& c : result.categories[0]) {
            df += static_cast<std::int64_t>(c.Df);
            cases += c.cases;
        }
        EXPECT_EQ(df, result.test.sums.df) << h.name;
        EXPECT_EQ(cases, result.test.sums.cases) << h.name;
    }
}

TEST(LocalEngine, CountsEachStratumInEveryCategoryThatItHas) {
    std::mt19937 random(3);
    LocalHypothesis h;
    h.X = {.label = 'X', .DIM = 2};
    h.Y = {.label = 'Y', .DIM = 3};
    h.Z = {{.label = 'V', .DIM = 2}, {.label = 'W', .DIM = 3}};
    const auto table = [&] {
        std::vector<std::vector<int>> rows(2, std::vector<int>(3));
        for (auto& row : rows)
            for (int& n : row) n = static_cast<int>(random() % 20);
        return Table_of_rows(rows);
    };
    for (int w = 1; w <= 3; ++w)
        for (int v = 1; v <= 2; ++v) h.slices.push_back({{v, w}, table()});
    const LocalResult plain = Local_test(h, Settings("G2", 200));
    for (int w = 1; w <= 3; ++w) {  // the strata of one category make a hypothesis of their own
        LocalHypothesis part = h;
        part.slices = {h.slices[static_cast<std::size_t>(2 * w - 2)],
                       h.slices[static_cast<std::size_t>(2 * w - 1)]};
        const TestResult row = Row_of(Local_test(part, Settings("G2")).test);
        const CategoryResult& category = plain.categories[1][static_cast<std::size_t>(w - 1)];
        EXPECT_EQ(category.Statistic, row.Statistic);
        EXPECT_EQ(category.PAsymp, row.PAsymp);
        EXPECT_EQ(category.Gamma, row.Gamma);
        EXPECT_EQ(category.PGammaAsymp, row.PGammaAsymp);
        EXPECT_EQ(category.counts.n, 200);
    }
    // Margin strata are tested and change nothing else.
    LocalHypothesis with_margins = h;
    with_margins.slices.insert(with_margins.slices.begin() + 2, {{3, 1}, table()});
    with_margins.slices.push_back({{3, 4}, table()});
    const LocalResult more = Local_test(with_margins, Settings("G2", 200));
    EXPECT_EQ(Row_of(more.test), Row_of(plain.test));
    EXPECT_TRUE(more.strata[2].margin);
    EXPECT_GT(more.strata[2].statistic.df, 0);
    for (int c = 0; c < 3; ++c)
        EXPECT_EQ(more.categories[1][static_cast<std::size_t>(c)].counts,
                  plain.categories[1][static_cast<std::size_t>(c)].counts);
}

TEST(LocalEngine, RunsAllReplicatesWhateverTheStopRule) {
    TestSettings settings = Settings("X2", 150);
    settings.SequentialTests = true;
    settings.SequentialLimit = 1;
    settings.SimBoundary = 0.01;
    const LocalHypothesis h = Local({Table_of_rows({{9, 9}, {9, 9}})});
    EXPECT_EQ(Local_test(h, settings).test.counts.n, 150);
    DrawMemory memory;
    RandomStream stream{9};
    int asked = 0;
    const LocalResult stopped =
        EXANALYSE(h, settings, false, stream, memory, [&] { return ++asked == 7; });
    EXPECT_EQ(stopped.test.counts.n, 7);
}

TEST(LocalEngine, SortsTheStrataBySignAndP) {
    const std::vector<TwoWayTable> strata{Table_of_rows({{40, 10}, {10, 40}}),  // strong, positive
                                          Table_of_rows({{10, 40}, {40, 10}}),  // strong, negative
                                          Table_of_rows({{10, 9}, {9, 10}}),    // weak, positive
                                          Table_of_rows({{31, 20}, {20, 31}}),  // 2p = 0.029
                                          Table_of_rows({{10, 10}, {10, 10}}),  // zero
                                          Table_of_rows({{0, 0}, {0, 0}})};
    const SixWayCount count = Local_test(Local(strata), Settings("X2")).six_way;
    EXPECT_EQ(std::vector<int>(count.positive, count.positive + 3), (std::vector<int>{1, 1, 1}));
    EXPECT_EQ(std::vector<int>(count.negative, count.negative + 3), (std::vector<int>{0, 0, 1}));
}

// Survival by sex given class on the Titanic; loglin of R 4.2.2 to convergence.
std::vector<TwoWayTable> Survival_by_sex_given_class() {
    return {Table_of_rows({{118, 4}, {62, 141}}), Table_of_rows({{154, 13}, {25, 93}}),
            Table_of_rows({{422, 106}, {88, 90}}), Table_of_rows({{670, 3}, {192, 20}})};
}

TEST(TwoFactorTest, AgreesWithLoglinearModels) {
    const std::vector<TwoWayTable> slices = Survival_by_sex_given_class();
    std::vector<ExpectedTable> independence;
    for (const TwoWayTable& s : slices) independence.push_back(Expected_of_slice(s));
    const XyzFit close = fit_xyz(slices, 1e-10, 1000);
    EXPECT_TRUE(close.converged);
    EXPECT_NEAR(close.fitted[0](1, 1), 105.727315526, 1e-7);
    EXPECT_NEAR(close.fitted[3](2, 2), 17.62432377748, 1e-7);
    EXPECT_NEAR(static_cast<double>(Two_factor_lr(slices, independence, close.fitted)),
                359.642547290041, 1e-6);
    // The fit of the test stops at 0.001 cases.
    const PartialTest test = Two_factor_test(slices, independence);
    EXPECT_TRUE(test.converged);
    EXPECT_NEAR(static_cast<double>(test.lr), 359.642547, 0.01);
    EXPECT_EQ(test.df, 1);
}

TEST(TwoFactorTest, IsPartOfTheLocalTestUnlessItIsOff) {
    TestSettings settings = Settings("X2", 50);
    settings.PartialTests = true;
    const LocalHypothesis h =
        Local({Table_of_rows({{5, 4}, {4, 5}}), Table_of_rows({{3, 4}, {5, 3}})});
    const LocalResult result = Local_test(h, settings);
    ASSERT_TRUE(result.partial);
    // Every replicate is fitted on the stream of the plain run.
    EXPECT_EQ(result.test.counts, Local_test(h, Settings("X2", 50)).test.counts);
    RandomStream stream{9};
    std::int32_t expected = 0;
    std::vector<ExpectedTable> independence{Expected_under_independence(h.slices[0].counts),
                                            Expected_under_independence(h.slices[1].counts)};
    for (int n = 0; n < 50; ++n) {
        const std::vector<TwoWayTable> tables{Random_table(independence[0], stream),
                                              Random_table(independence[1], stream)};
        expected +=
            Two_factor_lr(tables, independence, fit_xyz(tables).fitted) >= result.partial->lr;
    }
    EXPECT_EQ(result.partial_count, expected);
    DrawMemory memory;
    EXPECT_FALSE(EXANALYSE(h, settings, true, stream, memory).partial);
}

TEST(TwoFactorTest, EmptyMarginsStayEmpty) {
    const std::vector<TwoWayTable> slices{Table_of_rows({{3, 0, 4}, {2, 0, 5}}),
                                          Table_of_rows({{0, 0, 0}, {2, 0, 5}})};
    const XyzFit fit = fit_xyz(slices);
    EXPECT_TRUE(fit.converged);
    EXPECT_EQ(fit.fitted[1](1, 1), 0);
    EXPECT_EQ(fit.fitted[0](1, 2), 0);
    const std::vector<ExpectedTable> e{Expected_of_slice(slices[0]), Expected_of_slice(slices[1])};
    EXPECT_EQ(Two_factor_test(slices, e).df, 1);
}

std::vector<TwoWayTable> Random_slices(std::mt19937& random, int R, int C, int slices) {
    std::vector<TwoWayTable> tables;
    for (int s = 0; s < slices; ++s) {
        TwoWayTable t(R, C);
        for (int i = 1; i <= R; ++i)
            for (int j = 1; j <= C; ++j) t(i, j) = static_cast<int>(random() % 12);
        Fill_margins(t);
        tables.push_back(t);
    }
    return tables;
}

TEST(FitXyz, StopsAtTheFirstIterationWithinTheCriterion) {
    std::mt19937 random(4);
    for (int k = 0; k < 20; ++k) {
        const std::vector<TwoWayTable> slices = Random_slices(random, 3, 4, 3);
        const XyzFit fit = fit_xyz(slices);
        if (!fit.converged || fit.iterations < 2) continue;
        EXPECT_LE(fit.delta, 0.001);
        EXPECT_GT(fit_xyz(slices, 0.001, fit.iterations - 1).delta, 0.001);
        EXPECT_FALSE(fit_xyz(slices, 0.001, fit.iterations - 1).converged);
        EXPECT_EQ(fit_xyz(slices, fit.delta).iterations, fit.iterations) << "at most the criterion";
    }
}

// Random tables are compared with the observed one by >=, and ties count: tables with equal
// two-way margins have one likelihood ratio, which the sum over the cells gives up to the error of
// the fit.
TEST(FitXyz, EqualMarginsHaveEqualLikelihoodRatios) {
    std::mt19937 random(5);
    int compared = 0;
    for (int k = 0; k < 60; ++k) {
        std::vector<TwoWayTable> slices = Random_slices(random, 2 + k % 2, 3, 2 + k % 3);
        const auto expected = [&] {
            std::vector<ExpectedTable> tables;
            for (const TwoWayTable& t : slices) tables.push_back(Expected_under_independence(t));
            return tables;
        };
        const XyzFit fit = fit_xyz(slices, 1e-10, 10000);
        const Extended lr = Two_factor_lr_of_margins(slices, fit);
        EXPECT_NEAR(static_cast<double>(lr),
                    static_cast<double>(Two_factor_lr(slices, expected(), fit.fitted)), 1e-6);
        // Plus and minus one at the corners of a cube keeps every two-way margin.
        for (int sign : {1, -1}) {
            std::vector<TwoWayTable> moved = slices;
            bool possible = true;
            for (int s : {0, 1})
                for (int i : {1, 2})
                    for (int j : {1, 2}) {
                        std::int32_t& cell = moved[static_cast<std::size_t>(s)](i, j);
                        cell += (s + i + j) % 2 == 0 ? sign : -sign;
                        possible = possible && cell >= 0;
                    }
            if (!possible) continue;
            ++compared;
            EXPECT_EQ(Two_factor_lr_of_margins(moved, fit_xyz(moved)),
                      Two_factor_lr_of_margins(slices, fit_xyz(slices)));
        }
    }
    EXPECT_GT(compared, 30);
}

TEST(SixWayCount, TheLevelsBelongToTheColumnOnTheirRight) {
    SixWayCount count;
    for (const double p : {0.0251, 0.025, 0.00501, 0.005, 0.001})
        Count_stratum(count, {.gamma = 0.5, .p = p});
    Count_stratum(count, {.gamma = -0.5, .p = 0.005});
    Count_stratum(count, {.gamma = 0, .p = 0.001});
    EXPECT_EQ(std::vector<int>(count.positive, count.positive + 3), (std::vector<int>{1, 2, 2}));
    EXPECT_EQ(std::vector<int>(count.negative, count.negative + 3), (std::vector<int>{0, 0, 1}));
}

}  // namespace
}  // namespace tarven
