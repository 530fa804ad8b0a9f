#include "graph/model/graph_comparison.h"

namespace tarven {

namespace {

Incompatible Incompatibility(const ChainGraph& one, const ChainGraph& other) {
    if (one.nvar != other.nvar || one.Nblocks != other.Nblocks) return Incompatible::sizes;
    if (one.Labels != other.Labels) return Incompatible::labels;
    for (int b = 1; b <= one.Nblocks; ++b)
        if (one.Cutpoints[static_cast<std::size_t>(b)] !=
            other.Cutpoints[static_cast<std::size_t>(b)])
            return Incompatible::blocks;
    return Incompatible::no;
}

}  // namespace

GraphComparison Compare_graphs(const ChainGraph& one, const ChainGraph& other) {
    GraphComparison comparison;
    comparison.incompatible = Incompatibility(one, other);
    if (comparison.incompatible != Incompatible::no) return comparison;
    for (int i = 1; i <= one.nvar; ++i)
        for (int j = i + 1; j <= one.nvar; ++j)
            if (one.StatusOf(i, j) != other.StatusOf(i, j))
                comparison.differences.push_back({i, j, one.StatusOf(i, j), other.StatusOf(i, j)});
    return comparison;
}

}  // namespace tarven
