#pragma once

#include <random>
#include <string>
#include <vector>

#include "rasch/estimation/model_structure.h"
#include "rasch/items/gllrm.h"
#include "rasch/items/response_table.h"

namespace tarven {

/// A model and the persons who answered its items.
struct ItemSample {
    GLLRM model;
    ResponseTable table;
};

/// The items and exogenous variables of examples/verbal (A to X, Z anger, Y gender) or of
/// examples/rasch30, a pattern a person.
ItemSample Example_items(const std::string& project);

/// The model with these terms instead of its own: "AB CY".
GLLRM With_terms_of(const GLLRM& model, const std::string& terms);

/// A table of persons, each the item scores and then the exogenous categories; -1 is missing.
ResponseTable Table_of_persons(const GLLRM& model, const std::vector<std::vector<int>>& persons);

/// Random parameters of a model, all categories possible: ln between -1 and 1, the references of
/// interactions 1.
GLLRMParameters Random_parameters(std::mt19937& random, const GLLRM& model);

/// All response vectors with every item's score in 0..Item_maxscore(), the first item fastest.
std::vector<std::vector<int>> All_response_vectors(const GLLRM& model);

/// The product of the parameters of a response vector in one cell of the sources, over the items of
/// a set and the pairs within it.
Extended Weight_of(const ModelStructure& structure, const GLLRMParameters& parameters,
                   const std::vector<int>& scores, const std::vector<std::uint8_t>& categories,
                   NumberSet items);

/// Persons with the given abilities drawn from the model; exogenous categories are uniform.
ResponseTable Simulated_persons(std::mt19937& random, const GLLRM& model,
                                const GLLRMParameters& parameters, int persons, double sd_of_theta);

}  // namespace tarven
