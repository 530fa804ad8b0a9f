#include "shell/commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>
#include <map>

#include "shell/command_table.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "shell/words.h"

namespace tarven {

namespace {

struct Registry {
    std::map<int, Command> commands;
    std::map<std::pair<LetterCommand, char>, Letter> letters;
    std::map<std::pair<LetterCommand, char>, std::vector<LetterWord>> words;
};

Registry& The_registry() {
    static Registry registry;
    return registry;
}

/// The word that claims the line: the parameters begin with its letter alone and a word that begins
/// as it does.
const LetterWord* Claiming_word(LetterCommand command, const ParsedLine& line) {
    const std::string_view parameters = Behind_keyword(line.CommandLine);
    const std::string letter = Upper(Get_word(1, parameters));
    const std::string word = Upper(Get_word(2, parameters));
    if (letter.size() != 1 || word.empty()) return nullptr;
    for (const LetterWord* known : Letter_words(command, letter[0]))
        if (word.starts_with(known->beginning)) return known;
    return nullptr;
}

void Run_word(const LetterWord& word) {
    if (word.report == Report::opened) Open_report();
    if (Needs_hold(word.needs)) word.run();
    if (word.report == Report::opened) Close_report();
}

/// A file may be named behind the letters of SAVE.
bool Asks_for(LetterCommand command, const ParsedLine& line, char letter) {
    if (command != LetterCommand::save) return Has_parameter(line, letter);
    return Upper(Get_word(2, line.CommandLine)).find(letter) != std::string::npos;
}

void Run_letter(LetterCommand command, const Letter& letter) {
    if (letter.report == Report::opened) Open_report();
    if (Needs_hold(letter.needs)) {
        if (letter.available)
            letter.run();
        else
            ShowMessage(
                fmt::format("{} {} is not available yet", Spelling(command), letter.letter));
    }
    if (letter.report == Report::opened) Close_report();
}

}  // namespace

void Register_command(Command command) {
    const int number = Command_number(command.keyword);
    assert(number > 0 && "a command outside the command table");
    assert(!Find_command(number) && "a command is registered twice");
    if (command.spelling.empty()) command.spelling = command.keyword;
    The_registry().commands[number] = std::move(command);
}

const Command* Find_command(int number) {
    const auto found = The_registry().commands.find(number);
    return found == The_registry().commands.end() ? nullptr : &found->second;
}

std::vector<const Command*> Registered_commands() {
    std::vector<const Command*> commands;
    for (const auto& [number, command] : The_registry().commands) commands.push_back(&command);
    std::sort(commands.begin(), commands.end(), [](const Command* one, const Command* other) {
        return one->keyword < other->keyword;
    });
    return commands;
}

void Register_letter(LetterCommand command, Letter letter) {
    assert(Letters_in_order(command).find(letter.letter) != std::string_view::npos &&
           "a letter without a place in the order");
    assert(!Find_letter(command, letter.letter) && "a letter is registered twice");
    const char key = letter.letter;
    The_registry().letters[{command, key}] = std::move(letter);
}

void Register_letter_word(LetterCommand command, LetterWord word) {
    assert(Letters_in_order(command).find(word.letter) != std::string_view::npos &&
           "a word behind a letter without a place in the order");
    The_registry().words[{command, word.letter}].push_back(std::move(word));
}

std::vector<const LetterWord*> Letter_words(LetterCommand command, char letter) {
    std::vector<const LetterWord*> words;
    for (const LetterWord& word : The_registry().words[{command, letter}]) words.push_back(&word);
    return words;
}

void Extend_letter(LetterCommand command, char letter, const std::string& summary,
                   std::function<void()> run) {
    assert(Find_letter(command, letter) && "a letter that nobody has registered");
    Letter& extended = The_registry().letters[{command, letter}];
    extended.summary += ", " + summary;
    extended.run = [first = extended.run, run = std::move(run)] {
        first();
        run();
    };
}

std::string_view Letters_in_order(LetterCommand command) {
    switch (command) {
        case LetterCommand::show:
            return "GVLPNREDTCHISB";
        case LetterCommand::dispose:
            return "IEBOT";
        case LetterCommand::input:
            return "VDTBG";
        default:
            return "GRB";
    }
}

const Letter* Find_letter(LetterCommand command, char letter) {
    const auto found = The_registry().letters.find({command, letter});
    return found == The_registry().letters.end() ? nullptr : &found->second;
}

std::string_view Spelling(LetterCommand command) {
    switch (command) {
        case LetterCommand::show:
            return "SHOW";
        case LetterCommand::dispose:
            return "DISPOSE";
        case LetterCommand::input:
            return "INPUT";
        default:
            return "SAVE";
    }
}

Outcome Run_letters(LetterCommand command) {
    const ParsedLine line = The_line;  // a letter may ask for parameters, which then replace it
    if (const LetterWord* word = Claiming_word(command, line)) {
        Run_word(*word);
        return Outcome::done;
    }
    bool ran = false;
    for (const char key : Letters_in_order(command)) {
        const Letter* letter = Asks_for(command, line, key) ? Find_letter(command, key) : nullptr;
        if (!letter) continue;
        ran = true;
        Run_letter(command, *letter);
    }
    if (ran) return Outcome::done;
    ShowMessage(fmt::format("{} needs one of the letters {}", Spelling(command),
                            Letters_in_order(command)));
    return Outcome::refused;
}

Outcome Refuse(const Failed& failed) {
    for (const std::string& message : failed.messages) ShowMessage(message);
    return Outcome::refused;
}

bool Needs_hold(const std::vector<Need>& needs) {
    for (const Need& need : needs) {
        if (need.holds()) continue;
        ShowMessage(need.message);
        if (!need.warning) return false;
    }
    return true;
}

}  // namespace tarven
