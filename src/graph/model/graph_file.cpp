#include "graph/model/graph_file.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/words.h"

namespace tarven {

namespace {

constexpr int LargestStatus = 255;
constexpr std::size_t MostPairsTold = 20;
constexpr char MissingLabel = '?';

std::size_t Nth(int v) {
    return static_cast<std::size_t>(v);
}

/// Walks through the lines of a file.
class Lines {
  public:
    explicit Lines(const std::vector<std::string>& lines) : lines_(lines) {}
    bool At_end() const { return next_ >= lines_.size(); }
    /// The next line; empty at the end.
    std::string Next() { return At_end() ? std::string() : lines_[next_++]; }
    void Skip_blank() {
        while (!At_end() && Word_count(lines_[next_]) == 0) ++next_;
    }
    /// Number of the line given last, from 1.
    std::size_t Number() const { return next_; }

  private:
    const std::vector<std::string>& lines_;
    std::size_t next_ = 0;
};

/// A line of a damaged file may hold anything and be of any length.
std::string Told(const std::string& line) {
    constexpr std::size_t Longest = 120;
    return line.size() <= Longest ? line : line.substr(0, Longest) + "...";
}

GraphFile Refused(const std::string& error) {
    GraphFile file;
    file.error = error;
    return file;
}

/// The first `count` words of a line as integers; nothing when one is missing or none. One pass,
/// for a line may be as long as the file.
std::vector<int> Integers(const std::string& line, int count) {
    std::vector<int> numbers;
    std::size_t end = 0;
    while (static_cast<int>(numbers.size()) < count) {
        const std::size_t start = line.find_first_not_of(' ', end);
        if (start == std::string::npos) return {};
        end = std::min(line.find(' ', start), line.size());
        std::int32_t number = 0;
        if (!To_integer(std::string_view(line).substr(start, end - start), number)) return {};
        numbers.push_back(number);
    }
    return numbers;
}

std::string Letters_of(const std::string& line) {
    std::string letters = line;
    std::erase(letters, ' ');
    return letters;
}

/// What the first line says, 59 variables and as many blocks at most.
bool Sizes_are_possible(int nvar, int Nblocks) {
    return nvar >= 1 && nvar <= MaxVariables && Nblocks >= 0 && Nblocks <= nvar;
}

/// Cut points ascend and end at nvar at most.
bool Take_cut_points(ChainGraph& graph, const std::vector<int>& points) {
    int before = 0;
    for (std::size_t b = 0; b < points.size(); ++b) {
        if (points[b] <= before || points[b] > graph.nvar) return false;
        graph.Cutpoints[b + 1] = before = points[b];
    }
    return true;
}

/// The line of cut points, when there is one; false, with the line, when it does not fit.
bool Read_blocks(Lines& lines, ChainGraph& graph, std::string& line, bool strict) {
    if (graph.Nblocks == 0) {
        graph.Nblocks = 1;
        graph.Cutpoints[1] = graph.nvar;
        return true;
    }
    line = lines.Next();
    const std::vector<int> points = Integers(line, graph.Nblocks);
    if (strict && Word_count(line) != graph.Nblocks) return false;
    return !points.empty() && Take_cut_points(graph, points);
}

/// The rows of the matrix; the text of what does not fit, or empty.
std::string Read_matrix(Lines& lines, ChainGraph& graph, const std::string& name, bool strict) {
    for (int i = 1; i <= graph.nvar; ++i) {
        if (lines.At_end())
            return fmt::format("{} is incomplete: the status of {} is missing", name,
                               graph.Labels[Nth(i - 1)]);
        const std::string line = lines.Next();
        const std::vector<int> row = Integers(line, graph.nvar);
        const bool surplus = strict && Word_count(line) > graph.nvar;
        const bool possible = std::all_of(row.begin(), row.end(), [](int status) {
            return status >= 0 && status <= LargestStatus;
        });
        if (row.empty() || surplus || !possible)
            return fmt::format("{}, line {}: {} status values from 0 to {} are needed, not: {}",
                               name, lines.Number(), graph.nvar, LargestStatus, Told(line));
        for (int j = 1; j <= graph.nvar; ++j)
            graph.Status[Nth(i)][Nth(j)] = static_cast<std::uint8_t>(row[Nth(j - 1)]);
        graph.Status[Nth(i)][Nth(i)] = Fixed;
    }
    return "";
}

/// The pairs whose two statuses differ: "AB AC"; empty for a symmetric matrix.
std::string Asymmetric_pairs(const ChainGraph& graph) {
    std::string pairs;
    std::size_t count = 0;
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = i + 1; j <= graph.nvar; ++j)
            if (graph.StatusOf(i, j) != graph.StatusOf(j, i) && ++count <= MostPairsTold)
                pairs += fmt::format(" {}{}", graph.Labels[Nth(i - 1)], graph.Labels[Nth(j - 1)]);
    if (count > MostPairsTold) pairs += fmt::format(" and {} more", count - MostPairsTold);
    return pairs;
}

/// "A 100 400" of the variable whose turn it is.
bool Read_place(const std::string& line, ChainGraph& graph, int v) {
    const char label = graph.Labels[Nth(v - 1)];
    if (label != MissingLabel && Get_word(1, line) != std::string(1, label)) return false;
    std::int32_t x = 0, y = 0;
    if (!To_integer(Get_word(2, line), x) || !To_integer(Get_word(3, line), y)) return false;
    graph.coordinates[Nth(v)] = {x, y};
    return true;
}

/// The lines behind COORDINATES. A failure is told and leaves the graph without.
std::string Read_coordinates(Lines& lines, ChainGraph& graph, const char* at_early_end) {
    std::string failure;
    for (int v = 1; v <= graph.nvar && failure.empty(); ++v) {
        if (lines.At_end()) {
            failure = at_early_end;
            break;
        }
        const std::string line = lines.Next();
        if (!Read_place(line, graph, v)) failure = "error in coordinates: " + Told(line);
    }
    graph.coordinates_ready = failure.empty();
    if (!failure.empty()) graph.coordinates = {};
    return failure;
}

bool Begins_section(const std::string& line, std::string_view beginning) {
    return Upper(Get_word(1, line)).starts_with(beginning);
}

// The strict reader.

std::string Refusal_of_first_line(const std::string& line) {
    if (Word_count(line) != 2)
        return "Invalid input of number of variables and levels - nsubstrings <>2: " + Told(line);
    for (int k = 1; k <= 2; ++k) {
        const std::string word = Get_word(k, line);
        std::int32_t value = 0;
        if (To_integer(word, value)) continue;
        const Numbers found = Extract_numbers(word);
        return fmt::format(
            "Invalid input of number of variables and levels - substring {}: {} <> "
            "{}",
            k, Told(word), found.count > 0 ? found.numbers[0] : 0);
    }
    const std::vector<int> sizes = Integers(line, 2);
    if (Sizes_are_possible(sizes[0], sizes[1])) return "";
    return "Invalid input of number of variables and levels: " + Told(line);
}

std::string Refusal_of_labels(const std::string& line, int nvar) {
    const std::string labels = Letters_of(line);
    if (static_cast<int>(labels.size()) < nvar)
        return "Error in variable labels - too few labels: " + Told(line);
    if (static_cast<int>(labels.size()) > nvar) return "Error in variable labels: " + Told(line);
    for (std::size_t k = 0; k < labels.size(); ++k)
        if (labels.find(labels[k], k + 1) != std::string::npos)
            return "Variable labels appear more than once: " + Told(line);
    return "";
}

/// Statuses that mean nothing become edges; true when there were any.
bool Convert_improper(ChainGraph& graph) {
    bool converted = false;
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = 1; j <= graph.nvar; ++j) {
            std::uint8_t& status = graph.Status[Nth(i)][Nth(j)];
            if (status <= LocallyDependent) continue;
            status = Free;
            converted = true;
        }
    return converted;
}

