#pragma once

#include <cstdint>
#include <vector>

#include "graph/hypotheses/graph_gammas.h"
#include "graph/model/chain_graph.h"
#include "tables/independence/case_strata.h"
#include "tables/independence/hypothesis_run.h"

namespace tarven {

/// Simplification of a graph until no variable has more than m neighbours: one edge at a time goes,
/// the weakest of a variable with too many, as its partial gamma under what is left tells.

/// One variable before a step.
struct VariableEdges {
    int neighbours = 0;
    int weakest = 0;  ///< the neighbour whose edge may go and has the smallest absolute gamma, the
                      ///< later of equal ones; 0 when no edge with a gamma may go
    double gamma = NoGamma;  ///< of that edge
};

struct SimplificationStep {
    std::vector<VariableEdges> variables;  ///< of variable v at v-1
    int i = 0, j = 0;                      ///< the edge that goes, i < j; 0 in the last step
    double gamma = NoGamma;
    bool found() const { return i > 0; }
};

struct Simplification {
    ChainGraph graph;                       ///< after the last step, marked as revised
    std::vector<SimplificationStep> steps;  ///< the last one found none, unless it was stopped
    bool stuck = false;    ///< a variable has too many edges, but all are fixed or have no gamma
    bool stopped = false;  ///< the user ended it, and the graph is not to be used

    std::size_t eliminated() const;
};

/// Removes edges until no variable has more than m neighbours. Fixed edges, and edges of pairs
/// without a gamma, count as neighbours and stay. In each step, of the variables with more than m
/// neighbours and an edge that may go, the one with most of them loses its weakest edge; of those
/// with as many the one whose weakest edge is weakest, the later one of equals.
/// Cost: for each step the gammas of the pairs that the edge removed last could touch.
Simplification Simplify_graph(const PackedCases& packed, const ChainGraph& graph, int m,
                              const RunControl& control = {});

}  // namespace tarven
