// The edges of the program: columns of a report, text from and to UTF-8, files.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>
#include <string>

#include "shell/fields.h"
#include "shell/files.h"
#include "shell/text.h"

namespace tarven {
namespace {

namespace fs = std::filesystem;

class Folder : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "tarven-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    void Put(const std::string& name, const std::string& bytes) {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }
    std::string Bytes(const std::string& name) {
        std::ostringstream bytes;
        bytes << std::ifstream(folder / name, std::ios::binary).rdbuf();
        return bytes.str();
    }
    int File_count() {
        return static_cast<int>(
            std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    fs::path folder;
};

TEST(Fields, AlignAndWiden) {
    EXPECT_EQ(Field(3.14159, 8, 2), "    3.14");
    EXPECT_EQ(Field(123456.0, 4, 1), "123456.0");
    EXPECT_EQ(Field(-0.004, 6, 2), "  0.00") << "what rounds to zero has no sign";
    EXPECT_EQ(Field(-0.006, 6, 2), " -0.01");
    EXPECT_EQ(Field(0.125, 5, 2), " 0.12") << "ties go by the exact binary value";
    EXPECT_EQ(Field(std::numeric_limits<double>::quiet_NaN(), 5, 1), "     ");
    EXPECT_EQ(Field(std::numeric_limits<double>::infinity(), 5, 1), "  inf");
    EXPECT_EQ(Field(42, 5), "   42");
    EXPECT_EQ(Left("\xD8\xB2", 4), "\xD8\xB2  ") << "a byte is a column";
    EXPECT_EQ(Right("long", 2), "long");
}

TEST(Text, ComesBackFromUtf8) {
    std::string all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    EXPECT_EQ(To_latin1(To_utf8(all)), all);
    EXPECT_EQ(To_latin1("\xEF\xBB\xBF\xC3\x86"), "\xC6") << "a byte order mark is dropped";
    EXPECT_EQ(To_latin1("\xC6 K"), "\xC6 K") << "Latin-1 stays";
    EXPECT_EQ(To_latin1("\xE2\x82\xAC"), "?") << "a character outside Latin-1";
    EXPECT_EQ(To_latin1("\xC0\x80"), "\xC0\x80") << "an overlong form is no UTF-8";
}

// Latin-1, other letters of two to four bytes and control characters, mixed.
TEST(Text, OfALineComesBackWithEveryLetter) {
    std::mt19937 random(5);
    const std::string letters[] = {"a",
                                   " ",
                                   "?",
                                   "\xC3\xB8",
                                   "\xC5\x82",
                                   "\xE2\x82\xAC",
                                   "\xEF\xBF\xBF",
                                   "\xF0\x9F\x98\x80",
                                   "\xF4\x8F\xBF\xBF"};
    for (int k = 0; k < 200; ++k) {
        std::string bytes;
        std::size_t count = 0;
        for (auto n = random() % 12; n > 0; --n, ++count) bytes += letters[random() % 9];
        const std::string line = To_line(bytes);
        EXPECT_EQ(To_utf8(line), bytes);
        EXPECT_EQ(To_utf8(Printable(line)), bytes);
        EXPECT_EQ(One_byte_a_letter(line).size(), count);
        EXPECT_EQ(std::count(line.begin(), line.end(), '?'),
                  std::count(bytes.begin(), bytes.end(), '?'))
            << "no letter is a question";
    }
    // Escapes that nobody made steer no terminal either: a surrogate, a letter of Latin-1.
    for (const char* made_up : {"\x1A\x80\x81\x96\x80\x80", "\x1A\x80\x80\x80\x80\x9B", "\x1A\x80"})
        EXPECT_EQ(Printable(made_up).find_first_not_of('?'), std::string::npos);
}

TEST_F(Folder, FindsNamesInAnyLetters) {
    const fs::path polish =
        folder / "\xC5\x82\xC3\xB3\x64\xC5\xBA";  // l-stroke, o-acute, d, z-acute
    fs::create_directory(polish);
    EXPECT_EQ(Text_path(Path_text(polish)), polish);
    Put("\xC3\x86\x62.DEF", "4\n");  // AE, b
    EXPECT_EQ(Find_file(Text_path(Path_text(folder) + "/\xE6\x42.def")),
              folder / "\xC3\x86\x62.DEF");
    Put("\xC5\x82.cmd", "TAB \xC5\x82\n");
    const fs::path command_file = folder / "\xC5\x82.cmd";
    EXPECT_EQ(Find_file(folder / "\xC5\x82.CMD"), command_file);
    EXPECT_EQ(Read_text_file(command_file).lines, std::vector<std::string>{"TAB ?"});
    EXPECT_EQ(Read_text_file(command_file, Letters::kept).lines,
              std::vector<std::string>{To_line("TAB \xC5\x82")});
}

TEST(Text, SplitsLinesOfEitherKind) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(Split_lines(""), Lines{});
    EXPECT_EQ(Split_lines("a\r\n\nb"), (Lines{"a", "", "b"}));
    EXPECT_EQ(Split_lines("a\n"), Lines{"a"});
    EXPECT_EQ(Printable("a\x1b[31m\tb\x7f\x9b"), "a?[31m b??");
}

TEST_F(Folder, FindsAFileWhateverItsCase) {
    Put("Study.def", "");
    EXPECT_EQ(Find_file(folder / "STUDY.DEF"), folder / "Study.def");
    Put("STUDY.DEF", "");
    EXPECT_EQ(Find_file(folder / "STUDY.DEF"), folder / "STUDY.DEF") << "the exact name first";
    fs::create_directory(folder / "Other.def");
    EXPECT_FALSE(Find_file(folder / "other.DEF")) << "a folder is no file";
    EXPECT_FALSE(Find_file(folder / "none" / "x.def"));
    EXPECT_FALSE(Find_file(""));
}

TEST_F(Folder, ReplacesAFileWholeOrNotAtAll) {
    Put("x.TAB", "old");
    {
        ReplacementFile abandoned(folder / "x.TAB");
        abandoned.Write("new");
    }
    EXPECT_EQ(Bytes("x.TAB"), "old");
    EXPECT_EQ(File_count(), 1) << "nothing stays beside it";

    ReplacementFile kept(folder / "x.TAB");
    kept.Write("new");
    EXPECT_TRUE(kept.Commit());
    EXPECT_EQ(Bytes("x.TAB"), "new");
    EXPECT_EQ(File_count(), 1);

    fs::create_symlink(folder / "x.TAB", folder / "link");
    EXPECT_EQ(Write_text_file(folder / "link", {"through"}), "");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(Bytes("x.TAB"), "through\n");
}

TEST_F(Folder, SaysWhyAFileCannotBeWrittenOrRead) {
    const std::string failure = Write_text_file(folder / "none" / "x", {"a"});
    EXPECT_NE(failure.find("could not be written: No such file"), std::string::npos) << failure;
    EXPECT_FALSE(Read_text_file(folder).ok);
    EXPECT_NE(Read_text_file(folder).error.find("is a folder"), std::string::npos);
    EXPECT_FALSE(Read_text_file(folder / "none").error.empty());
    EXPECT_FALSE(Append_text_file(folder, {"a"}).empty());
}

TEST_F(Folder, APipeThatNobodyWritesToIsNotWaitedFor) {
    const fs::path pipe = folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const TextFile read = Read_text_file(pipe);
    EXPECT_FALSE(read.ok);
    EXPECT_NE(read.error.find("no program writes to this pipe"), std::string::npos) << read.error;
}

TEST_F(Folder, WritesUtf8AndReadsItBack) {
    const std::vector<std::string> lines = {
        "\xC6"
        "ble",
        "", "b"};
    ASSERT_EQ(Write_text_file(folder / "x", lines), "");
    EXPECT_EQ(Bytes("x"),
              "\xC3\x86"
              "ble\n\nb\n");
    EXPECT_EQ(Read_text_file(folder / "x").lines, lines);
    ASSERT_EQ(Append_text_file(folder / "x", {"c"}), "");
    EXPECT_EQ(Read_text_file(folder / "x").lines.size(), 4u);
}

}  // namespace
}  // namespace tarven
