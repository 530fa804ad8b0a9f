// What happens to a line on its way to a command and behind it.

#include "shell/dispatcher.h"

#include <gtest/gtest.h>

#include "shell/command_table.h"
#include "shell/commands.h"
#include "shell/help.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/text.h"
#include "shell/user.h"
#include "support/session.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

struct Dispatcher : SessionTest {};

TEST_F(Dispatcher, AnswersLinesThatNameNoCommand) {
    const Lines unrecognized[] = {{"ab"},  {"!note"}, {"* note"}, {"---"},
                                  {"INV"}, {"QV1 3"}, {"$"}};
    for (const Lines& line : unrecognized)
        EXPECT_EQ(Run(line), Lines{"Unrecognized command: " + line[0]});
    EXPECT_EQ(Run({"? TAB"}), Lines{"Use the Help command to get a list of all commands"});
    EXPECT_EQ(Run({""}), Lines{"Use the Help command to get a list of all commands"});
    EXPECT_EQ(Run({"S15"}), Lines{});
}

TEST_F(Dispatcher, KeepsARefusedLineForCorrection) {
    const TestSettings before = The_settings;
    EXPECT_EQ(Run({"TES"}), Lines{"No table"});
    EXPECT_EQ(The_session.command_field, "TES");
    EXPECT_TRUE(The_session.history.empty());
    EXPECT_EQ(The_settings, before);
    Run({"LOC"});
    EXPECT_EQ(The_session.command_field, "");
    EXPECT_EQ(The_session.history, std::deque<std::string>{"LOC"});
}

TEST_F(Dispatcher, RemembersTheLastTwentyNumberedLines) {
    Run({"no such command"});
    EXPECT_TRUE(The_session.history.empty());
    Run({"INV"});
    EXPECT_EQ(The_session.history.back(), "INV") << "a reserved keyword has a number";
    for (int k = 1; k <= 21; ++k) Run({"EXA " + std::to_string(k)});
    ASSERT_EQ(The_session.history.size(), 20U);
    EXPECT_EQ(The_session.history.front(), "EXA 2");
    Run({"LOC" + std::string(200, ' ')});
    EXPECT_EQ(The_session.history.back().size(), 120U);
    Run({"LOC ?"});
    EXPECT_EQ(The_session.history.back().size(), 120U) << "a request for help is not remembered";
}

TEST_F(Dispatcher, GivesHelpInsteadOfRunning) {
    const Lines help = Run({"loc ?"});
    ASSERT_FALSE(help.empty());
    EXPECT_EQ(help[0], "LOC (LOCAL): tests report the results of every stratum");
    EXPECT_FALSE(The_settings.LocalTests);
    EXPECT_EQ(Run({"INV ?"}), Lines{"There is no help available for this command"});
    EXPECT_EQ(Run({"LOC?"}), Lines{"Local test results will be reported"})
        << "without a blank the mark is part of the word";
}

TEST_F(Dispatcher, HelpListsEveryCommandThatIsNotHiddenFirstThoseThatAreThere) {
    const Lines list = Command_list();
    const auto later = std::find(list.begin(), list.end(), "Not available yet:");
    const auto listed_before = [&](const std::string& keyword) {
        return std::any_of(list.begin(), later,
                           [&](const std::string& line) { return line.starts_with(keyword); });
    };
    EXPECT_TRUE(listed_before("TES "));
    EXPECT_FALSE(listed_before("GRA "));
    for (const char* keyword : {"TAB", "TES", "EXA", "GRA", "GLL", "COR", "PBO", "HEL"})
        EXPECT_EQ(std::count_if(list.begin(), list.end(),
                                [&](const std::string& line) {
                                    return line.substr(0, 4) == keyword + std::string(" ");
                                }),
                  1)
            << keyword;
    for (const std::string& line : list)
        EXPECT_FALSE(line.size() > 18 &&
                     line.substr(18).find_first_not_of(' ') == std::string::npos)
            << line;
}

TEST_F(Dispatcher, AsksForHelpByAWordBehindHelpToo) {
    const Lines help = Run({"TES ?"});
    EXPECT_EQ(Run({"HELP TES"}), help);
    EXPECT_EQ(Run({"help testing"}), help);
    EXPECT_EQ(Run({"HELP xyz"}), Lines{"Unrecognized command: xyz"});
    EXPECT_TRUE(The_session.history.empty()) << "no help request is kept";
}

TEST_F(Dispatcher, ALetterOutsideLatin1AsksForNoHelp) {
    const std::string euro = To_line("\xE2\x82\xAC");
    EXPECT_EQ(Run({"TAB " + euro}), Run({"TAB x"}));
    EXPECT_EQ(Run({euro + "?"}), Lines{"Unrecognized command: " + euro + "?"});
}

