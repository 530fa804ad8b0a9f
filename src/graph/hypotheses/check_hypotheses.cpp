#include "graph/hypotheses/check_hypotheses.h"

#include "graph/hypotheses/pairs_of_parameter.h"

namespace tarven {

CheckHypotheses Generate_check_hypotheses(const ChainGraph& graph, const StopCheck& stop) {
    CheckHypotheses made;
    const SeparationGraphs graphs = Separation_graphs(graph);
    for (std::size_t status = 0; status < made.statuses.size(); ++status) {
        CheckedStatus& of = made.statuses[status];
        of.first = made.generated;
        for (const auto& [i, j] : Pairs_of_status(graph, static_cast<std::uint8_t>(status))) {
            if (stop && stop()) {
                made.stopped = true;
                return made;
            }
            const Separators found = Separators_of_pair(graphs, i, j);
            ++of.edges;
            const std::size_t first = made.rows.size();
            for (const VariableSet set : found.sets)
                if (made.rows.size() < MaxHypotheses)
                    made.rows.push_back(Separation_hypothesis(i, j, set));
            const std::size_t kept = made.rows.size() - first;
            if (kept == found.sets.size()) ++of.whole;
            if (!found.smallest && kept > 0)
                made.not_smallest.push_back(
                    {.i = i,
                     .j = j,
                     .first = first,
                     .count = kept,
                     .smallest = false,
                     .too_many_partial_paths = found.too_many_partial_paths});
            of.count += found.sets.size();
            made.generated += found.sets.size();
        }
    }
    return made;
}

}  // namespace tarven
