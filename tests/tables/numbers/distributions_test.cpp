#include "tables/numbers/distributions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/reference_figures.h"
#include "tables/numbers/log_factorial.h"

namespace tarven {
namespace {

// Tail probabilities in 20 digits, from mpmath.
TEST(Distributions, NormalTailHasItsDigits) {
    for (const auto& row : Reference_figures("numbers.json", "normal_upper")) {
        const double z = Real_of(row.at("z")), p = Real_of(row.at("p"));
        EXPECT_NEAR(Normal_p(z), z * z / 2 < 170 ? p : 0, 4e-15 * p + 1e-16) << z;
        if (z == 0) continue;
        EXPECT_NEAR(Normal_tail(false, z) + Normal_tail(true, z), 1, 3e-16) << z;
        EXPECT_EQ(Normal_tail(true, -z), Normal_tail(false, z)) << z;
    }
}

TEST(Distributions, Chi2TailHasItsDigits) {
    for (const auto& row : Reference_figures("numbers.json", "chi2_upper")) {
        const int df = row.at("df").get<int>();
        const double x = Real_of(row.at("x")), p = Real_of(row.at("p"));
        const double value = Chi2_tail(df, x);
        if (df > 100) {  // the cube-root approximation, and how far it lies from the truth
            const double approximation = Real_of(row.at("p_rule"));
            EXPECT_NEAR(value, approximation, 1e-14 * approximation + 1e-18) << df << ' ' << x;
            EXPECT_NEAR(value, p, 0.012 / df) << df << ' ' << x;
        } else if (x >= 170)
            EXPECT_LE(value, p) << df << ' ' << x;  // terms dropped
        else
            EXPECT_NEAR(value, p, 4e-15 * p + 1e-18) << df << ' ' << x;
    }
}

TEST(Distributions, EdgesOfTheTails) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double x : {-1.0, 0.0, 1.0, 1e9, nan}) EXPECT_EQ(Chi2_tail(0, x), 1);
    EXPECT_EQ(Chi2_tail(5, -1), 1);
    EXPECT_EQ(Chi2_tail(100, 170), 0);  // terms dropped
    EXPECT_EQ(Chi2_tail(4, infinity), 0);
    EXPECT_EQ(Chi2_tail(400, infinity), 0);
    EXPECT_EQ(Normal_p(100), 0);
    EXPECT_EQ(Normal_p(-100), 0);  // both sides
    EXPECT_EQ(Normal_p(-99), 1);
    EXPECT_GT(Normal_p(-1), 0.5);
    EXPECT_EQ(Normal_tail(true, nan), 0.5);
    EXPECT_EQ(Binomial_tail(10, 0, 0.3), 1);
    EXPECT_EQ(Binomial_tail(10, 11, 0.3), 0);
    EXPECT_EQ(Beta_tail(3, 5, nan), 0);
    EXPECT_EQ(Beta_tail(3, 5, 1), 1);
}

TEST(Distributions, BetaAndBinomialTailsHaveTheirDigits) {
    for (const auto& row : Reference_figures("numbers.json", "beta")) {
        const double p = Real_of(row.at("p"));
        EXPECT_NEAR(Beta_tail(row.at("a").get<int>(), row.at("b").get<int>(), Real_of(row.at("x"))),
                    p, 2e-15 + 1e-11 * (p < 1e-3 ? 0 : p))
            << row;
    }
    for (const auto& row : Reference_figures("numbers.json", "binomial_upper")) {
        const double p = Real_of(row.at("tail"));
        EXPECT_NEAR(
            Binomial_tail(row.at("n").get<int>(), row.at("k").get<int>(), Real_of(row.at("p"))), p,
            2e-15)
            << row;
    }
}

TEST(LogFactorial, FollowsTheTableAndThenTheFormula) {
    for (const auto& row : Reference_figures("numbers.json", "log_factorial")) {
        const auto n = row.at("n").get<std::int64_t>();
        const double rule = Real_of(row.at("rule"));
        EXPECT_NEAR(static_cast<double>(Log_factorial(n)), rule, 2e-15 * rule) << n;
    }
    for (const auto& row : Reference_figures("numbers.json", "log_gamma_half")) {
        const double rule = Real_of(row.at("rule"));
        const auto n = row.at("n").get<std::int64_t>();
        EXPECT_NEAR(static_cast<double>(Log_gamma_half(n)), rule, 2e-15 * std::fabs(rule)) << n;
    }
    EXPECT_EQ(Log_factorial(-5), 0);
    EXPECT_EQ(Log_binomial(3, 4), 0);
    EXPECT_NEAR(static_cast<double>(std::exp(Log_binomial(49, 6))), 13983816, 1e-6);
    // The step at 1001 is larger than ln 1001 by the odd constant of the formula.
    const auto step = static_cast<double>(Log_factorial(1001) - Log_factorial(1000));
    EXPECT_NEAR(step - std::log(1001.0), 0.8155996e-3 - 1 / (24.0 * 1001), 1e-9);
}

}  // namespace
}  // namespace tarven
