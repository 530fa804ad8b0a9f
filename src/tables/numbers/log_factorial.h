#pragma once

#include <cstdint>

#include "shell/numbers.h"

namespace tarven {

/// ln n!, the ground of every hypergeometric probability. 0 for n below 2. Up to 1000 a running sum
/// of logarithms, looked up, with an error below 1e-15 relative. Above 1000 a formula of Stirling's
/// kind, (n + 0.5) ln n - n + 0.9197541... + 1/(24 n): its constant lies 0.0008155996 above the
/// textbook's ln(2 pi)/2 and its last term is half of the textbook's. Both are meant: the
/// random tables of large counts rest on them.
Extended Log_factorial(std::int64_t n);

/// The largest n that Log_factorial looks up.
inline constexpr std::int64_t LogFactorialTableTop = 1000;

/// ln of the binomial coefficient n over k; 0 when k > n.
Extended Log_binomial(std::int64_t n, std::int64_t k);

/// ln Gamma(n/2), n >= 1; 0 for n below 1. Below 501 the recurrence, with an error below 1e-15
/// relative; from there Stirling's series with two terms, with an error below 3e-15.
Extended Log_gamma_half(std::int64_t n);

}  // namespace tarven
