#include "graph/model/graph_comparison_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

namespace {

const char* Symbol(std::uint8_t status) {
    switch (status) {
        case Prevented:
            return "        ";
        case Absent:
            return "     -  ";
        case Free:
            return "     +  ";
        case Fixed:
            return "     *  ";
        default:
            return "     ?  ";
    }
}

std::vector<std::string> Incompatible_lines(const ChainGraph& one, const ChainGraph& other,
                                            Incompatible incompatible) {
    std::vector<std::string> lines;
    switch (incompatible) {
        case Incompatible::sizes:
            lines = {"INCOMPATIBLE GRAPHS - DIFFERENT NUMBER OF VARIABLES OR BLOCKS",
                     fmt::format("number of variables: {} {}", one.nvar, other.nvar),
                     fmt::format("number of levels: {} {}", one.Nblocks, other.Nblocks)};
            break;
        case Incompatible::labels:
            lines = {"INCOMPATIBLE GRAPHS - DIFFERENT LABELS"};
            break;
        default:
            lines = {"INCOMPATIBLE GRAPHS - DIFFERENT BLOCKSTRUCTURE"};
    }
    lines.emplace_back("The graphs are not compatible");
    return lines;
}

}  // namespace

std::vector<std::string> Comparison_lines(const NamedGraph& one, const NamedGraph& other,
                                          const GraphComparison& comparison) {
    std::vector<std::string> lines = {"  Graph1 : " + one.name, "  Graph2 : " + other.name, ""};
    if (comparison.incompatible != Incompatible::no) {
        Append_lines(lines, Incompatible_lines(one.graph, other.graph, comparison.incompatible));
        return lines;
    }
    Append_lines(lines, {"  Model differences:", "", "  Edge    Graph1   Graph2",
                         "  ------------------------"});
    for (const StatusDifference& pair : comparison.differences) {
        const auto label = [&](int v) { return one.graph.Labels[static_cast<std::size_t>(v - 1)]; };
        lines.push_back(fmt::format("  {} &{}{}{}", label(pair.i), label(pair.j), Symbol(pair.one),
                                    Symbol(pair.other)));
    }
    if (comparison.differences.empty()) lines.emplace_back("  no pair differs");
    lines.emplace_back("  + edge, * fixed edge, - no edge, blank prevented, ? local dependence");
    return lines;
}

}  // namespace tarven
