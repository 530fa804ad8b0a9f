#include "graph/model/marginal_model_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

namespace {

constexpr std::size_t LastColumn = 45;

std::vector<std::string> Pair_lines(const ChainGraph& graph, const MarginalModelRecord& model) {
    const char x = graph.Labels[static_cast<std::size_t>(model.pair.first - 1)];
    const char y = graph.Labels[static_cast<std::size_t>(model.pair.second - 1)];
    std::vector<std::string> lines;
    if (model.conditionally_independent)
        lines.push_back(fmt::format("{} and {} are conditional independent", x, y));
    if (model.modifiers != 0)
        lines.push_back(fmt::format("The {}{} interaction may be modified by {}", x, y,
                                    Labels_of_set(graph, model.modifiers)));
    return lines;
}

}  // namespace

std::vector<std::string> Set_list_lines(const std::string& heading, const ChainGraph& graph,
                                        const SetList& sets) {
    std::vector<std::string> lines;
    std::string line = heading;
    for (std::size_t k = 0; k < sets.size(); ++k) {
        line += Labels_of_set(graph, sets[k]);
        if (k + 1 == sets.size()) break;
        line += ',';
        if (line.size() <= LastColumn) continue;
        lines.push_back(line);
        line = Blanks(static_cast<int>(heading.size()));
    }
    lines.push_back(line);
    return lines;
}

std::vector<std::string> Marginal_model_lines(const ChainGraph& graph,
                                              const MarginalModelRecord& model) {
    std::string title = "Marginal model: " + Labels_of_set(graph, model.block_1);
    if (model.block_2 != 0) title += "|" + Labels_of_set(graph, model.block_2);
    std::vector<std::string> lines = {title};
    if (!model.cliques_found) {
        lines.emplace_back("Too many cliques");
        return lines;
    }
    const auto list = [&](const char* heading, const SetList& sets) {
        Append_lines(lines, Set_list_lines(heading, graph, sets));
    };
    list("The cliques of the subgraph :  ", model.SUBCLIQUES);
    lines.emplace_back(model.graphical ? "The marginal model is graphical"
                                       : "The marginal model is not graphical");
    list("Cliques of the marginal graph: ", model.CLIQUES);
    if (!model.graphical) list("Log linear generators        : ", model.generators);
    list("Fixed interactions           : ", model.BOUNDARIES);
    lines.push_back(
        fmt::format("Collapsibility:                {}", model.strong ? "Strong." : "Parametric."));
    if (model.free_identified)
        list("Estimable parameters         : ", model.FREE);
    else
        lines.emplace_back("Free parameters were not identified");
    if (model.pair.second != 0) Append_lines(lines, Pair_lines(graph, model));
    return lines;
}

}  // namespace tarven
