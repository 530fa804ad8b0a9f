// A mode has commands of its own; all else that happens to a line is the same in every mode.

#include "shell/mode.h"

#include <gtest/gtest.h>

#include "shell/dispatcher.h"
#include "shell/help.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/user.h"
#include "support/session.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

struct InAMode : SessionTest {
    /// LOC means something else here, GOT is no keyword of the command table, INV is one that the
    /// main mode does not know, and TAB is missing.
    Mode Sketch() {
        return {.name = "SKETCH",
                .commands = {{.keyword = "LOC",
                              .run = [] { return Write("sketched " + The_line.CommandLine); },
                              .activity = "Sketching",
                              .report = Report::opened,
                              .spelling = "LOCATE",
                              .summary = "locates the sketch",
                              .help = "LOCATE vertices"},
                             {.keyword = "GOT",
                              .run = [] { return Write("gone"); },
                              .needs = {{[this] { return may_go; }, "There is nowhere to go"}}},
                             {.keyword = "INV", .run = [] { return Write("inverted"); }}}};
    }
    static Outcome Write(const std::string& line) {
        Write_report(line);
        return Outcome::done;
    }
    bool may_go = true;
};

TEST_F(InAMode, OnlyTheLookupOfACommandDiffers) {
    Enter_mode(Sketch());
    EXPECT_EQ(Run({"loc a b"}), Lines{"sketched loc a b"});
    EXPECT_FALSE(The_settings.LocalTests);
    EXPECT_EQ(Run({"INV"}), Lines{"inverted"});
    EXPECT_EQ(Run({"GOTO TARVEN"}), Lines{"gone"});
    EXPECT_EQ(The_session.history, (std::deque<std::string>{"loc a b", "INV", "GOTO TARVEN"}));
    may_go = false;
    EXPECT_EQ(Run({"GOTO"}), Lines{"There is nowhere to go"});
    EXPECT_EQ(The_session.command_field, "GOTO") << "a refused line stays for correction";
    EXPECT_EQ(Run({"XYZ AB"}), Lines{"Unrecognized command: XYZ AB"});
    EXPECT_EQ(Run({"SHO L"}), Lines{"Unrecognized command: SHO L"});
    EXPECT_EQ(Run({""}), Lines{"Use the Help command to get a list of all commands"});
    The_session.queue = {"INV"};
    The_report.LogOn = true;
    EXPECT_EQ(Run({""}), (Lines{"Command: INV", "inverted"}));
}

// A command file goes on behind a dialogue without leaving it.
TEST_F(InAMode, ALineThatADialogueDoesNotKnowLeavesIt) {
    Mode dialogue = Sketch();
    dialogue.falls_through = true;
    Enter_mode(dialogue);
    EXPECT_EQ(Run({"LOC ?"})[0], "LOC (LOCATE): locates the sketch");
    for (const char* line : {"", "! a remark", "* another", "?", "   "}) {
        Run({line});
        EXPECT_EQ(The_modes.modes.size(), 1u) << line;
    }
    Run({"SEQ"});
    EXPECT_TRUE(The_modes.modes.empty());
    EXPECT_TRUE(The_settings.SequentialTests) << "the line runs in the main mode";
    Enter_mode(dialogue);
    EXPECT_EQ(Run({"XYZ"}), Lines{"Unrecognized command: XYZ"});
    EXPECT_TRUE(The_modes.modes.empty());
    Enter_mode(Sketch());
    Enter_mode(dialogue);
    EXPECT_EQ(Run({"SEQ"}), Lines{"Unrecognized command: SEQ"}) << "the mode below knows no SEQ";
    EXPECT_EQ(The_modes.modes.size(), 1u);
}

TEST_F(InAMode, HelpIsAboutTheCommandsOfTheMode) {
    Enter_mode(Sketch());
    EXPECT_EQ(Run({"LOC ?"}), (Lines{"LOC (LOCATE): locates the sketch", "", "LOCATE vertices"}));
    EXPECT_EQ(Run({"LOC A? B"}), Lines{"sketched LOC A? B"}) << "a mark of the command's own";
    const Lines help = Run({"HELP"});
    EXPECT_TRUE(Has_line_with(help, "LOC LOCATE        locates the sketch")) << Joined(help);
    EXPECT_TRUE(Has_line_with(help, "EXI EXIT          leaves SKETCH mode")) << Joined(help);
    EXPECT_FALSE(Has_line_with(help, "TABULATE")) << Joined(help);
    Run({"EXI"});
    EXPECT_EQ(Run({"LOC ?"})[0], "LOC (LOCAL): tests report the results of every stratum");
}

