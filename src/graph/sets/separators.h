#pragma once

#include <cstddef>

#include "graph/sets/paths.h"
#include "graph/sets/undirected_graph.h"
#include "graph/sets/variable_set.h"

namespace tarven {

/// The most candidates of one size that a search for separators may hold.
inline constexpr std::size_t MaxSeparatorCandidates = 400;

/// The smallest sets that separate two variables, or, where a limit ended the search for them, sets
/// that separate them all the same.
struct Separators {
    SetList sets;          ///< in lexicographic order, all of one size; never empty
    int size = 0;          ///< of each of them
    bool smallest = true;  ///< false: a limit was met, and the sets are the neighbours of an end
    bool too_many_partial_paths = false;  ///< the set of paths was incomplete for that reason
};

/// The separators of smallest size between x and y: every path between them, but for an edge that
/// joins them, goes through each of the sets. The common neighbours belong to all; the others are
/// found as the smallest sets that cut every path of FindPaths, in sizes from 1 up.
///
/// Limits: those of FindPaths, and more than 400 candidates of one size. Beyond them the answer is
/// the neighbours of the end that has fewer, and with as many on both sides those of x, then those
/// of y; the other end is no member. These separate, but need not be the smallest sets.
/// Not symmetric at the limits: paths start from x.
/// Cost: that of the paths, then at most 400 * 59 unions of 500 bits a size.
Separators FindSeparators(const UndirectedGraph& graph, int x, int y);

}  // namespace tarven
