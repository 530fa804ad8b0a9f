#pragma once

#include <string>
#include <vector>

#include "rasch/items/gllrm.h"
#include "rasch/items/item_frequencies.h"
#include "rasch/items/score_distribution.h"

namespace tarven {

// Lines on the items and the exogenous variables of a model.

/// What ITEMS says: number, labels, scores, bounds of scores with complete item patterns. `blocks`
/// are the recursive blocks of the project; `item_block` is told when there is more than one.
std::vector<std::string> Selected_items_lines(const GLLRM& model, int item_block, int blocks);

/// What is odd about the responses: items that nobody has answered, or all alike.
std::vector<std::string> Remarks_on_items(const GLLRM& model, const ItemCounts& counts);

/// The items with their names, categories, counts by score, missing responses and means.
std::vector<std::string> Item_list_lines(const GLLRM& model, const ItemCounts& counts);

/// Means of the items in each category of exogenous variable x. `names` of categories 1.. at 0..
std::vector<std::string> Item_means_lines(const GLLRM& model, int x,
                                          const std::vector<ItemCounts>& counts,
                                          const std::vector<std::string>& names);

/// What EXO says of one variable: its categories with their persons, empty ones named.
std::vector<std::string> Exogenous_lines(const GLLRM& model, int x,
                                         const std::vector<ItemCounts>& counts,
                                         const std::vector<std::string>& names);

/// The components: their items and dependences.
std::vector<std::string> Component_lines(const GLLRM& model);

/// The distribution of each component's score in each score group.
std::vector<std::string> Component_score_lines(const GLLRM& model,
                                               const std::vector<ComponentScores>& scores);

}  // namespace tarven
