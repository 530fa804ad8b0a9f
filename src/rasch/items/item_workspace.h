#pragma once

#include <string>

#include "rasch/items/gllrm.h"
#include "rasch/items/score_distribution.h"
#include "shell/limits.h"
#include "shell/one_based.h"

namespace tarven {

/// The items of the workspace, their model and what is known of their scores.
struct ItemWorkspace {
    GLLRM model;         ///< the current GLLRM
    int item_block = 0;  ///< lowest recursive block among the items
    /// [v]: project variable v is reversed; it outlives a new selection that holds v.
    One_based<bool, MaxVariables> FlippedVariable;

    char ThetaLabel = 'T';
    std::string Thetaname = "Theta";
    char ScoreLabel = 'S';
    std::string Scorename = "Score";

    ScoreDistribution scores;                 ///< `ready` is Score_distribution_ready
    ScoreGroupDistribution score_groups;      ///< `ready` is ScoreGroup_distribution_ready
    bool CurrentIRTparameters_ready = false;  ///< the item parameters of the model are estimated
    bool CurrentPersons_ready = false;        ///< person parameters are estimated
};

inline ItemWorkspace The_items;

/// The terms of the current model as text, empty for a Rasch model.
std::string The_current_GLLRM();

/// The labels of the project's variables, [v-1] of variable v.
std::string Project_labels();

/// Makes `model` the current one: CurrentIRTparameters_ready and CurrentPersons_ready are cleared
/// and Moment::items_changed runs. Items, flips and groups are not computed anew.
void Set_current_model(GLLRM model);

}  // namespace tarven
