#include "support/reference_figures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "project/open_project.h"
#include "shell/workspace.h"
#include "support/session.h"
#include "tables/independence/hypotheses.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/table/contingency_table.h"
#include "tables/table/table_workspace.h"

namespace tarven {
namespace {

/// From the files of the example projects to the rows of the tests, by the commands of a user.
class ProjectTests : public SessionTest {
  protected:
    /// TAB of the variables of "X&Y|Z", with that one hypothesis on the list.
    void Table_and_hypothesis(const std::string& hyp) {
        std::string labels = hyp;
        std::erase_if(labels, [](char c) { return c == '&' || c == '|'; });
        Run({"TAB " + labels});
        const std::string of_table = The_table.table.labels();
        ASSERT_EQ(of_table.size(), labels.size()) << hyp;
        const auto number = [&](char label) { return static_cast<int>(of_table.find(label)) + 1; };
        std::vector<int> z;
        for (const char label : labels.substr(2)) z.push_back(number(label));
        const int count = static_cast<int>(labels.size());
        Set_hypotheses({Make_hypothesis(count, number(labels[0]), number(labels[1]), z)},
                       HypothesisScope::table, of_table);
    }
};

TEST_F(ProjectTests, RowsAgreeWithTheReferenceFigures) {
    std::string open;
    int compared = 0;
    for (const nlohmann::json& entry : Reference_figures("independence_tests.json", "hypotheses")) {
        const std::string project = entry.at("project"), hyp = entry.at("hyp");
        if (project != "titanic" && project != "survey" && project != "vision") continue;
        if (project != open) {
            Init_workspace();
            Copy_example(project);
            Set_project(folder, project);
            ASSERT_TRUE(Open_project_files());
            open = project;
        }
        Table_and_hypothesis(hyp);
        const nlohmann::json& figures = entry.at("test");
        EXPECT_EQ(The_table.table.NTOTAL, figures.at("n").get<std::int64_t>()) << project << hyp;
        const std::pair<const char*, const char*> statistics[] = {
            {"CHI", "X2"}, {"DEV", "G2"}, {"POW", "D2"}};
        for (const auto& [command, symbol] : statistics) {
            Run({"ASY", command, "TES"});
            const TestResult row = The_hypotheses.results[0];
            const double statistic = figures.at(symbol);
            EXPECT_NEAR(row.Statistic, statistic, 1e-6 * std::max(1.0, statistic)) << hyp;
            EXPECT_EQ(row.Df, figures.at("df").get<float>()) << hyp;
            EXPECT_NEAR(row.PAsymp, figures.at(std::string("p_") + symbol).get<double>(), 1e-7);
            const bool gamma = entry.at("gamma");
            EXPECT_EQ(The_hypotheses.list[0].Kind, gamma ? 3 : 2) << hyp;
            if (gamma) {
                EXPECT_NEAR(row.Gamma, figures.at("gamma").get<double>(), 1e-6) << hyp;
                EXPECT_NEAR(row.PGammaAsymp, figures.at("p_gamma_1sided").get<double>(), 1e-7);
            }
            ++compared;
            if (!entry.contains("seeded") || !entry.at("seeded").contains(symbol)) continue;
            // A two-way table goes to the local engine, whose expected counts divide in another
            // order: its ties may fall the other way, so only the global engine is compared.
            if (The_table.table.Nvar() == 2) continue;
            const nlohmann::json& seeded = entry.at("seeded").at(symbol);
            Run({"EXA 1000", "TES"});
            const auto count = [](float p) { return std::lround(1000 * p); };
            const TestResult exact = The_hypotheses.results[0];
            EXPECT_EQ(count(exact.PExact), seeded.at("count_plain_extended").get<long>()) << hyp;
            if (!gamma) continue;
            EXPECT_EQ(count(exact.PGammaExact), seeded.at("gamma_1sided").get<long>()) << hyp;
            EXPECT_EQ(count(exact.PGammaExact2), seeded.at("gamma_2sided").get<long>()) << hyp;
        }
    }
    EXPECT_GT(compared, 200);
}

}  // namespace
}  // namespace tarven
