#pragma once

#include <string>
#include <vector>

#include "rasch/items/gllrm.h"
#include "rasch/items/model_picture.h"
#include "rasch/items/response_table.h"
#include "rasch/items/scored_model.h"
#include "shell/result.h"

namespace tarven {

/// The items of the workspace, their model and what is known of their scores.
struct ItemWorkspace : ScaleNames {
    GLLRM model;         ///< the current GLLRM
    int item_block = 0;  ///< lowest recursive block among the items
    /// [v]: project variable v is reversed; it outlives a new selection that holds v.
    One_based<bool, MaxVariables> FlippedVariable;

    ScoreDistribution scores;                 ///< `ready` is Score_distribution_ready
    ScoreGroupDistribution score_groups;      ///< `ready` is ScoreGroup_distribution_ready
    CutRequest cut;                           ///< that made the groups; FLIP makes them anew by it
    bool CurrentIRTparameters_ready = false;  ///< the item parameters of the model are estimated
    bool CurrentPersons_ready = false;        ///< person parameters are estimated
};

inline ItemWorkspace The_items;

/// The terms of the current model as text, empty for a Rasch model.
std::string The_current_GLLRM();

/// The labels of the project's variables, [v-1] of variable v.
std::string Project_labels();

/// The names of the categories of a project variable, 1.. at 0...
std::vector<std::string> Category_names(int variable);

/// The responses of the project's cases to the current items.
Result<ResponseTable> Current_responses();

/// Makes `model` the current one: CurrentIRTparameters_ready and CurrentPersons_ready are cleared,
/// panels 2 and 3 shown, and Moment::items_changed runs. Scores are not counted anew: the items,
/// their flips and the groups are those of before.
void Set_current_model(GLLRM model);

/// The same for other items, flips or groups, with their scores. The score as a variable of tables
/// follows, and a current table that holds it is given up.
void Set_scored_model(const ScoredModel& scored);

/// Counts the scores of the cases as they are now, and the persons of the groups that stand.
void Count_scores_anew();

/// After other cases of the same variables: scores are counted anew, estimates are given up.
void Follow_the_data();

/// Other groups of the same scores. The model's parameters stay unless items interact with the
/// score.
void Set_score_groups(const CutRequest& request, const CutGroups& made);

/// No items; the exogenous variables, flips and names stay.
void Give_up_items();

void Register_items_lifecycle();

}  // namespace tarven
