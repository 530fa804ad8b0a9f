// What a user has made survives the end of the program and the failures of the machine: the exit
// question, signals, files that cannot or must not be written.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "support/program.h"
#include "support/session.h"

namespace tarven {
namespace {

namespace fs = std::filesystem;

const std::string loc = "Local test results will be reported";
const std::string question = "Do you want to save it? (Y/N) ";
const std::string which_file = "[titanic.REP]: ";
const std::string prompt = "No items> ";

struct NothingLost : SessionTest {
    void SetUp() override {
        SessionTest::SetUp();
        Put("TARVENprojectLog.txt", "Project log\n");
        Copy_example("titanic");
        for (const auto& entry : fs::directory_iterator(folder))
            fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add);
    }
    ProgramRun Tarven(const std::vector<std::string>& arguments, const std::string& input = "") {
        return Run_tarven(folder, arguments, input);
    }
    bool Report_in(const std::string& file) { return Bytes(file).find(loc) != std::string::npos; }
};

/// Files are no longer than this while it lives.
struct FileSizeLimit {
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before);
        rlimit now = before;
        now.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before); }
    rlimit before{};
};

struct AtTheExitQuestion : NothingLost {
    /// A session at a terminal that has something to save and was asked about it.
    void Ask(LivingProgram& living, const std::string& last = "EXI\n") {
        ASSERT_TRUE(living.Await(prompt));
        living.Type("LOC\n");
        ASSERT_TRUE(living.Await(loc));
        Ask_again(living, last);
    }
    void Ask_again(LivingProgram& living, const std::string& last) {
        ASSERT_TRUE(living.Await(prompt));
        living.Type(last);
        ASSERT_TRUE(living.Await(question));
    }
};

TEST_F(AtTheExitQuestion, AnEmptyAnswerTakesTheReportFileOfTheProject) {
    LivingProgram living(folder, {"-p", "titanic"}, true);
    Ask(living);
    living.Type("Y\n");
    ASSERT_TRUE(living.Await(which_file));
    living.Type("\n");
    EXPECT_EQ(living.Finish().status, 0);
    EXPECT_TRUE(Report_in("titanic.REP"));
}

TEST_F(NothingLost, TheQuestionAboutAChangedGraphCanBeLeft) {
    LivingProgram living(folder, {"-p", "titanic"}, true);
    ASSERT_TRUE(living.Await(prompt));
    const std::string before = Bytes("titanic.GRF");
    EXPECT_NE(before, "");
    living.Type("PRE SA\n");
    ASSERT_TRUE(living.Await("Prevented: SA"));
    for (const std::string leaving : {"C\n", "\x03", "\x04"}) {
        ASSERT_TRUE(living.Await(prompt));
        living.Type("EXI\n");
        ASSERT_TRUE(living.Await("Save Graph (Y/N/C) "));
        living.Type(leaving);
    }
    ASSERT_TRUE(living.Await(prompt));
    EXPECT_EQ(Bytes("titanic.GRF"), before);
    living.Type("EXI\n");
    ASSERT_TRUE(living.Await("Save Graph (Y/N/C) "));
    living.Type("Y\n");
    ASSERT_TRUE(living.Await(question));
    living.Type("N\n");
    EXPECT_EQ(living.Finish().status, 0);
    EXPECT_NE(Bytes("titanic.GRF"), before);
}

