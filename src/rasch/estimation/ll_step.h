#pragma once

#include <optional>

#include "rasch/estimation/score_polynomial.h"
#include "rasch/estimation/sufficient_margins.h"
#include "shell/stop_check.h"

namespace tarven {

/// Steps of proportional fitting: each parameter is multiplied by its observed over its expected
/// margin, until they agree. Darroch & Ratcliff (1972), Ann. Math. Statist. 43, 1470-1480.

/// The row and the column of a table with the most non-empty cells, the first on a tie.
struct ReferenceCell {
    int rows_used = 0;     ///< rows with a non-empty cell
    int columns_used = 0;  ///< columns with one
    int row = 0;
    int column = 0;
};
ReferenceCell Reference_of(const ScoreTable<std::int64_t>& observed);

/// Non-empty cells outside the reference row and the reference column: the parameters of a table.
int Free_cells(const ScoreTable<std::int64_t>& observed);

/// Divides the parameters of an interaction by those of the reference row and column, which become
/// 1; an empty cell of these is replaced by the first non-empty cell of its row or column. Nothing
/// of this is made good in the item parameters: the next step does it, and compensated steps that
/// fit all tables at once overshoot.
void Normalise_interaction(const ScoreTable<std::int64_t>& observed,
                           ScoreTable<Extended>& parameters);

/// eps(i,low) = 1 of every item, then the origin of theta: the product of the parameters of the top
/// categories of the items that are not degenerate becomes 1.
void Normalise_items(const ModelStructure& structure, const SufficientMargins& margins,
                     GLLRMParameters& parameters);

/// 1 where there are persons, else 0. Ranges as observed.
GLLRMParameters Start_parameters(const ModelStructure& structure, const SufficientMargins& margins);

/// Keeps the parameters of another estimate of the same structure: 0 where there are no persons
/// now, 1 where there were none then.
GLLRMParameters Start_from(const ModelStructure& structure, const SufficientMargins& margins,
                           const GLLRMParameters& parameters);

/// What may be chosen of a step.
struct StepOptions {
    /// Leaves out the lowest category of each item, whose parameter the normalisation makes 1
    /// again.
    bool lowest_categories_stay = false;
};

/// One step: expected margins at the parameters as they are, then all tables at once, LD, DIF,
/// items, and their normalisations. Returns Delta, the largest gap between an observed and an
/// expected margin in persons, as it was before. Margins of degenerate items, and of interactions
/// with them, count as fitted. `stop` is asked within the calculation of the margins; a step that
/// it ends has no Delta and leaves the parameters as they were.
std::optional<Extended> Take_a_LL_step(const ModelStructure& structure,
                                       const SufficientMargins& margins, const StepOptions& options,
                                       PolynomialMemory& memory, ExpectedMargins& expected,
                                       GLLRMParameters& parameters, const StopCheck& stop = {});

/// A sweep of one table at a time: the items, each pair, each term, the expected margins made anew
/// before each. It costs as many steps as there are tables, but the likelihood cannot fall. Nothing
/// is normalised, which would throw back what the tables before have reached. Returns the largest
/// gap that a table had before its turn. `stop` as in a step: a sweep that it ends leaves the
/// parameters of before the sweep.
std::optional<Extended> Take_a_sweep(const ModelStructure& structure,
                                     const SufficientMargins& margins, const StepOptions& options,
                                     PolynomialMemory& memory, ExpectedMargins& expected,
                                     GLLRMParameters& parameters, const StopCheck& stop = {});

/// The normalisation of interactions and items that leaves all probabilities as they are, for
/// parameters after sweeps: what an interaction loses goes into its items. Where the reference row
/// and the reference column cross in an empty cell, the reference column is the fullest one that
/// the row has.
void Normalise_whole_model(const ModelStructure& structure, const SufficientMargins& margins,
                           GLLRMParameters& parameters);

/// Raises parameters until the thresholds of each item are ordered: eps(i,x) is at least
/// sqrt(eps(i,x-1) eps(i,x+1)). At most passes of them; false when nothing had to be raised.
bool Order_thresholds(const ModelStructure& structure, const SufficientMargins& margins, int passes,
                      GLLRMParameters& parameters);

/// Expected margins as the fit counts them: those of degenerate items and of interactions with them
/// are the observed ones.
void Take_observed_of_degenerate(const ModelStructure& structure, const SufficientMargins& margins,
                                 ExpectedMargins& expected);

}  // namespace tarven
