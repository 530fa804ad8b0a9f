#include "tables/numbers/matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tarven {
namespace {

TEST(Matrix, InverseTimesMatrixIsTheIdentity) {
    std::mt19937 random(1);
    std::normal_distribution<> entry;
    for (const int n : {1, 2, 3, 7, 40}) {
        Matrix a;
        for (int i = 1; i <= n; ++i)
            for (int j = 1; j <= n; ++j) a(i, j) = i == j && i < n ? 0 : entry(random);
        if (n == 1) a(1, 1) = 4;
        const InverseRecord inverse = Inverse_of_matrix(a, n);
        ASSERT_EQ(inverse.outcome, Inversion::done);
        const Matrix product = Product_of_matrices(a, inverse.inverse, n, n, n);
        for (int i = 1; i <= n; ++i)
            for (int j = 1; j <= n; ++j) EXPECT_NEAR(product(i, j), i == j, 1e-9) << n;
    }
}

TEST(Matrix, InversionReportsByCode) {
    Matrix a;
    EXPECT_EQ(Inverse_of_matrix(a, 0).outcome, Inversion::no_size);
    EXPECT_EQ(Inverse_of_matrix(a, 1).outcome, Inversion::singular);
    a(1, 1) = 1e-15;  // counts as zero
    EXPECT_EQ(Inverse_of_matrix(a, 1).outcome, Inversion::singular);
    a(1, 1) = 1, a(1, 2) = 2, a(2, 1) = 2, a(2, 2) = 4;
    EXPECT_EQ(Inverse_of_matrix(a, 2).outcome, Inversion::singular);
    a(2, 2) = 4 + 1e-12;
    EXPECT_EQ(Inverse_of_matrix(a, 2).outcome, Inversion::done);
}

TEST(Matrix, CorrelationIsZeroWithoutVariance) {
    Matrix c;
    c(1, 1) = 4, c(2, 2) = 9, c(1, 2) = c(2, 1) = 3;
    const Matrix r = Correlation_of_covariance(c, 3);
    EXPECT_EQ(r(1, 2), 0.5);
    EXPECT_EQ(r(1, 1), 1);
    EXPECT_EQ(r(1, 3), 0);
    EXPECT_EQ(r(3, 3), 0);
}

TEST(Matrix, PlainOperations) {
    Matrix a, b;
    a(1, 1) = 1, a(1, 2) = 2, a(1, 3) = 3;
    b(1, 1) = 4, b(2, 1) = 5, b(3, 1) = 6;
    EXPECT_EQ(Product_of_matrices(a, b, 1, 3, 1)(1, 1), 32);
    EXPECT_EQ(Transposed_matrix(a, 1, 3)(3, 1), 3);
    EXPECT_EQ(Sum_of_matrices(a, Scaled_matrix(a, 1, 3, -1), 1, 3), Matrix{});
    EXPECT_EQ(Difference_of_matrices(a, a, 1, 3), Matrix{});
}

}  // namespace
}  // namespace tarven
