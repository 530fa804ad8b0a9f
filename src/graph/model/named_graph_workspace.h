#pragma once

#include <filesystem>

#include "graph/model/graph_file.h"

namespace tarven {

/// A graph file that was read, and what the user was told of it.
struct NamedGraphFile {
    bool ok = false;
    bool whole = false;  ///< without a warning, and of the project's names where it holds names
    ChainGraph graph;
};

/// Reads the graph file of the project with the tolerant reader. Messages are shown; not ok for
/// what is no graph of the project's variables and blocks. Missing labels are the project's.
NamedGraphFile Read_graph_of_project(const std::filesystem::path& path);

/// Reads a graph file of any name with the strict reader. Messages are shown.
NamedGraphFile Read_graph_strictly(const std::filesystem::path& path);

}  // namespace tarven