/// The lines behind VARIABLES: a label and a name, in any order.
void Read_names(Lines& lines, GraphFile& file) {
    file.names.assign(file.graph.Labels.size(), "");
    for (int k = 1; k <= file.graph.nvar; ++k) {
        if (lines.At_end()) {
            file.warnings.push_back("Missing declaration of variable names: " +
                                    fmt::format("{} of {}", k - 1, file.graph.nvar));
            return;
        }
        const std::string line = lines.Next();
        const std::string label = Get_word(1, line);
        const auto place = label.size() == 1 ? file.graph.Labels.find(label) : std::string::npos;
        if (place == std::string::npos || Word_count(line) < 2) {
            file.warnings.push_back("error in variable names: " + Told(line));
            return;
        }
        file.names[place] = Get_word(2, line);
    }
}

/// What stands behind the matrix, in either order.
void Read_sections_strictly(Lines& lines, GraphFile& file) {
    bool coordinates = false, names = false;
    for (lines.Skip_blank(); !lines.At_end(); lines.Skip_blank()) {
        const std::string line = lines.Next();
        if (!coordinates && Begins_section(line, "COO")) {
            coordinates = true;
            const std::string failure =
                Read_coordinates(lines, file.graph, "Incomplete set of coordinates");
            if (!failure.empty()) file.warnings.push_back(failure);
        } else if (!names && Begins_section(line, "VAR")) {
            names = true;
            Read_names(lines, file);
        } else {
            break;  // what follows a damaged section was told with it
        }
    }
    if (coordinates && !file.graph.coordinates_ready)
        file.warnings.emplace_back("coordinates missing for at least one variable");
    if (!names) file.warnings.emplace_back("Variable names are not included on the GRF file");
}

}  // namespace

