#include "graph/model/chain_graph.h"

namespace tarven {

ChainGraph New_chain_graph(const std::string& labels, int Nlevels,
                           const One_based<int, MaxVariables>& LevelEnd, EdgeStatus status) {
    ChainGraph graph;
    graph.nvar = static_cast<int>(labels.size());
    graph.Labels = labels;
    graph.Nblocks = Nlevels > 0 ? Nlevels : 1;
    graph.Cutpoints[1] = graph.nvar;
    for (int b = 1; b <= Nlevels; ++b) graph.Cutpoints[At(b)] = LevelEnd[At(b)];
    Number_blocks(graph);
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = 1; j <= graph.nvar; ++j) graph.Status[At(i)][At(j)] = i == j ? Fixed : status;
    Derive_adjacency(graph);
    return graph;
}

void Number_blocks(ChainGraph& graph) {
    int block = 1;
    for (int v = 1; v <= graph.nvar; ++v) {
        while (block <= graph.Nblocks && v > graph.Cutpoints[At(block)]) ++block;
        graph.Block[At(v)] = block;
    }
}

void Derive_adjacency(ChainGraph& graph) {
    graph.GRF = {};
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = i + 1; j <= graph.nvar; ++j) {
            if (graph.StatusOf(i, j) < Free) continue;
            graph.GRF[At(i)] |= Only(j);
            graph.GRF[At(j)] |= Only(i);
        }
}

void Set_status(ChainGraph& graph, int i, int j, std::uint8_t status) {
    assert(i != j && "a pair is two variables");
    graph.Status[At(i)][At(j)] = graph.Status[At(j)][At(i)] = status;
    graph.GRF[At(i)] &= ~Only(j);
    graph.GRF[At(j)] &= ~Only(i);
    if (status < Free) return;
    graph.GRF[At(i)] |= Only(j);
    graph.GRF[At(j)] |= Only(i);
}

UndirectedGraph RegressionGraph(const ChainGraph& graph, int b, LaterVariables mode) {
    const int block = b < 1 ? 1 : b;
    const int before = block <= graph.Nblocks + 1 ? graph.Cutpoints[At(block - 1)] : graph.nvar;
    const int last = block <= graph.Nblocks ? graph.Cutpoints[At(block)] : graph.nvar;
    UndirectedGraph regression{graph.nvar, Variables_between(before + 1, graph.nvar), {}};
    const VariableSet later = Variables_between(last + 1, graph.nvar);
    for (const int v : Members(regression.vertices))
        regression.neighbours[At(v)] = graph.GRF[At(v)] & regression.vertices;
    if (mode == LaterVariables::complete) Complete(regression, later);
    return regression;
}

std::string Labels_of_set(const ChainGraph& graph, VariableSet set) {
    std::string labels;
    for (const int v : Members(set)) labels += graph.Labels[At(v - 1)];
    return labels;
}

}  // namespace tarven
