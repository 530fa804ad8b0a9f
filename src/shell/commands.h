#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/result.h"

namespace tarven {

/// How a command ended. After a refusal the line stays in the command field for correction and
/// enters no history.
enum class Outcome : std::uint8_t { done, refused };

/// What must hold before a command begins, and what is said when it does not. Needs are tested in
/// order; the first that fails ends the command, unless it is a warning.
struct Need {
    std::function<bool()> holds;
    std::string message;
    bool warning = false;
};

/// Whether the dispatcher opens and closes the report around a command.
enum class Report : std::uint8_t { none, opened };

/// Commands whose letters other floors add.
enum class LetterCommand : std::uint8_t { show, dispose, input, save };

struct Command {
    std::string keyword;           ///< of the command table
    std::function<Outcome()> run;  ///< reads The_line
    std::vector<Need> needs;
    std::string activity;             ///< panel 4 while the command runs; empty: left alone
    bool shows_kind_of_test = false;  ///< panel 5: "Exact tests (n)" or "Asymptotic test"
    Report report = Report::none;
    std::string spelling;                    ///< "TABULATE", for the reader; the keyword by default
    std::string summary;                     ///< the one line of HELP
    std::string help;                        ///< forms, what it does, an example, what it refuses
    std::optional<LetterCommand> letters{};  ///< help is what stands behind the list of its letters
    bool available = true;                   ///< false: answers that it is not available yet
    bool hidden = false;                     ///< not listed by HELP; without `run`, unrecognized
};

/// Adds a command. A keyword outside the command table and a second registration are programming
/// errors.
void Register_command(Command command);

/// The command of a number, or null for one that nobody registered.
const Command* Find_command(int number);

/// All registered commands in the order of their keywords.
std::vector<const Command*> Registered_commands();

/// What one letter of such a command does.
struct Letter {
    char letter = ' ';
    std::function<void()> run;
    std::vector<Need> needs;
    Report report = Report::opened;
    std::string summary;    ///< its line in the help text of the command
    bool available = true;  ///< false, and no `run`: answers that it is not available yet
};

void Register_letter(LetterCommand command, Letter letter);
/// Adds what a higher floor has to do under a letter that is registered already, and what its line
/// of help says of that.
void Extend_letter(LetterCommand command, char letter, const std::string& summary,
                   std::function<void()> run);

/// A word behind a single letter that makes the whole line its own: in SHOW G COMPARE no letter of
/// COMPARE is a letter of SHOW.
struct LetterWord {
    char letter = ' ';
    std::string beginning;      ///< upper case; the word may go on: "COM". Empty: any word
    std::string spelling;       ///< with what stands behind it, for the reader: "COMPARE [file]"
    std::function<void()> run;  ///< reads The_line
    std::vector<Need> needs;
    Report report = Report::opened;
    std::string summary;
};

void Register_letter_word(LetterCommand command, LetterWord word);
/// The words of a letter in the order in which they were added.
std::vector<const LetterWord*> Letter_words(LetterCommand command, char letter);

/// The letters of a command in the fixed order in which they are tried.
std::string_view Letters_in_order(LetterCommand command);
const Letter* Find_letter(LetterCommand command, char letter);

/// The spelling of the command: "SHOW".
std::string_view Spelling(LetterCommand command);

/// Runs every letter among the parameters of The_line, in the fixed order, or the word that claims
/// the line. Refused when there is no letter to run.
Outcome Run_letters(LetterCommand command);

/// Shows the messages of a failure and refuses.
Outcome Refuse(const Failed& failed);

/// Tests needs in order, showing messages; false when one that is no warning fails.
bool Needs_hold(const std::vector<Need>& needs);

}  // namespace tarven
