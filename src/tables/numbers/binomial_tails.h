#pragma once

#include <cstdint>

namespace tarven {

/// Both tails of a binomial X, each with the value itself.
struct BinomialTails {
    double upper = 1;  ///< P(X >= k)
    double lower = 1;  ///< P(X <= k)
};

/// The tails of X with n >= 1 trials of probability p in [0, 1] at 0 <= k <= n. The smaller one is
/// a sum of its own terms from k outward and never a difference from 1, so that it keeps its digits
/// however small it is; the relative error grows with n ln n, to about 1e-8 at n = 2^31. Cost: some
/// multiple of the standard deviation of X in terms.
BinomialTails Binomial_tails(std::int64_t n, std::int64_t k, double p);

}  // namespace tarven
