#include "project/score_variable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tarven {

namespace {

/// Item by item.
int Plain_group(const ScoreVariable& score, const std::uint8_t* codes) {
    int sum = 0;
    for (const ScoredVariable& item : score.items) {
        const int code = codes[item.variable - 1];
        if (code < 1 || code > item.dim) return 0;
        sum += item.flipped ? item.dim - code : code - 1;
    }
    return score.group_of[static_cast<std::size_t>(sum)];
}

}  // namespace

// Cases of every width stand side by side, so that a reader that looked beyond its case would meet
// the next one; the last ends with the memory.
TEST(ScoreReader, GivesTheGroupOfTheSumOfTheItems) {
    std::mt19937 random(1);
    for (int n = 0; n < 600; ++n) {
        const int N = 1 + n % MaxVariables;
        ScoreVariable score;
        std::vector<int> numbers(static_cast<std::size_t>(N));
        for (int v = 1; v <= N; ++v) numbers[static_cast<std::size_t>(v - 1)] = v;
        std::shuffle(numbers.begin(), numbers.end(), random);
        const auto count = 1 + random() % static_cast<unsigned>(std::min(N, MaxItems));
        for (unsigned k = 0; k < count; ++k)
            score.items.push_back(
                {numbers[k], 2 + static_cast<int>(random() % 4), random() % 3 == 0});
        for (int s = 0; s <= MaxTotalScore; ++s)
            score.group_of.push_back(static_cast<std::uint8_t>(s % 86));
        const ScoreReader reader(score, N);
        std::vector<std::uint8_t> cases(static_cast<std::size_t>(20 * N));
        const unsigned missing = n % 2 == 0 ? 0 : 60;  // of 1000 codes
        for (std::uint8_t& code : cases)
            code = random() % 1000 < missing ? static_cast<std::uint8_t>(random() % 3 * 127)
                                             : static_cast<std::uint8_t>(1 + random() % 2);
        for (int c = 0; c < 20; ++c) {
            const std::uint8_t* codes = cases.data() + c * N;
            EXPECT_EQ(reader.Group(codes), Plain_group(score, codes)) << N << " " << n;
        }
    }
}

TEST(ScoreReader, TheHighestScoreOfAllStays) {
    ScoreVariable score;
    for (int v = 1; v <= 36; ++v) score.items.push_back({v, 8, v % 2 == 0});
    score.items.push_back({37, 2, false});
    for (int s = 0; s <= MaxTotalScore; ++s)
        score.group_of.push_back(s == MaxTotalScore ? 85 : s == 0 ? 1 : 2);
    std::vector<std::uint8_t> codes, lowest;
    for (int v = 1; v <= 36; ++v) {
        codes.push_back(v % 2 == 0 ? 1 : 8);
        lowest.push_back(v % 2 == 0 ? 8 : 1);
    }
    codes.push_back(2);
    lowest.push_back(1);
    const ScoreReader reader(score, 37);
    EXPECT_EQ(reader.Group(codes.data()), 85);
    EXPECT_EQ(reader.Group(lowest.data()), 1);
}

}  // namespace tarven
