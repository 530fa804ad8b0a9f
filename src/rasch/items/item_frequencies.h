#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "rasch/items/gllrm.h"
#include "rasch/items/response_table.h"

namespace tarven {

/// Counts of responses and scores, as a whole and by the categories of an exogenous variable.

/// Persons of one kind: all of them, or those of one category.
struct ItemCounts {
    std::int64_t persons = 0;
    /// [i][x]: persons with score x of item i, whatever else they have answered.
    One_based<std::array<std::int64_t, MaxItemScore + 1>, MaxItems> counts{};

    std::int64_t Responses(int i) const;
    /// Mean score of item i, 0 without responses.
    double Mean(int i) const;
};

ItemCounts Item_counts(const ResponseTable& table);
/// [c] of the persons with category c of exogenous variable x; [0] those without one.
std::vector<ItemCounts> Item_counts_by(const ResponseTable& table, const GLLRM& model, int x);

/// Complete persons of one category and their scores.
struct ScoresOfCategory {
    std::int64_t persons = 0;
    double mean = 0;                         ///< 0 without persons
    double standard_deviation = 0;           ///< with n-1; 0 below two persons
    std::vector<std::int64_t> group_counts;  ///< [g], [0] outside every group
};

/// All complete persons.
ScoresOfCategory Scores_of_all(const ResponseTable& table, const GLLRM& model);
/// [c] those with category c of exogenous variable x; [0] those without one.
std::vector<ScoresOfCategory> Scores_by(const ResponseTable& table, const GLLRM& model, int x);

/// Scores of a component, the sum of its items, by score group: how the component's part of a score
/// is distributed where the whole score is held in a group.
struct ComponentScores {
    NumberSet items = 0;
    int highest = 0;  ///< highest score of the component
    /// [g][t]: complete persons of group g with component score t; [0] those outside every group.
    std::vector<std::vector<std::int64_t>> counts;
};

/// One for each component of the model.
std::vector<ComponentScores> Component_scores(const ResponseTable& table, const GLLRM& model);

}  // namespace tarven
