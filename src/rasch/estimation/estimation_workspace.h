#pragma once

#include <optional>

#include "rasch/estimation/estimate_gllrm.h"

namespace tarven {

/// What the dialogue of GRM has been told, until the project is closed.
struct EstimationChoices {
    double critical_Delta = 0.0001;
    int Nstep = 50;
    bool ordered_thresholds = false;
    bool incomplete_responses = false;
    bool extended_output = false;
    bool show_margins = false;

    bool operator==(const EstimationChoices&) const = default;
};

/// The estimates of the workspace. The current one belongs to the current GLLRM when
/// The_items.CurrentIRTparameters_ready is set.
struct EstimationWorkspace {
    EstimationChoices choices;
    std::optional<EstimatedGLLRM> current;
    EstimationChoices current_choices;       ///< that the current one was made with
    std::optional<EstimatedGLLRM> previous;  ///< of the model before, for nested models
};

inline EstimationWorkspace The_estimates;

}  // namespace tarven
