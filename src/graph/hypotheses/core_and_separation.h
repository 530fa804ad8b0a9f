#pragma once

#include <span>
#include <utility>
#include <vector>

#include "graph/hypotheses/reduction.h"
#include "graph/hypotheses/separation.h"

namespace tarven {

/// The hypotheses by which GTEST tests pairs: those of separation and those of the core, one list.

struct CoreAndSeparation {
    SeparationList separation;
    ReductionList reduction;
    bool same = false;             ///< the two lists are equal: one of them is used
    std::vector<Hypothesis> rows;  ///< without repetitions, at most MaxHypotheses
    std::vector<std::pair<int, int>>
        removed;              ///< pairs of the repeated rows, i < j, in their order
    bool incomplete = false;  ///< rows are left out behind the limit
};

/// Pairs as for Separate. `stop` is asked before each pair of either list.
CoreAndSeparation Core_and_separation(const ChainGraph& graph,
                                      std::span<const std::pair<int, int>> pairs,
                                      const StopCheck& stop = {});

}  // namespace tarven
