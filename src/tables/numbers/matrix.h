#pragma once

#include <vector>

namespace tarven {

/// A matrix of at most 40 by 40 reals, rows and columns counting from 1. What of it is in use is
/// told by the arguments of each operation.
struct Matrix {
    static constexpr int Capacity = 40;
    std::vector<double> entries = std::vector<double>(std::size_t{Capacity} * Capacity);

    double& operator()(int i, int j) { return entries[Offset(i, j)]; }
    double operator()(int i, int j) const { return entries[Offset(i, j)]; }
    bool operator==(const Matrix&) const = default;

  private:
    static std::size_t Offset(int i, int j) {
        return static_cast<std::size_t>(i - 1) * Capacity + static_cast<std::size_t>(j - 1);
    }
};

/// The upper left n by m part of the result; the rest is 0. Sizes are 0..40.
Matrix Sum_of_matrices(const Matrix& a, const Matrix& b, int n, int m);
Matrix Difference_of_matrices(const Matrix& a, const Matrix& b, int n, int m);
Matrix Scaled_matrix(const Matrix& a, int n, int m, double factor);
/// The m by n transpose of the n by m matrix a.
Matrix Transposed_matrix(const Matrix& a, int n, int m);
/// The n by k product of a (n by m) and b (m by k).
Matrix Product_of_matrices(const Matrix& a, const Matrix& b, int n, int m, int k);

/// Correlations of a covariance matrix: c_ij / sqrt(c_ii c_jj), 0 where that root is not positive.
Matrix Correlation_of_covariance(const Matrix& covariance, int n);

enum class Inversion { done = 0, no_size = 1, singular = 2 };

struct InverseRecord {
    Inversion outcome = Inversion::done;
    Matrix inverse;  ///< meaningful only when done
};

/// The inverse of the n by n matrix, by Gauss-Jordan elimination with rows exchanged only where a
/// pivot is 1e-15 or less in absolute value: entries below that count as zero, so a matrix of tiny
/// entries is reported as singular. n < 1 gives `no_size`. Cost: n^3.
InverseRecord Inverse_of_matrix(const Matrix& a, int n);

}  // namespace tarven
