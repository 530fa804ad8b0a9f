#pragma once

#include "graph/model/chain_graph.h"
#include "graph/sets/undirected_graph.h"

namespace tarven {

/// The moral graph of the model of the blocks from `level` on: their variables and edges, the
/// arrows without direction, and for every chain component (variables of one block that edges
/// inside the block connect, also a single one) all its parents joined. Each block keeps its
/// own components. Sets that separate two variables in it separate them in the model by the global
/// Markov property for chain graphs. It holds all of these blocks, not the smallest ancestral set
/// of a hypothesis, so that such a set can be larger than it need be.
/// A level below 1 is block 1. Cost: nvar squared.
/// Lauritzen and Wermuth (1989), Ann. Statist. 17, 31-57; Frydenberg (1990), Scand. J. Statist. 17,
/// 333-353.
UndirectedGraph MoralGraph(const ChainGraph& graph, int level);

}  // namespace tarven
