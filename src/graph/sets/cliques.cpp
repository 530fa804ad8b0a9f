#include "graph/sets/cliques.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarven {

namespace {

/// The search below one vertex. Vertices of `open` may still join the set, those of `closed` could
/// have joined it but their cliques have been found.
class CliqueSearch {
  public:
    CliqueSearch(const One_based<VariableSet, MaxVariables>& neighbours, std::size_t most)
        : most_(most) {
        std::copy(neighbours.entries.begin() + 1, neighbours.entries.end(), neighbours_.begin());
    }

    /// Finds every clique that holds `set`, members of `open` and none of `closed`.
    void Extend(VariableSet set, VariableSet open, VariableSet closed) {
        if (open == 0) {
            if (closed == 0) Found(set);
            return;
        }
        VariableSet branches = open & ~Neighbours_of_pivot(open, closed);
        while (branches != 0 && !full_) {
            const VariableSet one = branches & (~branches + 1);
            const VariableSet near = neighbours_[static_cast<std::size_t>(Lowest(one) - 1)];
            Extend(set | one, open & near, closed & near);
            open &= ~one;
            closed |= one;
            branches &= ~one;
        }
    }

    SetList found;
    bool full() const { return full_; }

  private:
    void Found(VariableSet set) {
        if (found.size() == most_)
            full_ = true;
        else
            found.push_back(set);
    }

    /// Every clique below holds the pivot or a vertex that is no neighbour of it, so that only the
    /// latter need a branch each. The pivot with the most neighbours in `open` leaves the fewest.
    VariableSet Neighbours_of_pivot(VariableSet open, VariableSet closed) const {
        VariableSet best = 0;
        int most = -1;
        const int all = Size(open);
        // All of `open` near a closed vertex: nothing below is maximal. A vertex of `open` is no
        // neighbour of itself and leaves one branch at least.
        for (auto [rest, reach] : {std::pair{closed, all}, std::pair{open, all - 1}}) {
            for (; rest != 0; rest &= rest - 1) {
                const VariableSet near = neighbours_[static_cast<std::size_t>(Lowest(rest) - 1)];
                const int size = Size(near & open);
                if (size <= most) continue;
                most = size;
                best = near;
                if (size == reach) return best;
            }
        }
        return best;
    }

    std::array<VariableSet, MaxVariables> neighbours_;  ///< of variable v at v-1
    std::size_t most_;
    bool full_ = false;
};

/// Larger sets first, sets of one size in lexicographic order.
void Sort_as_levels_do(SetList& sets) {
    std::sort(sets.begin(), sets.end(), [](VariableSet a, VariableSet b) {
        return Size(a) != Size(b) ? Size(a) > Size(b) : Lexicographically_before(a, b);
    });
}

VariableSet Universal_vertices(const UndirectedGraph& graph) {
    VariableSet universal = 0;
    for (const int v : Members(graph.vertices))
        if (Is_subset(graph.vertices & ~Only(v), graph.Neighbours(v))) universal |= Only(v);
    return universal;
}

/// The vertex of `left` with the fewest neighbours in `left`.
int Vertex_of_lowest_degree(const UndirectedGraph& graph, VariableSet left) {
    int best = 0, fewest = MaxVariables + 1;
    for (const int v : Members(left))
        if (const int degree = Size(graph.Neighbours(v) & left); degree < fewest) {
            best = v;
            fewest = degree;
        }
    return best;
}

}  // namespace

CliqueList FindCliques(const UndirectedGraph& graph, int m) {
    const VariableSet universal = Universal_vertices(graph);
    const UndirectedGraph rest = InducedSubgraph(graph, graph.vertices & ~universal);
    if (rest.vertices == 0) return {.cliques = SetList(universal == 0 ? 0 : 1, universal)};

    const VariableSet earlier = rest.vertices & Variables_between(1, m);
    const VariableSet later = rest.vertices & ~earlier;
    VariableSet isolated = 0;
    for (const int v : Members(earlier))
        if (rest.Neighbours(v) == 0) isolated |= Only(v);

    // Each clique is found below that of its earlier members which comes first.
    CliqueSearch search(rest.neighbours, MaxCliques);
    VariableSet done = isolated;
    for (VariableSet left = earlier & ~isolated; left != 0 && !search.full();) {
        const int v = Vertex_of_lowest_degree(rest, left);
        const VariableSet near = rest.Neighbours(v);
        search.Extend(Only(v), near & ~done, near & done);
        done |= Only(v);
        left &= ~Only(v);
    }
    SetList& found = search.found;
    Sort_as_levels_do(found);
    const auto holds_later = [later](VariableSet set) { return Is_subset(later, set); };
    if (later != 0 && std::none_of(found.begin(), found.end(), holds_later)) found.push_back(later);
    for (const int v : Members(isolated)) found.push_back(Only(v));
    if (search.full() || found.size() > MaxCliques) return {.cliques = {}, .complete = false};
    for (VariableSet& set : found) set |= universal;
    return {.cliques = std::move(found)};
}

CliqueList FindCliques(const UndirectedGraph& graph) {
    return FindCliques(graph, graph.nvar);
}

}  // namespace tarven
