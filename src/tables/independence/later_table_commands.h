#pragma once

namespace tarven {

/// Commands on tables that are not available yet: loglinear models, collapsibility, homogeneity,
/// Markov chains, named distributions.
void Register_later_table_commands();

}  // namespace tarven
