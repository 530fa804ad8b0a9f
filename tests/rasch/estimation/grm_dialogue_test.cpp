// GRM with a user, in automatic mode and without: what is asked, what is kept, what is given up.

#include <gtest/gtest.h>

#include "rasch/estimation/estimation_workspace.h"
#include "rasch/items/item_workspace.h"
#include "shell/mode.h"
#include "shell/session.h"
#include "shell/user.h"
#include "support/session.h"

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
    Run({"DIS I", "GRM"});
    EXPECT_FALSE(The_items.CurrentIRTparameters_ready);
    EXPECT_TRUE(The_modes.modes.empty());
    Run({"ITEMS ABC"});
    EXPECT_EQ(Run({"AGA"}), Lines{"Unrecognized command: AGA"});
    Run({"GRM AB", "LLR +BC"});
    EXPECT_FALSE(The_items.CurrentIRTparameters_ready);
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

TEST_F(GrmDialogue, NonNumericChoicesHaveTheirDefaults) {
    Open("verbal", "ABC", "Y");
    Run({"GRM", "CON 0.5", "MIN 77"});
    EXPECT_EQ(The_estimates.choices.critical_Delta, 0.5);
    EXPECT_EQ(The_estimates.choices.Nstep, 77);
    for (const char* wrong : {"CON", "CON x", "CON -1", "CON 1E5"}) {
        Run({wrong});
        EXPECT_EQ(The_estimates.choices.critical_Delta, 0.0001) << wrong;
    }
    for (const char* wrong : {"MIN", "MIN many", "MIN 0", "MIN 99999999999"}) {
        Run({"MIN 77", wrong});
        EXPECT_EQ(The_estimates.choices.Nstep, 10) << wrong;
    }
    Run({"ORD", "ORD ON", "EXT ON", "EXT"});
    EXPECT_TRUE(The_estimates.choices.ordered_thresholds);
    EXPECT_FALSE(The_estimates.choices.extended_output);
}

}  // namespace
}  // namespace tarven
