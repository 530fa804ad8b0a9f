#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "graph/model/chain_graph.h"
#include "graph/sets/separators.h"
#include "shell/stop_check.h"
#include "tables/independence/hypotheses.h"

namespace tarven {

/// Separation hypotheses: that the two variables of a pair are independent given a smallest set of
/// variables that separates them in the graphical regression model of the block of the first.

/// The most pairs that one run takes.
inline constexpr std::size_t MaxPairs = 1800;

/// The graphs in which pairs are separated, one a block.
struct SeparationGraphs {
    struct OfBlock {
        UndirectedGraph regression;  ///< the later variables complete
        VariableSet no_parents = 0;  ///< later variables without an edge into the block
    };
    std::vector<OfBlock> blocks;            ///< of block b at b-1
    One_based<int, MaxVariables> block_of;  ///< [1..nvar]
};
SeparationGraphs Separation_graphs(const ChainGraph& graph);

/// The graph in which i and j are separated, i < j: that of the block of i, without the later
/// variables that are no parents of the block. j takes part in any case.
UndirectedGraph Separation_graph(const SeparationGraphs& graphs, int i, int j);

/// What separates i and j, i < j, in that graph. An edge between them is ignored.
Separators Separators_of_pair(const SeparationGraphs& graphs, int i, int j);

/// The row (i, j | Z) over the project's variables; all others are excluded.
Hypothesis Separation_hypothesis(int i, int j, VariableSet separator);

/// One pair of a run.
struct SeparatedPair {
    int i = 0, j = 0;        ///< i < j
    std::size_t first = 0;   ///< of its rows in the list, from 0
    std::size_t count = 0;   ///< how many of them the list holds
    VariableSet common = 0;  ///< their common neighbours, which every set holds
    int others = 0;          ///< how many other variables each of the sets holds
    bool smallest = true;    ///< false: separated by neighbours, since the search met a limit
    bool too_many_partial_paths = false;
};

/// Hypotheses of some pairs, in their order.
struct SeparationList {
    std::vector<Hypothesis> rows;      ///< at most MaxHypotheses
    std::vector<SeparatedPair> pairs;  ///< those that were taken
    bool too_many_pairs = false;       ///< only the first MaxPairs were taken
    bool incomplete = false;           ///< the list was full before the last row of the last pair
    bool stopped = false;              ///< by the stop check: pairs are left out
};

/// The smallest sets that separate i and j in `graph`, whatever joins them directly. The search
/// goes from the end of smaller degree, from i where they are equal.
Separators Separators_in(const UndirectedGraph& graph, int i, int j);

/// The rows of pairs in the graphs that `graph_of` gives for them; it is given i < j. The run ends
/// with the pair that fills the list. `stop` is asked before each pair.
SeparationList Separate_pairs(std::span<const std::pair<int, int>> pairs,
                              const std::function<UndirectedGraph(int i, int j)>& graph_of,
                              const StopCheck& stop = {});

/// SEPARATE: the rows of every pair. A pair is given in either order, its variables are different
/// and of the graph.
SeparationList Separate(const ChainGraph& graph, std::span<const std::pair<int, int>> pairs,
                        const StopCheck& stop = {});

}  // namespace tarven
