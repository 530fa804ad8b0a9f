#pragma once

#include <string>
#include <vector>

#include "tables/ordinal/pseudo_gamma.h"

namespace tarven {

std::vector<std::string> Pseudo_gamma_lines(const LocalHypothesis& hypothesis,
                                            const PseudoGammaAnalysis& analysis,
                                            const TestSettings& settings);

}  // namespace tarven
