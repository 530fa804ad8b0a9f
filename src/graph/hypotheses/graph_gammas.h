#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "graph/model/chain_graph.h"
#include "tables/independence/case_strata.h"
#include "tables/independence/hypothesis_run.h"

namespace tarven {

/// Partial gammas under a chain graph: of each pair of variables the mean over its separation
/// hypotheses.

/// What stands in a matrix of gammas where there is none.
inline constexpr double NoGamma = 999;

struct PairGamma {
    int i = 0, j = 0;        ///< i < j
    double gamma = NoGamma;  ///< mean over the hypotheses that could be tested
    int hypotheses = 0;      ///< of the pair; 0 for a nominal variable of more than two categories
    int tested = 0;          ///< those with a stratum in which both variables vary
    bool smallest = true;    ///< false: separated by neighbours, since the search met a limit
    bool defined() const { return tested > 0; }
};

struct GraphGammas {
    std::vector<PairGamma> pairs;  ///< in the order asked for
    bool stopped = false;          ///< the user ended the run: some pairs were not reached
};

/// Every pair i < j of a graph.
std::vector<std::pair<int, int>> All_pairs_of(const ChainGraph& graph);

/// The gammas of these pairs, i < j, on control.jobs threads. `packed` holds the variables of the
/// graph. Cost: for each pair the search for its separators, for each of these a pass over the
/// cases.
GraphGammas Gammas_of_graph(const PackedCases& packed, const ChainGraph& graph,
                            std::span<const std::pair<int, int>> pairs,
                            const RunControl& control = {});

/// The matrix of nvar variables: that of i and j at (i-1) * nvar + j-1, NoGamma elsewhere.
std::vector<double> Matrix_of_gammas(std::span<const PairGamma> pairs, int nvar);

}  // namespace tarven
