#include "tables/monte_carlo.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/reference_figures.h"

namespace tarven {
namespace {

StatisticRule Rule(const std::string& symbol) {
    StatisticRule rule;
    rule.statistic = symbol == "X2"   ? Statistic::pearson
                     : symbol == "G2" ? Statistic::deviance
                                      : Statistic::power_divergence;
    return rule;
}

MonteCarloRule Plain_run(int nsim, const StatisticRule& statistic = {}) {
    MonteCarloRule rule;
    rule.nsim = nsim;
    rule.statistic = statistic;
    return rule;
}

/// How many numbers lie between two words of the stream, the second included.
int Draws_between(std::uint32_t from, std::uint32_t to, int at_most) {
    RandomStream stream{from};
    for (int n = 0; n <= at_most; ++n) {
        if (stream.word == to) return n;
        Random_word(stream);
    }
    return -1;
}

// 1000 tables from seed 9: counts, draws and the last word of the stream, from a rendering of the
// drawing rules outside this program.
TEST(MonteCarlo, CountsOfASeededRunAreExact) {
    DrawMemory memory;
    int compared = 0;
    for (const ReferenceHypothesis& h : Reference_hypotheses()) {
        if (!h.figures.contains("seeded")) continue;
        for (const auto& [symbol, figures] : h.figures.at("seeded").items()) {
            const MonteCarloRule rule = Plain_run(1000, Rule(symbol));
            const ObservedTest observed =
                Observed_test(h.strata, h.expected, rule.statistic, h.gamma);
            RandomStream stream{9};
            const Sim_counts counts = Monte_carlo_test(h.expected, observed, rule, stream, memory);
            const std::string what = h.name + " " + symbol;
            EXPECT_EQ(counts.n, 1000) << what;
            EXPECT_EQ(counts.statistic, figures.at("count_plain_extended").get<int>()) << what;
            if (h.gamma) {
                EXPECT_EQ(counts.gamma, figures.at("gamma_1sided").get<int>()) << what;
                EXPECT_EQ(counts.gamma_two_sided, figures.at("gamma_2sided").get<int>()) << what;
            }
            EXPECT_EQ(stream.word, figures.at("word_after").get<std::uint32_t>()) << what;
            EXPECT_EQ(Draws_between(9, stream.word, 1000000), figures.at("draws").get<int>())
                << what;
            ++compared;
        }
    }
    EXPECT_GT(compared, 100);
}

}  // namespace
}  // namespace tarven
