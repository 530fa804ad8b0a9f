#include "tables/table/table_commands.h"

#include <gtest/gtest.h>

#include "project/data.h"
#include "project/project.h"
#include "shell/user.h"
#include "support/data_session.h"
#include "tables/table/contingency_table.h"
#include "tables/table/table_file.h"
#include "tables/table/table_workspace.h"

namespace tarven {

namespace {

class TablesCommandsTest : public DataSession {
  protected:
    void Define(const std::string& name) {
        Define_example(name);
        The_project.files.EXA.path = folder / (name + ".EXA");
    }
    std::string Table_labels() { return The_table.table_ready ? The_table.table.labels() : ""; }
};

std::int32_t Cell(const std::vector<int>& c) {
    return Read_cell(The_table.table, c);
}

const std::vector<std::string> small_table = {"2",   "A 2 3 first one", "", "B 3 2", "1 2",
                                              "1 2", "3 4 5 6"};

/// The small table with line `at` (from 0) replaced.
std::vector<std::string> With_line(std::size_t at, const std::string& line) {
    std::vector<std::string> lines = small_table;
    lines[at] = line;
    return lines;
}

std::string First_message(const std::vector<std::string>& lines) {
    const TableFile read = Read_table_file(lines);
    EXPECT_EQ(read.ok, read.messages.empty());
    EXPECT_EQ(read.ok, read.table.Nvar() > 0);
    return read.ok ? "" : read.messages[0];
}

}  // namespace

TEST_F(TablesCommandsTest, VariablesComeInTheOrderOfTheProjectHoweverTheyAreNamed) {
    Define("titanic");
    for (const std::string line :
         {"TAB SCA", "TAB ACS", "tab s c a", "TAB 1 3 2", "TAB A1C", "TAB AACS"}) {
        Run({line});
        EXPECT_EQ(Table_labels(), "SCA") << line;
        EXPECT_EQ(The_table.table.NTOTAL, 2201);
        EXPECT_EQ(Cell({1, 1, 3}), 122) << "first class, died";
        EXPECT_EQ(Cell({3, 5, 3}), 2201);
    }
    Run({"TAB *"});
    EXPECT_EQ(Table_labels(), "SCAG");
    EXPECT_EQ(The_user.panels[1], "Table SCAG (2201)");
}

TEST_F(TablesCommandsTest, RefusalsSayWhyAndLeaveNoTable) {
    Define("survey");
    const std::vector<std::pair<std::string, std::string>> refusals = {
        {"TAB PEKCFWHAS", "Too many variables have been selected"},
        {"TAB *", "Too many variables have been selected"},
        {"TAB PX", "Variables are not ready"},
        {"TAB P#", "Scoregroups have not been defined"},
        {"TAB PP", "QVDATA0 - Select_variables: FAILURE - TOO FEW VARIABLES "},
        {"TAB P 77", "QVDATA0 - Select_variables: FAILURE - TOO FEW VARIABLES "},
        {"TAB", "Select variables: Not enough variables"},
        {"TAB +", "Failure reading table."}};
    for (const auto& [line, message] : refusals) {
        Run({"TAB PE"});
        ASSERT_EQ(Table_labels(), "PE");
        const std::vector<std::string> lines = Run({line});
        EXPECT_TRUE(Has_line_with(lines, message)) << line << "\n" << Joined(lines);
        EXPECT_EQ(Table_labels(), "") << line;
        EXPECT_EQ(The_user.panels[1], "No table");
    }
    The_project.N = 0;
    EXPECT_TRUE(Has_line_with(Run({"TAB PE"}), "No project"));
}

TEST_F(TablesCommandsTest, ATableOverTheLimitGivesItsSizes) {
    Define_project({57, 57, 57, 57});
    const std::vector<std::string> lines = Run({"TAB ABCD"});
    EXPECT_TRUE(Has_line_with(lines, "Too large table: 57 57 57 57")) << Joined(lines);
    EXPECT_TRUE(Has_line_with(lines, "10556001 CELLS EXCL. MARGINS. (max = 4866900) "));
    EXPECT_TRUE(Has_line_with(lines, "11316496 CELLS INCL. MARGINS. (max = 4866900)"));
    EXPECT_TRUE(Has_line_with(lines, "Table dimensions: failure"));
}

TEST_F(TablesCommandsTest, WithoutDataThereIsNoTable) {
    Define_project({2, 2});
    const std::vector<std::string> lines = Run({"TAB AB"});
    EXPECT_TRUE(Has_line_with(lines, "Data is not available"));
    EXPECT_TRUE(Has_line_with(lines, "TABULATE failure"));
}

TEST_F(TablesCommandsTest, AUserChoosesVariablesThatTheLineLacks) {
    Define("titanic");
    The_user.user.select_variables = [](const std::string&,
                                        const std::vector<std::string>& labels) {
        EXPECT_EQ(labels.size(), 4U);
        return std::string("GS");
    };
    Run({"TAB"});
    The_user.user.select_variables = nullptr;
    EXPECT_EQ(Table_labels(), "SG");
}

TEST_F(TablesCommandsTest, ShowAndDisposeWorkOnTheCurrentTable) {
    Define("titanic");
    EXPECT_TRUE(Has_line_with(Run({"SHOW T"}), "Table is not ready"));
    Run({"TAB SC"});
    const std::vector<std::string> lines = Run({"SHOW T"});
    EXPECT_TRUE(Has_line_with(lines, "Variables included in the current table"));
    EXPECT_TRUE(Has_line_with(lines, "|   122 |   167 |   528 |   673 |  1490 |")) << Joined(lines);
    EXPECT_TRUE(Has_line_with(lines, "|   8.2%|  11.2%|  35.4%|  45.2%| 100.0%|"));
    Run({"DISPOSE T"});
    EXPECT_EQ(The_user.panels[1], "No table");
    EXPECT_TRUE(Has_line_with(Run({"SHOW T"}), "Table is not ready"));
}

TEST_F(TablesCommandsTest, ShowPrintsAtMostAHundredStrata) {
    for (const int strata : {100, 101}) {
        std::vector<TableVariable> variables(3);
        for (std::size_t k = 0; k < 3; ++k) variables[k].label = static_cast<char>('A' + k);
        variables[2].DIM = strata;
        ContingencyTable table = Make_table(variables);
        table.cells[0] = 2;
        table.NTOTAL = 2;
        Add_margins(table);
        Set_current_table(table);
        const std::vector<std::string> lines = Run({"SHOW T"});
        EXPECT_EQ(Has_line_with(lines, "101 strata"), strata == 101);
        EXPECT_EQ(Has_line_with(lines, "+ C = 100"), strata == 100);
    }
}

TEST_F(TablesCommandsTest, ATableIsReadFromTheFileOfTheProject) {
    Define("titanic");
    Put("titanic.EXA", "2\r\nA 2 3\r\nB 2 3\r\n2 1 2\r\n1 2 3\r\n4");
    const std::vector<std::string> lines = Run({"TAB +"});
    EXPECT_TRUE(Has_line_with(lines, "Table from 2 variables")) << Joined(lines);
    EXPECT_TRUE(Has_line_with(lines, "Variable labels: AB"));
    EXPECT_EQ(Cell({2, 1}), 2);
    EXPECT_EQ(Cell({1, 3}), 4);
    EXPECT_EQ(The_user.panels[1], "EXA table AB (10)");
    EXPECT_EQ(The_table.table.Nlevels, 2);
}

TEST(TableFile, WhatIsWrittenReadsBack) {
    const TableFile read = Read_table_file(small_table);
    ASSERT_TRUE(read.ok);
    EXPECT_EQ(read.table.NTOTAL, 21);
    EXPECT_EQ(read.table.variables[0].name, "first one");
    const TableFile again = Read_table_file(Lines_of_table_file(read.table));
    ASSERT_TRUE(again.ok);
    EXPECT_EQ(again.table, read.table);
    EXPECT_EQ(again.table.variables[0].name, "first one");
}

TEST(TableFile, WhatDoesNotFitIsNamed) {
    EXPECT_EQ(First_message(small_table), "");
    EXPECT_EQ(First_message({}), "Too few lines to define a table");
    EXPECT_EQ(First_message({"3", "A 2 3", "B 2 3"}), "Too few lines to define a table");
    for (const std::string count : {"1", "9", "-2", "x", "2 2", "99999999999999999999"})
        EXPECT_EQ(First_message(With_line(0, count)), "Improper definition of table: " + count);
    for (const std::string variable : {"A", "AB 2 3", "A 1 3", "A 58 3", "A -2 3", "B 2 3"})
        EXPECT_EQ(
            First_message(With_line(1, variable)),
            "This is not a variable: " + (variable == "B 2 3" ? std::string("B 3 2") : variable));
    EXPECT_EQ(First_message(With_line(3, "B 3 7")), "This is not a variable type: 7");
    EXPECT_EQ(First_message(With_line(4, "3 1 2 2")),
              "This can not be the number of recursive levels: 3");
    EXPECT_EQ(First_message(With_line(4, "2 2")), "Improper recursive levels : 2 2");
    for (const std::string levels : {"2 2 2", "1 1", "2 0 2", "2 1 3"})
        EXPECT_EQ(First_message(With_line(4, levels)),
                  "improper definition of recursive levels: " + levels);
    EXPECT_EQ(First_message(With_line(6, "3 4 5")), "improper number of cells in table");
    EXPECT_EQ(First_message(With_line(6, "3 4 5 6 7")), "improper number of cells in table");
    for (const std::string count : {"-1", "1.5", "2147483648"})
        EXPECT_EQ(First_message(With_line(6, "3 4 5 " + count)), "This is not a count: " + count);
    EXPECT_EQ(First_message(With_line(6, "2147483647 0 0 1")),
              "The table has more cases than can be counted");
    EXPECT_EQ(First_message({"2", "A 2 3", "B 2 3", "1 2", "0 0 0 1"}),
              "THE TABLE SEEMS TO BE EMPTY? FAILURE ASSUMED");
    EXPECT_EQ(First_message({"4", "A 57 3", "B 57 3", "C 57 3", "D 57 3", "1 4", "1 2"}),
              "Improper definition of table: 57 57 57 57");
}

}  // namespace tarven
