#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "rasch/items/gllrm.h"
#include "shell/limits.h"
#include "shell/numbers.h"
#include "shell/one_based.h"

namespace tarven {

/// What estimation and everything behind it reads of a GLLRM: its terms as lists, the connected
/// components of its items, and the multiplicative parameters.

inline constexpr int ItemScores = MaxItemScore + 1;  ///< scores 0..7 of an item

/// Response vectors of a component that are enumerated at most. Every command that estimates a
/// model, or proposes one, holds to this limit.
inline constexpr std::int64_t MaxComponentVectors = std::int64_t{1} << 20;

/// Two locally dependent items, item < other.
struct ItemPair {
    int item = 0;
    int other = 0;
};

/// A source of DIF: an exogenous variable, or the score groups as variable NEXOGENE + 1.
struct DifSource {
    int variable = 0;
    int categories = 0;
};

/// A term of an item with a source of DIF; `source` counts from 0 in the list of sources.
struct DifTerm {
    int item = 0;
    int source = 0;
};

/// Items joined by local dependence; an item without any stands alone.
struct ItemComponent {
    std::vector<int> items;  ///< ascending
    std::vector<int> pairs;  ///< the dependent pairs within, as places in the list of pairs
    NumberSet sources = 0;   ///< source k of the list, from 0, is in when bit k is set
};

struct ModelStructure {
    int NITEMS = 0;
    std::vector<ItemPair> pairs;            ///< in item order, the second item inner
    std::vector<DifTerm> terms;             ///< in item order, the variables inner, "#" last
    std::vector<DifSource> sources;         ///< in the order of the exogenous variables, "#" last
    std::vector<ItemComponent> components;  ///< in the order of their first items
    bool by_score_groups = false;           ///< the last source is the score groups

    std::vector<int> terms_of(int item) const;
};

ModelStructure Structure_of(const GLLRM& model);

/// The first component of more than MaxComponentVectors response vectors.
struct OversizedComponent {
    std::vector<int> items;
    std::int64_t vectors = 0;  ///< as Response_vectors
};
std::optional<OversizedComponent> Find_oversized_component(const GLLRM& model,
                                                           const ModelStructure& structure);

/// "Too many response vectors in the component AB...: 2097152 > 1048576"
std::string Oversized_component_message(const GLLRM& model, const OversizedComponent& component);

/// A table of the scores 0..7 of an item (rows) by the scores of another item or the categories of
/// a variable (columns, from 0).
template <class T>
struct ScoreTable {
    int columns = 0;
    std::vector<T> cells;  ///< column by column

    ScoreTable() = default;
    explicit ScoreTable(int count, T value = {})
        : columns(count), cells(static_cast<std::size_t>(count * ItemScores), value) {}
    T& operator()(int score, int column) {
        return cells[static_cast<std::size_t>(column) * std::size_t{ItemScores} +
                     static_cast<std::size_t>(score)];
    }
    const T& operator()(int score, int column) const {
        return cells[static_cast<std::size_t>(column) * std::size_t{ItemScores} +
                     static_cast<std::size_t>(score)];
    }
    void Fill(T value) { cells.assign(cells.size(), value); }
};

/// One value for each score of each item: [i][x].
template <class T>
using ItemTable = One_based<std::array<T, ItemScores>, MaxItems>;

/// Multiplicative parameters. Scores outside low..high of an item, and those that nobody had, hold
/// 0 everywhere.
struct GLLRMParameters {
    ItemTable<Extended> eps;
    One_based<int, MaxItems> low;
    One_based<int, MaxItems> high;
    std::vector<ScoreTable<Extended>> lambda;  ///< parallel to the pairs; columns: the other item
    std::vector<ScoreTable<Extended>> delta;   ///< parallel to the terms; columns: the categories
};

}  // namespace tarven
