#include "shell/parsed_line.h"

#include <algorithm>

#include "shell/command_table.h"
#include "shell/text.h"
#include "shell/user.h"

namespace tarven {

void Parse_command(std::string_view text, ParsedLine& line) {
    line.CommandNumber = 0;
    line.ParameterCount = 0;
    line.NumbersCut = false;
    if (text.empty()) return;

    line.Keyword.clear();
    const auto start = text.find_first_not_of(" $");
    line.IsComment = start != std::string_view::npos && (text[start] == '!' || text[start] == '*');
    if (line.IsComment) {
        line.NumericCount = 0;
        return;
    }
    if (start != std::string_view::npos) {
        line.Keyword = Upper(text.substr(start, 3));
        const auto blank = text.find(' ', start);
        const std::string behind =
            blank == std::string_view::npos ? "" : One_byte_a_letter(text.substr(blank));
        for (const char c : behind)
            if (c != ' ' && line.ParameterCount < MaxParameters)
                line.ParameterField[line.ParameterCount++] = Upper(c);
        line.CommandNumber = static_cast<std::uint8_t>(Command_number(line.Keyword));
    }
    const Numbers numbers = Extract_numbers(text);
    line.NumericParameters = numbers.numbers;
    line.NumericCount = static_cast<std::uint8_t>(numbers.count);
    line.NumbersCut = numbers.surplus;
}

void Read_command_line(const std::string& text) {
    The_line.CommandLine = text;
    Parse_command(text, The_line);
    if (The_line.NumbersCut) ShowMessage("WARNING - too many numerical parameters");
}

bool Has_parameter(const ParsedLine& line, char letter) {
    const auto* end = line.ParameterField.data() + line.ParameterCount;
    return std::find(line.ParameterField.data(), end, letter) != end;
}

bool Has_parameter(char letter) {
    return Has_parameter(The_line, letter);
}

}  // namespace tarven
