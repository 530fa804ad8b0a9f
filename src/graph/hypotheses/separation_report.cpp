#include "graph/hypotheses/separation_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "graph/model/graph_report.h"
#include "shell/fields.h"
#include "tables/independence/hypotheses_report.h"

namespace tarven {

namespace {

const char* Edge_text(std::uint8_t status) {
    switch (status) {
        case Prevented:
            return "prevented";
        case Absent:
            return "no edge";
        case Free:
            return "edge";
        default:
            return "fixed";
    }
}

std::string Set_text(const ChainGraph& graph, VariableSet set) {
    return set == 0 ? "-" : Labels_of_set(graph, set);
}

/// Why the pairs of a list have their sets, one line each.
std::vector<std::string> Grounds_lines(const ChainGraph& graph, const SeparationList& list) {
    const auto wider = [](std::size_t width, const SeparatedPair& pair) {
        return std::max(width, static_cast<std::size_t>(Size(pair.common)));
    };
    std::size_t width = 17;
    for (const SeparatedPair& pair : list.pairs) width = wider(width, pair);
    const int common = static_cast<int>(width) + 2;
    std::vector<std::string> lines{Left("  Pair   block  edge", 24) +
                                   Left("common neighbours", common) + "others  sets"};
    for (const SeparatedPair& pair : list.pairs)
        lines.push_back("  " + Left(Pair_text(graph, pair.i, pair.j), 7) +
                        Left(Field(graph.BlockOf(pair.i), 5), 7) +
                        Left(Edge_text(graph.StatusOf(pair.i, pair.j)), 10) +
                        Left(Set_text(graph, pair.common), common) + Field(pair.others, 6) +
                        Field(pair.count, 6) + (pair.smallest ? "" : "  neighbours of an end"));
    return lines;
}

std::vector<std::string> Limit_lines(const SeparationList& list) {
    std::vector<std::string> lines;
    if (list.too_many_pairs)
        lines.push_back(fmt::format("Only the first {} have been used.", MaxPairs));
    if (list.incomplete) lines.push_back("The list of separation hypotheses is incomplete");
    return lines;
}

std::vector<std::string> Stopped_lines(const ChainGraph& graph, bool stopped, int i, int j) {
    if (!stopped) return {};
    if (i == 0) return {"Stopped before the first pair"};
    return {"Stopped: the pairs behind " + Pair_text(graph, i, j) + " are left out"};
}

std::vector<std::string> Stopped_lines(const ChainGraph& graph, const SeparationList& list) {
    if (list.pairs.empty()) return Stopped_lines(graph, list.stopped, 0, 0);
    return Stopped_lines(graph, list.stopped, list.pairs.back().i, list.pairs.back().j);
}

}  // namespace

std::string Pair_text(const ChainGraph& graph, int i, int j) {
    return fmt::format("{} & {}", graph.Labels[static_cast<std::size_t>(i - 1)],
                       graph.Labels[static_cast<std::size_t>(j - 1)]);
}

std::vector<std::string> Local_markov_lines(const ChainGraph& graph,
                                            std::span<const SeparatedPair> pairs) {
    std::vector<std::string> all, of_paths;
    for (const SeparatedPair& pair : pairs) {
        if (pair.smallest) continue;
        all.push_back(Pair_text(graph, pair.i, pair.j));
        if (pair.too_many_partial_paths) of_paths.push_back(all.back());
    }
    if (all.empty()) return {};
    std::vector<std::string> lines;
    if (!of_paths.empty())
        lines = Wrapped_lines("Incomplete set of paths between variables ", of_paths, ", ");
    lines.push_back(std::string(78, '-'));
    lines.push_back(fmt::format("Separation by Local Markov properties in {} {}:", all.size(),
                                all.size() == 1 ? "case" : "cases"));
    Append_lines(lines, Wrapped_lines("  ", all, ", "));
    lines.push_back(
        "A limit ended the search for their smallest sets: the neighbours of the end that");
    lines.push_back("has fewer separate them, of both ends where they have as many.");
    return lines;
}

std::vector<std::string> Separation_lines(const ChainGraph& graph, const SeparationList& list) {
    std::vector<std::string> lines = Limit_lines(list);
    Append_lines(lines, Stopped_lines(graph, list));
    if (list.rows.empty()) return lines;
    Append_lines(lines, Local_markov_lines(graph, list.pairs));
    lines.push_back(list.rows.size() == 1 ? "Separation hypothesis:" : "Separation hypotheses:");
    Append_lines(lines, Hypothesis_list_lines(list.rows, graph.Labels));
    lines.push_back("");
    lines.push_back(
        "Each pair is separated in the regression graph of the block of its first variable:");
    lines.push_back(
        "that block and its parents, all later variables complete. Every set holds the");
    lines.push_back("common neighbours; with the others it cuts the longer paths.");
    Append_lines(lines, Grounds_lines(graph, list));
    return lines;
}

std::vector<std::string> Global_markov_lines(const ChainGraph& graph, const SeparationList& list) {
    std::vector<std::string> lines;
    for (const SeparatedPair& pair : list.pairs)
        lines.push_back(fmt::format("GMP hypotheses relating to {} and {}",
                                    graph.Labels[static_cast<std::size_t>(pair.i - 1)],
                                    graph.Labels[static_cast<std::size_t>(pair.j - 1)]));
    Append_lines(lines, Limit_lines(list));
    Append_lines(lines, Stopped_lines(graph, list));
    if (list.rows.empty()) {
        lines.push_back("No hypotheses generated.");
        return lines;
    }
    Append_lines(lines, Local_markov_lines(graph, list.pairs));
    lines.push_back("");
    lines.push_back("Overview of smallest GMP hypotheses.");
    Append_lines(lines, Hypothesis_list_lines(list.rows, graph.Labels));
    lines.push_back("");
    lines.push_back(
        "Each pair is separated in the moral graph of the blocks from that of its first");
    lines.push_back(
        "variable on, without the edge between them: the parents of each chain component are");
    lines.push_back(
        "joined. Every set holds the common neighbours; with the others it cuts the longer");
    lines.push_back("paths.");
    Append_lines(lines, Grounds_lines(graph, list));
    return lines;
}

std::vector<std::string> Reduction_lines(const ChainGraph& graph, const ReductionList& list,
                                         const std::string& parameter) {
    std::vector<std::string> lines{"Interactions defined by " + parameter};
    if (list.too_many_pairs)
        lines.push_back(
            fmt::format("Only the first {} interactions have been considered", MaxPairs));
    const ReducedPair last = list.pairs.empty() ? ReducedPair{} : list.pairs.back();
    Append_lines(lines, Stopped_lines(graph, list.stopped, last.i, last.j));
    if (list.rows.empty()) return lines;
    lines.push_back("");
    lines.push_back(
        "The core of a pair in the regression graph of the block of its first variable, and");
    lines.push_back(
        "the parts left out, each behind a complete set that does not hold both variables:");
    for (const ReducedPair& pair : list.pairs) {
        std::vector<std::string> parts;
        for (const LeftOut& part : pair.left_out)
            parts.push_back(part.boundary == 0
                                ? Labels_of_set(graph, part.variables) + " apart"
                                : fmt::format("{} behind {}", Labels_of_set(graph, part.variables),
                                              Labels_of_set(graph, part.boundary)));
        if (parts.empty()) parts.emplace_back("nothing left out");
        Append_lines(lines,
                     Wrapped_lines(fmt::format("  {}  core {}: ", Pair_text(graph, pair.i, pair.j),
                                               Labels_of_set(graph, pair.core)),
                                   parts, ", "));
    }
    lines.push_back("");
    lines.push_back(list.rows.size() == 1 ? "Hypothesis implied by reducibility:"
                                          : "Hypotheses implied by reducibility:");
    Append_lines(lines, Hypothesis_list_lines(list.rows, graph.Labels));
    return lines;
}

std::vector<std::string> Core_and_separation_lines(const ChainGraph& graph,
                                                   const CoreAndSeparation& made) {
    std::vector<std::string> lines;
    if (made.separation.too_many_pairs)
        lines.push_back(fmt::format("Only the first {} have been used.", MaxPairs));
    if (made.incomplete) lines.emplace_back("The list of separation hypotheses is incomplete");
    if (made.separation.stopped || made.reduction.stopped) {
        lines.emplace_back("Stopped: the hypotheses were not tested");
        return lines;
    }
    Append_lines(lines, Local_markov_lines(graph, made.separation.pairs));
    for (const auto& [i, j] : made.removed) lines.push_back("Removed: " + Pair_text(graph, i, j));
    if (!made.removed.empty())
        lines.push_back(fmt::format("{} hypoteses were removed", made.removed.size()));
    if (made.rows.empty()) {
        lines.emplace_back("Hypotheses have not been defined");
        return lines;
    }
    lines.emplace_back(made.same ? "Test of core/separation hypothesis"
                                 : "Test of separation and core hypotheses");
    Append_lines(lines, Hypothesis_list_lines(made.rows, graph.Labels));
    return lines;
}

std::vector<std::string> Check_range_lines(const CheckHypotheses& made) {
    static constexpr const char* EdgesOfStatus[] = {"inadmissible", "missing", "existing", "fixed"};
    std::vector<std::string> lines;
    for (std::size_t status = 0; status < made.statuses.size(); ++status) {
        const CheckedStatus& of = made.statuses[status];
        if (of.count == 0) continue;
        lines.push_back(fmt::format("Hypotheses {} to {} refer to {} edges", of.first + 1,
                                    of.first + of.count, EdgesOfStatus[status]));
        if (of.whole < of.edges)
            lines.push_back(fmt::format("Hypotheses generated for the first {} out of {} edges",
                                        of.whole, of.edges));
    }
    if (made.generated > made.rows.size()) {
        lines.push_back(fmt::format("The maximum number of hypotheses is {}", MaxHypotheses));
        lines.push_back(fmt::format("For this reason, hypotheses {} to {} will not be tested",
                                    made.rows.size() + 1, made.generated));
    }
    if (made.stopped)
        lines.emplace_back("Stopped: the hypotheses of the pairs behind are left out");
    return lines;
}

}  // namespace tarven
