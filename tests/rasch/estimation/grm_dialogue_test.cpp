// GRM with a user, in automatic mode and without: what is asked, what is kept, what is given up.

#include <gtest/gtest.h>

#include <filesystem>

#include "project/project.h"
#include "rasch/estimation/estimation_workspace.h"
#include "rasch/items/item_workspace.h"
#include "shell/lifecycle.h"
#include "shell/mode.h"
#include "shell/session.h"
#include "shell/user.h"
#include "support/data_session.h"
#include "tables/ordinal/gammas_workspace.h"
#include "tables/table/table_workspace.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

struct GrmDialogue : SessionTest {
    void SetUp() override {
        SessionTest::SetUp();
        Copy_example("verbal");
        Copy_example("survey");
    }
    void TearDown() override {
        The_user.user = {};
        SessionTest::TearDown();
    }
    void Open(const std::string& project, const std::string& items, const std::string& exo) {
        Run({"OPE " + project, "ITEMS " + items, "EXO " + exo});
        ASSERT_GT(The_items.model.NITEMS, 0);
    }
    static std::string Model_of_estimates() {
        return The_estimates.current ? Model_of(*The_estimates.current) : "none";
    }
    static std::string Model_of(const EstimatedGLLRM& e) {
        return std::to_string(e.IJ.size()) + "+" + std::to_string(e.IX.size());
    }
};

TEST_F(GrmDialogue, AsksTheUserAtEachStop) {
    Open("verbal", "ABCDEFGHI", "Y");
    std::vector<std::string> asked;
    The_user.user.ask_yes_no = [&](const std::string& text) {
        asked.push_back(text);
        return std::optional(asked.size() < 3);
    };
    Run({"GRM", "CON 0.000000000000000000000001"});
    EXPECT_TRUE(asked.empty()) << "it converged";
    const Lines report = Run({"EST"});
    EXPECT_EQ(asked, Lines(3, "Do you want the estimation procedure to continue?"));
    EXPECT_TRUE(Has_line_with(report, "Smallest delta = ")) << "what the question is about";
    EXPECT_TRUE(Has_line_with(report, "Estimation did not converge."));
    EXPECT_TRUE(The_items.CurrentIRTparameters_ready) << "the gap is small all the same";
    EXPECT_EQ(The_estimates.current->iteration.passed.size(), 2u);
}

TEST_F(GrmDialogue, GoesOnByItselfWithoutAnyoneAndInAutomaticMode) {
    Open("verbal", "ABCDEFGHI", "Y");
    Run({"GRM", "CON 0.000000000000000000000001", "EST"});
    const auto passed = The_estimates.current->iteration.passed.size();
    EXPECT_GT(passed, 0u);
    Run({"MIN 50", "CON 1", "EST"});
    The_user.user.ask_yes_no = [](const std::string&) -> std::optional<bool> {
        ADD_FAILURE() << "nothing is asked";
        return false;
    };
    The_session.AUTOMATIC = true;
    Run({"CON 0.000000000000000000000001", "EST"});
    EXPECT_EQ(The_estimates.current->iteration.passed.size(), passed);
}

TEST_F(GrmDialogue, AnswersInTheStreamAreAnswers) {
    Open("verbal", "ABCDEFGHI", "Y");
    const Lines report =
        Run({"GRM", "CON 0.000000000000000000000001", "EST", "YES", "NO", "SHO E"});
    EXPECT_TRUE(Has_line_with(report, "Current delta  = "));
    EXPECT_EQ(The_estimates.current->iteration.passed.size(), 1u);
}

TEST_F(GrmDialogue, ABlankLineIsNoAnswer) {
    Open("verbal", "ACGIMSU", "Y");
    Run({"GRM AC AG AI CI GI", "", "GLL"});
    ASSERT_TRUE(The_estimates.current);
    EXPECT_GT(The_estimates.current->iteration.sweeps, 0) << "it goes on as without a user";
    EXPECT_TRUE(The_estimates.current->iteration.reached_critical);
}

