#include "app/progress_line.h"

#include <gtest/gtest.h>

namespace tarven {
namespace {

TEST(ProgressLine, TellsTheTimeLeftOnceItCanBeEstimated) {
    const struct {
        std::int64_t position, end;
        double seconds;
        const char* line;
    } rows[] = {{1, 100, 4.9, "Tests: 1 of 100"},
                {0, 100, 60, "Tests: 0 of 100"},
                {100, 100, 60, "Tests: 100 of 100"},
                {75, 100, 30, "Tests: 75 of 100, about 10 s left"},
                {70, 100, 5, "Tests: 70 of 100, about 3 s left"},
                {25, 100, 30, "Tests: 25 of 100, about 90 s left"},
                {25, 100, 31, "Tests: 25 of 100, about 2 min left"},
                {1, 1000001, 6, "Tests: 1 of 1000001, about 1667 h left"}};
    for (const auto& [position, end, seconds, line] : rows)
        EXPECT_EQ(Progress_line("Tests", position, end, seconds), line);
}

}  // namespace
}  // namespace tarven
