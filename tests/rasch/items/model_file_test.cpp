#include "rasch/items/model_file.h"

#include <gtest/gtest.h>

#include "project/project.h"
#include "rasch/items/item_workspace.h"
#include "support/data_session.h"

namespace tarven {

namespace {

class ModelFileTest : public DataSession {
  protected:
    /// Everything that a saved model brings back.
    std::vector<std::string> State() {
        const GLLRM& m = The_items.model;
        std::vector<std::string> state = {Item_labels(m), Exo_labels(m), The_current_GLLRM()};
        for (int i = 1; i <= m.NITEMS; ++i) state.emplace_back(m.ItemNo(i).FlippedItem ? "-" : "+");
        if (m.ItemScoreInteractions != 0) state.push_back(Cut_command(m.groups));
        return state;
    }
};

}  // namespace

TEST_F(ModelFileTest, RunningASavedModelGivesItBackWhateverStood) {
    Define_example("verbal");
    std::string many = "LLR";
    const std::string items = "ABCDEFGHIJKLMNOP";
    for (const char item : items) many += std::string(" ") + item + "Y " + item + "Z " + item + "#";
    const std::vector<std::vector<std::string>> models = {
        {"ITE ABCD"},
        {"ITE D-CBA", "EXO Y", "LLR AB CY", "CUT 3"},
        {"ITE ABCD -", "EXO ZY", "LLR A# BY", "CUT /3"},
        {"ITE ABCD", "EXO Y", "LLR A#", "CUT 1 6"},
        {"ITE " + items, "EXO YZ", "CUT #30", many},
        {"ITE AB", "EXO Z"},
        {"ITE AYB", "EXO Z", "LLR AY YZ"}};
    for (const auto& model : models) {
        Run({"DIS IE"});
        Run(model);
        const std::vector<std::string> before = State();
        Run({"SAV R model", "Y"});
        const std::string saved = Bytes("model.cmd");
        // Roles, flips and groups of another model.
        for (const std::string other : {"DIS IE", "DIS E", "ITE -A-B-C-D-Y"}) Run({other});
        Run({"EXO EF", "ITE -C-D", "CUT 1", "RUN model.cmd", "EXI"});
        EXPECT_EQ(State(), before) << saved;
        Run({"SAV R model", "Y"});
        EXPECT_EQ(Bytes("model.cmd"), saved);
    }
}

TEST_F(ModelFileTest, LongModelsAreSpreadOverLines) {
    Define_example("verbal");
    std::string all = "LLR";
    for (char a = 'A'; a <= 'K'; ++a)
        for (char b = static_cast<char>(a + 1); b <= 'K'; ++b) all += std::string(" ") + a + b;
    Run({"ITE ABCDEFGHIJK", all});
    const std::vector<std::string> lines = Model_file_lines(The_items.model);
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[3].substr(0, 9), "LLR AB AC");
    EXPECT_EQ(lines[4].substr(0, 6), "LLR +D");
    EXPECT_EQ(lines[5], "GRM");
    for (const std::string& line : lines) EXPECT_LE(line.size(), 120U) << line;
}

// A list of 54 flipped items with its marks would be longer than what ITEMS reads of a line.
TEST_F(ModelFileTest, LongListsComeBackWhole) {
    Define_project(std::vector<int>(58, 2));
    Put("x.DAT", "");
    const std::string special = "0123456789*#-+? !$";
    std::string labels;
    for (std::size_t k = 0; k < special.size(); ++k)
        labels +=
            std::string(1, special[k]) + static_cast<char>('A' + k) + static_cast<char>('a' + k);
    for (std::size_t v = 1; v <= 58; ++v)
        The_project.variables[v].label = v <= 54 ? labels[v - 1] : static_cast<char>('S' + v - 55);
    for (const std::string flips :
         {"FLI", "FLI ABCDEFGHIJKLMNOPQR", "FLI ABCDEFGHIJKLMNOPQRabcd"}) {
        Run({"ITE *", "DIS I"});
        for (std::size_t v = 1; v <= 54; ++v) The_items.FlippedVariable[v] = false;
        Run({"EXO 55 56 57 58", "ITE *", flips});
        ASSERT_EQ(The_items.model.NITEMS, 54);
        const std::vector<std::string> before = State();
        for (const std::string& line : Model_file_lines(The_items.model))
            EXPECT_LE(line.size(), 120U) << line;
        Run({"SAV R model", "Y", "DIS IE", "ITE -A-1-B", "RUN model.cmd", "EXI"});
        EXPECT_EQ(State(), before) << Bytes("model.cmd");
    }
}

TEST_F(ModelFileTest, ProjectFilesAndFilesThatStandAreKept) {
    Define_example("verbal");
    Run({"ITE ABCD"});
    const std::string data = Bytes("verbal.DAT");
    // Reports may be the only copy of a session that was cut off.
    for (const char* report : {"verbal.TMP", "verbal.REP", "verbal_unsaved_1.REP"})
        Put(report, "a report\n");
    for (const std::string line :
         {"SAV R verbal.DAT", "SAV R verbal.def", "SAV R TARVEN", "SAV R verbal",
          "SAV R verbal.TMP", "SAV R verbal.rep", "SAV R verbal_unsaved_1.REP"})
        EXPECT_TRUE(Has_line_with(Run({line, "Y"}),
                                  "no model is written there. Take another name: SAVE R "))
            << line;
    EXPECT_EQ(Bytes("verbal.DAT"), data);
    for (const char* report : {"verbal.TMP", "verbal.REP", "verbal_unsaved_1.REP"})
        EXPECT_EQ(Bytes(report), "a report\n") << report;
    Put("old.cmd", "SHO V\n");
    EXPECT_FALSE(Has_line_with(Run({"SAV R old", "N"}), "was saved"));
    EXPECT_EQ(Bytes("old.cmd"), "SHO V\n");
    EXPECT_TRUE(Has_line_with(Run({"SAV R old", "Y"}), "The current GLLRM was saved on old.cmd"));
    EXPECT_TRUE(Has_line_with(Run({"SAV R"}), "SAVE R needs the name of a file"));
    EXPECT_TRUE(Has_line_with(Run({"SAV R no/such/folder"}), "could not be written"));
    Run({"DIS I"});
    EXPECT_TRUE(Has_line_with(Run({"SAV R other"}), "Items have not been defined"));
    EXPECT_FALSE(Exists("other.cmd"));
}

// A file of another project names labels that are not there; a cut one has no terms.
TEST_F(ModelFileTest, AFileOfAnotherProjectAndACutOneLeaveNoHalfModel) {
    Define_example("titanic");
    Put("verbal.cmd", "DIS E\nITEMS ABCDE -\nASY\nEXO ZY\nREP\nGRM AB CD BY DY\n");
    const auto lines = Run({"RUN verbal.cmd"});
    EXPECT_TRUE(Has_line_with(lines, "is no variable")) << Joined(lines);
    EXPECT_EQ(The_items.model.NITEMS, 0);
    EXPECT_EQ(The_items.model.NEXOGENE, 0);
    EXPECT_TRUE(Has_line_with(lines, "The GRM command requires items"));
    Define_example("verbal");
    Put("cut.cmd", "DIS E\nITEMS ABCDE -\nASY\nEXO Z");
    Run({"RUN cut.cmd"});
    EXPECT_EQ(Item_labels(The_items.model), "ABCDE");
    EXPECT_EQ(Exo_labels(The_items.model), "Z");
    EXPECT_EQ(The_current_GLLRM(), "");
}

}  // namespace tarven
