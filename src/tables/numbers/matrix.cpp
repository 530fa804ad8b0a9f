#include "tables/numbers/matrix.h"

#include <cassert>
#include <cmath>
#include <utility>

#include "shell/numbers.h"

namespace tarven {

namespace {

constexpr double zero_threshold = 1e-15;

template <class Entry>
Matrix Filled(int n, int m, Entry entry) {
    assert(n <= Matrix::Capacity && m <= Matrix::Capacity && "matrix beyond its capacity");
    Matrix result;
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= m; ++j) result(i, j) = entry(i, j);
    return result;
}

void Exchange_rows(Matrix& a, int i, int k, int n) {
    for (int j = 1; j <= n; ++j) std::swap(a(i, j), a(k, j));
}

/// The first row below k whose entry in column k counts as nonzero; 0 when there is none.
int Row_with_pivot(const Matrix& a, int k, int n) {
    for (int i = k + 1; i <= n; ++i)
        if (std::fabs(a(i, k)) > zero_threshold) return i;
    return 0;
}

}  // namespace

Matrix Sum_of_matrices(const Matrix& a, const Matrix& b, int n, int m) {
    return Filled(n, m, [&](int i, int j) { return a(i, j) + b(i, j); });
}

Matrix Difference_of_matrices(const Matrix& a, const Matrix& b, int n, int m) {
    return Filled(n, m, [&](int i, int j) { return a(i, j) - b(i, j); });
}

Matrix Scaled_matrix(const Matrix& a, int n, int m, double factor) {
    return Filled(n, m, [&](int i, int j) { return factor * a(i, j); });
}

Matrix Transposed_matrix(const Matrix& a, int n, int m) {
    return Filled(m, n, [&](int i, int j) { return a(j, i); });
}

Matrix Product_of_matrices(const Matrix& a, const Matrix& b, int n, int m, int k) {
    return Filled(n, k, [&](int i, int j) {
        Extended sum = 0;
        for (int l = 1; l <= m; ++l) sum += static_cast<Extended>(a(i, l)) * b(l, j);
        return static_cast<double>(sum);
    });
}

Matrix Correlation_of_covariance(const Matrix& covariance, int n) {
    return Filled(n, n, [&](int i, int j) {
        const double root = std::sqrt(covariance(i, i) * covariance(j, j));
        return root > 0 ? covariance(i, j) / root : 0;
    });
}

InverseRecord Inverse_of_matrix(const Matrix& a, int n) {
    InverseRecord result;
    if (n < 1) {
        result.outcome = Inversion::no_size;
        return result;
    }
    Matrix left = a;
    Matrix& right = result.inverse = Filled(n, n, [](int i, int j) { return i == j ? 1.0 : 0.0; });
    for (int k = 1; k <= n; ++k) {
        if (std::fabs(left(k, k)) <= zero_threshold) {
            const int i = Row_with_pivot(left, k, n);
            if (i == 0) {
                result.outcome = Inversion::singular;
                return result;
            }
            Exchange_rows(left, i, k, n);
            Exchange_rows(right, i, k, n);
        }
        const double pivot = left(k, k);
        for (int j = 1; j <= n; ++j) {
            left(k, j) /= pivot;
            right(k, j) /= pivot;
        }
        for (int i = 1; i <= n; ++i) {
            const double factor = -left(i, k);  // row k is divided by its pivot already
            if (i == k || std::fabs(factor) <= zero_threshold) continue;
            for (int j = 1; j <= n; ++j) {
                left(i, j) += factor * left(k, j);
                right(i, j) += factor * right(k, j);
            }
        }
    }
    return result;
}

}  // namespace tarven
