#pragma once

namespace tarven {

/// Everything that the floor adds to the shell: its commands and letters, and what it does at the
/// moments of the life cycle. Rooms register in their order.
void Register_tables();

}  // namespace tarven
