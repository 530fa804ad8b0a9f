#pragma once

namespace tarven {

/// SHOW and DISPOSE over their letters, AUTOMATIC, HELP and the settings of tests.
void Register_shell_commands();

/// What the Log button does: each command is echoed into the report, or no longer.
void Toggle_log();

}  // namespace tarven
