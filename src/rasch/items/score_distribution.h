#pragma once

#include <array>
#include <cstdint>

#include "rasch/items/gllrm.h"
#include "rasch/items/response_table.h"
#include "shell/limits.h"

namespace tarven {

/// The score of a person is the sum of the item scores; who has no response to an item has none.

inline constexpr int Invalidscore = -1;

/// The score of NITEMS item scores, Invalidscore when one is NoResponse.
int Score_of(const std::uint8_t* scores, int NITEMS);

struct ScoreDistribution {
    bool ready = false;
    std::array<std::int64_t, MaxTotalScore + 1> SCOREDISTRIBUTION{};  ///< [s] complete persons
    std::int64_t persons = 0;
    std::int64_t complete = 0;                    ///< with a response to every item
    int lowest_score = 0;                         ///< of complete persons; 0 without any
    int highest_score = 0;                        ///< the same
    One_based<int, MaxItems> highest_Item_score;  ///< [i] in any record; 0 without responses
    One_based<std::int64_t, MaxItems> responses;  ///< [i] records with a response to item i
    One_based<std::int64_t, MaxItems> sum;        ///< [i] of their item scores

    std::int64_t Count(int score) const {
        return SCOREDISTRIBUTION[static_cast<std::size_t>(score)];
    }
};

/// Counts all persons of the table. Item scores are at most MaxItemScore and sum to at most
/// MaxTotalScore. Records with missing items count in highest_Item_score, responses and sum.
ScoreDistribution Score_distribution(const ResponseTable& table);

/// Stores what the model keeps of it: highest_Item_score of each item.
void Set_highest_item_scores(GLLRM& model, const ScoreDistribution& scores);

/// Complete persons by score group.
struct ScoreGroupDistribution {
    bool ready = false;
    int ScoreDim = 0;
    /// [0] outside every group, [1..ScoreDim] the groups, [ScoreDim+1] the total.
    std::array<std::int64_t, MaxScoreGroups + 2> SCOREGROUPDISTRIBUTION{};

    std::int64_t Count(int group) const {
        return SCOREGROUPDISTRIBUTION[static_cast<std::size_t>(group)];
    }
};

/// Not ready with fewer than two groups.
ScoreGroupDistribution Score_group_distribution(const ScoreGrouping& groups,
                                                const ScoreDistribution& scores);

}  // namespace tarven
