#include "project/cell_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "project/pattern_counter.h"

namespace tarven {
namespace {

using Pattern = std::vector<std::uint8_t>;

/// The store by insertion with a moving pointer: from the place of the last case upward or
/// downward to the place of the new one, all cells above it moved one step.
CellStore Store_by_insertion(const std::vector<Pattern>& cases) {
    std::vector<std::pair<Pattern, std::int32_t>> cells;
    std::size_t p = 0;
    for (const Pattern& pattern : cases) {
        while (p < cells.size() && cells[p].first < pattern) ++p;
        while (p > 0 && (p == cells.size() || cells[p].first > pattern) &&
               cells[p - 1].first >= pattern)
            --p;
        if (p < cells.size() && cells[p].first == pattern)
            ++cells[p].second;
        else
            cells.insert(cells.begin() + static_cast<std::ptrdiff_t>(p), {pattern, 1});
    }
    CellStore store;
    Init_TABdata(store, static_cast<std::int64_t>(cells.size()),
                 static_cast<int>(cases.front().size()));
    store.codes.clear();
    store.counts.clear();
    for (const auto& [pattern, count] : cells) {
        store.codes.insert(store.codes.end(), pattern.begin(), pattern.end());
        store.counts.push_back(count);
    }
    return store;
}

TEST(PatternCounter, GivesTheStoreOfTheInsertion) {
    std::mt19937 random(1);
    for (int round = 0; round < 120; ++round) {
        // One word of 64 bits up to six of them, few patterns and many.
        const std::size_t N = 2 + random() % 58;
        const int top = static_cast<int>(2 + random() % (round % 3 == 0 ? 56 : 3));
        std::vector<int> dims;
        for (std::size_t v = 0; v < N; ++v)
            dims.push_back(2 + static_cast<int>(random() % static_cast<unsigned>(top - 1)));
        std::vector<Pattern> cases;
        for (int k = 0; k < (round % 8 == 0 ? 3000 : 400); ++k) {
            if (!cases.empty() && random() % 3 == 0) {
                Pattern near = cases[random() % cases.size()];
                const std::size_t v = random() % N;
                if (random() % 2) near[v] = static_cast<std::uint8_t>(random() % (dims[v] + 1u));
                cases.push_back(near);
                continue;
            }
            Pattern pattern;
            for (const int dim : dims)
                pattern.push_back(static_cast<std::uint8_t>(random() % (dim + 1u)));
            cases.push_back(pattern);
        }
        PatternCounter counter(dims);
        for (const Pattern& pattern : cases) counter.Add(pattern.data());
        CellStore store;
        ASSERT_EQ(counter.Move_to(store), "");
        ASSERT_EQ(store, Store_by_insertion(cases)) << "N " << N << " top " << top;
    }
}

TEST(PatternCounter, HoldsExactlyTheLimitOfCodes) {
    // 655000 * 30 / 8 patterns of 8 variables fill every array to the last byte.
    constexpr int N = 8;
    PatternCounter counter(std::vector<int>(N, 57));
    std::uint8_t codes[N];
    const auto pattern = [&](std::int64_t k) {
        for (int v = N - 1; v >= 0; --v, k /= 58) codes[v] = static_cast<std::uint8_t>(k % 58);
        return codes;
    };
    const std::int64_t most = MaxDataBytes / N;
    ASSERT_EQ(most * N, 19650000);
    PatternCounter one_more(std::vector<int>(N, 57));
    for (std::int64_t k = most; k > 0; --k) counter.Add(pattern(k));
    for (std::int64_t k = most + 1; k > 0; --k) one_more.Add(pattern(k));
    CellStore store;
    EXPECT_TRUE(one_more.Overflowed());
    one_more.Add(pattern(1));
    EXPECT_EQ(one_more.Move_to(store), "Failure initializing TABdata");
    EXPECT_EQ(store, CellStore());
    EXPECT_FALSE(counter.Overflowed());
    counter.Add(pattern(most));  // a known pattern needs no room
    EXPECT_FALSE(counter.Overflowed());
    ASSERT_EQ(counter.Move_to(store), "");
    EXPECT_EQ(store.Ncells(), most);
    EXPECT_EQ(store.Ntabdata_arrays, 30);
    EXPECT_TRUE(std::equal(codes, codes + N, store.Cell(most)));
    EXPECT_EQ(store.counts.back(), 2);
}

TEST(PatternCounter, HoldsExactlyTheLimitOfCells) {
    PatternCounter counter({255, 255, 255});
    std::uint8_t codes[3];
    const auto pattern = [&](std::int64_t k) {
        for (int v = 2; v >= 0; --v, k >>= 8) codes[v] = static_cast<std::uint8_t>(k);
        return codes;
    };
    for (std::int64_t k = 0; k < MaxTableCells; ++k) counter.Add(pattern(k));
    EXPECT_EQ(counter.Ncells(), MaxTableCells);
    EXPECT_FALSE(counter.Overflowed());
    counter.Add(pattern(MaxTableCells));
    EXPECT_TRUE(counter.Overflowed());
    CellStore store;
    EXPECT_EQ(counter.Move_to(store), "TABDATA not possible") << "it is the counts that are full";
}

TEST(CellStore, CountsItsArraysExactly) {
    CellStore store;
    EXPECT_EQ(Init_TABdata(store, 333051, 59), "Failure initializing TABdata");
    EXPECT_EQ(store, CellStore());
    EXPECT_EQ(Init_TABdata(store, 333050, 59), "");
    EXPECT_EQ(store.Ntabdata_arrays, 30);
    EXPECT_EQ(Init_TABdata(store, 4866901, 2), "TABDATA not possible");
    EXPECT_EQ(Init_TABdata(store, 4866900, 2), "");
    EXPECT_EQ(store.Ntabcount_arrays, 30);
    EXPECT_EQ(Init_TABdata(store, std::int64_t{1} << 62, 59), "Failure initializing TABdata");
    EXPECT_EQ(Init_TABdata(store, 655000 / 2 + 1, 2), "");
    EXPECT_EQ(store.Ntabdata_arrays, 2);
    EXPECT_EQ(store.Ntabcount_arrays, 3);
}

}  // namespace
}  // namespace tarven
