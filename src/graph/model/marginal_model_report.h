#pragma once

#include <string>
#include <vector>

#include "graph/model/marginal_model.h"

namespace tarven {

/// The labels of each set, sets separated by commas, behind a heading. A line ends with the set
/// that reaches beyond column 45, and the next one begins below the first set.
std::vector<std::string> Set_list_lines(const std::string& heading, const ChainGraph& graph,
                                        const SetList& sets);

/// The analysis of a marginal model of this graph.
std::vector<std::string> Marginal_model_lines(const ChainGraph& graph,
                                              const MarginalModelRecord& model);

}  // namespace tarven
