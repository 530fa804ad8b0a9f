#include "tables/independence/global_engine.h"

#include <algorithm>

#include "tables/numbers/distributions.h"

namespace tarven {

void Add_stratum(StrataSums& sums, const TwoWayTable& counts, const ExpectedTable& expected,
                 bool has_gamma, const StatisticRule& rule) {
    if (counts.Total() < 1) return;
    ++sums.strata;
    sums.cases += counts.Total();
    sums.statistic += Sum_of_statistic(counts, expected, rule);
    sums.df += Degrees_of_freedom(counts);
    if (!has_gamma) return;
    const GammaRecord gamma = Gamma_without_p(counts);
    sums.P += gamma.P;
    sums.Q += gamma.Q;
    sums.V += gamma.V;
}

StrataSums Sum_over_strata(std::span<const TwoWayTable> counts,
                           std::span<const ExpectedTable> expected, bool has_gamma,
                           const StatisticRule& rule) {
    StrataSums sums;
    for (std::size_t s = 0; s < counts.size(); ++s)
        Add_stratum(sums, counts[s], expected[s], has_gamma, rule);
    return sums;
}

HypothesisTest Asymptotic_test(const StrataSums& sums, bool has_gamma) {
    HypothesisTest test;
    test.has_gamma = has_gamma;
    test.sums = sums;
    test.PAsymp = Chi2_tail(sums.df, static_cast<double>(sums.statistic));
    if (has_gamma) test.gamma = Partial_gamma(sums.P, sums.Q, sums.V);
    return test;
}

HypothesisTest Test_strata(std::span<const TwoWayTable> counts,
                           std::span<const ExpectedTable> expected, bool has_gamma,
                           const TestSettings& settings, RandomStream& stream, DrawMemory& memory,
                           const StopCheck& stop) {
    const MonteCarloRule rule = Monte_carlo_rule(settings);
    HypothesisTest test =
        Asymptotic_test(Sum_over_strata(counts, expected, has_gamma, rule.statistic), has_gamma);
    if (!settings.ExactTests || settings.Nsim <= 0 || !test.tested()) return test;
    const ObservedTest observed = Observed_test(counts, expected, rule.statistic, has_gamma);
    test.counts = Monte_carlo_test(expected, observed, rule, stream, memory, stop);
    return test;
}

TestResult Row_of(const HypothesisTest& test) {
    TestResult row = Untested_result();
    if (!test.tested()) return row;
    row.Statistic = static_cast<float>(test.sums.statistic);
    row.Df = static_cast<float>(test.sums.df);
    row.PAsymp = static_cast<float>(test.PAsymp);
    row.PExact = static_cast<float>(test.counts.PExact());
    row.Nsim = static_cast<float>(test.counts.n);
    row.PGammaAsymp = 1;
    row.PGammaExact = 1;
    if (!test.has_gamma) return row;
    row.Gamma = static_cast<float>(test.gamma.gamma);
    row.PGammaAsymp = static_cast<float>(test.gamma.p);
    row.PGammaExact = static_cast<float>(test.counts.PGammaExact());
    row.PGammaExact2 = static_cast<float>(test.counts.PGammaExact2());
    return row;
}

float Smallest_p(const TestResult& row, bool has_gamma) {
    const bool exact = row.Nsim > 0;
    const float p = exact ? row.PExact : row.PAsymp;
    return has_gamma ? std::min(p, exact ? row.PGammaExact : row.PGammaAsymp) : p;
}

int Edge_status_of(float smallest_p) {
    if (smallest_p <= 0.01F) return 3;
    return smallest_p <= 0.05F ? 2 : 1;
}

std::string Monte_carlo_name(const TestSettings& settings) {
    if (settings.SequentialTests && settings.SimBoundary < 1000) return "Repeated MC test";
    if (settings.SequentialTests && settings.Nsim >= settings.SequentialLimit)
        return "Sequential MC test";
    return "Monte Carlo test";
}

}  // namespace tarven
