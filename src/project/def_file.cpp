#include "project/def_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "shell/limits.h"
#include "shell/numbers.h"
#include "shell/words.h"

namespace tarven {

namespace {

enum class Section : std::uint8_t { conditions, selections, parameters, title, files };

/// Tabs separate words as blanks do in files that people edit.
std::string Line_for_words(const std::string& line) {
    std::string result = Upper(line);
    std::replace(result.begin(), result.end(), '\t', ' ');
    return result;
}

bool Is_keyword_line(const std::string& line, Section& section) {
    const std::string word = Get_word(1, line);
    const auto holds = [&](std::string_view part) { return word.find(part) != std::string::npos; };
    if (holds("SEL"))
        section = Section::selections;
    else if (holds("PAR"))
        section = Section::parameters;
    else if (holds("TIT"))
        section = Section::title;
    else if (holds("FIL"))
        section = Section::files;
    else
        return false;
    return true;
}

/// A file that is none of these would bury its first messages under thousands.
void Cut_messages(std::vector<std::string>& messages) {
    constexpr std::size_t most = 20;
    if (messages.size() <= most) return;
    const std::size_t left = messages.size() - most;
    messages.resize(most);
    messages.push_back(fmt::format("and {} more lines with errors", left));
}

/// Where a line stands and what was expected of it, behind the line itself.
struct PlaceInFile {
    const std::string& file;
    std::size_t line_index;

    std::string operator()(std::string_view expected) const {
        return fmt::format(" ({}, line {}: {})", file, line_index + 1, expected);
    }
};

void Read_condition(const std::string& line, const PlaceInFile& place, DefFile& def) {
    RangeCondition condition;
    const bool read = To_integer(Get_word(1, line), condition.column) &&
                      To_real(Get_word(2, line), condition.lower) &&
                      To_real(Get_word(3, line), condition.upper);
    std::string fault;
    if (!read)
        fault = "a column, a lower and an upper limit are expected, or a keyword";
    else if (condition.column < 1 || condition.column > def.NTAL)
        fault = fmt::format("column {}, 1 to {} are expected", condition.column, def.NTAL);
    else if (condition.lower > condition.upper)
        fault = fmt::format("the lower limit {} is above the upper limit {}", condition.lower,
                            condition.upper);
    if (!fault.empty()) def.messages.push_back("DEFfile error: " + line + place(fault));
    if (read) def.conditions.push_back(condition);
}

void Read_selection(const std::string& line, const PlaceInFile& place, DefFile& def) {
    const int words = Word_count(line);
    if (words == 0) return;
    ValueSelection selection;
    bool good = To_integer(Get_word(1, line), selection.column) && selection.column >= 1 &&
                words >= 2 && static_cast<int>(def.selections.size()) < MaxSelections;
    for (int n = 2; good && n <= words; ++n) {
        std::int32_t value = 0;
        good = To_integer(Get_word(n, line), value) && n - 1 <= MaxSelections;
        selection.values.push_back(value);
    }
    if (good)
        def.selections.push_back(selection);
    else
        def.messages.push_back(
            "This string does not define values to be selected: " + line +
            place(fmt::format("a column and 1 to {0} whole numbers are expected, on at most {0} "
                              "lines",
                              MaxSelections)));
}

void Read_file_name(const std::string& line, DefFile& def) {
    const std::string letter = Get_word(1, line);
    const std::string name = Get_word(2, line);
    if (!Is_plain_file_name(name)) return;
    if (letter == "V") def.var_name = name;
    if (letter == "G") def.grf_name = name;
    if (letter == "D") def.dat_name = name;
}

}  // namespace

bool Is_plain_file_name(const std::string& name) {
    const auto point = name.find('.');
    const std::string stem = name.substr(0, point);
    const std::string extension = point == std::string::npos ? "" : name.substr(point + 1);
    const auto plain = [](const std::string& part) {
        return std::all_of(part.begin(), part.end(), [](char c) {
            return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                   c == '-' || c == '_';
        });
    };
    return !stem.empty() && name.size() <= MaxTextLength && plain(stem) && plain(extension) &&
           extension.size() <= 3;
}

DefFile Read_DEF_file(const std::vector<std::string>& file, const std::string& name) {
    DefFile def;
    std::vector<std::string> lines;
    lines.reserve(file.size());
    for (const std::string& line : file) lines.push_back(Line_for_words(line));
    while (!lines.empty() && Word_count(lines.back()) == 0) lines.pop_back();
    const std::string length = fmt::format(
        "the number of values in a record of the DAT file, 1 to {}, is expected", MaxRecordLength);
    if (lines.empty()) {
        def.messages.push_back("DEFfile error: the file is empty" + PlaceInFile{name, 0}(length));
        return def;
    }
    if (!To_integer(Get_word(1, lines[0]), def.NTAL) || def.NTAL < 1)
        def.messages.push_back("DEFfile error: " + lines[0] + PlaceInFile{name, 0}(length));

    Section section = Section::conditions;
    for (std::size_t line_index = 1; line_index < lines.size(); ++line_index) {
        const std::string& line = lines[line_index];
        const PlaceInFile place{name, line_index};
        if (section == Section::title && def.title.empty()) {
            // Whatever the line holds, a keyword included.
            def.title = line.substr(0, MaxTextLength);
            section = Section::parameters;
            continue;
        }
        if (Is_keyword_line(line, section)) {
            if (section == Section::title) def.title.clear();
            if (section == Section::selections || section == Section::parameters)
                def.definition_parameters = true;
            continue;
        }
        switch (section) {
            case Section::conditions:
                Read_condition(line, place, def);
                break;
            case Section::selections:
                Read_selection(line, place, def);
                break;
            case Section::files:
                Read_file_name(line, def);
                break;
            default:
                break;
        }
    }
    Cut_messages(def.messages);
    return def;
}

}  // namespace tarven
