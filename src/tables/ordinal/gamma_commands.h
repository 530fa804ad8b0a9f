#pragma once

#include <vector>

namespace tarven {

/// MANTEL, KAPPA, CORRELATIONS, GAMMA and the analyses L and D of TEST.

/// The project variables listed on the line; false, with a message, for an unknown label or fewer
/// than two.
bool At_least_two_variables(std::vector<int>& variables);

void Register_gamma_commands();

}  // namespace tarven
