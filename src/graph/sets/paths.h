#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "graph/sets/undirected_graph.h"
#include "graph/sets/variable_set.h"

namespace tarven {

/// The most paths that are kept for one pair.
inline constexpr std::size_t MaxPaths = 500;

/// How many partial paths of one length a search between variables of a graph of nvar may hold:
/// what thirty arrays of counts, each of CountArraySize, leave to rows of nvar.
std::int64_t Partial_path_limit(int nvar);

/// Paths between two variables, as far as they tell what separates them.
struct PathList {
    std::vector<std::vector<int>> paths;  ///< vertices from the first end to the second
    SetList inner;                        ///< of each path the vertices between the ends
    bool complete = true;                 ///< no limit ended the search
    bool too_many_partial_paths = false;  ///< it was that of partial paths
    std::int64_t most_partial_paths = 0;  ///< of one length
};

/// Which part of a PathList is wanted: a search for separators needs no order of the vertices.
enum class PathDetail : std::uint8_t { inner_vertices, whole_paths };

/// The paths between two vertices in which no vertex is adjacent to the last but one before it, so
/// that short cuts are left out, without those that hold all the inner vertices of an earlier one:
/// whatever cuts that one cuts them too. A path without inner vertices stands in the list but
/// dominates none, since else an edge between the ends would hide every other path.
///
/// Breadth first, by number of edges; the neighbours of a vertex are taken in ascending order, and
/// the paths are listed as they are found. The search ends as incomplete at the path that would be
/// the 501st, or at one partial path too many; the list then holds what was found so far.
/// Cost: partial paths times their extensions; each is compared only with the paths that come to
/// their end from its last vertex.
PathList FindPaths(const UndirectedGraph& graph, int from, int to,
                   PathDetail detail = PathDetail::whole_paths);

}  // namespace tarven
