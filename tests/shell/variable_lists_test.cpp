#include "shell/variable_lists.h"

#include <gtest/gtest.h>

#include "shell/command_stream.h"
#include "shell/parsed_line.h"
#include "shell/prompts.h"
#include "shell/test_options.h"
#include "shell/text.h"
#include "support/session.h"

namespace tarven {
namespace {

using List = std::vector<std::uint8_t>;

TEST(FindLabel, TriesTheCaseThatWasTypedFirstAndTakesTheLast) {
    EXPECT_EQ(Find_label('a', "Aab"), 2);
    EXPECT_EQ(Find_label('A', "Aab"), 1);
    EXPECT_EQ(Find_label('B', "Aab"), 3);
    EXPECT_EQ(Find_label('A', "AbA"), 3);
    EXPECT_EQ(Find_label('\xE6', "x\xC6"), 2);
    EXPECT_EQ(Find_label('[', "x{"), 2);
    EXPECT_EQ(Find_label('c', "Aab"), 0);
    EXPECT_EQ(Find_label('c', ""), 0);
}

TEST(SwapCase, IsItsOwnInverseAndLeavesTheRestAlone) {
    int swapped = 0;
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        EXPECT_EQ(Swap_case(Swap_case(c)), c) << code;
        swapped += Swap_case(c) != c;
    }
    EXPECT_EQ(swapped, 2 * 29 + 6);
    EXPECT_EQ(Swap_case(']'), '}');
    EXPECT_EQ(Swap_case('^'), '^');
    EXPECT_EQ(Swap_case('~'), '~');
    EXPECT_EQ(Swap_case('\xD8'), '\xF8');
    EXPECT_EQ(Swap_case('\xC4'), '\xC4');
}

// What each converter makes of a text in a project of the three variables A, b and 7.
struct Row {
    std::string text;
    VariableList select, generators, pairs, with_score, labels;
};

TEST(Converters, DifferInDigitsAndInTheScoreAlone) {
    const std::string labels = "Ab7";
    const Row rows[] = {
        {"", {}, {}, {}, {}, {}},
        {"AB a",
         {true, {1, 2, 1}},
         {true, {1, 2, 1}},
         {true, {1, 2, 1}},
         {true, {1, 2, 1}},
         {true, {1, 2, 1}}},
        {"12A", {true, {12, 1}}, {true, {1}}, {true, {12, 1}}, {true, {12, 1}}, {false, {1}}},
        {"7 07", {true, {7, 7}}, {}, {true, {7, 7}}, {true, {7, 7}}, {false, {3, 3}}},
        {"256 300", {true, {0, 44}}, {}, {true, {0, 44}}, {true, {0, 44}}, {false, {}}},
        {"A*", {true, {1, 4}}, {true, {1, 4}}, {true, {1, 4}}, {true, {1, 4}}, {true, {1, 4}}},
        {"#A", {true, {255, 1}}, {true, {255, 1}}, {false, {1}}, {true, {5, 1}}, {false, {1}}},
        {"A-b+?", {true, {1, 2}}, {true, {1, 2}}, {true, {1, 2}}, {true, {1, 2}}, {true, {1, 2}}},
        {"xA\tb",
         {false, {1, 2}},
         {false, {1, 2}},
         {false, {1, 2}},
         {false, {1, 2}},
         {false, {1, 2}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Select_list_to_variables(row.text, labels, false), row.select);
        EXPECT_EQ(Generators_to_variables(row.text, labels, false), row.generators);
        EXPECT_EQ(String_to_variables(row.text, labels, false), row.pairs);
        EXPECT_EQ(String_to_variables_with_score(row.text, labels, false), row.with_score);
        EXPECT_EQ(Labels_to_variables(row.text, labels, false), row.labels);
    }
}

TEST(Converters, TakeALetterOutsideLatin1AsOneUnknownLabel) {
    std::string line = "TAB ";
    for (int k = 0; k < 100; ++k) line += "\xE2\x82\xAC";  // euro signs
    const VariableList list = String_to_variables(To_line(line + " B"), "AB\x80", true);
    EXPECT_FALSE(list.ok);
    EXPECT_EQ(list.list, List{2}) << "what stands within 120 letters counts";
}

TEST(Converters, SkipTheKeywordAndReadTo120Characters) {
    EXPECT_EQ(String_to_variables("TAB   a   b", "ab", true).list, (List{1, 2}));
    EXPECT_EQ(String_to_variables("TAB", "TAB", true).list, List{});
    EXPECT_EQ(String_to_variables("$TAB a", "ab", true).list, (List{1}));
    const std::string long_line = "TAB " + std::string(115, ' ') + "AB";
    EXPECT_EQ(String_to_variables(long_line, "AB", true).list, (List{1}));
    // A label that is no "#" is not found by the score's sign in another case.
    EXPECT_FALSE(String_to_variables("#", "#", false).ok);
}

using Prompts = SessionTest;

TEST_F(Prompts, TwoItemSetsNeedAPlusAndTwoSetsThatAreNotEmpty) {
    const auto items = [](std::string_view text) {
        List flags(3);
        for (const std::uint8_t i : String_to_variables(text, "ABC", true).list)
            if (i >= 1 && i <= 3) flags[i - 1] = 1;
        return flags;
    };
    EXPECT_FALSE(Two_item_sets("EQU AB", items).ok);
    EXPECT_TRUE(Run({}).empty());
    const TwoItemSets sets = Two_item_sets("EQU A C + B", items);
    EXPECT_TRUE(sets.ok);
    EXPECT_EQ(sets.items1, (List{1, 0, 1}));
    EXPECT_EQ(sets.items2, (List{0, 1, 0}));
    EXPECT_FALSE(Two_item_sets("EQU A + x", items).ok);
    EXPECT_FALSE(Two_item_sets("EQU + A", items).ok);
}

TEST_F(Prompts, RequireParametersAskWhereOneLetterStandsAlone) {
    struct {
        const char *line, *answer;
        bool ok;
        Wildcard wildcard;
        const char* left;
    } const rows[] = {
        {"SEP AB", "CD", true, Wildcard::none, "SEP AB"},
        {"SEP *", "CD", true, Wildcard::all, "SEP *"},
        {"SEP +", "CD", true, Wildcard::linked, "SEP +"},
        {"SEP -", "CD", true, Wildcard::absent, "SEP -"},
        {"SEP A", "CD", true, Wildcard::none, "SEP CD"},
        {"SEP", "-", true, Wildcard::absent, "SEP -"},
        {"SEP A", "", false, Wildcard::none, "SEP A"},
        {"SEP A", "   ", false, Wildcard::none, "SEP A"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        Read_command_line(row.line);
        Push_lines({row.answer});
        const RequiredParameters required = Require_parameters();
        EXPECT_EQ(required.ok, row.ok);
        EXPECT_EQ(required.wildcard, row.wildcard);
        EXPECT_EQ(The_line.CommandLine, row.left);
        Pop_line_source();
    }
}

TEST_F(Prompts, AnswersGoThroughTheConverters) {
    Push_lines({"ba", "BA CB", "AA", "A", "take 3 of 12", "none"});
    EXPECT_EQ(Ask_variables("c", "p", "ABC").list, (List{2, 1}));
    const std::vector<std::pair<std::uint8_t, std::uint8_t>> pairs = {{1, 2}, {2, 3}};
    EXPECT_EQ(Ask_pairs("c", "p", "ABC"), pairs);
    EXPECT_TRUE(Ask_pairs("c", "p", "ABC").empty());
    EXPECT_TRUE(Ask_pairs("c", "p", "ABC").empty());
    const AskedNumbers numbers = Ask_numbers("c", "p");
    EXPECT_EQ(numbers.count, 2);
    EXPECT_EQ(numbers.numbers[1], 12);
    EXPECT_EQ(numbers.numbers[85], 0);
    EXPECT_EQ(Ask_integer("c", "p"), -999);
    // At the end of the answers the items without dependence are the default.
    EXPECT_EQ(Ask_pure_items("c", "p", "ABC", "CA").list, (List{3, 1}));
    EXPECT_TRUE(Ask_pure_items("c", "p", "ABC", "").list.empty());
    Pop_line_source();
}

TEST(TestOptions, LettersBringFlagsInTheirOrder) {
    const auto options = [](const std::string& text, bool fitted = false) {
        ParsedLine line;
        Parse_command("TES " + text, line);
        return Test_parameters(line, fitted);
    };
    EXPECT_EQ(options("MKGQPLD"), (TestOptions{.PrintMarginals = true,
                                               .CollapseAnalysis = true,
                                               .PseudoGamma = true,
                                               .PowerSeries = true,
                                               .PartialOutput = true,
                                               .LocalGammas = true,
                                               .Homogeneity = true}));
    EXPECT_EQ(options("t"), (TestOptions{.PrintTable = true, .RowPercentages = true}));
    EXPECT_EQ(options("Z"),
              (TestOptions{.PrintTable = true, .RowPercentages = true, .NoObservedCounts = true}));
    EXPECT_EQ(options("E"), (TestOptions{.PrintTable = true, .ExpectedCounts = true}));
    EXPECT_EQ(options("F"), TestOptions{});
    EXPECT_EQ(options("F", true), (TestOptions{.PrintTable = true, .FittedCounts = true}));
    ParsedLine line;
    Parse_command("TES OMTRCEFKGQDZJLP", line);
    EXPECT_TRUE(Valid_test_parameters(line));
    Parse_command("TES OA", line);
    EXPECT_FALSE(Valid_test_parameters(line));
}

}  // namespace
}  // namespace tarven
