#pragma once

#include "graph/sets/variable_set.h"

namespace tarven {

/// Lists of sets of variables: cliques, generators, boundaries. Their order is part of them.

/// The maximal members of a list, in their order: a set goes when another one holds it, and of
/// equal sets the last one stays. Cost: the square of the number of different sets.
SetList RemoveSubsets(const SetList& list);

/// Whether the lists are of one length and every set of `a` occurs in `b`.
bool SameSetLists(const SetList& a, const SetList& b);

}  // namespace tarven
