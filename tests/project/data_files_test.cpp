#include "project/data_files.h"

#include <gtest/gtest.h>

namespace tarven {
namespace {

// Each row: the lines of the file, and what is said about the first that does not fit.
struct Row {
    std::string text;
    std::string error;
};

TEST(SysFile, RefusesWhatDoesNotFitTheVariables) {
    const Row rows[] = {
        {"1 2 \n0 3 \n2 1 \n", ""},
        {"1 2\r\n0 3", ""},
        {"", ""},
        {"1 2 \n1 4 \n", "x.SYS, line 2: \"4\" is not a code 0 to 3 of variable 2"},
        {"1 2 \n3 1 \n", "x.SYS, line 2: \"3\" is not a code 0 to 2 of variable 1"},
        {"1 2 \n1 \n", "x.SYS, line 2: 1 codes, 2 required"},
        {"1 2 \n\n1 2 \n", "x.SYS, line 2: 0 codes, 2 required"},
        {"1 2 3 \n", "x.SYS, line 1: more than 2 codes"},
        {"1 -1 \n", "x.SYS, line 1: \"-1\" is not a code 0 to 3 of variable 2"},
        {"1 2x\n", "x.SYS, line 1: \"2x\" is not a code 0 to 3 of variable 2"},
        {std::string("1 2\0 \n", 6), "x.SYS, line 1: \"2?\" is not a code 0 to 3 of variable 2"},
        {"1 4294967297 \n", "x.SYS, line 1: \"4294967297\" is not a code 0 to 3 of variable 2"},
        {"1\t2\n", "x.SYS, line 1: \"1 2\" is not a code 0 to 2 of variable 1"},
    };
    for (const Row& row : rows) {
        LineReader file(row.text, "x.SYS");
        const auto take = [](const std::uint8_t* codes, std::int32_t count) {
            EXPECT_LE(codes[0], 2);
            EXPECT_LE(codes[1], 3);
            EXPECT_EQ(count, 1);
            return true;
        };
        EXPECT_EQ(Read_SYS_cases(file, {2, 3}, take), row.error);
    }
}

TEST(TabFile, RefusesWhatDoesNotFitTheVariables) {
    const Row rows[] = {
        {"0 1 7\n1 0 1\n1 3 2147483639\n", ""},
        {"", ""},
        {"0 1 7\n0 1 2\n", "x.TAB, line 2: not in ascending order"},
        {"1 0 7\n0 3 2\n", "x.TAB, line 2: not in ascending order"},
        {"0 1 0\n", "x.TAB, line 1: \" 0\" is not a count of 1 or more"},
        {"0 1 -3\n", "x.TAB, line 1: \" -3\" is not a count of 1 or more"},
        {"0 1 \n", "x.TAB, line 1: \" \" is not a count of 1 or more"},
        {"0 1 2 3\n", "x.TAB, line 1: \" 2 3\" is not a count of 1 or more"},
        {"0 1 1.5\n", "x.TAB, line 1: \" 1.5\" is not a count of 1 or more"},
        {"0 1 2147483648\n", "x.TAB, line 1: \" 2147483648\" is not a count of 1 or more"},
        {"0 1 2147483647\n0 2 1\n", "x.TAB, line 2: more cases than can be counted"},
        {"0 4 1\n", "x.TAB, line 1: \"4\" is not a code 0 to 3 of variable 2"},
        {"0\n", "x.TAB, line 1: 1 codes, 2 required"},
    };
    for (const Row& row : rows) {
        LineReader file(row.text, "x.TAB");
        CellStore store;
        std::int64_t cases = 0;
        EXPECT_EQ(Read_TAB_store(file, {2, 3}, store, cases), row.error);
        if (!row.error.empty()) {
            EXPECT_EQ(store, CellStore());
        }
        if (row.error.empty() && !row.text.empty()) {
            EXPECT_EQ(store.Ncells(), 3);
            EXPECT_EQ(cases, 2147483647);
        }
    }
}

}  // namespace
}  // namespace tarven
