#include "graph/hypotheses/relevance.h"

#include <algorithm>

#include "graph/sets/core.h"

namespace tarven {

namespace {

/// One model, and what it says of pairs.
struct OneModel {
    explicit OneModel(const ChainGraph& graph) : graphs(Separation_graphs(graph)) {}
    SetList Separators(std::pair<int, int> pair) const {
        return Separators_of_pair(graphs, pair.first, pair.second).sets;
    }
    VariableSet Core(std::pair<int, int> pair) const {
        return FindCore(Separation_graph(graphs, pair.first, pair.second), pair.first, pair.second);
    }
    SeparationGraphs graphs;
};

bool May_influence(const ChainGraph& graph, std::pair<int, int> edge, std::pair<int, int> pair) {
    return edge != pair && graph.BlockOf(edge.first) == graph.BlockOf(pair.first);
}

/// What the two models say of a pair.
Relevance Compare(const OneModel& excluded, const OneModel& included, std::pair<int, int> edge,
                  std::pair<int, int> pair, const RelevanceWishes& wishes) {
    Relevance found{.edge = edge, .pair = pair};
    if (wishes.separation) {
        found.separators_excluded = excluded.Separators(pair);
        found.separators_included = included.Separators(pair);
    }
    if (wishes.reducibility) {
        found.core_excluded = excluded.Core(pair);
        found.core_included = included.Core(pair);
    }
    return found;
}

ChainGraph With_status(const ChainGraph& graph, std::pair<int, int> edge, EdgeStatus status) {
    ChainGraph changed = graph;
    Set_status(changed, edge.first, edge.second, status);
    return changed;
}

/// An edge that influences a pair.
struct Influence {
    std::pair<int, int> edge;
    bool existing = false;
};

/// The rows of the edges that influence a pair, as many as still fit; false when some do not.
bool Add_rows(RelevanceList& list, RelevantEdges& of, const SeparationGraphs& graphs,
              std::span<const Influence> influences) {
    for (const bool existing : {false, true})
        for (const Influence& influence : influences) {
            if (influence.existing != existing) continue;
            const auto [i, j] = influence.edge;
            for (const VariableSet set : Separators_of_pair(graphs, i, j).sets) {
                if (list.rows == MaxHypotheses) return false;
                of.rows.push_back(Separation_hypothesis(i, j, set));
                ++list.rows;
                ++(existing ? of.existing : of.missing);
            }
        }
    return true;
}

}  // namespace

Relevance Relevance_of_edge(const ChainGraph& graph, std::pair<int, int> edge,
                            std::pair<int, int> pair, const RelevanceWishes& wishes) {
    assert(edge.first < edge.second && pair.first < pair.second && "pairs are ascending");
    Relevance found = Compare(OneModel(With_status(graph, edge, Absent)),
                              OneModel(With_status(graph, edge, Free)), edge, pair, wishes);
    found.included = graph.Adjacent(edge.first, edge.second);
    return found;
}

RelevanceList Relevant_edges(const ChainGraph& graph, const PairList& edges, const PairList& pairs,
                             const RelevanceWishes& wishes, const StopCheck& stop) {
    RelevanceList list;
    const OneModel model(graph);
    // Edges outside, pairs inside: the graphs of a changed model are built once.
    std::vector<std::vector<Influence>> influences(pairs.size());
    std::vector<Relevance> unchanged(pairs.size());  // by the model as it is, made when needed
    std::vector<bool> made(pairs.size());
    for (const auto& edge : edges) {
        const std::uint8_t status = graph.StatusOf(edge.first, edge.second);
        if (status != Absent && status != Free) continue;
        const OneModel other(With_status(graph, edge, status == Free ? Absent : Free));
        for (std::size_t k = 0; k < pairs.size(); ++k) {
            if (!May_influence(graph, edge, pairs[k])) continue;
            if (stop && stop()) {
                list.stopped = true;
                break;
            }
            if (!made[k]) unchanged[k] = Compare(model, model, edge, pairs[k], wishes);
            made[k] = true;
            const bool differs =
                (wishes.separation &&
                 other.Separators(pairs[k]) != unchanged[k].separators_excluded) ||
                (wishes.reducibility && other.Core(pairs[k]) != unchanged[k].core_excluded);
            if (differs) influences[k].push_back({edge, status == Free});
        }
        if (list.stopped) break;
    }
    for (std::size_t k = 0; k < pairs.size() && !list.incomplete; ++k) {
        if (influences[k].empty()) continue;
        RelevantEdges of{.pair = pairs[k]};
        list.incomplete = !Add_rows(list, of, model.graphs, influences[k]);
        if (!of.rows.empty()) list.pairs.push_back(std::move(of));
    }
    return list;
}

}  // namespace tarven
