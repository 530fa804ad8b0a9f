#include "graph/sets/core.h"

#include <algorithm>
#include <array>

namespace tarven {

namespace {

/// One place more than there are variables: the vertex that is joined to x and y.
constexpr int Joint = MaxVariables + 1;
static_assert(Joint <= 64, "a set of variables and the new vertex is one word");

/// A graph on 1..Joint.
using Neighbourhoods = std::array<VariableSet, Joint + 1>;

constexpr VariableSet Bit(int v) {
    return VariableSet{1} << (v - 1);
}

VariableSet Near(const Neighbourhoods& graph, VariableSet set) {
    VariableSet near = 0;
    for (const int v : Members(set)) near |= graph[At(v)];
    return near;
}

/// The vertices of `within` that a walk in `within` leads to from `start`, start among them.
VariableSet Reach(const Neighbourhoods& graph, VariableSet start, VariableSet within) {
    VariableSet reached = start;
    for (VariableSet last = start; last != 0; reached |= last)
        last = Near(graph, last) & within & ~reached;
    return reached;
}

bool Complete(const Neighbourhoods& graph, VariableSet set) {
    for (const int v : Members(set))
        if (!Is_subset(set & ~Bit(v), graph[At(v)])) return false;
    return true;
}

/// A vertex of an elimination order, and, if it closes a minimal separator of the triangulation,
/// that separator.
struct Eliminated {
    int vertex = 0;
    bool generates = false;
    VariableSet separator = 0;  ///< its neighbours in the triangulation that are eliminated later
};

/// MCS-M: numbers the vertices from the last to the first. A vertex gets a fill edge to each one
/// that a path of unnumbered vertices of smaller weight leads to.
std::vector<Eliminated> Minimal_elimination_order(const Neighbourhoods& graph, VariableSet left) {
    std::vector<Eliminated> order;
    std::array<VariableSet, Joint + 1> later{};  // in the triangulation; its size is the weight
    int before = -1;
    while (left != 0) {
        int next = Lowest(left);
        for (const int v : Members(left))
            if (Size(later[At(v)]) > Size(later[At(next)])) next = v;
        const int weight = Size(later[At(next)]);
        order.push_back({next, weight <= before, later[At(next)]});
        before = weight;
        left &= ~Bit(next);

        std::array<VariableSet, Joint + 1> of_weight{};
        for (const int v : Members(left)) of_weight[At(Size(later[At(v)]))] |= Bit(v);
        VariableSet passed = Bit(next), within = 0, filled = 0;
        for (int w = 0; w <= Joint; ++w) {
            if (of_weight[At(w)] == 0) continue;
            filled |= Near(graph, passed) & of_weight[At(w)];
            within |= of_weight[At(w)];
            passed = Reach(graph, passed, within);
        }
        for (const int v : Members(filled)) later[At(v)] |= Bit(next);
    }
    std::reverse(order.begin(), order.end());
    return order;
}

}  // namespace

VariableSet FindCore(const UndirectedGraph& given, int x, int y) {
    Neighbourhoods graph{};
    for (const int v : Members(given.vertices)) graph[At(v)] = given.Neighbours(v);
    graph[At(x)] = (graph[At(x)] & ~Bit(y)) | Bit(Joint);
    graph[At(y)] = (graph[At(y)] & ~Bit(x)) | Bit(Joint);
    graph[Joint] = Bit(x) | Bit(y);

    VariableSet left = given.vertices | Bit(Joint), core = 0;
    for (const Eliminated& one : Minimal_elimination_order(graph, left)) {
        if (!one.generates || (left & Bit(one.vertex)) == 0) continue;
        if (!Complete(graph, one.separator)) continue;
        // A maximal prime subgraph: the separator and what it cuts off with this vertex.
        const VariableSet cut_off = Reach(graph, Bit(one.vertex), left & ~one.separator);
        if (((cut_off | one.separator) & Bit(Joint)) != 0) core |= cut_off | one.separator;
        left &= ~cut_off;
        if ((left & Bit(Joint)) == 0) return core & ~Bit(Joint);
    }
    return (core | left) & ~Bit(Joint);
}

std::vector<LeftOut> Left_out(const UndirectedGraph& graph, VariableSet core) {
    std::vector<LeftOut> parts;
    const UndirectedGraph rest = InducedSubgraph(graph, graph.vertices & ~core);
    for (const VariableSet part : Connected_components(rest))
        parts.push_back({part, FindBoundary(graph, part).boundary});
    return parts;
}

}  // namespace tarven
