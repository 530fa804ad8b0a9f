#pragma once

namespace tarven {

/// GAMMA, and DELETE with its MAXEDGES, which weighs edges by their gammas.
void Register_graph_gamma_commands();

}  // namespace tarven
