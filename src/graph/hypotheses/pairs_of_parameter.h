#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "graph/model/chain_graph.h"

namespace tarven {

/// The pairs of variables that a command on hypotheses of the graph is about.

/// Each with i < j, in increasing order of i, then of j, and none twice.
using PairList = std::vector<std::pair<int, int>>;

/// All pairs of a status.
PairList Pairs_of_status(const ChainGraph& graph, std::uint8_t status);

/// The pairs in the text behind the keyword of a line. Variables are labels or numbers, two by two;
/// an odd last one is dropped. In the place of a variable "*" is every other one, "+" and "?" are
/// those with a free edge (status 2), "-" those without an edge (status 1); so is a lone "*", "+",
/// "?" or "-" of all pairs. With a mark in both places both must hold. A number above nvar is every
/// variable; a pair of equal variables, and the number 0, is no pair.
/// Nothing when a character is no label, or nothing is named.
std::optional<PairList> Pairs_of_parameter(std::string_view line, const ChainGraph& graph);

}  // namespace tarven
