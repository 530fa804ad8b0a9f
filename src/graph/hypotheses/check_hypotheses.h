#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "graph/hypotheses/separation.h"
#include "shell/stop_check.h"

namespace tarven {

/// The separation hypotheses of a whole model: those of its inadmissible, its missing, its free and
/// its fixed edges, in this order.

/// What the pairs of one status gave.
struct CheckedStatus {
    std::size_t edges = 0;  ///< pairs of the status
    std::size_t whole = 0;  ///< the first of them whose rows are all in the list
    std::size_t first = 0;  ///< of its rows, from 0
    std::size_t count = 0;  ///< of its rows, those behind the limit too
    bool operator==(const CheckedStatus&) const = default;
};

struct CheckHypotheses {
    std::vector<Hypothesis> rows;             ///< at most MaxHypotheses
    std::array<CheckedStatus, 4> statuses{};  ///< of status s at s
    std::vector<SeparatedPair> not_smallest;  ///< pairs whose separators are neighbours
    std::size_t generated = 0;                ///< with those behind the limit
    bool stopped = false;                     ///< by the stop check: the list ends somewhere
};

/// All pairs of each status 0, 1, 2 and 3. What is above 3 counts as none of them. The rows behind
/// MaxHypotheses are counted and not kept. `stop` is asked after each pair.
CheckHypotheses Generate_check_hypotheses(const ChainGraph& graph, const StopCheck& stop = {});

}  // namespace tarven
