#include "rasch/items/gllrm.h"

#include <algorithm>

namespace tarven {

namespace {

constexpr std::int64_t LargestProduct = std::int64_t{1} << 62;

/// Both from 1 on; stops at LargestProduct.
std::int64_t Bounded_product(std::int64_t a, std::int64_t b) {
    return a > LargestProduct / b ? LargestProduct : a * b;
}

/// The items that can be reached from `start` by dependences.
NumberSet Reached_from(const GLLRM& model, int start) {
    NumberSet reached = Number(start), before = 0;
    while (reached != before) {
        before = reached;
        for (int i = 1; i <= model.NITEMS; ++i)
            if (Has_number(before, i))
                reached |= model.LocalDependence[static_cast<std::size_t>(i)];
    }
    return reached;
}

}  // namespace

int Largest_possible_score(const GLLRM& model) {
    int sum = 0;
    for (int i = 1; i <= model.NITEMS; ++i) sum += model.ItemNo(i).Item_maxscore();
    return sum;
}

int highest_possible_score(const GLLRM& model) {
    int sum = 0;
    for (int i = 1; i <= model.NITEMS; ++i) sum += model.ItemNo(i).highest_Item_score;
    return sum;
}

int Highest_item_maxscore(const GLLRM& model) {
    int highest = 0;
    for (int i = 1; i <= model.NITEMS; ++i)
        highest = std::max(highest, model.ItemNo(i).Item_maxscore());
    return highest;
}

std::string Labels_of_set(const GLLRM& model, NumberSet items) {
    std::string labels;
    for (int i = 1; i <= model.NITEMS; ++i)
        if (Has_number(items, i)) labels += model.ItemNo(i).label;
    return labels;
}

std::string Item_labels(const GLLRM& model) {
    std::string labels;
    for (int i = 1; i <= model.NITEMS; ++i) labels += model.ItemNo(i).label;
    return labels;
}

std::string Exo_labels(const GLLRM& model) {
    std::string labels;
    for (int x = 1; x <= model.NEXOGENE; ++x) labels += model.ExoNo(x).label;
    return labels;
}

NumberSet DIFsources(const GLLRM& model) {
    NumberSet sources = 0;
    for (int i = 1; i <= model.NITEMS; ++i) sources |= model.ItemBias[static_cast<std::size_t>(i)];
    return sources;
}

std::int64_t BiasDim(const GLLRM& model) {
    const NumberSet sources = DIFsources(model);
    std::int64_t cells = 1;
    for (int x = 1; x <= model.NEXOGENE; ++x)
        if (Has_number(sources, x)) cells = Bounded_product(cells, model.ExoNo(x).exo_dim);
    if (model.ItemScoreInteractions != 0)
        cells = Bounded_product(cells, std::max(1, model.groups.ScoreDim));
    return cells;
}

ItemComponentList Item_components(const GLLRM& model) {
    ItemComponentList list;
    for (int i = 1; i <= model.NITEMS; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (list.component[at] != 0 || model.LocalDependence[at] == 0) continue;
        const NumberSet items = Reached_from(model, i);
        list.ItemComponents[static_cast<std::size_t>(++list.NitemComponents)] = items;
        for (int j = i; j <= model.NITEMS; ++j)
            if (Has_number(items, j))
                list.component[static_cast<std::size_t>(j)] = list.NitemComponents;
    }
    return list;
}

std::int64_t Response_vectors(const GLLRM& model, NumberSet items) {
    std::int64_t vectors = 1;
    for (int i = 1; i <= model.NITEMS; ++i)
        if (Has_number(items, i))
            vectors = Bounded_product(vectors, std::max(1, model.ItemNo(i).item_dim));
    return vectors;
}

}  // namespace tarven
