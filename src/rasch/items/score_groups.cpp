#include "rasch/items/score_groups.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "shell/words.h"

namespace tarven {

namespace {

constexpr int LargestNumber = 1 << 30;
constexpr int FewestGroups = 2, MostGroups = 10;  ///< of CUT /k

/// Runs of digits of a text of any length; no number wraps.
std::vector<int> Numbers_in(std::string_view text) {
    std::vector<int> numbers;
    for (std::size_t k = 0; k < text.size(); ++k) {
        if (!Is_digit(text[k])) continue;
        std::int64_t number = 0;
        for (; k < text.size() && Is_digit(text[k]); ++k)
            number = std::min<std::int64_t>(number * 10 + (text[k] - '0'), LargestNumber);
        numbers.push_back(static_cast<int>(number));
    }
    return numbers;
}

bool Has_letters(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        return (Upper(c) >= 'A' && Upper(c) <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
    });
}

Failed Invalid_cutpoints() {
    return {.messages = {"Invalid cutpoints", "valid_parameters=false"}};
}

/// One number below the highest possible score; two ascending; more ascending, of which the first
/// two may be equal.
bool Are_proper_limits(const CutRequest& request, int highest_possible_score) {
    const std::vector<int>& n = request.numbers;
    if (request.form == CutForm::cutpoint) return n[0] < highest_possible_score;
    for (std::size_t k = 1; k < n.size(); ++k)
        if (n[k] < n[k - 1] || (n[k] == n[k - 1] && (k > 1 || n.size() == 2))) return false;
    return true;
}

/// Groups between limits: `cuts` are their highest scores, ascending.
Result<CutGroups> Groups_of_cuts(int MinScore, const std::vector<int>& cuts,
                                 bool adjusted = false) {
    if (cuts.size() > MaxScoreGroups)
        return Failed{.messages = {fmt::format("{} score groups are too many (at most {})",
                                               cuts.size(), MaxScoreGroups)}};
    CutGroups made{.groups = {}, .adjusted = adjusted};
    made.groups.ScoreDim = static_cast<int>(cuts.size());
    made.groups.MinScore = MinScore;
    made.groups.MaxScore = cuts.back();
    for (std::size_t g = 1; g <= cuts.size(); ++g) made.groups.ScoreCuts[g] = cuts[g - 1];
    return made;
}

/// One group for each score a..b.
Result<CutGroups> Groups_of_scores(int a, int b) {
    std::vector<int> cuts(static_cast<std::size_t>(b - a + 1));
    std::iota(cuts.begin(), cuts.end(), a);
    return Groups_of_cuts(a, cuts);
}

/// 0..c and what is above; one group when nobody is above.
Result<CutGroups> Groups_of_cutpoint(int c, int highest_score) {
    if (c >= highest_score) return Groups_of_cuts(0, {highest_score});
    return Groups_of_cuts(0, {c, highest_score});
}

/// The lowest score that at least half of the complete persons do not exceed; one below the highest
/// score when there is one, so that both groups have persons.
int Median_cut(const ScoreDistribution& scores) {
    std::int64_t up_to = 0;
    int below_highest = scores.highest_score;
    for (int s = 0; s < scores.highest_score; ++s) {
        up_to += scores.Count(s);
        if (scores.Count(s) > 0) below_highest = s;
        if (2 * up_to >= scores.complete) return s;
    }
    return below_highest;
}

/// Persons with scores first..last, the extreme ones left out.
std::int64_t Persons_with_scores(const ScoreDistribution& scores, int first, int last,
                                 int highest) {
    std::int64_t persons = 0;
    for (int s = std::max(first, 1); s <= std::min(last, highest - 1); ++s)
        persons += scores.Count(s);
    return persons;
}

/// The limits of the ascending pass. `most`: groups at which the walk ends.
std::vector<int> Ascending_cuts(const ScoreDistribution& scores, int highest, std::int64_t target,
                                std::size_t most) {
    std::vector<int> cuts;
    std::int64_t count = 0;
    for (int s = 1; s < highest && cuts.size() < most; ++s) {
        count += scores.Count(s);
        if (count < target) continue;
        cuts.push_back(s);
        count = 0;
    }
    if (cuts.empty()) cuts.push_back(highest);
    cuts.back() = highest;
    return cuts;
}

std::vector<int> Descending_cuts(const ScoreDistribution& scores, int highest, std::int64_t target,
                                 std::size_t most) {
    std::vector<int> bounds;  // lowest scores, from the highest group down
    std::int64_t count = 0;
    for (int s = highest - 1; s >= 1 && bounds.size() < most; --s) {
        count += scores.Count(s);
        if (count < target) continue;
        bounds.push_back(s);
        count = 0;
    }
    // The lowest group goes down to the lowest score, so its bound closes nothing.
    if (!bounds.empty()) bounds.pop_back();
    std::vector<int> cuts;
    for (auto bound = bounds.rbegin(); bound != bounds.rend(); ++bound) cuts.push_back(*bound - 1);
    cuts.push_back(highest);
    return cuts;
}

/// Sum of squared differences between the groups' persons and the target.
double Loss(const ScoreDistribution& scores, const std::vector<int>& cuts, int highest,
            std::int64_t target) {
    double loss = 0;
    int first = 1;
    for (const int cut : cuts) {
        const auto off =
            static_cast<double>(Persons_with_scores(scores, first, cut, highest) - target);
        loss += off * off;
        first = cut + 1;
    }
    return loss;
}

Result<CutGroups> Groups_of_size(const ScoreDistribution& scores, int highest, std::int64_t target,
                                 std::size_t most) {
    const std::vector<int> up = Ascending_cuts(scores, highest, target, most);
    const std::vector<int> down = Descending_cuts(scores, highest, target, most);
    const bool adjusted = Loss(scores, down, highest, target) < Loss(scores, up, highest, target);
    return Groups_of_cuts(0, adjusted ? down : up, adjusted);
}

Result<CutGroups> Groups_in_number(const ScoreDistribution& scores, int highest, int wanted) {
    const int k = std::clamp(wanted, FewestGroups, MostGroups);
    const std::int64_t persons = Persons_with_scores(scores, 1, highest - 1, highest);
    const std::int64_t target = std::max<std::int64_t>(10, persons / (k + 1));
    return Groups_of_size(scores, highest, target, static_cast<std::size_t>(k));
}

}  // namespace

