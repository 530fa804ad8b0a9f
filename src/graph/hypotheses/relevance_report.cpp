#include "graph/hypotheses/relevance_report.h"

#include <fmt/format.h>

#include "graph/hypotheses/separation_report.h"
#include "graph/model/graph_report.h"
#include "shell/fields.h"
#include "tables/independence/hypotheses_report.h"

namespace tarven {

namespace {

std::string Rule() {
    return std::string(78, '-');
}

std::vector<std::string> Sets_lines(const ChainGraph& graph, const std::string& heading,
                                    const SetList& sets) {
    std::vector<std::string> items;
    for (const VariableSet set : sets)
        items.push_back(set == 0 ? "nothing" : Labels_of_set(graph, set));
    return Wrapped_lines(heading, items, "   ");
}

std::string Labels_of_pair(const ChainGraph& graph, std::pair<int, int> pair) {
    return Labels_of_set(graph, Only(pair.first) | Only(pair.second));
}

/// What the rows first+1 .. first+count of a pair's list are about; the list of all pairs begins at
/// `offset`.
std::string Missing_line(std::size_t offset, std::size_t count) {
    if (count == 0) return "No hypotheses has to be accepted";
    if (offset > 0)
        return fmt::format("Hypotheses {} to {} relate to missing edges. These must be accepted",
                           offset + 1, offset + count);
    if (count == 1) return "The first hypothesis relate to a missing edge. It must be accepted";
    return fmt::format("The first {} hypotheses relate to missing edges. These must be accepted",
                       count);
}

std::vector<std::string> Existing_lines(std::size_t offset, std::size_t count, char x, char y) {
    if (count == 0) return {};
    const std::string which =
        count == 1
            ? fmt::format(
                  "Hypothesis {} relate to an existing edge. It does not have to be rejected.",
                  offset + 1)
            : fmt::format(
                  "Hypotheses {} to {} relate to existing edges. They do not have to be rejected.",
                  offset + 1, offset + count);
    return {which,
            "Elimination of an existing edge because the test statistic is insignificant will, "
            "however,",
            fmt::format("change the way the association between {} and {} should be estimated and "
                        "tested.",
                        x, y)};
}

}  // namespace

std::vector<std::string> Relevance_lines(const ChainGraph& graph, const Relevance& relevance,
                                         const RelevanceWishes& wishes) {
    const std::string pair = Labels_of_pair(graph, relevance.pair);
    std::vector<std::string> lines{
        Rule(),
        fmt::format("Analysis of relevance of {} for {} is {}",
                    Labels_of_pair(graph, relevance.edge), pair,
                    relevance.included ? "currently included" : "currently excluded"),
        Rule()};
    if (wishes.separation && !relevance.on_separation()) {
        lines.emplace_back("No influence on separation");
    } else if (wishes.separation) {
        lines.push_back(fmt::format("Separators for {}", pair));
        Append_lines(lines, Sets_lines(graph, " excluded: ", relevance.separators_excluded));
        Append_lines(lines, Sets_lines(graph, " included: ", relevance.separators_included));
    }
    if (wishes.reducibility && !relevance.on_reducibility()) {
        lines.emplace_back("No influence on reducibility");
    } else if (wishes.reducibility) {
        lines.push_back(fmt::format("The core of the {}-problem:", pair));
        lines.push_back(" excluded: " + Labels_of_set(graph, relevance.core_excluded));
        lines.push_back(" included: " + Labels_of_set(graph, relevance.core_included));
    }
    return lines;
}

std::vector<std::string> Relevance_heading(const RelevanceWishes& wishes) {
    return {Rule(),
            fmt::format("Analysis of relevance for {}{}{}", wishes.separation ? "separation " : "",
                        wishes.separation && wishes.reducibility ? "and " : "",
                        wishes.reducibility ? "reducibility" : ""),
            Rule()};
}

std::vector<std::string> Relevant_edges_lines(const ChainGraph& graph, const RelevanceList& list) {
    std::vector<std::string> lines;
    if (list.pairs.empty()) lines.emplace_back("No edge influences the analysis of the pairs");
    std::size_t offset = 0;
    std::vector<Hypothesis> rows;
    for (const RelevantEdges& of : list.pairs) {
        if (offset > 0) lines.emplace_back("");
        const std::size_t count = of.rows.size();
        const char x = graph.Labels[static_cast<std::size_t>(of.pair.first - 1)];
        const char y = graph.Labels[static_cast<std::size_t>(of.pair.second - 1)];
        lines.push_back(
            count == 1
                ? "1 separation hypothesis relating to an edge whose status influences the way"
                : fmt::format(
                      "{} separation hypotheses relating to edges whose status influences the way",
                      count));
        lines.push_back(fmt::format("the association between {} and {} should be analyzed", x, y));
        lines.push_back(Missing_line(offset, of.missing));
        Append_lines(lines, Existing_lines(offset + of.missing, of.existing, x, y));
        offset += count;
        rows.insert(rows.end(), of.rows.begin(), of.rows.end());
    }
    if (list.incomplete) lines.emplace_back("The list of separation hypotheses is incomplete");
    if (list.stopped) lines.emplace_back("Stopped: edges and pairs behind are left out");
    if (rows.empty()) return lines;
    lines.emplace_back("");
    Append_lines(lines, Hypothesis_list_lines(rows, graph.Labels));
    return lines;
}

}  // namespace tarven