TEST_F(AtTheExitQuestion, WhatCannotBeSavedLeadsBackToThePrompt) {
    LivingProgram living(folder, {"-p", "titanic"}, true);
    Ask(living, "\x04");  // the end of what is typed asks the same
    living.Type("\x03");
    Ask_again(living, "\x04");
    living.Type("\x04");
    Ask_again(living, "EXI\n");
    living.Type("Y\n");
    ASSERT_TRUE(living.Await(which_file));
    living.Type("\x03");
    for (const std::string target : {"/dev/full", "titanic.DAT", "gone/report.txt"}) {
        Ask_again(living, "EXI\n");
        living.Type("Y\n");
        ASSERT_TRUE(living.Await(which_file));
        living.Type(target + "\n");
    }
    ASSERT_TRUE(living.Await(prompt));
    living.Type("OPE titanic\n");
    ASSERT_TRUE(living.Await("Project already exists. Continue? (Y/N) "));
    living.Type("Y\n");
    ASSERT_TRUE(living.Await(question));
    living.Type("\x03");
    Put("there.txt", "mine\n");
    Ask_again(living, "EXI\n");
    living.Type("Y\n");
    ASSERT_TRUE(living.Await(which_file));
    living.Type("there.txt\n");
    ASSERT_TRUE(living.Await("already exists. Continue? (Y/N) "));
    living.Type("N\n");
    Ask_again(living, "EXI\n");
    EXPECT_EQ(Bytes("there.txt"), "mine\n");
    living.Type("Y\n");
    ASSERT_TRUE(living.Await(which_file));
    living.Type("kept.txt\n");
    EXPECT_EQ(living.Finish().status, 1) << "a write failed on the way";
    EXPECT_TRUE(Report_in("kept.txt"));
}

TEST_F(NothingLost, WithoutAUserTheExitQuestionTakesTheReportFileOfTheProject) {
    const std::string session = "OPE titanic\nLOC\nEXI\nY\n";
    EXPECT_EQ(Tarven({}, session).status, 0);
    EXPECT_TRUE(Report_in("titanic.REP"));
    EXPECT_EQ(Tarven({}, "OPE titanic\nLOC\nTWO\nEXI\nY\n").status, 0);
    EXPECT_NE(Bytes("titanic.REP").find("2-sided"), std::string::npos) << "silence overwrites";
    Put("titanic.REP", "mine\n");
    EXPECT_EQ(Tarven({}, session + "N\n").status, 0);
    EXPECT_EQ(Bytes("titanic.REP"), "mine\n");
    EXPECT_TRUE(Report_in("titanic_unsaved_1.REP")) << "No is not the end of the report";
    fs::remove(folder / "titanic.REP");
    fs::create_directory(folder / "titanic.REP");
    const ProgramRun failed = Tarven({}, session);
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(failed.err.find("titanic.REP could not be written: "), std::string::npos);
    EXPECT_TRUE(Report_in("titanic_unsaved_2.REP"));
}

TEST_F(NothingLost, AChangeOfProjectErasesTheReportAfterNoAndABatchKeepsIt) {
    Put("other.DEF", "4\nFILES\nV titanic.VAR\nD titanic.DAT\n");
    Put("first.cmd", "LOC\n");
    Run({"BAT titanic first.cmd", "BAT other first.cmd", "OUT batch.txt"});
    EXPECT_NE(Bytes("batch.txt").find("Project:   titanic"), std::string::npos);
    EXPECT_NE(Bytes("batch.txt").find("Project:   other"), std::string::npos);
    Run({"HELP", "OPE titanic", "Y", "N", "OUT second.txt"});
    EXPECT_EQ(Bytes("second.txt").find("Commands"), std::string::npos);
    EXPECT_NE(Bytes("second.txt").find("Project:   titanic"), std::string::npos);
}

TEST_F(NothingLost, ASignalSavesTheWholeReportAndTheNextOpeningNamesIt) {
    Put("titanic.REP", "mine\n");
    for (const int signal : {SIGTERM, SIGHUP}) {
        LivingProgram living(folder, {"-p", "titanic"}, signal == SIGHUP);
        if (signal == SIGHUP) {
            ASSERT_TRUE(living.Await(prompt));
        }
        living.Type("LOC\nTAB SCAG\nHYP SC\nTWO\n");
        ASSERT_TRUE(living.Await("2-sided"));
        living.Kill(signal);
        EXPECT_EQ(living.Await_end().signal, signal);
        const std::string file = signal == SIGTERM ? "titanic_unsaved_1.REP"  //
                                                   : "titanic_unsaved_2.REP";
        EXPECT_TRUE(Report_in(file));
        EXPECT_NE(Bytes(file).find("Output from titanic initialized at"), std::string::npos);
        EXPECT_NE(Bytes(file).find("2-sided"), std::string::npos);
    }
    EXPECT_EQ(Bytes("titanic.REP"), "mine\n");
    const std::string told = Tarven({"-p", "titanic", "-c", "LOC"}).out;
    for (const char* name : {"titanic_unsaved_1.REP", "titanic_unsaved_2.REP"})
        EXPECT_NE(told.find("cut off is in " + (folder / name).string()), std::string::npos);
    EXPECT_FALSE(Exists("titanic_unsaved_3.REP")) << "a session that ends by itself leaves none";
}

