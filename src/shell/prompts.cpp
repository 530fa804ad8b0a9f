#include "shell/prompts.h"

#include <algorithm>

#include "shell/parsed_line.h"
#include "shell/user.h"
#include "shell/words.h"

namespace tarven {

namespace {

Wildcard Lone_wildcard() {
    if (The_line.ParameterCount != 1) return Wildcard::none;
    switch (The_line.ParameterField[0]) {
        case '-':
            return Wildcard::absent;
        case '?':
        case '+':
            return Wildcard::linked;
        case '*':
            return Wildcard::all;
        default:
            return Wildcard::none;
    }
}

VariableList Converted_answer(const std::string& answer, std::string_view labels) {
    VariableList list = String_to_variables(answer, labels, false);
    if (!list.ok) ShowMessage("Error converting string to variables");
    return list;
}

}  // namespace

Outcome Refuse_line() {
    ShowMessage("Failure: " + The_line.CommandLine);
    return Outcome::refused;
}

RequiredParameters Require_parameters() {
    for (;;) {
        const Wildcard wildcard = Lone_wildcard();
        if (wildcard != Wildcard::none || The_line.ParameterCount >= 2) return {true, wildcard};
        const std::string answer =
            AskUser("Variables or parameters are required", "Enter variables/parameters", " ");
        if (Word_count(answer) == 0) return {};
        Read_command_line(Get_word(1, The_line.CommandLine) + " " + answer);
    }
}

std::string Ask_string(const std::string& caption, const std::string& prompt) {
    return AskUser(caption, prompt, " ");
}

VariableList Ask_variables(const std::string& caption, const std::string& prompt,
                           std::string_view labels) {
    return Converted_answer(Ask_string(caption, prompt), labels);
}

VariableList Ask_pure_items(const std::string& caption, const std::string& prompt,
                            std::string_view labels, const std::string& pure_items) {
    if (pure_items.empty()) ShowMessage("No pure Rasch items");
    return Converted_answer(AskUser(caption, prompt, pure_items), labels);
}

std::vector<std::pair<std::uint8_t, std::uint8_t>> Ask_pairs(const std::string& caption,
                                                             const std::string& prompt,
                                                             std::string_view labels) {
    const std::vector<std::uint8_t> list = Ask_variables(caption, prompt, labels).list;
    std::vector<std::pair<std::uint8_t, std::uint8_t>> pairs;
    bool equal = false;
    for (std::size_t k = 0; k + 1 < list.size(); k += 2) {
        pairs.emplace_back(std::minmax(list[k], list[k + 1]));
        equal = equal || list[k] == list[k + 1];
    }
    if (!equal && !pairs.empty()) return pairs;
    ShowMessage("Error defining variable pairs");
    return {};
}

AskedNumbers Ask_numbers(const std::string& caption, const std::string& prompt) {
    const Numbers found = Extract_numbers(AskUser(caption, prompt, ""));
    AskedNumbers result;
    result.count = found.count;
    std::copy(found.numbers.begin(), found.numbers.begin() + found.count, result.numbers.begin());
    return result;
}

std::int32_t Ask_integer(const std::string& caption, const std::string& prompt) {
    const AskedNumbers asked = Ask_numbers(caption, prompt);
    return asked.count > 0 ? asked.numbers[0] : NoInteger;
}

}  // namespace tarven
