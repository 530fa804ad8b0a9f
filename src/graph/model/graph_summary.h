#pragma once

#include <span>
#include <vector>

#include "graph/model/chain_graph.h"
#include "graph/sets/variable_set.h"

namespace tarven {

/// The gammas inside one clique.
struct CliqueGamma {
    VariableSet clique = 0;
    double average = 0;    ///< of the absolute values
    int coefficients = 0;  ///< their number, 0 when none of its edges has a gamma
};

/// The graphical regression model of one block.
struct LevelSummary {
    int block = 0;
    bool complete = true;  ///< false: too many cliques, and the lists are empty
    SetList cliques;       ///< of its regression graph, later variables as one complete set
    /// The cliques that are generators of a log-linear model. A fixed one has nothing to estimate:
    /// each of its pairs is a fixed edge or lies among the later variables.
    SetList free, fixed;
    std::vector<CliqueGamma> gammas;  ///< of the cliques of two or more; empty without gammas
};

/// A graph by level, block 1 first.
struct GraphSummary {
    std::vector<LevelSummary> levels;
};

/// `gammas` holds that of variables i and j at (i-1) * nvar + j-1, beyond -1 and 1 where there is
/// none; it may be empty. Averages are over the edges of the graph inside a clique.
/// Cost: that of the cliques of each level.
GraphSummary Summarize_graph(const ChainGraph& graph, std::span<const double> gammas);

}  // namespace tarven
