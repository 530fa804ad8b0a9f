#include <fmt/format.h>

#include <algorithm>
#include <string_view>

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
    std::string name;
    std::string labels;
    std::vector<std::int32_t> columns;
    std::vector<std::size_t> lines_of;  ///< of record A of each variable, from 1

    /// The line taken last, and what was expected there.
    std::string Place(std::string_view expected) const { return Place_at(at, expected); }
    std::string Place_at(std::size_t line, std::string_view expected) const {
        return fmt::format("{}, line {}: {}", name, line, expected);
    }
    /// Behind the last line.
    std::string Place_of_end(std::string_view expected) const {
        return fmt::format("{}, behind line {}: {} expected", name, lines.size(), expected);
    }
    void Error(int number, std::string text, std::string place) {
        findings.push_back({true, number, std::move(text), std::move(place)});
        ended = true;
    }
    void Warning(int number, std::string text, std::string place) {
        findings.push_back({false, number, std::move(text), std::move(place)});
    }
    bool At_end() const { return at >= lines.size(); }
};

bool Is_type(const std::string& word, StringType type) {
    return String_type(word) == type;
}

/// The word of a record A that is out of shape, and what it should be; empty when all four are in
/// order.
struct ImproperWord {
    std::string word, expected;
};

ImproperWord Improper_word(const std::string& line) {
    const std::string label = Get_word(1, line), column = Get_word(2, line),
                      categories = Get_word(3, line), type = Get_word(4, line);
    if (label.size() != 1 || !Is_type(label, StringType::text))
        return {label, "a label of one character that is no digit is expected"};
    if (column.size() > 3 || !Is_type(column, StringType::integer))
        return {column, "a column of the DAT file, at most 3 digits, is expected"};
    if (categories.size() > 2 || !Is_type(categories, StringType::integer))
        return {categories, "a number of categories, at most 2 digits, is expected"};
    if (type.size() != 1 || !Is_type(type, StringType::integer))
        return {type, "a type, 2 (nominal) or 3 (ordinal), is expected"};
    return {};
}

void Check_record_B(Check& check, int dim) {
    if (check.At_end())
        return check.Error(5, "incomplete file!",
                           check.Place_of_end(fmt::format("a lower limit and {} cut points", dim)));
    const std::string& line = check.lines[check.at++];
    const int words = Word_count(line);
    if (words < dim + 1)
        return check.Error(
            9,
            fmt::format("Too few parameters to define categories in {}: {} given {} required",
                        check.at, line, dim + 1),
            check.Place(fmt::format("a lower limit and {} cut points are expected", dim)));
    if (words > dim + 1) {
        check.Warning(3, "TOO MANY PARAMETERS TO DEFINE CATEGORIES!",
                      check.Place(fmt::format("{} numbers, a lower limit and {} cut points are "
                                              "expected",
                                              words, dim)));
        check.ended = true;
        return;
    }
    double before = 0;
    for (int n = 1; n <= words; ++n) {
        double value = 0;
        if (!To_real(Get_word(n, line), value))
            return check.Error(
                10, "NON-NUMERIC CATEGORY PARAMETER!",
                check.Place(fmt::format("\"{}\", a number is expected", Get_word(n, line))));
        const bool ascends = n == 1 || (n == 2 ? value >= before : value > before);
        if (!ascends)
            return check.Error(
                11, "DECREASING CUT POINTS FOR CATEGORIES!",
                check.Place(fmt::format("cut point {} of {} is {}, {} {} is expected", n - 1, dim,
                                        value, n == 2 ? "at least" : "more than", before)));
        before = value;
    }
}

void Check_variable(Check& check) {
    if (check.At_end())
        return check.Error(
            5, "Incomplete file",
            check.Place_of_end(fmt::format("variable {} of {}", check.labels.size() + 1, check.N)));
    const std::string line = check.lines[check.at++];
    if (Word_count(line) < 4)
        return check.Error(6, "Too few parameters to define a variable: " + line,
                           check.Place("label, column, categories and type are expected"));
    const ImproperWord improper = Improper_word(line);
    if (!improper.word.empty())
        return check.Error(7, "INVALID VARIABLE PARAMETER! " + improper.word,
                           check.Place(improper.expected));

    const char label = Get_word(1, line)[0];
    const auto as_in = [&](std::size_t variable) {
        return check.Place(fmt::format("as in line {}", check.lines_of[variable]));
    };
    const auto same_label = check.labels.find(label);
    if (same_label != std::string::npos)
        check.Warning(1, fmt::format("LABEL {} IS USED MORE THAN ONCE", label), as_in(same_label));
    check.labels += label;
    std::int32_t column = 0, categories = 0;
    To_integer(Get_word(2, line), column);
    To_integer(Get_word(3, line), categories);
    const auto same_column = std::find(check.columns.begin(), check.columns.end(), column);
    if (same_column != check.columns.end())
        check.Warning(2, fmt::format("VARIABLE {} IS USED MORE THAN ONCE", column),
                      as_in(static_cast<std::size_t>(same_column - check.columns.begin())));
    check.columns.push_back(column);
    check.lines_of.push_back(check.at);
    if (categories < 2 || categories > MaxCategories)
        return check.Error(
            8, "INVALID NUMBER OF CATEGORIES",
            check.Place(fmt::format("{}, 2 to {} are expected", categories, MaxCategories)));
    Check_record_B(check, categories);
    if (check.ended) return;
    const std::string type = Get_word(4, line);
    if (type != "2" && type != "3")
        check.Error(
            12, fmt::format("IMPROPER VARIABLE TYPE: {}!", type),
            check.Place_at(check.lines_of.back(), "2 (nominal) or 3 (ordinal) is expected"));
}

