#include "tables/distributions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/reference_figures.h"
#include "tables/log_factorial.h"

namespace tarven {
namespace {

// Tail probabilities in 20 digits, from mpmath.
TEST(Distributions, NormalTailHasItsDigits) {
    for (const auto& row : Reference_figures("numbers.json").at("normal_upper")) {
        const double z = Real_of(row.at("z")), p = Real_of(row.at("p"));
        EXPECT_NEAR(Normal_p(z), z * z / 2 < 170 ? p : 0, 4e-15 * p + 1e-16) << z;
        if (z == 0) continue;
        EXPECT_NEAR(Normal_tail(false, z) + Normal_tail(true, z), 1, 3e-16) << z;
        EXPECT_EQ(Normal_tail(true, -z), Normal_tail(false, z)) << z;
    }
}

TEST(Distributions, Chi2TailHasItsDigits) {
    for (const auto& row : Reference_figures("numbers.json").at("chi2_upper")) {
        const int df = row.at("df").get<int>();
        const double x = Real_of(row.at("x")), p = Real_of(row.at("p"));
        const double value = Chi2_tail(df, x);
        if (df > 100)
            EXPECT_NEAR(value, p, 2e-5) << df << ' ' << x;  // cube-root approximation
        else if (x >= 170)
            EXPECT_LE(value, p) << df << ' ' << x;  // terms dropped
        else
            EXPECT_NEAR(value, p, 4e-15 * p + 1e-18) << df << ' ' << x;
    }
}

}  // namespace
}  // namespace tarven
