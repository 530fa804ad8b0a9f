#pragma once

#include <cstdint>
#include <vector>

#include "graph/model/chain_graph.h"

namespace tarven {

/// Why two graphs cannot be compared pair by pair.
enum class Incompatible : std::uint8_t {
    no,
    sizes,  ///< number of variables or of blocks
    labels,
    blocks  ///< cut points
};

struct StatusDifference {
    int i = 0, j = 0;  ///< i below j
    std::uint8_t one = 0, other = 0;
    bool operator==(const StatusDifference&) const = default;
};

struct GraphComparison {
    Incompatible incompatible = Incompatible::no;
    std::vector<StatusDifference> differences;  ///< i ascending, then j
};

/// The pairs whose status, that of the upper triangle, differs. Cost: nvar^2.
GraphComparison Compare_graphs(const ChainGraph& one, const ChainGraph& other);

}  // namespace tarven
