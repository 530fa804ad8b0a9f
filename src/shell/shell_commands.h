#pragma once

namespace tarven {

/// SHOW, DISPOSE, INPUT and SAVE over their letters, AUTOMATIC, HELP, the settings of tests, and an
/// honest answer for every command that is not available yet.
void Register_shell_commands();

/// What the Log button does: each command is echoed into the report, or no longer.
void Toggle_log();

}  // namespace tarven