TEST_F(InAMode, ExitReturnsToTheModeBelow) {
    Enter_mode(Sketch());
    Enter_mode({.name = "INNER", .commands = {}});
    EXPECT_EQ(Run({"LOC"}), Lines{"Unrecognized command: LOC"});
    Run({"EXIT"});
    EXPECT_EQ(Run({"LOC"}), Lines{"sketched LOC"});
    Run({"EXIT", "LOC"});
    EXPECT_TRUE(The_settings.LocalTests);
    EXPECT_FALSE(The_session.QuitRequested) << "each EXI left its own mode alone";
}

TEST_F(InAMode, TheEndOfInputIsTheExitOfEveryMode) {
    int asked = 0;
    Command stubborn{.keyword = "EXI", .run = [&asked] {
                         ++asked;
                         return Outcome::refused;
                     }};
    Enter_mode(Sketch());
    Enter_mode({.name = "STUBBORN", .commands = {stubborn}});
    Leave_all_modes();
    EXPECT_EQ(asked, 1) << "a mode that is not left is not asked for ever";
    EXPECT_TRUE(The_modes.modes.empty());
    EXPECT_FALSE(The_session.QuitRequested);
}

struct CommandFromCode : InAMode {
    void SetUp() override {
        InAMode::SetUp();
        Copy_example("titanic");
        Run({"OPE titanic"});
    }
};

TEST_F(CommandFromCode, LeavesTheLineItsPlaceAndTheReportOfTheCallerAlone) {
    ParsedLine during;
    ParsedLine after;
    std::size_t shown = 0;
    Command outer{.keyword = "LOC",
                  .run =
                      [&] {
                          Write_report("outer begins");
                          during = The_line;
                          shown = The_report.OutputField.size();
                          EXPECT_EQ(Run_from_code("SHO LE"), Outcome::done);
                          EXPECT_EQ(Run_from_code("TES"), Outcome::refused);
                          EXPECT_EQ(Run_from_code("RUN typed.cmd"), Outcome::done);
                          after = The_line;
                          EXPECT_EQ(The_report.OutputField.size(), shown);
                          EXPECT_EQ(The_user.panels[4], "Working");
                          EXPECT_EQ(The_session.command_field, "LOC AB 7");
                          Write_report("outer ends");
                          return Outcome::done;
                      },
                  .activity = "Working",
                  .report = Report::opened};
    Put("typed.cmd", "TES\n");
    Enter_mode({.name = "OUTER", .commands = {outer}});
    The_session.history.clear();
    The_session.queue = {"waits"};
    const Lines lines = Run({"LOC AB 7"});
    ASSERT_GT(lines.size(), 4U);
    EXPECT_EQ(lines.front(), "outer begins");
    EXPECT_TRUE(Has_line_with(lines, "ENVIRONMENT:")) << "a command of the main mode";
    EXPECT_EQ(lines[lines.size() - 3], "No table");
    EXPECT_EQ(lines[lines.size() - 2], "Unrecognized command: TES")
        << "the lines of a file are typed lines, and TES is none of the mode";
    EXPECT_EQ(lines.back(), "outer ends");
    EXPECT_EQ(during, after);
    EXPECT_EQ(during.CommandLine, "LOC AB 7");
    EXPECT_EQ(The_session.history, std::deque<std::string>{"LOC AB 7"});
    EXPECT_EQ(The_session.command_field, "");
    EXPECT_EQ(The_session.queue, std::deque<std::string>{"waits"});
    EXPECT_EQ(The_modes.modes.size(), 1U);
}

TEST_F(CommandFromCode, OfAnOpeningEntersNoHistory) {
    EXPECT_EQ(The_session.history, std::deque<std::string>{"OPE titanic"});
    The_report.LogOn = true;
    const Lines lines = Run({"OPE titanic", "Y"});
    EXPECT_TRUE(Has_line_with(lines, "Command: Show E")) << "the log tells it all the same";
}

}  // namespace
}  // namespace tarven
