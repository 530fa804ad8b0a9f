#pragma once

namespace tarven {

/// Registers every keyword whose procedure no floor has brought yet, with its line of HELP and the
/// refusals that hold already. A floor that registers the command replaces the entry.
void Register_later_commands();

}  // namespace tarven
