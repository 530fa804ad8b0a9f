#include "graph/sets/cliques.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarven {

namespace {

/// Below this many open vertices a search for the best pivot costs more than it saves.
constexpr int FewOpen = 10;

/// The search below one vertex. Vertices of `open` may still join the set, those of `closed` could
/// have joined it but their cliques have been found.
class CliqueSearch {
  public:
    CliqueSearch(const One_based<VariableSet, MaxVariables>& neighbours, std::size_t most)
        : most_(most) {
        std::copy(neighbours.entries.begin() + 1, neighbours.entries.end(), neighbours_.begin());
    }

    /// Finds every clique that holds `set`, of `size` members, members of `open` and none of
    /// `closed`.
    void Extend(VariableSet set, std::size_t size, VariableSet open, VariableSet closed) {
        if (open == 0) {
            if (closed == 0) Found(set, size);
            return;
        }
        VariableSet branches = Branches(open, closed);
        while (branches != 0 && count_ <= most_) {
            const VariableSet one = branches & (~branches + 1);
            const VariableSet near = Near(one);
            Extend(set | one, size + 1, open & near, closed & near);
            open &= ~one;
            closed |= one;
            branches &= ~one;
        }
    }

    std::size_t count() const { return count_; }  ///< at most one more than the most

    /// Larger sets first, sets of one size in lexicographic order.
    SetList In_order() {
        SetList all;
        all.reserve(count_);
        for (auto sets = by_size_.rbegin(); sets != by_size_.rend(); ++sets) {
            std::sort(sets->begin(), sets->end(), [](VariableSet a, VariableSet b) {
                // Of two sets of one size that goes first which holds the lowest difference.
                const VariableSet difference = a ^ b;
                return (a & difference & (~difference + 1)) != 0;
            });
            all.insert(all.end(), sets->begin(), sets->end());
        }
        return all;
    }

  private:
    void Found(VariableSet set, std::size_t size) {
        if (++count_ <= most_) by_size_[size].push_back(set);
    }

    /// Neighbours of the lowest vertex of a set.
    VariableSet Near(VariableSet set) const {
        return neighbours_[static_cast<std::size_t>(Lowest(set) - 1)];
    }

    /// The open vertices of which every clique below holds one at least: all but the neighbours of
    /// a pivot, which is one of them itself or closed. None when a closed vertex is a neighbour of
    /// all open ones, since then nothing below is maximal.
    VariableSet Branches(VariableSet open, VariableSet closed) const {
        for (VariableSet rest = closed; rest != 0; rest &= rest - 1)
            if ((open & ~Near(rest)) == 0) return 0;
        VariableSet best = open & ~Near(open);
        if (Size(open) < FewOpen) return best;
        int fewest = Size(best);
        for (VariableSet rest = open | closed; rest != 0 && fewest > 1; rest &= rest - 1) {
            const VariableSet branches = open & ~Near(rest);
            if (const int size = Size(branches); size < fewest) {
                fewest = size;
                best = branches;
            }
        }
        return best;
    }

    std::array<VariableSet, MaxVariables> neighbours_;  ///< of variable v at v-1
    std::array<SetList, MaxVariables + 1> by_size_;
    std::size_t most_;
    std::size_t count_ = 0;
};

VariableSet Universal_vertices(const UndirectedGraph& graph) {
    VariableSet universal = 0;
    for (const int v : Members(graph.vertices))
        if (Is_subset(graph.vertices & ~Only(v), graph.Neighbours(v))) universal |= Only(v);
    return universal;
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

    // Each clique is found below the lowest of its earlier members.
    CliqueSearch search(rest.neighbours, MaxCliques);
    VariableSet done = isolated;
    for (const int v : Members(earlier & ~isolated)) {
        const VariableSet near = rest.Neighbours(v);
        search.Extend(Only(v), 1, near & ~done, near & done);
        done |= Only(v);
        if (search.count() > MaxCliques) return {.cliques = {}, .complete = false};
    }
    SetList found = search.In_order();
    const auto holds_later = [later](VariableSet set) { return Is_subset(later, set); };
    if (later != 0 && std::none_of(found.begin(), found.end(), holds_later)) found.push_back(later);
    for (const int v : Members(isolated)) found.push_back(Only(v));
    if (found.size() > MaxCliques) return {.cliques = {}, .complete = false};
    for (VariableSet& set : found) set |= universal;
    return {.cliques = std::move(found)};
}

CliqueList FindCliques(const UndirectedGraph& graph) {
    return FindCliques(graph, graph.nvar);
}

}  // namespace tarven
