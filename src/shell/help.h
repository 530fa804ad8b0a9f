#pragma once

#include <string>
#include <vector>

#include "shell/commands.h"

namespace tarven {

/// The help text of a command, as "KEYWORD ?" writes it into the report: "There is no help
/// available for this command" for null and for a command without a text.
std::vector<std::string> Command_help(const Command* command);
void Write_command_help(const Command* command);

/// One line a command of the mode where lines are typed, as HELP lists them: first what is there,
/// then what is not available yet.
std::vector<std::string> Command_list();

/// The user's reference of all commands of the main mode as Markdown (UTF-8), from the same texts.
std::string Command_reference();

}  // namespace tarven
