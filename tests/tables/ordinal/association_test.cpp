// Odds ratios, agreement and matrices of gammas beside figures from outside.

#include <gtest/gtest.h>

#include <cmath>

#include "support/session.h"
#include "tables/ordinal/gamma_matrix_report.h"
#include "tables/ordinal/gammas_workspace.h"
#include "tables/ordinal/kappa.h"
#include "tables/ordinal/mantel_haenszel_report.h"

namespace tarven {
namespace {

TwoWayTable Square(int k, std::initializer_list<int> cells) {
    TwoWayTable table(k, k);
    auto cell = cells.begin();
    for (int i = 1; i <= k; ++i)
        for (int j = 1; j <= k; ++j) table(i, j) = *cell++;
    Fill_margins(table);
    return table;
}

// Survival by sex given class on the Titanic: R 4.2.2, mantelhaen.test and the variance of Robins,
// Breslow and Greenland.
TEST(MantelHaenszel, AgreesWithR) {
    const std::vector<TwoWayTable> strata = {
        Square(2, {118, 4, 62, 141}), Square(2, {154, 13, 25, 93}), Square(2, {422, 106, 88, 90}),
        Square(2, {670, 3, 192, 20}), Square(2, {0, 0, 0, 0})};
    const MantelHaenszel estimate = Mantel_haenszel(strata);
    ASSERT_TRUE(estimate.defined);
    EXPECT_NEAR(estimate.odds_ratio, 10.806530476, 1e-8);
    EXPECT_NEAR(estimate.se, 0.138801142096, 1e-11);
    EXPECT_NEAR(estimate.low, 8.23262884212, 1e-8);
    EXPECT_NEAR(estimate.high, 14.1851531471, 1e-8);
}

TEST(MantelHaenszel, HasNoEstimateWithoutBothProducts) {
    const std::vector<TwoWayTable> strata = {Square(2, {3, 0, 2, 4}), Square(2, {0, 0, 1, 2})};
    EXPECT_FALSE(Mantel_haenszel(strata).defined);
    EXPECT_FALSE(Mantel_haenszel({}).defined);
    EXPECT_TRUE(std::isinf(Generalized_odds_ratio(1)));
    EXPECT_EQ(Generalized_odds_ratio(0.5), 3);
    EXPECT_EQ(Generalized_odds_ratio(-1), 0);
}

TEST(MantelHaenszel, APerfectAssociationPrintsWordsAndBlanks) {
    const std::vector<std::string> lines = Mantel_lines("A&B", {}, 1, 0);
    EXPECT_NE(lines[0].find("not defined"), std::string::npos);
    EXPECT_NE(lines[1].find(" unbounded "), std::string::npos) << lines[1];
    const std::vector<TwoWayTable> perfect = {Square(2, {5, 0, 0, 7})};
    const std::vector<std::string> matrix =
        Gamma_matrix_lines(Gammas_of_pairs("AB", perfect), true);
    EXPECT_EQ(matrix[3], "A       .       ");
    EXPECT_TRUE(Has_line_with(matrix, "the odds ratio is unbounded"));
}

// Two film critics: Agresti (2002), Categorical Data Analysis, section 10.5, which prints kappa
// .389 with standard error .060.
TEST(Kappa, AgreesWithThePublishedTable) {
    const KappaRecord k = Kappa_of_table(Square(3, {24, 8, 13, 8, 13, 11, 10, 9, 64}));
    ASSERT_TRUE(k.defined);
    EXPECT_EQ(k.n, 160);
    EXPECT_NEAR(k.kappa, 0.389, 0.0005);
    EXPECT_NEAR(k.se, 0.060, 0.0005);
}

TEST(Kappa, KnowsItsEdges) {
    EXPECT_EQ(Kappa_of_table(Square(2, {5, 0, 0, 7})).kappa, 1);
    EXPECT_FALSE(Kappa_of_table(Square(2, {5, 0, 0, 0})).defined) << "agreement is certain";
    EXPECT_FALSE(Kappa_of_table(Square(2, {0, 0, 0, 0})).defined);
    const KappaRecord independent = Kappa_of_table(Square(2, {4, 4, 4, 4}));
    EXPECT_EQ(independent.kappa, 0);
    EXPECT_EQ(independent.p, 1);
}

struct Association : SessionTest {};

TEST_F(Association, CommandsRefuseWhatTheyCannotDo) {
    Copy_example("titanic");
    EXPECT_TRUE(Has_line_with(Run({"KAP RL"}), "No project"));
    EXPECT_TRUE(Has_line_with(Run({"MAN"}), "No table"));
    Run({"OPE titanic", "TAB SCG"});
    EXPECT_TRUE(Has_line_with(Run({"MAN"}), "No hypotheses"));
    EXPECT_TRUE(Has_line_with(Run({"HYP SC", "MAN"}), "requires a hypothesis on two binary"));
    EXPECT_TRUE(Has_line_with(Run({"KAP SCG"}),
                              "All variables must have the same number of categories: SCG"));
    EXPECT_TRUE(Has_line_with(Run({"KAP"}), "Not enough variables"));
    EXPECT_TRUE(Has_line_with(Run({"COR CS"}), "Nominal variables have no gamma coefficients: C"));
    EXPECT_TRUE(Has_line_with(Run({"COR SX"}), "Failure: COR SX"));
}

// Marginal gammas of survival with age and sex, and of age with sex: R 4.2.2 on the same counts.
TEST_F(Association, CommandsReportTheFigures) {
    Copy_example("titanic");
    const auto gammas = Run({"OPE titanic", "DIS O", "GAM M"});
    EXPECT_TRUE(Has_line_with(gammas, "S       .  -0.41   0.82")) << Joined(gammas);
    ASSERT_TRUE(The_project_gammas.ready);
    EXPECT_NEAR(The_project_gammas.IJXgamma[3], 0.820578980247, 1e-12) << "S and G";
    EXPECT_NEAR(The_project_gammas.IJXgamma[12], 0.820578980247, 1e-12) << "G and S";
    EXPECT_EQ(The_project_gammas.IJXgamma[1], ProjectGammas::None) << "C is nominal";
    const auto odds = Run({"TAB SCG", "HYP SG", "MAN"});
    EXPECT_TRUE(Has_line_with(odds, "10.807    8.23  14.19      2.380  0.139")) << Joined(odds);
    EXPECT_TRUE(Has_line_with(odds, "0.774")) << Joined(odds);
    Copy_example("survey");
    Run({"OPE survey", "Y"});
    EXPECT_FALSE(The_project_gammas.ready) << "gammas of a project that is closed";
}

}  // namespace
}  // namespace tarven
