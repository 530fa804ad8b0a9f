// DEF, VAR and CAT files: what the readers take, and what the strict check says of a VAR file.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "project/cat_file.h"
#include "project/def_file.h"
#include "project/var_file.h"
#include "shell/text.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

/// A VAR file of N variables of two categories in one block.
std::string Var_text(int N, const std::string& rest = "") {
    std::string text = std::to_string(N) + "\n";
    for (int i = 1; i <= N; ++i)
        text += std::string(1, static_cast<char>(i <= 26 ? 'A' + i - 1 : 'a' + i - 27)) + " " +
                std::to_string(i) + " 2 3\n0 1 2\n";
    return text + "1\n" + std::to_string(N) + "\n" + rest;
}

VarFile Var(const std::string& text) {
    return Read_VAR_file(Split_lines(text));
}

TEST(DefFile, ReadsConditionsSectionsAndTitle) {
    const DefFile def =
        Read_DEF_file({"12", "3 1 2.5", "12 16 40", "Select cases", "3 1 2 -1", "4 7", "[TITLE]",
                       "files and all", "Files", "V other.var", "D ../x", "d Data1.txt", "q x",
                       "PARAMETERS", "whatever", "", " "});
    EXPECT_EQ(def.NTAL, 12);
    EXPECT_EQ(def.conditions, (std::vector<RangeCondition>{{3, 1, 2.5}, {12, 16, 40}}));
    EXPECT_EQ(def.selections, (std::vector<ValueSelection>{{3, {1, 2, -1}}, {4, {7}}}));
    EXPECT_EQ(def.title, "FILES AND ALL") << "the title may look like a keyword";
    EXPECT_EQ(def.var_name, "OTHER.VAR");
    EXPECT_EQ(def.dat_name, "DATA1.TXT") << "a path is no plain name";
    EXPECT_TRUE(def.definition_parameters);
    EXPECT_EQ(def.messages, Lines{});
}

TEST(DefFile, WithoutAnythingButTheLengthUsesAllCases) {
    const DefFile def = Read_DEF_file({"4"});
    EXPECT_EQ(def.NTAL, 4);
    EXPECT_TRUE(def.conditions.empty());
    EXPECT_FALSE(def.definition_parameters);
}

TEST(DefFile, TellsTheFirstErrorsOfAFileThatIsNone) {
    std::vector<std::string> lines(3000, "no definition");
    const DefFile def = Read_DEF_file(lines);
    ASSERT_EQ(def.messages.size(), 21u);
    EXPECT_EQ(def.messages.back(), "and 2980 more lines with errors");
}

TEST(DefFile, TellsLinesInErrorAndKeepsTheOthers) {
    const DefFile def = Read_DEF_file({"3", "4 1 2", "1 5 2", "1 x 2", "2 0 1", "SELECT", "1.5 2",
                                       "1", "0 1", "1 2.5", "2 99999999999", "3 1"});
    EXPECT_EQ(
        def.messages,
        (Lines{
            "DEFfile error: 4 1 2 (DEF file, line 2: column 4, 1 to 3 are expected)",
            "DEFfile error: 1 5 2 (DEF file, line 3: the lower limit 5 is above the upper limit 2)",
            "DEFfile error: 1 X 2 (DEF file, line 4: a column, a lower and an upper limit are "
            "expected, or a keyword)",
            "This string does not define values to be selected: 1.5 2 (DEF file, line 7: a column "
            "and 1 to 85 whole numbers are expected, on at most 85 lines)",
            "This string does not define values to be selected: 1 (DEF file, line 8: a column and "
            "1 to 85 whole numbers are expected, on at most 85 lines)",
            "This string does not define values to be selected: 0 1 (DEF file, line 9: a column "
            "and 1 to 85 whole numbers are expected, on at most 85 lines)",
            "This string does not define values to be selected: 1 2.5 (DEF file, line 10: a column "
            "and 1 to 85 whole numbers are expected, on at most 85 lines)",
            "This string does not define values to be selected: 2 99999999999 (DEF file, line 11: "
            "a column and 1 to 85 whole numbers are expected, on at most 85 lines)"}));
    EXPECT_EQ(def.conditions.size(), 3u) << "improper limits stay in force";
    EXPECT_EQ(def.selections, (std::vector<ValueSelection>{{3, {1}}}));
    for (const char* length : {"0", "-1", "x", "", "1.5"})
        EXPECT_FALSE(Read_DEF_file({length, "TITLE"}).messages.empty()) << length;
    EXPECT_FALSE(Read_DEF_file({}).messages.empty());
    EXPECT_EQ(Read_DEF_file({"1601"}).NTAL, 1601) << "refused when data are read";
}

