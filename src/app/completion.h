#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarven {

/// What may stand at the end of a line being typed. All text is Latin-1.
struct Completions {
    int replaced = 0;                ///< characters before the cursor that a choice replaces
    std::vector<std::string> words;  ///< choices, in order
    std::vector<std::string> shown;  ///< the same with what they mean, for a list
};

/// A label of a variable and its name, which may be empty.
struct LabelAndName {
    char label = ' ';
    std::string name;
};

/// In the first word the keywords that begin with it, in any case, and whole spellings (TABU is on
/// its way to TABULATE). Behind it every label when a blank precedes the cursor, or the labels of
/// the variables whose names begin with the word under the cursor when that has two characters or
/// more: choosing one replaces the name by its label.
Completions Completions_of(std::string_view line_before_cursor,
                           const std::vector<LabelAndName>& labels);

/// The longest beginning that all words share; empty without words.
std::string Common_beginning(const std::vector<std::string>& words);

}  // namespace tarven
