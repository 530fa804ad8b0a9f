#include "tables/ordinal/mantel_haenszel.h"

#include <cassert>
#include <cmath>
#include <limits>

namespace tarven {

MantelHaenszel Mantel_haenszel(std::span<const TwoWayTable> strata) {
    double R = 0, S = 0, PR = 0, mixed = 0, QS = 0;
    for (const TwoWayTable& t : strata) {
        assert(t.rows == 2 && t.columns == 2 && "odds ratios are of 2 by 2 tables");
        const double a = t(1, 1), b = t(1, 2), c = t(2, 1), d = t(2, 2), n = a + b + c + d;
        if (n == 0) continue;
        const double r = a * d / n, s = b * c / n, P = (a + d) / n, Q = (b + c) / n;
        R += r;
        S += s;
        PR += P * r;
        mixed += P * s + Q * r;
        QS += Q * s;
    }
    MantelHaenszel result;
    if (R <= 0 || S <= 0) return result;
    constexpr double z = 1.959963984540054;  // of 95 % limits
    result.defined = true;
    result.odds_ratio = R / S;
    result.ln_odds_ratio = std::log(R / S);
    result.se = std::sqrt(PR / (2 * R * R) + mixed / (2 * R * S) + QS / (2 * S * S));
    result.low = std::exp(result.ln_odds_ratio - z * result.se);
    result.high = std::exp(result.ln_odds_ratio + z * result.se);
    return result;
}

double Generalized_odds_ratio(double gamma) {
    return gamma >= 1 ? std::numeric_limits<double>::infinity() : (1 + gamma) / (1 - gamma);
}

}  // namespace tarven
