#include "rasch/items/item_frequencies.h"

#include <cmath>

#include "rasch/items/score_distribution.h"

namespace tarven {

namespace {

void Add(ItemCounts& to, const ResponseTable& table, std::size_t p) {
    const std::int64_t count = table.counts[p];
    to.persons += count;
    for (std::size_t i = 1; i <= static_cast<std::size_t>(table.NITEMS); ++i) {
        const int x = table.Scores(p)[i - 1];
        if (x != NoResponse) to.counts[i][static_cast<std::size_t>(x)] += count;
    }
}

/// Sums over the scores of one category. Squares of scores below 256 of 2^31 persons stay exact.
struct ScoreSums {
    std::int64_t sum = 0;
    std::int64_t squares = 0;
};

void Add(ScoresOfCategory& to, ScoreSums& sums, int score, int group, std::int64_t count) {
    to.persons += count;
    sums.sum += count * score;
    sums.squares += count * score * score;
    to.group_counts[static_cast<std::size_t>(group)] += count;
}

void Finish(ScoresOfCategory& of, const ScoreSums& sums) {
    if (of.persons == 0) return;
    const auto n = static_cast<double>(of.persons), sum = static_cast<double>(sums.sum);
    of.mean = sum / n;
    if (of.persons < 2) return;
    const double around_mean = static_cast<double>(sums.squares) - sum * of.mean;
    of.standard_deviation = std::sqrt(std::max(0.0, around_mean / (n - 1)));
}

/// Scores by category(p), one of 0..categories-1.
template <class CategoryOf>
std::vector<ScoresOfCategory> Scores_in(const ResponseTable& table, const GLLRM& model,
                                        std::size_t categories, CategoryOf category) {
    std::vector<ScoresOfCategory> scores(categories);
    std::vector<ScoreSums> sums(categories);
    for (ScoresOfCategory& of : scores)
        of.group_counts.resize(static_cast<std::size_t>(model.groups.ScoreDim) + 1);
    for (std::size_t p = 0; p < table.size(); ++p) {
        const int score = Score_of(table.Scores(p), table.NITEMS);
        if (score == Invalidscore) continue;
        const std::size_t c = category(p);
        Add(scores[c], sums[c], score, model.groups.ScoreGruppe(score), table.counts[p]);
    }
    for (std::size_t c = 0; c < categories; ++c) Finish(scores[c], sums[c]);
    return scores;
}

}  // namespace

std::int64_t ItemCounts::Responses(int i) const {
    std::int64_t responses = 0;
    for (const std::int64_t count : counts[static_cast<std::size_t>(i)]) responses += count;
    return responses;
}

double ItemCounts::Mean(int i) const {
    std::int64_t sum = 0;
    for (int x = 0; x <= MaxItemScore; ++x)
        sum += x * counts[static_cast<std::size_t>(i)][static_cast<std::size_t>(x)];
    const std::int64_t responses = Responses(i);
    return responses == 0 ? 0 : static_cast<double>(sum) / static_cast<double>(responses);
}

ItemCounts Item_counts(const ResponseTable& table) {
    ItemCounts counts;
    for (std::size_t p = 0; p < table.size(); ++p) Add(counts, table, p);
    return counts;
}

std::vector<ItemCounts> Item_counts_by(const ResponseTable& table, const GLLRM& model, int x) {
    std::vector<ItemCounts> counts(static_cast<std::size_t>(model.ExoNo(x).exo_dim) + 1);
    for (std::size_t p = 0; p < table.size(); ++p) Add(counts[table.Exo(p)[x - 1]], table, p);
    return counts;
}

ScoresOfCategory Scores_of_all(const ResponseTable& table, const GLLRM& model) {
    return Scores_in(table, model, 1, [](std::size_t) { return std::size_t{0}; })[0];
}

std::vector<ScoresOfCategory> Scores_by(const ResponseTable& table, const GLLRM& model, int x) {
    return Scores_in(table, model, static_cast<std::size_t>(model.ExoNo(x).exo_dim) + 1,
                     [&](std::size_t p) -> std::size_t { return table.Exo(p)[x - 1]; });
}

std::vector<ComponentScores> Component_scores(const ResponseTable& table, const GLLRM& model) {
    std::vector<ComponentScores> all;
    const ItemComponentList components = Item_components(model);
    for (int c = 1; c <= components.NitemComponents; ++c) {
        ComponentScores of{.items = components.Items(c), .highest = 0, .counts = {}};
        for (int i = 1; i <= model.NITEMS; ++i)
            if (Has_number(of.items, i)) of.highest += model.ItemNo(i).Item_maxscore();
        of.counts.assign(static_cast<std::size_t>(model.groups.ScoreDim) + 1,
                         std::vector<std::int64_t>(static_cast<std::size_t>(of.highest) + 1));
        for (std::size_t p = 0; p < table.size(); ++p) {
            const int score = Score_of(table.Scores(p), table.NITEMS);
            if (score == Invalidscore) continue;
            std::size_t t = 0;
            for (int i = 1; i <= model.NITEMS; ++i)
                if (Has_number(of.items, i)) t += table.Scores(p)[i - 1];
            of.counts[static_cast<std::size_t>(model.groups.ScoreGruppe(score))][t] +=
                table.counts[p];
        }
        all.push_back(std::move(of));
    }
    return all;
}

}  // namespace tarven
