#pragma once

#include <string>
#include <vector>

#include "graph/hypotheses/relevance.h"

namespace tarven {

/// What RELEVANCE prints.

/// One edge and one pair, with what the model says of the pair with and without the edge.
std::vector<std::string> Relevance_lines(const ChainGraph& graph, const Relevance& relevance,
                                         const RelevanceWishes& wishes);

/// The heading of the list of edges.
std::vector<std::string> Relevance_heading(const RelevanceWishes& wishes);
/// The edges that influence each pair, as separation hypotheses.
std::vector<std::string> Relevant_edges_lines(const ChainGraph& graph, const RelevanceList& list);

}  // namespace tarven
