#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "project/data.h"
#include "project/data_listing.h"
#include "project/frequencies_report.h"
#include "project/listed_variables.h"
#include "project/make.h"
#include "project/missing_report.h"
#include "shell/lifecycle.h"
#include "shell/session.h"
#include "support/data_session.h"
#include "support/definitions.h"
#include "support/reference_figures.h"

namespace tarven {
namespace {

std::vector<int> All_variables(const ProjectDefinition& definition) {
    std::vector<int> variables;
    for (int v = 1; v <= definition.N; ++v) variables.push_back(v);
    return variables;
}

TEST(Frequencies, AgreeWithTheFiguresOfEveryExample) {
    for (const std::string name : {"titanic", "survey", "vision", "verbal", "rasch30"}) {
        SCOPED_TRACE(name);
        const ProjectDefinition definition = Example_definition(name);
        const nlohmann::json figures = Reference_figures("cases.json", name);
        LineReader DAT(std::filesystem::path(Example_file(name, "DAT")));
        const FrequenciesResult result =
            Count_frequencies(definition, DAT, All_variables(definition), true);
        EXPECT_EQ(result.failure, "");
        EXPECT_EQ(result.read, figures.at("nread"));
        EXPECT_EQ(result.accepted, figures.at("n_used"));
        EXPECT_EQ(result.columns.size(), static_cast<std::size_t>(definition.NTAL));
        const std::string labels = figures.at("labels");
        for (std::size_t v = 0; v < labels.size(); ++v) {
            const std::string label(1, labels[v]);
            EXPECT_EQ(nlohmann::json(result.columns[v].categories),
                      figures.at("frequencies").at(label));
            EXPECT_EQ(result.columns[v].missing(), figures.at("missing").at(label));
        }
        for (const ColumnFrequencies& column : result.columns) {
            std::int64_t sum = 0;
            for (const auto& [value, count] : column.values) sum += count;
            EXPECT_EQ(sum, result.accepted) << column.column;
        }
    }
}

class DataLetters : public DataSession {};

TEST_F(DataLetters, SayWithoutAProjectThatThereAreNoData) {
    EXPECT_EQ(Run({"SHO D"}), (std::vector<std::string>{"Data source: No data"}));
}

TEST_F(DataLetters, RefuseCellsOfOtherCases) {
    Put("x.SYS", "1 1 \n2 2 \n");
    Put("x.TAB", "1 2 1\n2 1 1\n");
    Define_project({2, 2});
    const auto lines = Run({"INP T"});
    EXPECT_TRUE(Has_line_with(lines, "The 2 cases of x.TAB are not those of x.SYS"));
    EXPECT_FALSE(The_data.tabdata_ready);
    EXPECT_EQ(Data_source(), DataSource::sysfile);
    Put("x.TAB", "1 1 1\n2 2 1\n");
    Run({"INP T"});
    EXPECT_TRUE(The_data.tabdata_ready);
    Put("x.SYS", "1 1 \n2 1 \n");
    EXPECT_TRUE(Has_line_with(Run({"INP D"}), "The 2 cases of x.TAB are not those of x.SYS"));
    EXPECT_EQ(Data_source(), DataSource::dataset);
    EXPECT_FALSE(The_data.tabdata_ready);
}

TEST(Frequencies, TellValuesAndCategoriesApart) {
    ProjectDefinition definition = Definition_of_dims({2, 2});
    definition.NTAL = 3;
    definition.variables[1].vtil[1] = 2.5;
    definition.variables[1].vtil[2] = 4;
    definition.conditions = {{.column = 2, .lower = 1, .upper = 2}};
    LineReader DAT("0,5 1 7\n2.5 1 7\n2.75 2 NA\n4 2 1\n5 2 1\nx 1 1\n4 3 1\n", "x.DAT");
    const FrequenciesResult result = Count_frequencies(definition, DAT, {1}, true);
    ASSERT_EQ(result.columns.size(), 2u);
    const std::vector<std::string> expected = {
        "3 variables in dataset",
        "6 of 7 cases included",
        "",
        "Cases included according to the following conditions:",
        "",
        "Var   min   max",
        "---------------",
        "  2     1     2",
        "",
        "==============================================",
        "Variable no. 1   A ",
        "",
        "                         Count     Pct  CumPct",
        "-999999                      1    16.7    16.7",
        "0.5                          1    16.7    33.3",
        "2.5                          1    16.7    50.0",
        "2.75                         1    16.7    66.7",
        "4                            1    16.7    83.3",
        "5                            1    16.7   100.0",
        "TOTAL                        6",
        "",
        "This variable was categorized",
        "  Values                 Count     Pct  CumPct",
        "   1 1 - 2.5                 1    33.3    33.3",
        "   2 2.5 - 4                 2    66.7   100.0",
        "TOTAL                        3",
        "Missing:                     3",
        "  BELOW 1                    2",
        "  ABOVE 4                    1",
        "",
        "==============================================",
        "Reference no. 3",
        "",
        "                         Count     Pct  CumPct",
        "-999999                      1    16.7    16.7",
        "1                            3    50.0    66.7",
        "7                            2    33.3   100.0",
        "TOTAL                        6"};
    EXPECT_EQ(Frequencies_lines(definition, result), expected);
}

TEST(Frequencies, GiveUpAColumnOfTooManyValues) {
    std::string text;
    for (int k = 0; k < 30000; ++k) text += std::to_string(k) + ".5 1\n";
    LineReader DAT(text, "x.DAT");
    const FrequenciesResult result =
        Count_frequencies(Definition_of_dims({2, 2}), DAT, {1, 2}, false);
    EXPECT_TRUE(result.columns[0].too_many_values);
    EXPECT_EQ(result.columns[0].missing(), 29999);
    EXPECT_EQ(result.columns[1].values, (std::map<double, std::int64_t>{{1, 30000}}));
}

TEST(ListedVariables, AreLabelsNumbersAndStars) {
    ProjectDefinition definition = Definition_of_dims({2, 2, 2});
    definition.variables[3].label = 'a';
    const auto list = [&](std::string_view line) {
        std::vector<int> variables;
        return Listed_variables(line, definition, variables) ? variables : std::vector<int>{-1};
    };
    using List = std::vector<int>;
    EXPECT_EQ(list("FRE"), (List{1, 2, 3}));
    EXPECT_EQ(list("FRE +"), (List{1, 2, 3}));
    EXPECT_EQ(list("MIS *"), (List{1, 2, 3}));
    EXPECT_EQ(list("FRE aA"), (List{3, 1}));
    EXPECT_EQ(list("FRE b"), (List{2}));
    EXPECT_EQ(list("FRE 2A2"), (List{2, 1}));
    EXPECT_EQ(list("FRE 258"), (List{2}));
    EXPECT_EQ(list("FRE 9"), (List{-1}));
    EXPECT_EQ(list("FRE AX"), (List{-1}));
}

TEST(ListingFormatOf, IsRecordsWidthAndDecimals) {
    const auto format = [](std::string_view answer) {
        const ListingFormat f = Listing_format(answer);
        return f.ok ? std::vector<int>{f.records, f.width, f.decimals} : std::vector<int>{};
    };
    using Format = std::vector<int>;
    EXPECT_EQ(format("20 6:1"), (Format{20, 6, 1}));
    EXPECT_EQ(format("20"), (Format{20, 8, 2}));
    for (const char* bad : {"", "all", "0 6:1", "5 0:1", "5 41:1", "5 6:16", "5 4000000000:1"})
        EXPECT_EQ(format(bad), Format()) << bad;
}

class DataCommands : public DataSession {};

TEST_F(DataCommands, MissingCountsResponsesOfEverySource) {
    Define_example("survey");
    ASSERT_TRUE(Make().TAB);
    const std::vector<std::string> from_cells = Run({"MIS *"});
    EXPECT_TRUE(Has_line_with(from_cells, "       P  Observed =    188  Missing =     44"));
    EXPECT_TRUE(
        Has_line_with(from_cells, "Number of cases with complete responses = 165 out of 232"));
    EXPECT_TRUE(Has_line_with(from_cells, " 1      59"));
    ASSERT_EQ(Read_data(), "");
    Dispose_TABdata(The_data.TABdata);
    The_data.tabdata_ready = false;
    EXPECT_EQ(Run({"MIS *"}), from_cells);
    Dispose_data();
    EXPECT_EQ(Run({"MIS *"}), from_cells);
}

TEST_F(DataCommands, RefuseWithoutAProjectAndUnknownLabels) {
    for (const char* line : {"MAK", "FRE", "MIS", "DAT", "SYS", "SEL"})
        EXPECT_EQ(Run({line}), (std::vector<std::string>{"No project"})) << line;
    Define_example("titanic");
    for (const char* line : {"FRE X", "MIS SX", "DAT X", "SYS X"})
        EXPECT_TRUE(Has_line_with(Run({line}), std::string("Failure: ") + line));
    The_project.files.DAT.path = folder / "gone.DAT";
    EXPECT_TRUE(Has_line_with(Run({"FRE"}), "gone.DAT could not be read"));
}

TEST_F(DataCommands, ListRawAndRecodedData) {
    Define_project({2, 3});
    Put("x.DAT", "1 1.26\n2 3\n1 NA\n2 3\n");
    Put("x.DEF", "");
    Look_for_files();
    ASSERT_TRUE(Make().TAB);
    EXPECT_EQ(Run({"DAT BA", "2 5:1"}),
              (std::vector<std::string>{"Data from x.DAT", "", "    B    A", "  1.3  1.0",
                                        "  3.0  2.0", ""}));
    EXPECT_EQ(Run({"SYS", "9 3"}),
              (std::vector<std::string>{"Data from x.SYS", "", "  A  B", "  1  2", "  2  3",
                                        "  1  0", "  2  3", "", "Data from x.TAB", "", "  A  B",
                                        "  1  0       1 record(s)", "  1  2       1 record(s)",
                                        "  2  3       2 record(s)", ""}));
    EXPECT_TRUE(Has_line_with(Run({"DAT", "0"}), "A number of records"));
}

TEST_F(DataCommands, InputReadsDataAndTabdata) {
    Define_example("vision");
    ASSERT_TRUE(Make().TAB);
    Dispose_data();
    EXPECT_TRUE(Has_line_with(Run({"SHOW D"}), "Data source: TABfile"));
    Run({"INPUT DT"});
    EXPECT_TRUE(The_data.data_ready);
    EXPECT_TRUE(The_data.tabdata_ready);
    EXPECT_EQ(The_data.Ndata_arrays, 1);
    EXPECT_TRUE(Has_line_with(Run({"SHOW D"}), "Data source: TABdata in memory"));
    // A question before data in memory are read anew; without a yes they stay.
    std::filesystem::remove(folder / "vision.SYS");
    Look_for_files();
    Put("vision.DAT", "1 1 1\n");
    Run({"INPUT D", "N"});
    EXPECT_EQ(The_data.DATA.size(), 10719u * 3);
    Run({"INPUT D", "Y"});
    EXPECT_EQ(The_data.DATA.size(), 3u);
    Put("vision.DAT", "1 1\n");
    EXPECT_TRUE(Has_line_with(Run({"INPUT D", "Y"}), "FAILURE READING DATASET"));
    EXPECT_EQ(The_data.DATA.size(), 3u);
}

TEST_F(DataCommands, DataOfOtherVariablesAreGivenUp) {
    Define_example("vision");
    ASSERT_TRUE(Make().TAB);
    Run_moment(Moment::variables_changed);
    EXPECT_TRUE(The_data.tabdata_ready);
    The_project.variables[2].dim = 3;
    Run_moment(Moment::variables_changed);
    EXPECT_FALSE(The_data.tabdata_ready);
}

}  // namespace
}  // namespace tarven