TEST_F(GrmDialogue, IncompleteResponsesAreAskedAbout) {
    Open("survey", "EPKH", "S");
    Run({"GRM", "Y"});
    EXPECT_TRUE(The_estimates.current->with_incomplete);
    EXPECT_FALSE(The_estimates.choices.incomplete_responses) << "the answer is for this run";
    Run({"GRM", "N"});
    EXPECT_FALSE(The_estimates.current->with_incomplete);
    Run({"ITA 16"});
    EXPECT_TRUE(The_estimates.current->with_incomplete);
}

TEST_F(GrmDialogue, AFailedEstimateLeavesNoParametersReady) {
    Open("verbal", "ABCDEFGHI", "Y");
    Run({"GRM AB"});
    EXPECT_TRUE(The_items.CurrentIRTparameters_ready);
    // One step of a dense model is far from converged.
    The_user.user.ask_yes_no = [](const std::string&) { return std::optional(false); };
    const Lines report = Run({"MIN 1", "GRM AC AG AI CI GI"});
    EXPECT_TRUE(Has_line_with(report, "Estimation did not converge."));
    ASSERT_TRUE(The_estimates.current);
    EXPECT_FALSE(The_estimates.current->converged);
    EXPECT_EQ(The_current_GLLRM(), "AC AG AI CI GI");
    EXPECT_FALSE(The_items.CurrentIRTparameters_ready);
    EXPECT_EQ(Run({"AGA"}).back(), "The parameters of the current GLLRM are not ready");
}

// REVISE and a project of other variables.
TEST_F(GrmDialogue, OtherVariablesGiveUpTheEstimates) {
    Open("verbal", "ABCDEFGHI", "Y");
    Run({"GRM AY", "GRM AB AY"});
    ASSERT_TRUE(The_estimates.previous);
    Run_moment(Moment::variables_changed);
    EXPECT_FALSE(The_estimates.current || The_estimates.previous);
    EXPECT_FALSE(The_items.CurrentIRTparameters_ready);
}

using GrmOfManySources = DataSession;

TEST_F(GrmOfManySources, ARefusalLeavesModelAndEstimates) {
    Define_project({3, 3, 3, 8, 8, 8, 8, 8, 8, 8});
    Put("x.DAT",
        "1 2 3 1 2 1 3 1 1 1\n2 1 1 1 1 4 1 1 1 1\n3 3 2 1 1 2 1 8 1 1\n1 1 2 5 1 1 1 1 1 1\n"
        "2 3 1 1 1 2 1 1 1 6\n2 2 2 1 3 1 1 1 7 1\n");
    Look_for_files();
    Run({"ITEMS ABC", "EXO *", "GRM", "GRM AB"});
    ASSERT_TRUE(The_items.CurrentIRTparameters_ready);
    const auto fitted = The_estimates.current->neg_loglik;
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"GRM AD AE AF AG AH AI AJ", "Too many Gamma parameters."},
        {"GRM +AD +AE +AF +AG +AH +AI +AJ", "Too many Gamma parameters."},
        {"GRM +AC", "x.DAT"}};
    for (const auto& [line, reason] : rows) {
        if (reason == "x.DAT") std::filesystem::remove("x.DAT");
        const Lines told = Run({line});
        EXPECT_TRUE(Has_line_with(told, reason)) << Joined(told);
        EXPECT_EQ(told.back(), "The current GLLRM stays as it was: AB") << line;
        EXPECT_EQ(The_current_GLLRM(), "AB") << line;
        EXPECT_TRUE(The_items.CurrentIRTparameters_ready) << line;
        EXPECT_TRUE(The_estimates.previous) << line;
        EXPECT_EQ(The_estimates.current->neg_loglik, fitted) << line;
    }
}

