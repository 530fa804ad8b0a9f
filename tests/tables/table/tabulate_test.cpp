#include "tables/table/tabulate.h"

#include <fmt/format.h>

#include <algorithm>
#include <random>

#include "project/make.h"
#include "support/definitions.h"
#include "support/reference_figures.h"
#include "support/session.h"
#include "tables/independence/slices.h"

namespace tarven {

namespace {

const DataSource all_sources[] = {DataSource::dataset, DataSource::tabdata, DataSource::sysfile,
                                  DataSource::tabfile, DataSource::datfile};

class TabulateTest : public SessionTest {
  protected:
    /// Makes a project of the scratch folder's "p.DAT" with SYS and TAB files and all data in
    /// memory.
    void Open(const ProjectDefinition& definition) {
        static_cast<ProjectDefinition&>(The_project) = definition;
        ProjectFiles& files = The_project.files;
        files.DAT = {folder / "p.DAT", true};
        files.SYS = {folder / "p.SYS", true};
        files.TAB = {folder / "p.TAB", true};
        const MakeResult made = Make_files(definition, files.DAT.path, files.SYS.path,
                                           files.TAB.path, [](std::int64_t) { return true; });
        ASSERT_TRUE(made.SYS_written && made.TAB_written) << made.failure << made.unreadable;
        ASSERT_EQ(Read_data(), "");
        ASSERT_EQ(Read_TAB_file(), "");
    }

