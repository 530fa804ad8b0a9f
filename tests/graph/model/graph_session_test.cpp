// The graph of a project from its opening to its exit: which files are read, written and left
// alone, what becomes of the graph when variables change, and what refused commands leave.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "graph/model/gamma_file.h"
#include "graph/model/graph_file.h"
#include "graph/model/graph_workspace.h"
#include "graph/model/placement.h"
#include "project/open_project.h"
#include "project/project.h"
#include "shell/files.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/user.h"
#include "shell/workspace.h"
#include "support/session.h"
#include "tables/ordinal/gammas_workspace.h"

namespace tarven {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

struct GraphSession : SessionTest {
    /// Three variables: A, explained by B and C.
    void Put_project(const std::string& labels = "ABC", const std::string& blocks = "2\n1 3\n") {
        Put("x.DEF", "3\n");
        std::string VAR = std::to_string(labels.size()) + "\n";
        for (std::size_t v = 0; v < labels.size(); ++v)
            VAR += std::string(1, labels[v]) + " " + std::to_string(v % 3 + 1) + " 2 3\n0 1 2\n";
        Put("x.VAR", VAR + blocks);
        Put("x.DAT", "1 1 2\n2 1 2\n1 2 1\n2 2 2\n1 1 1\n");
    }
    void Open(const std::string& GRF = "") {
        Put_project();
        if (!GRF.empty()) Put("x.GRF", GRF);
        Run({"OPE x"});
        ASSERT_TRUE(The_project.ProjectOpen);
    }
    static std::string Whole_file() {
        return "3 2\n1 3\nA B C \n3 2 1\n2 3 0\n1 0 3\nCOORDINATES\nA 1 2\nB 3 4\nC 5 6\n";
    }
    static std::uint8_t Status(int i, int j) { return The_graph.model.StatusOf(i, j); }
    static void Have_gammas() {
        The_project_gammas.IJXgamma = {999, .1, .2, .1, 999, .3, .2, .3, 999};
        The_project_gammas.ready = true;
    }
};

TEST_F(GraphSession, OpeningReadsTheFileOrBeginsWithAllEdges) {
    Open();
    EXPECT_EQ(The_graph.model, New_project_graph(Free));
    EXPECT_EQ(The_graph.model.BlockOf(3), 2);
    EXPECT_FALSE(Exists("x.GRF")) << "OPE writes no graph";
    Put("x.GRF", Whole_file());
    Run({"OPE x", "Y"});
    EXPECT_EQ(The_graph.model.source, GraphSource::GRF_file);
    EXPECT_EQ(Status(2, 3), Prevented);
    EXPECT_EQ(Bytes("x.GRF"), Whole_file());
    EXPECT_FALSE(The_graph.changed);
}

TEST_F(GraphSession, OpeningByHandCompletesAFileThatWasReadWhole) {
    Put_project();
    ASSERT_TRUE(Open_project_at_start("x"));
    EXPECT_TRUE(Exists("x.GRF"));
    EXPECT_TRUE(The_graph.model.coordinates_ready);
    EXPECT_FALSE(The_graph.changed);
    const std::string created = Bytes("x.GRF");
    Run({"INP G", "SAV", "Y"});
    EXPECT_EQ(Bytes("x.GRF"), created) << "what is written reads back";

    const std::string without = Whole_file().substr(0, Whole_file().find("COO"));
    const struct {
        std::string file;
        bool completed;
    } rows[] = {
        {without, true},
        {Whole_file(), false},
        {Whole_file().substr(0, Whole_file().size() - 7), false},  // coordinates cut
        {"3 2\n1 3\nA B C \n3 2 1\n1 3 0\n1 0 3\n", false},        // asymmetric
        {"3 2\n1 3\nA B\n3 2 1\n2 3 0\n1 0 3\n", false},           // a label missing
        {"3 2\n1 3\nA B D\n3 2 1\n2 3 0\n1 0 3\n", false},         // another project
        {"3 2\n1 3\n", false},
        // What its own lines would not hold again.
        {without + "VARIABLES\nA var1\nB var2\nC var3\n", true},
        {without + "VARIABLES\nA Age\nB var2\nC var3\n", false},
        {without + "VARIABLES\nA var1\nB var2\nC var3\nCOORDINATES\nA 1 2\nB 3 4\nC 5 6\n", false},
        {without + "# by hand\n", false},
        {without + "1 0 3\n", false},
        {std::string("\0\xFF\x01 2", 5), false}};
    for (const auto& row : rows) {
        Put("x.GRF", row.file);
        The_session.AUTOMATIC = true;
        ASSERT_TRUE(Open_project_at_start("x"));
        The_session.AUTOMATIC = false;
        EXPECT_TRUE(The_graph.model.coordinates_ready) << row.file;
        EXPECT_EQ(Bytes("x.GRF") != row.file, row.completed) << row.file;
    }
}

TEST_F(GraphSession, AFileOfAnotherGraphLeavesTheGraphBeforeIt) {
    Open(Whole_file());
    Run({"ADD BC"});
    const ChainGraph before = The_graph.model;
    const struct {
        std::string file;
        std::string said;
    } rows[] = {
        {"2 1\n2\nA B \n3 2\n2 3\n", "it has 2 variables, the project 3"},
        {"3 2\n1 3\nA B X\n3 2 1\n2 3 0\n1 0 3\n", "its labels are ABX, those of the project ABC"},
        {"3 2\n1 3\nA A C\n3 2 1\n2 3 0\n1 0 3\n", "its labels are AAC"},
        {"3 2\n2 3\nA B C\n3 2 1\n2 3 0\n1 0 3\n", "its recursive blocks are others"},
        {"3 2\n1 3\nA B C\n3 2 1\n2 3 0\n", "x.GRF is incomplete: the status of C is missing"},
        {"60 1\n60\n", "Invalid input of number of variables and levels: 60 1"},
        {"", "x.GRF is empty"},
    };
    for (const auto& row : rows) {
        Put("x.GRF", row.file);
        EXPECT_TRUE(Has_line_with(Run({"INP G"}), row.said)) << row.said;
        EXPECT_TRUE(Has_line_with(Run({"SHO G COM"}), row.said)) << row.said;
        EXPECT_EQ(The_graph.model, before);
        EXPECT_TRUE(The_graph.changed);
    }
    fs::remove(folder / "x.GRF");
    EXPECT_EQ(Run({"INP G"}), Lines{"No GRAPH file."});
    EXPECT_EQ(Run({"SHO G COM"}), Lines{"No GRF file"});
    EXPECT_EQ(The_graph.model, before);
}

TEST_F(GraphSession, WhatStandsInThePlaceOfAFileIsTold) {
    Open();
    const struct {
        const char* why;
        std::function<void(const fs::path&)> put;
    } rows[] = {
        {" is a folder", [](const fs::path& at) { fs::create_directory(at); }},
        {" is a pipe", [](const fs::path& at) { ASSERT_EQ(mkfifo(at.c_str(), 0600), 0); }},
        {" is a link that leads back to itself",
         [](const fs::path& at) { fs::create_symlink(at.filename(), at); }},
    };
    for (const auto& row : rows) {
        const fs::path GRF = folder / "x.GRF", GAM = folder / "x.GAM";
        row.put(GRF);
        for (const char* line : {"INP G", "SHO G COM", "REA x.GRF", "SHO G COM x.GRF"}) {
            const Lines said = Run({line});
            EXPECT_EQ(said.size(), 1U) << line;
            EXPECT_TRUE(said[0].ends_with(std::string("x.GRF") + row.why)) << said[0];
        }
        The_session.AUTOMATIC = true;
        ASSERT_TRUE(Open_project_at_start("x"));
        The_session.AUTOMATIC = false;
        EXPECT_FALSE(Has_line_with(The_report.OutputField, "could not be written"))
            << "nothing is written there" << row.why;
        const Lines opened = Run({"OPE x", "Y"});
        EXPECT_TRUE(Has_line_with(opened, std::string("x.GRF") + row.why));
        EXPECT_TRUE(Has_line_with(opened, "x.GRF is not used. The graph has all edges"));
        fs::remove(GRF);
        Put("x.GRF", Whole_file());
        row.put(GAM);
        EXPECT_TRUE(Has_line_with(Run({"REA G"}), std::string("x.GAM") + row.why));
        EXPECT_TRUE(Has_line_with(Run({"OPE x", "Y"}),
                                  row.why + std::string(": no gamma values are read")));
        fs::remove(GAM);
        fs::remove(GRF);
    }
}

TEST_F(GraphSession, MissingLabelsAreThoseOfTheProject) {
    Open("3 2\n1 3\nA\n3 2 1\n2 3 0\n1 0 3\nCOO\nA 1 2\nB 3 4\nC 5 6\n");
    EXPECT_EQ(The_graph.model.Labels, "ABC");
    EXPECT_TRUE(The_graph.model.coordinates_ready);
}

TEST_F(GraphSession, RefusedCommandsChangeNothing) {
    Open(Whole_file());
    Have_gammas();
    const ChainGraph before = The_graph.model;
    for (const char* line : {"ADD", "ADD A", "ADD AX", "ADD AA", "FIX A 9", "PRE *A", "ADD AB",
                             "XPL ?", "FIX BB CC", "SHO G", "REA G", "REA none.grf"}) {
        Run({line});
        EXPECT_EQ(The_graph.model, before) << line;
        EXPECT_TRUE(The_graph.history.empty()) << line;
        EXPECT_FALSE(The_graph.changed) << line;
        EXPECT_TRUE(The_project_gammas.ready) << line;
    }
    EXPECT_EQ(Run({"ADD A"}), Lines{"Failure: ADD A"});
    Init_workspace();
    for (const char* line : {"ADD AB", "NEW", "XPL", "FIX AB"})
        EXPECT_EQ(Run({line}), Lines{"The graph has not been defined"}) << line;
    EXPECT_EQ(Run({"SHO G"}), Lines{"Graph is not defined."});
    EXPECT_EQ(Run({"SAV"}), Lines{"The graph has not been defined"});
}

TEST_F(GraphSession, ARevisionIsRememberedAndGivesUpTheGammas) {
    Open(Whole_file());
    Have_gammas();
    Run({"ADD BC"});
    EXPECT_EQ(The_graph.history, Lines{"The model was revised: BC (ADD)"});
    EXPECT_TRUE(The_graph.model.revised && The_graph.changed);
    EXPECT_FALSE(The_project_gammas.ready);

    const struct {
        const char* line;
        int status;
    } rows[] = {{"NEW 1", Absent}, {"NEW 3", Fixed}, {"NEW 2", Free}, {"NEW 1 3", Absent},
                {"NEW 7", Free},   {"NEW 0", Free},  {"NEW", Free}};
    for (const auto& row : rows) {
        Run({row.line});
        EXPECT_EQ(Status(1, 3), row.status) << row.line;
        EXPECT_EQ(Status(2, 2), Fixed);
        EXPECT_EQ(The_graph.model.source, GraphSource::new_graph);
        EXPECT_EQ(The_graph.model.coordinates[2], (NodePlace{3, 4})) << "coordinates stay";
    }
    Run({"XPL"});
    EXPECT_EQ(Status(2, 3), Fixed);
    EXPECT_EQ(The_graph.history.back(), "The model was revised: XPLANATORY");
    Have_gammas();
    The_graph.changed = false;
    const Lines history = The_graph.history;
    EXPECT_EQ(Run({"XPL"}), Lines{"No change: the edges in the last block are fixed already"});
    EXPECT_TRUE(The_project_gammas.ready && !The_graph.changed);
    EXPECT_EQ(The_graph.history, history);
}

TEST_F(GraphSession, PairsBehindColumn120AreTold) {
    Open(Whole_file());
    const std::string blanks(120 - 4, ' ');
    EXPECT_EQ(
        Run({"FIX AB" + blanks + "C A B C"}),
        (Lines{"A list of variables ends after 120 characters. Not read: A B C", "Fixed: AB"}));
    EXPECT_EQ(The_graph.history.back().find(" A B C"), std::string::npos);
    // A number that goes on behind them is not read as its beginning.
    EXPECT_EQ(Run({"ADD 1" + blanks + "  2 1"})[0],
              "A list of variables ends after 120 characters. Not read: 1");
    EXPECT_EQ(Run({"ADD 1 2" + blanks + "12"})[0],
              "A list of variables ends after 120 characters. Not read: 12");
    EXPECT_TRUE(Has_line_with(Run({"SHO G MAR A C" + blanks + "  B"}), "Not read: B"));
    EXPECT_FALSE(Has_line_with(Run({"ADD AB" + blanks + "     "}), "Not read"));
}

TEST_F(GraphSession, SaveAsksBeforeItOverwrites) {
    Open(Whole_file());
    Run({"ADD BC"});
    const Lines kept = Run({"SAV", "N"});
    EXPECT_EQ(kept, Lines{"Graph was not saved"});
    EXPECT_EQ(Bytes("x.GRF"), Whole_file());
    EXPECT_EQ(Run({"SAV", "SHO G COM"})[0], "Graph was not saved") << "the next line is no answer";
    EXPECT_TRUE(The_graph.changed);
    EXPECT_EQ(Run({"SAV", "Y"}), Lines{"The graph was saved on x.GRF"});
    EXPECT_FALSE(The_graph.changed);
    EXPECT_EQ(Read_graph_file({"3 2", "1 3", "A B C", "3 2 1", "2 3 2", "1 2 3"}, "").graph.GRF,
              The_graph.model.GRF);
    EXPECT_TRUE(Has_line_with(Run({"SHO G COMPARE"}), "no pair differs"));
    // The letters of a name are no letters of SAVE.
    EXPECT_EQ(Run({"SAV my.grf", "Y"})[0],
              "SAVE takes no name of a file: my.grf. SAVE alone writes x.GRF, SAVE G writes x.GAM");
    EXPECT_FALSE(Exists("x.GAM"));
}

// A FILES section, or a link, may give the graph the name of another file of the project.
TEST_F(GraphSession, NeverWritesOverDefinitionsOrData) {
    Put_project();
    Put("x.DEF", "3\nFILES\nG x.DAT\n");
    const std::string data = Bytes("x.DAT");
    ASSERT_TRUE(Open_project_at_start("x"));
    EXPECT_TRUE(Has_line_with(Run({"SAV", "Y"}), "no graph is written there"));
    fs::create_symlink("x.VAR", folder / "x.GAM");
    Have_gammas();
    EXPECT_TRUE(Has_line_with(Run({"SAV G"}), "no graph is written there"));
    EXPECT_EQ(Bytes("x.DAT"), data);
    EXPECT_TRUE(Bytes("x.VAR").starts_with("3\nA 1"));

    Put("x.DEF", "3\n");
    for (const std::string name : {"DEF", "VAR", "CAT", "DAT", "SYS", "TAB", "EXA", "BEL"}) {
        fs::remove(folder / "x.GAM");
        Run({"OPE x", "Y", "N"});
        if (!Exists("x." + name)) Put("x." + name, "other data\n");
        const std::string before = Bytes("x." + name);
        fs::create_symlink("x." + name, folder / "x.GAM");
        Have_gammas();
        EXPECT_TRUE(Has_line_with(Run({"SAV G"}), "no graph is written there")) << name;
        EXPECT_EQ(Bytes("x." + name), before) << name;
    }
}

TEST_F(GraphSession, GraphAndGammasAreNotWrittenOverEachOther) {
    Put_project();
    Put("x.DEF", "3\nFILES\nG x.GAM\n");
    const auto save = [&] {
        Have_gammas();
        EXPECT_TRUE(Has_line_with(Run({"SAV G"}), "no graph is written there"));
        EXPECT_TRUE(Has_line_with(Run({"SAV", "Y"}), "no graph is written there"));
    };
    Run({"OPE x"});
    save();
    EXPECT_FALSE(Exists("x.GAM")) << "nor is the file made that both names mean";
    Put("x.GAM", Whole_file());
    Run({"OPE x", "Y"});
    save();
    EXPECT_EQ(Bytes("x.GAM"), Whole_file());
    Put_project();
    fs::rename(folder / "x.GAM", folder / "x.GRF");
    fs::create_symlink("x.GRF", folder / "x.GAM");
    Run({"OPE x", "Y"});
    save();
    EXPECT_EQ(Bytes("x.GRF"), Whole_file());
}

TEST_F(GraphSession, TheExitAsksToSaveAChangedGraphAndCanBeCancelled) {
    Open(Whole_file());
    Run({"ADD BC", "ERA", "EXI", "C"});
    EXPECT_FALSE(The_session.QuitRequested);
    EXPECT_TRUE(The_project.ProjectOpen && Graph_defined());
    Put_project();
    Run({"OPE x", "Y", "C"});
    EXPECT_EQ(Status(2, 3), Free) << "the project is not given up either";
    Run({"EXI", "N"});
    EXPECT_TRUE(The_session.QuitRequested);
    EXPECT_EQ(Bytes("x.GRF"), Whole_file());

    The_session.QuitRequested = false;
    EXPECT_TRUE(Has_line_with(Run({"OPE x", "Y", "N", "PRE AB", "EXI", "Y"}),
                              "The graph was saved on x.GRF"));
    EXPECT_TRUE(The_session.QuitRequested);
    EXPECT_NE(Bytes("x.GRF").find("\n3 0 1\n"), std::string::npos) << Bytes("x.GRF");
    The_session.QuitRequested = false;
    Run({"EXI"});
    EXPECT_TRUE(The_session.QuitRequested) << "nothing to ask";

    The_session.QuitRequested = false;
    Put("x.cmd", "ADD AB\n");
    Run({"BAT x"});
    const Lines said = Run({"BAT x"});
    EXPECT_EQ(std::count(said.begin(), said.end(), "Graph was not saved"), 1) << "BAT tells it";
    const Lines asked = Run({"OPE x", "Y", "N"});
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "Graph was not saved"), 1);
}