TEST(VarFile, ReadsVariablesBlocksCommentsAndNames) {
    const VarFile file =
        Var("2 Age 3 2\n 3\n10 20 40 S 1\n2 2 0 1\n2 2 1 2 extra\n"
            "COMMENTS\none\nVariables\ns Sex of person\nA  Twelve chars\nQ no\n"
            "COMMENTS\nlast");
    ASSERT_TRUE(file.ok) << file.error;
    EXPECT_EQ(Labels_of(file.variables, 2), "AS") << "the first character of a label counts";
    EXPECT_EQ(file.variables[1].vfra, 10);
    EXPECT_EQ(file.variables[1].vtil[2], 40);
    EXPECT_EQ(file.variables[1].name, "Twelve c") << "8 characters are kept";
    EXPECT_TRUE(file.variables[2].hasname) << "s is found as S";
    EXPECT_EQ(file.variables[2].VARNO, 1);
    EXPECT_EQ(file.comments, (Lines{"COMMENTS", "one", "COMMENTS", "last"}));
    EXPECT_TRUE(file.warnings.empty());
}

TEST(VarFile, DefinesBlocks) {
    const VarFile one = Var("2\nA 1 2 3\n0 1 2\nB 2 2 3\n0 1 2\n0\n");
    ASSERT_TRUE(one.ok) << one.error;
    EXPECT_EQ(one.Nlevels, 1);
    EXPECT_EQ(one.LevelEnd[1], 2);
    const VarFile behind = Var("2\nA 1 2 3\n0 1 2\nB 2 2 3\n0 1 2\n1 1\n");
    ASSERT_TRUE(behind.ok);
    EXPECT_EQ(behind.variables[2].Levnr, 2) << "behind the last block end";
    EXPECT_FALSE(Var("2\nA 1 2 3\n0 1 2\nB 2 2 3\n0 1 2\n2 2 1\n").ok);
    EXPECT_FALSE(Var("2\nA 1 2 3\n0 1 2\nB 2 2 3\n0 1 2\n1 70000\n").ok);
}

TEST(VarFile, HoldsTheLimits) {
    EXPECT_TRUE(Var(Var_text(58)).ok);
    EXPECT_EQ(
        Var("60\n").error,
        "Too many variables! (line 1: \"60\" where the number of variables, 2 to 59, is expected)");
    EXPECT_EQ(
        Var("1\n").error,
        "Too few variables! (line 1: \"1\" where the number of variables, 2 to 59, is expected)");
    const auto categories = [](int n) {
        std::string cuts = "0";
        for (int c = 1; c <= n; ++c) cuts += " " + std::to_string(c);
        return "2\nA 1 " + std::to_string(n) + " 3\n" + cuts + "\nB 2 2 3\n0 1 2\n1\n2\n";
    };
    EXPECT_TRUE(Var(categories(57)).ok);
    EXPECT_EQ(
        Var(categories(58)).error,
        "Too many categories (line 2: \"58\" where a number of categories of 2 to 57 is expected)");
    EXPECT_EQ(
        Var(categories(1)).error,
        "Too few categories (line 2: \"1\" where a number of categories of 2 to 57 is expected)");
}

