#include "graph/model/graph_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/fields.h"

namespace tarven {

namespace {

constexpr std::size_t ReportWidth = 78;
constexpr int MostSpacedVariables = 36;

char Status_symbol(std::uint8_t status) {
    constexpr std::string_view Symbols = ".-?*!";
    return Symbols[std::min<std::size_t>(status, Symbols.size() - 1)];
}

/// How the columns of the matrix stand.
struct MatrixLayout {
    int step = 2;               ///< characters a variable
    bool blocks_apart = false;  ///< a blank more between blocks, a blank line between their rows
};

MatrixLayout Layout_of(const ChainGraph& graph) {
    MatrixLayout layout;
    layout.step = graph.nvar <= MostSpacedVariables ? 2 : 1;
    const int blocks = graph.BlockOf(graph.nvar);
    const int width = 5 + layout.step * graph.nvar + blocks - 1;
    layout.blocks_apart = width <= static_cast<int>(ReportWidth) && 2 * blocks <= graph.nvar;
    return layout;
}

bool Begins_block(const ChainGraph& graph, int v) {
    return v > 1 && graph.BlockOf(v) != graph.BlockOf(v - 1);
}

/// A line of the matrix: a label, and a character for each variable.
template <class Character>
std::string Matrix_line(const ChainGraph& graph, const MatrixLayout& layout, char label,
                        Character of_variable) {
    std::string line = fmt::format("  {}  ", label);
    for (int v = 1; v <= graph.nvar; ++v) {
        if (layout.blocks_apart && Begins_block(graph, v)) line += ' ';
        line += of_variable(v);
        if (layout.step == 2) line += ' ';
    }
    while (line.back() == ' ') line.pop_back();
    return line;
}

char Label(const ChainGraph& graph, int v) {
    return graph.Labels[static_cast<std::size_t>(v - 1)];
}

std::vector<std::string> In_parentheses(const ChainGraph& graph, const SetList& sets) {
    std::vector<std::string> items;
    items.reserve(sets.size());
    for (const VariableSet set : sets)
        items.push_back(fmt::format("({}),", Labels_of_set(graph, set)));
    return items;
}

std::string Level_heading(const LevelSummary& level) {
    return fmt::format("LEVEL {}: ", level.block);
}

std::vector<std::string> Cliques_of_level(const ChainGraph& graph, const LevelSummary& level) {
    if (!level.complete) return {Level_heading(level) + "Too many cliques"};
    return Wrapped_lines(Level_heading(level), In_parentheses(graph, level.cliques), "");
}

std::vector<std::string> Generators_of_level(const ChainGraph& graph, const LevelSummary& level) {
    if (!level.complete) return {Level_heading(level) + "Too many cliques"};
    std::vector<std::string> lines;
    if (!level.free.empty())
        Append_lines(lines, Wrapped_lines(Level_heading(level) + "free  ",
                                          In_parentheses(graph, level.free), ""));
    if (!level.fixed.empty())
        Append_lines(lines, Wrapped_lines(Level_heading(level) + "fixed ",
                                          In_parentheses(graph, level.fixed), ""));
    if (level.free.empty() && !level.fixed.empty())
        lines.emplace_back("Warning: The model contains only fixed cliques");
    return lines;
}

std::vector<std::string> Gammas_of_level(const ChainGraph& graph, const LevelSummary& level) {
    if (level.gammas.empty()) return {};
    std::vector<std::string> items;
    for (const CliqueGamma& gamma : level.gammas) {
        const std::string value =
            gamma.coefficients > 0 ? Field(gamma.average, 0, 2) : std::string("-");
        items.push_back(fmt::format("({}) {} ({}),", Labels_of_set(graph, gamma.clique), value,
                                    gamma.coefficients));
    }
    std::vector<std::string> lines = {
        fmt::format("Average absolute gamma coefficients for level {}", level.block)};
    Append_lines(lines, Wrapped_lines("  ", items, " "));
    return lines;
}

}  // namespace

const char* Status_name(std::uint8_t status) {
    switch (status) {
        case Prevented:
            return "Prevented";
        case Absent:
            return "Cond.ind.";
        case Free:
            return "Dependent";
        case Fixed:
            return "Fixed";
        default:
            return "Local dep.";
    }
}

const char* Source_text(GraphSource source) {
    switch (source) {
        case GraphSource::GRF_file:
            return "From GRF file";
        case GraphSource::SCREEN:
            return "SCREEN copy";
        case GraphSource::EXA:
            return "EXA copy";
        case GraphSource::new_graph:
            return "New graph";
        default:
            return "????????";
    }
}

std::vector<std::string> Wrapped_lines(const std::string& heading,
                                       const std::vector<std::string>& items,
                                       std::string_view between) {
    std::vector<std::string> lines;
    std::string line = heading;
    bool begun = false;
    for (const std::string& item : items) {
        if (begun && line.size() + between.size() + item.size() > ReportWidth) {
            lines.push_back(line);
            line = Blanks(static_cast<int>(heading.size()));
            begun = false;
        }
        if (begun) line += between;
        line += item;
        begun = true;
    }
    lines.push_back(line);
    return lines;
}

std::vector<std::string> Status_matrix_lines(const ChainGraph& graph) {
    if (graph.nvar < 1) return {};
    const MatrixLayout layout = Layout_of(graph);
    const std::string labels =
        Matrix_line(graph, layout, ' ', [&](int v) { return Label(graph, v); });
    std::vector<std::string> lines = {labels};
    for (int i = 1; i <= graph.nvar; ++i) {
        if (layout.blocks_apart && Begins_block(graph, i)) lines.emplace_back("");
        lines.push_back(Matrix_line(graph, layout, Label(graph, i), [&](int j) {
            return i == j ? Label(graph, i) : Status_symbol(graph.StatusOf(i, j));
        }));
    }
    if (graph.nvar > MostSpacedVariables) lines.push_back(labels);
    Append_lines(lines, {"", " . Prevented   - Cond.ind.   ? Dependent   * Fixed   ! Local dep."});
    return lines;
}

std::vector<std::string> Model_lines(const ChainGraph& graph, const GraphSummary& summary) {
    std::vector<std::string> lines = Status_matrix_lines(graph);
    Append_lines(lines, {"", "Cliques:"});
    for (const LevelSummary& level : summary.levels)
        Append_lines(lines, Cliques_of_level(graph, level));
    Append_lines(lines, {"", "Log-linear generators/cliques:"});
    std::vector<std::string> gammas;
    for (const LevelSummary& level : summary.levels) {
        Append_lines(lines, Generators_of_level(graph, level));
        Append_lines(gammas, Gammas_of_level(graph, level));
    }
    if (gammas.empty()) return lines;
    lines.emplace_back("");
    Append_lines(lines, gammas);
    lines.emplace_back("The numbers in parentesis are the number of partial Gamma coefficients");
    return lines;
}

std::string Source_line(const ChainGraph& graph) {
    return fmt::format("{}{}", Source_text(graph.source), graph.revised ? "  - revised." : ".");
}

std::vector<std::string> Variables_of_graph_lines(const ChainGraph& graph,
                                                  const std::vector<std::string>& names) {
    std::vector<std::string> lines = {"The current graph contains", "the following variables: "};
    for (int first = 1; first <= graph.nvar;) {
        std::vector<std::string> items;
        const int block = graph.BlockOf(first);
        for (; first <= graph.nvar && graph.BlockOf(first) == block; ++first) {
            const std::string& name = names[static_cast<std::size_t>(first - 1)];
            std::string item(1, Label(graph, first));
            if (!name.empty()) item += " " + name;
            const bool last = first == graph.nvar || graph.BlockOf(first + 1) != block;
            items.push_back(last ? item : item + ",");
        }
        Append_lines(lines, Wrapped_lines(fmt::format("  Block {}: ", block), items, " "));
    }
    lines.emplace_back("");
    return lines;
}

std::vector<std::string> History_lines(const std::vector<std::string>& history) {
    if (history.empty()) return {};
    std::vector<std::string> lines = {"", "Model history:"};
    for (const std::string& line : history) lines.push_back("  " + line);
    return lines;
}

}  // namespace tarven
