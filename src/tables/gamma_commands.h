#pragma once

namespace tarven {

/// MANTEL, KAPPA, CORRELATIONS and the marginal form of GAMMA.
void Register_gamma_commands();

}  // namespace tarven
