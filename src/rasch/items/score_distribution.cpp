#include "rasch/items/score_distribution.h"

#include <algorithm>

namespace tarven {

int Score_of(const std::uint8_t* scores, int NITEMS) {
    int score = 0;
    for (int i = 0; i < NITEMS; ++i) {
        if (scores[i] == NoResponse) return Invalidscore;
        score += scores[i];
    }
    return score;
}

ScoreDistribution Score_distribution(const ResponseTable& table) {
    ScoreDistribution d;
    d.ready = true;
    for (std::size_t p = 0; p < table.size(); ++p) {
        const std::uint8_t* const scores = table.Scores(p);
        const std::int64_t count = table.counts[p];
        d.persons += count;
        for (std::size_t i = 1; i <= static_cast<std::size_t>(table.NITEMS); ++i) {
            const int x = scores[i - 1];
            if (x == NoResponse) continue;
            d.highest_Item_score[i] = std::max(d.highest_Item_score[i], x);
            d.responses[i] += count;
            d.sum[i] += count * x;
        }
        const int score = Score_of(scores, table.NITEMS);
        if (score == Invalidscore) continue;
        d.lowest_score = d.complete == 0 ? score : std::min(d.lowest_score, score);
        d.highest_score = std::max(d.highest_score, score);
        d.complete += count;
        d.SCOREDISTRIBUTION[static_cast<std::size_t>(score)] += count;
    }
    return d;
}

void Set_highest_item_scores(GLLRM& model, const ScoreDistribution& scores) {
    for (std::size_t i = 1; i <= static_cast<std::size_t>(model.NITEMS); ++i)
        model.items[i].highest_Item_score = scores.highest_Item_score[i];
}

ScoreGroupDistribution Score_group_distribution(const ScoreGrouping& groups,
                                                const ScoreDistribution& scores) {
    ScoreGroupDistribution d;
    d.ScoreDim = groups.ScoreDim;
    d.ready = scores.ready && groups.ScoreDim >= 2;
    if (!d.ready) return d;
    for (int s = 0; s <= MaxTotalScore; ++s)
        d.SCOREGROUPDISTRIBUTION[static_cast<std::size_t>(groups.ScoreGruppe(s))] +=
            scores.Count(s);
    d.SCOREGROUPDISTRIBUTION[static_cast<std::size_t>(groups.ScoreDim) + 1] = scores.complete;
    return d;
}

}  // namespace tarven
