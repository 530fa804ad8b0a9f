#pragma once

#include <string>

#include "shell/commands.h"

namespace tarven {

/// Takes the line of the command field, or, when that is empty, the first line of the queue, and
/// runs it to its end, in the mode entered last. All effects are on the workspace and the report.
void ExecuteCommand();

/// Stores a line in the command field and runs it: a line that is typed, or read from a command
/// file as if it were.
void Run_line(const std::string& text);

/// Runs a command of the main mode, whatever mode lines are typed in, from within another command
/// or from the program itself. Needs, report and log are those of a typed line; the caller's parsed
/// line, the command field, the queue, the history and the panels of activity stay as they were,
/// and within an open report its lines join those of the caller. A text that names no command is a
/// programming error.
Outcome Run_from_code(const std::string& text);

/// Lines of more than 2 characters; the 20 last are kept, cut to 120 characters.
void Add_to_history(const std::string& text);

/// Brings the two test status fields up to date with the settings.
void Refresh_test_status();

}  // namespace tarven
