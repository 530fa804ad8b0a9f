#include "graph/sets/undirected_graph.h"

#include <algorithm>

namespace tarven {

namespace {

VariableSet Neighbours_of_set(const UndirectedGraph& graph, VariableSet set) {
    VariableSet found = 0;
    for (const int v : Members(set)) found |= graph.Neighbours(v);
    return found;
}

}  // namespace

void Join(UndirectedGraph& graph, int v, int w) {
    assert(v != w && "no variable is its own neighbour");
    graph.neighbours[static_cast<std::size_t>(v)] |= Only(w);
    graph.neighbours[static_cast<std::size_t>(w)] |= Only(v);
}

void Part(UndirectedGraph& graph, int v, int w) {
    graph.neighbours[static_cast<std::size_t>(v)] &= ~Only(w);
    graph.neighbours[static_cast<std::size_t>(w)] &= ~Only(v);
}

void Complete(UndirectedGraph& graph, VariableSet set) {
    for (const int v : Members(set))
        graph.neighbours[static_cast<std::size_t>(v)] |= set & ~Only(v);
}

bool Is_complete(const UndirectedGraph& graph, VariableSet set) {
    for (const int v : Members(set))
        if (!Is_subset(set & ~Only(v), graph.Neighbours(v))) return false;
    return true;
}

UndirectedGraph InducedSubgraph(const UndirectedGraph& graph, VariableSet set) {
    UndirectedGraph induced{graph.nvar, graph.vertices & set, {}};
    for (const int v : Members(induced.vertices))
        induced.neighbours[static_cast<std::size_t>(v)] = graph.Neighbours(v) & set;
    return induced;
}

Boundary FindBoundary(const UndirectedGraph& graph, VariableSet set) {
    Boundary found;
    found.boundary = Neighbours_of_set(graph, set & graph.vertices) & ~set;
    found.complete = Is_complete(graph, found.boundary);
    return found;
}

One_based<VariableSet, MaxVariables> ReachableInSteps(const UndirectedGraph& graph, int steps) {
    One_based<VariableSet, MaxVariables> reached;
    const int enough = std::min(steps, Size(graph.vertices));
    for (const int v : Members(graph.vertices)) {
        VariableSet within = Only(v), last = within;
        for (int step = 1; step <= enough && last != 0; ++step) {
            last = Neighbours_of_set(graph, last) & ~within;
            within |= last;
        }
        reached[static_cast<std::size_t>(v)] = within;
    }
    return reached;
}

std::vector<VariableSet> Connected_components(const UndirectedGraph& graph) {
    std::vector<VariableSet> components;
    for (VariableSet left = graph.vertices; left != 0; left &= ~components.back()) {
        VariableSet component = Only(Lowest(left));
        for (VariableSet last = component; last != 0; component |= last)
            last = Neighbours_of_set(graph, last) & ~component;
        components.push_back(component);
    }
    return components;
}

}  // namespace tarven
