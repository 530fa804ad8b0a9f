#pragma once

#include <string>
#include <vector>

#include "rasch/items/item_frequencies.h"
#include "rasch/items/score_distribution.h"
#include "rasch/items/score_groups.h"

namespace tarven {

// Lines on scores and score groups.

/// The line that CUT begins with.
std::string Cut_line(const CutRequest& request, const CutGroups& made);

/// "Observed:" and the range of the groups, where they do not cover all possible scores.
std::vector<std::string> Observed_range_lines(const ScoreGrouping& groups,
                                              int highest_possible_score);

/// The persons of each score group; those outside every group stand last.
std::vector<std::string> Group_distribution_lines(const ScoreGrouping& groups,
                                                  const ScoreGroupDistribution& distribution);

/// The persons at each observed score, the mean and the standard deviation.
std::vector<std::string> Score_distribution_lines(const ScoreDistribution& scores,
                                                  const ScoresOfCategory& all,
                                                  const std::string& Scorename);

/// How many persons have a score.
std::string Complete_persons_line(const ScoreDistribution& scores);

/// Mean scores and score groups in each category of exogenous variable x.
std::vector<std::string> Scores_by_lines(const GLLRM& model, int x,
                                         const std::vector<ScoresOfCategory>& scores,
                                         const std::vector<std::string>& names);

}  // namespace tarven
