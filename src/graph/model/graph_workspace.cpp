#include "graph/model/graph_workspace.h"

#include <fmt/format.h>

#include <algorithm>

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

/// For each variable of the project the one of the graph that it is: that of its label, or, when no
/// variable had its label, the one in its place, renamed. Empty when two would be the same one.
std::vector<int> Variables_in_graph(const std::string& labels, const std::string& before) {
    std::vector<int> numbers;
    for (std::size_t v = 0; v < labels.size(); ++v) {
        const auto moved = before.find(labels[v]);
        const auto index = moved == std::string::npos ? v : moved;
        const int number = static_cast<int>(index) + 1;
        if (std::find(numbers.begin(), numbers.end(), number) != numbers.end()) return {};
        numbers.push_back(number);
    }
    return numbers;
}

/// The graph with its variables in another order and under other labels; blocks stay in their
/// places.
ChainGraph Reordered(const ChainGraph& graph, const std::vector<int>& numbers,
                     const std::string& labels) {
    ChainGraph result = graph;
    result.Labels = labels;
    for (std::size_t i = 1; i <= numbers.size(); ++i) {
        const auto was = static_cast<std::size_t>(numbers[i - 1]);
        result.coordinates[i] = graph.coordinates[was];
        for (std::size_t j = 1; j <= numbers.size(); ++j)
            result.Status[i][j] = graph.Status[was][static_cast<std::size_t>(numbers[j - 1])];
    }
    Derive_adjacency(result);
    return result;
}

/// The graph keeps its statuses in the blocks that the project has now.
void Take_blocks_of_project(ChainGraph& graph) {
    const ChainGraph blocks = New_project_graph(Free);
    graph.Nblocks = blocks.Nblocks;
    graph.Cutpoints = blocks.Cutpoints;
    graph.Block = blocks.Block;
}

/// Other variables, or other blocks. A graph of as many variables stays unless the user wants a new
/// one for new blocks; its blocks, labels and the order of its variables follow theirs.
void Follow_the_variables() {
    ChainGraph& model = The_graph.model;
    if (!Graph_defined()) return;  // the opening reads it, or makes one
    const std::string labels = Labels_of_project();
    const std::vector<int> numbers = Variables_in_graph(labels, model.Labels);
    if (model.nvar != The_project.N || numbers.empty()) {
        ShowMessage(" Graph will be initialized");
        return Start_new_graph();
    }
    const bool new_blocks = !Has_blocks_of_project(model);
    if (new_blocks && AskYesNo("New recursive structure. Create new graph"))
        return Start_new_graph();
    if (!new_blocks && model.Labels == labels) return;
    if (model.Labels != labels) model = Reordered(model, numbers, labels);
    if (new_blocks) Take_blocks_of_project(model);
    The_graph.changed = true;
    The_graph.loss_told = false;
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
    The_graph.loss_told = false;
    The_project_gammas = {};
}

void Start_model(const ChainGraph& model, bool file_is_whole) {
    The_graph = {};
    The_graph.model = model;
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

void Tell_unsaved_graph() {
    if (The_graph.changed && !The_graph.loss_told) ShowMessage("Graph was not saved");
    The_graph.loss_told = true;
}

void Register_graph_workspace() {
    At_moment(Moment::workspace_reset, "graph", [] { The_graph = {}; });
    At_moment(Moment::project_about_to_close, "graph", [] {
        Tell_unsaved_graph();  // BAT asks nothing
        The_graph = {};
    });
    At_moment(Moment::variables_changed, "graph", Follow_the_variables);
}

}  // namespace tarven
