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

/// "1 to 8, 12 and 15 to 17".
std::string Numbers_text(const std::vector<std::size_t>& numbers) {
    std::vector<std::string> ranges;
    for (std::size_t k = 0; k < numbers.size();) {
        std::size_t last = k;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) ++last;
        ranges.push_back(last == k ? std::to_string(numbers[k])
                                   : fmt::format("{} to {}", numbers[k], numbers[last]));
        k = last + 1;
    }
    std::string text = ranges.front();
    for (std::size_t k = 1; k < ranges.size(); ++k)
        text += (k + 1 < ranges.size() ? ", " : " and ") + ranges[k];
    return text;
}

/// Ranges of numbers may make a line long.
std::vector<std::string> Folded(const std::string& text) {
    constexpr std::size_t LineWidth = 90;
    std::vector<std::string> lines;
    std::string rest = text;
    while (rest.size() > LineWidth) {
        const auto blank = rest.rfind(' ', LineWidth);
        lines.push_back(rest.substr(0, blank));
        rest = "  " + rest.substr(blank + 1);
    }
    lines.push_back(rest);
    return lines;
}

std::vector<std::string> Missing_lines(const std::vector<std::size_t>& numbers) {
    const std::size_t count = numbers.size();
    if (count == 0) return {"No hypotheses has to be accepted"};
    if (numbers.back() > count)
        return Folded(
            count == 1
                ? fmt::format("Hypothesis {} relate to a missing edge. It must be accepted",
                              numbers[0])
                : fmt::format("Hypotheses {} relate to missing edges. These must be accepted",
                              Numbers_text(numbers)));
    if (count == 1) return {"The first hypothesis relate to a missing edge. It must be accepted"};
    return {fmt::format("The first {} hypotheses relate to missing edges. These must be accepted",
                        count)};
}

std::vector<std::string> Existing_lines(const std::vector<std::size_t>& numbers, char x, char y) {
    if (numbers.empty()) return {};
    std::vector<std::string> lines = Folded(
        numbers.size() == 1
            ? fmt::format(
                  "Hypothesis {} relate to an existing edge. It does not have to be rejected.",
                  numbers[0])
            : fmt::format(
                  "Hypotheses {} relate to existing edges. They do not have to be rejected.",
                  Numbers_text(numbers)));
    lines.emplace_back(
        "Elimination of an existing edge because the test statistic is insignificant will, "
        "however,");
    lines.push_back(fmt::format(
        "change the way the association between {} and {} should be estimated and tested.", x, y));
    return lines;
}

/// What the sets of a pair with and without an edge owe to a limit.
std::vector<SeparatedPair> By_neighbours(const Relevance& relevance) {
    const Separators &excluded = relevance.separators_excluded,
                     &included = relevance.separators_included;
    if (excluded.smallest && included.smallest) return {};
    return {{.i = relevance.pair.first,
             .j = relevance.pair.second,
             .smallest = false,
             .too_many_partial_paths =
                 excluded.too_many_partial_paths || included.too_many_partial_paths}};
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
        Append_lines(lines, Sets_lines(graph, " excluded: ", relevance.separators_excluded.sets));
        Append_lines(lines, Sets_lines(graph, " included: ", relevance.separators_included.sets));
    }
    if (wishes.reducibility && !relevance.on_reducibility()) {
        lines.emplace_back("No influence on reducibility");
    } else if (wishes.reducibility) {
        lines.push_back(fmt::format("The core of the {}-problem:", pair));
        lines.push_back(" excluded: " + Labels_of_set(graph, relevance.core_excluded));
        lines.push_back(" included: " + Labels_of_set(graph, relevance.core_included));
    }
    Append_lines(lines, Local_markov_lines(graph, By_neighbours(relevance)));
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
    bool is_first = true;
    for (const RelevantEdges& of : list.pairs) {
        if (!is_first) lines.emplace_back("");
        is_first = false;
        const std::size_t count = of.missing.size() + of.existing.size();
        const char x = graph.Labels[static_cast<std::size_t>(of.pair.first - 1)];
        const char y = graph.Labels[static_cast<std::size_t>(of.pair.second - 1)];
        lines.push_back(
            count == 1
                ? "1 separation hypothesis relating to an edge whose status influences the way"
                : fmt::format(
                      "{} separation hypotheses relating to edges whose status influences the way",
                      count));
        lines.push_back(fmt::format("the association between {} and {} should be analyzed", x, y));
        Append_lines(lines, Missing_lines(of.missing));
        Append_lines(lines, Existing_lines(of.existing, x, y));
    }
    if (list.incomplete) lines.emplace_back("The list of separation hypotheses is incomplete");
    if (list.stopped) lines.emplace_back("Stopped: edges and pairs behind are left out");
    Append_lines(lines, Local_markov_lines(graph, list.by_neighbours));
    if (list.rows.empty()) {
        lines.emplace_back("No hypotheses generated.");
        return lines;
    }
    lines.emplace_back("");
    Append_lines(lines, Hypothesis_list_lines(list.rows, graph.Labels));
    return lines;
}

}  // namespace tarven
