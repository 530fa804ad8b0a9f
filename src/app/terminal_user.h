#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/completion.h"

namespace tarven {

/// Whether a person types: standard input is a terminal, and what is asked can be seen on one.
bool Person_at_terminal();

/// Whether the terminal of standard input has been closed, so that nothing will ever be typed.
bool Terminal_is_gone();

/// Puts the person at the terminal into The_user: questions, choices and files are asked there.
void Install_terminal_user();

/// The next line typed at a prompt that shows project, table and items, with editing, history and
/// completion; nothing at the end of input. Ctrl-C gives up the line.
std::optional<std::string> Type_line();

/// Progress, with the time left, and wait banners in the last line of standard error, when that is
/// a terminal. They leave nothing behind.
void Install_banners();

/// From now on Ctrl-C during a command asks it to stop at its next safe point, and a second one
/// during the same command ends the program, which saves an unsaved report first. Called when
/// standard input is a terminal; from a pipe the signal ends the program.
void Install_interrupt();

/// A command begins or has ended: the next Ctrl-C is the first again.
void Command_begins();
void Command_ended();

/// The variables whose labels are completed.
inline std::function<std::vector<LabelAndName>()> Labels_to_complete;

}  // namespace tarven
