#pragma once

#include <vector>

#include "shell/commands.h"

namespace tarven {

/// MANTEL, KAPPA, CORRELATIONS, the analyses L and D of TEST, and what GAMMA M does.

/// Writes and keeps the gammas of all pairs of project variables that have an order, or writes them
/// as generalized odds ratios.
Outcome Marginal_gammas(bool odds_ratios);

/// The project variables listed on the line; false, with a message, for an unknown label or fewer
/// than two.
bool At_least_two_variables(std::vector<int>& variables);

void Register_gamma_commands();

}  // namespace tarven
