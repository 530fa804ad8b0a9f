#pragma once

namespace tarven {

/// MAKE, FREQUENCIES, MISSING, DATA, SYS and SELECT; the letters D and T of INPUT and D of SHOW;
/// what becomes of data in memory when a project closes or its variables change.
void Register_data_commands();

}  // namespace tarven
