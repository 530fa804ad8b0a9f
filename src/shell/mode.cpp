#include "shell/mode.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>

#include "shell/command_table.h"
#include "shell/dispatcher.h"

namespace tarven {

namespace {

const Command* Find(const Mode& mode, std::string_view keyword) {
    for (const Command& command : mode.commands)
        if (command.keyword == keyword) return &command;
    return nullptr;
}

Command Exit_of(const Mode& mode) {
    return {.keyword = "EXI",
            .run =
                [] {
                    Leave_mode();
                    return Outcome::done;
                },
            .spelling = "EXIT",
            .summary = fmt::format("leaves {} mode", mode.name)};
}

}  // namespace

void Enter_mode(Mode mode) {
    for (Command& command : mode.commands)
        if (command.spelling.empty()) command.spelling = command.keyword;
    if (!Find(mode, "EXI")) mode.commands.push_back(Exit_of(mode));
    if (!Find(mode, "HEL")) mode.commands.push_back(*Find_command(Command_number("HEL")));
    std::sort(mode.commands.begin(), mode.commands.end(),
              [](const Command& one, const Command& other) { return one.keyword < other.keyword; });
    The_modes.modes.push_back(std::move(mode));
}

void Leave_mode() {
    assert(!The_modes.modes.empty() && "no mode to leave");
    The_modes.modes.pop_back();
}

void Leave_modes_that_do_not_know(const ParsedLine& line) {
    if (line.IsComment || line.Keyword.empty() || line.Keyword.starts_with('?')) return;
    while (!The_modes.modes.empty() && The_modes.modes.back().falls_through &&
           !Find(The_modes.modes.back(), line.Keyword))
        Leave_mode();
}

void Leave_all_modes() {
    while (!The_modes.modes.empty()) {
        const std::size_t depth = The_modes.modes.size();
        Run_line("EXI");
        if (The_modes.modes.size() >= depth) The_modes.modes.resize(depth - 1);
    }
}

const Command* Find_typed_command(std::string_view keyword) {
    if (The_modes.modes.empty()) return Find_command(Command_number(keyword));
    return Find(The_modes.modes.back(), keyword);
}

std::vector<const Command*> Typed_commands() {
    if (The_modes.modes.empty()) return Registered_commands();
    std::vector<const Command*> commands;
    for (const Command& command : The_modes.modes.back().commands) commands.push_back(&command);
    return commands;
}

}  // namespace tarven
