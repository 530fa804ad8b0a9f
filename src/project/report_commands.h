#pragma once

#include <string>

#include "shell/commands.h"

namespace tarven {

/// Adds the lines of a file, an earlier report or any text, to the report. Without a name the user
/// chooses one. Refused when there is no such file.
Outcome Read_report_file(std::string name);

/// OUT, APP, S34, ERA and PRI.
void Register_report_commands();

}  // namespace tarven
