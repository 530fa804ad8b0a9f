#pragma once

namespace tarven {

/// FISHER on the current table.
void Register_fisher_commands();

}  // namespace tarven
