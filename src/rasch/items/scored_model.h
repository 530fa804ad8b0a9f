#pragma once

#include <string>
#include <vector>

#include "project/data.h"
#include "rasch/items/gllrm.h"
#include "rasch/items/item_frequencies.h"
#include "rasch/items/score_distribution.h"
#include "rasch/items/score_groups.h"
#include "shell/stop_check.h"

namespace tarven {

/// A model with what the data say of its scores.
struct ScoredModel {
    GLLRM model;                          ///< with the highest item scores and the groups
    ScoreDistribution scores;             ///< ready when somebody has responded to all items
    ScoreGroupDistribution score_groups;  ///< ready with two groups at least
    ItemCounts counts;
    bool responses_read = false;  ///< false: nothing is known of persons
    CutRequest request;           ///< that made the groups: the one asked for, or the median
    CutGroups made;
    std::vector<std::string> messages;  ///< what could not be had
};

/// Reads the responses of the cases, counts the scores and makes the groups of `request`; where
/// it does not fit the scores any more, those cut at the median. Interactions with the score are
/// dropped when there are no groups for them.
ScoredModel Scored(const CasesAtHand& cases, GLLRM model, const CutRequest& request,
                   const StopCheck& stop = {});

}  // namespace tarven
