#include "project/make.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "project/data.h"
#include "shell/report.h"
#include "shell/session.h"
#include "support/data_session.h"
#include "support/definitions.h"

namespace tarven {
namespace {

class Making : public DataSession {
  protected:
    /// What the report gained since the last call.
    std::vector<std::string> Said() {
        std::vector<std::string> lines(
            The_report.OutputField.begin() + static_cast<std::ptrdiff_t>(said_),
            The_report.OutputField.end());
        said_ = The_report.OutputField.size();
        return lines;
    }

  private:
    std::size_t said_ = 0;
};

nlohmann::json Figures(const std::string& project) {
    std::ifstream in(std::string(TARVEN_TEST_DATA) + "/cases.json");
    return nlohmann::json::parse(in).at(project);
}

std::string Line_of(const nlohmann::json& codes_and_count) {
    std::string line;
    for (const int number : codes_and_count)
        line += (line.empty() ? "" : " ") + std::to_string(number);
    return line;
}

/// The TAB file of a SYS file by the plainest road: lines in a map.
std::string Plain_TAB(const std::string& SYS) {
    std::map<std::vector<int>, int> cells;
    std::istringstream lines(SYS);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::vector<int> codes;
        for (int code = 0; words >> code;) codes.push_back(code);
        ++cells[codes];
    }
    std::string TAB;
    for (const auto& [codes, count] : cells) {
        for (const int code : codes) TAB += std::to_string(code) + " ";
        TAB += std::to_string(count) + "\n";
    }
    return TAB;
}

TEST_F(Making, AgreesWithTheFiguresOfEveryExample) {
    for (const std::string name : {"titanic", "survey", "vision", "verbal", "rasch30"}) {
        SCOPED_TRACE(name);
        const nlohmann::json figures = Figures(name);
        Define_example(name);
        const MakeResult direct = Make_files(The_project, The_project.files.DAT.path,
                                             folder / "direct.SYS", folder / "direct.TAB", {});
        EXPECT_EQ(direct.Nread, figures.at("nread"));
        ASSERT_TRUE(Make().TAB);
        EXPECT_EQ(The_project.Nused, figures.at("n_used"));
        EXPECT_EQ(The_data.Ntabcells, figures.at("n_tab_cells"));
        EXPECT_TRUE(The_data.tabdata_ready);
        EXPECT_FALSE(The_data.data_ready);

        const std::string TAB = Bytes(name + ".TAB");
        EXPECT_EQ(TAB, Plain_TAB(Bytes(name + ".SYS")));
        EXPECT_EQ(TAB.substr(0, TAB.find('\n')), Line_of(figures.at("tab_first")));
        const std::size_t last = TAB.rfind('\n', TAB.size() - 2) + 1;
        EXPECT_EQ(TAB.substr(last), Line_of(figures.at("tab_last")) + "\n");

        const auto N = static_cast<std::size_t>(The_project.N);
        const std::string labels = figures.at("labels");
        std::vector<std::map<int, int>> counts(N);
        Read_cases(Cases_of_project(), DataSource::tabdata,
                   [&](const std::uint8_t* codes, std::int32_t count) {
                       for (std::size_t v = 0; v < N; ++v) counts[v][codes[v]] += count;
                       return true;
                   });
        for (std::size_t v = 0; v < N; ++v) {
            const std::string label(1, labels[v]);
            EXPECT_EQ(counts[v][0], figures.at("missing").at(label)) << label;
            for (int c = 1; c <= The_project.variables[v + 1].dim; ++c)
                EXPECT_EQ(counts[v][c],
                          figures.at("frequencies").at(label).at(static_cast<std::size_t>(c - 1)))
                    << label << c;
        }
    }
}

TEST_F(Making, ReadsBackWhatItWrote) {
    Define_example("survey");
    ASSERT_TRUE(Make().TAB);
    const CellStore made = The_data.TABdata;
    // The TAB file reads back as the store that was written, and so does one made from SYS alone.
    ASSERT_EQ(Read_TAB_file(), "");
    EXPECT_EQ(The_data.TABdata, made);
    const std::string TAB = Bytes("survey.TAB");
    const MakeResult collected =
        Collect_records(The_project, The_project.files.SYS.path, The_project.files.TAB.path);
    EXPECT_EQ(collected.TABdata, made);
    EXPECT_EQ(Bytes("survey.TAB"), TAB);
}

TEST_F(Making, AsksBeforeItOverwrites) {
    Define_example("titanic");
    ASSERT_TRUE(Make().TAB);
    std::vector<std::string> said = Said();
    EXPECT_TRUE(Has_line_with(said, "*** Sorting data may be time consuming ***"));
    EXPECT_TRUE(Has_line_with(said, "2201 cases included in 24 non-empty cells."));
    Put("titanic.DAT", "0 3 1 1\n");
    EXPECT_FALSE(Make().TAB);  // nobody says yes
    EXPECT_EQ(The_project.Nused, 2201);
    EXPECT_FALSE(Has_line_with(Said(), "cases included"));
    The_session.AUTOMATIC = true;
    EXPECT_TRUE(Make().TAB);
    EXPECT_EQ(Bytes("titanic.SYS"), "1 3 1 1 \n");
    EXPECT_EQ(Bytes("titanic.TAB"), "1 3 1 1 1\n");
    EXPECT_EQ(The_project.Nused, 1);
    EXPECT_EQ(File_names(),
              (std::vector<std::string>{"titanic.CAT", "titanic.DAT", "titanic.DEF", "titanic.SYS",
                                        "titanic.TAB", "titanic.VAR"}));
}

TEST_F(Making, KeepsTheCasesBeforeABadRecordAndNoTab) {
    The_session.AUTOMATIC = true;
    Put("x.DAT", "1 1\n2 2\n1 1\n");
    Define_project({2, 2});
    ASSERT_TRUE(Make().TAB);
    Put("x.DAT", "1 1\n2 2\n1 2 1\n2 1\n");
    Said();
    EXPECT_FALSE(Make().TAB);
    const std::vector<std::string> said = Said();
    EXPECT_TRUE(Has_line_with(said, "Too many variables (3) in 1 2 1 (x.DAT, line 3)"));
    EXPECT_TRUE(Has_line_with(said, "Warning: Error reading data"));
    EXPECT_EQ(Bytes("x.SYS"), "1 1 \n2 2 \n");
    EXPECT_FALSE(Exists("x.TAB"));
    EXPECT_EQ(The_project.Nused, 2);
    EXPECT_EQ(Data_source(), DataSource::sysfile);
}

TEST_F(Making, LeavesOldFilesWholeWithoutADatFile) {
    The_session.AUTOMATIC = true;
    Put("x.SYS", "1 1 \n");
    Put("x.TAB", "1 1 1\n");
    Define_project({2, 2});
    EXPECT_FALSE(Make().TAB);
    EXPECT_TRUE(Has_line_with(Said(), "Failure: x.DAT could not be read: No such file"));
    EXPECT_EQ(Bytes("x.SYS"), "1 1 \n");
    EXPECT_EQ(Bytes("x.TAB"), "1 1 1\n");
}

// A limit on the size of files stands for a full disk: SYS fits it or not, TAB neither.
TEST_F(Making, LeavesOldFilesWholeOnAFullDisk) {
    The_session.AUTOMATIC = true;
    std::string DAT;
    for (int k = 0; k < 5000; ++k)
        DAT += std::to_string(1 + k / 50 % 50) + " " + std::to_string(1 + k % 50) + "\n";
    Put("x.DAT", DAT);
    Put("x.SYS", "1 1 \n");
    Put("x.TAB", "1 1 1\n");
    struct rlimit before {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto old_handler = signal(SIGXFSZ, SIG_IGN);
    for (const rlim_t limit : {rlim_t{4096}, rlim_t{0}}) {
        Define_project({50, 50});
        struct rlimit tight = before;
        tight.rlim_cur = limit;
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
        const MakeResult made = Make_files(The_project, The_project.files.DAT.path,
                                           folder / "x.SYS", folder / "x.TAB", {});
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_FALSE(made.SYS_written || made.TAB_written);
        EXPECT_NE(made.failure.find("x.SYS could not be written: File too large"),
                  std::string::npos)
            << made.failure;
        EXPECT_EQ(Bytes("x.SYS"), "1 1 \n");
        EXPECT_EQ(Bytes("x.TAB"), "1 1 1\n");
        EXPECT_EQ(File_names(), (std::vector<std::string>{"x.DAT", "x.SYS", "x.TAB"}));
    }
    signal(SIGXFSZ, old_handler);
    const MakeResult made =
        Make_files(The_project, The_project.files.DAT.path, folder / "x.SYS", folder / "x.TAB", {});
    EXPECT_TRUE(made.TAB_written);
    EXPECT_EQ(made.TABdata.Ncells(), 2500);
}

TEST_F(Making, WritesADiagnosisWhenNumbersCannotStandForPatterns) {
    Define_project(std::vector<int>(31, 3));
    EXPECT_EQ(Key_overflow(The_project).step, 0);
    Define_project(std::vector<int>(33, 3));
    EXPECT_EQ(Key_overflow(The_project).step, 32);
    EXPECT_FALSE(Make().TAB);
    EXPECT_TRUE(Has_line_with(Said(), "Sorting data may be time consuming"));
    EXPECT_EQ(Bytes("stac0.rep"),
              "failure at step 32\n   x = 0\n glx = 4611686018427387904\ndim = 3\n");
}

TEST_F(Making, OpeningUsesWhatIsThereAndFits) {
    const struct {
        std::string DAT, SYS, TAB;  ///< "-": no such file
        DataSource source;
        int Nused;
        std::string said;
    } rows[] = {
        {"1 1\n2 2\n", "-", "-", DataSource::tabdata, 2, "2 cases included in 2 non-empty cells."},
        {"-", "1 1 \n1 1 \n", "1 1 2\n", DataSource::tabdata, 2, ""},
        {"-", "1 1 \n2 1 \n", "-", DataSource::sysfile, 2, ""},
        {"-", "-", "1 1 3\n", DataSource::tabdata, 3, ""},
        {"-", "-", "-", DataSource::none, 0, "Failure: x.DAT could not be read"},
        {"-", "1 3 \n", "1 1 3\n", DataSource::tabdata, 3, "x.SYS, line 1: \"3\" is not a code"},
        {"-", "1 1 \n", "1 1 0\n", DataSource::sysfile, 1, "x.TAB, line 1: \" 0\" is not a count"},
        {"-", "1 1 \n", "1 1 2\n", DataSource::sysfile, 1, "x.SYS has 1 cases, x.TAB has 2."},
        {"-", "2 1 \n1 2 \n", "1 1 1\n2 2 1\n", DataSource::sysfile, 2,
         "The 2 cases of x.TAB are not those of x.SYS. Only the SYS file will be used"},
        {"-", "2 1 \n1 2 \n2 1 \n", "1 2 1\n2 1 2\n", DataSource::tabdata, 3, ""},
        {"-", "0 1 \n0 2 \n", "-", DataSource::sysfile, 2,
         "Variable A: all 2 cases are missing. Column 1 of x.DAT has no value from 1 to 2"},
        {"1 3\nx 3\n", "-", "-", DataSource::tabdata, 2,
         "Variable B: all 2 cases are missing. Column 2 of x.DAT, from line 1 on, has no value"},
        {"-", "9 9 \n", "9 9 1\n", DataSource::none, 0, "Use MAKE to create new SYS and TAB"},
        {"1 1\n2 2\n", "1 1 \n", "-", DataSource::sysfile, 1, "*** Sorting data"},
        {"", "-", "-", DataSource::tabdata, 0, "x.DAT holds no data"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.DAT + "|" + row.SYS + "|" + row.TAB);
        for (const auto& [name, bytes] :
             {std::pair("x.DAT", row.DAT), {"x.SYS", row.SYS}, {"x.TAB", row.TAB}}) {
            std::filesystem::remove(folder / name);
            if (bytes != "-") Put(name, bytes);
        }
        Define_project({2, 2});
        The_project.Nused = 0;
        Said();
        Load_data_at_opening();
        const std::vector<std::string> said = Said();
        EXPECT_EQ(Data_source(), row.source);
        EXPECT_EQ(The_project.Nused, row.Nused);
        if (row.said.empty()) {
            EXPECT_EQ(Joined(said), "");
        } else {
            EXPECT_NE(Joined(said).find(row.said), std::string::npos) << Joined(said);
        }
    }
}

TEST_F(Making, OpeningTellsDefinitionsAndDataThatAreNewer) {
    namespace fs = std::filesystem;
    for (const char* name : {"x.DEF", "x.VAR", "x.DAT"}) Put(name, "1 1\n");
    Put("x.SYS", "1 1 \n");
    Put("x.TAB", "1 1 1\n");
    Define_project({2, 2});
    The_project.files.DEF = {folder / "x.DEF", true};
    The_project.files.VAR = {folder / "x.VAR", true};
    const auto made = fs::file_time_type::clock::now();
    const auto said_when = [&](int DEF, int VAR, int DAT, int SYS) {
        const std::pair<const char*, int> times[] = {
            {"x.DEF", DEF}, {"x.VAR", VAR}, {"x.DAT", DAT}, {"x.SYS", SYS}, {"x.TAB", 0}};
        for (const auto& [name, seconds] : times)
            fs::last_write_time(folder / name, made + std::chrono::seconds(seconds));
        Said();
        Load_data_at_opening();
        return Joined(Said());
    };
    const std::string mend = "Use MAKE to create new SYS and TAB files\n";
    EXPECT_EQ(said_when(-50, 10, 9, 0), "");
    EXPECT_EQ(said_when(0, 0, 11, 0), "x.DAT is newer than x.SYS and x.TAB\n" + mend);
    EXPECT_EQ(said_when(20, 30, 40, 50),
              "x.DEF, x.VAR and x.DAT are newer than x.SYS and x.TAB\n" + mend);
    EXPECT_EQ(The_project.Nused, 1) << "they are used all the same";
}

TEST_F(Making, TellsWordsThatAreNoNumbers) {
    The_session.AUTOMATIC = true;
    // Column 3 is not used; a record may run over lines, and a left out one counts.
    Put("x.DAT", "1 1 a\nNA 2 b\n1\n 1O c\n9 NA .\n1 2 3\n");
    Define_project({2, 2});
    The_project.NTAL = 3;
    The_project.conditions = {{.column = 1, .lower = -1e7, .upper = 2}};
    ASSERT_TRUE(Make().TAB);
    const std::vector<std::string> said = Said();
    EXPECT_TRUE(Has_line_with(said,
                              "x.DAT: \"NA\" is no number and counts as missing, 2 times, "
                              "first in line 2, column 1"));
    EXPECT_TRUE(Has_line_with(
        said, "x.DAT: \"1O\" in line 4, column 2, is no number and counts as missing"));
    EXPECT_FALSE(Has_line_with(said, "\"c\"") || Has_line_with(said, "\"a\""));
    WordsOfNoNumber words;
    for (int k = 0; k < 9; ++k) words.Add({std::string(1, static_cast<char>('a' + k % 7)), k, 1});
    EXPECT_EQ(Lines_on_words(words, "x.DAT").back(),
              "x.DAT: 2 more words of other kinds are no numbers");
}

// Whatever ends the program between the two renames, SYS and TAB of different cases never stand
// together: TAB is gone before the new SYS comes.
TEST_F(Making, TabGoesBeforeANewSysComes) {
    std::string cases;
    for (int k = 1; k <= 8192; ++k) cases += "2 2\n";
    Put("x.DAT", cases);
    Put("x.TAB", "1 1 1\n");
    Define_project({2, 2});
    const MakeResult made =
        Make_files(The_project, The_project.files.DAT.path, folder / "x.SYS", folder / "x.TAB",
                   [&](std::int64_t) {  // nothing can be renamed over a folder
                       return std::filesystem::create_directory(folder / "x.SYS");
                   });
    EXPECT_FALSE(made.SYS_written || made.TAB_written);
    EXPECT_FALSE(Exists("x.TAB"));
    // A link to TAB is followed, as ever.
    std::filesystem::remove(folder / "x.SYS");
    Put("real.TAB", "1 1 1\n");
    std::filesystem::create_symlink(folder / "real.TAB", folder / "x.TAB");
    EXPECT_TRUE(
        Make_files(The_project, The_project.files.DAT.path, folder / "x.SYS", folder / "x.TAB", {})
            .TAB_written);
    EXPECT_EQ(Bytes("real.TAB"), "2 2 8192\n");
}

TEST(DataSourceOf, TakesTheCheapest) {
    const DataAtHand base{.Nused = 100, .Ntabcells = 50, .N = 4};
    const auto source = [&](std::int64_t used, const char* there) {
        DataAtHand at_hand = base;
        at_hand.Nused = used;
        const std::string has(there);
        at_hand.data_ready = has.find('d') != std::string::npos;
        at_hand.tabdata_ready = has.find('t') != std::string::npos;
        at_hand.DAT = has.find('D') != std::string::npos;
        at_hand.SYS = has.find('S') != std::string::npos;
        at_hand.TAB = has.find('T') != std::string::npos;
        return static_cast<int>(Data_source(at_hand));
    };
    // 4 * 62 <= 5 * 50 < 4 * 63
    EXPECT_EQ(source(62, "dt"), 1);
    EXPECT_EQ(source(63, "dt"), 2);
    EXPECT_EQ(source(63, "d"), 1);
    EXPECT_EQ(source(62, "tST"), 2);
    EXPECT_EQ(source(62, "DST"), 3);
    EXPECT_EQ(source(63, "DST"), 4);
    EXPECT_EQ(source(63, "DS"), 3);
    EXPECT_EQ(source(62, "DT"), 4);
    EXPECT_EQ(source(62, "D"), 5);
    EXPECT_EQ(source(62, ""), 6);
}

TEST_F(Making, DataTooLargeForMemoryIsRefused) {
    // 19650000 codes fit and one case more does not.
    Define_project({2, 2, 2});
    for (const int cases : {6550000, 6550001}) {
        std::string SYS;
        for (int k = 0; k < cases; ++k) SYS += "1 2 1 \n";
        Put("x.SYS", SYS);
        Look_for_files();
        EXPECT_EQ(Read_data(),
                  cases == 6550000 ? "" : "Data too large. Try to use MAKE to create TABDATA");
        EXPECT_EQ(The_data.Ndata_arrays, 30);
        EXPECT_EQ(The_project.Nused, 6550000);
    }
}

TEST_F(Making, ADeviceBehindANameIsNotRemoved) {
    Define_example("titanic");
    ASSERT_TRUE(Make().TAB);
    std::filesystem::remove(folder / "titanic.TAB");
    ASSERT_EQ(mkfifo((folder / "device").c_str(), 0600), 0);
    std::filesystem::create_symlink(folder / "device", folder / "titanic.TAB");
    const int reader = ::open((folder / "device").c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_FALSE(Make().TAB);
    ::close(reader);
    EXPECT_TRUE(std::filesystem::is_fifo(folder / "device"));
}

}  // namespace
}  // namespace tarven
