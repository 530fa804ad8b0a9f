#include "shell/parsed_line.h"

#include <gtest/gtest.h>

#include <string>

#include "shell/command_table.h"
#include "shell/text.h"

namespace tarven {
namespace {

ParsedLine Parsed(const std::string& text) {
    ParsedLine line;
    Parse_command(text, line);
    return line;
}

std::string Parameters(const ParsedLine& line) {
    return std::string(line.ParameterField.data(), line.ParameterCount);
}

TEST(ParsedLine, KnowsACommandByThreeLetters) {
    for (const char* text : {"tes", "TESTING", "$TES", "$$ Test ab", "  tEs", "TESx9"})
        EXPECT_EQ(Parsed(text).CommandNumber, Command_number("TES")) << text;
    for (const char* text : {"te", "TE ", "   ", "$ $$", "xyz", "\tTES", "T ES"})
        EXPECT_EQ(Parsed(text).CommandNumber, 0) << text;
    EXPECT_EQ(Parsed("---").CommandNumber, 42) << "the first unused number";
}

TEST(ParsedLine, TakesParametersFromBehindTheFirstBlank) {
    EXPECT_EQ(Parameters(Parsed("$$ tab ab")), "AB");
    EXPECT_EQ(Parameters(Parsed("TAB   a   b")), "AB");
    EXPECT_EQ(Parameters(Parsed("EXA 5000 7")), "50007");
    EXPECT_EQ(Parameters(Parsed("EXA2000")), "");
    EXPECT_EQ(Parameters(Parsed("TAB *")), "*");
    EXPECT_FALSE(Parsed("TAB *").IsComment);
    EXPECT_EQ(Parameters(Parsed("TAB \xE6")), "\xE6") << "only a-z are up-cased";
    EXPECT_EQ(Parameters(Parsed(To_line("TAB \xE2\x82\xAC"
                                        "a"))),
              "\x1A"
              "A")
        << "one letter, one parameter";
}

TEST(ParsedLine, StopsAtTheSixtiethParameter) {
    EXPECT_EQ(Parsed("TAB " + std::string(59, 'a')).ParameterCount, 59);
    EXPECT_EQ(Parsed("TAB " + std::string(100, 'a')).ParameterCount, 59);
    // Columns beyond 120 hold no numbers, but parameters all the same.
    const ParsedLine line = Parsed("TAB" + std::string(120, ' ') + "ab7");
    EXPECT_EQ(Parameters(line), "AB7");
    EXPECT_EQ(line.NumericCount, 0);
}

TEST(ParsedLine, MarksComments) {
    for (const char* text : {"!note", "  *x", "$!"}) {
        const ParsedLine line = Parsed(text);
        EXPECT_TRUE(line.IsComment) << text;
        EXPECT_EQ(line.CommandNumber, 0) << text;
    }
}

TEST(ParsedLine, AnEmptyTextLeavesNumbersAndCommentMark) {
    ParsedLine line = Parsed("EXA 2000 11");
    Parse_command("", line);
    EXPECT_EQ(line.CommandNumber, 0);
    EXPECT_EQ(line.ParameterCount, 0);
    ASSERT_EQ(line.NumericCount, 2);
    EXPECT_EQ(line.NumericParameters[0], 2000);
    EXPECT_EQ(line.NumericParameters[1], 11);
}

}  // namespace
}  // namespace tarven
