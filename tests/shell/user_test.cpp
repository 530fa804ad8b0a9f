// Questions without a person, questions of a person, and asking a long command to stop.

#include "shell/user.h"

#include <gtest/gtest.h>

#include <thread>

#include "shell/command_stream.h"
#include "shell/report.h"
#include "shell/session.h"
#include "support/session.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

struct Nobody : SessionTest {
    void TearDown() override {
        The_command_stream.sources.clear();
        The_user.user = {};
        SessionTest::TearDown();
    }
};

TEST_F(Nobody, AnswersQuestionsFromTheCommandStream) {
    struct Row {
        const char* line;
        bool yes;
        bool taken;
    };
    const Row rows[] = {{"Y", true, true},        {" yes ", true, true}, {"yEs", true, true},
                        {"n", false, true},       {"NO", false, true},   {"TAB AB", false, false},
                        {"yes no", false, false}, {"", false, false},    {"YE", false, false}};
    for (const Row& row : rows) {
        Push_lines({row.line, "next"});
        EXPECT_EQ(AskYesNo("Really?"), row.yes) << row.line;
        EXPECT_EQ(Next_line(), row.taken ? "next" : row.line) << "what is no answer stays a line";
        Pop_line_source();
    }
}

TEST_F(Nobody, ReadsTheInnermostSourceAlone) {
    Push_lines({"Y"});
    Push_lines({});
    EXPECT_FALSE(AskYesNo("Really?")) << "the end of a file is not answered by the file around it";
    EXPECT_EQ(AskUser("Name", "Name", "initial"), "initial");
    Pop_line_source();
    EXPECT_TRUE(AskYesNo("Really?"));
}

TEST_F(Nobody, AnEmptyAnswerTakesTheDefault) {
    Push_lines({"", "text"});
    EXPECT_EQ(AskUser("Name", "Name", "initial"), "initial");
    EXPECT_EQ(AskUser("Name", "Name", "initial"), "text") << "the empty line was the answer";
}

TEST_F(Nobody, OnlyTheThreadOfTheDisplayDraws) {
    int drawn = 0;
    The_user.user.progress = [&](const std::string&, std::int64_t, std::int64_t) { ++drawn; };
    ShowProgress(0, 10, 1, "Tests", "");
    const int shown = drawn;
    std::thread([] {
        for (int k = 0; k < 5; ++k) StepProgress();
    }).join();
    EXPECT_EQ(drawn, shown);
    StepProgress();
    EXPECT_GT(drawn, shown);
    HideProgress();
    The_user.user.progress = nullptr;
}

TEST_F(Nobody, AutomaticModeAnswersYesAndTakesNoLine) {
    The_session.AUTOMATIC = true;
    Push_lines({"N", "text"});
    EXPECT_TRUE(AskYesNo("?"));
    EXPECT_TRUE(Yes_or_automatic("?"));
    EXPECT_TRUE(No_or_automatic("?"));
    EXPECT_EQ(AskYesNoCancel("?"), Answer::yes);
    EXPECT_EQ(Peek_line(), "N");
    EXPECT_FALSE(AskYesNo_always("?")) << "the exit flow asks in automatic mode too";
    EXPECT_EQ(AskUser("c", "p", "initial"), "text") << "texts are asked in automatic mode too";
    EXPECT_FALSE(WarningDialog({"danger"}));
}

TEST_F(Nobody, CancelsOnlyWhereCancellingIsAnAnswer) {
    Push_lines({"cancel", "C", "C"});
    EXPECT_EQ(AskYesNoCancel("?"), Answer::cancel);
    EXPECT_EQ(AskYesNoCancel("?"), Answer::cancel);
    EXPECT_FALSE(AskYesNo("?"));
    EXPECT_EQ(Next_line(), "C");
    EXPECT_EQ(AskYesNoCancel("?"), Answer::no) << "at the end";
}

TEST_F(Nobody, ChoosesNothing) {
    Push_lines({"AB"});
    EXPECT_EQ(SelectVariables("Choose", {"A", "B"}), "");
    EXPECT_EQ(Choose_file("Open", "All|*", "."), "");
    EXPECT_EQ(Next_line(), "AB") << "a choice takes no line";
}

TEST_F(Nobody, CutsTheLinesOfAWarning) {
    const std::string longest(54, 'x');
    EXPECT_EQ(Warning_lines({longest, longest + "y"}),
              (Lines{"", "", "", "", longest, std::string(50, 'x')}));
    EXPECT_EQ(Warning_lines(Lines(12, "l")), Lines(10, "l"));
    EXPECT_EQ(Warning_lines(Lines(9, "l")).size(), 9U) << "(10 - 9) div 2 blank lines";
}

TEST_F(Nobody, APersonIsAskedBeforeTheStream) {
    bool asked = false;
    The_user.user.ask_yes_no = [&](const std::string& text) -> std::optional<bool> {
        asked = true;
        if (text == "end") return {};
        return true;
    };
    The_user.user.ask_yes_no_cancel = The_user.user.ask_yes_no;
    The_user.user.select_variables = [](const std::string&, const Lines&) { return "AB"; };
    Push_lines({"N"});
    EXPECT_TRUE(AskYesNo("?"));
    EXPECT_FALSE(No_or_automatic("?"));
    EXPECT_FALSE(AskYesNo("end")) << "the end of what is typed is no Yes";
    EXPECT_EQ(AskYesNoCancel("end"), Answer::cancel);
    EXPECT_EQ(Peek_line(), "N");
    EXPECT_EQ(SelectVariables("Choose", {}), "AB");
    asked = false;
    The_session.AUTOMATIC = true;
    EXPECT_TRUE(AskYesNo("?"));
    EXPECT_FALSE(asked);
}

TEST_F(Nobody, MessagesReachTheReportAndWhoeverIsThere) {
    Lines heard;
    The_user.user.show_message = [&](const std::string& text) { heard.push_back(text); };
    The_session.AUTOMATIC = true;
    ShowMessage("No table");
    EXPECT_EQ(heard, Lines{"No table"});
    EXPECT_EQ(The_report.OutputField, Lines{"No table"});
}

TEST_F(Nobody, AStopIsTakenOnceAndForgottenByTheNextRun) {
    ShowProgress(0, 10, 1, "Long", "");
    EXPECT_FALSE(StepProgress());
    Stop_requested = true;
    EXPECT_TRUE(StepProgress());
    EXPECT_FALSE(StepProgress()) << "a stop is told once";
    Stop_requested = true;
    ShowProgress(0, 10, 1, "Another", "");
    EXPECT_FALSE(StepProgress()) << "what was asked of an earlier run does not end this one";
}

TEST_F(Nobody, ProgressIsDrawnAFewHundredTimesHoweverManySteps) {
    int draws = 0;
    std::int64_t last = 0;
    The_user.user.progress = [&](const std::string& title, std::int64_t position, std::int64_t) {
        ++draws;
        last = position;
        EXPECT_EQ(title, position < 0 ? "" : "Long - part");
    };
    ShowProgress(0, 1'000'000, 1, "Long", "part");
    for (int step = 0; step < 1'000'000; ++step) StepProgress();
    EXPECT_GE(draws, 100);
    EXPECT_LE(draws, 300);
    HideProgress();
    EXPECT_EQ(last, -1);
}

}  // namespace
}  // namespace tarven
