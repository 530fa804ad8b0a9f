#include "rasch/items/score_groups.h"

#include <gtest/gtest.h>

#include <random>

#include "rasch/items/score_report.h"
#include "support/item_models.h"
#include "support/reference_figures.h"

namespace tarven {

namespace {

/// A distribution of `counts[s]` complete persons.
ScoreDistribution Distribution(const std::vector<int>& counts) {
    ScoreDistribution d;
    d.ready = true;
    for (std::size_t s = 0; s < counts.size(); ++s) {
        d.SCOREDISTRIBUTION[s] = counts[s];
        d.complete += counts[s];
        if (counts[s] > 0) d.highest_score = static_cast<int>(s);
    }
    d.persons = d.complete;
    return d;
}

struct Partition {
    std::vector<int> upper;
    double loss = 0;
};

double Loss_of(const std::vector<int>& N, const std::vector<int>& upper, int H, double target) {
    double loss = 0;
    for (std::size_t g = 0; g < upper.size(); ++g) {
        double count = 0;
        for (int s = g == 0 ? 1 : upper[g - 1] + 1; s <= upper[g] && s < H; ++s)
            count += N[static_cast<std::size_t>(s)];
        loss += (count - target) * (count - target);
    }
    return loss;
}

/// The two passes word for word: closures up and closures down with their left-over, the limits of
/// the downward one from its lower bounds.
Partition Plain_partition(const std::vector<int>& N, int H, int target, int most, bool& adjusted) {
    std::vector<int> up, lower;
    int count = 0;
    for (int s = 1; s <= H - 1; ++s) {
        if (static_cast<int>(up.size()) == most) break;
        count += N[static_cast<std::size_t>(s)];
        if (count >= target) {
            up.push_back(s);
            count = 0;
        }
    }
    if (up.empty())
        up = {H};
    else
        up[up.size() - 1] = H;
    count = 0;
    for (int s = H - 1; s >= 1; --s) {
        if (static_cast<int>(lower.size()) == most) break;
        count += N[static_cast<std::size_t>(s)];
        if (count >= target) {
            lower.push_back(s);
            count = 0;
        }
    }
    std::vector<int> down;
    for (int k = static_cast<int>(lower.size()) - 2; k >= 0; --k)
        down.push_back(lower[static_cast<std::size_t>(k)] - 1);
    down.push_back(H);
    const double loss_up = Loss_of(N, up, H, target), loss_down = Loss_of(N, down, H, target);
    adjusted = down.size() > up.size() || (down.size() == up.size() && loss_down < loss_up);
    return {adjusted ? down : up, adjusted ? loss_down : loss_up};
}

std::vector<int> Limits(const ScoreGrouping& groups) {
    std::vector<int> limits;
    for (std::size_t g = 1; g <= static_cast<std::size_t>(groups.ScoreDim); ++g)
        limits.push_back(groups.ScoreCuts[g]);
    return limits;
}

std::string Cut(const std::string& parameters, const ScoreDistribution& d, int H) {
    const Result<CutRequest> request = Read_cut(parameters);
    if (!request) return request.failure().messages.at(0);
    const Result<CutGroups> made = Make_groups(*request, d, H);
    if (!made) return made.failure().messages.at(0);
    std::string text =
        std::to_string(made->groups.MinScore) + "/" + std::to_string(made->groups.MaxScore) + ":";
    for (const int limit : Limits(made->groups)) text += " " + std::to_string(limit);
    return text;
}

}  // namespace

TEST(ScoreGroups, TellTheNumberOfGroupsThatIsAimedAt) {
    for (const auto& [typed, k] : std::vector<std::pair<std::string, std::string>>{
             {"/1", "2"}, {"/7", "7"}, {"/50", "10"}, {"/99999999999", "10"}})
        EXPECT_EQ(Cut_line(*Read_cut(typed), {}), "New score groups: " + k + " groups.") << typed;
}

// Persons at 0..8; the highest possible score is 9.
TEST(ScoreGroups, FormsAndWhatTheyRefuse) {
    const ScoreDistribution d = Distribution({3, 5, 0, 12, 7, 9, 4, 2, 1});
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", "0/8: 0 1 2 3 4 5 6 7 8"},
        {"   ", "0/8: 0 1 2 3 4 5 6 7 8"},
        {"4", "0/8: 4 8"},
        {"0", "0/8: 0 8"},
        {"7", "0/8: 7 8"},
        {"8", "0/8: 8"},  // nobody above: one group
        {"9", "Invalid cutpoints"},
        {"999", "Invalid cutpoints"},
        {"99999999999999999999", "Invalid cutpoints"},
        {"2 5", "2/5: 2 3 4 5"},
        {"-2 -5", "2/5: 2 3 4 5"},  // signs separate
        {"5 2", "Invalid cutpoints"},
        {"3 3", "Invalid cutpoints"},
        {"0 9", "0/9: 0 1 2 3 4 5 6 7 8 9"},
        {"0 10", "Maximum score 10 above highest possible score 9"},
        {"0 3 9", "0/9: 3 9"},
        {"2 2 9", "2/9: 2 9"},  // the first two may be equal
        {"2 5 5 9", "Invalid cutpoints"},
        {"2 5 4 9", "Invalid cutpoints"},
        {"1 3 5 10", "Maximum score 10 above highest possible score 9"},
        {"abc", "Invalid cutpoints"},
        {"3 x", "Invalid cutpoints"},  // as words alone
        {"#", "Invalid cutpoints"},
        {"/", "Invalid cutpoints"},
        {"#0", "Invalid cutpoints"},
        {"#1000", "0/9: 9"},
        {"# 12", "0/9: 3 9"},
        {"3/5", "3/5: 3 4 5"},  // two numbers are an interval
        {"/1", Cut("/2", d, 9)},
        {"/50", Cut("/10", d, 9)},
        {"/#4", Cut("/4", d, 9)}};
    for (const auto& [typed, expected] : rows) EXPECT_EQ(Cut(typed, d, 9), expected) << typed;
}

