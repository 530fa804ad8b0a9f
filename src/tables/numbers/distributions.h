#pragma once

#include <cstdint>

namespace tarven {

/// Tail probabilities. Sums run in Extended, results are 64-bit reals. No function reports: what
/// lies outside its range gives 0, 1 or 0.5 as told; nan counts as the value at the edge.

/// The integral of the standard normal density from z to infinity (`upper`) or from minus infinity
/// to z. 0.5 at z = 0. Beyond abs(z) = 18.4 (z^2/2 >= 170) the tail is 0 and its complement 1.
/// Relative error about 1e-15 in the tail, where the 16 digits of the stored constant limit it.
/// Hill & Joyce (1967), CACM Algorithm 304.
double Normal_tail(bool upper, double z);

/// The upper tail of the standard normal; 0 for abs(z) >= 100. A negative z gives more than 0.5.
double Normal_p(double z);

/// The upper tail of chi-square; 1 for df <= 0 or x <= 0. Up to 100 degrees of freedom the exact
/// finite sum, with the terms dropped from x = 170 on: an even df then gives 0, and an odd one its
/// normal part alone. Above 100 the cube-root approximation of Wilson and Hilferty, whose
/// error stays below 0.012/df absolute.
/// Hill & Pike (1967), CACM Algorithm 299; Wilson & Hilferty (1931), PNAS 17, 684-688.
double Chi2_tail(std::int64_t df, double x);

/// The incomplete beta function I_x(a/2, b/2) for whole numbers a and b (the degrees of freedom of
/// F). 0 for x <= 0, 1 for x >= 1. A parameter of 0 or less is the limit: a <= 0 gives 1, b <= 0
/// gives 0. Error about 1e-15 absolute; below 1e-35 the result is 0.
double Beta_tail(std::int64_t a, std::int64_t b, double x);

/// P(X >= k) of a binomial X with n trials of probability p. 1 for k <= 0, 0 for k > n.
double Binomial_tail(std::int64_t n, std::int64_t k, double p);

}  // namespace tarven
