#include "graph/model/graph_workspace.h"

#include "project/project.h"
#include "shell/lifecycle.h"
#include "tables/ordinal/gammas_workspace.h"

namespace tarven {

bool Graph_defined() {
    return The_graph.model.nvar > 0;
}

void Adopt_model(const ChainGraph& model, const std::string& history_line) {
    The_graph.model = model;
    The_graph.history.push_back(history_line);
    The_graph.changed = true;
    The_project_gammas = {};
}

void Start_model(const ChainGraph& model, bool file_is_whole) {
    The_graph = {};
    The_graph.model = The_graph.original = model;
    The_graph.file_is_whole = file_is_whole;
    The_project_gammas = {};
}

void Register_graph_workspace() {
    for (const Moment moment : {Moment::workspace_reset, Moment::project_about_to_close})
        At_moment(moment, "graph", [] { The_graph = {}; });
}

}  // namespace tarven
