#include "rasch/items/read_responses.h"

#include <gtest/gtest.h>

#include <map>

#include "rasch/items/score_distribution.h"
#include "support/data_session.h"
#include "support/item_models.h"
#include "support/reference_figures.h"

namespace tarven {

namespace {

class ReadResponsesTest : public DataSession {};

using Patterns = std::map<std::vector<int>, std::int64_t>;

Patterns Patterns_of(const ResponseTable& table) {
    Patterns patterns;
    for (std::size_t p = 0; p < table.size(); ++p) {
        const std::uint8_t* row = table.Scores(p);
        patterns[{row, row + table.width()}] += table.counts[p];
    }
    EXPECT_EQ(patterns.size(), table.size()) << "each pattern once";
    return patterns;
}

/// Two items of which the second is flipped, behind an exogenous variable that comes first.
GLLRM Model_on_columns() {
    GLLRM model = Model_of_dims({3, 2}, {2});
    model.items[1].variable = 2;
    model.items[2].variable = 3;
    model.items[2].FlippedItem = true;
    model.Exogene[1].variable = 1;
    return model;
}

}  // namespace

TEST_F(ReadResponsesTest, PatternsAreTheCasesWhateverTheSource) {
    Put("x.DAT", "1 1 1\n2 3 2\n1 1 1\n9 3 1\n2 9 2\n1 9 9\n1 1 2\n");
    Define_project({2, 3, 2});
    const GLLRM model = Model_on_columns();
    const Patterns expected = {{{0, 1, 1}, 2},   {{2, 0, 2}, 1},     {{2, 1, 0}, 1},
                               {{255, 0, 2}, 1}, {{255, 255, 1}, 1}, {{0, 0, 1}, 1}};
    const Result<ResponseTable> from_file = Read_responses(Cases_of_project(), model);
    ASSERT_TRUE(from_file);
    EXPECT_EQ(Patterns_of(*from_file), expected);
    Run({"MAKE", "DIS D"});
    for (const char* line : {"INP D", "DIS D", "INP T"}) {
        Run({line});
        const Result<ResponseTable> read = Read_responses(Cases_of_project(), model);
        ASSERT_TRUE(read) << line;
        EXPECT_EQ(read->codes, from_file->codes) << line;
        EXPECT_EQ(read->counts, from_file->counts) << line;
    }
}

TEST_F(ReadResponsesTest, AStopAndMissingDataAreFailures) {
    Define_project({2, 3, 2});
    EXPECT_FALSE(Read_responses(Cases_of_project(), Model_on_columns()));
    std::string many;
    for (int k = 0; k < 40000; ++k) many += "1 1 1\n";
    Put("x.DAT", many);
    Look_for_files();
    const Result<ResponseTable> stopped =
        Read_responses(Cases_of_project(), Model_on_columns(), [] { return true; });
    ASSERT_FALSE(stopped);
    EXPECT_TRUE(stopped.failure().stopped);
}

// Everything counted person by person.
TEST_F(ReadResponsesTest, MorePersonsOfAPatternThanCanBeCountedAreRefused) {
    Define_project({2, 3, 2});
    for (const auto& [last, fails] :
         std::vector<std::pair<std::int32_t, bool>>{{1, false}, {2, true}}) {
        Put("x.DAT", "1 1 1\n1 1 2\n2 1 1\n");
        Run({"MAKE", "INP T", "DIS D"});
        // Two cells of one pattern of the items.
        The_data.TABdata.counts.at(0) = 2147483646;
        The_data.TABdata.counts.at(1) = last;
        GLLRM model = Model_of_dims({2, 3});
        model.items[1].variable = 1;
        model.items[2].variable = 2;
        const auto read = Read_responses(Cases_of_project(), model);
        EXPECT_EQ(!read, fails) << last;
    }
}

TEST(ScoreDistribution, CountsPersons) {
    std::mt19937 random(3);
    for (int n = 0; n < 100; ++n) {
        GLLRM model = Model_of_dims({3, 2, 4, 2}, {3});
        const ResponseTable table = Random_responses(random, model, 60, n % 3 == 0 ? 0U : 15U);
        const ScoreDistribution d = Score_distribution(table);
        std::map<int, std::int64_t> counts;
        std::int64_t persons = 0;
        std::vector<int> highest(5);
        for (std::size_t p = 0; p < table.size(); ++p)
            for (std::int32_t k = 0; k < table.counts[p]; ++k) {
                int score = 0;
                bool complete = true;
                for (std::size_t i = 0; i < 4; ++i) {
                    const int x = table.Scores(p)[i];
                    complete = complete && x != NoResponse;
                    if (x == NoResponse) continue;
                    score += x;
                    highest[i + 1] = std::max(highest[i + 1], x);
                }
                ++persons;
                if (complete) ++counts[score];
            }
        std::int64_t complete = 0;
        for (int s = 0; s <= MaxTotalScore; ++s) {
            EXPECT_EQ(d.Count(s), counts.contains(s) ? counts[s] : 0);
            complete += d.Count(s);
        }
        EXPECT_EQ(d.complete, complete);
        EXPECT_EQ(d.persons, persons);
        if (!counts.empty()) {
            EXPECT_EQ(d.lowest_score, counts.begin()->first);
            EXPECT_EQ(d.highest_score, counts.rbegin()->first);
        }
        Set_highest_item_scores(model, d);
        for (std::size_t i = 1; i <= 4; ++i)
            EXPECT_EQ(model.items[i].highest_Item_score, highest[i]);
        const ScoreGroupDistribution groups = Score_group_distribution(model.groups, d);
        EXPECT_EQ(groups.Count(0) + groups.Count(1) + groups.Count(2), complete);
        EXPECT_EQ(groups.Count(3), complete);
    }
}

}  // namespace tarven