TEST_F(Dispatcher, HelpIsPutTogetherFromTheLettersOfAllFloors) {
    const Lines help = Run({"SHO ?"});
    EXPECT_EQ(help[2], "SHOW letters");
    const auto limits = std::find(help.begin(), help.end(), "  L  the limits of the system");
    const auto beliefs =
        std::find(help.begin(), help.end(), "  B  the beliefs on edges (not available yet)");
    EXPECT_LT(limits, beliefs) << Joined(help);
    EXPECT_NE(beliefs, help.end()) << Joined(help);
    EXPECT_EQ(Run({"SHO B"}), Lines{"SHOW B is not available yet"});
    EXPECT_TRUE(Has_line_with(help,
                              "  C  the comments of the project, and the components of the "
                              "items"));
    for (const LetterCommand command :
         {LetterCommand::show, LetterCommand::dispose, LetterCommand::input, LetterCommand::save})
        for (const char key : Letters_in_order(command)) {
            const Letter* letter = Find_letter(command, key);
            ASSERT_TRUE(letter) << Spelling(command) << ' ' << key;
            EXPECT_NE(letter->summary, "") << Spelling(command) << ' ' << key;
        }
}

TEST_F(Dispatcher, RunsTheQueueUnderAnEmptyField) {
    The_session.queue = {"LOC", "TWO"};
    EXPECT_EQ(Run({""}), Lines{"Local test results will be reported"});
    EXPECT_EQ(The_session.queue, std::deque<std::string>{"TWO"});
    EXPECT_EQ(Run({"PAR"}), Lines{"Tests against partial association will be reported"})
        << "a typed line goes first";
    The_session.queue = {"REO", "LOC"};
    EXPECT_EQ(Run({""}), Lines{}) << "nothing to reopen without a memory";
    EXPECT_EQ(The_session.queue, std::deque<std::string>{"LOC"});
}

TEST_F(Dispatcher, EchoesLinesIntoTheReportWhileTheLogIsOn) {
    The_report.LogOn = true;
    EXPECT_EQ(Run({"Loc"}), (Lines{"Command: Loc", "Local test results will be reported"}));
    EXPECT_EQ(Run({"loc ?"})[0], "Command: loc ?");
}

TEST_F(Dispatcher, ShowsLettersInTheirOrderAndOnce) {
    EXPECT_EQ(Run({"SHO EL"}), Run({"SHO LEEL"}));
    const Lines lines = Run({"SHO EL"});
    EXPECT_EQ(lines[0], "The current version of TARVEN has the following limitations:");
    EXPECT_TRUE(Has_line_with(lines, "ENVIRONMENT:"));
}

TEST_F(Dispatcher, ClearsTheReportFieldOnRequest) {
    Run({"LOC", "DIS O"});
    EXPECT_TRUE(The_report.OutputField.empty());
    EXPECT_FALSE(The_report.OutputChanged);
}

TEST_F(Dispatcher, ClearsThePanelsOfActivity) {
    for (int panel = 0; panel <= 6; ++panel) SetStatus(panel, "busy");
    Run({"LOC"});
    for (int panel = 0; panel <= 6; ++panel)
        EXPECT_EQ(The_user.panels[static_cast<std::size_t>(panel)], panel < 4 ? "busy" : "");
}

TEST_F(Dispatcher, TestsNeedsInOrderAndPassesWarnings) {
    const std::vector<Need> needs = {{[] { return false; }, "only a warning", true},
                                     {[] { return true; }, "held"},
                                     {[] { return false; }, "stops here"},
                                     {[] { return false; }, "never reached"}};
    EXPECT_FALSE(Needs_hold(needs));
    EXPECT_EQ(The_report.OutputField, (Lines{"only a warning", "stops here"}));
    EXPECT_TRUE(Needs_hold({needs[0], needs[1]}));
}

TEST_F(Dispatcher, TakesHostileLines) {
    const std::string megabyte(1 << 20, 'x');
    EXPECT_EQ(Run({megabyte}), Lines{"Unrecognized command: " + megabyte});
    std::string numbers;
    for (int k = 0; k < 10000; ++k) numbers += " 7";
    EXPECT_EQ(Run({"EXA" + numbers}), Lines{"Monte Carlo tests: NSIM = 7  SEED = 7"})
        << "58 of them stand in the 120 characters that are searched";
    EXPECT_EQ(Run({numbers}), (Lines{"WARNING - too many numerical parameters",
                                     "Unrecognized command: " + numbers}));
    std::string bytes = "LOC ";
    for (int code = 0; code < 256; ++code)
        if (code != '?') bytes += static_cast<char>(code);
    EXPECT_EQ(Run({bytes}), Lines{"Local test results will be reported"});
    EXPECT_EQ(The_line.ParameterCount, 59);
    EXPECT_EQ(Run({std::string("\0\x1B[2J", 5)}), Lines{"Unrecognized command: ??[2J"});
}

}  // namespace
}  // namespace tarven
