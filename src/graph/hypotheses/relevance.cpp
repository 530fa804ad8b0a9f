#include "graph/hypotheses/relevance.h"

#include <algorithm>
#include <map>

#include "graph/sets/core.h"

namespace tarven {

namespace {

/// One model, and what it says of pairs.
struct OneModel {
    explicit OneModel(const ChainGraph& graph) : graphs(Separation_graphs(graph)) {}
    Separators Separate(std::pair<int, int> pair) const {
        return Separators_of_pair(graphs, pair.first, pair.second);
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
        found.separators_excluded = excluded.Separate(pair);
        found.separators_included = included.Separate(pair);
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

/// The pairs whose sets are those of a limit, each once.
class ByNeighbours {
  public:
    void Note(std::pair<int, int> pair, const Separators& found) {
        if (found.smallest) return;
        bool& paths = too_many_partial_paths_[pair];
        paths = paths || found.too_many_partial_paths;
    }
    std::vector<SeparatedPair> Pairs() const {
        std::vector<SeparatedPair> pairs;
        for (const auto& [pair, paths] : too_many_partial_paths_)
            pairs.push_back({.i = pair.first,
                             .j = pair.second,
                             .smallest = false,
                             .too_many_partial_paths = paths});
        return pairs;
    }

  private:
    std::map<std::pair<int, int>, bool> too_many_partial_paths_;
};

/// Makes the list of all rows; the rows of an edge are made when it first influences a pair.
class RowsOfEdges {
  public:
    RowsOfEdges(RelevanceList& list, const OneModel& model, ByNeighbours& limits)
        : list_(list), model_(model), limits_(limits) {}

    /// The rows of the edges that influence a pair, as many as still fit.
    RelevantEdges Of(std::pair<int, int> pair, std::span<const Influence> influences) {
        RelevantEdges of{.pair = pair, .missing = {}, .existing = {}};
        for (const bool existing : {false, true}) {
            std::vector<std::size_t>& numbers = existing ? of.existing : of.missing;
            for (const Influence& influence : influences) {
                if (influence.existing != existing) continue;
                const Range& rows = Rows_of(influence.edge);
                for (std::size_t k = 0; k < rows.count; ++k) numbers.push_back(rows.first + k);
            }
            std::sort(numbers.begin(), numbers.end());
        }
        return of;
    }

  private:
    struct Range {
        std::size_t first = 0;  ///< from 1
        std::size_t count = 0;
    };

    const Range& Rows_of(std::pair<int, int> edge) {
        const auto [at, is_new] = ranges_.try_emplace(edge);
        if (!is_new) return at->second;
        const Separators found = model_.Separate(edge);
        limits_.Note(edge, found);
        Range& range = at->second;
        range = {list_.rows.size() + 1,
                 std::min(found.sets.size(), MaxHypotheses - list_.rows.size())};
        for (std::size_t k = 0; k < range.count; ++k)
            list_.rows.push_back(Separation_hypothesis(edge.first, edge.second, found.sets[k]));
        if (range.count < found.sets.size()) list_.incomplete = true;
        return range;
    }

    RelevanceList& list_;
    const OneModel& model_;
    ByNeighbours& limits_;
    std::map<std::pair<int, int>, Range> ranges_;
};

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
    ByNeighbours limits;
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
            const Relevance& before = unchanged[k];
            if (!made[k]) {
                unchanged[k] = Compare(model, model, edge, pairs[k], wishes);
                limits.Note(pairs[k], before.separators_excluded);
                made[k] = true;
            }
            bool differs = false;
            if (wishes.separation) {
                const Separators changed = other.Separate(pairs[k]);
                limits.Note(pairs[k], changed);
                differs = changed.sets != before.separators_excluded.sets;
            }
            differs =
                differs || (wishes.reducibility && other.Core(pairs[k]) != before.core_excluded);
            if (differs) influences[k].push_back({edge, status == Free});
        }
        if (list.stopped) break;
    }
    RowsOfEdges rows(list, model, limits);
    for (std::size_t k = 0; k < pairs.size() && !list.incomplete; ++k) {
        if (influences[k].empty()) continue;
        RelevantEdges of = rows.Of(pairs[k], influences[k]);
        if (!of.missing.empty() || !of.existing.empty()) list.pairs.push_back(std::move(of));
    }
    list.by_neighbours = limits.Pairs();
    return list;
}

}  // namespace tarven
