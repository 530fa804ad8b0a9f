#pragma once

#include <string>
#include <vector>

#include "graph/model/chain_graph.h"

namespace tarven {

/// The graph of the project, as commands read and revise it.
struct GraphWorkspace {
    ChainGraph model;     ///< nvar is 0 without a project
    ChainGraph original;  ///< the model as the opening, or another structure, gave it
    std::vector<std::string> history;  ///< "The model was revised: AB", the oldest first
    bool changed = false;              ///< since it was read or saved: the exit asks to save it
    bool file_is_whole = false;        ///< the GRF file was read to its end without a warning
};

inline GraphWorkspace The_graph;

/// Whether the project has a graph.
bool Graph_defined();

/// Takes a revised model in the place of the current one: the exit will ask to save it, its history
/// gets a line, and the gammas of the model before are given up. The caller has set its source and
/// its revised flag.
void Adopt_model(const ChainGraph& model, const std::string& history_line);

/// Puts a model read or made anew into the workspace, with its copy and an empty history.
void Start_model(const ChainGraph& model, bool file_is_whole);

/// What the project floor's moments do to the graph.
void Register_graph_workspace();

}  // namespace tarven
