#include "project/var_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "shell/variable_lists.h"
#include "shell/words.h"

namespace tarven {

namespace {

constexpr std::size_t StoredComments = 9;

/// Words of a file in order, blanks, tabs and line ends between them.
class WordReader {
  public:
    explicit WordReader(const std::vector<std::string>& lines) : lines_(lines) {}

    /// Empty at the end of the file.
    std::string Next() {
        while (line_ < lines_.size()) {
            const std::string& line = lines_[line_];
            const auto first = line.find_first_not_of(" \t", column_);
            if (first != std::string::npos) {
                column_ = std::min(line.find_first_of(" \t", first), line.size());
                last_ = line.substr(first, column_ - first);
                last_line_ = line_ + 1;
                return last_;
            }
            ++line_;
            column_ = 0;
        }
        last_.clear();
        return {};
    }

    bool Next(std::int32_t& value) { return To_integer(Next(), value); }
    bool Next(double& value) { return To_real(Next(), value); }

    /// Line of the word last read, from 1.
    std::size_t Line() const { return last_line_; }

    /// " (line 3: "x" where EXPECTED is expected)" of the word last read, or of the end of the
    /// file.
    std::string Where(std::string_view expected) const {
        return fmt::format(" ({}line {}: {} where {} is expected)", last_.empty() ? "behind " : "",
                           last_line_, last_.empty() ? "nothing" : '"' + last_ + '"', expected);
    }

    /// Index of the first line behind the one last read from.
    std::size_t Rest() const { return std::min(line_ + 1, lines_.size()); }

