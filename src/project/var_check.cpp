#include <fmt/format.h>

#include "project/var_file.h"
#include "shell/fields.h"
#include "shell/words.h"

namespace tarven {

namespace {

/// The check as it goes through the file.
struct Check {
    std::vector<std::string> lines;
    std::size_t at = 0;  ///< index of the next line
    std::vector<VarFinding> findings;
    bool ended = false;
    int N = 0;
    std::string labels;
    std::vector<std::int32_t> columns;

    void Error(int number, std::string text) {
        findings.push_back({true, number, std::move(text)});
        ended = true;
    }
    void Warning(int number, std::string text) {
        findings.push_back({false, number, std::move(text)});
    }
    bool At_end() const { return at >= lines.size(); }
};

bool Is_type(const std::string& word, StringType type) {
    return String_type(word) == type;
}

/// The word of a record A that is out of shape; empty when all four are in order.
std::string Improper_word(const std::string& line) {
    const std::string label = Get_word(1, line), column = Get_word(2, line),
                      categories = Get_word(3, line), type = Get_word(4, line);
    if (label.size() != 1 || !Is_type(label, StringType::text)) return label;
    if (column.size() > 3 || !Is_type(column, StringType::integer)) return column;
    if (categories.size() > 2 || !Is_type(categories, StringType::integer)) return categories;
    if (type.size() != 1 || !Is_type(type, StringType::integer)) return type;
    return {};
}

void Check_record_B(Check& check, int dim) {
    if (check.At_end()) return check.Error(5, "incomplete file!");
    const std::string& line = check.lines[check.at++];
    const int words = Word_count(line);
    if (words < dim + 1)
        return check.Error(
            9, fmt::format("Too few parameters to define categories in {}: {} given {} required",
                           check.at, line, dim + 1));
    if (words > dim + 1) {
        check.Warning(3, "TOO MANY PARAMETERS TO DEFINE CATEGORIES!");
        check.ended = true;
        return;
    }
    double before = 0;
    for (int n = 1; n <= words; ++n) {
        double value = 0;
        if (!To_real(Get_word(n, line), value))
            return check.Error(10, "NON-NUMERIC CATEGORY PARAMETER!");
        const bool ascends = n == 1 || (n == 2 ? value >= before : value > before);
        if (!ascends) return check.Error(11, "DECREASING CUT POINTS FOR CATEGORIES!");
        before = value;
    }
}

void Check_variable(Check& check) {
    if (check.At_end()) return check.Error(5, "Incomplete file");
    const std::string line = check.lines[check.at++];
    if (Word_count(line) < 4)
        return check.Error(6, "Too few parameters to define a variable: " + line);
    const std::string improper = Improper_word(line);
    if (!improper.empty()) return check.Error(7, "INVALID VARIABLE PARAMETER! " + improper);

    const char label = Get_word(1, line)[0];
    if (check.labels.find(label) != std::string::npos)
        check.Warning(1, fmt::format("LABEL {} IS USED MORE THAN ONCE", label));
    check.labels += label;
    std::int32_t column = 0, categories = 0;
    To_integer(Get_word(2, line), column);
    To_integer(Get_word(3, line), categories);
    for (const std::int32_t other : check.columns)
        if (other == column) {
            check.Warning(2, fmt::format("VARIABLE {} IS USED MORE THAN ONCE", column));
            break;
        }
    check.columns.push_back(column);
    if (categories < 2 || categories > MaxCategories)
        return check.Error(8, "INVALID NUMBER OF CATEGORIES");
    Check_record_B(check, categories);
    if (check.ended) return;
    const std::string type = Get_word(4, line);
    if (type != "2" && type != "3")
        check.Error(12, fmt::format("IMPROPER VARIABLE TYPE: {}!", type));
}

void Check_blocks(Check& check) {
    if (check.At_end() || Word_count(check.lines[check.at]) == 0)
        return check.Error(16, "INCOMPLETE FILE. RECURSIVE STRUCTURE MISSING!");
    const std::string record = check.lines[check.at++];
    const std::string word = Get_word(1, record);
    std::int32_t levels = 0;
    if (!To_integer(word, levels))
        return check.Error(17, "IMPROPER PARAMETER DEFINING RECURSIVE BLOCKS! " + record);
    if (levels < 1 || levels > check.N)
        return check.Error(18, "IMPROPER NUMBER OF RECURSIVE BLOCKS! " + word);
    int read = 0;
    std::int32_t before = 0;
    while (read < levels) {
        if (check.At_end()) return check.Error(19, "INCOMPLETE FILE. RECURSIV BLOCKS MISSING!");
        const std::string line = check.lines[check.at++];
        const int words = Word_count(line);
        if (read + words > levels)
            check.Warning(6, "TOO MANY BLOCKS SEEMS TO BE DEFINED HERE: " + line);
        for (int n = 1; n <= words && read < levels; ++n, ++read) {
            std::int32_t end = 0;
            if (!To_integer(Get_word(n, line), end) || end < 1 || end > check.N)
                return check.Error(20, "IMPROPER BLOCK PARAMETER! " + line);
            if (end <= before) return check.Error(21, "DECREASING CUTPOINTS FOR BLOCKS! ");
            before = end;
        }
    }
}

void Check_name(Check& check, const std::string& line) {
    const int words = Word_count(line);
    if (words == 0) return check.Error(26, "EMPTY RECORD AMONG VARIABLE NAMES");
    if (words < 2) return check.Error(27, "IMPROPER RECORD WITH VARIABLE NAMES: " + line);
    const std::string label = Get_word(1, line);
    if (label.size() > 1) return check.Error(28, "IMPROPER RECORD WITH VARIABLE NAMES: " + line);
    if (check.labels.find(label[0]) == std::string::npos)
        check.Error(29, "LABEL WAS NOT RECOGNIZED: " + line);
}

void Check_comments_and_names(Check& check) {
    bool names = false;
    for (; !check.At_end() && !check.ended; ++check.at) {
        const std::string& line = check.lines[check.at];
        const std::string heading = Upper(line.substr(0, 3));
        if (heading == "VAR" || heading == "COM") {
            names = heading == "VAR";
        } else if (names) {
            Check_name(check, line);
        } else if (Word_count(line) == 0) {
            check.Warning(10, "EMPTY RECORDS AMONG COMMENTS");
        }
    }
}

}  // namespace

std::string Finding_line(const VarFinding& finding) {
    return fmt::format("{}{}: {}", finding.error ? "VAR file error" : "WARNING",
                       Field(finding.number, 3), finding.text);
}

std::vector<VarFinding> Check_VAR_file(const std::vector<std::string>& lines) {
    Check check;
    check.lines = lines;
    for (std::string& line : check.lines)
        for (char& c : line)
            if (c == '\t') c = ' ';
    while (!check.lines.empty() && Word_count(check.lines.back()) == 0) check.lines.pop_back();

    if (check.At_end()) {
        check.Error(5, "Incomplete file");
        return check.findings;
    }
    const std::string word = Get_word(1, check.lines[check.at++]);
    if (!To_integer(word, check.N))
        check.Error(1, word + " is not an integer");
    else if (check.N < 2)
        check.Error(2, "Too few variables!");
    else if (check.N > MaxVariables)
        check.Error(3, "Too many variables!");
    for (int i = 1; i <= check.N && !check.ended; ++i) Check_variable(check);
    if (!check.ended) Check_blocks(check);
    if (!check.ended) Check_comments_and_names(check);
    return check.findings;
}

}  // namespace tarven
