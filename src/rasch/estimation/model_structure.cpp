#include "rasch/estimation/model_structure.h"

#include <fmt/format.h>

#include <algorithm>

namespace tarven {

namespace {

void Read_pairs(const GLLRM& model, ModelStructure& structure) {
    for (int i = 1; i < model.NITEMS; ++i)
        for (int j = i + 1; j <= model.NITEMS; ++j)
            if (model.Dependent(i, j)) structure.pairs.push_back({i, j});
}

void Read_terms(const GLLRM& model, ModelStructure& structure) {
    One_based<int, MaxVariables> place;
    for (int x = 1; x <= model.NEXOGENE; ++x) {
        bool used = false;
        for (int i = 1; i <= model.NITEMS; ++i) used = used || model.Biased(i, x);
        if (!used) continue;
        place[static_cast<std::size_t>(x)] = static_cast<int>(structure.sources.size());
        structure.sources.push_back({x, model.ExoNo(x).exo_dim});
    }
    for (int i = 1; i <= model.NITEMS; ++i)
        structure.by_score_groups |= Has_number(model.ItemScoreInteractions, i);
    if (structure.by_score_groups)
        structure.sources.push_back({model.NEXOGENE + 1, model.groups.ScoreDim});
    for (int i = 1; i <= model.NITEMS; ++i) {
        for (int x = 1; x <= model.NEXOGENE; ++x)
            if (model.Biased(i, x))
                structure.terms.push_back({i, place[static_cast<std::size_t>(x)]});
        if (Has_number(model.ItemScoreInteractions, i))
            structure.terms.push_back({i, static_cast<int>(structure.sources.size()) - 1});
    }
}

void Read_components(const GLLRM& model, ModelStructure& structure) {
    const ItemComponentList dependent = Item_components(model);
    NumberSet placed = 0;
    for (int i = 1; i <= model.NITEMS; ++i) {
        if (Has_number(placed, i)) continue;
        const int c = dependent.component[static_cast<std::size_t>(i)];
        const NumberSet members = c > 0 ? dependent.Items(c) : Number(i);
        placed |= members;
        ItemComponent component;
        for (int j = i; j <= model.NITEMS; ++j)
            if (Has_number(members, j)) component.items.push_back(j);
        for (std::size_t k = 0; k < structure.pairs.size(); ++k)
            if (Has_number(members, structure.pairs[k].item))
                component.pairs.push_back(static_cast<int>(k));
        for (const DifTerm& term : structure.terms)
            if (Has_number(members, term.item)) component.sources |= Number(term.source + 1);
        structure.components.push_back(std::move(component));
    }
}

}  // namespace

std::vector<int> ModelStructure::terms_of(int item) const {
    std::vector<int> found;
    for (std::size_t k = 0; k < terms.size(); ++k)
        if (terms[k].item == item) found.push_back(static_cast<int>(k));
    return found;
}

ModelStructure Structure_of(const GLLRM& model) {
    ModelStructure structure;
    structure.NITEMS = model.NITEMS;
    Read_pairs(model, structure);
    Read_terms(model, structure);
    Read_components(model, structure);
    return structure;
}

std::optional<OversizedComponent> Find_oversized_component(const GLLRM& model,
                                                           const ModelStructure& structure) {
    for (const ItemComponent& component : structure.components) {
        NumberSet items = 0;
        for (const int i : component.items) items |= Number(i);
        const std::int64_t vectors = Response_vectors(model, items);
        if (vectors > MaxComponentVectors) return OversizedComponent{component.items, vectors};
    }
    return {};
}

std::string Oversized_component_message(const GLLRM& model, const OversizedComponent& component) {
    std::string labels;
    for (const int i : component.items) labels += model.ItemNo(i).label;
    return fmt::format("Too many response vectors in the component {}: {} > {}", labels,
                       component.vectors, MaxComponentVectors);
}

}  // namespace tarven
