#include "shell/stop_rule.h"

#include <gtest/gtest.h>

namespace tarven {
namespace {

TEST(StopRule, BoundFollowsTheClassesOfItsArguments) {
    struct Row {
        double crit;
        std::int32_t nsim;
        double risk, bound;
    };
    for (const Row& row : {Row{0.05, 1000, 0.001, 1.058}, Row{0.0999, 1, 0.00499, 1.058},
                           Row{0.1, 100, 0.001, 1.287}, Row{0.1, 101, 0.001, 1.313},
                           Row{0.249, 701, 0.005, 1.163}, Row{0.249, 700, 0.0049, 1.321},
                           Row{0.25, 950, 0.01, 1.488}, Row{0.9, 2147483647, 0.02, 1.379},
                           Row{0.05, 400, 0.0199, 0.823}, Row{0.05, 0, 0.05, 0.573},
                           Row{-1, -2147483647 - 1, 7, 0.573}, Row{0.25, 900, 0.05, 1.207}})
        EXPECT_EQ(Repeat_boundary(row.crit, row.nsim, row.risk), row.bound)
            << row.crit << ' ' << row.nsim << ' ' << row.risk;
}

}  // namespace
}  // namespace tarven
