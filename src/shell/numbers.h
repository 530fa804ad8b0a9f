#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace tarven {

/// Extended precision, for the sums and products whose last digit reaches a report or a draw.
using Extended = long double;
static_assert(std::numeric_limits<Extended>::digits >= 64,
              "the random stream and the counts of ties rest on 64 bits of mantissa");

/// x rounded to the nearest integer, ties to even: the one rounding of the whole system. The
/// stream of random tables turns on it. x must lie within 64 bits; nan is not accepted.
inline std::int64_t Round_to_even(double x) {
    return static_cast<std::int64_t>(std::nearbyint(x));
}

}  // namespace tarven
