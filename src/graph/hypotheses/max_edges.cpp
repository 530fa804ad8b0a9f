#include "graph/hypotheses/max_edges.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarven {

namespace {

/// The edges of a graph with their gammas, kept from step to step.
class EdgeGammas {
  public:
    EdgeGammas(const PackedCases& packed, const RunControl& control)
        : packed_(packed), control_(control) {}

    /// Finds the gammas of all edges whose separation takes place in the regression graph of one of
    /// the blocks first..last, those of other blocks being as they were. False after a stop.
    bool Renew(const ChainGraph& graph, int first_block, int last_block) {
        std::vector<std::pair<int, int>> pairs;
        for (const auto& [i, j] : All_pairs_of(graph)) {
            const int block = graph.BlockOf(i);
            if (!graph.Adjacent(i, j) || !Gamma_is_defined(packed_, i, j)) continue;
            if (block >= first_block && block <= last_block) pairs.push_back({i, j});
        }
        const GraphGammas gammas = Gammas_of_graph(packed_, graph, pairs, control_);
        for (const PairGamma& pair : gammas.pairs)
            At(pair.i, pair.j) = At(pair.j, pair.i) = pair.gamma;
        return !gammas.stopped;
    }

    double Of(int i, int j) const {
        return gammas_[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
    }

  private:
    double& At(int i, int j) {
        return gammas_[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
    }

    const PackedCases& packed_;
    const RunControl& control_;
    std::vector<std::vector<double>> gammas_ = std::vector<std::vector<double>>(
        MaxVariables + 1, std::vector<double>(MaxVariables + 1, NoGamma));
};

VariableEdges Edges_of(const ChainGraph& graph, const EdgeGammas& gammas, int v) {
    VariableEdges edges;
    for (int w = 1; w <= graph.nvar; ++w) {
        if (w == v || !graph.Adjacent(v, w)) continue;
        ++edges.neighbours;
        const double gamma = gammas.Of(v, w);
        if (graph.StatusOf(v, w) == Fixed || std::fabs(gamma) > 1) continue;
        if (edges.weakest != 0 && std::fabs(gamma) > std::fabs(edges.gamma)) continue;
        edges.weakest = w;
        edges.gamma = gamma;
    }
    return edges;
}

/// The variable that loses its weakest edge; 0 when there is none.
int Variable_to_relieve(const SimplificationStep& step, int m) {
    int chosen = 0;
    for (int v = 1; v <= static_cast<int>(step.variables.size()); ++v) {
        const VariableEdges& edges = step.variables[static_cast<std::size_t>(v - 1)];
        if (edges.neighbours <= m || edges.weakest == 0) continue;
        if (chosen != 0) {
            const VariableEdges& best = step.variables[static_cast<std::size_t>(chosen - 1)];
            if (edges.neighbours < best.neighbours) continue;
            if (edges.neighbours == best.neighbours &&
                std::fabs(edges.gamma) > std::fabs(best.gamma))
                continue;
        }
        chosen = v;
    }
    return chosen;
}

SimplificationStep Next_step(const ChainGraph& graph, const EdgeGammas& gammas, int m) {
    SimplificationStep step;
    for (int v = 1; v <= graph.nvar; ++v) step.variables.push_back(Edges_of(graph, gammas, v));
    if (const int v = Variable_to_relieve(step, m); v != 0) {
        const VariableEdges& edges = step.variables[static_cast<std::size_t>(v - 1)];
        step.i = std::min(v, edges.weakest);
        step.j = std::max(v, edges.weakest);
        step.gamma = edges.gamma;
    }
    return step;
}

}  // namespace

std::size_t Simplification::eliminated() const {
    return static_cast<std::size_t>(
        std::count_if(steps.begin(), steps.end(), [](const auto& step) { return step.found(); }));
}

Simplification Simplify_graph(const PackedCases& packed, const ChainGraph& graph, int m,
                              const RunControl& control) {
    Simplification result{.graph = graph, .steps = {}};
    EdgeGammas gammas(packed, control);
    int first_block = 1, last_block = graph.Nblocks + 1;
    while (true) {
        if (!gammas.Renew(result.graph, first_block, last_block)) {
            result.stopped = true;
            return result;
        }
        result.steps.push_back(Next_step(result.graph, gammas, m));
        const SimplificationStep& step = result.steps.back();
        if (!step.found()) break;
        Set_status(result.graph, step.i, step.j, Absent);
        result.graph.revised = true;
        // An edge belongs to the regression graph of the block of its lower variable alone, and so
        // does the question which later variables are parents.
        first_block = last_block = graph.BlockOf(step.i);
    }
    const auto& last = result.steps.back().variables;
    result.stuck = std::any_of(last.begin(), last.end(),
                               [m](const VariableEdges& edges) { return edges.neighbours > m; });
    return result;
}

}  // namespace tarven
