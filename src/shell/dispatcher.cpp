#include "shell/dispatcher.h"

#include <fmt/format.h>

#include <cassert>
#include <optional>

#include "shell/command_table.h"
#include "shell/commands.h"
#include "shell/files.h"
#include "shell/help.h"
#include "shell/mode.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "shell/words.h"

namespace tarven {

namespace {

/// "TAB ?". In a mode a "?" among other parameters is the command's own.
bool Is_help_request() {
    return Has_parameter('?') && (The_modes.modes.empty() || The_line.ParameterCount == 1);
}

/// What "HELP TAB" asks about; empty for any other line.
std::string Keyword_behind_help() {
    if (The_line.Keyword != "HEL" || The_line.ParameterCount == 0) return "";
    return Upper(Get_word(1, Behind_keyword(The_line.CommandLine)).substr(0, 3));
}

/// The command whose help a line asks for, null inside for a keyword without one; nothing when the
/// line asks for none.
std::optional<const Command*> Help_wanted(const Command* command, bool known) {
    if (known && Is_help_request()) return command;
    const std::string keyword = Keyword_behind_help();
    const Command* asked = keyword.empty() ? nullptr : Find_typed_command(keyword);
    const bool reserved = The_modes.modes.empty() && Command_number(keyword) > 0;
    if (asked || reserved) return asked;
    return {};
}

std::string Kind_of_test() {
    if (The_settings.ExactTests) return fmt::format("Exact tests ({})", The_settings.Nsim);
    return "Asymptotic test";
}

/// Runs a command, its needs, its panels and its report. The record is copied, for a command may
/// leave the mode that holds it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
Outcome Run_command(const Command command) {
    if (!Needs_hold(command.needs)) return Outcome::refused;
    if (command.report == Report::opened) Open_report();
    if (!command.activity.empty()) SetStatus(4, command.activity);
    if (command.shows_kind_of_test) SetStatus(5, Kind_of_test());
    const Outcome outcome = command.run();
    if (command.report == Report::opened) Close_report();
    return outcome;
}

void Write_to_log(const std::string& text) {
    if (!The_report.LogOn) return;
    Open_report();
    Write_report("Command: " + text);
    Close_report();
}

void Clear_fields() {
    The_session.command_field.clear();
}

/// A line that names something is remembered, a reserved keyword too.
void End_of_command(const std::string& text, bool known) {
    if (known) Add_to_history(text);
    if (known || !text.starts_with('?'))
        Clear_fields();
    else
        ShowMessage("Use the Help command to get a list of all commands");
    Refresh_test_status();
    for (int panel = 4; panel <= 6; ++panel) SetStatus(panel, "");
}

/// What a command from code may not change: the caller's line and what its panels say it does.
struct CallerState {
    ParsedLine line = The_line;
    std::string command_field = The_session.command_field;
    std::vector<std::string> panels = The_user.panels;
};

void Restore(CallerState caller) {
    The_line = std::move(caller.line);
    The_session.command_field = std::move(caller.command_field);
    for (int panel = 4; panel <= 6; ++panel)
        SetStatus(panel, caller.panels[static_cast<std::size_t>(panel)]);
}

/// A reopen that waits in the queue cannot succeed without the start-up memory.
bool Queue_holds_a_vain_reopen() {
    return The_session.queue.front() == "REO" && !Find_file(The_session.StartPath / "TARVEN.cmd");
}

}  // namespace

void ExecuteCommand() {
    std::string text = The_session.command_field;
    if (text.empty() && !The_session.queue.empty()) {
        if (Queue_holds_a_vain_reopen()) {
            The_session.queue.pop_front();
            return;
        }
        text = The_session.queue.front();
        The_session.queue.pop_front();
    }
    Read_command_line(text);
    Write_to_log(text);
    if (!text.empty()) Leave_modes_that_do_not_know(The_line);

    // An empty text leaves the keyword of the line before it.
    const Command* command = text.empty() ? nullptr : Find_typed_command(The_line.Keyword);
    // A reserved keyword is known in the main mode, though nothing runs.
    const bool known = The_modes.modes.empty() ? The_line.CommandNumber > 0 : command != nullptr;
    if (const auto asked = Help_wanted(command, known); asked && !text.empty()) {
        Open_report();
        Write_command_help(*asked);
        Close_report();
        Clear_fields();
        return;
    }
    if (command && command->run) {
        // A refused line stays in the field for correction and enters no history.
        if (Run_command(*command) == Outcome::refused) return;
    } else if (!text.empty() && text[0] != '?') {
        ShowMessage("Unrecognized command: " + text);
    }
    End_of_command(text.empty() ? "?" : text, known);
}

void Run_line(const std::string& text) {
    The_session.command_field = text;
    ExecuteCommand();
}

Outcome Run_from_code(const std::string& text) {
    CallerState caller;
    Read_command_line(text);
    Write_to_log(text);
    const Command* command = Find_command(The_line.CommandNumber);
    assert(command && command->run && "code runs a command that nobody has registered");
    const Outcome outcome = Run_command(*command);
    Refresh_test_status();
    Restore(std::move(caller));
    return outcome;
}

void Add_to_history(const std::string& text) {
    if (text.size() <= 2) return;
    The_session.history.push_back(text.substr(0, 120));
    if (The_session.history.size() > MaxHistory) The_session.history.pop_front();
}

void Refresh_test_status() {
    const TestSettings& settings = The_settings;
    if (settings.ExactTests) {
        const char* kind = !settings.SequentialTests       ? "Exact tests"
                           : settings.RepeatedLevel2 > 0.0 ? "Rep. MC tests"
                                                           : "Seq. MC tests";
        The_session.test_status =
            fmt::format("{} NSIM = {}  SEED = {}", kind, settings.Nsim, settings.Seed);
    } else {
        The_session.test_status = "                Asymptotic tests";
    }
    The_session.sides_status =
        settings.TwoSided ? "                 2-sided tests" : "                 1-sided tests";
}

}  // namespace tarven
