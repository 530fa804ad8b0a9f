#include "tables/numbers/binomial_tails.h"

#include <algorithm>
#include <cmath>

#include "shell/numbers.h"

namespace tarven {

namespace {

/// P(X = k) for p strictly between 0 and 1.
Extended Binomial_term(std::int64_t n, std::int64_t k, Extended p) {
    const auto N = static_cast<Extended>(n), K = static_cast<Extended>(k);
    return std::exp(std::lgamma(N + 1) - std::lgamma(K + 1) - std::lgamma(N - K + 1) +
                    K * std::log(p) + (N - K) * std::log1p(-p));
}

/// P(X >= k) where k lies at or above the mean: each term is smaller than the one before it.
Extended Far_tail(std::int64_t n, std::int64_t k, Extended p) {
    constexpr Extended Negligible = 1e-20L;
    const Extended odds = p / (1 - p);
    Extended t = Binomial_term(n, k, p);
    Extended s = 0;
    for (std::int64_t i = k; i <= n && t > Negligible * s; ++i) {
        s += t;
        t *= static_cast<Extended>(n - i) / static_cast<Extended>(i + 1) * odds;
    }
    return s;
}

Extended Upper_tail(std::int64_t n, std::int64_t k, Extended p) {
    if (k <= 0) return 1;
    if (k > n) return 0;
    if (p <= 0) return 0;
    if (p >= 1) return 1;
    if (static_cast<Extended>(k) >= static_cast<Extended>(n) * p) return Far_tail(n, k, p);
    // At least about one half: P(X < k), as the upper tail of the failures, is the small one.
    return 1 - Far_tail(n, n - k + 1, 1 - p);
}

}  // namespace

BinomialTails Binomial_tails(std::int64_t n, std::int64_t k, double p) {
    const Extended P = p;
    const auto probability = [](Extended value) {
        return static_cast<double>(std::clamp<Extended>(value, 0, 1));
    };
    return {probability(Upper_tail(n, k, P)), probability(Upper_tail(n, n - k, 1 - P))};
}

}  // namespace tarven
