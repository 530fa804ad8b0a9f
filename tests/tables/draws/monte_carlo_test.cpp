#include "tables/draws/monte_carlo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/reference_figures.h"
#include "tables/numbers/log_factorial.h"
#include "tables/table/gamma.h"

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

// Estimates of the exact p from many tables made by R; both sides carry their own sampling error.
TEST(MonteCarlo, PValuesLieWithinFourStandardErrorsOfReferenceEstimates) {
    constexpr int nsim = 20000;
    DrawMemory memory;
    int compared = 0;
    for (const ReferenceHypothesis& h : Reference_hypotheses()) {
        if (!h.figures.contains("monte_carlo")) continue;
        const auto& figures = h.figures.at("monte_carlo");
        // Where counts lie on both sides of 1000 the probabilities of a cell may sum to 0.0008 less
        // than 1. What is missing goes to the last, most extreme value, for every cell drawn.
        double gone_astray = 0;
        for (const TwoWayTable& t : h.strata)
            if (t.Total() > LogFactorialTableTop)
                gone_astray += 0.00082 * (t.rows - 1) * (t.columns - 1);
        const auto compare = [&](const std::string& name, double p) {
            if (!figures.contains(name)) return;
            const auto& estimate = figures.at(name);
            const double q = estimate.at("p").get<double>();
            const double se = std::hypot(estimate.at("se").get<double>(),
                                         std::sqrt(std::max(q * (1 - q), 1.0 / nsim) / nsim));
            // A bare comparison may count only a part of the ties.
            EXPECT_LE(p, q + 4 * se + gone_astray) << h.name << ' ' << name;
            EXPECT_GE(p, q - estimate.at("tie_mass").get<double>() - 4 * se)
                << h.name << ' ' << name;
            ++compared;
        };
        for (const char* symbol : {"X2", "G2", "D2"}) {
            const MonteCarloRule rule = Plain_run(nsim, Rule(symbol));
            const ObservedTest observed =
                Observed_test(h.strata, h.expected, rule.statistic, h.gamma);
            RandomStream stream{44};
            const Sim_counts counts = Monte_carlo_test(h.expected, observed, rule, stream, memory);
            compare(std::string("exact_") + symbol, counts.PExact());
            if (symbol[0] != 'X') continue;
            compare("exact_gamma_1sided", counts.PGammaExact());
            compare("exact_gamma_2sided", counts.PGammaExact2());
        }
    }
    EXPECT_GT(compared, 150);
}

/// The replicates of a run one by one, by the plain arithmetic.
struct PlainReplicate {
    Extended statistic = 0;
    double gamma = 0;
};
std::vector<PlainReplicate> Plain_replicates(const std::vector<ExpectedTable>& strata, int count,
                                             const StatisticRule& rule, std::uint32_t seed,
                                             const std::vector<std::size_t>& summed) {
    std::vector<PlainReplicate> result;
    RandomStream stream{seed};
    for (int k = 0; k < count; ++k) {
        PlainReplicate one;
        double P = 0, Q = 0;
        for (std::size_t s = 0; s < strata.size(); ++s) {
            const TwoWayTable table = Random_table(strata[s], stream);
            if (std::find(summed.begin(), summed.end(), s) == summed.end()) continue;
            one.statistic += Sum_of_statistic(table, strata[s], rule);
            P += Gamma_of_table(table).P;
            Q += Gamma_of_table(table).Q;
        }
        one.gamma = P > 0 ? Q / P : 0;
        result.push_back(one);
    }
    return result;
}

std::vector<TwoWayTable> Some_strata() {
    return {Table_of_rows({{3, 1, 2}, {2, 2, 0}, {1, 4, 5}}),
            Table_of_rows({{0, 2, 1}, {1, 0, 0}, {0, 0, 0}}),
            Table_of_rows({{20, 18, 22}, {15, 30, 17}, {9, 8, 14}}),
            Table_of_rows({{0, 3, 4}, {0, 5, 1}, {0, 1, 0}})};
}

std::vector<ExpectedTable> Expected_of(const std::vector<TwoWayTable>& strata) {
    std::vector<ExpectedTable> expected;
    for (const TwoWayTable& t : strata) expected.push_back(Expected_of_slice(t));
    return expected;
}

