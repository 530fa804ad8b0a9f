#include "shell/dispatcher.h"

#include <fmt/format.h>

#include <cassert>

#include "shell/commands.h"
#include "shell/files.h"
#include "shell/help.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/user.h"

namespace tarven {

namespace {

bool Is_help_request() {
    return The_line.ParameterCount > 0 && The_line.CommandNumber > 0 && Has_parameter('?');
}

/// The command that a parsed line names; null for what takes the unknown-command branch.
const Command* Command_of_line() {
    const Command* command = Find_command(The_line.CommandNumber);
    return command && command->run ? command : nullptr;
}

std::string Kind_of_test() {
    if (The_settings.ExactTests) return fmt::format("Exact tests ({})", The_settings.Nsim);
    return "Asymptotic test";
}

/// Runs a command, its needs, its panels and its report. The record is copied, for a command may
/// run lines that bring other commands.
Outcome Run_command(const Command command) {
    if (!Needs_hold(command.needs)) return Outcome::refused;
    if (command.report == Report::opened) Open_report();
    if (!command.activity.empty()) SetStatus(4, command.activity);
    if (command.shows_kind_of_test) SetStatus(5, Kind_of_test());
    const Outcome outcome = command.run();
    if (command.report == Report::opened) Close_report();
    return outcome;
}

void Clear_fields() {
    The_session.command_field.clear();
}

void End_of_command(const std::string& text, int number, char first) {
    if (number > 0) {
        Add_to_history(text);
        Clear_fields();
    } else if (first == '?') {
        ShowMessage("Use the Help command to get a list of all commands");
    } else {
        Clear_fields();
    }
    Refresh_test_status();
    for (int panel = 4; panel <= 6; ++panel) SetStatus(panel, "");
}

/// A reopen that waits in the queue cannot succeed without the start-up memory.
bool Queue_holds_a_vain_reopen() {
    return The_session.queue.front() == "REO" && !Find_file(The_session.StartPath / "TARVEN.cmd");
}

}  // namespace

void Enter_mode(Mode mode) {
    The_modes.modes.push_back(std::move(mode));
}

void Leave_mode() {
    assert(!The_modes.modes.empty() && "no mode to leave");
    The_modes.modes.pop_back();
}

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

    if (The_report.LogOn) {
        Open_report();
        Write_report("Command: " + text);
        Close_report();
    }
    if (Is_help_request()) {
        Open_report();
        Write_command_help(The_line.CommandNumber);
        Close_report();
        Clear_fields();
        return;
    }
    const char first = text.empty() ? '?' : text[0];
    const int number = The_line.CommandNumber;
    if (const Command* command = Command_of_line()) {
        // A refused line stays in the field for correction and enters no history.
        if (Run_command(*command) == Outcome::refused) return;
    } else {
        // A reserved keyword takes this branch too, and is remembered as it has a number.
        if (first != '?') ShowMessage("Unrecognized command: " + text);
    }
    End_of_command(text, number, first);
}

void Run_line(const std::string& text) {
    The_session.command_field = text;
    if (!The_modes.modes.empty()) {
        The_modes.modes.back().execute(text);
        return;
    }
    ExecuteCommand();
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