TEST(ScoreGroups, MoreThan85AreRefused) {
    std::vector<int> counts(120, 20);
    const ScoreDistribution d = Distribution(counts);
    for (const std::string typed : {"", "#1", "0 85", "10 119"})
        EXPECT_NE(Cut(typed, d, 119).find("score groups are too many (at most 85)"),
                  std::string::npos)
            << typed;
    EXPECT_EQ(Cut("0 84", d, 119).substr(0, 6), "0/84: ");
    std::string cuts;
    for (int s = 0; s <= 85; ++s) cuts += " " + std::to_string(s);
    EXPECT_EQ(Cut(cuts, d, 119).substr(0, 6), "0/85: ") << "86 numbers are 85 groups";
    EXPECT_NE(Cut(cuts + " 119", d, 119).find("too many"), std::string::npos);
}

TEST(ScoreGroups, ThePassesCloseGroupsAsTheyAreDescribed) {
    std::mt19937 random(5);
    int adjusted_ones = 0;
    for (int n = 0; n < 2000; ++n) {
        const int H = 1 + static_cast<int>(random() % 20);
        std::vector<int> N(static_cast<std::size_t>(H) + 1);
        const unsigned most = n % 3 == 0 ? 4 : 40;
        for (int& count : N) count = static_cast<int>(random() % most);
        const ScoreDistribution d = Distribution(N);
        int middle = 0;
        for (int s = 1; s < H; ++s) middle += N[static_cast<std::size_t>(s)];
        const int k = 1 + static_cast<int>(random() % 12);
        const int clamped = std::min(10, std::max(2, k));
        const int npers = 1 + static_cast<int>(random() % 60);
        for (const bool by_number : {false, true}) {
            const int target = by_number ? std::max(10, middle / (clamped + 1)) : npers;
            bool adjusted = false;
            const Partition plain =
                Plain_partition(N, H, target, by_number ? clamped : 1000, adjusted);
            const CutRequest request{by_number ? CutForm::groups : CutForm::persons,
                                     {by_number ? k : npers}};
            const Result<CutGroups> made = Make_groups(request, d, H);
            ASSERT_TRUE(made);
            EXPECT_EQ(Limits(made->groups), plain.upper) << H << " " << target;
            EXPECT_EQ(made->adjusted, adjusted);
            EXPECT_EQ(made->groups.MinScore, 0);
            EXPECT_EQ(made->groups.MaxScore, H);
            adjusted_ones += adjusted;
        }
    }
    EXPECT_GT(adjusted_ones, 200) << "both outcomes are met";
}

TEST(ScoreGroups, TheMedianHasPersonsOnBothSides) {
    const std::vector<std::pair<std::vector<int>, std::vector<int>>> rows = {
        {{1, 1, 1, 1}, {1, 3}},      {{0, 0, 5, 1}, {2, 3}}, {{1, 0, 0, 9}, {0, 3}},
        {{4, 4, 0, 0, 8}, {1, 4}},   {{0, 0, 7}, {2}},       {{1}, {0}},
        {{2, 0, 0, 1, 9, 9}, {4, 5}}};
    for (const auto& [counts, limits] : rows)
        EXPECT_EQ(Limits(Make_groups({}, Distribution(counts), 9)->groups), limits);
}

TEST(ScoreGroups, ACutCommandMakesTheSameGroupsAgain) {
    std::mt19937 random(6);
    for (int n = 0; n < 500; ++n) {
        std::vector<int> counts(30);
        for (int& count : counts) count = static_cast<int>(random() % 20);
        counts.back() = 1;
        const ScoreDistribution d = Distribution(counts);
        for (const std::string& typed :
             std::vector<std::string>{"", "/" + std::to_string(2 + random() % 9),
                                      "#" + std::to_string(5 + random() % 90),
                                      std::to_string(random() % 28), "2 3 9 20 29"}) {
            const ScoreGrouping groups = Make_groups(*Read_cut(typed), d, 29)->groups;
            if (groups.ScoreDim < 2) continue;
            const std::string command = Cut_command(groups);
            const Result<CutRequest> request = Read_cut(command.substr(3));
            ASSERT_TRUE(request) << command;
            const Result<CutGroups> again = Make_groups(*request, d, 29);
            ASSERT_TRUE(again) << command;
            EXPECT_EQ(Limits(again->groups), Limits(groups)) << command;
            EXPECT_EQ(again->groups.MinScore, groups.MinScore);
            EXPECT_EQ(again->groups.MaxScore, groups.MaxScore);
        }
    }
}

}  // namespace tarven
