#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rasch/items/gllrm.h"
#include "rasch/items/score_distribution.h"
#include "shell/result.h"

namespace tarven {

/// Score groups: which scores are taken together.

enum class CutForm : std::uint8_t {
    median,        ///< two groups cut at the median: what stands before the first CUT
    raw_scores,    ///< CUT
    cutpoint,      ///< CUT c
    interval,      ///< CUT a b
    min_cuts_max,  ///< CUT min cuts max
    persons,       ///< CUT #npers
    groups         ///< CUT /k
};

struct CutRequest {
    CutForm form = CutForm::median;
    std::vector<int> numbers;  ///< as typed; above 2^30 they are 2^30, k groups are 2 to 10
};

/// The request of the parameters of CUT, read whole. With a "/" and one number they ask for so many
/// groups, else with a "#" and one number for groups of so many persons; otherwise the number of
/// numbers decides. Signs separate. Fails on letters, and on parameters without a number.
Result<CutRequest> Read_cut(std::string_view parameters);

struct CutGroups {
    ScoreGrouping groups;   ///< ScoreDim 1: only one came out
    bool adjusted = false;  ///< the groups are those of the descending pass
};

/// The groups of a request over scores that are ready. `highest_possible_score` is that of the
/// model. Fails where the numbers are no proper limits, and above 85 groups.
///
/// The two forms that count persons walk the scores 1..highest_possible_score-1 up and down, since
/// extreme scores take no part, and close a group each time the target is reached; a left-over
/// joins the last group. Both walks close the same number of groups, the most that can be had: who
/// closes each group as early as possible closes as many as anybody. The ascending partition is
/// taken unless the descending one has a smaller sum of squared differences from the target.
///
/// For groups in a number k (2..10, else the nearest of these) the target is the persons with such
/// scores divided by k+1, not k, so that the last group is not the small one; at least 10. The walk
/// ends at k groups; fewer may come out.
Result<CutGroups> Make_groups(const CutRequest& request, const ScoreDistribution& scores,
                              int highest_possible_score);

/// The CUT command that makes the groups whatever the data are.
std::string Cut_command(const ScoreGrouping& groups);

/// "0-15", the scores of a group.
std::string Group_name(const ScoreGrouping& groups, int g);

}  // namespace tarven
