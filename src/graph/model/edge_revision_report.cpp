#include "graph/model/edge_revision_report.h"

#include <fmt/format.h>

#include "graph/model/graph_report.h"

namespace tarven {

namespace {

std::string Place_text(const ChainGraph& graph, int place) {
    if (place == EveryOther) return "*";
    if (place < 1 || place > graph.nvar) return fmt::format(" {}", place);
    return std::string(1, graph.Labels[static_cast<std::size_t>(place - 1)]);
}

std::string Pair_text(const ChainGraph& graph, const TypedPair& pair) {
    return Place_text(graph, pair.first) + Place_text(graph, pair.second);
}

}  // namespace

std::vector<std::string> Edge_revision_messages(const EdgeRevision& revision) {
    std::vector<std::string> messages;
    for (const RevisedPair& revised : revision.pairs) {
        const std::string pair = Pair_text(revision.graph, revised.pair);
        if (revised.outcome == Revised::refused)
            messages.push_back(fmt::format("Failure: The graph was not revised ({})", pair));
        if (revised.outcome == Revised::unchanged)
            messages.push_back(
                fmt::format("No change: New status is the same as the old status ({})", pair));
    }
    return messages;
}

std::vector<std::string> Edge_revision_lines(const EdgeRevision& revision, EdgeStatus status) {
    std::vector<std::string> pairs;
    for (const RevisedPair& revised : revision.pairs)
        if (revised.outcome == Revised::yes)
            pairs.push_back(Pair_text(revision.graph, revised.pair));
    if (pairs.empty()) return {};
    return Wrapped_lines(fmt::format("{}: ", Status_name(status)), pairs, " ");
}

std::string Explanatory_message(NotFixed reason) {
    switch (reason) {
        case NotFixed::one_block:
            return "The model has only one recursive block";
        case NotFixed::one_variable:
            return "The model has only one explanatory variable";
        case NotFixed::all_fixed_already:
            return "No change: the edges in the last block are fixed already";
        default:
            return "Explanatory variables: edges in the last block were fixed";
    }
}

}  // namespace tarven
