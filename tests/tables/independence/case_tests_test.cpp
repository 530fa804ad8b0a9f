#include "tables/independence/case_tests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <span>

#include "project/project.h"
#include "support/reference_figures.h"
#include "support/session.h"
#include "tables/independence/own_table.h"
#include "tables/table/tabulate.h"

namespace tarven {
namespace {

class CaseTests : public SessionTest {
  protected:
    /// Rows of a project, at random, of `fewest` to `most` variables.
    std::vector<Hypothesis> Random_rows(int count, int fewest, int most) {
        std::mt19937 random(31);
        std::vector<Hypothesis> rows;
        std::vector<int> order;
        for (int v = 1; v <= The_project.N; ++v) order.push_back(v);
        for (int k = 0; k < count; ++k) {
            std::shuffle(order.begin(), order.end(), random);
            const int size = fewest + k % (most - fewest + 1);
            rows.push_back(
                Make_hypothesis(The_project.N, order[0], order[1],
                                std::span(order).subspan(2, static_cast<std::size_t>(size - 2))));
        }
        return rows;
    }
};

TEST_F(CaseTests, GiveTheRowOfATableInEveryDigitMonteCarloIncluded) {
    Copy_example("survey");
    Run({"OPE survey"});
    const Result<PackedCases> packed = Pack_cases(Cases_of_project());
    ASSERT_TRUE(packed);
    DrawMemory memory;
    StrataMemory strata;
    for (const bool exact : {false, true})
        for (const Hypothesis& row : Random_rows(40, 2, 5)) {
            TestSettings settings;
            settings.ExactTests = exact;
            settings.Nsim = 60;
            const OwnTable own = Own_table(row, The_project);
            const auto made = Tabulate(Cases_of_project(), own.request);
            ASSERT_TRUE(made);
            RandomStream stream, same_stream;
            Set_seed(stream, settings.Seed);
            Set_seed(same_stream, settings.Seed);
            const TestedHypothesis table =
                Test_globally(made->table, own.row, settings, stream, memory);
            const TestedHypothesis from_cases =
                Test_from_cases(*packed, row, settings, same_stream, memory, strata);
            const std::string label = Hypothesis_label(row, "PEKCFWHAS");
            EXPECT_EQ(from_cases.row, table.row) << label;
            EXPECT_EQ(from_cases.has_gamma, table.has_gamma) << label;
            EXPECT_EQ(from_cases.cases, table.cases) << label;
            EXPECT_EQ(from_cases.missing_slices, table.missing_slices) << label;
            EXPECT_EQ(stream.word, same_stream.word) << label;
        }
}

// All nine variables of the project: more than a table of eight has, and the strata of plain
// counting in a big table.
TEST_F(CaseTests, TakeTheRowsThatAreTooLargeForATable) {
    Copy_example("survey");
    Run({"OPE survey"});
    std::vector<Hypothesis> rows = Random_rows(12, 8, 9);
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 40;
    std::vector<TestResult> first;
    for (const int jobs : {1, 2}) {
        RandomStream stream;
        const auto outcomes =
            Test_in_own_tables(Cases_of_project(), rows, settings, stream, {.jobs = jobs});
        DrawMemory memory;
        for (std::size_t k = 0; k < rows.size(); ++k) {
            const OwnTable own = Own_table(rows[k], The_project);
            const auto made = Tabulate(Cases_of_project(), own.request);
            if (!made) {  // too many cells: no table to compare with
                EXPECT_TRUE(outcomes[k].messages.empty());
                EXPECT_GT(outcomes[k].outcome.row.Df, 0);
                continue;
            }
            RandomStream own_stream;
            Set_seed(own_stream, settings.Seed);
            EXPECT_EQ(outcomes[k].outcome.row,
                      Test_globally(made->table, own.row, settings, own_stream, memory).row);
        }
    }
    Dispose_data();
    The_project.files.DAT.exists = The_project.files.SYS.exists = The_project.files.TAB.exists =
        false;
    RandomStream stream;
    for (const TestedInOwnTable& one :
         Test_in_own_tables(Cases_of_project(), rows, settings, stream)) {
        EXPECT_EQ(one.messages, std::vector<std::string>{"Data is not available"});
        EXPECT_EQ(one.outcome.row, Untested_result());
    }
}

class CaseTestsOf : public CaseTests, public ::testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Projects, CaseTestsOf, ::testing::Values("titanic", "survey", "vision"));

TEST_P(CaseTestsOf, AgreeWithTestsMadeElsewhere) {
    const std::string project = GetParam();
    Copy_example(project);
    Run({"OPE " + project});
    const Result<PackedCases> packed = Pack_cases(Cases_of_project());
    ASSERT_TRUE(packed) << project;
    std::string labels;
    for (int v = 1; v <= The_project.N; ++v)
        labels += The_project.variables[static_cast<std::size_t>(v)].label;
    const auto number = [&](char c) { return static_cast<int>(labels.find(c)) + 1; };
    DrawMemory memory;
    StrataMemory strata;
    RandomStream stream;
    int compared = 0;
    for (const auto& figures : Reference_figures("graph_hypotheses.json", "tests")) {
        if (figures.at("project") != project) continue;
        const std::string label = figures.at("hyp");
        std::vector<int> z;
        for (std::size_t k = 4; k < label.size(); ++k) z.push_back(number(label[k]));
        const TestedHypothesis one = Test_from_cases(
            *packed, Make_hypothesis(The_project.N, number(label[0]), number(label[2]), z), {},
            stream, memory, strata);
        const std::string what = project + " " + label;
        // The rows are in single precision.
        EXPECT_NEAR(one.row.Statistic, Real_of(figures.at("X2")),
                    1e-6 * Real_of(figures.at("X2")) + 1e-6)
            << what;
        EXPECT_EQ(static_cast<int>(one.row.Df), figures.at("df")) << what;
        EXPECT_NEAR(one.row.PAsymp, Real_of(figures.at("p")), 1e-6) << what;
        EXPECT_EQ(one.cases, figures.at("n")) << what;
        EXPECT_EQ(one.has_gamma, figures.contains("gamma")) << what;
        if (one.has_gamma) {
            EXPECT_NEAR(one.row.Gamma, Real_of(figures.at("gamma")), 1e-6) << what;
            EXPECT_NEAR(one.row.PGammaAsymp, Real_of(figures.at("p_gamma")), 1e-6) << what;
        }
        ++compared;
    }
    EXPECT_GT(compared, 2);
}

}  // namespace
}  // namespace tarven
