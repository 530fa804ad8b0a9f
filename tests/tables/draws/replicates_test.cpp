#include "tables/draws/replicates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "support/reference_figures.h"
#include "tables/table/gamma.h"

namespace tarven {
namespace {

struct Shape {
    int rows, columns, most;  ///< the largest count of a cell
};

TwoWayTable Random_counts(std::mt19937& random, const Shape& shape) {
    TwoWayTable t(shape.rows, shape.columns);
    for (int i = 1; i <= shape.rows; ++i)
        for (int j = 1; j <= shape.columns; ++j)
            t(i, j) = static_cast<int>(random() % static_cast<unsigned>(shape.most + 1));
    Fill_margins(t);
    return t;
}

// Few tables (kept as a tree), many tables, counts that leave their window, totals whose pairs need
// 64 bits: each replicate is that of the plain arithmetic, bit for bit.
TEST(StratumSampler, GivesWhatTheDrawnTableGives) {
    std::mt19937 random(1);
    DrawMemory memory;
    for (const Shape& shape :
         {Shape{2, 2, 6}, Shape{3, 3, 2}, Shape{2, 5, 3}, Shape{3, 4, 9}, Shape{6, 7, 1},
          Shape{5, 6, 30}, Shape{3, 8, 60}, Shape{2, 2, 30000}, Shape{4, 3, 9000}})
        for (const Statistic statistic :
             {Statistic::pearson, Statistic::deviance, Statistic::power_divergence})
            for (int k = 0; k < 6; ++k) {
                const std::vector<ExpectedTable> expected = {
                    Expected_of_slice(Random_counts(random, shape))};
                const StatisticRule rule{.statistic = statistic};
                const SumError error(expected, rule);
                StratumSampler sampler(expected[0], rule, true, memory);
                // So few that the tree soon stops growing.
                StratumSampler starved(expected[0], rule, true, memory, 20);
                RandomStream plain{9}, fast{9}, short_of_room{9};
                TwoWayTable table(shape.rows, shape.columns), copy = table;
                for (int draw = 0; draw < (shape.most > 100 ? 20 : 150); ++draw) {
                    Random_table(Margins_of_expected(expected[0]), plain, table);
                    const bool with_table = draw % 5 == 0;
                    const StratumReplicate r =
                        with_table ? sampler.Draw(fast, copy) : sampler.Draw(fast);
                    if (with_table) {
                        ASSERT_EQ(copy, table);
                    }
                    const Extended exact = Sum_of_statistic(table, expected[0], rule);
                    ASSERT_EQ(sampler.Exact_statistic(), exact);
                    ASSERT_NEAR(r.statistic, static_cast<double>(exact),
                                error.of(std::fabs(static_cast<double>(exact))));
                    const Concordance pairs = Concordance_of(table);
                    ASSERT_EQ(r.P, pairs.P);
                    ASSERT_EQ(r.Q, pairs.Q);
                    ASSERT_EQ(fast.word, plain.word);
                    const StratumReplicate same = starved.Draw(short_of_room);
                    ASSERT_EQ(same.statistic, r.statistic);
                    ASSERT_EQ(same.Q, r.Q);
                    ASSERT_EQ(starved.Exact_statistic(), exact);
                }
            }
}

// Strata draw in turn from one stream, each some tables ahead of its turn. Columns of two or three
// cases are often full before the last row, so that the numbers drawn ahead are wrong; a guess that
// is always wrong changes nothing either.
TEST(StratumSampler, DrawsAheadOnlyWhatTheStreamGives) {
    std::mt19937 random(3);
    DrawMemory memory;
    std::vector<ExpectedTable> strata;
    for (const int most : {2, 4, 3, 12})
        strata.push_back(Expected_of_slice(Random_counts(random, {4, 4, most})));
    std::vector<StratumSampler> samplers;
    StreamJump replicate;
    for (const ExpectedTable& expected : strata) {
        samplers.emplace_back(expected, StatisticRule{}, true, memory);
        replicate.Add(samplers.back().Usual_draws());
    }
    for (std::size_t s = 0; s < 3; ++s) samplers[s].Look_ahead(replicate);
    samplers[3].Look_ahead({});
    RandomStream plain{9}, fast{9};
    int as_guessed = 0;
    for (int n = 0; n < 400; ++n) {
        const std::uint32_t guess = replicate(fast.word);
        for (std::size_t s = 0; s < strata.size(); ++s) {
            const TwoWayTable table = Random_table(strata[s], plain);
            const StratumReplicate r = samplers[s].Draw(fast);
            ASSERT_EQ(r.Q, Concordance_of(table).Q);
            ASSERT_EQ(r.P, Concordance_of(table).P);
            ASSERT_EQ(samplers[s].Exact_statistic(), Sum_of_statistic(table, strata[s], {}));
            ASSERT_EQ(fast.word, plain.word);
        }
        as_guessed += fast.word == guess;
    }
    EXPECT_GT(as_guessed, 20);
    EXPECT_LT(as_guessed, 380);
}

// Margins of a fitted table may not add up after rounding; the plain road is then taken whole.
TEST(StratumSampler, TakesFittedMarginsThatDoNotAddUp) {
    ExpectedTable expected(2, 3);
    for (int i = 1; i <= 2; ++i)
        for (int j = 1; j <= 3; ++j) expected(i, j) = 1.5 + 0.9 * i;
    Fill_margins(expected);  // rows 7.2 and 9.9, columns 5.7, total 17.1
    DrawMemory memory;
    StratumSampler sampler(expected, {}, true, memory);
    RandomStream plain{9}, fast{9};
    for (int k = 0; k < 50; ++k) {
        const TwoWayTable table = Random_table(expected, plain);
        const StratumReplicate r = sampler.Draw(fast);
        EXPECT_EQ(r.P, Concordance_of(table).P);
        EXPECT_EQ(sampler.Exact_statistic(), Sum_of_statistic(table, expected, {}));
        EXPECT_EQ(fast.word, plain.word);
    }
}

}  // namespace
}  // namespace tarven
