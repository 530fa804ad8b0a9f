#include "graph/hypotheses/separation.h"

#include <algorithm>

namespace tarven {

SeparationGraphs Separation_graphs(const ChainGraph& graph) {
    SeparationGraphs graphs;
    graphs.block_of = graph.Block;
    const int blocks = graph.nvar > 0 ? graph.BlockOf(graph.nvar) : 0;
    for (int b = 1; b <= blocks; ++b) {
        const int first = graph.Cutpoints[At(b - 1)] + 1;
        const int last = b <= graph.Nblocks ? graph.Cutpoints[At(b)] : graph.nvar;
        VariableSet parents = 0;
        for (int v = first; v <= last; ++v) parents |= graph.GRF[At(v)];
        graphs.blocks.push_back({RegressionGraph(graph, b, LaterVariables::complete),
                                 Variables_between(last + 1, graph.nvar) & ~parents});
    }
    return graphs;
}

UndirectedGraph Separation_graph(const SeparationGraphs& graphs, int i, int j) {
    assert(i < j && "a pair is given in ascending order");
    const auto& [regression, no_parents] = graphs.blocks[At(graphs.block_of[At(i)] - 1)];
    return InducedSubgraph(regression, regression.vertices & ~(no_parents & ~Only(j)));
}

Separators Separators_in(const UndirectedGraph& graph, int i, int j) {
    return graph.Degree(i) > graph.Degree(j) ? FindSeparators(graph, j, i)
                                             : FindSeparators(graph, i, j);
}

Separators Separators_of_pair(const SeparationGraphs& graphs, int i, int j) {
    return Separators_in(Separation_graph(graphs, i, j), i, j);
}

Hypothesis Separation_hypothesis(int i, int j, VariableSet separator) {
    Hypothesis row;
    row.Role(i) = row.Role(j) = role::tested;
    for (const int v : Members(separator)) row.Role(v) = role::conditioning;
    return row;
}

SeparationList Separate_pairs(std::span<const std::pair<int, int>> pairs,
                              const std::function<UndirectedGraph(int, int)>& graph_of,
                              const StopCheck& stop) {
    SeparationList list;
    list.too_many_pairs = pairs.size() > MaxPairs;
    for (const auto& [one, other] : pairs.first(std::min(pairs.size(), MaxPairs))) {
        if (list.rows.size() == MaxHypotheses) {
            list.incomplete = true;
            break;
        }
        if (stop && stop()) {
            list.stopped = true;
            break;
        }
        const int i = std::min(one, other), j = std::max(one, other);
        const UndirectedGraph graph = graph_of(i, j);
        const Separators found = Separators_in(graph, i, j);
        const VariableSet common = graph.Neighbours(i) & graph.Neighbours(j);
        const std::size_t count = std::min(found.sets.size(), MaxHypotheses - list.rows.size());
        list.pairs.push_back({.i = i,
                              .j = j,
                              .first = list.rows.size(),
                              .count = count,
                              .common = common,
                              .others = found.size - Size(common),
                              .smallest = found.smallest,
                              .too_many_partial_paths = found.too_many_partial_paths});
        for (std::size_t k = 0; k < count; ++k)
            list.rows.push_back(Separation_hypothesis(i, j, found.sets[k]));
        if (count < found.sets.size()) list.incomplete = true;
    }
    return list;
}

SeparationList Separate(const ChainGraph& graph, std::span<const std::pair<int, int>> pairs,
                        const StopCheck& stop) {
    const SeparationGraphs graphs = Separation_graphs(graph);
    return Separate_pairs(
        pairs, [&](int i, int j) { return Separation_graph(graphs, i, j); }, stop);
}

}  // namespace tarven
