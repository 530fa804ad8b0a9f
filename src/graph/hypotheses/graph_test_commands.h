#pragma once

namespace tarven {

/// GTEST, and TEST of pairs of the project graph.
void Register_graph_test_commands();

}  // namespace tarven
