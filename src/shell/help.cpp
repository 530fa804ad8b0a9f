#include "shell/help.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/fields.h"
#include "shell/mode.h"
#include "shell/report.h"
#include "shell/text.h"

namespace tarven {

namespace {

constexpr const char* NoHelp = "There is no help available for this command";

std::string Title(const Command& command) {
    return command.spelling == command.keyword
               ? command.keyword
               : fmt::format("{} ({})", command.keyword, command.spelling);
}

/// "SHOW letters", a line for each letter, and what the command says of them all.
std::string Help_of_letters(LetterCommand command, const std::string& behind) {
    std::string text = fmt::format("{} letters\n\n", Spelling(command));
    for (const char key : Letters_in_order(command)) {
        if (const Letter* letter = Find_letter(command, key))
            text += fmt::format("  {}  {}{}\n", key, letter->summary,
                                letter->available ? "" : " (not available yet)");
        for (const LetterWord* word : Letter_words(command, key))
            text += fmt::format("  {} {}  {}\n", key, word->spelling, word->summary);
    }
    return text + "\n" + behind;
}

std::string Help_text(const Command& command) {
    return command.letters ? Help_of_letters(*command.letters, command.help) : command.help;
}

}  // namespace

std::vector<std::string> Command_help(const Command* command) {
    if (!command || (command->help.empty() && command->summary.empty())) return {NoHelp};
    std::vector<std::string> lines = {fmt::format("{}: {}", Title(*command), command->summary)};
    if (!command->available) lines.push_back("This command is not available yet.");
    const std::string help = Help_text(*command);
    if (!help.empty()) {
        lines.push_back("");
        for (const std::string& line : Split_lines(help)) lines.push_back(line);
    }
    return lines;
}

void Write_command_help(const Command* command) {
    Write_lines(Command_help(command));
}

std::vector<std::string> Command_list() {
    std::vector<std::string> lines;
    std::vector<std::string> later = {"", "Not available yet:"};
    for (const Command* command : Typed_commands())
        if (!command->hidden)
            (command->available ? lines : later)
                .push_back(fmt::format("{} {} {}", command->keyword, Left(command->spelling, 13),
                                       command->summary));
    if (later.size() > 2) Append_lines(lines, later);
    return lines;
}

std::string Command_reference() {
    std::string text =
        "# Commands\n\n"
        "<!-- Written by `tarven --commands-reference`; the texts stand with the commands. -->\n\n"
        "Only the first three letters of a command count, in either case. `KEYWORD ?` and\n"
        "`HELP KEYWORD` show the same text in the program, `HELP` the list.\n";
    for (const Command* command : Registered_commands()) {
        if (command->hidden || !command->available) continue;
        text += fmt::format("\n## {}\n\n{}\n", Title(*command), command->summary);
        const std::string help = Help_text(*command);
        if (!help.empty()) text += fmt::format("\n```\n{}\n```\n", help);
    }
    text += "\n## Not available yet\n\n";
    for (const Command* command : Registered_commands())
        if (!command->hidden && !command->available)
            text += fmt::format("- `{}` {}\n", command->keyword, command->summary);
    return To_utf8(text);
}

}  // namespace tarven