TEST(VarFile, FailsWhereverItIsCutShort) {
    const std::string whole = Var_text(3);
    ASSERT_TRUE(Var(whole).ok);
    // Behind the last digit the file is whole, before it something is missing.
    for (std::size_t size = 0; size + 2 < whole.size(); ++size)
        EXPECT_FALSE(Var(whole.substr(0, size)).ok) << size;
    EXPECT_FALSE(Var("2\nA 1 2 3\n0 1 " + std::string(400, '9') + "\n").ok);
    EXPECT_FALSE(Var(std::string("\0\x01\xff", 3)).ok);
}

TEST(VarFile, WarnsOfWhatMayBeWrong) {
    const VarFile file = Var("2\nA 1 2 3\n0 1 1\nA 2 2 3\n0 0 2\n1\n2\nVAR\nA Age\nZ x\n");
    ASSERT_TRUE(file.ok);
    EXPECT_EQ(file.warnings,
              (Lines{"DECREASING CUT POINTS FOR CATEGORIES! A (VAR file, line 3: cut point 2 of 2 "
                     "is 1, more than 1 is expected)",
                     "LABEL A IS USED MORE THAN ONCE (VAR file, line 4: as in line 2)",
                     "error reading variable names or comments - Z x (VAR file, line 10: a label "
                     "of AA and a name are expected)"}));
    EXPECT_EQ(file.variables[2].name, "Age") << "of equal labels the last one is meant";
}

TEST(VarFile, CountsTenCommentsAndStoresNine) {
    std::string comments;
    for (int k = 0; k < 12; ++k) comments += "comment\n";
    const VarFile file = Var(Var_text(2, comments));
    EXPECT_EQ(file.comments.size(), 9u);
    EXPECT_EQ(file.Ncomments, 10);
}

