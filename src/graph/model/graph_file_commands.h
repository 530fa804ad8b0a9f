#pragma once

namespace tarven {

/// The files of the graph: what opening and exit do with them, the letter G of INPUT and SAVE, and
/// the commands READ and SAVE.
void Register_graph_file_commands();

}  // namespace tarven