TEST_F(GraphSession, TheGraphFollowsItsVariables) {
    Open(Whole_file());
    const auto revise = [&](const std::string& labels, const std::string& blocks = "2\n1 3\n") {
        Put_project(labels, blocks);
        return Run({"INP V"});
    };
    revise("ABD");
    EXPECT_EQ(The_graph.model.Labels, "ABD");
    EXPECT_EQ(Status(1, 2), Free);
    EXPECT_TRUE(The_graph.changed);
    // B and D change places, and their edges and places with them.
    revise("ADB");
    EXPECT_EQ(Status(1, 2), Absent);
    EXPECT_EQ(Status(1, 3), Free);
    EXPECT_EQ(The_graph.model.coordinates[3], (NodePlace{3, 4}));
    // With No the statuses stay, in the project's blocks: what is saved can be opened.
    Run({"SAV", "Y"});
    const ChainGraph before = The_graph.model;
    Put_project("ADB", "1\n3\n");
    Run({"INP V", "N"});
    EXPECT_EQ(The_graph.model.Status, before.Status);
    EXPECT_EQ(The_graph.model.coordinates, before.coordinates);
    EXPECT_EQ(Incompatibility_with_project(The_graph.model), "");
    EXPECT_EQ(The_graph.model.Nblocks, 1);
    EXPECT_TRUE(The_graph.changed);
    Run({"SAV", "Y"});
    EXPECT_EQ(Run({"INP G"}), Lines{"The graph was read from x.GRF"});
    Put_project("ADB", "2\n2 3\n");
    Run({"INP V", "Y"});
    EXPECT_EQ(The_graph.model, New_project_graph(Free));
    EXPECT_EQ(The_graph.model.BlockOf(2), 1);
    EXPECT_TRUE(Has_line_with(revise("ADBE", "2\n2 4\n"), " Graph will be initialized"));
    EXPECT_EQ(The_graph.model.nvar, 4);
}

