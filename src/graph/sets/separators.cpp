#include "graph/sets/separators.h"

#include <algorithm>
#include <bitset>
#include <optional>
#include <vector>

namespace tarven {

namespace {

using PathBits = std::bitset<MaxPaths>;

/// Sets that cut some of the paths and may still grow upwards.
struct Candidate {
    VariableSet set = 0;
    PathBits uncut;
};

/// The paths through each variable.
One_based<PathBits, MaxVariables> Incidence_of(const SetList& inner) {
    One_based<PathBits, MaxVariables> incidence;
    for (std::size_t path = 0; path < inner.size(); ++path)
        for (const int v : Members(inner[path])) incidence[static_cast<std::size_t>(v)].set(path);
    return incidence;
}

/// The smallest sets that cut every path, each of which has an inner vertex; nothing when the
/// candidates are too many.
std::optional<SetList> Smallest_cuts(const SetList& inner) {
    if (inner.empty()) return SetList{0};
    const One_based<PathBits, MaxVariables> incidence = Incidence_of(inner);
    VariableSet on_paths = 0;
    for (const VariableSet path : inner) on_paths |= path;
    PathBits all;
    for (std::size_t path = 0; path < inner.size(); ++path) all.set(path);

    std::vector<Candidate> level = {{.set = 0, .uncut = all}};
    SetList cuts;
    while (cuts.empty()) {
        std::vector<Candidate> next;
        for (const Candidate& candidate : level) {
            const int last = candidate.set == 0 ? 0 : Highest(candidate.set);
            for (const int v : Members(on_paths & Variables_between(last + 1, MaxVariables))) {
                const PathBits& through = incidence[static_cast<std::size_t>(v)];
                if ((candidate.uncut & through).none()) continue;
                if (next.size() == MaxSeparatorCandidates) return std::nullopt;
                next.push_back({candidate.set | Only(v), candidate.uncut & ~through});
            }
        }
        assert(!next.empty() && "every path has an inner vertex to cut it at");
        for (const Candidate& candidate : next)
            if (candidate.uncut.none()) cuts.push_back(candidate.set);
        level = std::move(next);
    }
    return cuts;
}

Separators Neighbours_of_an_end(const UndirectedGraph& graph, int x, int y) {
    Separators found{.sets = {}, .smallest = false};
    const VariableSet of_x = graph.Neighbours(x) & ~Only(y);
    const VariableSet of_y = graph.Neighbours(y) & ~Only(x);
    if (Size(of_x) <= Size(of_y)) found.sets.push_back(of_x);
    if (Size(of_y) <= Size(of_x)) found.sets.push_back(of_y);
    found.size = Size(found.sets.front());
    return found;
}

}  // namespace

Separators FindSeparators(const UndirectedGraph& graph, int x, int y) {
    UndirectedGraph rest = graph;
    if (rest.Adjacent(x, y)) Part(rest, x, y);
    const VariableSet common = rest.Neighbours(x) & rest.Neighbours(y);
    rest = InducedSubgraph(rest, rest.vertices & ~common);

    const PathList paths = FindPaths(rest, x, y, PathDetail::inner_vertices);
    const std::optional<SetList> cuts =
        paths.complete ? Smallest_cuts(paths.inner) : std::optional<SetList>();
    if (!cuts) {
        Separators found = Neighbours_of_an_end(graph, x, y);
        found.too_many_partial_paths = paths.too_many_partial_paths;
        return found;
    }
    Separators found{.sets = *cuts};
    for (VariableSet& set : found.sets) set |= common;
    found.size = Size(found.sets.front());
    return found;
}

}  // namespace tarven
