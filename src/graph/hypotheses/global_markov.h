#pragma once

#include <span>
#include <utility>

#include "graph/hypotheses/separation.h"

namespace tarven {

/// Hypotheses from the global Markov property: two variables are independent given a smallest set
/// that separates them in the moral graph of the model from the block of the first one on.

/// What becomes of an edge between the two variables.
enum class GlobalMarkovVariant : std::uint8_t {
    edge_removed_first = 1,  ///< it joins no parents: the hypothesis of the model without it
    edge_removed_last = 2    ///< the moral graph is that of the model as it is
};

/// The graph in which i and j are separated, i < j; they are not adjacent in it.
UndirectedGraph Global_markov_graph(const ChainGraph& graph, int i, int j,
                                    GlobalMarkovVariant variant);

/// The rows of every pair, as Separate gives them: pairs in either order, MaxPairs of them at most,
/// a list of at most MaxHypotheses. The search goes from the end of smaller degree in the moral
/// graph.
SeparationList GlobalMarkov(const ChainGraph& graph, std::span<const std::pair<int, int>> pairs,
                            GlobalMarkovVariant variant, const StopCheck& stop = {});

}  // namespace tarven
