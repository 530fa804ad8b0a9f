#include "graph/model/graph_workspace.h"

#include <fmt/format.h>

#include "project/project.h"
#include "shell/lifecycle.h"
#include "shell/user.h"
#include "tables/ordinal/gammas_workspace.h"

namespace tarven {

namespace {

const Variable& Variable_of_project(int v) {
    return The_project.variables[static_cast<std::size_t>(v)];
}

std::string Labels_of_project() {
    std::string labels;
    for (int v = 1; v <= The_project.N; ++v) labels += Variable_of_project(v).label;
    return labels;
}

bool Has_blocks_of_project(const ChainGraph& graph) {
    for (int v = 2; v <= graph.nvar; ++v)
        if ((graph.BlockOf(v) != graph.BlockOf(v - 1)) !=
            (Variable_of_project(v).Levnr != Variable_of_project(v - 1).Levnr))
            return false;
    return true;
}

void Start_new_graph() {
    Start_model(New_project_graph(Free), false);
    The_graph.changed = true;
}

/// Other variables, or other blocks. A graph of as many variables in the same blocks stays; its
/// labels follow theirs.
void Follow_the_variables() {
    ChainGraph& model = The_graph.model;
    if (!Graph_defined()) return;  // the opening reads it, or makes one
    if (model.nvar != The_project.N) {
        ShowMessage(" Graph will be initialized");
        return Start_new_graph();
    }
    if (!Has_blocks_of_project(model) && AskYesNo("New recursive structure. Create new graph"))
        return Start_new_graph();
    const std::string labels = Labels_of_project();
    if (model.Labels == labels) return;
    model.Labels = The_graph.original.Labels = labels;
    The_graph.changed = true;
}

}  // namespace

const Need NeedsGraph = {Graph_defined, "The graph has not been defined"};

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

ChainGraph New_project_graph(EdgeStatus status) {
    ChainGraph graph =
        New_chain_graph(Labels_of_project(), The_project.Nlevels, The_project.LevelEnd, status);
    graph.source = GraphSource::new_graph;
    return graph;
}

std::vector<std::string> Names_of_variables() {
    std::vector<std::string> names;
    for (int v = 1; v <= The_project.N; ++v)
        names.push_back(Variable_of_project(v).hasname ? Variable_of_project(v).name : "");
    return names;
}

std::string Incompatibility_with_project(const ChainGraph& graph) {
    if (graph.nvar != The_project.N)
        return fmt::format("it has {} variables, the project {}", graph.nvar, The_project.N);
    if (graph.Labels != Labels_of_project())
        return fmt::format("its labels are {}, those of the project {}", graph.Labels,
                           Labels_of_project());
    return Has_blocks_of_project(graph) ? "" : "its recursive blocks are others";
}

void Register_graph_workspace() {
    for (const Moment moment : {Moment::workspace_reset, Moment::project_about_to_close})
        At_moment(moment, "graph", [] { The_graph = {}; });
    At_moment(Moment::variables_changed, "graph", Follow_the_variables);
}

}  // namespace tarven
