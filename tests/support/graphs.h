#pragma once

#include <random>
#include <string>
#include <vector>

#include "graph/model/chain_graph.h"
#include "graph/sets/undirected_graph.h"

namespace tarven {

/// A graph on 1..nvar with each edge there with the given probability.
UndirectedGraph Random_graph(std::mt19937& random, int nvar, double density);

/// The graph on 1..nvar with these edges.
UndirectedGraph Graph_of_edges(int nvar, const std::vector<std::pair<int, int>>& edges);

/// A chain graph of free and absent edges; blocks end at the last variables given.
ChainGraph Random_chain_graph(std::mt19937& random, const std::vector<int>& blocks, double density);

/// A chain graph from its labels, the last variables of its blocks and the rows of its statuses
/// ("3121").
ChainGraph Chain_graph_of_rows(const std::string& labels, const std::vector<int>& blocks,
                               const std::vector<std::string>& rows);

/// A chain graph with free edges between these pairs of labels.
ChainGraph Chain_graph_of_pairs(const std::string& labels, const std::vector<int>& blocks,
                                const std::vector<std::string>& pairs);

/// The variables with these labels, as a set and in their order.
VariableSet Set_of(const std::string& labels, const std::string& members);
std::vector<int> Numbers_of(const std::string& labels, const std::string& members);
SetList Sets_of(const std::string& labels, const std::vector<std::string>& sets);

/// The graph as text, for the message of a failed test.
std::string Show(const UndirectedGraph& graph);

}  // namespace tarven
