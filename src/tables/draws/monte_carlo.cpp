#include "tables/draws/monte_carlo.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "tables/table/gamma.h"

namespace tarven {

namespace {

/// The sums over the observed strata.
struct ObservedSums {
    Extended statistic = 0;
    std::int64_t P = 0, Q = 0;

    void Add(const TwoWayTable& counts, const ExpectedTable& expected, const StatisticRule& rule,
             bool has_gamma) {
        statistic += Sum_of_statistic(counts, expected, rule);
        if (!has_gamma) return;
        const Concordance pairs = Concordance_of(counts);
        P += pairs.P;
        Q += pairs.Q;
    }
    ObservedTest Test(bool has_gamma) const { return {statistic, has_gamma, Gamma_of_pairs(P, Q)}; }
};

/// Whether a sum over strata is at least the observed: by its 64-bit form where that is sure, else
/// by `exact`, the sum in Extended.
template <class Exact>
bool At_least_observed(double statistic, const ObservedTest& observed, const SumError& error,
                       Exact exact) {
    const double observed_statistic = static_cast<double>(observed.statistic);
    const double over = statistic - observed_statistic;
    if (std::fabs(over) > error.of(std::max(statistic, observed_statistic))) return over > 0;
    return exact() >= observed.statistic;
}

/// Counts one more replicate; true when the run ends.
bool Count_replicate(Sim_counts& counts, const ObservedTest& observed, const MonteCarloRule& rule,
                     bool statistic_at_least, double gamma) {
    const auto fires = [&](std::int32_t count) {
        return Repeated_z(count, counts.n, rule.SimCrit) >= rule.SimBoundary ||
               count >= rule.SimLimit;
    };
    ++counts.n;
    counts.statistic += statistic_at_least;
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

std::vector<StratumSampler> Samplers(std::span<const ExpectedTable> strata,
                                     const StatisticRule& rule, bool with_gamma,
                                     DrawMemory& memory) {
    std::vector<StratumSampler> samplers;
    samplers.reserve(strata.size());
    constexpr std::int64_t most_outcomes = 1 << 20;  // some 60 MB
    const std::int64_t share = most_outcomes / std::max<std::int64_t>(1, std::ssize(strata));
    for (const ExpectedTable& expected : strata)
        samplers.emplace_back(expected, rule, with_gamma, memory, share);
    StreamJump replicate;
    for (const StratumSampler& sampler : samplers) replicate.Add(sampler.Usual_draws());
    for (StratumSampler& sampler : samplers) sampler.Look_ahead(replicate);
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
    ObservedSums sums;
    for (std::size_t s = 0; s < counts.size(); ++s)
        sums.Add(counts[s], expected[s], rule, has_gamma);
    return sums.Test(has_gamma);
}

double Repeated_z(std::int32_t count, std::int32_t n, double p) {
    if (n < 21) return 0;
    const double root = std::sqrt(static_cast<double>(n));
    return count / root - root * p;
}

bool Update_sim_counts(Sim_counts& counts, const ObservedTest& observed, const MonteCarloRule& rule,
                       Extended statistic, double gamma) {
    return Count_replicate(counts, observed, rule, statistic >= observed.statistic, gamma);
}

Sim_counts Monte_carlo_test(std::span<const ExpectedTable> strata, const ObservedTest& observed,
                            const MonteCarloRule& rule, RandomStream& stream, DrawMemory& memory,
                            const StopCheck& stop) {
    Sim_counts counts;
    if (rule.nsim <= 0) return counts;
    std::vector<StratumSampler> samplers =
        Samplers(strata, rule.statistic, observed.has_gamma, memory);
    const SumError error(strata, rule.statistic);
    const auto exact = [&] {
        Extended sum = 0;
        for (const StratumSampler& sampler : samplers) sum += sampler.Exact_statistic();
        return sum;
    };
    while (counts.n < rule.nsim) {
        StratumReplicate sums;
        for (StratumSampler& sampler : samplers) sums.Add(sampler.Draw(stream));
        const bool at_least = At_least_observed(sums.statistic, observed, error, exact);
        const bool settled =
            Count_replicate(counts, observed, rule, at_least, Gamma_of_pairs(sums.P, sums.Q));
        if ((stop && stop()) || settled) break;
    }
    return counts;
}

LocalTest Observed_local_test(std::span<const TwoWayTable> counts,
                              std::span<const ExpectedTable> expected,
                              std::vector<std::vector<int>> groups_of_stratum, int group_count,
                              const StatisticRule& rule, bool has_gamma) {
    assert(counts.size() == expected.size() && counts.size() == groups_of_stratum.size());
    std::vector<ObservedSums> group_sums(static_cast<std::size_t>(group_count));
    for (std::size_t s = 0; s < counts.size(); ++s)
        for (const int group : groups_of_stratum[s])
            group_sums.at(static_cast<std::size_t>(group))
                .Add(counts[s], expected[s], rule, has_gamma);
    LocalTest test;
    test.hypothesis = Observed_test(counts, expected, rule, has_gamma);
    for (const ObservedSums& group : group_sums) test.groups.push_back(group.Test(has_gamma));
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
    const SumError error(strata, rule.statistic);
    constexpr int all_strata = -1;
    const auto exact_sum = [&](int group) {
        Extended sum = 0;
        for (std::size_t s = 0; s < samplers.size(); ++s) {
            const std::vector<int>& own = observed.groups_of_stratum[s];
            if (group == all_strata || std::find(own.begin(), own.end(), group) != own.end())
                sum += samplers[s].Exact_statistic();
        }
        return sum;
    };
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
        const auto count = [&](Sim_counts& to, const ObservedTest& test,
                               const StratumReplicate& replicate, int group) {
            const bool at_least = At_least_observed(replicate.statistic, test, error,
                                                    [&] { return exact_sum(group); });
            Count_replicate(to, test, whole_run, at_least,
                            Gamma_of_pairs(replicate.P, replicate.Q));
        };
        count(counts.hypothesis, observed.hypothesis, sums, all_strata);
        for (std::size_t g = 0; g < group_sums.size(); ++g)
            count(counts.groups[g], observed.groups[g], group_sums[g], static_cast<int>(g));
        if (partial_at_least_observed && partial_at_least_observed(tables)) ++counts.partial;
        if (stop && stop()) break;
    }
    return counts;
}

}  // namespace tarven
