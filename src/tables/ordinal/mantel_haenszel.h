#pragma once

#include <span>

#include "tables/table/two_way.h"

namespace tarven {

/// The common odds ratio of 2 by 2 tables in strata.
struct MantelHaenszel {
    bool defined = false;   ///< false: a sum of products is 0, and nothing below means anything
    double odds_ratio = 1;  ///< sum of ad/n over sum of bc/n
    double ln_odds_ratio = 0;
    double se = 0;             ///< of the logarithm
    double low = 1, high = 1;  ///< 95 % limits of the odds ratio
};

/// Of the 2 by 2 tables of all strata; an empty one adds nothing. Mantel & Haenszel (1959), JNCI
/// 22, 719-748; variance of Robins, Breslow & Greenland (1986), Biometrics 42, 311-323.
MantelHaenszel Mantel_haenszel(std::span<const TwoWayTable> strata);

/// A gamma in ]-1, 1[ as the generalized odds ratio (1 + gamma) / (1 - gamma), the odds of
/// concordance; for a 2 by 2 table it is the odds ratio. inf at 1. Agresti (1980), Biometrics 36,
/// 59-67.
double Generalized_odds_ratio(double gamma);

}  // namespace tarven
