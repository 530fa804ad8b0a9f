#include "tables/monte_carlo.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "tables/gamma.h"

namespace tarven {

namespace {

StratumReplicate Observed_stratum(const TwoWayTable& counts, const ExpectedTable& expected,
                                  const StatisticRule& rule, bool has_gamma) {
    StratumReplicate result;
    result.statistic = Sum_of_statistic(counts, expected, rule);
    if (has_gamma) {
        const Concordance pairs = Concordance_of(counts);
        result.P = pairs.P;
        result.Q = pairs.Q;
    }
    return result;
}

ObservedTest Observed_of(const StratumReplicate& sums, bool has_gamma) {
    return {sums.statistic, has_gamma, Gamma_of_pairs(sums.P, sums.Q)};
}

std::vector<StratumSampler> Samplers(std::span<const ExpectedTable> strata,
                                     const StatisticRule& rule, bool with_gamma,
                                     DrawMemory& memory) {
    std::vector<StratumSampler> samplers;
    samplers.reserve(strata.size());
    constexpr std::int64_t most_outcomes = 1 << 20;  // some 60 MB
    const std::int64_t share = most_outcomes / std::max<std::int64_t>(1, std::ssize(strata));
    for (const ExpectedTable& expected : strata)
        samplers.emplace_back(expected, rule, with_gamma, memory, share);
    return samplers;
}

}  // namespace

MonteCarloRule Monte_carlo_rule(const TestSettings& settings) {
    MonteCarloRule rule;
    rule.nsim = settings.Nsim;
    rule.stops = settings.SequentialTests;
    rule.SimCrit = settings.RepeatedLevel1;
    rule.SimBoundary = settings.SimBoundary;
    rule.SimLimit = settings.SequentialLimit;
    rule.two_sided = settings.TwoSided;
    rule.statistic = Statistic_rule(settings);
    return rule;
}

ObservedTest Observed_test(std::span<const TwoWayTable> counts,
                           std::span<const ExpectedTable> expected, const StatisticRule& rule,
                           bool has_gamma) {
    assert(counts.size() == expected.size() && "every stratum has an expected table");
    StratumReplicate sums;
    for (std::size_t s = 0; s < counts.size(); ++s)
        sums.Add(Observed_stratum(counts[s], expected[s], rule, has_gamma));
    return Observed_of(sums, has_gamma);
}

double Repeated_z(std::int32_t count, std::int32_t n, double p) {
    if (n < 21) return 0;
    const double root = std::sqrt(static_cast<double>(n));
    return count / root - root * p;
}

bool Update_sim_counts(Sim_counts& counts, const ObservedTest& observed, const MonteCarloRule& rule,
                       Extended statistic, double gamma) {
    const auto fires = [&](std::int32_t count) {
        return Repeated_z(count, counts.n, rule.SimCrit) >= rule.SimBoundary ||
               count >= rule.SimLimit;
    };
    ++counts.n;
    if (statistic >= observed.statistic) ++counts.statistic;
    if (rule.stops && fires(counts.statistic)) counts.stopStatistic = true;
    if (!observed.has_gamma) {
        counts.stopGamma = true;
    } else {
        const double g0 = observed.gamma;
        if ((g0 > 0 && gamma >= g0) || (g0 < 0 && gamma <= g0) || g0 == 0) ++counts.gamma;
        if (std::fabs(gamma) >= std::fabs(g0)) ++counts.gamma_two_sided;
        if (rule.stops && fires(rule.two_sided ? counts.gamma_two_sided : counts.gamma))
            counts.stopGamma = true;
    }
    return rule.stops && counts.stopStatistic && counts.stopGamma;
}

Sim_counts Monte_carlo_test(std::span<const ExpectedTable> strata, const ObservedTest& observed,
                            const MonteCarloRule& rule, RandomStream& stream, DrawMemory& memory,
                            const StopCheck& stop) {
    Sim_counts counts;
    if (rule.nsim <= 0) return counts;
    std::vector<StratumSampler> samplers =
        Samplers(strata, rule.statistic, observed.has_gamma, memory);
    while (counts.n < rule.nsim) {
        StratumReplicate sums;
        for (StratumSampler& sampler : samplers) sums.Add(sampler.Draw(stream));
        const bool settled = Update_sim_counts(counts, observed, rule, sums.statistic,
                                               Gamma_of_pairs(sums.P, sums.Q));
        if ((stop && stop()) || settled) break;
    }
    return counts;
}

LocalTest Observed_local_test(std::span<const TwoWayTable> counts,
                              std::span<const ExpectedTable> expected,
                              std::vector<std::vector<int>> groups_of_stratum, int group_count,
                              const StatisticRule& rule, bool has_gamma) {
    assert(counts.size() == expected.size() && counts.size() == groups_of_stratum.size());
    StratumReplicate sums;
    std::vector<StratumReplicate> group_sums(static_cast<std::size_t>(group_count));
    for (std::size_t s = 0; s < counts.size(); ++s) {
        const StratumReplicate one = Observed_stratum(counts[s], expected[s], rule, has_gamma);
        sums.Add(one);
        for (const int group : groups_of_stratum[s])
            group_sums.at(static_cast<std::size_t>(group)).Add(one);
    }
    LocalTest test;
    test.hypothesis = Observed_of(sums, has_gamma);
    for (const StratumReplicate& group : group_sums)
        test.groups.push_back(Observed_of(group, has_gamma));
    test.groups_of_stratum = std::move(groups_of_stratum);
    return test;
}

LocalCounts Local_monte_carlo_test(std::span<const ExpectedTable> strata, const LocalTest& observed,
                                   const MonteCarloRule& rule, RandomStream& stream,
                                   DrawMemory& memory, const StopCheck& stop,
                                   const PartialCheck& partial_at_least_observed) {
    assert(strata.size() == observed.groups_of_stratum.size());
    LocalCounts counts;
    counts.groups.resize(observed.groups.size());
    MonteCarloRule whole_run = rule;
    whole_run.stops = false;
    std::vector<StratumSampler> samplers =
        Samplers(strata, rule.statistic, observed.hypothesis.has_gamma, memory);
    std::vector<TwoWayTable> tables;
    if (partial_at_least_observed)
        for (const ExpectedTable& e : strata) tables.emplace_back(e.rows, e.columns);
    std::vector<StratumReplicate> group_sums(observed.groups.size());
    while (counts.hypothesis.n < rule.nsim) {
        StratumReplicate sums;
        for (StratumReplicate& group : group_sums) group = {};
        for (std::size_t s = 0; s < samplers.size(); ++s) {
            const StratumReplicate one =
                tables.empty() ? samplers[s].Draw(stream) : samplers[s].Draw(stream, tables[s]);
            sums.Add(one);
            for (const int group : observed.groups_of_stratum[s])
                group_sums[static_cast<std::size_t>(group)].Add(one);
        }
        Update_sim_counts(counts.hypothesis, observed.hypothesis, whole_run, sums.statistic,
                          Gamma_of_pairs(sums.P, sums.Q));
        for (std::size_t g = 0; g < group_sums.size(); ++g)
            Update_sim_counts(counts.groups[g], observed.groups[g], whole_run,
                              group_sums[g].statistic,
                              Gamma_of_pairs(group_sums[g].P, group_sums[g].Q));
        if (partial_at_least_observed && partial_at_least_observed(tables)) ++counts.partial;
        if (stop && stop()) break;
    }
    return counts;
}

}  // namespace tarven
