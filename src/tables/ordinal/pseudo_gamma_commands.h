#pragma once

namespace tarven {

/// PGAMMA, and the analysis G of TEST.
void Register_pseudo_gamma_commands();

}  // namespace tarven
