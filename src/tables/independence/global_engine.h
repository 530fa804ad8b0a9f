#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "shell/numbers.h"
#include "shell/settings.h"
#include "tables/draws/monte_carlo.h"
#include "tables/independence/hypotheses.h"
#include "tables/numbers/random_stream.h"
#include "tables/table/gamma.h"
#include "tables/table/two_way.h"

namespace tarven {

/// The tests of a list of hypotheses of conditional independence, one row a hypothesis. A
/// hypothesis comes as its strata, two-way tables of X and Y; where they come from (the current
/// table, a big table, the data) is the caller's.

/// The sums over the strata of one hypothesis.
struct StrataSums {
    int strata = 0;          ///< tables added, those without cases left out
    std::int64_t cases = 0;  ///< in them
    Extended statistic = 0;
    std::int64_t df = 0;
    double P = 0, Q = 0, V = 0;  ///< as in GammaRecord; 0 when gamma is not wanted
};

/// Adds the statistic of one stratum and, with `has_gamma`, what partial gamma needs. A stratum
/// without cases changes nothing.
void Add_stratum(StrataSums& sums, const TwoWayTable& counts, const ExpectedTable& expected,
                 bool has_gamma, const StatisticRule& rule);

/// The silent loop over the strata: no report, no simulation.
StrataSums Sum_over_strata(std::span<const TwoWayTable> counts,
                           std::span<const ExpectedTable> expected, bool has_gamma,
                           const StatisticRule& rule);

/// Everything known of one hypothesis, before it is cut to the single precision of a row.
struct HypothesisTest {
    bool has_gamma = false;
    StrataSums sums;
    double PAsymp = 1;
    PartialGamma gamma;
    Sim_counts counts;  ///< n is 0 without simulation

    bool tested() const { return sums.df > 0; }
};

/// Asymptotic p-values of the sums.
HypothesisTest Asymptotic_test(const StrataSums& sums, bool has_gamma);

/// Asymptotic_test, and with settings.ExactTests and a positive Nsim and df also the Monte Carlo
/// run, from the stream as it stands.
HypothesisTest Test_strata(std::span<const TwoWayTable> counts,
                           std::span<const ExpectedTable> expected, bool has_gamma,
                           const TestSettings& settings, RandomStream& stream, DrawMemory& memory,
                           const StopCheck& stop = {});

/// The row in single precision; Untested_result without strata or degrees of freedom.
TestResult Row_of(const HypothesisTest& test);

/// The p that a decision on one hypothesis rests on: the smaller of that of the statistic and, with
/// gamma, that of gamma; Monte Carlo values where the row has them.
float Smallest_p(const TestResult& row, bool has_gamma);

/// What screening makes of a smallest p: 3 strong evidence (p <= 0.01), 2 evidence (p <= 0.05),
/// 1 none. The edge is present from 2 up.
int Edge_status_of(float smallest_p);

/// "Repeated MC test", "Sequential MC test" or "Monte Carlo test".
std::string Monte_carlo_name(const TestSettings& settings);

}  // namespace tarven