GraphFile Read_graph_file(const std::vector<std::string>& all, const std::string& name) {
    Lines lines(all);
    if (std::all_of(all.begin(), all.end(), [](const auto& l) { return Word_count(l) == 0; }))
        return Refused(name + " is empty");
    GraphFile file;
    ChainGraph& graph = file.graph;
    std::string line = lines.Next();
    const std::vector<int> sizes = Integers(line, 2);
    if (sizes.empty() || !Sizes_are_possible(sizes[0], sizes[1]))
        return Refused(fmt::format("{}: Invalid input of number of variables and levels: {}", name,
                                   Told(line)));
    graph.nvar = sizes[0];
    graph.Nblocks = sizes[1];
    if (!Read_blocks(lines, graph, line, false))
        return Refused(
            fmt::format("{}: Incorrect specification of recursive levels: {}", name, Told(line)));
    Number_blocks(graph);

    line = lines.Next();
    graph.Labels = Letters_of(line).substr(0, Nth(graph.nvar));
    if (graph.Labels.size() < Nth(graph.nvar)) {
        file.warnings.push_back(fmt::format("Too few labels on GRF file: {}   {} labels found",
                                            Told(line), graph.Labels.size()));
        graph.Labels.resize(Nth(graph.nvar), MissingLabel);
    }
    if (const std::string failure = Read_matrix(lines, graph, name, false); !failure.empty())
        return Refused(failure);
    if (const std::string pairs = Asymmetric_pairs(graph); !pairs.empty())
        file.warnings.push_back("WARNING - Non-symmetrical status:" + pairs);
    lines.Skip_blank();
    if (Begins_section(lines.Next(), "COO")) {
        const std::string failure = Read_coordinates(lines, graph, "Incomplete coordinates");
        if (!failure.empty()) file.warnings.push_back(failure);
    }
    Derive_adjacency(graph);
    file.ok = true;
    return file;
}

GraphFile Read_graph_file_strictly(const std::vector<std::string>& all, const std::string& name) {
    if (all.empty()) return Refused(name + " is empty");
    Lines lines(all);
    GraphFile file;
    ChainGraph& graph = file.graph;
    std::string line = lines.Next();
    if (const std::string refusal = Refusal_of_first_line(line); !refusal.empty())
        return Refused(refusal);
    const std::vector<int> sizes = Integers(line, 2);
    graph.nvar = sizes[0];
    graph.Nblocks = sizes[1];
    if (!Read_blocks(lines, graph, line, true))
        return Refused("Incorrect specification of recursive levels: " + Told(line));
    Number_blocks(graph);
    line = lines.Next();
    if (const std::string refusal = Refusal_of_labels(line, graph.nvar); !refusal.empty())
        return Refused(refusal);
    graph.Labels = Letters_of(line);
    if (const std::string failure = Read_matrix(lines, graph, name, true); !failure.empty())
        return Refused(failure);
    if (const std::string pairs = Asymmetric_pairs(graph); !pairs.empty())
        return Refused("Asymmetrical status matrix:" + pairs);
    if (Convert_improper(graph))
        file.warnings.emplace_back("Warning: improper status values have been converted");
    Read_sections_strictly(lines, file);
    Derive_adjacency(graph);
    file.ok = true;
    return file;
}

std::vector<std::string> GRF_lines(const ChainGraph& graph, const std::vector<std::string>& names) {
    const auto joined = [](auto&& numbers) { return fmt::format("{}", fmt::join(numbers, " ")); };
    std::vector<std::string> lines = {fmt::format("{} {}", graph.nvar, graph.Nblocks)};
    std::vector<int> row;
    for (int b = 1; b <= graph.Nblocks; ++b) row.push_back(graph.Cutpoints[Nth(b)]);
    lines.push_back(joined(row));
    std::string labels;
    for (const char label : graph.Labels) labels += fmt::format("{} ", label);
    lines.push_back(labels);
    for (int i = 1; i <= graph.nvar; ++i) {
        row.clear();
        for (int j = 1; j <= graph.nvar; ++j) row.push_back(graph.StatusOf(i, j));
        lines.push_back(joined(row));
    }
    if (graph.coordinates_ready) {
        lines.emplace_back("COORDINATES");
        for (int v = 1; v <= graph.nvar; ++v)
            lines.push_back(fmt::format("{} {} {}", graph.Labels[Nth(v - 1)],
                                        graph.coordinates[Nth(v)].x, graph.coordinates[Nth(v)].y));
    }
    lines.emplace_back("VARIABLES");
    for (int v = 1; v <= graph.nvar; ++v) {
        const std::string& name = names[Nth(v - 1)];
        lines.push_back(fmt::format("{} {}", graph.Labels[Nth(v - 1)],
                                    name.empty() ? fmt::format("var{}", v) : name));
    }
    return lines;
}

}  // namespace tarven
