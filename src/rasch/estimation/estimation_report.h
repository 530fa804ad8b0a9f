#pragma once

#include <optional>
#include <string>
#include <vector>

#include "rasch/estimation/estimate_gllrm.h"

namespace tarven {

/// The report of an estimated GLLRM, block by block.

enum class EstimationBlock : std::uint8_t {
    assumptions = 1,  ///< bounds, filters and the model
    counts,           ///< persons, degenerate items, range of the scores
    stop_criteria,
    result,  ///< the course of the iteration, likelihood, and the parameters
    margins  ///< observed and expected sufficient margins
};

/// The category names of the exogenous variables: category c of variable x at [x-1][c-1]. What is
/// not there, or empty, has its number instead.
using NamesOfCategories = std::vector<std::vector<std::string>>;

/// The lines of one block.
std::vector<std::string> Estimation_lines(EstimationBlock block, const EstimatedGLLRM& estimate,
                                          const NamesOfCategories& names = {});

/// The model itself: locally dependent items, components, DIF, interactions with the score.
std::vector<std::string> Assumed_model_lines(const GLLRM& model);

/// The same block by its code, 1 to 5: "Improper output code in Estimate_GLLRM: " for another one.
std::vector<std::string> Estimation_lines_of_code(int code, const EstimatedGLLRM& estimate);

/// What a user reads before "Do you want the estimation procedure to continue?".
/// The Delta of each step of an estimate, of more than 40 the first and the last 20.
std::vector<std::string> Step_lines(const EstimatedGLLRM& estimate);

std::vector<std::string> Unfinished_lines(const UnfinishedIteration& unfinished);

/// Two models of the same persons, one of which has all terms of the other.
struct NestedModels {
    bool same_persons = true;  ///< without it the likelihoods cannot be compared
    double CLR = 0;            ///< twice the difference of the -ln(likelihood)
    int df = 0;
    double p = 1;  ///< of no meaning without degrees of freedom, and not printed then
};

/// Nothing when the models have other items or sources, were fitted under other settings, or when
/// neither holds the terms of the other.
std::optional<NestedModels> Compare_nested(const EstimatedGLLRM& current,
                                           const EstimatedGLLRM& previous);
std::vector<std::string> Nested_model_lines(const EstimatedGLLRM& current,
                                            const EstimatedGLLRM& previous,
                                            const NestedModels& nested);

/// Behind a test that rests on an estimate that did not converge, else empty:
/// " *** No convergence. Delta = 3.5".
std::string No_convergence_note(const EstimatedGLLRM& estimate);

/// Delta with six decimals, small ones with an exponent.
std::string Delta_text(Extended Delta);

}  // namespace tarven