TEST(VarCheck, SaysEachFaultInItsWords) {
    const std::string A = "A 1 2 3\n0 1 2\n", B = "B 2 2 3\n0 1 2\n", head = "2\n" + A;
    struct Row {
        std::string text;
        Lines findings;
    };
    const Row rows[] = {
        {"two\n",
         {"VAR file error  1: two is not an integer (VAR file, line 1: the number of variables, 2 "
          "to 59, is expected)"}},
        {"1\n",
         {"VAR file error  2: Too few variables! (VAR file, line 1: the number of variables, 2 to "
          "59, is expected)"}},
        {"60\n",
         {"VAR file error  3: Too many variables! (VAR file, line 1: the number of variables, 2 to "
          "59, is expected)"}},
        {"",
         {"VAR file error  5: Incomplete file (VAR file, line 1: the number of variables, 2 to 59, "
          "is expected)"}},
        {head,
         {"VAR file error  5: Incomplete file (VAR file, behind line 3: variable 2 of 2 "
          "expected)"}},
        {"2\nA 1 2 3\n",
         {"VAR file error  5: incomplete file! (VAR file, behind line 2: a lower limit and 2 cut "
          "points expected)"}},
        {"2\nA 1 2\n0 1 2\n",
         {"VAR file error  6: Too few parameters to define a variable: A 1 2 (VAR file, line 2: "
          "label, column, categories and type are expected)"}},
        {"2\nAB 1 2 3\n0 1 2\n",
         {"VAR file error  7: INVALID VARIABLE PARAMETER! AB (VAR file, line 2: a label of one "
          "character that is no digit is expected)"}},
        {"2\n7 1 2 3\n0 1 2\n",
         {"VAR file error  7: INVALID VARIABLE PARAMETER! 7 (VAR file, line 2: a label of one "
          "character that is no digit is expected)"}},
        {"2\nA 1001 2 3\n0 1 2\n",
         {"VAR file error  7: INVALID VARIABLE PARAMETER! 1001 (VAR file, line 2: a column of the "
          "DAT file, at most 3 digits, is expected)"}},
        {"2\nA 1 002 3\n0 1 2\n",
         {"VAR file error  7: INVALID VARIABLE PARAMETER! 002 (VAR file, line 2: a number of "
          "categories, at most 2 digits, is expected)"}},
        {"2\nA 1 2 33\n0 1 2\n",
         {"VAR file error  7: INVALID VARIABLE PARAMETER! 33 (VAR file, line 2: a type, 2 "
          "(nominal) or 3 (ordinal), is expected)"}},
        {"2\nA 1 x 3\n0 1 2\n",
         {"VAR file error  7: INVALID VARIABLE PARAMETER! x (VAR file, line 2: a number of "
          "categories, at most 2 digits, is expected)"}},
        {head + "A 2 2 3\n0 1 2\n1\n2\n",
         {"WARNING  1: LABEL A IS USED MORE THAN ONCE (VAR file, line 4: as in line 2)"}},
        {head + "B 1 2 3\n0 1 2\n1\n2\n",
         {"WARNING  2: VARIABLE 1 IS USED MORE THAN ONCE (VAR file, line 4: as in line 2)"}},
        {"2\nA 1 1 3\n0 1\n",
         {"VAR file error  8: INVALID NUMBER OF CATEGORIES (VAR file, line 2: 1, 2 to 57 are "
          "expected)"}},
        {"2\nA 1 58 3\n0 1\n",
         {"VAR file error  8: INVALID NUMBER OF CATEGORIES (VAR file, line 2: 58, 2 to 57 are "
          "expected)"}},
        {"2\nA 1 2 3\n0 1\n",
         {"VAR file error  9: Too few parameters to define categories in 3: 0 1 given 3 required "
          "(VAR file, line 3: a lower limit and 2 cut points are expected)"}},
        {"2\nA 1 2 3\n0 1 2 3\n" + B,
         {"WARNING  3: TOO MANY PARAMETERS TO DEFINE CATEGORIES! (VAR file, line 3: 4 numbers, a "
          "lower limit and 2 cut points are expected)"}},
        {"2\nA 1 2 3\n0 1 x\n",
         {"VAR file error 10: NON-NUMERIC CATEGORY PARAMETER! (VAR file, line 3: \"x\", a number "
          "is expected)"}},
        {"2\nA 1 2 3\n0 1 1\n",
         {"VAR file error 11: DECREASING CUT POINTS FOR CATEGORIES! (VAR file, line 3: cut point 2 "
          "of 2 is 1, more than 1 is expected)"}},
        {"2\nA 1 2 3\n1 0 2\n",
         {"VAR file error 11: DECREASING CUT POINTS FOR CATEGORIES! (VAR file, line 3: cut point 1 "
          "of 2 is 0, at least 1 is expected)"}},
        {"2\nA 1 2 1\n0 1 2\n",
         {"VAR file error 12: IMPROPER VARIABLE TYPE: 1! (VAR file, line 2: 2 (nominal) or 3 "
          "(ordinal) is expected)"}},
        {head + B,
         {"VAR file error 16: INCOMPLETE FILE. RECURSIVE STRUCTURE MISSING! (VAR file, line 6: a "
          "number of blocks is expected)"}},
        {head + B + "one 2\n",
         {"VAR file error 17: IMPROPER PARAMETER DEFINING RECURSIVE BLOCKS! one 2 (VAR file, line "
          "6: a number of blocks, 1 to 2, is expected)"}},
        {head + B + "0\n",
         {"VAR file error 18: IMPROPER NUMBER OF RECURSIVE BLOCKS! 0 (VAR file, line 6: a number "
          "of blocks, 1 to 2, is expected)"}},
        {head + B + "3\n",
         {"VAR file error 18: IMPROPER NUMBER OF RECURSIVE BLOCKS! 3 (VAR file, line 6: a number "
          "of blocks, 1 to 2, is expected)"}},
        {head + B + "2\n1\n",
         {"VAR file error 19: INCOMPLETE FILE. RECURSIV BLOCKS MISSING! (VAR file, behind line 7: "
          "the last variable of block 2 of 2 expected)"}},
        {head + B + "1\n2 3\n",
         {"WARNING  6: TOO MANY BLOCKS SEEMS TO BE DEFINED HERE: 2 3 (VAR file, line 7: 1 block "
          "ends in all are expected)"}},
        {head + B + "2\n1 x\n",
         {"VAR file error 20: IMPROPER BLOCK PARAMETER! 1 x (VAR file, line 7: \"x\", a variable "
          "from 1 to 2 is expected)"}},
        {head + B + "2\n2 1\n",
         {"VAR file error 21: DECREASING CUTPOINTS FOR BLOCKS!  (VAR file, line 7: 1, more than 2 "
          "is expected)"}},
        {head + B + "1\n2\nCOM\n\nx\n",
         {"WARNING 10: EMPTY RECORDS AMONG COMMENTS (VAR file, line 9: a comment is expected)"}},
        {head + B + "1\n2\nVAR\n\nA x\n",
         {"VAR file error 26: EMPTY RECORD AMONG VARIABLE NAMES (VAR file, line 9: a label and a "
          "name are expected)"}},
        {head + B + "1\n2\nVAR\nA\n",
         {"VAR file error 27: IMPROPER RECORD WITH VARIABLE NAMES: A (VAR file, line 9: a label "
          "and a name are expected)"}},
        {head + B + "1\n2\nVAR\nAB x\n",
         {"VAR file error 28: IMPROPER RECORD WITH VARIABLE NAMES: AB x (VAR file, line 9: a label "
          "and a name are expected)"}},
        {head + B + "1\n2\nVAR\nC x\n",
         {"VAR file error 29: LABEL WAS NOT RECOGNIZED: C x (VAR file, line 9: one of AB is "
          "expected)"}},
        // The lower limit may equal the first cut point; tabs and a CRLF are no fault.
        {"2\r\nA\t1 2 3\r\n1 1 2\r\n" + B + "1\n2\nCOM\nx\nVAR\nA Age\n", {}},
    };
    for (const Row& row : rows) {
        Lines found;
        for (const VarFinding& finding : Check_VAR_file(Split_lines(row.text)))
            found.push_back(Finding_line(finding));
        EXPECT_EQ(found, row.findings) << row.text;
    }
}