  private:
    const std::vector<std::string>& lines_;
    std::size_t line_ = 0, column_ = 0;
    std::string last_;
    std::size_t last_line_ = 0;
};

/// Lines of a variable that a warning names.
struct LinesOfVariable {
    std::size_t label = 0;
    std::size_t cut_points = 0;  ///< of the first cut point that does not ascend, 0: all do
    std::string decrease;        ///< what is wrong there
};

std::string Read_cut_points(WordReader& words, Variable& variable, LinesOfVariable& lines) {
    const auto incomplete = [&](const std::string& what) {
        return fmt::format("Incomplete file: cut points of variable {}{}", variable.label,
                           words.Where(what + ", a number,"));
    };
    if (!words.Next(variable.vfra)) return incomplete("the lower limit");
    for (std::size_t c = 1; c <= variable.dim; ++c) {
        if (!words.Next(variable.vtil[c]))
            return incomplete(fmt::format("cut point {} of {}", c, variable.dim));
        const double before = c == 1 ? variable.vfra : variable.vtil[c - 1];
        const bool ascends = c == 1 ? variable.vtil[c] >= before : variable.vtil[c] > before;
        if (ascends || lines.cut_points > 0) continue;
        lines.cut_points = words.Line();
        lines.decrease = fmt::format("cut point {} of {} is {}, {} {} is expected", c, variable.dim,
                                     variable.vtil[c], c == 1 ? "at least" : "more than", before);
    }
    return {};
}

/// The text of a failure, or empty.
std::string Read_variable(WordReader& words, int number, Variable& variable,
                          LinesOfVariable& lines) {
    const std::string label = words.Next();
    std::int32_t categories = 0, type = 0;
    if (label.empty())
        return fmt::format("Incomplete file: variable {}{}", number, words.Where("a label"));
    variable.label = label[0];
    lines.label = words.Line();
    const auto incomplete = [&](const char* what) {
        return fmt::format("Incomplete file: definition of variable {}{}", variable.label,
                           words.Where(what));
    };
    if (!words.Next(variable.VARNO)) return incomplete("a column of the DAT file");
    if (variable.VARNO < 1)
        return fmt::format("Improper column of variable {}{}", variable.label,
                           words.Where("a column of the DAT file, from 1 on,"));
    if (!words.Next(categories)) return incomplete("a number of categories");
    const std::string wrong_number =
        words.Where(fmt::format("a number of categories of 2 to {}", MaxCategories));
    if (!words.Next(type)) return incomplete("a type, 2 (nominal) or 3 (ordinal),");
    if (categories > MaxCategories) return "Too many categories" + wrong_number;
    if (categories < 2) return "Too few categories" + wrong_number;
    if (type != Nominal && type != Ordinal)
        return fmt::format("IMPROPER VARIABLE TYPE: {}!{}", type,
                           words.Where("2 (nominal) or 3 (ordinal)"));
    variable.dim = static_cast<std::uint8_t>(categories);
    variable.vtype = static_cast<std::uint8_t>(type);
    return Read_cut_points(words, variable, lines);
}

std::string Read_blocks(WordReader& words, VarFile& file) {
    std::int32_t levels = 0;
    if (!words.Next(levels))
        return "INCOMPLETE FILE. RECURSIVE STRUCTURE MISSING!" +
               words.Where("the number of recursive blocks");
    if (levels <= 0 || levels > file.N) {
        file.Nlevels = 1;
        file.LevelEnd[1] = file.N;
    } else {
        file.Nlevels = levels;
        for (std::size_t b = 1; b <= static_cast<std::size_t>(levels); ++b) {
            const bool read = words.Next(file.LevelEnd[b]);
            const std::string where = words.Where(fmt::format(
                "the last variable of block {}, {} to {},", b, file.LevelEnd[b - 1] + 1, file.N));
            if (!read) return "INCOMPLETE FILE. RECURSIV BLOCKS MISSING!" + where;
            if (file.LevelEnd[b] > file.N || file.LevelEnd[b] <= file.LevelEnd[b - 1])
                return "DECREASING CUTPOINTS FOR BLOCKS! " + where;
        }
    }
    int block = 1;
    for (int i = 1; i <= file.N; ++i) {
        while (block <= file.Nlevels && i > file.LevelEnd[static_cast<std::size_t>(block)]) ++block;
        file.variables[static_cast<std::size_t>(i)].Levnr = static_cast<std::uint8_t>(block);
    }
    return {};
}

std::string First_three(const std::string& line) {
    return Upper(line.substr(0, 3));
}

/// False when the line is no good name line.
bool Read_name(const std::string& line, VarFile& file) {
    const auto first = line.find_first_not_of(" \t");
    if (first == std::string::npos) return false;
    const auto blank = line.find_first_of(" \t", first);
    const auto next =
        blank == std::string::npos ? std::string::npos : line.find_first_not_of(" \t", blank);
    if (next == std::string::npos) return false;
    const int i = Find_label(line[first], Labels_of(file.variables, file.N));
    if (i == 0) return false;
    Variable& variable = file.variables[static_cast<std::size_t>(i)];
    variable.name = line.substr(next, MaxNameLength);
    while (variable.name.ends_with(' ')) variable.name.pop_back();
    variable.hasname = true;
    return true;
}

void Read_comments_and_names(const std::vector<std::string>& lines, std::size_t from,
                             const std::string& name, VarFile& file) {
    std::size_t end = lines.size();
    while (end > from && lines[end - 1].find_first_not_of(" \t") == std::string::npos) --end;
    bool names = false;
    bool good = true;
    for (std::size_t line_index = from; line_index < end; ++line_index) {
        const std::string& line = lines[line_index];
        if (First_three(line) == "VAR") names = true;
        if (First_three(line) == "COM") names = false;
        if (names) {
            good = Read_name(line, file);
            continue;
        }
        good = true;
        if (file.comments.size() < StoredComments)
            file.comments.push_back(line.substr(0, MaxTextLength));
        file.Ncomments = std::min(file.Ncomments + 1, MaxComments);
    }
    if (!good)
        file.warnings.push_back(
            fmt::format("error reading variable names or comments - {} ({}, line {}: a label of {} "
                        "and a name are expected)",
                        lines[end - 1], name, end, Labels_of(file.variables, file.N)));
}

/// [i-1] of `where` is of variable i.
void Warn_of_labels_and_cut_points(const std::vector<LinesOfVariable>& where,
                                   const std::string& name, VarFile& file) {
    const std::string labels = Labels_of(file.variables, file.N);
    for (std::size_t k = 0; k < labels.size(); ++k) {
        const std::size_t first = labels.find(labels[k]);
        if (first < k)
            file.warnings.push_back(
                fmt::format("LABEL {} IS USED MORE THAN ONCE ({}, line {}: as in line {})",
                            labels[k], name, where[k].label, where[first].label));
        if (where[k].cut_points > 0)
            file.warnings.push_back(
                fmt::format("DECREASING CUT POINTS FOR CATEGORIES! {} ({}, line {}: {})", labels[k],
                            name, where[k].cut_points, where[k].decrease));
    }
}

}  // namespace

std::string Labels_of(const One_based<Variable, 85>& variables, int N) {
    std::string labels;
    for (int i = 1; i <= N; ++i) labels += variables[static_cast<std::size_t>(i)].label;
    return labels;
}

VarFile Read_VAR_file(const std::vector<std::string>& lines, const std::string& name) {
    VarFile file;
    WordReader words(lines);
    const std::string first = words.Next();
    const std::string where =
        words.Where(fmt::format("the number of variables, 2 to {},", MaxVariables));
    if (!To_integer(first, file.N)) {
        file.N = 0;
        file.error = (first.empty() ? "Incomplete file" : first + " is not an integer") + where;
        return file;
    }
    if (file.N < 2 || file.N > MaxVariables) {
        file.error = (file.N < 2 ? "Too few variables!" : "Too many variables!") + where;
        file.N = 0;
        return file;
    }
    std::vector<LinesOfVariable> lines_of(static_cast<std::size_t>(file.N));
    for (int i = 1; i <= file.N && file.error.empty(); ++i)
        file.error = Read_variable(words, i, file.variables[static_cast<std::size_t>(i)],
                                   lines_of[static_cast<std::size_t>(i - 1)]);
    if (file.error.empty()) file.error = Read_blocks(words, file);
    if (!file.error.empty()) return file;
    Warn_of_labels_and_cut_points(lines_of, name, file);
    Read_comments_and_names(lines, words.Rest(), name, file);
    file.ok = true;
    return file;
}

void Take_variables(const VarFile& file, ProjectDefinition& definition) {
    definition.N = file.N;
    definition.variables = file.variables;
    definition.Nlevels = file.Nlevels;
    definition.LevelEnd = file.LevelEnd;
    definition.comments = file.comments;
    definition.Ncomments = file.Ncomments;
}

}  // namespace tarven
