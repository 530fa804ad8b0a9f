#include "graph/hypotheses/graph_gammas.h"

#include <algorithm>

#include "graph/hypotheses/separation.h"

namespace tarven {

namespace {

/// False when the run was stopped on the way.
bool Find_gamma(const PackedCases& packed, const SeparationGraphs& graphs, PairGamma& pair,
                StrataMemory& memory, const StopCheck& stop) {
    if (!Gamma_is_defined(packed, pair.i, pair.j)) return true;
    const Separators separators = Separators_of_pair(graphs, pair.i, pair.j);
    PairGamma found = pair;
    found.smallest = separators.smallest;
    found.hypotheses = static_cast<int>(separators.sets.size());
    double sum = 0;
    for (const VariableSet set : separators.sets) {
        if (stop && stop()) return false;
        const GammaFromCases one =
            Gamma_from_cases(packed, Separation_hypothesis(pair.i, pair.j, set), memory);
        if (!one.tested) continue;
        sum += one.gamma.gamma;
        ++found.tested;
    }
    if (found.tested > 0) found.gamma = sum / found.tested;
    pair = found;
    return true;
}

}  // namespace

std::vector<std::pair<int, int>> All_pairs_of(const ChainGraph& graph) {
    std::vector<std::pair<int, int>> pairs;
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = i + 1; j <= graph.nvar; ++j) pairs.push_back({i, j});
    return pairs;
}

GraphGammas Gammas_of_graph(const PackedCases& packed, const ChainGraph& graph,
                            std::span<const std::pair<int, int>> pairs, const RunControl& control) {
    GraphGammas result;
    for (const auto& [i, j] : pairs) result.pairs.push_back({.i = i, .j = j});
    const SeparationGraphs graphs = Separation_graphs(graph);
    // Nothing is drawn: the stream of the run stays unused.
    RandomStream stream;
    TestSettings settings;
    settings.ExactTests = false;
    const std::vector<TestedHypothesis> outcomes = Run_list(
        pairs.size(), settings, stream, control,
        [&](std::size_t k, RandomStream&, RunMemory& memory,
            const StopCheck& stop) -> TestedHypothesis {
            const bool reached = Find_gamma(packed, graphs, result.pairs[k], memory.strata, stop);
            return {.reached = reached ? Reached::end : Reached::not_reached};
        });
    result.stopped = std::any_of(
        outcomes.begin(), outcomes.end(),
        [](const TestedHypothesis& outcome) { return outcome.reached == Reached::not_reached; });
    return result;
}

std::vector<double> Matrix_of_gammas(std::span<const PairGamma> pairs, int nvar) {
    const auto n = static_cast<std::size_t>(nvar);
    std::vector<double> matrix(n * n, NoGamma);
    for (const PairGamma& pair : pairs) {
        const auto i = static_cast<std::size_t>(pair.i - 1),
                   j = static_cast<std::size_t>(pair.j - 1);
        matrix[i * n + j] = matrix[j * n + i] = pair.gamma;
    }
    return matrix;
}

}  // namespace tarven
