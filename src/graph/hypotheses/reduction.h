#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "graph/hypotheses/separation.h"
#include "graph/sets/core.h"

namespace tarven {

/// Core hypotheses: two variables are independent given all other variables of the core around
/// them, the smallest margin of the regression model of the block of the first one that the model
/// collapses onto without a change of their association.

/// One pair of a run; its row stands at the same place of the list.
struct ReducedPair {
    int i = 0, j = 0;      ///< i < j
    VariableSet core = 0;  ///< with i and j
    std::vector<LeftOut> left_out;
};

struct ReductionList {
    std::vector<Hypothesis> rows;    ///< at most MaxHypotheses
    std::vector<ReducedPair> pairs;  ///< parallel to the rows
    bool too_many_pairs = false;     ///< only the first MaxPairs were taken
    bool stopped = false;            ///< by the stop check: pairs are left out
};

/// REDUCE: one row a pair. A pair is given in either order, its variables are different and of the
/// graph. `stop` is asked before each pair.
ReductionList Reduce(const ChainGraph& graph, std::span<const std::pair<int, int>> pairs,
                     const StopCheck& stop = {});

}  // namespace tarven
