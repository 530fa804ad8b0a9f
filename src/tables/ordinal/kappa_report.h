#pragma once

#include <string>
#include <vector>

#include "tables/ordinal/kappa.h"

namespace tarven {

std::vector<std::string> Kappa_heading();
/// labels: of the two variables, "A&B".
std::string Kappa_line(const std::string& labels, const KappaRecord& record);

}  // namespace tarven
