#include "graph/model/marginal_model.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "graph/sets/cliques.h"
#include "graph/sets/set_lists.h"

namespace tarven {

namespace {

/// Statuses of the pairs of members.
void Copy_statuses(const ChainGraph& graph, MarginalModelRecord& model) {
    for (const int i : Members(model.members()))
        for (const int j : Members(model.members()))
            model.SUBSTATUS[At(i)][At(j)] = i == j ? std::uint8_t{Fixed} : graph.StatusOf(i, j);
}

/// Joins the members of an incomplete boundary. Two explanatory ones are adjacent already, since
/// the later variables of the regression graph are complete, and keep their status.
void Fill_boundary(VariableSet boundary, MarginalModelRecord& model) {
    Complete(model.THESUBGRF, boundary);
    for (const int i : Members(boundary & model.block_1))
        for (const int j : Members(boundary & ~Only(i)))
            model.SUBSTATUS[At(i)][At(j)] = model.SUBSTATUS[At(j)][At(i)] = Fixed;
}

void Collapse(const UndirectedGraph& regression, MarginalModelRecord& model) {
    model.components =
        Connected_components(InducedSubgraph(regression, regression.vertices & ~model.members()));
    SetList incomplete;
    for (const VariableSet component : model.components) {
        const Boundary found = FindBoundary(regression, component);
        model.BOUNDARIES.push_back(found.boundary);
        if (found.complete) continue;
        model.strong = false;
        incomplete.push_back(found.boundary);
        Fill_boundary(found.boundary, model);
    }
    model.BOUNDARIES = RemoveSubsets(model.BOUNDARIES);
    // What RemoveSubsets leaves of the cliques and the incomplete boundaries, without comparing the
    // cliques with each other: none holds another, nor a set that is not complete.
    incomplete = RemoveSubsets(incomplete);
    for (const VariableSet clique : model.SUBCLIQUES) {
        const auto holds = [clique](VariableSet boundary) { return Is_subset(clique, boundary); };
        if (std::none_of(incomplete.begin(), incomplete.end(), holds))
            model.generators.push_back(clique);
    }
    model.generators.insert(model.generators.end(), incomplete.begin(), incomplete.end());
}

/// The non-empty subsets of a generator, by size and in lexicographic order.
SetList Subsets_of(VariableSet generator) {
    SetList subsets;
    for (VariableSet set = generator; set != 0; set = (set - 1) & generator) subsets.push_back(set);
    std::sort(subsets.begin(), subsets.end(), [](VariableSet a, VariableSet b) {
        return Size(a) != Size(b) ? Size(a) < Size(b) : Lexicographically_before(a, b);
    });
    return subsets;
}

/// The sets of the list that are not in a boundary; from the last generator to the first, so that a
/// set stands with the last one that holds it.
void Find_free_sets(MarginalModelRecord& model) {
    std::unordered_set<VariableSet> seen;
    for (auto g = model.generators.rbegin(); g != model.generators.rend(); ++g) {
        if (Size(*g) > MostFreeVariables) continue;
        SetList inside;
        for (const VariableSet boundary : model.BOUNDARIES) inside.push_back(boundary & *g);
        inside = RemoveSubsets(inside);
        const SetList subsets = Subsets_of(*g);
        for (auto set = subsets.rbegin(); set != subsets.rend(); ++set) {
            const auto holds = [&](VariableSet boundary) { return Is_subset(*set, boundary); };
            if (std::any_of(inside.begin(), inside.end(), holds)) continue;
            if (!seen.insert(*set).second) continue;
            if (model.FREE.size() == MaxFreeSets) {
                model.FREE.clear();
                model.free_identified = false;
                return;
            }
            model.FREE.push_back(*set);
        }
    }
    std::reverse(model.FREE.begin(), model.FREE.end());
}

void Ask_about_pair(MarginalModelRecord& model) {
    const VariableSet both = Only(model.pair.first) | Only(model.pair.second);
    model.conditionally_independent = true;
    for (const VariableSet generator : model.generators) {
        if (!Is_subset(both, generator)) continue;
        model.conditionally_independent = false;
        model.modifiers |= generator & ~both;
    }
}

}  // namespace

MarginalModelRecord MarginalModel(const ChainGraph& graph, std::span<const int> variables) {
    MarginalModelRecord model;
    VariableSet members = 0;
    for (const int v : variables) {
        if (Size(members) == 1 && !Contains(members, v)) model.pair = {variables.front(), v};
        members |= Only(v);
    }
    if (members == 0) return model;
    const int b = graph.BlockOf(Lowest(members));
    const int last = b <= graph.Nblocks ? graph.Cutpoints[At(b)] : graph.nvar;
    model.block_1 = members & Variables_between(1, last);
    model.block_2 = members & ~model.block_1;
    Copy_statuses(graph, model);

    const UndirectedGraph regression = RegressionGraph(graph, b, LaterVariables::complete);
    model.THESUBGRF = InducedSubgraph(regression, members);
    CliqueList found = FindCliques(model.THESUBGRF, last);
    model.cliques_found = found.complete;
    model.SUBCLIQUES = std::move(found.cliques);
    if (!model.cliques_found) return model;
    Collapse(regression, model);

    found = FindCliques(model.THESUBGRF, last);
    model.cliques_found = found.complete;
    if (!model.cliques_found) return model;
    model.CLIQUES = std::move(found.cliques);
    model.graphical = SameSetLists(model.CLIQUES, model.generators);
    Find_free_sets(model);
    if (model.pair.second != 0) Ask_about_pair(model);
    return model;
}

}  // namespace tarven
