#pragma once

#include <string>
#include <vector>

#include "graph/model/graph_comparison.h"

namespace tarven {

/// A graph under the name that the report gives it.
struct NamedGraph {
    std::string name;
    const ChainGraph& graph;
};

/// Both names, then a row for each pair whose status differs, or why there are none.
std::vector<std::string> Comparison_lines(const NamedGraph& one, const NamedGraph& other,
                                          const GraphComparison& comparison);

}  // namespace tarven
