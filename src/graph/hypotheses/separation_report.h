#pragma once

#include <span>
#include <string>
#include <vector>

#include "graph/hypotheses/check_hypotheses.h"
#include "graph/hypotheses/core_and_separation.h"
#include "graph/hypotheses/reduction.h"
#include "graph/hypotheses/separation.h"

namespace tarven {

/// Reports on hypotheses that the graph gave.

/// "A & B".
std::string Pair_text(const ChainGraph& graph, int i, int j);

/// What SEPARATE prints: the list, why each pair has its sets, and the pairs that a limit of the
/// search left with their neighbours.
std::vector<std::string> Separation_lines(const ChainGraph& graph, const SeparationList& list);
/// What GMP prints.
std::vector<std::string> Global_markov_lines(const ChainGraph& graph, const SeparationList& list);
/// What REDUCE prints of the pairs that `parameter` named.
std::vector<std::string> Reduction_lines(const ChainGraph& graph, const ReductionList& list,
                                         const std::string& parameter);

/// What GTEST prints before its tests: the title, the lists, the repeated rows.
std::vector<std::string> Core_and_separation_lines(const ChainGraph& graph,
                                                   const CoreAndSeparation& made);

/// The pairs whose sets are the neighbours of an end, since a limit ended the search; none when
/// there are no such pairs.
std::vector<std::string> Local_markov_lines(const ChainGraph& graph,
                                            std::span<const SeparatedPair> pairs);

/// What CHECK tells of its hypotheses: the ranges by status, and what the list does not hold.
std::vector<std::string> Check_range_lines(const CheckHypotheses& made);

}  // namespace tarven
