#pragma once

namespace tarven {

/// SHOW G, and the words behind its letter: COMPARE and MARGINAL.
void Register_show_graph();

}  // namespace tarven