TEST_F(NothingLost, ASignalSavesWhatACommandAtWorkHasWritten) {
    LivingProgram living(folder, {"--report", "copy.txt"}, false);
    living.Type("OPE titanic\nPAR\nTAB SCAG\nHYP SC\nEXA 900000000\nTES\n");
    ASSERT_TRUE(living.Await("NSIM = 900000000"));
    // The command at work has opened its first stage anew.
    for (int k = 0; k < 200 && !Exists("titanic.TMP"); ++k) usleep(10000);
    living.Kill(SIGTERM);
    EXPECT_EQ(living.Await_end().signal, SIGTERM);
    EXPECT_NE(Bytes("titanic_unsaved_1.REP").find("NSIM = 900000000"), std::string::npos);
}

TEST_F(NothingLost, AClosedTerminalSavesTheReportOnce) {
    LivingProgram living(folder, {"-p", "titanic"}, true);
    ASSERT_TRUE(living.Await(prompt));
    living.Type("LOC\n");
    ASSERT_TRUE(living.Await(loc));
    ASSERT_TRUE(living.Await(prompt));
    EXPECT_EQ(living.Hang_up().signal, SIGHUP);
    EXPECT_TRUE(Report_in("titanic_unsaved_1.REP"));
    EXPECT_FALSE(Exists("titanic_unsaved_2.REP"));
}

TEST_F(NothingLost, NoReportIsWrittenOverAFileOfAProject) {
    fs::create_symlink("titanic.DAT", folder / "link.txt");
    fs::create_hard_link(folder / "titanic.DAT", folder / "second.txt");
    fs::create_symlink("titanic.TAB", folder / "dangling.txt");
    Put("plain.dta", "1 2\n");
    Put("other.DEF", "2\nFILES\nD plain.dta\n");
    const std::string data = Bytes("titanic.DAT");
    const std::string definition = Bytes("titanic.DEF");
    const std::string other_path = "./../" + folder.filename().string() + "/titanic.DAT";
    const std::vector<std::string> targets = {
        "titanic.DAT", "TITANIC.def", "titanic.SYS",  "titanic.exa",
        "link.txt",    "second.txt",  "dangling.txt", other_path,
        "plain.dta",   "titanic.aut", "TARVEN.cmd",   "TARVENprojectLog.txt"};
    for (const std::string& target : targets) {
        for (const std::string command : {"OUT ", "APP "}) {
            const ProgramRun run =
                Tarven({"-c", "LOC", "-c", "OPE titanic", "-c", "ERA", "-c", command + target});
            EXPECT_EQ(run.status, 0) << command + target << run.err;
            EXPECT_NE(run.err.find("no report is written there"), std::string::npos)
                << command + target;
        }
        const ProgramRun copy = Tarven({"--report", target, "-p", "titanic", "-c", "LOC"});
        EXPECT_EQ(copy.status, 2) << target;
        EXPECT_EQ(copy.out, "");
    }
    EXPECT_EQ(Bytes("titanic.DAT"), data);
    EXPECT_EQ(Bytes("titanic.DEF"), definition);
    EXPECT_EQ(Bytes("plain.dta"), "1 2\n");
    EXPECT_EQ(Tarven({"-p", "titanic", "-c", "OUT titanic.TMP", "-c", "OUT titanic.rep"}).status,
              0);
    EXPECT_TRUE(Exists("titanic.rep"));
}