TEST_F(GrmDialogue, OtherDataGiveUpTheEstimates) {
    const std::string data = Bytes("verbal.DAT");
    const std::string half = data.substr(0, data.find('\n', data.size() / 2) + 1);
    const std::vector<Lines> ways = {{"MAK", "Y"},   {"INP D", "Y"}, {"INP T"},
                                     {"QV7", "QV8"}, {"QV9"},        {"INP V"}};
    Open("verbal", "ABCDEFGHI", "Y");
    const std::int64_t persons = The_items.scores.complete;
    for (const Lines& way : ways) {
        Run({"GRM AY", "GRM AB AY", "TAB AY"});
        ASSERT_TRUE(The_estimates.previous && The_items.CurrentIRTparameters_ready);
        ASSERT_TRUE(The_table.table_ready);
        The_project_gammas.ready = true;
        if (way[0] == "MAK") Put("verbal.DAT", half);
        if (way[0] == "INP V") Put("verbal.DEF", "27\n26 0 1\nTITLE\nOf one gender\n");
        Run(way);
        EXPECT_FALSE(The_items.CurrentIRTparameters_ready) << way[0];
        EXPECT_FALSE(The_estimates.current || The_estimates.previous) << way[0];
        EXPECT_FALSE(The_project_gammas.ready) << way[0];
        EXPECT_FALSE(The_table.table_ready) << way[0] << ": a table of other cases";
        if (way[0] == "MAK") {
            EXPECT_LT(The_items.scores.complete, persons * 2 / 3);
        }
        EXPECT_EQ(The_current_GLLRM(), "AB AY") << "the model is the user's";
    }
    const Lines report = Run({"GRM"});
    EXPECT_TRUE(Has_line_with(report, "It is a new model"));
    EXPECT_FALSE(Has_line_with(report, "CLR"));
}

TEST_F(GrmDialogue, ChangesThatChangeNothingKeepTheEstimates) {
    Open("verbal", "ABC", "Y");
    Run({"GRM AB"});
    EXPECT_FALSE(Has_line_with(Run({"LLR +AB -AC"}), "are not ready"));
    EXPECT_TRUE(The_items.CurrentIRTparameters_ready);
    EXPECT_EQ(Run({"GRM"}).back(), "The same model as before");
}

// The number of the question is that of the report behind it.
TEST_F(GrmDialogue, CountsIncompletePersonsOnce) {
    Open("survey", "EPKH", "S");
    std::string question;
    The_user.user.ask_yes_no = [&](const std::string& text) {
        question = text;
        return std::optional(true);
    };
    Run({"GRM PS"});
    const std::int64_t Nincomplete = The_estimates.current->margins.counts.Nincomplete;
    EXPECT_TRUE(question.starts_with(std::to_string(Nincomplete) + " persons have")) << question;
}

TEST_F(GrmDialogue, LeavingTheQuestionCancels) {
    Open("verbal", "ABCDEFGHI", "Y");
    int asked = 0;
    The_user.user.ask_yes_no = [&](const std::string&) -> std::optional<bool> {
        ++asked;
        return {};
    };
    Run({"GRM", "CON 0.000000000000000000000001"});
    const Lines report = Run({"EST"});
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(Has_line_with(report, "(cancelled by the user)"));
    EXPECT_TRUE(The_estimates.current->stopped);
}

// GRM without terms behind LLR estimates what LLR defined; the model before is the one to compare.
TEST_F(GrmDialogue, KeepsTheEstimateOfTheModelBefore) {
    Open("verbal", "ABCDEFGHI", "Y");
    Run({"GRM", "LLR AB", "GRM"});
    EXPECT_EQ(Model_of(*The_estimates.previous), "0+0");
    EXPECT_EQ(Model_of_estimates(), "1+0");
    Run({"INC", "ORD", "EST"});
    EXPECT_EQ(Model_of(*The_estimates.previous), "0+0") << "the same model under other settings";
    EXPECT_EQ(Run({"GRM AB"}).back(), "The same model as before");
    Run({"LLR", "LLR AB"});
    EXPECT_TRUE(Has_line_with(Run({"GRM"}), "It is a new model"));
    Run({"OPE survey", "Y"});
    EXPECT_EQ(Model_of_estimates(), "none");
    EXPECT_EQ(The_estimates.choices, EstimationChoices{});
}

