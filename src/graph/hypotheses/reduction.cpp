#include "graph/hypotheses/reduction.h"

#include <algorithm>

namespace tarven {

static_assert(MaxPairs <= MaxHypotheses, "a list of one row a pair cannot be full");

ReductionList Reduce(const ChainGraph& graph, std::span<const std::pair<int, int>> pairs,
                     const StopCheck& stop) {
    ReductionList list;
    list.too_many_pairs = pairs.size() > MaxPairs;
    const SeparationGraphs graphs = Separation_graphs(graph);
    for (const auto& [one, other] : pairs.first(std::min(pairs.size(), MaxPairs))) {
        if (stop && stop()) {
            list.stopped = true;
            break;
        }
        const int i = std::min(one, other), j = std::max(one, other);
        const UndirectedGraph regression = Separation_graph(graphs, i, j);
        const VariableSet core = FindCore(regression, i, j);
        list.pairs.push_back({i, j, core, Left_out(regression, core)});
        list.rows.push_back(Separation_hypothesis(i, j, core & ~Only(i) & ~Only(j)));
    }
    return list;
}

}  // namespace tarven