TEST_F(NothingLost, WhatIsNoPlainFileStaysWhatItIs) {
    Put("real.txt", "old\n");
    fs::create_symlink("real.txt", folder / "link.txt");
    fs::create_symlink("new.txt", folder / "dangling.txt");
    fs::create_symlink("circle.txt", folder / "circle.txt");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const ProgramRun run = Tarven({"-c", "LOC", "-c", "OUT link.txt", "-c", "APP dangling.txt"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Bytes("real.txt"), loc + "\n");
    EXPECT_TRUE(fs::is_symlink(folder / "link.txt"));
    EXPECT_TRUE(Report_in("new.txt"));
    for (const std::string target : {"circle.txt", "pipe", "/dev/full", "."}) {
        for (const std::string command : {"OUT ", "APP "}) {
            const ProgramRun failed = Tarven({"-c", "LOC", "-c", command + target, "-c", "TWO"});
            EXPECT_EQ(failed.status, 1) << command + target;
            EXPECT_NE(failed.err.find("could not be written: "), std::string::npos) << target;
            EXPECT_NE(failed.out.find("2-sided"), std::string::npos) << "the run goes on";
        }
    }
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
    EXPECT_EQ(Tarven({"--report", "pipe", "-c", "LOC"}).status, 2) << "nobody reads it";
    EXPECT_EQ(Tarven({"-c", "LOC", "-c", "OUT /dev/null"}).status, 0);
}

TEST_F(NothingLost, AFileThatMayNotGrowGivesAMessage) {
    Put("append.txt", std::string(4000, '.') + "\n");
    const std::string before = Bytes("append.txt");
    Tarven({"-c", "OPE titanic"});
    const std::string data = Bytes("titanic.SYS");
    const FileSizeLimit limit(4096);
    const ProgramRun run = Tarven({"-c", "OPE titanic", "-c", "APP append.txt", "-c", "TWO"});
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("append.txt could not be written: File too large"), std::string::npos);
    EXPECT_NE(run.out.find("2-sided"), std::string::npos);
    EXPECT_EQ(Bytes("append.txt"), before);
    const ProgramRun make = Tarven({"-c", "OPE titanic", "-c", "MAK", "-c", "Y", "-c", "TWO"});
    EXPECT_EQ(make.status, 1) << make.err;
    EXPECT_NE(make.err.find("could not be written: File too large"), std::string::npos);
    EXPECT_NE(make.out.find("2-sided"), std::string::npos);
    EXPECT_EQ(Bytes("titanic.SYS"), data);
}

TEST_F(NothingLost, AReaderThatLeavesEndsNeitherTheRunNorItsFiles) {
    Tarven({"-c", "OPE titanic"});
    const std::string script = std::string("\"") + TARVEN_PROGRAM +
                               "\" -c 'OPE titanic' -c 'SHO L' -c 'OUT kept.txt' 2>err | :; "
                               "exit ${PIPESTATUS[0]}";
    Put("run.sh", "cd \"$(dirname \"$0\")\"\n" + script + "\n");
    const int status = std::system(("bash " + (folder / "run.sh").string()).c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_EQ(Bytes("err").substr(Bytes("err").find("Standard")),
              "Standard output could not be written: Broken pipe\nOutput was saved on kept.txt\n");
    EXPECT_NE(Bytes("kept.txt").find("limitations"), std::string::npos);
}

TEST_F(NothingLost, TheLogShowsWhichCommandMadeWhat) {
    EXPECT_EQ(Tarven({"--log", "-c", "loc", "-c", "ONL", "-c", "NOL"}).out,
              "Command: loc\n" + loc +
                  "\nCommand: ONL\nUnrecognized command: ONL\nCommand: NOL\n"
                  "Unrecognized command: NOL\n");
    LivingProgram living(folder, {"-p", "titanic"}, true);
    ASSERT_TRUE(living.Await(prompt));
    living.Type("lo\x07");
    ASSERT_TRUE(living.Await("Logon turned on"));
    ASSERT_TRUE(living.Await(prompt + "lo"));
    living.Type("c\n");
    ASSERT_TRUE(living.Await("Command: loc"));
    ASSERT_TRUE(living.Await(prompt));
    living.Type("\x07");
    ASSERT_TRUE(living.Await("Logon turned off"));
    living.Type("ERA\n");
    ASSERT_TRUE(living.Await(prompt));
    living.Type("\x04");
    EXPECT_EQ(living.Finish().status, 0);
}

}  // namespace
}  // namespace tarven
