#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "graph/hypotheses/graph_gammas.h"

namespace tarven {

/// The gammas of all pairs above the diagonal, or the generalized odds ratios, and below it the
/// number of hypotheses that each is the mean of.
std::vector<std::string> Graph_gamma_lines(const GraphGammas& gammas, const std::string& labels,
                                           bool odds_ratios);

/// "Separation by Local Markov properties in 2 cases:" and the pairs; none without pairs.
std::vector<std::string> Local_markov_lines(std::span<const std::pair<int, int>> pairs,
                                            const std::string& labels);

}  // namespace tarven
