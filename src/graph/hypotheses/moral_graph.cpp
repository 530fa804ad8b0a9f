#include "graph/hypotheses/moral_graph.h"

#include <algorithm>

namespace tarven {

UndirectedGraph MoralGraph(const ChainGraph& graph, int level) {
    UndirectedGraph moral{graph.nvar, 0, {}};
    for (int v = 1; v <= graph.nvar; ++v)
        if (graph.BlockOf(v) >= level) moral.vertices |= Only(v);
    UndirectedGraph inside{graph.nvar, moral.vertices, {}};  // the edges inside a block
    for (const int v : Members(moral.vertices)) {
        const std::size_t at = static_cast<std::size_t>(v);
        moral.neighbours[at] = graph.GRF[at] & moral.vertices;
        for (const int w : Members(moral.neighbours[at]))
            if (graph.BlockOf(w) == graph.BlockOf(v)) inside.neighbours[at] |= Only(w);
    }
    for (const VariableSet component : Connected_components(inside)) {
        const int block = graph.BlockOf(Lowest(component));
        VariableSet parents = 0;
        for (const int v : Members(component))
            for (const int w : Members(graph.GRF[static_cast<std::size_t>(v)]))
                if (graph.BlockOf(w) > block) parents |= Only(w);
        Complete(moral, parents);
    }
    return moral;
}

}  // namespace tarven
