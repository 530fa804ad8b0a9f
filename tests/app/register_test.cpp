// What the floors add by registration: panels, lines of SHOW E, start values, honest refusals.

#include "app/register.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "shell/user.h"
#include "shell/workspace.h"
#include "support/session.h"
#include "tables/numbers/stream_workspace.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

struct Floors : SessionTest {
    void SetUp() override {
        SessionTest::SetUp();
        Copy_example("titanic");
        Run({"OPE titanic"});
    }
    static Lines Panels() { return {The_user.panels.begin(), The_user.panels.begin() + 4}; }
};

TEST_F(Floors, SetTheirOwnStatusPanels) {
    const Lines opened = {"titanic", "No table", "No items", "No exogenous"};
    EXPECT_EQ(Panels(), opened);
    Run({"TAB SAG"});
    EXPECT_EQ(Panels()[1], "Table SAG (2201)");
    SetStatus(2, "Items: SA");
    Run({"OPE titanic", "Y"});
    EXPECT_EQ(Panels(), opened) << "what rested on the project before is gone";
}

TEST_F(Floors, TellShowEWhatThereIs) {
    const auto environment = [this] {
        const Lines lines = Run({"SHO E"});
        return Lines(std::find(lines.begin(), lines.end(), "ENVIRONMENT:") + 2, lines.end() - 1);
    };
    const std::string rule(60, '-');
    EXPECT_EQ(
        environment(),
        (Lines{"                 TABDATA  -    ready 24 cells", "    Number of TABdata arrays  = 1",
               "    Number of TABcount arrays = 1", "                 Table    -    not ready",
               "          SCREEN-RESULTS  -    not ready", "Command line: ", rule,
               "Statistical tests:"}));
    Run({"TAB SAG", "HYP SA"});
    const Lines lines = environment();
    ASSERT_EQ(lines.size(), 9U) << Joined(lines);
    EXPECT_EQ(lines[3], "                 Table    -    ready");
    EXPECT_EQ(lines[7], "Hypotheses exist");
    EXPECT_EQ(lines[8], "Statistical tests:");
}

TEST_F(Floors, RefuseWhatIsNotThereYetForTheRightReason) {
    EXPECT_EQ(Run({"HOM"}), Lines{"No hypotheses"});
    Run({"TAB SAG", "HYP SA"});
    EXPECT_EQ(Run({"HOM"}), Lines{"The command HOMOGENEITY is not available yet"});
    EXPECT_EQ(Run({"SCR"}), Lines{"The command SCREEN is not available yet"});
    struct Row {
        std::vector<std::string> before;
        std::string command;
        std::string answer;
    };
    const std::string estimates = "You have not estimates the parameters of the current GLLRM";
    const std::vector<std::string> items = {"OPE verbal", "Y", "ITEMS AB"}, three = {"ITEMS ABC"};
    const std::vector<std::string> exo = {"EXO ZY"}, estimated = {"GRM"};
    const Row rows[] = {
        {{}, "SCR I", "This command requires at least three items"},
        {{}, "SCR E", "Sceening of effects on the score requires exogenous variables"},
        {{}, "CRI", "Define exogenous variables before criterion variables"},
        {{}, "STA", "This command requires items"},
        {items, "STA", "The command STABLES is not available yet"},
        {{}, "RAS", "The command RASCH is not available yet"},
        {{}, "IMI", "The command IMISSING is not available yet"},
        {{}, "MPI", "The command MPITEMS is not available yet"},
        {{}, "DIF", "This command requires both items and exogenous variables"},
        {{}, "LDE", "This command needs at least three items"},
        {{}, "SCR I", "This command requires at least three items"},
        {three, "SCR I", "The command SCREEN is not available yet"},
        {{}, "LDE", "The command LDEPENDENCE is not available yet"},
        {{}, "ROS", "The command ROSENBAUM is not available yet"},
        {{}, "SCR IE", "Sceening of effects on the score requires exogenous variables"},
        {exo, "SCR IE", "The command SCREEN is not available yet"},
        {{}, "DIF", "The command DIF is not available yet"},
        {{}, "CRI", "The command CRITERION is not available yet"},
        {{}, "PER", "The item parameters of the current GLLRM have not been estimated"},
        {{}, "TPR", estimates},
        {estimated, "TPR", "The command TPROFILE is not available yet"},
        {{}, "IPR", "The command IPROFILE is not available yet"},
        {{}, "PER", "The command PERSONS is not available yet"},
        {{}, "RES", "The command RESPONSES is not available yet"}};
    Copy_example("verbal");
    for (const Row& row : rows) {
        Run(row.before);
        EXPECT_EQ(Run({row.command}), Lines{row.answer});
    }
    EXPECT_EQ(Run({"INP G"}), Lines{"No GRAPH file."});
    EXPECT_EQ(Run({"ONL"}), Lines{"Unrecognized command: ONL"});
}

TEST_F(Floors, AFreshWorkspaceDrawsTheSameNumbers) {
    The_stream.word = 4711;
    Init_workspace();
    EXPECT_EQ(The_stream, RandomStream());
}

}  // namespace
}  // namespace tarven
