#pragma once

#include <cstddef>

#include "graph/sets/undirected_graph.h"
#include "graph/sets/variable_set.h"

namespace tarven {

/// The most cliques that a list may hold.
inline constexpr std::size_t MaxCliques = 20000;

/// The cliques of a graph, or none of them when there are too many.
struct CliqueList {
    SetList cliques;
    bool complete = true;  ///< false: more than MaxCliques, and the list is empty
};

/// The maximal complete sets of the vertices of `graph`. Variables above m are the later ones of a
/// regression graph: all of them together count as one complete set, "the later set", whether they
/// are adjacent or not, and besides it only cliques with a variable up to m are looked for.
///
/// Order of the list. A variable adjacent to all other vertices is universal: it belongs to every
/// clique and is set aside. Of what is left stand, in this order,
///   1. the cliques of two and more variables, larger ones first and of one size in lexicographic
///      order, as a search by levels that extends sets upwards meets them;
///   2. the later set, unless one of those holds it;
///   3. each variable up to m without a neighbour, ascending.
/// Then the universal variables join every clique. So a clique that is as large as others through
/// universal variables alone stands behind them. Only universal variables make one clique, no
/// vertex makes none.
///
/// Method: Bron and Kerbosch (1973), CACM 16, 575-577, on words, with the pivot of Tomita, Tanaka
/// and Takahashi (2006), TCS 363, 28-42, where many vertices are open, and the next best where few
/// are. Cost: at most some 3^(n/3) steps for n vertices; it ends as soon as there is one clique too
/// many.
CliqueList FindCliques(const UndirectedGraph& graph, int m);
/// Of a graph without later variables.
CliqueList FindCliques(const UndirectedGraph& graph);

}  // namespace tarven