    static std::vector<TableVariable> Variables_of(const std::vector<int>& numbers) {
        std::vector<TableVariable> variables;
        for (const int number : numbers) variables.push_back(Table_variable(The_project, number));
        return variables;
    }
};

}  // namespace

TEST_F(TabulateTest, EverySourceGivesTheTableOfTheCases) {
    std::mt19937 random(3);
    for (int round = 0; round < 12; ++round) {
        std::vector<int> dims;
        for (std::size_t v = 0, n = 3 + random() % 9; v < n; ++v)
            dims.push_back(2 + static_cast<int>(random() % 2));
        std::vector<std::vector<int>> cases(2 + random() % 300);
        std::string text;
        for (auto& one : cases) {
            for (const int dim : dims) {  // 0 and dim+1 become missing
                one.push_back(static_cast<int>(
                    random() % 20 ? 1 + random() % static_cast<unsigned>(dim)
                                  : random() % 2 * static_cast<unsigned>(dim + 1)));
                text += fmt::format("{} ", one.back());
            }
            text += "\n";
        }
        Put("p.DAT", text);
        Open(Definition_of_dims(dims));

        std::vector<int> numbers;
        for (int v = 1; v <= static_cast<int>(dims.size()); ++v)
            if (random() % 2 || v <= 2) numbers.push_back(v);
        ContingencyTable plain = Make_table(Variables_of(numbers), false);
        for (const auto& one : cases) {
            std::vector<int> c;
            for (const int number : numbers) c.push_back(one[static_cast<std::size_t>(number - 1)]);
            bool complete = true;
            for (std::size_t k = 0; k < c.size(); ++k)
                complete = complete && c[k] >= 1 && c[k] <= plain.DIM(k + 1);
            if (!complete) continue;
            ++plain.NTOTAL;
            ++plain.cells[static_cast<std::size_t>(Cell_number(plain, c) - 1)];
        }
        Add_margins(plain);
        for (const DataSource source : all_sources) {
            const auto made = Tabulate(Cases_of_project(), source, {Variables_of(numbers), {}});
            EXPECT_EQ(bool(made), plain.NTOTAL >= 2) << Data_source_text(source);
            if (!made) continue;
            EXPECT_EQ(made->table, plain) << Data_source_text(source);
            EXPECT_EQ(made->missing, static_cast<std::int64_t>(cases.size()) - plain.NTOTAL);
        }
    }
}

TEST_F(TabulateTest, MarginsOfABigTableFromItsNonEmptyCellsAreThoseOfTheWholeTable) {
    std::mt19937 random(8);
    for (const std::size_t n : {2U, 5U, 11U}) {
        ContingencyTable table = Make_table(std::vector<TableVariable>(n), false);
        ASSERT_EQ(table.Nvar(), static_cast<int>(n));
        for (int filled = 0; filled < 9; ++filled) {
            std::vector<int> c;
            for (std::size_t k = 0; k < n; ++k) c.push_back(1 + static_cast<int>(random() % 2));
            table.cells[static_cast<std::size_t>(Cell_number(table, c) - 1)] += 3;
        }
        ContingencyTable whole = table;
        Add_margins(whole);
        BTmargins(table);
        EXPECT_EQ(table.cells, whole.cells);
        BTmargins(table);
        EXPECT_EQ(table.cells, whole.cells) << "margins made anew";
    }
}

TEST_F(TabulateTest, TablesOfTheExamplesAgreeWithFiguresFromOutside) {
    std::string open;
    int compared = 0;
    for (const ReferenceHypothesis& reference : Reference_hypotheses()) {
        const std::string project = reference.name.substr(0, reference.name.find(' '));
        const std::string labels = reference.name.substr(project.size() + 1);
        if (project != open) {
            static_cast<ProjectDefinition&>(The_project) = Example_definition(project);
            The_project.files.DAT = {Example_file(project, "DAT"), true};
            open = project;
        }
        std::vector<int> numbers;
        for (int v = 1; v <= The_project.N; ++v)
            if (labels.find(The_project.variables[static_cast<std::size_t>(v)].label) !=
                std::string::npos)
                numbers.push_back(v);
        const auto made =
            Tabulate(Cases_of_project(), DataSource::datfile, {Variables_of(numbers), {}});
        ASSERT_TRUE(made) << reference.name;
        const auto place = [&](std::size_t at) {
            return static_cast<int>(made->table.labels().find(labels[at])) + 1;
        };
        std::vector<int> z;
        for (std::size_t at = 4; at < labels.size(); ++at) z.push_back(place(at));
        const bool turned = place(0) > place(2);
        const Hypothesis hypothesis = Make_hypothesis(
            made->table.Nvar(), std::min(place(0), place(2)), std::max(place(0), place(2)), z);
        const InformativeSlices slices = XYZ1(View_of(made->table, hypothesis));
        ASSERT_LE(slices.counts.size(), reference.strata.size()) << reference.name;
        std::size_t found = 0;
        for (const TwoWayTable& counts : slices.counts) {
            TwoWayTable expected(counts.rows, counts.columns);
            const auto same = [&](const TwoWayTable& stratum) {
                if (stratum.rows != (turned ? counts.columns : counts.rows)) return false;
                for (int i = 1; i <= counts.rows; ++i)
                    for (int j = 1; j <= counts.columns; ++j)
                        if ((turned ? stratum(j, i) : stratum(i, j)) != counts(i, j)) return false;
                return true;
            };
            while (found < reference.strata.size() && !same(reference.strata[found])) ++found;
            EXPECT_LT(found, reference.strata.size()) << reference.name;
            ++found;
            ++compared;
        }
    }
    EXPECT_GT(compared, 50);
}

TEST_F(TabulateTest, FewerThanTwoCasesAreAFailure) {
    Put("p.DAT", "1 2 1\n0 1 2\n0 2 2\n");
    Open(Definition_of_dims({2, 2, 2}));
    for (const DataSource source : all_sources) {
        const auto one = Tabulate(Cases_of_project(), source, {Variables_of({1, 2}), {}});
        EXPECT_FALSE(one);
        EXPECT_EQ(one.failure().messages,
                  std::vector<std::string>{"THE TABLE SEEMS TO BE EMPTY? FAILURE ASSUMED"});
        EXPECT_TRUE(Tabulate(Cases_of_project(), source, {Variables_of({2, 3}), {}}));
    }
    Put("p.DAT", "0 2 1\n0 1 2\n");
    Open(Definition_of_dims({2, 2, 2}));
    EXPECT_EQ(Tabulate(Cases_of_project(), DataSource::tabdata, {Variables_of({1, 2}), {}})
                  .failure()
                  .messages,
              std::vector<std::string>{"The table is empty. 2 missing. 2 ntabcells."});
}

TEST_F(TabulateTest, AFileThatBreaksOffGivesNoTable) {
    Put("p.DAT", "1 1\n2 2\n1 2\n");
    Open(Definition_of_dims({2, 2}));
    Put("p.DAT", "1 1\n2 2\n1\n");
    Put("p.SYS", "1 1\n2 2\n1 3\n");
    std::filesystem::remove(folder / "p.TAB");
    for (const DataSource source :
         {DataSource::datfile, DataSource::sysfile, DataSource::tabfile}) {
        const auto made = Tabulate(Cases_of_project(), source, {Variables_of({1, 2}), {}});
        EXPECT_FALSE(made);
        EXPECT_EQ(made.failure().messages.size(), 1U);
    }
    std::filesystem::remove(folder / "p.DAT");
    EXPECT_EQ(Tabulate(Cases_of_project(), DataSource::datfile, {Variables_of({1, 2}), {}})
                  .failure()
                  .messages,
              std::vector<std::string>{"FAILURE OPENING DATAFILE"});
}

TEST(TableSource, IsTheCheapestAtHand) {
    DataAtHand files{.Nused = 100, .Ntabcells = 75, .N = 3, .DAT = true};
    EXPECT_EQ(Table_source(files, 3), DataSource::datfile);
    files.SYS = true;
    EXPECT_EQ(Table_source(files, 3), DataSource::sysfile);
    files.TAB = true;
    EXPECT_EQ(Table_source(files, 3), DataSource::tabfile) << "4 * 75 cells = 3 * 100 cases";
    files.Ntabcells = 76;
    EXPECT_EQ(Table_source(files, 3), DataSource::sysfile);
    files.SYS = false;
    EXPECT_EQ(Table_source(files, 3), DataSource::tabfile);
    files.data_ready = true;
    EXPECT_EQ(Table_source(files, 3), DataSource::dataset);
    EXPECT_EQ(Table_source(files, 9), DataSource::none);
    files.tabdata_ready = true;
    EXPECT_EQ(Table_source(files, 3), DataSource::tabdata);
    EXPECT_EQ(Table_source(files, 9), DataSource::tabdata);
}

TEST(CellCounter, CasesBeyond32BitsAreNotCounted) {
    ContingencyTable table = Make_table({{.number = 1}, {.number = 2}});
    CellCounter counter(table, 2);
    const std::vector<std::uint8_t> codes = {2, 1};
    EXPECT_TRUE(counter.Add(codes.data(), INT32_MAX));
    EXPECT_FALSE(counter.Add(codes.data(), 1));
    EXPECT_EQ(table.NTOTAL, INT32_MAX);
}

}  // namespace tarven
