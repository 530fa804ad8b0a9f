#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "shell/numbers.h"
#include "shell/settings.h"
#include "shell/stop_check.h"
#include "tables/draws/replicates.h"
#include "tables/numbers/random_stream.h"
#include "tables/table/two_way.h"

namespace tarven {

/// Monte Carlo exact tests of conditional independence. A replicate is one random table a stratum,
/// with the margins of the stratum; its statistic is the sum over strata of the statistics, its
/// gamma the sum of Q over the sum of P. How often a replicate is at least as extreme as the
/// observed tables is counted. Every comparison is bare: the observed values must come from
/// `Observed_test` or the same sums in the same order.

/// How long a run lasts and how it counts.
struct MonteCarloRule {
    std::int32_t nsim = 0;      ///< replicates at most
    bool stops = false;         ///< a stop rule is active
    double SimCrit = 0.05;      ///< critical level of the stop rule
    double SimBoundary = 1000;  ///< bound of the stop statistic
    double SimLimit = 20;       ///< count that stops
    bool two_sided = false;     ///< which count of gamma the stop rule watches
    StatisticRule statistic;
};

MonteCarloRule Monte_carlo_rule(const TestSettings& settings);

/// What replicates are compared with.
struct ObservedTest {
    Extended statistic = 0;
    bool has_gamma = false;
    double gamma = 0;  ///< the sum of Q over the sum of P; 0 when nothing is untied
};

/// The sums over strata, in their order.
ObservedTest Observed_test(std::span<const TwoWayTable> counts,
                           std::span<const ExpectedTable> expected, const StatisticRule& rule,
                           bool has_gamma);

/// The counters of one hypothesis.
struct Sim_counts {
    std::int32_t n = 0;                ///< replicates done
    std::int32_t statistic = 0;        ///< with a statistic at least the observed
    std::int32_t gamma = 0;            ///< with a gamma at least as extreme, one-sided
    std::int32_t gamma_two_sided = 0;  ///< and two-sided
    bool stopStatistic = false;
    bool stopGamma = false;  ///< the rule has fired; true from the start without gamma

    double PExact() const { return Share(statistic); }
    double PGammaExact() const { return Share(gamma); }
    double PGammaExact2() const { return Share(gamma_two_sided); }
    bool operator==(const Sim_counts&) const = default;

  private:
    double Share(std::int32_t count) const { return n > 0 ? static_cast<double>(count) / n : 0; }
};

/// count/sqrt(n) - sqrt(n) p for n >= 21, else 0: with a positive bound no rule fires by it in the
/// first 20 replicates.
double Repeated_z(std::int32_t count, std::int32_t n, double p);

/// Counts one more replicate. With an active rule a flag that was once set stays set. True when
/// both flags are set, so the run ends. A one-sided gamma counts on the side of the observed one;
/// when that is 0 every replicate counts.
bool Update_sim_counts(Sim_counts& counts, const ObservedTest& observed, const MonteCarloRule& rule,
                       Extended statistic, double gamma);

/// One run of the global engine: up to rule.nsim replicates, fewer when the rule or `stop`, asked
/// after each replicate, ends it. The strata's tables are drawn in the order given. No replicates
/// for nsim <= 0.
Sim_counts Monte_carlo_test(std::span<const ExpectedTable> strata, const ObservedTest& observed,
                            const MonteCarloRule& rule, RandomStream& stream, DrawMemory& memory,
                            const StopCheck& stop = {});

/// The local engine: beside the hypothesis, groups of its strata are counted (those that share a
/// category of a conditioning variable). Groups are indices from 0; each stratum names its own.
struct LocalTest {
    ObservedTest hypothesis;
    std::vector<ObservedTest> groups;
    std::vector<std::vector<int>> groups_of_stratum;
};

LocalTest Observed_local_test(std::span<const TwoWayTable> counts,
                              std::span<const ExpectedTable> expected,
                              std::vector<std::vector<int>> groups_of_stratum, int group_count,
                              const StatisticRule& rule, bool has_gamma);

struct LocalCounts {
    Sim_counts hypothesis;
    std::vector<Sim_counts> groups;  ///< their n is that of the hypothesis
    std::int32_t partial = 0;        ///< replicates for which the partial test said yes
};

/// Whether the partial test's statistic of a replicate is at least the observed; gets the tables of
/// all strata with their margins.
using PartialCheck = std::function<bool(std::span<const TwoWayTable>)>;

/// Always rule.nsim replicates, whatever the stop rule; only `stop` ends it earlier.
LocalCounts Local_monte_carlo_test(std::span<const ExpectedTable> strata, const LocalTest& observed,
                                   const MonteCarloRule& rule, RandomStream& stream,
                                   DrawMemory& memory, const StopCheck& stop = {},
                                   const PartialCheck& partial_at_least_observed = {});

}  // namespace tarven
