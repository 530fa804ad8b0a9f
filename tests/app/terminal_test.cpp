// The person at the terminal: completion, the lines of earlier sessions, Ctrl-Z, the start dialog.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "app/completion.h"
#include "app/line_history.h"
#include "shell/files.h"
#include "shell/text.h"
#include "support/program.h"
#include "support/session.h"

namespace tarven {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

Words Choices(const std::string& line) {
    return Completions_of(line, {{'A', "AGE"}}).words;
}

struct Terminal : SessionTest {
    void SetUp() override {
        SessionTest::SetUp();
        Put("TARVENprojectLog.txt", "Project log\n");
    }
    /// At the prompt, with no project.
    void Begin(LivingProgram& living) {
        ASSERT_TRUE(living.Await("Enter goes on without: "));
        living.Type("\n");
        ASSERT_TRUE(living.Await("tarven> "));
    }
    fs::path history() const { return folder / "state" / "tarven" / "history"; }
};

TEST_F(Terminal, CompletesNamesOfFilesBehindTheCommandsThatTakeThem) {
    for (const char* name :
         {"one.DEF", "one.cmd", "Own study.def", "report.rep", "other.dat", ".hidden.cmd"})
        Put(name, "");
    fs::create_directories(folder / "my studies" / "inner");
    Put("my studies/two.DEF", "");
    EXPECT_EQ(Choices("OPE on"), Words{"one"});
    EXPECT_EQ(Choices("OPE O"), (Words{"\"Own study\"", "\"one\""})) << "in either case";
    EXPECT_EQ(Choices("OPE \"my studies/"), (Words{"\"my studies/inner/", "\"my studies/two\""}));
    EXPECT_EQ(Choices("OPE one "), Words{}) << "one name alone";
    EXPECT_EQ(Choices("RUN o"), Words{"one.cmd"});
    EXPECT_EQ(Choices("CMD .h"), Words{".hidden.cmd"});
    EXPECT_EQ(Choices("BAT one o"), Words{"one.cmd"});
    EXPECT_EQ(Choices("REA r"), Words{"report.rep"});
    EXPECT_EQ(Choices("OUT other"), Words{"other.dat"}) << "any file where none is a report";
    EXPECT_EQ(Choices("CHD "), Words{"\"my studies/"});
    EXPECT_TRUE(Completions_of("CHD my", {}).goes_on) << "a folder is not the end of a name";
    EXPECT_EQ(Completions_of("OPE \"my s", {}).replaced, 5) << "with its quote";
    EXPECT_EQ(Completions_of_file("on", folder).words, (Words{"one.DEF", "one.cmd"}));

    Put("\xC5\x82.cmd", "");  // l-stroke
    Put("\xC5\x84.cmd", "");  // n-acute
    const Completions polish = Completions_of(To_line("RUN \xC5\x82"), {});
    EXPECT_EQ(polish.words, Words{To_line("\xC5\x82.cmd")});
    EXPECT_EQ(polish.replaced, 1) << "letters, not bytes";
    EXPECT_EQ(Common_beginning({To_line("\xC5\x82"), To_line("\xC5\x84")}), "");
}

TEST_F(Terminal, CompletesLettersThatDoNotStandYet) {
    const Words all = Choices("SHO ");
    EXPECT_NE(std::find(all.begin(), all.end(), "V"), all.end());
    const Words rest = Choices("sho v");
    EXPECT_EQ(rest.size(), all.size() - 1);
    EXPECT_EQ(std::find(rest.begin(), rest.end(), "V"), rest.end());
    EXPECT_EQ(Choices("TES OTRCJEZMFLDGK"), (Words{"Q", "P"}));
    EXPECT_EQ(Completions_of("TES OT", {}).replaced, 0);
    EXPECT_EQ(Completions_of("SHO G c", {}).words, std::vector<std::string>{"COMPARE"});
    EXPECT_EQ(Completions_of("SHO G c", {}).replaced, 1);
    EXPECT_GT(Completions_of("SHO G x", {}).words.size(), 5U) << "letters of SHOW";
    EXPECT_EQ(Choices("DIS "), (Words{"I", "E", "O", "T"}));
    EXPECT_EQ(Choices("HELP exa"), Words{"EXA"});
    EXPECT_EQ(Choices("WM"), Words{}) << "what is not available yet is not offered";
}

TEST_F(Terminal, KeepsKnownLinesForTheNextSession) {
    {
        LivingProgram living(folder, {}, true);
        Begin(living);
        for (const char* line : {"TWO", "TAB AB", "LOC ?", "HELP LOC", "ONE", "nonsense", "ab"}) {
            living.Type(std::string(line) + "\n");
            ASSERT_TRUE(living.Await("tarven> "));
        }
        living.Type("TAB CD\n");
        ASSERT_TRUE(living.Await("No project"));
        ASSERT_TRUE(living.Await("tarven> "));
        living.Type("\x10");
        ASSERT_TRUE(living.Await("TAB CD")) << "a refused line comes back for correction";
        living.Type("\x10");
        ASSERT_TRUE(living.Await("ONE")) << "and is gone once another one is typed";
        living.Type("\n");
        ASSERT_TRUE(living.Await("tarven> "));
        living.Type("\x04");
        EXPECT_EQ(living.Finish().status, 0);
    }
    EXPECT_EQ(Bytes("state/tarven/history"), "TWO\nONE\nONE\n")
        << "no refused, unknown, short line and no request for help";
    struct stat status {};
    ASSERT_EQ(stat(history().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    ASSERT_EQ(stat(history().parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);

    LivingProgram living(folder, {}, true);
    Begin(living);
    living.Type("\x10\x10\n");
    ASSERT_TRUE(living.Await("2-sided p-values for Gamma coefficients")) << "the line before";
}

TEST_F(Terminal, AHistoryThatCannotBeKeptDisturbsNothing) {
    fs::create_directories(history());  // a folder where the file should be
    LivingProgram living(folder, {}, true);
    Begin(living);
    living.Type("TWO\n");
    ASSERT_TRUE(living.Await("2-sided p-values for Gamma coefficients"));
    ASSERT_TRUE(living.Await("tarven> "));
    living.Type("\x10\n");
    ASSERT_TRUE(living.Await("2-sided p-values for Gamma coefficients")) << "within the session";
    living.Type("\x04");
    EXPECT_EQ(living.Finish().status, 0);
}

TEST_F(Terminal, ReadsWhatIsGoodOfARuinedHistory) {
    Put("history", "TAB AB\n\x1B[2J evil\nab\n" + std::string(5000, 'x') +
                       "\n\xFF\xFE\xFF\n\nTAB \xC5\x82\r\nno line end");
    const Words lines = {"TAB AB", "\xFF\xFE\xFF", To_line("TAB \xC5\x82"), "no line end"};
    EXPECT_EQ(Read_line_history(folder / "history"), lines);
    Add_to_line_history(folder / "history", "TES");
    EXPECT_TRUE(Bytes("history").ends_with("\nno line end\nTES\n"));
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(Read_line_history(folder / "pipe"), Words{}) << "nobody waits at a pipe";
    Add_to_line_history(folder / "pipe", "TES");
    EXPECT_EQ(Read_line_history(folder / "none"), Words{});
    EXPECT_FALSE(Exists("none"));
}

TEST_F(Terminal, TwoProgramsShareAHistoryWhileItIsCut) {
    constexpr int Lines = 100;
    std::string full;
    for (std::size_t k = 0; k + 5 < 2 * HistoryLength; ++k) full += "an older line\n";
    const auto write_and_read = [&](const std::string& name) {
        for (int k = 0; k < Lines; ++k) {
            Add_to_line_history(folder / "history", name + std::to_string(k));
            Read_line_history(folder / "history");
        }
    };
    for (int round = 0; round < 20; ++round) {
        Put("history", full);
        const pid_t child = fork();
        if (child == 0) {
            write_and_read("other ");
            _exit(0);
        }
        write_and_read("this ");
        int status = 0;
        waitpid(child, &status, 0);
        const Words lines = Read_line_history(folder / "history");
        for (const std::string name : {"this ", "other "})
            for (int k = 0; k < Lines; ++k)
                ASSERT_EQ(std::count(lines.begin(), lines.end(), name + std::to_string(k)), 1)
                    << name << k;
    }
}

TEST_F(Terminal, ComesBackFromCtrlZWithPromptAndLine) {
    // A shell with job control stands between, as it does at a terminal.
    LivingProgram living(folder, {"--norc", "--noprofile", "-i"}, true, "/bin/bash");
    living.Type("unset HISTFILE; PS1='shell: '\n");
    ASSERT_TRUE(living.Await("shell: '"));
    ASSERT_TRUE(living.Await("shell: "));
    living.Type(TARVEN_PROGRAM "\n");
    Begin(living);
    living.Type("TW");
    ASSERT_TRUE(living.Await("TW"));
    living.Type("\x1A");
    ASSERT_TRUE(living.Await("Stopped"));
    ASSERT_TRUE(living.Await("shell: "));
    living.Type("stty -a\n");
    ASSERT_TRUE(living.Await(" icanon ")) << "the shell has its terminal as it was";
    ASSERT_TRUE(living.Await("shell: "));
    living.Type("fg\n");
    ASSERT_TRUE(living.Await("tarven> TW")) << "prompt and half a line:\n" << living.Shown();
    living.Type(
        "\x15"
        "EX\t");
    ASSERT_TRUE(living.Await("EXA Monte Carlo exact p-values")) << "keys reach the editor";
    living.Type("\x15TWO\n");
    ASSERT_TRUE(living.Await("2-sided p-values for Gamma coefficients"));
    ASSERT_TRUE(living.Await("tarven> "));
    living.Type("\x04");
    ASSERT_TRUE(living.Await("shell: "));
    living.Type("exit\n");
    EXPECT_EQ(living.Finish().status, 0);
}

TEST_F(Terminal, LeavingTheQuestionOfAnEstimateEndsIt) {
    Copy_example("verbal");
    LivingProgram living(folder, {"-p", "verbal"}, true);
    ASSERT_TRUE(living.Await("> ")) << living.Shown();
    living.Type("ITEMS ABC\n");
    for (const std::string key : {"\x03", "\x04"}) {
        living.Type("GRM\nCON 0.000000000000000000000001\nEST\n");
        ASSERT_TRUE(living.Await("Do you want the estimation procedure to continue?"));
        living.Type(key);
        ASSERT_TRUE(living.Await("(cancelled by the user)")) << living.Shown();
        living.Type("CON 0.1\nITEMS ABC\n");
    }
}

TEST_F(Terminal, TheStartDialogSaysWhatItDidNotUnderstand) {
    LivingProgram living(folder, {}, true);
    ASSERT_TRUE(living.Await("Enter goes on without: "));
    living.Type("TAB AB\n");
    ASSERT_TRUE(living.Await("TAB AB was not understood"));
    ASSERT_TRUE(living.Await("Enter goes on without: "));
    living.Type("R\n");  // there is no last project
    ASSERT_TRUE(living.Await("R was not understood"));
    ASSERT_TRUE(living.Await("Enter goes on without: "));
    living.Type("\n");
    ASSERT_TRUE(living.Await("tarven> "));
}

TEST_F(Terminal, AsksForTheReportThatREAIsToRead) {
    Put("old report.rep", "an old line\n");
    LivingProgram living(folder, {}, true);
    Begin(living);
    living.Type("REA\n");
    ASSERT_TRUE(living.Await("File: "));
    living.Type("ol\t\n");  // the whole line is a name: no quotes
    ASSERT_TRUE(living.Await("an old line"));
}

TEST_F(Terminal, OpensAProjectByItsNameFromAnotherStartFolder) {
    Copy_example("titanic");
    fs::rename(folder / "titanic.DEF", folder / "titanic.def");
    fs::create_directory(folder / "start");
    Put("start/TARVENprojectLog.txt", "Project log\n");
    const ProgramRun run =
        Run_tarven(folder, {"-p", "titanic", "--start", "start", "-c", "TAB SG"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("Table SG with 2201 cases"), std::string::npos) << run.out;
}

TEST_F(Terminal, NamesWithBlanksAndOtherLettersAreOpenedReadAndWritten) {
    fs::create_directory(folder / "my \xC5\x82");
    Put("my \xC5\x82/a b.cmd", "TWO\n");
    const ProgramRun run =
        Run_tarven(folder, {"-c", "CHD \"my \xC5\x82\"", "-c", "RUN \"a b.cmd\"", "-c",
                            "OUT \"\xE2\x82\xAC 1.rep\"", "-c", "RUN \xE2\x82\xAC"});
    EXPECT_TRUE(Exists("my \xC5\x82/\xE2\x82\xAC 1.rep")) << run.out;
    EXPECT_NE(run.out.find("2-sided p-values"), std::string::npos);
    EXPECT_NE(run.out.find("\xE2\x82\xAC is not in the current directory"), std::string::npos);

    Copy_example("titanic");
    for (const char* extension : {".DEF", ".VAR", ".CAT", ".DAT"})
        fs::rename(folder / (std::string("titanic") + extension),
                   folder / (std::string("\xC5\x82 1") + extension));
    const ProgramRun opened = Run_tarven(folder, {"-c", "OPE \"\xC5\x82 1\"", "-c", "TAB SG"});
    EXPECT_NE(opened.out.find("Table SG with 2201 cases"), std::string::npos) << opened.out;
    EXPECT_EQ(Run_tarven(folder, {"-c", "TAB \xC5\x82"}).out,
              Run_tarven(folder, {"-c", "TAB x"}).out);
}

}  // namespace
}  // namespace tarven
