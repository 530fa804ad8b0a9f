#pragma once

#include "tables/table/two_way.h"

namespace tarven {

/// Agreement of two variables with the same categories.
struct KappaRecord {
    bool defined = false;  ///< false: no cases, or agreement is certain by the margins
    std::int64_t n = 0;
    double agreement = 0;  ///< share of cases on the diagonal
    double expected = 0;   ///< the same under independence
    double kappa = 0;
    double se = 0;  ///< of kappa
    double z = 0;   ///< kappa over its standard error under independence; 0 when that is 0
    double p = 1;   ///< two-sided
};

/// Of a square table with margins. Cohen (1960), Educ. Psychol. Meas. 20, 37-46; both standard
/// errors from Fleiss, Cohen & Everitt (1969), Psychol. Bull. 72, 323-327.
KappaRecord Kappa_of_table(const TwoWayTable& counts);

}  // namespace tarven
