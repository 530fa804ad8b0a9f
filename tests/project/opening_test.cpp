// Projects are opened, run unattended and closed: what is said, and which files stay.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "project/data.h"
#include "project/open_project.h"
#include "project/project.h"
#include "project/project_log.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/user.h"
#include "support/session.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

struct Opening : SessionTest {
    int Log_records() {
        const std::string log = Bytes("TARVENprojectLog.txt");
        return static_cast<int>(std::count(log.begin(), log.end(), '\n')) - 1;
    }
};

TEST_F(Opening, EveryRoadOpensTheSameProject) {
    Copy_example("survey");
    const auto seen = [] {
        return The_project.ProjectOpen && The_project.N == 9 && The_project.Nused == 232 &&
               The_data.Ntabcells == 216 && The_project.Nlevels == 4 &&
               The_project.variables[8].name == "Age";
    };
    EXPECT_TRUE(Has_line_with(Run({"OPE survey"}), "P Pulse....... 4 ordinal categories"));
    EXPECT_TRUE(seen());
    Run({"OPE survey", "YES", "DIS O"});
    EXPECT_TRUE(seen()) << "from the SYS and TAB files of the first opening";
    Run({"S69 " + folder.string() + "/survey", "Y"});
    EXPECT_TRUE(seen());
    Put("survey.cmd", "EXA 300\n");
    Run({"BAT SURVEY"});
    EXPECT_TRUE(seen()) << "whatever the case of its name";
    EXPECT_EQ(The_settings.Nsim, 300);
}

TEST_F(Opening, KeepsMemoryAndLogWithoutRepetition) {
    Copy_example("titanic");
    Make_start_files();
    ASSERT_TRUE(Open_project_at_start("titanic"));
    EXPECT_EQ(Log_records(), 1);
    Run({"NO"});
    The_session.AUTOMATIC = true;
    ASSERT_TRUE(Open_project_at_start("titanic.def"));
    The_session.AUTOMATIC = false;
    EXPECT_EQ(Log_records(), 1) << "the same project twice in a row is one record";
    EXPECT_EQ(Remembered_project().name, "titanic");
    EXPECT_TRUE(Has_line_with(Run({"REO"}), "Project already open"));
    EXPECT_TRUE(Has_line_with(Run({"SHO P", "0"}), "0 records was saved"));
    EXPECT_EQ(Bytes("TARVENprojectLog.txt"), "Project log file\n");
}

TEST_F(Opening, SaysNoAndKeepsTheOpenProject) {
    Copy_example("titanic");
    Copy_example("vision");
    Run({"OPE titanic"});
    Run({"OPE vision", "N"});
    EXPECT_EQ(The_project.Projectname, "titanic");
    EXPECT_TRUE(The_data.tabdata_ready);
    EXPECT_TRUE(Has_line_with(Run({"BAT nothing"}), "nothing.def is not in the current directory"));
    EXPECT_TRUE(Has_line_with(Run({"BAT vision"}), "vision.def was found, but vision.cmd"));
    EXPECT_EQ(The_project.Projectname, "titanic");
}

TEST_F(Opening, LosesNoProjectToOneThatIsNotThere) {
    Copy_example("titanic");
    Run({"OPE titanic", "TAB SC"});
    EXPECT_TRUE(Has_line_with(Run({"OPE gone", "Y", "N"}), "Project was not found"));
    EXPECT_TRUE(Has_line_with(Run({"S69 /gone/gone", "Y"}), "/gone/gone.DEF not found"));
    EXPECT_TRUE(The_project.ProjectOpen);
    EXPECT_TRUE(The_data.tabdata_ready);
    // Given up in favour of a file that nobody chooses, it leaves no definition without its data.
    Run({"AUT", "OPE gone", "AUT"});
    EXPECT_TRUE(Has_line_with(Run({"SHO V"}), "Variables have not been defined"));
    EXPECT_TRUE(Has_line_with(Run({"TAB SC"}), "No project"));
    EXPECT_EQ(The_user.panels[0], "");
}

TEST_F(Opening, ACommandFileGoesFromProjectToProject) {
    Copy_example("titanic");
    Copy_example("vision");
    Put("titanic.cmd", "APP all.txt\n!done\n");
    Put("vision.cmd", "RUN vision.cmd\n");
    Put("night.cmd", "BAT titanic\nBAT gone\nBAT vision\nLOC\n");
    const Lines report = Run({"AUT", "CMD night.cmd"});
    EXPECT_TRUE(Has_line_with(report, "Unrecognized command: !done"));
    EXPECT_TRUE(Has_line_with(report, "gone.def is not in the current directory"));
    EXPECT_TRUE(Has_line_with(report, "more than 50 deep")) << "a file that runs itself ends";
    EXPECT_EQ(The_project.Projectname, "vision");
    EXPECT_TRUE(The_settings.LocalTests) << "the file goes on behind it";
    EXPECT_NE(Bytes("all.txt").find("2201 cases in data set"), std::string::npos);
}

TEST_F(Opening, AFailedVarFileLeavesNoVariables) {
    Copy_example("titanic");
    Run({"OPE titanic"});
    Put("bad.DEF", "4\n");
    EXPECT_TRUE(Has_line_with(Run({"OPE bad", "Y"}), "Missing VARfile"));
    EXPECT_TRUE(Has_line_with(Run({"TAB SC"}), "No project"));
    Put("bad.VAR", "2\nA 1 2 3\n0 1\n");
    EXPECT_TRUE(Has_line_with(Run({"OPE bad"}), "bad.VAR: Incomplete file"));
    EXPECT_FALSE(The_project.ProjectOpen);
    EXPECT_TRUE(Has_line_with(Run({"SHO V"}), "Variables have not been defined"));
}

