#pragma once

#include <cstdint>

namespace tarven {

/// The bound that the stop statistic of a repeated Monte Carlo test must reach before the run of at
/// most `nsim` tables ends early: with it the risk of stopping a test that is significant at level
/// `crit` is `risk`. The arguments are snapped to the rows and columns of a stored table:
/// - crit to 0.05, 0.1 or 0.25 (below 0.1, below 0.25, the rest);
/// - risk to 0.001, 0.005, 0.01, 0.02 or 0.05 (below 0.005, 0.01, 0.02, 0.05, the rest);
/// - nsim up to a multiple of 100, from 100 to 1000.
/// Every argument gives a bound; nan counts as the top class.
double Repeat_boundary(double crit, std::int32_t nsim, double risk);

}  // namespace tarven