Result<CutRequest> Read_cut(std::string_view parameters) {
    CutRequest request{.form = CutForm::raw_scores, .numbers = Numbers_in(parameters)};
    const std::size_t count = request.numbers.size();
    const bool empty = parameters.find_first_not_of(' ') == std::string_view::npos;
    if (Has_letters(parameters) || (count == 0 && !empty)) return Invalid_cutpoints();
    if (count == 1 && parameters.find('/') != std::string_view::npos) {
        request.form = CutForm::groups;
        request.numbers[0] = std::clamp(request.numbers[0], FewestGroups, MostGroups);
    } else if (count == 1 && parameters.find('#') != std::string_view::npos)
        request.form = CutForm::persons;
    else if (count == 1)
        request.form = CutForm::cutpoint;
    else if (count == 2)
        request.form = CutForm::interval;
    else if (count > 2)
        request.form = CutForm::min_cuts_max;
    return request;
}

Result<CutGroups> Make_groups(const CutRequest& request, const ScoreDistribution& scores,
                              int highest_possible_score) {
    if (!scores.ready) return Failed{.messages = {"Scores are not ready", "SCORES_READY=false"}};
    const std::vector<int>& n = request.numbers;
    const int highest = highest_possible_score;
    switch (request.form) {
        case CutForm::median:
            return Groups_of_cutpoint(Median_cut(scores), scores.highest_score);
        case CutForm::raw_scores:
            return Groups_of_scores(0, scores.highest_score);
        case CutForm::persons:
            if (n[0] < 1) return Invalid_cutpoints();
            return Groups_of_size(scores, highest, n[0], MaxTotalScore + 1);
        case CutForm::groups:
            return Groups_in_number(scores, highest, n[0]);
        default:
            break;
    }
    if (!Are_proper_limits(request, highest)) return Invalid_cutpoints();
    if (n[0] < 0) return Failed{.messages = {"Minimum score below zero"}};
    if (request.form == CutForm::cutpoint) return Groups_of_cutpoint(n[0], scores.highest_score);
    if (n.back() > highest)
        return Failed{.messages = {fmt::format("Maximum score {} above highest possible score {}",
                                               n.back(), highest)}};
    if (request.form == CutForm::interval) return Groups_of_scores(n[0], n[1]);
    return Groups_of_cuts(n[0], {n.begin() + 1, n.end()});
}

std::string Cut_command(const ScoreGrouping& groups) {
    const int first = groups.MinScore,
              last = groups.ScoreCuts[static_cast<std::size_t>(groups.ScoreDim)];
    // Groups of one score each have a form of their own, which needs no list.
    if (last - first + 1 == groups.ScoreDim) return fmt::format("CUT {} {}", first, last);
    std::string line = fmt::format("CUT {}", first);
    for (std::size_t g = 1; g <= static_cast<std::size_t>(groups.ScoreDim); ++g)
        line += fmt::format(" {}", groups.ScoreCuts[g]);
    return line;
}

std::string Group_name(const ScoreGrouping& groups, int g) {
    const int first =
        g == 1 ? groups.MinScore : groups.ScoreCuts[static_cast<std::size_t>(g - 1)] + 1;
    const int last = groups.ScoreCuts[static_cast<std::size_t>(g)];
    return first == last ? fmt::format("{}", last) : fmt::format("{}-{}", first, last);
}

}  // namespace tarven
