#pragma once

#include <vector>

#include "graph/sets/variable_set.h"
#include "shell/one_based.h"

namespace tarven {

/// An undirected graph over some of the variables 1..nvar. Variables that take no part have no
/// neighbours; no variable is its own neighbour; j is a neighbour of i when i is one of j.
struct UndirectedGraph {
    int nvar = 0;
    VariableSet vertices = 0;                         ///< the variables that take part
    One_based<VariableSet, MaxVariables> neighbours;  ///< [1..nvar]

    VariableSet Neighbours(int v) const { return neighbours[static_cast<std::size_t>(v)]; }
    bool Adjacent(int v, int w) const { return Contains(Neighbours(v), w); }
    int Degree(int v) const { return Size(Neighbours(v)); }
    bool operator==(const UndirectedGraph&) const = default;
};

/// Joins two different vertices, or parts them.
void Join(UndirectedGraph& graph, int v, int w);
void Part(UndirectedGraph& graph, int v, int w);
/// Joins every two members of a set of vertices.
void Complete(UndirectedGraph& graph, VariableSet set);
/// Whether every two members are adjacent; so are none and one.
bool Is_complete(const UndirectedGraph& graph, VariableSet set);

/// The graph of the vertices in `set` alone. Cost: nvar.
UndirectedGraph InducedSubgraph(const UndirectedGraph& graph, VariableSet set);

/// The boundary of a set: every vertex outside it that is adjacent to a member.
struct Boundary {
    VariableSet boundary = 0;
    bool complete = true;  ///< every two of the boundary are adjacent
};
Boundary FindBoundary(const UndirectedGraph& graph, VariableSet set);

/// For each variable the vertices that a walk of at most `steps` edges leads to, itself among them
/// when it takes part. More steps than vertices lead nowhere further.
One_based<VariableSet, MaxVariables> ReachableInSteps(const UndirectedGraph& graph, int steps);

/// The connected components, in the order of their lowest variables. Cost: vertices.
std::vector<VariableSet> Connected_components(const UndirectedGraph& graph);

}  // namespace tarven
