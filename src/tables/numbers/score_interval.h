#pragma once

#include <algorithm>
#include <cmath>

namespace tarven {

/// Limits of a confidence interval.
struct Interval {
    double lower = 0;
    double upper = 1;
};

inline constexpr double Z95 = 1.96;    ///< of a two-sided 95 % interval, to the digits used
inline constexpr double Z99 = 2.5758;  ///< 99 %

/// The score interval of a probability estimated by the share p of m independent trials; all of
/// 0..1 without a trial. It stays inside 0..1 and has a length also for p = 0 and p = 1, where a
/// Monte Carlo test needs it most. Wilson (1927), JASA 22, 209-212.
inline Interval Score_interval(double p, double m, double z) {
    if (!(m > 0)) return {};
    const double middle = 2 * m * p + z * z;
    const double reach = z * std::sqrt(4 * m * p * (1 - p) + z * z);
    const double scale = 2 * (m + z * z);
    return {std::max(0.0, (middle - reach) / scale), std::min(1.0, (middle + reach) / scale)};
}

}  // namespace tarven