// What the check lets pass without an error the reader can use.
TEST(VarCheck, PassesNothingThatTheReaderRefuses) {
    const std::string whole = Var_text(2, "COM\nx\nVAR\nA Age\n");
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const char c : {'x', ' ', '9', '-', '\n'}) {
            std::string text = whole;
            text[at] = c;
            bool error = false;
            for (const VarFinding& finding : Check_VAR_file(Split_lines(text)))
                error = error || finding.error || finding.number == 3;
            if (!error) {
                EXPECT_TRUE(Var(text).ok) << text << Var(text).error;
            }
        }
}

TEST(CatFile, NamesCategoriesAndGivesTheOthersTheirInterval) {
    ProjectDefinition project;
    project.N = 2;
    project.variables[1] = {.label = 'P', .dim = 2, .vtype = Ordinal, .vfra = 30};
    project.variables[1].vtil[1] = 64.5;
    project.variables[1].vtil[2] = 110;
    project.variables[2] = {.label = 'p', .dim = 3, .vtype = Nominal};
    Set_default_category_names(project);
    EXPECT_EQ(CAT_lines(project),
              (Lines{"P 1 30-64.5", "P 2 64.5-110", "p 1 Cat 1", "p 2 Cat 2", "p 3 Cat 3"}));
    EXPECT_EQ(
        Read_CAT_file({"P 2 long name here", "p 1  left", "p 9 none", "Q 1 x", "p 2", ""}, project),
        3)
        << "lines that name no category";
    EXPECT_EQ(project.variables[1].categoryname[2], "long nam");
    EXPECT_EQ(project.variables[2].categoryname[1], "left");
    EXPECT_EQ(project.variables[2].categoryname[2], "Cat 2");
}

}  // namespace
}  // namespace tarven
