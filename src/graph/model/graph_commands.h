#pragma once

namespace tarven {

/// The commands of the project graph: the model itself, hypotheses from it, screening, searches,
/// paths and graph mode.
void Register_graph_commands();

}  // namespace tarven
