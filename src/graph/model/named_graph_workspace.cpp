#include "graph/model/named_graph_workspace.h"

#include "graph/model/graph_workspace.h"
#include "project/project.h"
#include "shell/files.h"
#include "shell/user.h"
#include "shell/words.h"

namespace tarven {

namespace {

/// Shows what the reader found; ok when there is a graph.
NamedGraphFile Told_file(const GraphFile& file) {
    for (const std::string& warning : file.warnings) ShowMessage(warning);
    if (!file.ok) ShowMessage(file.error);
    return {file.ok, file.warnings.empty(), file.graph};
}

/// "?" stands for the label of the project's variable in that place.
void Fill_missing_labels(ChainGraph& graph) {
    if (graph.nvar != The_project.N) return;
    for (std::size_t v = 1; v <= graph.Labels.size(); ++v)
        if (graph.Labels[v - 1] == '?') graph.Labels[v - 1] = The_project.variables[v].label;
}

/// Whether the graph file gives the variables the names that the project would write there.
bool Names_are_of_project(const std::vector<std::string>& names) {
    const std::vector<std::string> own = Names_of_variables();
    if (names.empty()) return true;
    if (names.size() != own.size()) return false;
    for (std::size_t v = 0; v < names.size(); ++v)
        if (names[v] != Written_name(own[v], static_cast<int>(v) + 1)) return false;
    return true;
}

}  // namespace

NamedGraphFile Read_graph_of_project(const std::filesystem::path& path) {
    const std::string name = Path_text(path.filename());
    const TextFile text = Read_text_file(path);
    if (!text.ok) {
        ShowMessage(text.error);
        return {};
    }
    const GraphFile file = Read_graph_file(text.lines, name);
    NamedGraphFile read = Told_file(file);
    if (!read.ok) return {};
    if (!read.whole) Fill_missing_labels(read.graph);
    read.whole = read.whole && Names_are_of_project(file.names);
    const std::string why = Incompatibility_with_project(read.graph);
    if (why.empty()) return read;
    ShowMessage(name + ": The graph is not compatible with the project: " + why);
    return {};
}

NamedGraphFile Read_graph_strictly(const std::filesystem::path& path) {
    const std::string name = Path_text(path.filename());
    if (!Upper(name).ends_with(".GRF")) {
        ShowMessage("Warning: This is not a GRF file: " + name);
        return {};
    }
    const TextFile text = Read_text_file(path);
    if (!text.ok) {
        ShowMessage(text.error);
        return {};
    }
    return Told_file(Read_graph_file_strictly(text.lines, name));
}

}  // namespace tarven
