#include "project/var_file.h"

#include <algorithm>
#include <optional>

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
                return line.substr(first, column_ - first);
            }
            ++line_;
            column_ = 0;
        }
        return {};
    }

    bool Next(std::int32_t& value) { return To_integer(Next(), value); }
    bool Next(double& value) { return To_real(Next(), value); }

    /// Index of the first line behind the one last read from.
    std::size_t Rest() const { return std::min(line_ + 1, lines_.size()); }

  private:
    const std::vector<std::string>& lines_;
    std::size_t line_ = 0, column_ = 0;
};

std::string Read_cut_points(WordReader& words, Variable& variable) {
    const auto incomplete = [&] {
        return std::string("Incomplete file: cut points of variable ") + variable.label;
    };
    if (!words.Next(variable.vfra)) return incomplete();
    for (int c = 1; c <= variable.dim; ++c)
        if (!words.Next(variable.vtil[static_cast<std::size_t>(c)])) return incomplete();
    return {};
}

/// The text of a failure, or empty.
std::string Read_variable(WordReader& words, int number, Variable& variable) {
    const std::string label = words.Next();
    std::int32_t categories = 0, type = 0;
    if (label.empty()) return "Incomplete file: variable " + std::to_string(number);
    variable.label = label[0];
    if (!words.Next(variable.VARNO) || !words.Next(categories) || !words.Next(type))
        return std::string("Incomplete file: definition of variable ") + variable.label;
    if (variable.VARNO < 1) return std::string("Improper column of variable ") + variable.label;
    if (categories > MaxCategories) return "Too many categories";
    if (categories < 2) return "Too few categories";
    if (type != Nominal && type != Ordinal)
        return "IMPROPER VARIABLE TYPE: " + std::to_string(type) + "!";
    variable.dim = static_cast<std::uint8_t>(categories);
    variable.vtype = static_cast<std::uint8_t>(type);
    return Read_cut_points(words, variable);
}

bool Cut_points_ascend(const Variable& variable) {
    if (variable.vfra > variable.vtil[1]) return false;
    for (std::size_t c = 2; c <= variable.dim; ++c)
        if (variable.vtil[c] <= variable.vtil[c - 1]) return false;
    return true;
}

std::string Read_blocks(WordReader& words, VarFile& file) {
    std::int32_t levels = 0;
    if (!words.Next(levels)) return "INCOMPLETE FILE. RECURSIVE STRUCTURE MISSING!";
    if (levels <= 0 || levels > file.N) {
        file.Nlevels = 1;
        file.LevelEnd[1] = file.N;
    } else {
        file.Nlevels = levels;
        for (std::size_t b = 1; b <= static_cast<std::size_t>(levels); ++b) {
            if (!words.Next(file.LevelEnd[b])) return "INCOMPLETE FILE. RECURSIV BLOCKS MISSING!";
            if (file.LevelEnd[b] > file.N || file.LevelEnd[b] <= file.LevelEnd[b - 1])
                return "DECREASING CUTPOINTS FOR BLOCKS! ";
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
                             VarFile& file) {
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
        file.warnings.push_back("error reading variable names or comments - " + lines[end - 1]);
}

void Warn_of_labels_and_cut_points(VarFile& file) {
    const std::string labels = Labels_of(file.variables, file.N);
    for (std::size_t k = 0; k < labels.size(); ++k) {
        if (labels.find(labels[k]) < k)
            file.warnings.push_back(std::string("LABEL ") + labels[k] + " IS USED MORE THAN ONCE");
        if (!Cut_points_ascend(file.variables[k + 1]))
            file.warnings.push_back(std::string("DECREASING CUT POINTS FOR CATEGORIES! ") +
                                    labels[k]);
    }
}

}  // namespace

std::string Labels_of(const One_based<Variable, 85>& variables, int N) {
    std::string labels;
    for (int i = 1; i <= N; ++i) labels += variables[static_cast<std::size_t>(i)].label;
    return labels;
}

VarFile Read_VAR_file(const std::vector<std::string>& lines) {
    VarFile file;
    WordReader words(lines);
    const std::string first = words.Next();
    if (!To_integer(first, file.N)) {
        file.N = 0;
        file.error = first.empty() ? "Incomplete file" : first + " is not an integer";
        return file;
    }
    if (file.N < 2 || file.N > MaxVariables) {
        file.error = file.N < 2 ? "Too few variables!" : "Too many variables!";
        file.N = 0;
        return file;
    }
    for (int i = 1; i <= file.N && file.error.empty(); ++i)
        file.error = Read_variable(words, i, file.variables[static_cast<std::size_t>(i)]);
    if (file.error.empty()) file.error = Read_blocks(words, file);
    if (!file.error.empty()) return file;
    Warn_of_labels_and_cut_points(file);
    Read_comments_and_names(lines, words.Rest(), file);
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