TEST_F(GraphSession, GammasAreWrittenAndReadWithTheirFile) {
    Open(Whole_file());
    EXPECT_EQ(Run({"REA G"}), Lines{"x.GAM does not exist"});
    Have_gammas();
    EXPECT_EQ(Run({"SAV G"}),
              Lines{"Partial gamma coefficients were recalculated and saved on x.GAM"});
    const std::string saved = Bytes("x.GAM");
    EXPECT_EQ(saved, "    999  0.100  0.200\n  0.100    999  0.300\n  0.200  0.300    999\n");
    Run({"GAM M"});
    EXPECT_EQ(Run({"REA G"})[0],
              "Gamma values from x.GAM .They may not be consistent with the current model.");
    EXPECT_FALSE(The_project_gammas.marginal) << "SHOW G lists those of the file";
    EXPECT_EQ(GAM_lines(The_project_gammas.IJXgamma, 3), Read_text_file(folder / "x.GAM").lines);
    // They may be of another model: SAVE G says that it calculated what it saves.
    Run({"SAV G"});
    EXPECT_NE(Bytes("x.GAM"), saved);
    Run({"GAM"});
    EXPECT_EQ(GAM_lines(The_project_gammas.IJXgamma, 3), Read_text_file(folder / "x.GAM").lines);

    Put("x.GAM", "999 .1 .2\n.1 999 .3\n.2 999 999\n");
    EXPECT_TRUE(
        Has_line_with(Run({"REA G"}), "WARNING - Non-symmetrical gamma values on x.GAM: BC"));
    Put("x.GAM", "999 0.1\n0.1 999\n");
    EXPECT_EQ(Run({"REA G"}), Lines{"x.GAM is not compatible with the project graph"});
    EXPECT_TRUE(The_project_gammas.ready) << "those before stay";

    Put("x.GAM", saved);
    const Lines said = Run({"OPE x", "Y"});
    EXPECT_TRUE(Has_line_with(said, "Gamma values have been found on x.GAM. They will be read."));
    EXPECT_EQ(The_project_gammas.IJXgamma[5], 0.3);
}

