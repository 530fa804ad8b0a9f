#pragma once

#include <string>
#include <vector>

#include "tables/ordinal/mantel_haenszel.h"

namespace tarven {

/// The two lines of a hypothesis in the table of MANTEL: the Mantel-Haenszel estimate, and the
/// partial gamma with its standard error under independence.
std::vector<std::string> Mantel_lines(const std::string& label, const MantelHaenszel& estimate,
                                      double gamma, double gamma_se);
std::vector<std::string> Mantel_heading();

}  // namespace tarven
