#include "shell/variable_lists.h"

#include <algorithm>
#include <string>

#include "shell/limits.h"
#include "shell/text.h"
#include "shell/user.h"
#include "shell/words.h"

namespace tarven {

namespace {

enum class Digits : std::uint8_t { numbers, ignored, labels };

struct Rule {
    Digits digits = Digits::numbers;
    int score = -1;  ///< code of "#"; -1: not allowed
};

bool Is_tolerated(char c) {
    return c == '-' || c == '+' || c == '?' || c == '*';
}

int Last_label(char character, std::string_view labels) {
    const auto at = labels.rfind(character);
    return at == std::string_view::npos ? 0 : static_cast<int>(at) + 1;
}

VariableList Converted(std::string_view line, std::string_view labels, bool skip_first_word,
                       const Rule& rule) {
    VariableList result;
    const std::string letters = One_byte_a_letter(line);
    std::string_view text = std::string_view(letters).substr(0, MaxTextLength);
    if (skip_first_word) text = Behind_keyword(text);
    for (std::size_t k = 0; k < text.size();) {
        const char c = text[k];
        if (Is_digit(c) && rule.digits == Digits::numbers) {
            std::uint8_t number = 0;
            for (; k < text.size() && Is_digit(text[k]); ++k)
                number = static_cast<std::uint8_t>(number * 10 + (text[k] - '0'));
            result.list.push_back(number);
            continue;
        }
        ++k;
        if (c == ' ' || (Is_digit(c) && rule.digits == Digits::ignored)) continue;
        if (c == '*') {
            result.list.push_back(static_cast<std::uint8_t>(labels.size() + 1));
        } else if (c == '#' && rule.score >= 0) {
            result.list.push_back(static_cast<std::uint8_t>(rule.score));
        } else if (const int variable = c == '#' ? 0 : Find_label(c, labels)) {
            result.list.push_back(static_cast<std::uint8_t>(variable));
        } else if (!Is_tolerated(c)) {
            result.ok = false;
        }
    }
    return result;
}

}  // namespace

int Find_label(char character, std::string_view labels) {
    const int variable = Last_label(character, labels);
    return variable > 0 ? variable : Last_label(Swap_case(character), labels);
}

char Swap_case(char character) {
    const auto code = static_cast<unsigned char>(character);
    switch (code) {
        case 198:
            return static_cast<char>(230);
        case 230:
            return static_cast<char>(198);
        case 216:
            return static_cast<char>(248);
        case 248:
            return static_cast<char>(216);
        case 197:
            return static_cast<char>(229);
        case 229:
            return static_cast<char>(197);
        default:
            break;
    }
    if (code >= 65 && code <= 93) return static_cast<char>(code + 32);
    if (code >= 97 && code <= 125) return static_cast<char>(code - 32);
    return character;
}

std::string_view Behind_keyword(std::string_view line) {
    const auto start = line.find_first_not_of(" $");
    if (start == std::string_view::npos) return {};
    const auto blank = line.find(' ', start);
    return blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1);
}

VariableList Select_list_to_variables(std::string_view text, std::string_view labels,
                                      bool skip_first_word) {
    return Converted(text, labels, skip_first_word, {Digits::numbers, ScoreCode});
}

VariableList Generators_to_variables(std::string_view text, std::string_view labels,
                                     bool skip_first_word) {
    return Converted(text, labels, skip_first_word, {Digits::ignored, ScoreCode});
}

VariableList String_to_variables(std::string_view text, std::string_view labels,
                                 bool skip_first_word) {
    return Converted(text, labels, skip_first_word, {Digits::numbers, -1});
}

VariableList String_to_variables_with_score(std::string_view text, std::string_view labels,
                                            bool skip_first_word) {
    return Converted(text, labels, skip_first_word,
                     {Digits::numbers, static_cast<int>(labels.size()) + 2});
}

VariableList Labels_to_variables(std::string_view text, std::string_view labels,
                                 bool skip_first_word) {
    return Converted(text, labels, skip_first_word, {Digits::labels, -1});
}

TwoItemSets Two_item_sets(
    std::string_view text,
    const std::function<std::vector<std::uint8_t>(std::string_view)>& to_items) {
    TwoItemSets sets;
    const auto plus = text.find('+');
    if (plus == std::string_view::npos) return sets;
    const auto converted = [&](std::string_view part) {
        auto items = to_items(part);
        if (std::find(items.begin(), items.end(), 1) == items.end()) ShowMessage("No items");
        return items;
    };
    const auto any = [](const std::vector<std::uint8_t>& items) {
        return std::find(items.begin(), items.end(), 1) != items.end();
    };
    sets.items1 = converted(text.substr(0, plus));
    sets.items2 = converted("xxx " + std::string(text.substr(plus + 1)));
    sets.ok = any(sets.items1) && any(sets.items2);
    return sets;
}

}  // namespace tarven