TEST_F(GraphSession, ReadsAGraphOfAnotherNameStrictlyAfterAQuestion) {
    Open(Whole_file());
    const std::string one = "3 2\n1 3\nA B C\n3 2 2\n2 3 2\n2 2 3\n";
    Put("one.grf", one);
    Put("text.txt", one);
    const ChainGraph before = The_graph.model;
    Run({"REA one.grf", "N"});
    EXPECT_EQ(The_graph.model, before);
    Put("damaged.grf", "3 2\n1 3\nA B C\n3 2 2\n2 3 2\n2 1 3\n");
    EXPECT_EQ(Run({"REA damaged.grf"}), Lines{"Asymmetrical status matrix: BC"});
    Put("other.grf", "3 1\n3\nA B C\n3 2 2\n2 3 2\n2 2 3\n");
    EXPECT_TRUE(
        Has_line_with(Run({"REA other.grf"}),
                      "The graph is not compatible with the project: its recursive blocks"));
    EXPECT_EQ(Run({"REA x.grf", "N"}), Lines{}) << "the project graph itself";
    EXPECT_EQ(The_graph.model, before);
    EXPECT_TRUE(Has_line_with(Run({"SHO G COM one.grf"}), "  A &C     -       +  "));
    EXPECT_TRUE(Has_line_with(Run({"SHO G COM one.grf x.grf"}), "  A &C     +       -  "));
    EXPECT_EQ(Run({"SHO G COM text.txt"}), Lines{"Warning: This is not a GRF file: text.txt"});

    Run({"REA one.grf", "Y"});
    EXPECT_EQ(Status(1, 3), Free);
    EXPECT_EQ(The_graph.history, Lines{"The model was read from one.grf"});
    EXPECT_TRUE(The_graph.changed && The_graph.model.revised);
}

