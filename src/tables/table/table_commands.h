#pragma once

namespace tarven {

/// TABULATE, SHOW T and DISPOSE T; what becomes of the table when a project closes or its variables
/// change.
void Register_table_commands();

}  // namespace tarven
