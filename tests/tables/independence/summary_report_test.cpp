#include "tables/independence/summary_report.h"

#include <gtest/gtest.h>

#include "tables/independence/shown_p_values.h"
#include "tables/numbers/score_interval.h"

namespace tarven {
namespace {

SummaryRow Row(float p, float p_gamma, float gamma, float nsim = 0) {
    SummaryRow row{.label = "A&B|C", .has_gamma = true, .cases = 2201};
    row.result = {.Statistic = 20.955F,
                  .Df = 4,
                  .PAsymp = p,
                  .PExact = p,
                  .Gamma = gamma,
                  .PGammaAsymp = p_gamma,
                  .PGammaExact = p_gamma,
                  .Nsim = nsim,
                  .PGammaExact2 = 2 * p_gamma};
    return row;
}

TestSettings Exact(bool two_sided = false) {
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 1000;
    settings.TwoSided = two_sided;
    return settings;
}

std::string Text(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

TEST(TestReports, TheSummaryKeepsItsColumns) {
    SummaryRow without = Row(0.2F, 1, 0);
    without.has_gamma = false;
    SummaryRow untested = Row(2, 2, 0);
    untested.result = Untested_result();
    EXPECT_EQ(Text(exa_summary({Row(0.009F, 0.05F, -0.4F), without, untested}, {})),
              "                         p-values   p-values (1-sided)\n"
              "Hypothesis         df asymp exact Gamma asymp exact nsim     n\n"
              "A&B|C        21.0   4 0.009       -0.40 0.050          0  2201 xx - \n"
              "A&B|C        21.0   4 0.200                            0  2201      \n"
              "A&B|C        No tests \n"
              "Significance of X\xB2        xx : p < 0.01    x : 0.01 <= P <= 0.05\n"
              "                Gamma  ++/-- : p < 0.01  +/- : 0.01 <= p <= 0.05\n");
}

TEST(TestReports, TheGlobalSummaryAddsTheIntervalAndTheLimits) {
    EXPECT_EQ(
        Text(exa_summary1({Row(0.03F, 0.001F, 0.4F, 1000)}, {.fdr05 = 0.05, .fdr01 = 0.005},
                          Exact(true))),
        "                         p-values   p-values (2-sided)    95% confidence\n"
        "Hypothesis         df asymp exact  Gamma  asymp exact      interval   nsim     n\n"
        "A&B|C        21.0   4 0.030 0.030   0.40  0.002 0.002 [0.021 - 0.043] 1000  2201 x  ++\n"
        "Benjamini Hochberg rejects if p < 0.0500 for FDR = 0.05\n"
        "                          and p < 0.0050 for FDR = 0.01\n"
        "Significance of X\xB2        xx : FDR = 0.01    x : FDR = 0.05\n"
        "                Gamma  ++/-- : FDR = 0.01  +/- : FDR = 0.05\n");
}

TEST(TestReports, ASingleResultHasAnIntervalForEachExactP) {
    EXPECT_EQ(Text(single_exa_summary(Row(0.03F, 0.25F, 0.4F, 1000), Exact())),
              "****  Summary of results  ****\n"
              "NSIM = 1000 tables generated for exact p-values\n"
              "                         p-values                 p-values (1-sided)\n"
              "Hypothesis         df asymp exact 99% conf.int. Gamma asymp exact 99% conf.int. nsim"
              "     n\n"
              "A&B|C        21.0   4 0.030 0.030 0.019 - 0.047  0.40 0.250 0.250 0.216 - 0.287 1000"
              "  2201 x    \n");
}

TEST(TestReports, MarksChangeAtTheLevelsThemselves) {
    const auto marks = [](float p) {
        const std::string line = brief_single_exa_summary(Row(p, p, -0.1F), {});
        return line.substr(line.size() - 6);
    };
    EXPECT_EQ(marks(0.00999F), " xx --");
    EXPECT_EQ(marks(0.01F), " x  - ");  // 10 of 1000
    EXPECT_EQ(marks(0.05F), " x  - ");
    EXPECT_EQ(marks(0.0501F), "      ");
    EXPECT_EQ(Shown_gamma(Row(1, 1, 0).result, Exact(true)).PAsymp, 1);
}

// Wilson limits of 5 in 50 by prop.test(5, 50, correct = FALSE) of R 4.2.2: 0.04347 and 0.21360.
TEST(ScoreInterval, AgreesWithWilson) {
    EXPECT_NEAR(Score_interval(0.1, 50, 1.959963984540).lower, 0.0434758, 1e-6);
    EXPECT_NEAR(Score_interval(0.1, 50, 1.959963984540).upper, 0.2136023, 1e-6);
    EXPECT_EQ(Score_interval(0, 1000, Z99).lower, 0);
    EXPECT_GT(Score_interval(0, 1000, Z99).upper, 0.005);
    EXPECT_EQ(Score_interval(0.3, 0, Z99).upper, 1);
}

TEST(TestReports, LocalResultsNameVariableAndCategories) {
    LocalHypothesis h;
    h.X = {.label = 'X'};
    h.Y = {.label = 'Y'};
    h.Z = {{.label = 'G', .DIM = 2, .name = "Sex", .categories = {"male", "female"}}};
    LocalResult result;
    result.has_gamma = true;
    result.categories = {{CategoryResult{.cases = 1731,
                                         .Statistic = 37.988F,
                                         .Df = 3,
                                         .PAsymp = 0.00004F,
                                         .Gamma = -0.25F,
                                         .PGammaAsymp = 0.0316F},
                          CategoryResult{}}};
    result.six_way.negative[2] = 12;
    EXPECT_EQ(Text(Local_result_lines(h, result, {})),
              "\n** Local testresults for strata defined by Sex (G) **\n"
              "                X\xB2   df  asymp  exact  Gamma  asymp  exact           n\n"
              " 1:male      37.99    3 0.0000         -0.25 0.0316               1731\n"
              " 2:female     0.00    0 1.0000          0.00 1.0000                  0\n"
              "\n  gamma    p >0.05      0.01<p<=0.05      p<0.01     \n"
              "--------------------------------------------------------------\n"
              "Negative       0              0             12       \n"
              "Positive       0              0              0       \n");
    EXPECT_EQ(Distribution_line(3, h), "Table 3. The XY|G distribution.");
}

TEST(SummaryReport, WhatOutgrowsItsColumnStaysApart) {
    TestResult r{.Statistic = 123456.7F,
                 .Df = 12345,
                 .PAsymp = 0.5F,
                 .PExact = 0.5F,
                 .Gamma = -0.25F,
                 .PGammaAsymp = 0.1F,
                 .PGammaExact = 0.1F,
                 .Nsim = 1000000};
    const SummaryRow row{.label = "A&B|CDEFGHI", .result = r, .has_gamma = true, .cases = 12345678};
    TestSettings exact;
    exact.ExactTests = true;
    const std::string words = "A&B|CDEFGHI 123456.7 12345 0.500 0.500 -0.25 0.100 0.100 ";
    const auto squeezed = [](const std::string& line) {
        std::string text;
        for (const char c : line)
            if (c != ' ' || (!text.empty() && text.back() != ' ')) text += c;
        return text;
    };
    EXPECT_EQ(squeezed(exa_summary({row}, exact)[2]), words + "1000000 12345678 ");
    EXPECT_EQ(squeezed(exa_summary1({row}, {}, exact)[2]),
              words + "[0.499 - 0.501] 1000000 12345678 ");
    EXPECT_EQ(squeezed(brief_single_exa_summary(row, exact)),
              "A&B|CDEFGHI 123456.7 12345 0.500 0.500 0.499 - 0.501 -0.25 0.100 0.100 0.099 - "
              "0.101 1000000 12345678 ");
}

}  // namespace
}  // namespace tarven
