#pragma once

#include <span>
#include <string>
#include <vector>

#include "tables/independence/hypotheses.h"

namespace tarven {

/// "1 Hypothesis:" or "7 Hypotheses:" and a line for each; rows without exactly two variables to
/// test follow under "improper hypotheses:".
std::vector<std::string> Hypothesis_list_lines(std::span<const Hypothesis> list,
                                               const std::string& vlabel);

/// SHOW H: the list under the words that tell what its variables are; "No hypotheses" without one.
std::vector<std::string> Show_hypotheses_lines(std::span<const Hypothesis> list,
                                               const std::string& vlabel, HypothesisScope scope);

}  // namespace tarven
