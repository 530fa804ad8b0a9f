#pragma once

namespace tarven {

/// Registers the commands, letters and life-cycle procedures of every floor, lowest first, and sets
/// the workspace to its start values. Once in a process.
void Register_all();

}  // namespace tarven
