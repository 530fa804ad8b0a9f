#include "tables/independence/fit_xyz.h"

#include <algorithm>
#include <cmath>

#include "tables/numbers/distributions.h"

namespace tarven {

namespace {

TwoWayTable Summed_slices(std::span<const TwoWayTable> slices) {
    TwoWayTable sum(slices.front().rows, slices.front().columns);
    for (const TwoWayTable& slice : slices)
        for (std::size_t c = 0; c < sum.cells.size(); ++c) sum.cells[c] += slice.cells[c];
    return sum;
}

double Ratio(double observed, double fitted) {
    return fitted > 0 ? observed / fitted : 0;
}

void Scale_rows(ExpectedTable& m, const TwoWayTable& n, std::vector<double>& factor) {
    for (int i = 1; i <= m.rows; ++i) {
        double sum = 0;
        for (int j = 1; j <= m.columns; ++j) sum += m(i, j);
        const double ratio = Ratio(n(i, n.columns + 1), sum);
        factor[static_cast<std::size_t>(i - 1)] *= ratio;
        for (int j = 1; j <= m.columns; ++j) m(i, j) *= ratio;
    }
}

void Scale_columns(ExpectedTable& m, const TwoWayTable& n, std::vector<double>& factor) {
    for (int j = 1; j <= m.columns; ++j) {
        double sum = 0;
        for (int i = 1; i <= m.rows; ++i) sum += m(i, j);
        const double ratio = Ratio(n(n.rows + 1, j), sum);
        factor[static_cast<std::size_t>(j - 1)] *= ratio;
        for (int i = 1; i <= m.rows; ++i) m(i, j) *= ratio;
    }
}

void Scale_cells(std::vector<ExpectedTable>& fitted, const TwoWayTable& xy, ExpectedTable& factor) {
    for (int i = 1; i <= xy.rows; ++i)
        for (int j = 1; j <= xy.columns; ++j) {
            double sum = 0;
            for (const ExpectedTable& m : fitted) sum += m(i, j);
            const double ratio = Ratio(xy(i, j), sum);
            for (ExpectedTable& m : fitted) m(i, j) *= ratio;
            factor(i, j) *= ratio;
        }
}

double Largest_deviation(const ExpectedTable& m, const TwoWayTable& n) {
    double largest = 0;
    for (int i = 1; i <= m.rows; ++i)
        largest = std::max(largest, std::fabs(m(i, m.columns + 1) - n(i, n.columns + 1)));
    for (int j = 1; j <= m.columns; ++j)
        largest = std::max(largest, std::fabs(m(m.rows + 1, j) - n(n.rows + 1, j)));
    return largest;
}

}  // namespace

XyzFit fit_xyz(std::span<const TwoWayTable> slices, double criterion, int max_iterations) {
    XyzFit fit;
    if (slices.empty()) return fit;
    const TwoWayTable xy = Summed_slices(slices);
    ExpectedTable start(xy.rows, xy.columns);
    for (int i = 1; i <= xy.rows; ++i)
        for (int j = 1; j <= xy.columns; ++j)
            start(i, j) = xy(i, j) / static_cast<double>(slices.size());
    fit.fitted.assign(slices.size(), start);
    fit.cell = start;
    fit.row.assign(slices.size(), std::vector<double>(static_cast<std::size_t>(xy.rows), 1));
    fit.column.assign(slices.size(), std::vector<double>(static_cast<std::size_t>(xy.columns), 1));
    while (fit.iterations < max_iterations && !fit.converged) {
        ++fit.iterations;
        for (std::size_t s = 0; s < slices.size(); ++s) {
            Scale_rows(fit.fitted[s], slices[s], fit.row[s]);
            Scale_columns(fit.fitted[s], slices[s], fit.column[s]);
        }
        Scale_cells(fit.fitted, xy, fit.cell);
        fit.delta = 0;
        for (std::size_t s = 0; s < slices.size(); ++s) {
            Fill_margins(fit.fitted[s]);
            fit.delta = std::max(fit.delta, Largest_deviation(fit.fitted[s], slices[s]));
        }
        fit.converged = fit.delta <= criterion;
    }
    return fit;
}

Extended Two_factor_lr(std::span<const TwoWayTable> slices,
                       std::span<const ExpectedTable> independence,
                       std::span<const ExpectedTable> fitted) {
    Extended sum = 0;
    for (std::size_t s = 0; s < slices.size(); ++s)
        for (int i = 1; i <= slices[s].rows; ++i)
            for (int j = 1; j <= slices[s].columns; ++j) {
                const double m1 = independence[s](i, j);
                const double m2 = fitted[s](i, j);
                const std::int32_t n = slices[s](i, j);
                if (n > 0 && m2 > 0 && m1 > 0) sum += n * std::log(Extended{m2} / m1);
            }
    return 2 * sum;
}

namespace {

/// n ln(x), 0 for an empty margin.
Extended Times_log(std::int32_t n, double x) {
    return n > 0 && x > 0 ? n * std::log(Extended{x}) : Extended{0};
}

}  // namespace

Extended Two_factor_lr_of_margins(std::span<const TwoWayTable> slices, const XyzFit& fit) {
    if (slices.empty()) return 0;
    const TwoWayTable xy = Summed_slices(slices);
    Extended sum = 0;
    for (int i = 1; i <= xy.rows; ++i)
        for (int j = 1; j <= xy.columns; ++j) sum += Times_log(xy(i, j), fit.cell(i, j));
    for (std::size_t s = 0; s < slices.size(); ++s) {
        const TwoWayTable& n = slices[s];
        // ln of the expected counts of independence, n_i+ n_+j / n, is a sum over margins as well.
        for (int i = 1; i <= n.rows; ++i) {
            const std::int32_t margin = n(i, n.columns + 1);
            sum += Times_log(margin, fit.row[s][static_cast<std::size_t>(i - 1)]) -
                   Times_log(margin, margin);
        }
        for (int j = 1; j <= n.columns; ++j) {
            const std::int32_t margin = n(n.rows + 1, j);
            sum += Times_log(margin, fit.column[s][static_cast<std::size_t>(j - 1)]) -
                   Times_log(margin, margin);
        }
        sum += Times_log(n.Total(), n.Total());
    }
    return 2 * sum;
}

PartialTest Two_factor_test(std::span<const TwoWayTable> slices,
                            std::span<const ExpectedTable> independence) {
    PartialTest test;
    if (slices.empty()) return test;
    const XyzFit fit = fit_xyz(slices);
    test.iterations = fit.iterations;
    test.converged = fit.converged;
    test.lr = Two_factor_lr(slices, independence, fit.fitted);
    test.lr_of_margins = Two_factor_lr_of_margins(slices, fit);
    test.df = Degrees_of_freedom(Summed_slices(slices));
    test.p = Chi2_tail(test.df, static_cast<double>(test.lr));
    return test;
}

}  // namespace tarven
