#include "graph/model/graph_file.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/words.h"

namespace tarven {

namespace {

constexpr int LargestStatus = 255;
constexpr std::size_t MostPairsTold = 20;
constexpr char MissingLabel = '?';

constexpr const char* Coordinates = "COO";
constexpr const char* Names = "VAR";

bool Begins_section(const std::string& line, std::string_view beginning) {
    return Upper(Get_word(1, line)).starts_with(beginning);
}

bool Begins_section(const std::string& line) {
    return Begins_section(line, Coordinates) || Begins_section(line, Names);
}

/// Walks through the lines of a file.
class Lines {
  public:
    explicit Lines(const std::vector<std::string>& lines) : lines_(lines) {}
    bool At_end() const { return next_ >= lines_.size(); }
    /// The next line; empty at the end.
    std::string Next() { return At_end() ? std::string() : lines_[next_++]; }
    /// The line that Next would give.
    const std::string& Peek() const { return lines_[next_]; }
    void Skip_blank() {
        while (!At_end() && Word_count(lines_[next_]) == 0) ++next_;
    }
    /// Goes to the line that begins the next section of the file, or to its end.
    void Skip_to_section() {
        while (!At_end() && !Begins_section(lines_[next_])) ++next_;
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

/// What the tolerant reader passes over, told in one warning a file.
class PassedOver {
  public:
    void Note(std::size_t line_number, const std::string& line) {
        if (lines_++ == 0) first_ = fmt::format("line {}: {}", line_number, Told(line));
    }
    void Note_surplus(std::size_t line_number, const std::string& line, int words_read) {
        if (Word_count(line) > words_read) Note(line_number, line);
    }
    /// The warning; empty when everything was read.
    std::string Warning(const std::string& name) const {
        if (lines_ == 0) return "";
        const std::string others = lines_ == 1 ? "" : fmt::format(" (and {} more)", lines_ - 1);
        return fmt::format("{} holds what was passed over, {}{}", name, first_, others);
    }

  private:
    std::string first_;
    std::size_t lines_ = 0;
};

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

/// How a file is read: strictly, where surplus words are refused, or with the note of them.
struct Reading {
    bool strict = false;
    PassedOver passed_over;
};

/// The line of cut points, when there is one; false, with the line, when it does not fit.
bool Read_blocks(Lines& lines, ChainGraph& graph, std::string& line, Reading& reading) {
    if (graph.Nblocks == 0) {
        graph.Nblocks = 1;
        graph.Cutpoints[1] = graph.nvar;
        return true;
    }
    line = lines.Next();
    const std::vector<int> points = Integers(line, graph.Nblocks);
    if (reading.strict && Word_count(line) != graph.Nblocks) return false;
    reading.passed_over.Note_surplus(lines.Number(), line, graph.Nblocks);
    return !points.empty() && Take_cut_points(graph, points);
}

/// The rows of the matrix; the text of what does not fit, or empty.
std::string Read_matrix(Lines& lines, ChainGraph& graph, const std::string& name,
                        Reading& reading) {
    for (int i = 1; i <= graph.nvar; ++i) {
        if (lines.At_end())
            return fmt::format("{} is incomplete: the status of {} is missing", name,
                               graph.Labels[At(i - 1)]);
        const std::string line = lines.Next();
        const std::vector<int> row = Integers(line, graph.nvar);
        const bool surplus = reading.strict && Word_count(line) > graph.nvar;
        const bool possible = std::all_of(row.begin(), row.end(), [](int status) {
            return status >= 0 && status <= LargestStatus;
        });
        if (row.empty() || surplus || !possible)
            return fmt::format("{}, line {}: {} status values from 0 to {} are needed, not: {}",
                               name, lines.Number(), graph.nvar, LargestStatus, Told(line));
        reading.passed_over.Note_surplus(lines.Number(), line, graph.nvar);
        for (int j = 1; j <= graph.nvar; ++j)
            graph.Status[At(i)][At(j)] = static_cast<std::uint8_t>(row[At(j - 1)]);
        graph.Status[At(i)][At(i)] = Fixed;
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
                pairs += fmt::format(" {}{}", graph.Labels[At(i - 1)], graph.Labels[At(j - 1)]);
    if (count > MostPairsTold) pairs += fmt::format(" and {} more", count - MostPairsTold);
    return pairs;
}

/// "A 100 400" of the variable whose turn it is.
bool Read_place(const std::string& line, ChainGraph& graph, int v) {
    const char label = graph.Labels[At(v - 1)];
    if (label != MissingLabel && Get_word(1, line) != std::string(1, label)) return false;
    std::int32_t x = 0, y = 0;
    if (!To_integer(Get_word(2, line), x) || !To_integer(Get_word(3, line), y)) return false;
    graph.coordinates[At(v)] = {x, y};
    return true;
}

/// The lines behind COORDINATES, up to the next section when one does not fit. A failure is a
/// warning and leaves the graph without.
void Read_coordinates(Lines& lines, GraphFile& file, Reading& reading) {
    constexpr int WordsOfPlace = 3;
    ChainGraph& graph = file.graph;
    std::string failure;
    for (int v = 1; v <= graph.nvar && failure.empty(); ++v) {
        if (lines.At_end() || Begins_section(lines.Peek())) {
            failure = reading.strict ? "Incomplete set of coordinates" : "Incomplete coordinates";
            break;
        }
        const std::string line = lines.Next();
        const bool surplus = reading.strict && Word_count(line) > WordsOfPlace;
        if (surplus || !Read_place(line, graph, v)) failure = "error in coordinates: " + Told(line);
        reading.passed_over.Note_surplus(lines.Number(), line, WordsOfPlace);
    }
    graph.coordinates_ready = failure.empty();
    if (failure.empty()) return;
    graph.coordinates = {};
    file.warnings.push_back(failure);
    lines.Skip_to_section();
}

/// What stands behind the first word of a line, without blanks at its ends: names may hold some.
std::string Behind_first_word(const std::string& line) {
    const std::size_t word = line.find_first_not_of(' ');
    const std::size_t blank = line.find(' ', word);
    const std::size_t start = line.find_first_not_of(' ', blank);
    if (start == std::string::npos) return "";
    return line.substr(start, line.find_last_not_of(' ') + 1 - start);
}

/// The lines behind VARIABLES: a label and a name, in any order; up to the next section when one
/// does not fit, which is a warning.
void Read_names(Lines& lines, GraphFile& file) {
    const std::string& labels = file.graph.Labels;
    file.names.assign(labels.size(), "");
    for (int k = 1; k <= file.graph.nvar; ++k) {
        if (lines.At_end() || Begins_section(lines.Peek())) {
            file.warnings.push_back("Missing declaration of variable names: " +
                                    fmt::format("{} of {}", k - 1, file.graph.nvar));
            return;
        }
        const std::string line = lines.Next();
        const std::string label = Get_word(1, line);
        auto place = label.size() == 1 ? labels.find(label) : std::string::npos;
        if (place == std::string::npos && labels[At(k - 1)] == MissingLabel) place = At(k - 1);
        const std::string name = Behind_first_word(line);
        if (place == std::string::npos || name.empty()) {
            file.warnings.push_back("error in variable names: " + Told(line));
            return lines.Skip_to_section();
        }
        file.names[place] = name;
    }
}

/// What stands behind the matrix, in either order. Returns what the strict reader refuses, a line
/// that belongs to no section; the tolerant one passes it over.
std::string Read_sections(Lines& lines, GraphFile& file, const std::string& name,
                          Reading& reading) {
    bool coordinates = false, names = false;
    for (lines.Skip_blank(); !lines.At_end(); lines.Skip_blank()) {
        const std::string line = lines.Next();
        if (!coordinates && Begins_section(line, Coordinates)) {
            coordinates = true;
            Read_coordinates(lines, file, reading);
        } else if (!names && Begins_section(line, Names)) {
            names = true;
            Read_names(lines, file);
        } else if (reading.strict) {
            return fmt::format("{}, line {}: COORDINATES or VARIABLES may follow here, not: {}",
                               name, lines.Number(), Told(line));
        } else {
            reading.passed_over.Note(lines.Number(), line);
        }
    }
    if (!reading.strict) return "";
    if (coordinates && !file.graph.coordinates_ready)
        file.warnings.emplace_back("coordinates missing for at least one variable");
    if (!names) file.warnings.emplace_back("Variable names are not included on the GRF file");
    return "";
}

// The strict reader.

/// The first number in a word that is none itself, for a message.
std::string Number_in(const std::string& word) {
    const std::size_t first = word.find_first_of("0123456789");
    if (first == std::string::npos) return "0";
    const std::size_t behind = word.find_first_not_of("0123456789", first);
    std::int32_t number = 0;
    if (To_integer(word.substr(first, behind - first), number)) return fmt::format("{}", number);
    return "a number above 2147483647";
}

std::string Refusal_of_first_line(const std::string& line) {
    if (Word_count(line) != 2)
        return "Invalid input of number of variables and levels - nsubstrings <>2: " + Told(line);
    for (int k = 1; k <= 2; ++k) {
        const std::string word = Get_word(k, line);
        std::int32_t value = 0;
        if (To_integer(word, value)) continue;
        return fmt::format(
            "Invalid input of number of variables and levels - substring {}: {} <> {}", k,
            Told(word), Number_in(word));
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
            std::uint8_t& status = graph.Status[At(i)][At(j)];
            if (status <= LocallyDependent) continue;
            status = Free;
            converted = true;
        }
    return converted;
}

}  // namespace

GraphFile Read_graph_file(const std::vector<std::string>& all, const std::string& name) {
    Lines lines(all);
    if (std::all_of(all.begin(), all.end(), [](const auto& l) { return Word_count(l) == 0; }))
        return Refused(name + " is empty");
    GraphFile file;
    Reading reading;
    ChainGraph& graph = file.graph;
    std::string line = lines.Next();
    const std::vector<int> sizes = Integers(line, 2);
    reading.passed_over.Note_surplus(lines.Number(), line, 2);
    if (sizes.empty() || !Sizes_are_possible(sizes[0], sizes[1]))
        return Refused(fmt::format("{}: Invalid input of number of variables and levels: {}", name,
                                   Told(line)));
    graph.nvar = sizes[0];
    graph.Nblocks = sizes[1];
    if (!Read_blocks(lines, graph, line, reading))
        return Refused(
            fmt::format("{}: Incorrect specification of recursive levels: {}", name, Told(line)));
    Number_blocks(graph);

    line = lines.Next();
    graph.Labels = Letters_of(line);
    if (graph.Labels.size() > At(graph.nvar)) {
        reading.passed_over.Note(lines.Number(), line);
        graph.Labels.resize(At(graph.nvar));
    }
    if (graph.Labels.size() < At(graph.nvar)) {
        file.warnings.push_back(fmt::format("Too few labels on GRF file: {}   {} labels found",
                                            Told(line), graph.Labels.size()));
        graph.Labels.resize(At(graph.nvar), MissingLabel);
    }
    if (const std::string failure = Read_matrix(lines, graph, name, reading); !failure.empty())
        return Refused(failure);
    if (const std::string pairs = Asymmetric_pairs(graph); !pairs.empty())
        file.warnings.push_back("WARNING - Non-symmetrical status:" + pairs);
    Read_sections(lines, file, name, reading);
    if (const std::string warning = reading.passed_over.Warning(name); !warning.empty())
        file.warnings.push_back(warning);
    Derive_adjacency(graph);
    file.ok = true;
    return file;
}

GraphFile Read_graph_file_strictly(const std::vector<std::string>& all, const std::string& name) {
    if (all.empty()) return Refused(name + " is empty");
    Lines lines(all);
    GraphFile file;
    Reading reading{.strict = true, .passed_over = {}};
    ChainGraph& graph = file.graph;
    std::string line = lines.Next();
    if (const std::string refusal = Refusal_of_first_line(line); !refusal.empty())
        return Refused(refusal);
    const std::vector<int> sizes = Integers(line, 2);
    graph.nvar = sizes[0];
    graph.Nblocks = sizes[1];
    if (!Read_blocks(lines, graph, line, reading))
        return Refused("Incorrect specification of recursive levels: " + Told(line));
    Number_blocks(graph);
    line = lines.Next();
    if (const std::string refusal = Refusal_of_labels(line, graph.nvar); !refusal.empty())
        return Refused(refusal);
    graph.Labels = Letters_of(line);
    if (const std::string failure = Read_matrix(lines, graph, name, reading); !failure.empty())
        return Refused(failure);
    if (const std::string pairs = Asymmetric_pairs(graph); !pairs.empty())
        return Refused("Asymmetrical status matrix:" + pairs);
    if (Convert_improper(graph))
        file.warnings.emplace_back("Warning: improper status values have been converted");
    if (const std::string refusal = Read_sections(lines, file, name, reading); !refusal.empty())
        return Refused(refusal);
    Derive_adjacency(graph);
    file.ok = true;
    return file;
}

std::string Written_name(const std::string& name, int v) {
    return name.empty() ? fmt::format("var{}", v) : name;
}

std::vector<std::string> GRF_lines(const ChainGraph& graph, const std::vector<std::string>& names) {
    const auto joined = [](auto&& numbers) { return fmt::format("{}", fmt::join(numbers, " ")); };
    std::vector<std::string> lines = {fmt::format("{} {}", graph.nvar, graph.Nblocks)};
    std::vector<int> row;
    for (int b = 1; b <= graph.Nblocks; ++b) row.push_back(graph.Cutpoints[At(b)]);
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
            lines.push_back(fmt::format("{} {} {}", graph.Labels[At(v - 1)],
                                        graph.coordinates[At(v)].x, graph.coordinates[At(v)].y));
    }
    lines.emplace_back("VARIABLES");
    for (int v = 1; v <= graph.nvar; ++v)
        lines.push_back(
            fmt::format("{} {}", graph.Labels[At(v - 1)], Written_name(names[At(v - 1)], v)));
    return lines;
}

}  // namespace tarven
