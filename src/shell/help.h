#pragma once

#include <string>
#include <vector>

namespace tarven {

/// The help text of a command, as "KEYWORD ?" writes it into the report: "There is no help
/// available for this command" for a number without a text.
std::vector<std::string> Command_help(int number);
void Write_command_help(int number);

/// One line a command, as HELP lists them.
std::vector<std::string> Command_list();

/// The user's reference of all commands as Markdown (UTF-8), from the same texts.
std::string Command_reference();

}  // namespace tarven
