#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "graph/model/chain_graph.h"
#include "graph/sets/undirected_graph.h"
#include "graph/sets/variable_set.h"

namespace tarven {

/// What a chain graph tells of the joint distribution of some of its variables: the marginal model
/// on a set M, got by collapsing over all others.

/// The most sets of free parameters that are listed.
inline constexpr std::size_t MaxFreeSets = 20000;
/// Generators of more variables are not searched for free parameters.
inline constexpr int MostFreeVariables = 8;

/// The marginal model on a set of variables, step by step. Sets are over the variables of the
/// graph.
struct MarginalModelRecord {
    VariableSet block_1 = 0;    ///< the members in the block of the first one
    VariableSet block_2 = 0;    ///< the other, explanatory ones
    SetList SUBCLIQUES;         ///< cliques of the graph on the members alone
    SetList components;         ///< what is connected among the variables that are left out
    SetList BOUNDARIES;         ///< of the components, those that lie in no other: fixed terms
    UndirectedGraph THESUBGRF;  ///< the members, each pair in an incomplete boundary joined
    /// [i][j] of two members: that of the graph, 3 when the pair lies in an incomplete boundary and
    /// one of them in block_1, and 3 on the diagonal; 0 of others.
    One_based<One_based<std::uint8_t, MaxVariables>, MaxVariables> SUBSTATUS;
    SetList CLIQUES;        ///< of THESUBGRF
    SetList generators;     ///< of the log-linear model: SUBCLIQUES and incomplete boundaries
    bool graphical = true;  ///< the generators are the cliques
    bool strong = true;     ///< every boundary was complete
    SetList FREE;           ///< sets whose parameters are estimable in the table of M; see below
    bool free_identified = true;  ///< false: more than MaxFreeSets of them, and the list is empty
    bool cliques_found = true;    ///< false: too many cliques; from SUBCLIQUES on nothing is known

    /// The pair that is asked about, when the list of variables has two.
    std::pair<int, int> pair = {0, 0};
    bool conditionally_independent = false;  ///< no generator holds both
    VariableSet modifiers = 0;  ///< the other variables of the generators that hold both

    VariableSet members() const { return block_1 | block_2; }
};

/// The marginal model on these variables of the graph, of which the first two are the pair that is
/// asked about; one named twice counts once. The analysis takes place in the regression graph of
/// the block of the lowest member, where all later variables are complete.
///
/// Collapsing over a component whose boundary is complete leaves the parameters of the rest as they
/// are; over another one it leaves a term for the whole boundary that the graph did not have
/// (Asmussen and Edwards 1983, Biometrika 70, 567-578; Lauritzen 1996, section 4.6.2).
///
/// A free set is a non-empty subset of a generator of at most 8 variables that lies in no boundary:
/// its parameter is that of the whole model. They are listed by generator, and within one by size
/// and in lexicographic order; a set that several generators hold stands with the last of them.
/// Cost: that of the cliques, and 255 subsets a generator.
MarginalModelRecord MarginalModel(const ChainGraph& graph, std::span<const int> variables);

}  // namespace tarven
