#pragma once

#include <string>
#include <vector>

#include "tables/ordinal/local_cpr.h"

namespace tarven {

std::vector<std::string> Local_analysis_lines(const LocalAnalysis& analysis);

}  // namespace tarven