TEST_F(GraphSession, AWordBehindAShowLetterClaimsTheLine) {
    Open(Whole_file());
    const Lines compared = Run({"SHO G COMPARE"});
    EXPECT_EQ(compared[0], "Comparison of the current model and the model saved on the GRF file");
    EXPECT_FALSE(Has_line_with(compared, "Project comments")) << "C is no letter of SHOW here";
    EXPECT_EQ(Run({"SHO  G  marginal A C"})[0], "Marginal model: A|C");
    for (const char* line : {"SHO G MAR", "SHO G MAR A X", "SHO G MAR A*", "SHO G MAR 1 260"})
        EXPECT_EQ(Run({line}), Lines{std::string("Failure: ") + line});
    EXPECT_TRUE(Has_line_with(Run({"sho  g  C"}), "Project comments"));
    EXPECT_TRUE(Has_line_with(Run({"SHO GC"}), "Project comments"));
    EXPECT_TRUE(Has_line_with(Run({"SHO ?"}), "  G COMPARE"));
    // Nor does the name of a model's file hold letters of SAVE.
    Have_gammas();
    EXPECT_EQ(Run({"SAV R big.cmd"}).size(), 1U);
    EXPECT_FALSE(Exists("x.GAM"));
}

}  // namespace
}  // namespace tarven
