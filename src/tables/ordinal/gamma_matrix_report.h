#pragma once

#include <string>
#include <vector>

#include "tables/ordinal/gamma_matrix.h"

namespace tarven {

/// The coefficients above the diagonal and their one-sided p-values below, or the generalized odds
/// ratios.
std::vector<std::string> Gamma_matrix_lines(const GammaMatrix& matrix, bool odds_ratios);

}  // namespace tarven
