#include "graph/model/graph_summary.h"

#include <cmath>

#include "graph/sets/cliques.h"

namespace tarven {

namespace {

int Last_of_block(const ChainGraph& graph, int b) {
    return b <= graph.Nblocks ? graph.Cutpoints[static_cast<std::size_t>(b)] : graph.nvar;
}

bool Is_fixed_clique(const ChainGraph& graph, VariableSet clique, int last_of_block) {
    if (Size(clique) == 1) return Lowest(clique) > last_of_block;
    for (const int i : Members(clique))
        for (const int j : Members(clique & ~Variables_between(1, i)))
            if (i <= last_of_block && graph.StatusOf(i, j) != Fixed) return false;
    return true;
}

CliqueGamma Gamma_of_clique(const ChainGraph& graph, VariableSet clique,
                            std::span<const double> gammas) {
    CliqueGamma result{clique};
    double sum = 0;
    for (const int i : Members(clique))
        for (const int j :
             Members(clique & graph.GRF[static_cast<std::size_t>(i)] & ~Variables_between(1, i))) {
            const double gamma =
                gammas[static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(graph.nvar) +
                       static_cast<std::size_t>(j - 1)];
            if (!(std::abs(gamma) <= 1)) continue;
            sum += std::abs(gamma);
            ++result.coefficients;
        }
    if (result.coefficients > 0) result.average = sum / result.coefficients;
    return result;
}

LevelSummary Summarize_level(const ChainGraph& graph, int b, std::span<const double> gammas) {
    LevelSummary level;
    level.block = b;
    const int last = Last_of_block(graph, b);
    const CliqueList found = FindCliques(RegressionGraph(graph, b, LaterVariables::complete), last);
    level.complete = found.complete;
    level.cliques = found.cliques;
    for (const VariableSet clique : level.cliques) {
        (Is_fixed_clique(graph, clique, last) ? level.fixed : level.free).push_back(clique);
        if (!gammas.empty() && Size(clique) > 1)
            level.gammas.push_back(Gamma_of_clique(graph, clique, gammas));
    }
    return level;
}

}  // namespace

GraphSummary Summarize_graph(const ChainGraph& graph, std::span<const double> gammas) {
    GraphSummary summary;
    const int blocks = graph.nvar > 0 ? graph.BlockOf(graph.nvar) : 0;
    for (int b = 1; b <= blocks; ++b) summary.levels.push_back(Summarize_level(graph, b, gammas));
    return summary;
}

}  // namespace tarven
