#include "graph/sets/paths.h"

#include <algorithm>
#include <array>

#include "shell/limits.h"

namespace tarven {

namespace {

/// A path on its way. Its vertices in order are found by going back over its parents.
struct PartialPath {
    VariableSet vertices = 0;  ///< both ends included
    std::uint32_t parent = 0;  ///< among all partial paths
    std::uint8_t last = 0;
    std::uint8_t before = 0;  ///< the last but one, 0 without one
};

class PathSearch {
  public:
    PathSearch(const UndirectedGraph& graph, int from, int to, PathDetail detail)
        : graph_(graph), from_(from), to_(to), detail_(detail) {}

    PathList Run() {
        const std::int64_t limit = Partial_path_limit(graph_.nvar);
        made_.push_back({.vertices = Only(from_), .last = static_cast<std::uint8_t>(from_)});
        std::size_t first = 0;
        for (int level = 1; level < graph_.nvar && first < made_.size(); ++level) {
            const std::size_t end = made_.size();
            level_end_ = end + static_cast<std::size_t>(limit);
            for (std::size_t k = first; k < end; ++k)
                if (!Advance(k, level)) return std::move(list_);
            first = end;
            list_.most_partial_paths =
                std::max(list_.most_partial_paths, static_cast<std::int64_t>(made_.size() - end));
        }
        return std::move(list_);
    }

  private:
    /// Takes every step from the end of a partial path. False when a limit ends the search.
    bool Advance(std::size_t k, int level) {
        const PartialPath path = made_[k];
        VariableSet next = graph_.Neighbours(path.last) & ~path.vertices;
        if (level >= 2) next &= ~graph_.Neighbours(path.before) | Only(to_);
        if (Contains(next, to_)) {
            if (!Arrive(k)) return false;
            if (level >= 2) return true;
            next &= ~Only(to_);
        }
        for (const int v : Members(next)) {
            const VariableSet vertices = path.vertices | Only(v);
            if (Dominated(v, vertices)) continue;
            if (made_.size() >= level_end_) {
                list_.complete = false;
                list_.too_many_partial_paths = true;
                return false;
            }
            made_.push_back({.vertices = vertices,
                             .parent = static_cast<std::uint32_t>(k),
                             .last = static_cast<std::uint8_t>(v),
                             .before = path.last});
        }
        return true;
    }

    /// Stores the path that leads from partial path k to the other end, unless an earlier one
    /// dominates it. False when there is no room for it.
    bool Arrive(std::size_t k) {
        if (list_.inner.size() == MaxPaths) {
            list_.complete = false;
            return false;
        }
        const VariableSet inner = made_[k].vertices & ~Only(from_);
        const auto within = [inner](VariableSet earlier) {
            return earlier != 0 && Is_subset(earlier, inner);
        };
        if (std::any_of(list_.inner.begin(), list_.inner.end(), within)) return true;
        list_.inner.push_back(inner);
        if (inner != 0) arriving_from_[At(made_[k].last)].push_back(inner);
        if (detail_ == PathDetail::whole_paths) list_.paths.push_back(Vertices_of(k));
        return true;
    }

    std::vector<int> Vertices_of(std::size_t k) const {
        std::vector<int> vertices = {to_};
        for (;; k = made_[k].parent) {
            vertices.push_back(made_[k].last);
            if (made_[k].before == 0) break;
        }
        std::reverse(vertices.begin(), vertices.end());
        return vertices;
    }

    /// Whether an earlier path lies within the vertices of a partial path that ends in v. Its last
    /// inner vertex is a neighbour of the end that is looked for, where a partial path arrives and
    /// goes no further; so only v can be that vertex.
    bool Dominated(int v, VariableSet vertices) const {
        bool dominated = false;
        for (const VariableSet inner : arriving_from_[At(v)])
            dominated |= Is_subset(inner, vertices);
        return dominated;
    }

    const UndirectedGraph& graph_;
    int from_, to_;
    PathDetail detail_;
    PathList list_;
    std::vector<PartialPath> made_;  ///< all of them, those of one length together
    std::size_t level_end_ = 0;      ///< how many there may be with those of this length
    /// [v]: inner vertices of the paths whose last inner vertex is v.
    One_based<SetList, MaxVariables> arriving_from_;
};

}  // namespace

std::int64_t Partial_path_limit(int nvar) {
    return std::int64_t{CountArraySize} * MaxCountArrays / std::max(nvar, 1);
}

PathList FindPaths(const UndirectedGraph& graph, int from, int to, PathDetail detail) {
    assert(from != to && "a path has two ends");
    return PathSearch(graph, from, to, detail).Run();
}

}  // namespace tarven
