#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "graph/hypotheses/pairs_of_parameter.h"
#include "graph/hypotheses/separation.h"
#include "shell/stop_check.h"

namespace tarven {

/// Which edges of the model matter for the analysis of a pair of variables: those without which, or
/// with which, other sets would separate the pair, or another core would stay around it.

struct RelevanceWishes {
    bool separation = true;
    bool reducibility = true;
};

/// What an edge does to a pair.
struct Relevance {
    std::pair<int, int> edge;                             ///< ascending
    std::pair<int, int> pair;                             ///< ascending
    bool included = false;                                ///< the edge is in the model
    Separators separators_excluded, separators_included;  ///< without sets when not asked for
    VariableSet core_excluded = 0, core_included = 0;     ///< empty when not asked for

    bool on_separation() const { return separators_excluded.sets != separators_included.sets; }
    bool on_reducibility() const { return core_excluded != core_included; }
};

/// The model once with the edge and once without, in the regression graph of the block of the pair.
/// An edge of another lowest block has no influence, nor has that of the pair itself. Edge and pair
/// are ascending.
Relevance Relevance_of_edge(const ChainGraph& graph, std::pair<int, int> edge,
                            std::pair<int, int> pair, const RelevanceWishes& wishes);

/// The edges whose status may change (1 or 2) and that influence one pair, with the separation
/// hypotheses of these edges, which may be those of other pairs too.
struct RelevantEdges {
    std::pair<int, int> pair;
    std::vector<std::size_t> missing, existing;  ///< numbers of rows, from 1, ascending
};

struct RelevanceList {
    std::vector<RelevantEdges> pairs;  ///< those with influencing edges, in pair order
    /// Of all of them, each row once, at most MaxHypotheses: pair by pair, first those of missing
    /// edges, then those of existing ones.
    std::vector<Hypothesis> rows;
    /// Edges and pairs, in order, that were separated by neighbours in the model or in a changed
    /// one, since the search met a limit.
    std::vector<SeparatedPair> by_neighbours;
    bool incomplete = false;  ///< the list was full: the last pair may lack rows
    bool stopped = false;     ///< by the stop check: what was found stands
};

/// Each edge for each pair. `stop` is asked before each pair and edge.
/// Cost: edges times pairs times that of separators and of a core.
RelevanceList Relevant_edges(const ChainGraph& graph, const PairList& edges, const PairList& pairs,
                             const RelevanceWishes& wishes, const StopCheck& stop = {});

}  // namespace tarven
