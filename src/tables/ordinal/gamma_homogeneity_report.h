#pragma once

#include <string>
#include <vector>

#include "tables/ordinal/gamma_homogeneity.h"

namespace tarven {

std::vector<std::string> Fitted_gamma_lines(const FittedGamma& gamma);

std::vector<std::string> Homogeneity_lines(const LocalHypothesis& hypothesis,
                                           const HomogeneityAnalysis& analysis);

}  // namespace tarven
