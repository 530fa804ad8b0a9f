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
    EXPECT_EQ(Run({"SCR I"}), Lines{"This command requires at least three items"});
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
