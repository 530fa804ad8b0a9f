#pragma once

#include <string>
#include <vector>

#include "graph/model/chain_graph.h"

namespace tarven {

/// A graph file, project.GRF:
///
///     3 2              variables, and recursive blocks with a cut point
///     1 3              the last variable of each block; no such line for 0 blocks, which is one
///     A B C            the labels, with or without blanks
///     3 2 1            the status of each pair: 0 prevented, 1 no edge, 2 edge, 3 fixed edge
///     2 3 2
///     1 2 3
///     COORDINATES      these two sections may be missing, or stand in the other order: label, x
///                      and y in pixels
///     A 100 400
///     ...
///     VARIABLES        label and name
///     A Age
///     ...
///
/// Blanks separate. What the tolerant reader passes over, surplus words, rows and lines that belong
/// to no section, is a warning that names the first of these lines.
struct GraphFile {
    bool ok = false;
    std::string error;                  ///< why there is no graph, when not ok
    std::vector<std::string> warnings;  ///< what did not fit and was read all the same
    ChainGraph graph;                   ///< source and revised stay at their start values
    std::vector<std::string> names;     ///< of the variables, empty or nvar of them
};

/// The tolerant reader, for the graph of the project. The statuses stay as they stand, from 0 to
/// 255, also those of an asymmetric matrix (adjacency follows its upper triangle); the diagonal is
/// fixed; missing labels are "?". What is missing or is no number of its kind leaves no graph;
/// incomplete coordinates leave it without. `name` stands in messages.
GraphFile Read_graph_file(const std::vector<std::string>& lines, const std::string& name);

/// The strict reader, for a graph file of any name. A label twice, an asymmetric matrix, surplus
/// words of the lines up to the matrix, and lines that belong to no section are refused too; a
/// status above 4 becomes an edge, with a warning. A damaged section is a warning, and the next one
/// is read.
GraphFile Read_graph_file_strictly(const std::vector<std::string>& lines, const std::string& name);

/// The name of variable v as a graph file has it: "var3" when the third has none.
std::string Written_name(const std::string& name, int v);

/// The lines of a graph file. `names` are those of the variables, "" where there is none. The
/// coordinates are written when they are ready.
std::vector<std::string> GRF_lines(const ChainGraph& graph, const std::vector<std::string>& names);

}  // namespace tarven
