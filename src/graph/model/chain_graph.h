#pragma once

#include <cstdint>
#include <string>

#include "graph/sets/undirected_graph.h"
#include "shell/one_based.h"

namespace tarven {

/// Status of an edge. What is read from a file may hold any number up to 255; 2 and above is an
/// edge.
enum EdgeStatus : std::uint8_t {
    Prevented = 0,  ///< may not enter the model
    Absent = 1,
    Free = 2,
    Fixed = 3,
    LocallyDependent = 4
};

/// Where the current model came from.
enum class GraphSource : std::uint8_t {
    none = 0,
    GRF_file = 1,
    SCREEN = 2,
    EXA = 3,
    new_graph = 4
};

/// Where a variable is drawn, in the pixels of a drawing.
struct NodePlace {
    int x = 0;
    int y = 0;
    bool operator==(const NodePlace&) const = default;
};

/// The chain graph: variables in recursive blocks, block 1 the responses, the last block purely
/// explanatory, and a status for every pair. An edge inside a block is undirected, one between
/// blocks is an arrow from the later block to the earlier.
struct ChainGraph {
    int nvar = 0;                            ///< 0: no graph
    int Nblocks = 0;                         ///< blocks with a cut point
    One_based<int, MaxVariables> Cutpoints;  ///< [0..Nblocks] last variable of each block, [0] is 0
    One_based<int, MaxVariables> Block;      ///< [1..nvar]; Nblocks+1 above the last cut point
    std::string Labels;                      ///< of variable v at v-1
    One_based<One_based<std::uint8_t, MaxVariables>, MaxVariables> Status;  ///< [i][j] of 1..nvar
    One_based<VariableSet, MaxVariables> GRF;  ///< [i]: variables adjacent to i, without i itself
    GraphSource source = GraphSource::none;
    bool revised = false;
    bool coordinates_ready = false;
    One_based<NodePlace, MaxVariables> coordinates;  ///< [1..nvar] when ready

    bool Adjacent(int i, int j) const { return Contains(GRF[static_cast<std::size_t>(i)], j); }
    std::uint8_t StatusOf(int i, int j) const {
        return Status[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
    }
    int BlockOf(int v) const { return Block[static_cast<std::size_t>(v)]; }
    bool operator==(const ChainGraph&) const = default;
};

/// A graph without edges, each pair of the given status, the diagonal fixed. LevelEnd[1..Nlevels]
/// are the last variables of the blocks; without any there is one block.
ChainGraph New_chain_graph(const std::string& labels, int Nlevels,
                           const One_based<int, MaxVariables>& LevelEnd, EdgeStatus status);

/// Gives every variable its block from the cut points.
void Number_blocks(ChainGraph& graph);
/// Derives GRF from Status: i and j, i < j, are adjacent when Status[i][j] is 2 or more. Of an
/// asymmetric matrix the upper triangle counts.
void Derive_adjacency(ChainGraph& graph);
/// Gives a pair a status, both ways, and its adjacency.
void Set_status(ChainGraph& graph, int i, int j, std::uint8_t status);

/// What stands above the block that a regression graph explains.
enum class LaterVariables : std::uint8_t {
    complete = 1,  ///< one complete set, since the model is conditional on them
    as_they_are = 2
};
/// The graphical regression model of block b: the variables of b and of later blocks, the edges of
/// b's variables, and the later ones as said. b below 1 counts as 1. Cost: nvar.
UndirectedGraph RegressionGraph(const ChainGraph& graph, int b, LaterVariables mode);

/// The labels of the members, ascending: "ACF".
std::string Labels_of_set(const ChainGraph& graph, VariableSet set);

}  // namespace tarven
