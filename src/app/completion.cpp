#include "app/completion.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "app/file_completion.h"
#include "shell/commands.h"
#include "shell/mode.h"
#include "shell/parsed_line.h"
#include "shell/test_options.h"
#include "shell/text.h"
#include "shell/words.h"

namespace tarven {

namespace {

int Letter_count(std::string_view text) {
    return static_cast<int>(One_byte_a_letter(text).size());
}

bool Begins_with(std::string_view text, std::string_view beginning) {
    return Upper(text.substr(0, beginning.size())) == Upper(beginning);
}

Completions Keywords(std::string_view word) {
    Completions found;
    found.replaced = Letter_count(word);
    for (const Command* command : Typed_commands()) {
        if (command->hidden || !command->available) continue;
        const bool by_keyword = Begins_with(command->keyword, word);
        if (!by_keyword && !Begins_with(command->spelling, word)) continue;
        found.words.push_back(by_keyword ? command->keyword : command->spelling);
        found.shown.push_back(fmt::format("{} {}", command->keyword, command->summary));
    }
    return found;
}

/// The word that the cursor stands in or behind, as Get_name counts and reads words.
struct LastWord {
    int number = 1;
    std::size_t start = 0;  ///< where it begins in the line, its quote included
    std::string text;       ///< without quotes
};

LastWord Last_word(std::string_view line) {
    LastWord last;
    std::size_t at = 0;
    for (;; ++last.number) {
        at = std::min(line.find_first_not_of(' ', at), line.size());
        last.start = at;
        last.text.clear();
        bool quoted = false;
        for (; at < line.size() && (quoted || line[at] != ' '); ++at)
            if (line[at] == '"')
                quoted = !quoted;
            else
                last.text += line[at];
        if (at >= line.size()) return last;
    }
}

/// What the word of that number means behind a command; nothing when it is no file.
std::optional<FilesMeant> Files_of_command(std::string_view keyword, int word) {
    const FilesMeant project{.extensions = {".DEF"}, .without_extension = true};
    const FilesMeant commands{.extensions = {".CMD"}};
    const FilesMeant reports{.extensions = {".REP", ".TXT"}};
    if (keyword == "BAT" && word == 3) return commands;
    if (word != 2) return {};
    if (keyword == "OPE" || keyword == "BAT") return project;
    if (keyword == "RUN" || keyword == "CMD") return commands;
    const FilesMeant readable{.extensions = {".REP", ".TXT", ".GRF"}};
    if (keyword == "REA") return readable;
    if (keyword == "OUT" || keyword == "APP") return reports;
    if (keyword == "CHD") return FilesMeant{.folders_only = true};
    return {};
}

void Take_names(const std::vector<std::string>& names, Completions& found) {
    for (const std::string& name : names) {
        const auto separator = name.rfind('/', name.size() - 2);
        found.shown.push_back(separator == std::string::npos ? name : name.substr(separator + 1));
    }
    found.goes_on = names.size() == 1 && names[0].back() == '/';
}

Completions File_names(std::string_view line, const LastWord& last, const FilesMeant& meant) {
    Completions found;
    found.replaced = Letter_count(line.substr(last.start));
    std::vector<std::string> names = Names_beginning(last.text, ".", meant);
    std::erase_if(names, [](const std::string& name) { return name.find('"') < name.size(); });
    Take_names(names, found);
    const bool quoted = line.substr(last.start).find('"') != std::string_view::npos ||
                        std::any_of(names.begin(), names.end(), [](const std::string& name) {
                            return name.find(' ') < name.size();
                        });
    for (const std::string& name : names) {
        const char* closing = name.back() == '/' ? "" : "\"";
        found.words.push_back(quoted ? "\"" + name + closing : name);
    }
    return found;
}

void Add_letter(char letter, std::string_view summary, const ParsedLine& line, Completions& found) {
    if (Has_parameter(line, letter)) return;
    found.words.emplace_back(1, letter);
    found.shown.push_back(fmt::format("{} {}", letter, summary));
}

std::optional<LetterCommand> Letter_command(std::string_view keyword) {
    if (keyword == "SHO") return LetterCommand::show;
    if (keyword == "DIS") return LetterCommand::dispose;
    if (keyword == "INP") return LetterCommand::input;
    if (keyword == "SAV") return LetterCommand::save;
    return {};
}

/// Letters stand side by side, so that each is a choice of its own behind those that stand.
std::optional<Completions> Letters_of_command(const ParsedLine& line) {
    Completions found;
    if (line.Keyword == "TES") {
        for (const TestLetter& option : Test_letters)
            Add_letter(option.letter, option.summary, line, found);
        return found;
    }
    const std::optional<LetterCommand> command = Letter_command(line.Keyword);
    if (!command) return {};
    for (const char key : Letters_in_order(*command))
        if (const Letter* letter = Find_letter(*command, key); letter && letter->available)
            Add_letter(key, letter->summary, line, found);
    return found;
}

/// COMPARE and MARGINAL behind SHOW G; nothing where no word begins so.
std::optional<Completions> Words_of_letter(std::string_view text, const LastWord& last,
                                           const ParsedLine& line) {
    const std::optional<LetterCommand> command = Letter_command(line.Keyword);
    const std::string letter = Upper(Get_word(2, text));
    if (!command || last.number != 3 || last.text.empty() || letter.size() != 1) return {};
    Completions found;
    found.replaced = Letter_count(last.text);
    for (const LetterWord* word : Letter_words(*command, letter[0])) {
        const std::string spelled = Get_word(1, word->spelling);
        if (word->beginning.empty() || !Begins_with(spelled, last.text)) continue;
        found.words.push_back(spelled);
        found.shown.push_back(fmt::format("{} {}", spelled, word->summary));
    }
    if (found.words.empty()) return {};
    return found;
}

Completions Labels(const std::vector<LabelAndName>& labels, std::string_view word) {
    Completions found;
    if (word.size() == 1) return found;
    found.replaced = Letter_count(word);
    for (const LabelAndName& variable : labels) {
        if (!Begins_with(variable.name, word)) continue;
        found.words.emplace_back(1, variable.label);
        found.shown.push_back(fmt::format("{} {}", variable.label, variable.name));
    }
    return found;
}

}  // namespace

Completions Completions_of(std::string_view line_before_cursor,
                           const std::vector<LabelAndName>& labels) {
    const LastWord last = Last_word(line_before_cursor);
    if (last.number == 1) return Keywords(last.text);
    ParsedLine line;
    Parse_command(line_before_cursor, line);
    if (line.Keyword == "HEL") return Keywords(last.text);
    if (The_modes.modes.empty()) {  // the keyword may mean something else in a mode
        if (const auto meant = Files_of_command(line.Keyword, last.number))
            return File_names(line_before_cursor, last, *meant);
        if (Files_of_command(line.Keyword, 2)) return {};
        if (auto words = Words_of_letter(line_before_cursor, last, line)) return *words;
        if (auto letters = Letters_of_command(line)) return *letters;
    }
    return Labels(labels, line_before_cursor.substr(last.start));
}

Completions Completions_of_file(std::string_view line_before_cursor,
                                const std::filesystem::path& folder) {
    Completions found;
    found.replaced = Letter_count(line_before_cursor);
    found.words = Names_beginning(line_before_cursor, folder, {});
    Take_names(found.words, found);
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
    // Words may differ within an escape: letters are whole.
    const auto escape = common.rfind(OtherLetter);
    if (escape != std::string::npos && !Is_other_letter(common, escape)) common.erase(escape);
    return common;
}

}  // namespace tarven
