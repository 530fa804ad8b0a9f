#include "graph/hypotheses/global_markov.h"

#include "graph/hypotheses/moral_graph.h"

namespace tarven {

UndirectedGraph Global_markov_graph(const ChainGraph& graph, int i, int j,
                                    GlobalMarkovVariant variant) {
    assert(i < j && "a pair is given in ascending order");
    const int level = graph.BlockOf(i);
    if (variant == GlobalMarkovVariant::edge_removed_first && graph.Adjacent(i, j)) {
        ChainGraph without = graph;
        Set_status(without, i, j, Absent);
        return MoralGraph(without, level);
    }
    // Variables of the block of i are no parents from there on, so nothing but their edge joins
    // them.
    UndirectedGraph moral = MoralGraph(graph, level);
    Part(moral, i, j);
    return moral;
}

SeparationList GlobalMarkov(const ChainGraph& graph, std::span<const std::pair<int, int>> pairs,
                            GlobalMarkovVariant variant, const StopCheck& stop) {
    return Separate_pairs(
        pairs, [&](int i, int j) { return Global_markov_graph(graph, i, j, variant); }, stop);
}

}  // namespace tarven
