#pragma once

#include <span>
#include <vector>

#include "shell/numbers.h"
#include "tables/table/two_way.h"

namespace tarven {

/// The model of two-factor association (XY, XZ, YZ) of a three-way table, given as slices over Z:
/// association of X and Y, but the same in every slice.

struct XyzFit {
    std::vector<ExpectedTable> fitted;  ///< one table a slice, with its margins
    /// The factors of the fit: fitted(i, j) of slice s is cell(i, j) row[s][i-1] column[s][j-1].
    ExpectedTable cell;
    std::vector<std::vector<double>> row, column;
    int iterations = 0;
    double delta = 0;        ///< largest deviation of a fitted row or column margin
    bool converged = false;  ///< delta is at most the criterion
};

/// Iterative proportional fitting: every slice starts at n_ij+ / slices; each iteration scales each
/// slice to its row margins, then to its column margins, then all slices to the summed XY margin.
/// It stops when no row or column margin deviates by more than `criterion`, or after
/// `max_iterations`. The slices have one shape and margins. Cells of an empty margin become 0.
/// Deming & Stephan (1940), Ann. Math. Stat. 11, 427-444.
XyzFit fit_xyz(std::span<const TwoWayTable> slices, double criterion = 0.001,
               int max_iterations = 100);

/// 2 sum n ln(m2/m1) over the cells with n, m2 and m1 positive: the likelihood ratio of the fit m2
/// against the expected counts m1 of conditional independence, slice by slice, row by row.
Extended Two_factor_lr(std::span<const TwoWayTable> slices,
                       std::span<const ExpectedTable> independence,
                       std::span<const ExpectedTable> fitted);

/// The same ratio at the fit, where it is a sum over the margins XY, XZ and YZ of the logarithms of
/// the factors. It reads nothing but the margins of the slices, so that slices with equal margins
/// have the same value to the last bit: random tables are compared with the observed ones by it.
/// From Two_factor_lr it differs by the error of the fit, of second order.
Extended Two_factor_lr_of_margins(std::span<const TwoWayTable> slices, const XyzFit& fit);

/// The test of conditional independence of X and Y against two-factor association: strong where the
/// association is alike in all slices, since it spends its degrees of freedom on that alone.
struct PartialTest {
    Extended lr = 0;
    Extended lr_of_margins = 0;  ///< what random tables are compared with
    int df = 0;    ///< (R'-1)(C'-1), non-empty rows and columns of the summed XY margin
    double p = 1;  ///< asymptotic; 1 when df is 0
    int iterations = 0;
    bool converged = false;
};
PartialTest Two_factor_test(std::span<const TwoWayTable> slices,
                            std::span<const ExpectedTable> independence);

}  // namespace tarven
