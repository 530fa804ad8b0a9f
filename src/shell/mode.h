#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/commands.h"
#include "shell/parsed_line.h"

namespace tarven {

/// A set of commands that typed lines name instead of those of the main mode, as graph mode and the
/// dialogue of item analysis bring one. Only the lookup of a command differs: needs, panels, the
/// report, the log, help and the history are the same in every mode, and so is the parsed line.
///
/// Keywords are found among the mode's own commands alone, so they need not stand in the command
/// table. HELP, where a mode brings none, lists its commands; EXIT, where it brings none, leaves
/// it. A "?" asks for the help of a command when it is the only parameter; among others it is the
/// command's own.
struct Mode {
    std::string name;  ///< "GRAPH", for the prompt and for help
    std::vector<Command> commands;
    /// A line that names none of the commands leaves the mode and is run in the one below, so that
    /// a command file goes on without an EXIT. Empty lines, comments and "?" leave nothing.
    bool falls_through = false;
};

struct ModeStack {
    std::vector<Mode> modes;  ///< empty: the main mode
};

inline ModeStack The_modes;

/// From the next line on the mode's commands are those that are typed.
void Enter_mode(Mode mode);

/// Back to the mode below, as a mode's own EXIT does.
void Leave_mode();

/// Leaves the modes that fall through and that the parsed line names no command of.
void Leave_modes_that_do_not_know(const ParsedLine& line);

/// The end of input is EXIT from every mode: runs the EXIT of each as a typed line, the one entered
/// last first. One that does not leave its mode then (nobody is there to answer it) is not asked
/// again.
void Leave_all_modes();

/// The command that a keyword (three letters, upper case) names where lines are typed now; null
/// when it names none.
const Command* Find_typed_command(std::string_view keyword);

/// The commands of the mode where lines are typed now, in the order of their keywords.
std::vector<const Command*> Typed_commands();

}  // namespace tarven