// Each category of a conditioning variable is a test of its own strata within the same replicates.
TEST(MonteCarlo, LocalCountsAreThoseOfTheirStrata) {
    const std::vector<TwoWayTable> strata = Some_strata();
    const std::vector<ExpectedTable> expected = Expected_of(strata);
    const MonteCarloRule rule = Plain_run(400);
    // Two conditioning variables of two categories; the first is the fastest.
    const std::vector<std::vector<int>> groups = {{0, 2}, {1, 2}, {0, 3}, {1, 3}};
    const LocalTest observed =
        Observed_local_test(strata, expected, groups, 4, rule.statistic, true);
    DrawMemory memory;
    RandomStream stream{9}, global_stream{9};
    MonteCarloRule with_rule = rule;  // a stop rule must not shorten a local run
    with_rule.stops = true;
    with_rule.SimLimit = 1;
    int asked = 0;
    const LocalCounts counts =
        Local_monte_carlo_test(expected, observed, with_rule, stream, memory, {},
                               [&](std::span<const TwoWayTable> tables) {
                                   for (std::size_t s = 0; s < strata.size(); ++s)
                                       for (int i = 1; i <= 4; ++i)
                                           EXPECT_EQ(tables[s](i, 4), strata[s](i, 4));
                                   return ++asked % 3 == 0;
                               });
    EXPECT_EQ(asked, 400);
    EXPECT_EQ(counts.partial, 133);
    EXPECT_EQ(counts.hypothesis,
              Monte_carlo_test(expected, observed.hypothesis, rule, global_stream, memory));
    const std::vector<std::vector<std::size_t>> members = {{0, 2}, {1, 3}, {0, 1}, {2, 3}};
    for (std::size_t g = 0; g < 4; ++g) {
        const ObservedTest& o = observed.groups[g];
        int statistic = 0, one_sided = 0;
        for (const PlainReplicate& r :
             Plain_replicates(expected, 400, rule.statistic, 9, members[g])) {
            statistic += r.statistic >= o.statistic;
            one_sided += o.gamma == 0 || (o.gamma > 0 ? r.gamma >= o.gamma : r.gamma <= o.gamma);
        }
        EXPECT_EQ(counts.groups[g].n, 400);
        EXPECT_EQ(counts.groups[g].statistic, statistic) << g;
        EXPECT_EQ(counts.groups[g].gamma, one_sided) << g;
    }
    // Without the partial test the tables are not made, and the counts stay.
    RandomStream again{9};
    EXPECT_EQ(Local_monte_carlo_test(expected, observed, rule, again, memory).groups,
              counts.groups);
}

TEST(MonteCarlo, StopRulesEndWhenBothFlagsAreSet) {
    const std::vector<TwoWayTable> strata = Some_strata();
    const std::vector<ExpectedTable> expected = Expected_of(strata);
    struct Case {
        double boundary, limit;
        bool two_sided, gamma;
    };
    for (const Case& c :
         {Case{1.058, 20, false, true}, Case{1.058, 20, true, true}, Case{0.573, 20, false, false},
          Case{1000, 50, false, true}, Case{1.058, 5, false, true}}) {
        MonteCarloRule rule = Plain_run(1000);
        rule.stops = true;
        rule.SimBoundary = c.boundary;
        rule.SimLimit = c.limit;
        rule.two_sided = c.two_sided;
        const ObservedTest observed = Observed_test(strata, expected, rule.statistic, c.gamma);
        // The rule in its plain words, over replicates made beforehand.
        int n = 0, statistic = 0, gamma = 0;
        bool stop_statistic = false, stop_gamma = !c.gamma;
        for (const PlainReplicate& r :
             Plain_replicates(expected, 1000, rule.statistic, 9, {0, 1, 2, 3})) {
            ++n;
            const auto z = [&](int count) {
                return n <= 20 ? 0 : count / std::sqrt(n) - std::sqrt(n) * 0.05;
            };
            statistic += r.statistic >= observed.statistic;
            gamma += c.two_sided ? std::fabs(r.gamma) >= std::fabs(observed.gamma)
                                 : r.gamma * observed.gamma >= observed.gamma * observed.gamma;
            if (z(statistic) >= c.boundary || statistic >= c.limit) stop_statistic = true;
            if (z(gamma) >= c.boundary || gamma >= c.limit) stop_gamma = true;
            if (stop_statistic && stop_gamma) break;
        }
        DrawMemory memory;
        RandomStream stream{9};
        const Sim_counts counts = Monte_carlo_test(expected, observed, rule, stream, memory);
        EXPECT_EQ(counts.n, n);
        EXPECT_EQ(counts.statistic, statistic);
        EXPECT_LT(counts.n, 1000);
        EXPECT_TRUE(counts.stopStatistic && counts.stopGamma);
    }
}

TEST(MonteCarlo, UserStopKeepsTheReplicatesDone) {
    const std::vector<ExpectedTable> expected = Expected_of(Some_strata());
    const ObservedTest observed = Observed_test(Some_strata(), expected, {}, true);
    DrawMemory memory;
    RandomStream stream{9};
    int asked = 0;
    const Sim_counts counts = Monte_carlo_test(expected, observed, Plain_run(2147483647), stream,
                                               memory, [&] { return ++asked == 37; });
    EXPECT_EQ(counts.n, 37);
    EXPECT_EQ(asked, 37);
    EXPECT_EQ(Monte_carlo_test(expected, observed, Plain_run(0), stream, memory), Sim_counts{});
    const Sim_counts one = Monte_carlo_test(expected, observed, Plain_run(1), stream, memory);
    EXPECT_TRUE(one.PExact() == 0 || one.PExact() == 1);
}

TEST(MonteCarlo, AGammaOfZeroCountsEveryReplicate) {
    const std::vector<TwoWayTable> strata = {Table_of_rows({{4, 4}, {4, 4}})};
    const std::vector<ExpectedTable> expected = Expected_of(strata);
    DrawMemory memory;
    RandomStream stream{9};
    const ObservedTest observed = Observed_test(strata, expected, {}, true);
    const Sim_counts counts = Monte_carlo_test(expected, observed, Plain_run(200), stream, memory);
    EXPECT_EQ(counts.gamma, 200);
    EXPECT_EQ(counts.gamma_two_sided, 200);
    EXPECT_EQ(counts.statistic, 200);
}

TEST(MonteCarlo, RepeatedZNeedsMoreThanTwentyReplicates) {
    EXPECT_EQ(Repeated_z(20, 20, 0.05), 0);
    EXPECT_DOUBLE_EQ(Repeated_z(21, 21, 0.05), std::sqrt(21) * 0.95);
}

}  // namespace
}  // namespace tarven
