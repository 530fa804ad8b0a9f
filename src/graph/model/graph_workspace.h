#pragma once

#include <string>
#include <vector>

#include "graph/model/chain_graph.h"
#include "shell/commands.h"

namespace tarven {

/// The graph of the project, as commands read and revise it.
struct GraphWorkspace {
    ChainGraph model;                  ///< nvar is 0 without a project
    std::vector<std::string> history;  ///< "The model was revised: AB (ADD)", the oldest first
    bool changed = false;              ///< since it was read or saved: the exit asks to save it
    bool loss_told = false;            ///< the exit has said that the changes are not saved
    bool file_is_whole = false;        ///< nothing is lost when the GRF file is written over
};

inline GraphWorkspace The_graph;

/// Whether the project has a graph.
bool Graph_defined();
/// The refusal of commands without one.
extern const Need NeedsGraph;

/// Takes a revised model in the place of the current one: the exit will ask to save it, its history
/// gets a line, and the gammas of the model before are given up. The caller has set its source and
/// its revised flag.
void Adopt_model(const ChainGraph& model, const std::string& history_line);

/// Puts a model read or made anew into the workspace, with an empty history.
void Start_model(const ChainGraph& model, bool file_is_whole);

/// A graph of the project's variables and blocks, every pair of that status. Its source is
/// new_graph.
ChainGraph New_project_graph(EdgeStatus status);

/// The names of the project's variables, "" where there is none.
std::vector<std::string> Names_of_variables();

/// Why a graph is not one of the project's variables and blocks; empty when it is.
std::string Incompatibility_with_project(const ChainGraph& graph);

/// Says, once, that a changed graph is not saved.
void Tell_unsaved_graph();

/// What becomes of the graph when variables or blocks change, and when a project closes.
void Register_graph_workspace();

}  // namespace tarven
