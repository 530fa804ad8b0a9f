#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace tarven {

/// Codes in a list of variable numbers above the project's N variables: "*" is N+1, and "#", the
/// score, is 255 (N+2 in the converter of the creation forms).
inline constexpr std::uint8_t ScoreCode = 255;

/// An ordered list of variable numbers, duplicates kept. No range test is made on typed numbers:
/// each consumer skips what it does not want.
struct VariableList {
    bool ok = true;  ///< false: a character is no label; the list holds the others all the same
    std::vector<std::uint8_t> list;

    bool operator==(const VariableList&) const = default;
};

/// 1..N, the number of the variable whose label the character is, the last one if it occurs twice;
/// failing that, the variable whose label is the character in the other case. 0 if there is none.
/// labels[i-1] is the label of variable i.
int Find_label(char character, std::string_view labels);

/// The letter in the other case. Codes 65-93 and 97-125 exchange (the brackets with the braces
/// too), and so do the three pairs of Latin-1 letters 198/230, 216/248 and 197/229.
char Swap_case(char character);

/// Where the parameters of a line begin: behind the first blank at or after the keyword.
std::string_view Behind_keyword(std::string_view line);

// The five converters read the first 120 characters of a text, with skip_first_word from behind
// its keyword. Blanks separate; "-", "+", "*" and "?" are tolerated where no rule takes them.

/// Digit runs are variable numbers in byte arithmetic, "*" is N+1, "#" is 255.
VariableList Select_list_to_variables(std::string_view text, std::string_view labels,
                                      bool skip_first_word);
/// Digits are ignored, "*" is N+1, "#" is 255.
VariableList Generators_to_variables(std::string_view text, std::string_view labels,
                                     bool skip_first_word);
/// Digit runs are variable numbers, "*" is N+1, "#" is not allowed.
VariableList String_to_variables(std::string_view text, std::string_view labels,
                                 bool skip_first_word);
/// Digit runs are variable numbers, "*" is N+1, "#" is N+2.
VariableList String_to_variables_with_score(std::string_view text, std::string_view labels,
                                            bool skip_first_word);
/// Digits are labels, "*" is N+1, "#" is not allowed.
VariableList Labels_to_variables(std::string_view text, std::string_view labels,
                                 bool skip_first_word);

/// Flags over the items, [0] is the first.
struct TwoItemSets {
    bool ok = false;
    std::vector<std::uint8_t> items1, items2;
};

/// "set1 + set2": the text up to the first "+" with its keyword, and the rest. `to_items` converts
/// a text whose first word is skipped. Each empty conversion gives the message "No items"; without
/// a "+" nothing is said.
TwoItemSets Two_item_sets(
    std::string_view text,
    const std::function<std::vector<std::uint8_t>(std::string_view)>& to_items);

}  // namespace tarven
