// The program from outside: what it reads, where its lines go, how it ends.

#include "app/program.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <new>

#include "app/completion.h"
#include "app/terminal_user.h"
#include "shell/mode.h"
#include "shell/report.h"
#include "shell/user.h"
#include "support/program.h"
#include "support/session.h"

namespace tarven {
namespace {

struct Program : SessionTest {
    void SetUp() override {
        SessionTest::SetUp();
        // A start folder that has been used before.
        Put("TARVENprojectLog.txt", "Project log\n");
    }
    ProgramRun Tarven(const std::vector<std::string>& arguments, const std::string& input = "") {
        return Run_tarven(folder, arguments, input);
    }
};

const std::string loc = "Local test results will be reported\n";
const std::string two = "2-sided p-values for Gamma coefficients\n";
const std::string par = "Tests against partial association will be reported\n";

TEST_F(Program, RunsLinesThenFilesAndReadsInputOnlyWithoutBoth) {
    Put("one.cmd", "TWO\n");
    Put("two.cmd", "\xEF\xBB\xBFPAR\r\n\xC3\xB8x");
    const ProgramRun files = Tarven({"-c", "LOC", "one.cmd", "TWO.CMD"}, "ASY\n");
    EXPECT_EQ(files.out, loc + two + par + "Unrecognized command: \xC3\xB8x\n");
    EXPECT_EQ(files.err, "Unrecognized command: \xC3\xB8x\n");
    EXPECT_EQ(files.status, 0);
    const ProgramRun piped = Tarven({}, "LOC\r\n\xF8y\nTWO");
    EXPECT_EQ(piped.out, loc + "Unrecognized command: \xC3\xB8y\n" + two) << "Latin-1, no last end";
    EXPECT_EQ(piped.status, 0);
    EXPECT_FALSE(Exists("TARVEN.TMP")) << "a session that ended leaves no first stage";
}

TEST_F(Program, CopiesTheReportAndNotTheMessagesBeside) {
    const ProgramRun run = Tarven({"--report", "copy.txt", "-c", "LOC", "-c", "ab"});
    EXPECT_EQ(Bytes("copy.txt"), run.out);
    EXPECT_EQ(run.out, loc + "Unrecognized command: ab\n");
}

TEST_F(Program, TurnsAutomaticOnBeforeAnythingElse) {
    EXPECT_EQ(Tarven({"--automatic", "-c", "LOC"}).out, "Automatic turned on\n" + loc);
}

TEST_F(Program, EndsWithTheStatusOfWhatWentWrong) {
    std::filesystem::create_directory(folder / "folder.cmd");
    const std::pair<std::vector<std::string>, int> rows[] = {
        {{"--version"}, 0},
        {{"--help"}, 0},
        {{"-c", "no such command"}, 0},
        {{"--nonsense"}, 2},
        {{"-c"}, 2},
        {{"-c", "LOC", "missing.cmd"}, 2},
        {{"folder.cmd"}, 2},
        {{"--start", "missing", "-c", "LOC"}, 2},
        {{"--report", "missing/copy.txt", "-c", "LOC"}, 2},
        {{"--report", "/dev/full", "-c", "LOC"}, 1},
    };
    for (const auto& [arguments, status] : rows) {
        const ProgramRun run = Tarven(arguments);
        EXPECT_EQ(run.status, status) << arguments.back() << "\n" << run.err;
        EXPECT_EQ(run.err.empty(), run.status == 0 && arguments[0] != "-c") << arguments.back();
    }
    EXPECT_EQ(Tarven({"-c", "LOC", "missing.cmd"}).out, "") << "nothing runs before it is known";
}

TEST_F(Program, LosesNoLineWhenKilledBetweenCommands) {
    // It waits at its pipe behind two commands: the first stage holds what the last one wrote.
    LivingProgram living(folder, {"--report", "copy.txt"}, false);
    living.Type("LOC\nTWO\n");
    ASSERT_TRUE(living.Await(two));
    living.Kill(SIGKILL);
    const ProgramRun run = living.Finish();
    EXPECT_EQ(run.signal, SIGKILL);
    EXPECT_EQ(Bytes("copy.txt"), loc + two);
    EXPECT_EQ(Bytes("TARVEN.TMP"), two);
}

TEST_F(Program, KeepsBothStagesReadableWhenKilledBetweenTwoFlushes) {
    const auto dies = [] {
        The_report.on_line = [](const std::string& line) { fmt::print(stderr, "{}\n", line); };
        Open_report();
        Write_report("before the flush");
        Flush_report();
        Write_report("after the flush");
        std::raise(SIGKILL);
    };
    EXPECT_EXIT(dies(), ::testing::KilledBySignal(SIGKILL), "before the flush");
    EXPECT_EQ(Bytes("TARVEN.TMP"), "after the flush\n");
}

TEST_F(Program, TakesHostileInput) {
    std::string all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    std::string numbers = "EXA";
    for (int k = 0; k < 10000; ++k) numbers += " 99999999999999999999";
    const std::string inputs[] = {std::string(1 << 20, 'A'), std::string(1 << 20, '\0'),
                                  all + all + "\n" + all,    numbers,
                                  std::string(100000, '\n'), "EXA 4294967296 -1 0.5\nSHO \xFF\n"};
    for (const std::string& input : inputs) {
        EXPECT_EQ(Tarven({}, input + "\nLOC\n").status, 0);
        Put("hostile.cmd", input + "\nLOC\n");
        const ProgramRun run = Tarven({"hostile.cmd"});
        EXPECT_EQ(run.status, 0) << run.err.substr(0, 300);
        EXPECT_TRUE(run.out.ends_with(loc)) << "the line behind it runs";
        EXPECT_EQ(run.out.find('\x1B'), std::string::npos) << "nothing steers the terminal";
    }
    EXPECT_EQ(Tarven({TARVEN_PROGRAM}).status, 0) << "a binary file is lines like any other";
}

TEST_F(Program, NamesWhatEndsItAndShowsTheOpenReport) {
    std::vector<std::string> heard;
    The_report.on_line = [&](const std::string& line) { heard.push_back(line); };
    ::testing::internal::CaptureStderr();
    const int status = Run_guarded([]() -> int {
        Open_report();
        Write_report("found before");
        Open_report();
        Write_report("found within");
        throw std::bad_alloc();
    });
    const std::string saved = (folder / "TARVEN_unsaved_1.REP").string();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "tarven ends: no memory\nThe report was saved on " + saved + "\n");
    EXPECT_EQ(Bytes("TARVEN_unsaved_1.REP"), "found before\nfound within\n");
    The_report.on_line = nullptr;
    EXPECT_EQ(status, 1);
    EXPECT_EQ(heard, (std::vector<std::string>{"found before", "found within"}));
    EXPECT_EQ(Bytes("TARVEN.TMP"), "found before\nfound within\n");
}

TEST_F(Program, TalksAtATerminal) {
    // Each step awaits the prompt: what is typed while a command runs meets a terminal that is not
    // in the hands of the line editor.
    LivingProgram living(folder, {}, true);
    ASSERT_TRUE(living.Await("O opens a project, Enter goes on without: "));
    living.Type("\n");
    ASSERT_TRUE(living.Await("> "));
    living.Type("half a line");
    ASSERT_TRUE(living.Await("half a line"));
    living.Type("\x03");
    ASSERT_TRUE(living.Await("> ")) << "Ctrl-C gives up a line and not the program";
    living.Type("SE\t");
    ASSERT_TRUE(living.Await("SEQ Monte Carlo exact p-values by sequential tests"));
    living.Type("Q 50 3\n");
    ASSERT_TRUE(living.Await("Sequential Monte Carlo tests: NSIM = 50  SEED = 3"));
    ASSERT_TRUE(living.Await("limit =    20"));
    ASSERT_TRUE(living.Await("> "));
    living.Type("\x10\n");  // the line before, from the history
    ASSERT_TRUE(living.Await("Sequential Monte Carlo tests: NSIM = 50  SEED = 3"));
    ASSERT_TRUE(living.Await("limit =    20"));
    ASSERT_TRUE(living.Await("> "));
    living.Type("ab\n");
    ASSERT_TRUE(living.Await("Unrecognized command: ab"));
    ASSERT_TRUE(living.Await("> "));
    living.Type("\x04");
    const ProgramRun run = living.Finish();
    EXPECT_EQ(run.status, 0) << run.out;
    const auto first = run.out.find("Unrecognized command: ab");
    EXPECT_EQ(run.out.find("Unrecognized command: ab", first + 1), std::string::npos)
        << "a message shows once where report and messages share the screen";
}

TEST_F(Program, ASecondInterruptEndsWhatTheFirstAskedToStop) {
    Install_interrupt();
    Command_begins();
    std::raise(SIGINT);
    EXPECT_TRUE(Stop_requested);
    Command_begins();
    EXPECT_FALSE(Stop_requested) << "a new command begins unasked";
    std::raise(SIGINT);
    EXPECT_EXIT(std::raise(SIGINT), ::testing::KilledBySignal(SIGINT), "");
    Command_ended();
    std::raise(SIGINT);  // at the prompt it ends nothing
    std::signal(SIGINT, SIG_DFL);
    Stop_requested = false;
}

TEST_F(Program, CompletesTheCommandsOfTheModeAlone) {
    Enter_mode(
        {.name = "SKETCH", .commands = {{.keyword = "LOC", .run = [] { return Outcome::done; }}}});
    EXPECT_EQ(Completions_of("L", {}).words, std::vector<std::string>{"LOC"});
    Leave_mode();
    EXPECT_GT(Completions_of("E", {}).words.size(), 1U);
}

TEST_F(Program, CompletesKeywordsSpellingsAndNames) {
    const std::vector<LabelAndName> labels = {{'A', "AGE"}, {'B', "SEX"}, {'s', "AGENT"}};
    using Words = std::vector<std::string>;
    EXPECT_EQ(Completions_of("sh", labels).words, Words{"SHO"});
    EXPECT_EQ(Completions_of("Autom", labels).words, Words{"AUTOMATIC"});
    EXPECT_EQ(Completions_of("  exa", labels).replaced, 3);
    EXPECT_EQ(Completions_of("zz", labels).words, Words{});
    EXPECT_EQ(Completions_of("TAB ", labels).words, (Words{"A", "B", "s"}));
    EXPECT_EQ(Completions_of("TAB A age", labels).words, (Words{"A", "s"}));
    EXPECT_EQ(Completions_of("TAB A se", labels).words, Words{"B"});
    EXPECT_EQ(Completions_of("TAB s", labels).words, Words{}) << "a label is whole already";
    EXPECT_EQ(Common_beginning({"SEL", "SEM", "SEQ"}), "SE");
    EXPECT_EQ(Common_beginning({}), "");
}

}  // namespace
}  // namespace tarven
