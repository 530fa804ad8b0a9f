#include "graph/hypotheses/core_and_separation.h"

#include <algorithm>

namespace tarven {

CoreAndSeparation Core_and_separation(const ChainGraph& graph,
                                      std::span<const std::pair<int, int>> pairs,
                                      const StopCheck& stop) {
    CoreAndSeparation made;
    made.separation = Separate(graph, pairs, stop);
    if (!made.separation.stopped) made.reduction = Reduce(graph, pairs, stop);
    made.incomplete = made.separation.incomplete;
    made.same = made.separation.rows == made.reduction.rows;
    made.rows = made.separation.rows;
    if (made.same) return made;
    for (const Hypothesis& row : made.reduction.rows) {
        if (std::find(made.rows.begin(), made.rows.end(), row) != made.rows.end()) {
            const TestedPair pair = Tested_pair(row);
            made.removed.emplace_back(pair.X, pair.Y);
        } else if (made.rows.size() == MaxHypotheses) {
            made.incomplete = true;
        } else {
            made.rows.push_back(row);
        }
    }
    return made;
}

}  // namespace tarven
