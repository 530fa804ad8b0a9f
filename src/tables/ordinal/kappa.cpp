#include "tables/ordinal/kappa.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "tables/numbers/distributions.h"

namespace tarven {

KappaRecord Kappa_of_table(const TwoWayTable& counts) {
    const int k = counts.rows;
    assert(counts.columns == k && "agreement is of a square table");
    KappaRecord result;
    result.n = counts.Total();
    if (result.n < 1) return result;
    const double n = static_cast<double>(result.n);
    const auto p = [&](int i, int j) { return counts(i, j) / n; };
    const auto both = [&](int i) { return p(i, k + 1) + p(k + 1, i); };
    double po = 0, pe = 0, triple = 0;
    for (int i = 1; i <= k; ++i) {
        po += p(i, i);
        pe += p(i, k + 1) * p(k + 1, i);
        triple += p(i, k + 1) * p(k + 1, i) * both(i);
    }
    result.agreement = po;
    result.expected = pe;
    if (pe >= 1) return result;
    result.defined = true;
    result.kappa = (po - pe) / (1 - pe);

    double on = 0, off = 0;
    for (int i = 1; i <= k; ++i)
        for (int j = 1; j <= k; ++j) {
            const double weight = p(k + 1, i) + p(j, k + 1);
            if (i == j)
                on += p(i, i) * std::pow((1 - pe) - both(i) * (1 - po), 2);
            else
                off += p(i, j) * weight * weight;
        }
    const double variance = (on + (1 - po) * (1 - po) * off - std::pow(po * pe - 2 * pe + po, 2)) /
                            n / std::pow(1 - pe, 4);
    const double null_variance = (pe + pe * pe - triple) / n / std::pow(1 - pe, 2);
    result.se = std::sqrt(std::max(variance, 0.0));
    if (null_variance > 0) {
        result.z = result.kappa / std::sqrt(null_variance);
        result.p = std::min(1.0, 2 * Normal_p(std::abs(result.z)));
    }
    return result;
}

}  // namespace tarven
