// The stop rules on histories of Delta.

#include "rasch/estimation/iteration_stops.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarven {
namespace {

using History = std::vector<Extended>;

/// `count` falling Deltas and then these.
History Falling_then(int count, const History& end) {
    History history;
    for (int k = 0; k < count; ++k) history.push_back(1000 - k);
    history.insert(history.end(), end.begin(), end.end());
    return history;
}

TEST(IterationStops, FollowTheirRulesInOrder) {
    struct Row {
        std::string what;
        History history;
        int number;
        IterationStop wanted;
    };
    using enum IterationStop;
    const std::vector<Row> rows = {
        {"the first step", {100}, 1, none},
        {"critical is not reached", {1, 0.000101L}, 2, none},
        {"critical", {1, 0.00009L}, 2, converged},
        {"critical at the maximum", {1, 0.00009L}, 5000, converged},
        {"maximum", {4, 3}, 5000, maximum_steps},
        {"a thousand", {4, 3}, 2000, thousand_steps},
        {"just before", {4, 3}, 999, none},
        {"the same", {4, 3, 3}, 3, same_delta},
        {"two back, early", {3, 4, 3}, 5, none},
        {"two back", {3, 4, 3}, 6, delta_two_back},
        {"large", {20, 10.5L}, 100, large_delta},
        {"not large", {20, 10}, 100, none},
        {"large between", {20, 10.5L}, 101, none},
        {"grown 10 times", Falling_then(3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 9.5L, 9.9L}), 14, none},
        {"grown 11 times", Falling_then(3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 9.5L, 9.9L, 9.95L}), 15,
         worsening},
        {"better between", {1, 2, 3, 4, 5, 6, 5.5L, 6, 7, 8, 9, 9.5L, 9.6L}, 13, none},
        {"cycling", {5, 9, 5, 9, 5.1L}, 51, cycling},
        {"cycling, before Nstep", {5, 9, 5, 9, 5.1L}, 50, none},
        {"cycling at the same Delta", {5, 9, 5, 9, 5}, 51, cycling},
        {"a little smaller than two back", {5, 9, 5.11L, 9, 5.1L}, 51, none},
        {"smaller by less", {5, 9, 5.100009L, 9, 5.1L}, 51, cycling},
        {"smaller than four back", {5.2L, 9, 5, 9, 5.1L}, 51, none},
        {"cycling, small", {1.9L, 9, 1.9L, 9, 1.95L}, 51, none},
        {"before the first stands 9999", {5, 4}, 51, none},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Stop_after(row.history, row.number, {}), row.wanted) << row.what;
}

TEST(IterationStops, TheUserIsAskedLast) {
    int asked = 0;
    const auto cancel = [&] { return ++asked > 0; };
    const History same = {4, 3, 3}, better = {4, 3};
    EXPECT_EQ(Stop_after(same, 3, {}, cancel), IterationStop::same_delta);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(Stop_after(better, 2, {}, cancel), IterationStop::cancelled);
}

}  // namespace
}  // namespace tarven
