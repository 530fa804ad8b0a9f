#pragma once

#include <vector>

#include "graph/sets/undirected_graph.h"
#include "graph/sets/variable_set.h"

namespace tarven {

/// What stays around two variables when everything that tells nothing about them is taken away.

/// The core of x and y, both among it. A variable is left out when it belongs to some connected set
/// of variables without x and y whose boundary is complete and does not hold both: the model
/// collapses onto the margin of the others, and the association of x and y is the same there. So
/// the common neighbours of x and y stay in any case. An edge between x and y decides nothing.
///
/// Method: v is left out when a clique, which may be empty but does not hold both x and y,
/// separates v from them. With a new vertex joined to x and to y, and the edge x-y taken away,
/// these are the cliques that separate v from that vertex; so the core is the union of the maximal
/// prime subgraphs that hold it (Leimer 1993, Discrete Math. 113, 99-123). They are found from the
/// minimal separators of a minimal triangulation: MCS-M of Berry, Blair, Heggernes and Peyton
/// (2004), Algorithmica 39, 287-298, and Berry, Pogorelcnik and Simonet (2010), Algorithms 3,
/// 197-215. No list of sets or of cliques is made, so there is no limit to meet.
/// Cost: vertices times edges.
VariableSet FindCore(const UndirectedGraph& graph, int x, int y);

/// A part of what is left out, connected, and the complete set that it stands behind.
struct LeftOut {
    VariableSet variables = 0;
    VariableSet boundary = 0;
    bool operator==(const LeftOut&) const = default;
};
/// The connected parts of the vertices outside a core of x and y, by their lowest variables.
std::vector<LeftOut> Left_out(const UndirectedGraph& graph, VariableSet core);

}  // namespace tarven
