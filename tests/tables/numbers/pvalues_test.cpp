// P-values of typed statistics, against figures of R 4.2.2 (pchisq, pnorm, pbinom, upper tails).

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "shell/session.h"
#include "support/session.h"
#include "tables/numbers/binomial_tails.h"

namespace tarven {
namespace {

TEST(BinomialTails, AgreeWithPublishedSoftware) {
    struct Row {
        std::int64_t n, k;
        double p, upper, lower;
    };
    const Row rows[] = {
        {10, 8, 0.5, 0.0546875, 0.9892578125},
        {10, 2, 0.9, 0.9999999909, 3.73599999999999e-07},
        {1000, 600, 0.5, 1.36423207803301e-10, 0.999999999909916},
        {100000, 50500, 0.5, 0.000791179939425798, 0.999225820184577},
        {1000000, 100, 0.00001, 5.37698452563976e-63, 1},
        {2000000000, 1000100000, 0.5, 3.87251316719054e-06, 0.999996128296824},
        {2000000000, 999900000, 0.5, 0.999996128296824, 3.87251316719054e-06},
        {50, 50, 0.001, 9.99999999999991e-151, 1},
        {500, 250, 0.4999, 0.516048918096982, 0.519615370811688},
    };
    for (const Row& row : rows) {
        const BinomialTails tails = Binomial_tails(row.n, row.k, row.p);
        EXPECT_NEAR(tails.upper / row.upper, 1, 1e-8) << row.n << " " << row.k;
        EXPECT_NEAR(tails.lower / row.lower, 1, 1e-8) << row.n << " " << row.k;
    }
}

TEST(BinomialTails, AddUpAndKnowTheirEnds) {
    std::mt19937 random(2);
    for (int k = 0; k < 200; ++k) {
        const std::int64_t n = 1 + random() % 300, x = random() % (n + 1);
        const double p = static_cast<double>(random() % 1001) / 1000.0;
        const BinomialTails tails = Binomial_tails(n, x, p);
        const BinomialTails failures = Binomial_tails(n, n - x, 1 - p);
        EXPECT_NEAR(tails.upper, failures.lower, 1e-13) << n << " " << x << " " << p;
        const double above = x == n ? 0 : Binomial_tails(n, x + 1, p).upper;
        EXPECT_NEAR(tails.lower + above, 1, 1e-14) << n << " " << x << " " << p;
    }
    EXPECT_EQ(Binomial_tails(10, 10, 0).upper, 0);
    EXPECT_EQ(Binomial_tails(10, 0, 0).upper, 1);
    EXPECT_EQ(Binomial_tails(10, 10, 1).upper, 1);
    EXPECT_EQ(Binomial_tails(10, 9, 1).lower, 0);
}

struct Pvalues : SessionTest {};

TEST_F(Pvalues, OfAStatisticAreToldOrRefused) {
    const std::pair<const char*, const char*> rows[] = {
        {"PVA CHI 5.99 2", "Chi square = 5.99  df = 2   p = 0.0500"},
        {"PVA CHI 3.84 1", "Chi square = 3.84  df = 1   p = 0.0500"},
        {"PVA CHI 18.3 10", "Chi square = 18.3  df = 10   p = 0.0501"},
        {"PVA CHI 60 100", "Chi square = 60  df = 100   p = 0.9995"},
        {"PVA CHI 250 200", "Chi square = 250  df = 200   p = 0.0094"},
        {"PVA CHI 400 100", "Chi square = 400  df = 100   p < 0.0001"},
        {"pva normal 1.96", "Normal z = 1.96   p (1-sided) = 0.0250   p (2-sided) = 0.0500"},
        {"pva normal -1.645", "Normal z = -1.645   p (1-sided) = 0.0500   p (2-sided) = 0.1000"},
        {"pva normal 0", "Normal z = 0   p (1-sided) = 0.5000   p (2-sided) = 1.0000"},
        {"pva normal +2.5", "Normal z = +2.5   p (1-sided) = 0.0062   p (2-sided) = 0.0124"},
        {"pva normal 4.5", "Normal z = 4.5   p (1-sided) < 0.0001   p (2-sided) < 0.0001"},
        {"pva normal 200", "Normal z = 200   p (1-sided) < 0.0001   p (2-sided) < 0.0001"},
        {"PVA BIN 8 10 0.5", "Binomial n = 10  p = 0.5   P(X >= 8) = 0.0547   P(X <= 8) = 0.9893"},
        {"PVA BIN 600 1000 .5",
         "Binomial n = 1000  p = .5   P(X >= 600) < 0.0001   P(X <= 600) = 1.0000"},
        {"PVA BIN 3 50 0.2", "Binomial n = 50  p = 0.2   P(X >= 3) = 0.9987   P(X <= 3) = 0.0057"},
        {"PVA CHI 0 1", "Chi square = 0  df = 1   p = 1.0000"},
        {"PVA BIN 0 5 0", "Binomial n = 5  p = 0   P(X >= 0) = 1.0000   P(X <= 0) = 1.0000"},
        {"PVA", "PVALUES needs a distribution: CHI x df, NOR z or BIN x n p"},
        {"PVA GAM 1", "PVALUES needs a distribution: CHI x df, NOR z or BIN x n p"},
        {"PVA CHI 3", "PVALUES CHI needs x and df: PVA CHI x df"},
        {"PVA CHI -3 1", "A chi square is not negative: -3"},
        {"PVA CHI 3 -1", "df is a whole number of at least 1: -1"},
        {"PVA CHI 3 0", "df is a whole number of at least 1: 0"},
        {"PVA CHI 3 1.5", "df is a whole number of at least 1: 1.5"},
        {"PVA CHI 3,5 1", "3,5 is not a number"},
        {"PVA CHI 3 99999999999", "df is a whole number of at least 1: 99999999999"},
        {"PVA NOR", "PVALUES NOR needs z alone: PVA NOR z"},
        {"PVA NOR 1E5", "1E5 is not a number"},
        {"PVA BIN 5 4 0.5", "x = 5 is above n = 4"},
        {"PVA BIN -1 4 0.5", "x is a whole number of at least 0: -1"},
        {"PVA BIN 0 0 0.5", "n is a whole number of at least 1: 0"},
        {"PVA BIN 1 4 1.5", "p lies between 0 and 1: 1.5"},
        {"PVA BIN 1 4 -0.5", "p lies between 0 and 1: -0.5"},
        {"PVA BIN 1 4", "PVALUES BIN needs x, n and p: PVA BIN x n p"},
    };
    for (const auto& [line, answer] : rows)
        EXPECT_EQ(Run({line}), std::vector<std::string>{answer}) << line;
}

}  // namespace
}  // namespace tarven
