#pragma once

#include <string>
#include <vector>

#include "graph/hypotheses/max_edges.h"

namespace tarven {

/// Each step with the edges of every variable and the one that goes, and the end of it all.
std::vector<std::string> Simplification_lines(const Simplification& simplification,
                                              const std::string& labels);

}  // namespace tarven