TEST_F(Opening, TellsARecordLengthThatIsNone) {
    Copy_example("titanic");
    for (const std::string length : {"0", "-1", "1601"}) {
        Put("titanic.DEF", length + "\n");
        const std::string what =
            length == "1601" ? "1601 variables > 1600" : length + " variables in a record";
        EXPECT_TRUE(Has_line_with(Run({"OPE titanic", "YES"}), "Error reading data: " + what));
        EXPECT_FALSE(The_data.tabdata_ready);
        EXPECT_FALSE(Exists("titanic.TAB"));
    }
}

TEST_F(Opening, WorksWithoutTheRawData) {
    Copy_example("titanic");
    Run({"OPE titanic"});
    std::filesystem::remove(folder / "titanic.DAT");
    const Lines report = Run({"OPE titanic", "Y"});
    EXPECT_TRUE(Has_line_with(report, "Warning: The DAT file, "));
    EXPECT_EQ(The_project.Nused, 2201);
    EXPECT_TRUE(Has_line_with(Run({"TAB SC"}), "2201"));
}

TEST_F(Opening, RemovesWhatADeadProcessLeft) {
    Copy_example("titanic");
    const pid_t child = fork();
    if (child == 0) _exit(0);
    waitpid(child, nullptr, 0);
    const std::string dead = "." + std::to_string(child) + ".new";
    const std::string alive = "." + std::to_string(getppid()) + ".new";
    for (const std::string& name : {"titanic.SYS" + dead, "Titanic.cat" + dead, "TARVEN.cmd" + dead,
                                    "titanic.TAB" + alive, "other.SYS" + dead, "titanic" + dead,
                                    "titanic.a.SYS" + dead, std::string("titanic.SYS.new")})
        Put(name, "half");
    Run({"OPE titanic"});
    for (const std::string& gone :
         {"titanic.SYS" + dead, "Titanic.cat" + dead, "TARVEN.cmd" + dead})
        EXPECT_FALSE(Exists(gone)) << gone;
    for (const std::string& stays : {"titanic.TAB" + alive, "other.SYS" + dead, "titanic" + dead,
                                     "titanic.a.SYS" + dead, std::string("titanic.SYS.new")})
        EXPECT_TRUE(Exists(stays)) << stays;
}

TEST_F(Opening, RunsTheIniFileAndWritesMissingNames) {
    Copy_example("survey");
    std::filesystem::remove(folder / "survey.CAT");
    Put("Survey.ini", "REP 500\n");
    Run({"OPE survey"});
    EXPECT_EQ(The_settings.Nsim, 500);
    EXPECT_EQ(Bytes("survey.CAT").substr(0, 10), "P 1 30-64\n");
}

TEST_F(Opening, SavesAndLeavesTheFilesItShould) {
    Copy_example("titanic");
    Run({"OPE titanic", "ERA", "OUT empty.rep", "LOC", "OUT x.rep", "APP x.rep"});
    EXPECT_EQ(Bytes("empty.rep"), "");
    const std::string local = "Local test results will be reported\n";
    const std::string once = "Output was saved on empty.rep\n" + local;
    EXPECT_EQ(Bytes("x.rep"), once + once + "Output was saved on x.rep\n");
    Run({"ERA", "AUT", "ERA", "GLO", "APP a.rep", "GLO", "APP a.rep"});
    const std::string global = "Global test results will be reported\n";
    EXPECT_EQ(Bytes("a.rep"), global + global) << "automatic mode clears what was appended";
    Run({"EXI"});
    EXPECT_TRUE(The_session.QuitRequested);
    EXPECT_EQ(File_names(),
              (Lines{"a.rep", "empty.rep", "titanic.CAT", "titanic.DAT", "titanic.DEF",
                     "titanic.SYS", "titanic.TAB", "titanic.VAR", "x.rep"}));
}

TEST_F(Opening, AsksBeforeAReportIsLost) {
    Copy_example("titanic");
    Run({"OPE titanic", "LOC", "EXI", "YES"});
    EXPECT_NE(Bytes("titanic.REP").find("Local test results"), std::string::npos);
}

TEST_F(Opening, ReadsTheDefinitionsAgain) {
    Copy_example("titanic");
    Run({"OPE titanic"});
    Put("titanic.VAR", "2\nS 1 2 3\n0 0 1\nX 2 4 2\n1 1 2 3 4\n1\n2\n");
    const Lines report = Run({"INP V"});
    EXPECT_TRUE(Has_line_with(report, "Different number of variables"));
    EXPECT_TRUE(Has_line_with(report, "New : SX"));
    EXPECT_TRUE(Has_line_with(report, "Old : SCAG"));
    EXPECT_FALSE(The_data.tabdata_ready) << "cells of other variables are given up";
    EXPECT_TRUE(Has_line_with(Run({"VAR"}), "The VAR file seems to be in order"));
    EXPECT_TRUE(Has_line_with(Run({"INP G"}), "No GRAPH file."));
}

}  // namespace
}  // namespace tarven
