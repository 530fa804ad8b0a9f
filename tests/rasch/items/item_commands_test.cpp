#include "rasch/items/item_commands.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "project/data.h"
#include "project/project.h"
#include "rasch/items/item_workspace.h"
#include "rasch/items/score_report.h"
#include "shell/lifecycle.h"
#include "shell/session.h"
#include "shell/user.h"
#include "support/data_session.h"
#include "support/reference_figures.h"
#include "tables/table/table_workspace.h"

namespace tarven {

namespace {

class ItemCommandsTest : public DataSession {
  protected:
    /// Variables A to F of three categories and G of two, H of nine, I nominal.
    void Define_small(const std::string& data) {
        Put("x.DAT", data);
        Define_project({3, 3, 3, 3, 3, 3, 2, 9, 3});
        The_project.variables[9].vtype = Nominal;
    }
    void Define_small() {
        Define_small(
            "1 2 3 1 1 1 1 1 1\n2 2 2 2 2 2 2 2 2\n3 3 1 2 1 3 1 9 3\n1 1 1 1 3 2 2 3 1\n"
            "3 3 3 3 3 3 2 4 2\n2 1 1 1 1 2 1 5 1\n");
    }
    std::string Items() { return Item_labels(The_items.model); }
    std::string Exogenous() { return Exo_labels(The_items.model); }
    std::string Flips() {
        std::string labels;
        for (int i = 1; i <= The_items.model.NITEMS; ++i)
            if (The_items.model.ItemNo(i).FlippedItem) labels += The_items.model.ItemNo(i).label;
        return labels;
    }
};

struct Refusal {
    std::string line;
    std::string message;
};

}  // namespace

TEST_F(ItemCommandsTest, ItemsAreTakenAsTyped) {
    Define_small();
    for (const auto& [line, items] :
         std::vector<std::pair<std::string, std::string>>{{"ITE ABC", "ABC"},
                                                          {"ite c a b", "CAB"},
                                                          {"ITE 3 1", "CA"},
                                                          {"ITE AABA", "AB"},
                                                          {"ITE abc", "ABC"},
                                                          {"ITE A2C", "ABC"}}) {
        Run({line});
        EXPECT_EQ(Items(), items) << line;
        EXPECT_EQ(The_user.panels[2], "Items: " + items);
        EXPECT_TRUE(The_items.scores.ready);
        EXPECT_EQ(The_items.scores.complete, 6);
    }
}

TEST_F(ItemCommandsTest, ARefusedSelectionLeavesNoItems) {
    Define_small();
    for (const auto& [line, message] : std::vector<Refusal>{
             {"ITE", "No items"},
             {"ITE A", "Items were not selected"},
             {"ITE AX", "\"X\" is no variable"},
             {"ITE A#", "Items were not selected"},
             {"ITE A 77", "Items were not selected"},
             {"ITE AH", "Item scores have to be less than or equal to 7"},
             {"ITE AI", "Items have to be ordinal. These variables are nominal: I"},
             {"ITE 0 A", "Items were not selected"}}) {
        Run({"ITE ABC"});
        const auto lines = Run({line});
        EXPECT_TRUE(Has_line_with(lines, message)) << line << "\n" << Joined(lines);
        EXPECT_EQ(Items(), "") << line;
        EXPECT_EQ(The_user.panels[2], "No items");
        EXPECT_FALSE(The_items.scores.ready);
        EXPECT_EQ(The_score.groups(), 0);
    }
}

TEST_F(ItemCommandsTest, TheLimitsAreToldWithTheirLine) {
    Define_project(std::vector<int>(55, 2));
    Put("x.DAT", "");
    const auto many = Run({"ITE *"});
    EXPECT_TRUE(Has_line_with(many, "Number of items =                                 54"));
    EXPECT_TRUE(Has_line_with(many, "55 items: too many items"));
    Define_project(std::vector<int>(37, 8));
    const auto large = Run({"ITE *"});
    EXPECT_TRUE(Has_line_with(large, "Maximum summary score =                          253"));
    EXPECT_TRUE(Has_line_with(large, "A maximum score of 259 is too large"));
    EXPECT_EQ(Items(), "");
}

TEST_F(ItemCommandsTest, UnequalItemsAreAskedAbout) {
    Define_small();
    const std::string sentence = "All items must have the same number of response categories";
    EXPECT_TRUE(Has_line_with(Run({"ITE AG"}), sentence)) << "nobody there: it goes on";
    EXPECT_EQ(Items(), "AG");
    EXPECT_TRUE(Has_line_with(Run({"ITE AG", "Y"}), "not ready yet"));
    EXPECT_EQ(Items(), "");
    Run({"ITE AG", "N"});
    EXPECT_EQ(Items(), "AG");
    The_session.AUTOMATIC = true;
    EXPECT_TRUE(Has_line_with(Run({"ITE BG"}), sentence));
    EXPECT_EQ(Items(), "BG");
}

TEST_F(ItemCommandsTest, AVariableIsNeverBoth) {
    Define_small();
    const auto early = Run({"EXO CG"});
    EXPECT_TRUE(Has_line_with(early, "Items have not been selected")) << "a warning only";
    EXPECT_EQ(Exogenous(), "CG");
    EXPECT_TRUE(Has_line_with(
        Run({"ITE ABCD"}), "These variables are exogenous: C. They are not included among items."));
    EXPECT_EQ(Items(), "ABD");
    EXPECT_TRUE(Has_line_with(
        Run({"EXO AEBG"}),
        "These variables are items: AB. They are therefore not included among items"));
    EXPECT_EQ(Exogenous(), "EG");
    Run({"EXO *"});
    EXPECT_EQ(Exogenous(), "CEFGHI");
    EXPECT_EQ(The_user.panels[3], "Exogeneous: CEFGHI");
    EXPECT_TRUE(Has_line_with(Run({"EXO GX"}), "Error defining exogenous variables: GX"));
    EXPECT_EQ(Exogenous(), "");
    EXPECT_TRUE(Has_line_with(Run({"EXO AB"}), "Failure defining exogenous variables."));
    Run({"EXO G"});
    EXPECT_TRUE(Has_line_with(Run({"EXO"}), "Failure defining exogenous variables."));
    EXPECT_EQ(The_user.panels[3], "No exogenous");
}

TEST_F(ItemCommandsTest, FlipsBelongToTheVariables) {
    Define_small();
    Run({"ITE A-BC"});
    EXPECT_EQ(Flips(), "B");
    EXPECT_EQ(The_items.scores.Count(3), 3) << "responses 1 2 3, 2 2 2 and 2 1 1";
    Run({"ITE BD"});
    EXPECT_EQ(Flips(), "B") << "a line without - leaves them as they were";
    Run({"FLI D"});
    EXPECT_EQ(Flips(), "BD");
    Run({"FLI"});
    EXPECT_EQ(Flips(), "");
    Run({"ITE -A-B", "ITE AB -"});
    EXPECT_EQ(Flips(), "") << "a - behind the last item flips none";
    for (const std::string line : {"FLI C", "FLI X", "FLI AC"}) {
        EXPECT_TRUE(Has_line_with(Run({line}), "Only items can be flipped")) << line;
        EXPECT_EQ(Flips(), "") << line;
    }
    Run({"DIS I"});
    EXPECT_TRUE(Has_line_with(Run({"FLI"}), "Items must be defined before they can be flipped"));
}

TEST_F(ItemCommandsTest, TheSignOfTheLastMentionCounts) {
    Define_project({3, 3, 3, 3});
    Put("x.DAT", "1 2 3 1\n2 2 2 2\n");
    for (const auto& [line, flips] :
         std::vector<std::pair<std::string, std::string>>{{"ITE *-C", "C"},
                                                          {"ITE -*", "ABCD"},
                                                          {"ITE -*C", "ABD"},
                                                          {"ITE -AB-CA", "C"},
                                                          {"ITE A-A", "A"}}) {
        Run({"ITE ABCD-", line + (line == "ITE A-A" ? "BCD" : "")});
        EXPECT_EQ(Flips(), flips) << line;
    }
}

TEST_F(ItemCommandsTest, CountsOfMillionsStayApart) {
    GLLRM model;
    ScoreDistribution scores;
    scores.ready = true;
    scores.complete = 24681357;
    scores.SCOREDISTRIBUTION[100] = 24681357;
    for (const std::string& line : Score_distribution_lines(scores, {}, "Score"))
        EXPECT_EQ(line.find("10024681357"), std::string::npos) << line;
    EXPECT_TRUE(Has_line_with(Score_distribution_lines(scores, {}, "Score"), "100 24681357"));
}

TEST_F(ItemCommandsTest, OddResponsesAreTold) {
    struct Odd {
        std::string data;
        std::vector<std::string> told;
        std::int64_t complete;
        int groups;
    };
    for (const Odd& odd : std::vector<Odd>{
             {"1 2 9 1 1 1 1 1 1\n2 1 9 1 1 1 1 1 1\n",
              {"OBS: all responses to item C are missing", "No person has responded to all items"},
              0,
              0},
             {"1 2 3 1 1 1 1 1 1\n3 1 3 1 1 1 1 1 1\n",
              {"OBS: all responses to item C give the same score"},
              2,
              2},
             {"1 2 3 1 1 1 1 1 1\n",
              {"1 person, 1 with responses to all items", "Only one score group was defined"},
              1,
              0},
             {"", {"0 with responses to all items"}, 0, 0}}) {
        Define_small(odd.data);
        const auto lines = Run({"ITE ABC"});
        EXPECT_EQ(Items(), "ABC") << odd.data;
        for (const std::string& told : odd.told)
            EXPECT_TRUE(Has_line_with(lines, told) || odd.data.empty()) << told << Joined(lines);
        EXPECT_EQ(The_items.scores.complete, odd.complete);
        EXPECT_EQ(The_items.model.groups.ScoreDim, odd.groups);
        const auto cut = Run({"CUT 1"});
        EXPECT_EQ(Has_line_with(cut, "SCORES_READY=false"), odd.complete == 0) << Joined(cut);
        for (const std::string line : {"SHO IS", "GLL", "COM", "FLI A", "TAB #G"}) Run({line});
        EXPECT_EQ(The_score.groups(), The_items.model.groups.ScoreDim);
    }
}

TEST_F(ItemCommandsTest, EmptyCategoriesOfExogenousVariablesAreTold) {
    Define_small("1 2 3 1 1 1 1 1 1\n3 1 3 3 1 1 1 1 9\n");
    const auto lines = Run({"ITE ABC", "EXO DI"});
    EXPECT_TRUE(Has_line_with(lines, "1: 1  2: 0  3: 1"));
    EXPECT_TRUE(Has_line_with(lines, "OBS: D has categories without persons: 2"));
    EXPECT_TRUE(Has_line_with(lines, "1: 1  2: 0  3: 0  missing: 1"));
    EXPECT_TRUE(Has_line_with(lines, "OBS: I has categories without persons: 2, 3"));
}

TEST_F(ItemCommandsTest, NewItemsAndExogenousVariablesTakeTheirTermsAlong) {
    Define_small();
    Run({"ITE ABCD", "EXO GI", "LLR AB CG D#"});
    EXPECT_EQ(The_current_GLLRM(), "AB CG D#");
    The_items.CurrentIRTparameters_ready = The_items.CurrentPersons_ready = true;
    Run({"EXO G"});
    EXPECT_EQ(The_current_GLLRM(), "AB D#") << "DIF is gone";
    EXPECT_FALSE(The_items.CurrentIRTparameters_ready || The_items.CurrentPersons_ready);
    Run({"ITE ABCD"});
    EXPECT_EQ(The_current_GLLRM(), "");
    EXPECT_EQ(Exogenous(), "G") << "they stay";
    Run({"DIS IE"});
    EXPECT_EQ(Items() + Exogenous(), "");
}

TEST_F(ItemCommandsTest, CutKeepsWhatItRefuses) {
    Define_small();
    Run({"ITE ABCD", "CUT 0 2 4 8"});
    const auto before = The_items.model.groups.ScoreCuts;
    for (const std::string line :
         {"CUT 4 2", "CUT 999", "CUT 8", "CUT abc", "CUT 0 999", "CUT 3 3", "CUT #", "CUT #0"}) {
        Run({line});
        EXPECT_EQ(The_items.model.groups.ScoreCuts, before) << line;
        EXPECT_EQ(The_score.groups(), 3) << line;
    }
    Run({"LLR A#"});
    EXPECT_TRUE(Has_line_with(Run({"CUT #999"}), "Only one score group was defined: "))
        << "a term needs its groups";
    EXPECT_EQ(The_items.model.groups.ScoreCuts, before);
    The_items.CurrentIRTparameters_ready = true;
    Run({"CUT 3"});
    EXPECT_FALSE(The_items.CurrentIRTparameters_ready) << "the model has other groups";
    Run({"LLR AB", "CUT #999"});
    EXPECT_EQ(The_items.model.groups.ScoreDim, 0);
    EXPECT_EQ(The_score.groups(), 0);
    EXPECT_FALSE(The_items.score_groups.ready);
    EXPECT_TRUE(
        Has_line_with(Run({"TAB #A"}), "Scoregroups have not been defined: CUT makes them"));
}

TEST_F(ItemCommandsTest, ScoresAreThoseOfTheDataThatAreThereNow) {
    Define_project({3, 3, 3});
    EXPECT_TRUE(Has_line_with(Run({"ITE ABC"}), "Scores are not ready"));
    EXPECT_EQ(Items(), "ABC");
    Put("x.DAT", "1 2 3\n2 2 2\n3 3 3\n");
    Look_for_files();
    Run({"CUT 3"});
    EXPECT_EQ(The_items.scores.complete, 3);
    EXPECT_EQ(The_items.score_groups.Count(1), 2);
    Put("x.DAT", "1 2 3\n2 2 2\n3 3 3\n3 3 3\n");
    EXPECT_TRUE(Has_line_with(Run({"SHO S"}), "4 persons, 4 with responses to all items"));
}

TEST_F(ItemCommandsTest, ScoresFollowDataThatAreReplaced) {
    Define_project({3, 3, 3});
    Run({"ITE ABC"});
    Put("x.DAT", "1 2 3\n2 2 2\n3 3 3\n");
    Look_for_files();
    Run({"MAK"});
    EXPECT_EQ(The_items.scores.complete, 3);
    EXPECT_EQ(The_score.groups(), 2) << "the first groups, at the median";
    Run({"CUT 0 1 2 6", "LLR AB"});
    Put("x.DAT", "1 2 3\n1 1 1\n2 2 2\n");
    The_items.CurrentIRTparameters_ready = true;
    Run({"MAK", "Y"});
    EXPECT_EQ(The_items.score_groups.Count(1), 1);
    EXPECT_EQ(The_score.groups(), 3) << "groups and terms stay";
    EXPECT_EQ(The_current_GLLRM(), "AB");
    EXPECT_FALSE(The_items.CurrentIRTparameters_ready);
    Run({"TAB #A"});
    Put("x.DAT", "1 2 9\n9 3 3\n");
    EXPECT_TRUE(Has_line_with(Run({"MAK", "Y"}), "TABLE HAS BEEN LOST")) << "nobody has a score";
    EXPECT_EQ(The_score.groups(), 0);
}

TEST_F(ItemCommandsTest, ResponsesThatCannotBeReadAreNotMissing) {
    Define_project({3, 3, 3});
    Put("x.TAB", "1 2 3 1\n1 nonsense\n");
    Look_for_files();
    for (const std::string line : {"ITE ABC", "FLI A"}) {
        const auto lines = Run({line});
        EXPECT_TRUE(Has_line_with(lines, "x.TAB")) << Joined(lines);
        EXPECT_TRUE(Has_line_with(lines, "Scores are not ready")) << line;
        EXPECT_FALSE(Has_line_with(lines, "issing")) << Joined(lines);
        EXPECT_EQ(Items(), "ABC");
    }
}

TEST_F(ItemCommandsTest, FlipTellsGroupsAsCutDoes) {
    Define_small();
    Run({"ITE ABCD"});
    const auto cut = Run({"CUT 1 3 6"}), flipped = Run({"FLI A", "FLI A"});
    ASSERT_EQ(cut.at(1), "Observed:");
    EXPECT_TRUE(std::equal(cut.rbegin(), cut.rend(), flipped.rbegin())) << Joined(flipped);
}

TEST_F(ItemCommandsTest, AListThatIsReadInPartIsTold) {
    Define_project(std::vector<int>(54, 2));
    Put("x.DAT", "");
    std::string line = "ITEM";
    for (int v = 54; v >= 1; --v) line += " " + std::to_string(v);
    const std::string told = "Only the first 120 characters of the line were read";
    EXPECT_TRUE(Has_line_with(Run({line}), told));
    EXPECT_EQ(The_items.model.NITEMS, 38) << "16, which is cut in two, is not 1";
    EXPECT_FALSE(Has_line_with(Run({line.substr(0, 118) + "  "}), told));
}

TEST_F(ItemCommandsTest, PseudoGammaTakesTheScore) {
    Define_small();
    EXPECT_TRUE(Has_line_with(Run({"PGA I#"}), "Items have not been defined"));
    Run({"ITE ABCD", "CUT"});
    const auto lines = Run({"PGA I#"});
    EXPECT_TRUE(Has_line_with(lines, "#")) << Joined(lines);
    EXPECT_FALSE(Has_line_with(lines, "Failure"));
    EXPECT_TRUE(Has_line_with(Run({"PGA #"}), "Select variables: Not enough variables"));
    EXPECT_TRUE(Has_line_with(Run({"PGA #X"}), "Failure: PGA #X"));
}

TEST_F(ItemCommandsTest, ATableOfTheScoreIsLostWithTheScore) {
    Define_small();
    for (const std::string line : {"ITE ABD", "FLI A", "CUT 3", "DIS I"}) {
        Run({"ITE ABCD", "TAB #AG", "HYP #A"});
        ASSERT_TRUE(The_table.table_ready) << line;
        const auto lines = Run({line});
        EXPECT_TRUE(Has_line_with(lines, "TABLE HAS BEEN LOST")) << line;
        EXPECT_TRUE(Has_line_with(lines, "HYPOTHESES HAVE BEEN LOST")) << line;
        EXPECT_FALSE(The_table.table_ready) << line;
    }
    Run({"ITE ABCD", "TAB #AG", "LLR AB", "EXO I", "GLL", "SHO IS"});
    EXPECT_TRUE(The_table.table_ready) << "these leave the score as it is";
    Run({"TAB AG", "ITE ABC"});
    EXPECT_TRUE(The_table.table_ready) << "it does not rest on the score";
}

TEST_F(ItemCommandsTest, EverythingEndsWithTheProject) {
    Define_small();
    for (const Moment moment : {Moment::variables_changed, Moment::project_about_to_close}) {
        Run({"ITE -AB", "EXO G", "THE Ability", "CUT 1"});
        Run_moment(moment);
        EXPECT_EQ(Items() + Exogenous(), "");
        EXPECT_EQ(The_items.Thetaname, "Theta");
        EXPECT_EQ(The_score.groups(), 0);
        EXPECT_FALSE(The_items.FlippedVariable[1]);
        EXPECT_EQ(The_user.panels[2] + The_user.panels[3], "No itemsNo exogenous");
    }
}

// score_distribution of tests/data/items.json: counted with R.
TEST_F(ItemCommandsTest, DistributionsAgreeWithThoseOfR) {
    for (const std::string project : {"verbal", "rasch30"}) {
        Define_example(project);
        const nlohmann::json figures = Reference_figures("items.json", project);
        Run({"ITE " + figures["items"].get<std::string>()});
        const std::vector<std::int64_t> expected = figures["score_distribution"];
        EXPECT_EQ(The_items.scores.complete, figures["n_complete"].get<int>());
        for (std::size_t s = 0; s < expected.size(); ++s)
            EXPECT_EQ(The_items.scores.Count(static_cast<int>(s)), expected[s]) << project << s;
        EXPECT_EQ(highest_possible_score(The_items.model), static_cast<int>(expected.size()) - 1);
    }
}

// "#" counted by way of the cases, one by one.
TEST_F(ItemCommandsTest, TablesOfTheScoreAreCountedFromEverySource) {
    Define_small(
        "1 2 3 1 1 1 1 1 1\n2 2 2 9 2 2 2 2 2\n3 3 1 2 1 3 1 9 3\n1 1 1 1 3 2 2 3 1\n"
        "3 3 3 3 3 3 2 4 2\n2 1 1 1 1 2 1 5 1\n2 1 9 1 1 2 1 5 1\n1 3 3 2 1 2 2 5 1\n");
    Run({"ITE AB-C", "CUT 0 2 3 6", "TAB #G"});
    ASSERT_TRUE(The_table.table_ready);
    // Scores 1, 3, 6, 2, 4, 3, none, 2; G is 1 2 1 2 2 1 1 2.
    const auto cell = [](int g, int c) {
        return Read_cell(The_table.table, std::vector<int>{g, c});
    };
    const std::vector<std::int32_t> counts = {cell(1, 1), cell(1, 2), cell(2, 1),
                                              cell(2, 2), cell(3, 1), cell(3, 2)};
    EXPECT_EQ(counts, (std::vector<std::int32_t>{1, 2, 1, 1, 1, 1}));
    const auto cells = The_table.table.cells;
    Run({"MAKE", "DIS D"});
    for (const char* line : {"INP D", "INP T"}) {
        Run({line, "TAB G#"});
        EXPECT_EQ(The_table.table.cells, cells) << line;
        EXPECT_EQ(The_table.table.labels(), "#G");
    }
    EXPECT_EQ(The_table.table.variable(1).categories,
              (std::vector<std::string>{"0-2", "3", "4-6"}));
}

TEST_F(ItemCommandsTest, AScoreOfManyGroupsConditionsButIsNotTested) {
    const int items = 35;
    std::string data;
    for (int c = 0; c < 400; ++c) {
        for (int v = 0; v < items; ++v) data += (c * 7 + v * v) % 71 < c % 71 ? "2 " : "1 ";
        data += c % 2 == 0 ? "1 1\n" : "2 1\n";
    }
    data +=
        std::string("3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 1 2\n");
    Put("x.DAT", data);
    std::vector<int> dims(items, 3);
    dims.insert(dims.end(), {2, 2});
    Define_project(dims);
    std::string line = "ITE";
    for (int v = 1; v <= items; ++v) line += " " + std::to_string(v);
    Run({line, "CUT"});
    ASSERT_GT(The_score.groups(), 57);
    Run({"TAB # 36 37"});
    ASSERT_TRUE(The_table.table_ready);
    const auto lines = Run({"HYP 12 23"});
    EXPECT_TRUE(Has_line_with(lines, "A variable of more than 57 categories is not tested"));
    EXPECT_TRUE(Has_line_with(lines, "HYPOTHESIS 1: d & e  #")) << Joined(lines);
    Run({"TES", "TES T", "SHO T"});
    EXPECT_FALSE(Has_line_with(Run({"LLR A#"}), "New GLLRM")) << "nor is it a term above 59";
}

}  // namespace tarven
