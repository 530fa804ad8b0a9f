#include "app/completion.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/mode.h"
#include "shell/words.h"

namespace tarven {

namespace {

bool Begins_with(std::string_view text, std::string_view beginning) {
    return Upper(text.substr(0, beginning.size())) == Upper(beginning);
}

Completions Keywords(std::string_view word) {
    Completions found;
    found.replaced = static_cast<int>(word.size());
    for (const Command* command : Typed_commands()) {
        if (command->hidden || !command->run) continue;
        const bool by_keyword = Begins_with(command->keyword, word);
        if (!by_keyword && !Begins_with(command->spelling, word)) continue;
        found.words.push_back(by_keyword ? command->keyword : command->spelling);
        found.shown.push_back(fmt::format("{} {}", command->keyword, command->summary));
    }
    return found;
}

}  // namespace

Completions Completions_of(std::string_view line_before_cursor,
                           const std::vector<LabelAndName>& labels) {
    const auto blank = line_before_cursor.find_last_of(' ');
    if (line_before_cursor.find_first_not_of(' ') == std::string_view::npos) return Keywords("");
    const std::string_view word =
        blank == std::string_view::npos ? line_before_cursor : line_before_cursor.substr(blank + 1);
    if (word.size() == line_before_cursor.size() ||
        line_before_cursor.substr(0, blank + 1).find_first_not_of(' ') == std::string_view::npos)
        return Keywords(word);
    Completions found;
    if (word.size() == 1) return found;
    found.replaced = static_cast<int>(word.size());
    for (const LabelAndName& variable : labels) {
        if (!Begins_with(variable.name, word)) continue;
        found.words.emplace_back(1, variable.label);
        found.shown.push_back(fmt::format("{} {}", variable.label, variable.name));
    }
    return found;
}

std::string Common_beginning(const std::vector<std::string>& words) {
    if (words.empty()) return "";
    std::string common = words[0];
    for (const std::string& word : words) {
        const auto differs =
            std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first;
        common.erase(differs, common.end());
    }
    return common;
}

}  // namespace tarven
