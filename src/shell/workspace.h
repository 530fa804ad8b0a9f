#pragma once

namespace tarven {

/// Sets the whole workspace to its start values, through the life cycle of all floors that are
/// registered. Runs once at program start; a test runs it before each session. The person
/// (The_user.user), the report's listener and the registered commands stay.
void Init_workspace();

/// The shell's share of the life cycle.
void Register_shell_lifecycle();

}  // namespace tarven