void Check_blocks(Check& check) {
    if (check.At_end() || Word_count(check.lines[check.at]) == 0)
        return check.Error(16, "INCOMPLETE FILE. RECURSIVE STRUCTURE MISSING!",
                           check.Place_at(check.at + 1, "a number of blocks is expected"));
    const std::string number = fmt::format("a number of blocks, 1 to {}, is expected", check.N);
    const std::string record = check.lines[check.at++];
    const std::string word = Get_word(1, record);
    std::int32_t levels = 0;
    if (!To_integer(word, levels))
        return check.Error(17, "IMPROPER PARAMETER DEFINING RECURSIVE BLOCKS! " + record,
                           check.Place(number));
    if (levels < 1 || levels > check.N)
        return check.Error(18, "IMPROPER NUMBER OF RECURSIVE BLOCKS! " + word, check.Place(number));
    int read = 0;
    std::int32_t before = 0;
    while (read < levels) {
        if (check.At_end())
            return check.Error(19, "INCOMPLETE FILE. RECURSIV BLOCKS MISSING!",
                               check.Place_of_end(fmt::format("the last variable of block {} of {}",
                                                              read + 1, levels)));
        const std::string line = check.lines[check.at++];
        const int words = Word_count(line);
        if (read + words > levels)
            check.Warning(6, "TOO MANY BLOCKS SEEMS TO BE DEFINED HERE: " + line,
                          check.Place(fmt::format("{} block ends in all are expected", levels)));
        for (int n = 1; n <= words && read < levels; ++n, ++read) {
            std::int32_t end = 0;
            if (!To_integer(Get_word(n, line), end) || end < 1 || end > check.N)
                return check.Error(20, "IMPROPER BLOCK PARAMETER! " + line,
                                   check.Place(fmt::format("\"{}\", a variable from 1 to {} is "
                                                           "expected",
                                                           Get_word(n, line), check.N)));
            if (end <= before)
                return check.Error(
                    21, "DECREASING CUTPOINTS FOR BLOCKS! ",
                    check.Place(fmt::format("{}, more than {} is expected", end, before)));
            before = end;
        }
    }
}

void Check_name(Check& check, const std::string& line) {
    const int words = Word_count(line);
    const std::string place = check.Place_at(check.at + 1, "a label and a name are expected");
    if (words == 0) return check.Error(26, "EMPTY RECORD AMONG VARIABLE NAMES", place);
    if (words < 2) return check.Error(27, "IMPROPER RECORD WITH VARIABLE NAMES: " + line, place);
    const std::string label = Get_word(1, line);
    if (label.size() > 1)
        return check.Error(28, "IMPROPER RECORD WITH VARIABLE NAMES: " + line, place);
    if (check.labels.find(label[0]) == std::string::npos)
        check.Error(
            29, "LABEL WAS NOT RECOGNIZED: " + line,
            check.Place_at(check.at + 1, fmt::format("one of {} is expected", check.labels)));
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
            check.Warning(10, "EMPTY RECORDS AMONG COMMENTS",
                          check.Place_at(check.at + 1, "a comment is expected"));
        }
    }
}

}  // namespace

std::string Finding_line(const VarFinding& finding) {
    return fmt::format("{}{}: {} ({})", finding.error ? "VAR file error" : "WARNING",
                       Field(finding.number, 3), finding.text, finding.place);
}

std::vector<VarFinding> Check_VAR_file(const std::vector<std::string>& lines,
                                       const std::string& name) {
    Check check;
    check.name = name;
    check.lines = lines;
    for (std::string& line : check.lines)
        for (char& c : line)
            if (c == '\t') c = ' ';
    while (!check.lines.empty() && Word_count(check.lines.back()) == 0) check.lines.pop_back();

    const std::string number =
        fmt::format("the number of variables, 2 to {}, is expected", MaxVariables);
    if (check.At_end()) {
        check.Error(5, "Incomplete file", check.Place_at(1, number));
        return check.findings;
    }
    const std::string word = Get_word(1, check.lines[check.at++]);
    if (!To_integer(word, check.N))
        check.Error(1, word + " is not an integer", check.Place(number));
    else if (check.N < 2)
        check.Error(2, "Too few variables!", check.Place(number));
    else if (check.N > MaxVariables)
        check.Error(3, "Too many variables!", check.Place(number));
    for (int i = 1; i <= check.N && !check.ended; ++i) Check_variable(check);
    if (!check.ended) Check_blocks(check);
    if (!check.ended) Check_comments_and_names(check);
    return check.findings;
}

}  // namespace tarven
