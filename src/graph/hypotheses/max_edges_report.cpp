#include "graph/hypotheses/max_edges_report.h"

#include <fmt/format.h>

#include "graph/model/graph_report.h"
#include "shell/fields.h"

namespace tarven {

namespace {

char Label(const std::string& labels, int v) {
    return labels[static_cast<std::size_t>(v - 1)];
}

std::string Pair_of(const SimplificationStep& step, const std::string& labels) {
    return fmt::format("{} & {}", Label(labels, step.i), Label(labels, step.j));
}

std::vector<std::string> Step_lines(const SimplificationStep& step, const std::string& labels) {
    const std::string head = "    Variable Edges  Neighbor  Gamma";
    std::vector<std::string> lines = {"", "Summary of interactions", head,
                                      std::string(head.size(), '-')};
    for (int v = 1; v <= static_cast<int>(step.variables.size()); ++v) {
        const VariableEdges& edges = step.variables[static_cast<std::size_t>(v - 1)];
        std::string line = Right(std::string(1, Label(labels, v)), 12) + Field(edges.neighbours, 6);
        if (edges.weakest != 0)
            line +=
                Right(std::string(1, Label(labels, edges.weakest)), 10) + Field(edges.gamma, 7, 3);
        lines.push_back(line);
    }
    if (step.found())
        Append_lines(lines, {"", fmt::format("To be eliminated: {}  {}", Field(step.gamma, 6, 3),
                                             Pair_of(step, labels))});
    else
        Append_lines(lines, {"", "Model simplification stops"});
    return lines;
}

}  // namespace

std::vector<std::string> Simplification_lines(const Simplification& simplification,
                                              const std::string& labels) {
    std::vector<std::string> lines;
    std::vector<std::string> eliminated;
    for (const SimplificationStep& step : simplification.steps) {
        Append_lines(lines, Step_lines(step, labels));
        if (step.found()) eliminated.push_back(Pair_of(step, labels) + ",");
    }
    if (simplification.stopped) return lines;
    if (simplification.stuck)
        lines.emplace_back(
            "The edges that are left to variables with too many are fixed or have no gamma");
    Append_lines(lines,
                 {"", fmt::format("Simplificationn stops after {} steps", eliminated.size())});
    if (eliminated.empty()) return lines;
    eliminated.back().pop_back();
    lines.emplace_back("Overview of eliminated interactions");
    Append_lines(lines, Wrapped_lines("  ", eliminated, " "));
    return lines;
}

}  // namespace tarven
