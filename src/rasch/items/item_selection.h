#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "project/project.h"
#include "rasch/items/gllrm.h"
#include "shell/result.h"

namespace tarven {

/// Choosing items and exogenous variables from what is typed.

/// A list of variables as typed: labels, numbers and "*" for all. Each once, in the order typed,
/// with the sign of its last mention; "-*" are all variables with one.
struct TypedVariables {
    std::vector<int> variables;  ///< project variable numbers
    std::vector<bool> flipped;   ///< parallel: a "-" stands before it
    bool sets_flips = false;     ///< a "-" stands anywhere, so the flags of all are set by the line
    bool ok = true;              ///< false: something is no label; numbers above N mean nothing
    std::string not_understood;  ///< the first of it
    bool cut = false;            ///< there is more behind the first 120 characters
};

/// Reads the first 120 characters of a line behind its keyword; a number that goes on behind them
/// is not taken. "#", which is no project variable,
/// "+" and "?" are passed over.
TypedVariables Read_variables_of_line(std::string_view line, const ProjectDefinition& project);

/// The variables of a list that `others` does not hold, and the labels of those that it does.
struct Separated {
    std::vector<int> kept;
    std::string dropped;
};
Separated Leave_out(const std::vector<int>& variables, const std::vector<int>& others,
                    const ProjectDefinition& project);

std::vector<int> Variables_of_items(const GLLRM& model);
std::vector<int> Variables_of_exogenous(const GLLRM& model);

/// The model with these variables as its items and without terms and score groups; the exogenous
/// variables stay. Fails with fewer than two, more than 54, nominal variables of more than two
/// categories, more than 8 categories, or a maximum score above 253.
Result<GLLRM> With_items(const GLLRM& model, const std::vector<int>& variables,
                         const ProjectDefinition& project,
                         const One_based<bool, MaxVariables>& flipped);

/// The model with these exogenous variables and without terms of DIF; the rest stays.
GLLRM With_exogenous(GLLRM model, const std::vector<int>& variables,
                     const ProjectDefinition& project);

/// Whether the items have unequal numbers of categories.
bool Has_unequal_items(const GLLRM& model);

/// The lowest recursive block among the items; 0 without items.
int Item_block(const GLLRM& model, const ProjectDefinition& project);

}  // namespace tarven
