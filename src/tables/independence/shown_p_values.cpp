#include "tables/independence/shown_p_values.h"

#include <algorithm>

namespace tarven {

ShownGamma Shown_gamma(const TestResult& result, const TestSettings& settings) {
    if (!settings.TwoSided) return {result.PGammaAsymp, result.PGammaExact};
    return {std::min(1.0F, 2 * result.PGammaAsymp), result.PGammaExact2};
}

bool Shows_exact(const TestResult& result, const TestSettings& settings) {
    return settings.ExactTests && result.Nsim > 0;
}

}  // namespace tarven
