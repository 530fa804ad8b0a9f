#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tarven {

/// What may stand at the end of a line being typed. All text is as To_line makes it.
struct Completions {
    int replaced = 0;                ///< letters before the cursor that a choice replaces
    std::vector<std::string> words;  ///< choices, in order
    std::vector<std::string> shown;  ///< the same with what they mean, for a list
    bool goes_on = false;            ///< the only choice is a folder: its word is not at its end
};

/// A label of a variable and its name, which may be empty.
struct LabelAndName {
    char label = ' ';
    std::string name;
};

/// In the first word, and behind HELP, the keywords of the commands that are there that begin with
/// it, in any case, and whole spellings (TABU is on its way to TABULATE). Behind a command that
/// takes files or a folder their names, in quotes where one has a blank; behind one that takes
/// letters those that do not stand yet. Behind any other every label when a blank precedes the
/// cursor, or the labels of the variables whose names begin with the word under the cursor when
/// that has two characters or more: choosing one replaces the name by its label.
Completions Completions_of(std::string_view line_before_cursor,
                           const std::vector<LabelAndName>& labels);

/// Where the whole line is the name of a file in `folder`.
Completions Completions_of_file(std::string_view line_before_cursor,
                                const std::filesystem::path& folder);

/// The longest beginning that all words share; empty without words.
std::string Common_beginning(const std::vector<std::string>& words);

}  // namespace tarven
