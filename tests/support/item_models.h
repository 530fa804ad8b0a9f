#pragma once

#include <random>
#include <string>
#include <vector>

#include "rasch/items/gllrm.h"
#include "rasch/items/response_table.h"

namespace tarven {

/// A model of items of `item_dims` categories on variables 1, 2, ... with labels A, B, ..., and
/// exogenous variables of `exo_dims` behind them; two score groups cut at half the largest score.
GLLRM Model_of_dims(const std::vector<int>& item_dims, const std::vector<int>& exo_dims = {});

/// The labels of its variables in their order.
std::string Labels_of(const GLLRM& model);

/// Random responses, missing ones among them with the chance `missing` of 100; patterns in
/// ascending order, each once.
ResponseTable Random_responses(std::mt19937& random, const GLLRM& model, int persons,
                               unsigned missing);

}  // namespace tarven
