// VAR, CAT and INPUT V: what becomes of the files, of names made from cut points and of typing.

#include <gtest/gtest.h>

#include <fstream>

#include "project/cat_file.h"
#include "project/data.h"
#include "project/edited_copy.h"
#include "project/project.h"
#include "shell/report.h"
#include "shell/user.h"
#include "support/session.h"

namespace tarven {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

struct Revising : SessionTest {
    /// A project whose category names are those that the opening writes.
    void Open_heights(const std::string& cuts = "140 165 172 210") {
        Put("x.DEF", "2\n");
        Put("x.VAR", Heights(cuts));
        Put("x.DAT", "150 1\n170 2\n180 1\n166 2\n");
        Run({"OPE x"});
    }
    static std::string Heights(const std::string& cuts, const std::string& label = "H",
                               const std::string& blocks = "2\n1 2\n") {
        return "2\n" + label + " 1 3 3\n" + cuts + "\nS 2 2 2\n0 1 2\n" + blocks;
    }
    /// The user's editor puts one text after another into the copy, and accepts it.
    void Edit_with(const Lines& texts) {
        The_user.user.edit_file = [this, texts,
                                   next = std::size_t{0}](const std::string& path) mutable {
            copies.emplace_back(path);
            std::ifstream in(path, std::ios::binary);
            found.emplace_back(std::istreambuf_iterator<char>(in),
                               std::istreambuf_iterator<char>());
            permissions = fs::status(path).permissions();
            std::ofstream(path, std::ios::binary) << texts.at(next++);
            return true;
        };
    }
    std::vector<fs::path> copies;
    Lines found;
    fs::perms permissions = fs::perms::none;
};

TEST_F(Revising, NamesMadeFromCutPointsFollowThem) {
    Open_heights();
    Put("x.CAT", "H 1 140-165\r\nH\t2  \xC3\xA6 middle\nH 3 172-210\n\nS 1 0-1\nH 4 210-230\n");
    Put("x.VAR", Heights("140 160 170 200"));
    EXPECT_TRUE(Has_line_with(Run({"INP V"}), "x.CAT: 2 category names were made anew"));
    EXPECT_EQ(Bytes("x.CAT"),
              "H 1 140-160\r\nH\t2  \xC3\xA6 middle\nH 3 170-200\n\nS 1 0-1\nH 4 210-230\n");
    EXPECT_EQ(The_project.variables[1].categoryname[3], "170-200");

    // Through VAR likewise; a category that is gone takes its generated line with it.
    Edit_with({"2\nH 1 2 3\n140 160 200\nS 2 2 2\n0 1 2\n1\n2\n"});
    Run({"VAR", "Y", "Y"});
    EXPECT_EQ(Bytes("x.CAT"), "H 1 140-160\r\nH\t2  \xC3\xA6 middle\n\nS 1 0-1\nH 4 210-230\n");
}

TEST_F(Revising, OpeningTellsNamesOfOtherCutPoints) {
    Open_heights();
    const std::string names = Bytes("x.CAT");
    Put("x.VAR", Heights("140 160.5 170.25 210"));
    const Lines said = Run({"OPE x", "Y"});
    EXPECT_TRUE(Has_line_with(said,
                              "x.CAT: 3 categories are named by intervals that are not "
                              "theirs. The first is H 1, named 140-165, with values "
                              "140-160.5"));
    EXPECT_EQ(Bytes("x.CAT"), names);
    // Intervals of codes, of ranges without a common end, and cut names of long numbers are right.
    const struct {
        std::string cuts;
        Lines names;
        std::size_t stale;
    } rows[] = {
        {"0 1 2 3", {"none", "1-10", "11-20"}, 0},
        {"100 200 300 400", {"110-200", "210-300", "310-400"}, 0},
        {"140 164.5 172.25 210", {"140-164.", "164.5-17", "172.25-2"}, 0},
        {"140 160.5 172.25 210", {"140-164.", "164.5-17", "172.25-2"}, 2},
        {"-3 -2 -1 0", {"-3--2", "-2--1", "-1-0"}, 0},
        {"-3 -2.5 -1 0", {"-3--2", "-2--1", "-1-0"}, 2},
        {"0 1 2 3", {"low", "low-high", "high"}, 0},
    };
    for (const auto& row : rows) {
        Put("x.VAR", Heights(row.cuts));
        Put("x.CAT",
            "H 1 " + row.names[0] + "\nH 2 " + row.names[1] + "\nH 3 " + row.names[2] + "\n");
        Run({"OPE x", "Y"});
        EXPECT_EQ(Stale_names(The_project).size(), row.stale) << row.cuts << row.names[1];
    }
}

TEST_F(Revising, ARenamedLabelIsNoChangedStructure) {
    Open_heights();
    Edit_with({Heights("140 165 172 210", "K")});
    const Lines said = Run({"VAR", "N"});
    EXPECT_TRUE(Has_line_with(said, "Different variable labels"));
    EXPECT_FALSE(Has_line_with(said, "Different recursive blocks")) << Joined(said);
    // The No is the answer to the question on variables alone.
    Edit_with({Heights("140 165 172 210", "H", "1\n2\n")});
    EXPECT_TRUE(Has_line_with(Run({"VAR", "N", "N"}), "Different recursive blocks"));
}

TEST_F(Revising, ReadingTheDefinitionsAgainHintsOnlyAtAChange) {
    Open_heights();
    Lines said = Run({"INP V"});
    EXPECT_FALSE(Has_line_with(said, "Use FREQUENCIES")) << Joined(said);
    Put("x.VAR", Heights("140 165 172 210") + "COMMENTS\nanother comment\n");
    EXPECT_FALSE(Has_line_with(Run({"INP V"}), "Use FREQUENCIES"));
    Put("x.DEF", "2\n2 1 1\n");
    EXPECT_TRUE(Has_line_with(Run({"INP V"}), "Use FREQUENCIES"));

    // The FILES section counts, and its end too.
    Put("other.dat", "150 1\n");
    Put("other.var", Heights("140 160 170 200"));
    Put("x.DEF", "2\n2 1 1\nFILES\nD other.dat\nV other.var\n");
    said = Run({"INP V"});
    EXPECT_TRUE(Has_line_with(said, "The DAT file is other.dat"));
    EXPECT_EQ(The_project.variables[1].vtil[1], 160);
    Run({"MAK", "Y"});
    EXPECT_EQ(The_project.Nused, 1) << "of other.dat";
    Put("x.DEF", "2\n");
    EXPECT_TRUE(Has_line_with(Run({"INP V"}), "The DAT file is x.DAT"));
    Put("x.DEF", "2\nFILES\nV gone.var\nD other.dat\n");
    EXPECT_TRUE(Has_line_with(Run({"INP V"}), "Missing VARfile"));
    EXPECT_EQ(The_project.files.DAT.path.filename(), "x.DAT") << "a refusal changes nothing";
}

TEST_F(Revising, EditsAPrivateCopyThatNobodyCanPlant) {
    Open_heights();
    Put("victim", "untouched");
    const fs::path planted = fs::temp_directory_path() / "tarven-x.VAR";
    std::error_code error;
    fs::create_symlink(folder / "victim", planted, error);
    // Letters that Latin-1 lacks survive, since bytes are copied, not text.
    const std::string revised =
        Heights("140 165 172 210") + "COMMENTS\n\xCE\xB1 and \xE2\x82\xAC\n";
    Edit_with({revised, revised});
    Run({"VAR"});
    fs::remove(planted, error);
    EXPECT_EQ(Bytes("x.VAR"), revised);
    EXPECT_EQ(Bytes("victim"), "untouched");
    EXPECT_EQ(permissions, fs::perms::owner_read | fs::perms::owner_write);
    Run({"VAR"});
    ASSERT_EQ(copies.size(), 2u);
    EXPECT_NE(copies[0], copies[1]);
    EXPECT_FALSE(fs::exists(copies[0]) || fs::exists(copies[1])) << "nothing is left behind";
}

TEST_F(Revising, TypingSurvivesAnErrorAndCanBeEditedAgain) {
    Open_heights();
    const std::string before = Bytes("x.VAR");
    const std::string bad = Heights("140 172 165 210");
    const std::string good = Heights("140 160 172 210");
    Edit_with({bad, bad + "more\n"});
    Lines said = Run({"VAR", "Y", "N"});
    EXPECT_EQ(found, (Lines{before, bad})) << "the second edit begins where the first ended";
    EXPECT_TRUE(Has_line_with(said, "What was revised stands in " + copies[0].string()));
    EXPECT_EQ(Bytes("x.VAR"), before);
    // The next VAR offers it, whatever AUTOMATIC says to other questions.
    Edit_with({good});
    Run({"VAR", "Y", "Y", "Y"});
    EXPECT_EQ(found.back(), bad + "more\n");
    EXPECT_EQ(Bytes("x.VAR"), good);
    EXPECT_FALSE(fs::exists(copies[0]));
    EXPECT_TRUE(The_kept_copies.copy_of.empty());
}

TEST_F(Revising, NamesAndCommentsLeaveTheDataUpToDate) {
    Open_heights();
    const auto now = fs::file_time_type::clock::now();
    for (const char* name : {"x.DEF", "x.VAR", "x.DAT", "x.SYS", "x.TAB"})
        fs::last_write_time(folder / name, now - std::chrono::hours(1));
    Edit_with({Heights("140 165 172 210") + "VARIABLES\nH Height\n"});
    Run({"VAR"});
    EXPECT_FALSE(Has_line_with(Run({"OPE x", "Y"}), "newer than"));
}

}  // namespace
}  // namespace tarven