TEST_F(GrmDialogue, ExtendedOutputHasMoreThanTheMargins) {
    Open("verbal", "ABCDEFGHI", "Y");
    const Lines plain = Run({"GRM"});
    const Lines margins = Run({"SUF ON", "EST"});
    const Lines extended = Run({"SUF OFF", "EXT ON", "EST"});
    const std::vector<const Lines*> reports = {&plain, &margins, &extended};
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(Has_line_with(*reports[k], "Sufficient margins, observed"), k > 0) << k;
        EXPECT_EQ(Has_line_with(*reports[k], "Delta of each step"), k == 2) << k;
    }
}

TEST_F(GrmDialogue, NonNumericChoicesHaveTheirDefaults) {
    Open("verbal", "ABC", "Y");
    Run({"GRM", "CON 0.5", "MIN 77"});
    EXPECT_EQ(The_estimates.choices.critical_Delta, 0.5);
    EXPECT_EQ(The_estimates.choices.Nstep, 77);
    for (const char* wrong :
         {"CON", "CON x", "CON -1", "CON 0", "CON 1e999", "CON 1e", "CON nan"}) {
        const Lines told = Run({"CON 5", wrong});
        EXPECT_EQ(The_estimates.choices.critical_Delta, 0.0001) << wrong;
        EXPECT_TRUE(Has_line_with(told, "0.000100 is taken")) << wrong;
    }
    for (const char* wrong : {"MIN", "MIN many", "MIN 0", "MIN 1.5", "MIN 99999999999"}) {
        const Lines told = Run({"MIN 77", wrong});
        EXPECT_EQ(The_estimates.choices.Nstep, 10) << wrong;
        EXPECT_TRUE(Has_line_with(told, " 10 is taken")) << wrong;
    }
    // As CURRENT prints them.
    EXPECT_TRUE(Has_line_with(Run({"CON 1.00e-07"}), "1.00e-07"));
    EXPECT_EQ(The_estimates.choices.critical_Delta, 1e-7);
    Run({"MIN 1E2"});
    EXPECT_EQ(The_estimates.choices.Nstep, 100);
    Run({"ORD", "ORD ON", "EXT ON", "EXT"});
    EXPECT_TRUE(The_estimates.choices.ordered_thresholds);
    EXPECT_FALSE(The_estimates.choices.extended_output);
}

TEST_F(GrmDialogue, WordsThatAreNoAnswerOfAnOperationAreRefused) {
    Open("verbal", "ABC", "Y");
    Run({"GRM AB"});
    const EstimationChoices before = The_estimates.choices;
    for (const char* wrong : {"ORD maybe", "INC 1", "EXT YES", "SUF onn"}) {
        EXPECT_TRUE(Has_line_with(Run({wrong}), " takes ON or OFF")) << wrong;
        EXPECT_EQ(The_estimates.choices, before) << wrong;
    }
    for (const char* wrong : {"ANALYSES x", "ANA 11 AC", "ANA -AB"}) {
        EXPECT_TRUE(Has_line_with(Run({wrong}), "ANALYSES takes the numbers of analyses only"))
            << wrong;
        EXPECT_EQ(The_current_GLLRM(), "AB") << wrong;
    }
}

// 23 of items 2 and 3; 12 is a number of the list of analyses.
TEST_F(GrmDialogue, TermsOfItemsLabelledByDigitsAreNoNumbersOfTheList) {
    Open("verbal", "ABCD", "Y");
    for (std::size_t v = 1; v <= 4; ++v)
        The_project.variables[v].label = static_cast<char>('0' + v);
    Run({"ITEMS 1 2 3 4"});
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"ITA 23 3Y 11", "23 3Y"}, {"ITA 12", "23 3Y"}, {"ITA +12 -3Y 11", "12 23"},
        {"ITA 2334", "23 34"},     {"ITA 57", "23 34"}, {"GRM 12", "12"}};
    for (const auto& [line, text] : rows) {
        const Lines told = Run({line});
        EXPECT_EQ(The_current_GLLRM(), text) << line;
        EXPECT_EQ(Has_line_with(told, "57 is no option of ITA"), line == "ITA 57") << line;
    }
}

}  // namespace
}  // namespace tarven
