#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "shell/numbers.h"
#include "shell/settings.h"

namespace tarven {

/// A two-way table of `rows` by `columns` cells with its margins: row rows+1 holds the column
/// totals, column columns+1 the row totals, the corner the grand total. Rows and columns count from
/// 1. The memory is one block of (rows+1)(columns+1) cells, whatever the limit of categories, so a
/// list of thousands of 2x2 strata stays small; Shape keeps the block of a table that is reused.
template <class Cell>
struct TwoWay {
    int rows = 0;
    int columns = 0;
    std::vector<Cell> cells = std::vector<Cell>(1);  ///< row by row, margins included

    TwoWay() = default;
    TwoWay(int R, int C) { Shape(R, C); }

    /// Makes it an R by C table of zeros.
    void Shape(int R, int C) {
        assert(R >= 0 && C >= 0 && "a table has no negative size");
        rows = R;
        columns = C;
        cells.assign(static_cast<std::size_t>(R + 1) * static_cast<std::size_t>(C + 1), Cell{});
    }

    /// Cell of row i and column j; i = rows+1 and j = columns+1 are the margins.
    Cell& operator()(int i, int j) { return cells[Offset(i, j)]; }
    const Cell& operator()(int i, int j) const { return cells[Offset(i, j)]; }

    /// The first cell of row i.
    Cell* Row(int i) { return cells.data() + Offset(i, 1); }
    const Cell* Row(int i) const { return cells.data() + Offset(i, 1); }

    const Cell& Total() const { return cells.back(); }

    bool operator==(const TwoWay&) const = default;

  private:
    std::size_t Offset(int i, int j) const {
        assert(i >= 1 && i <= rows + 1 && j >= 1 && j <= columns + 1 && "cell outside the table");
        return static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(columns + 1) +
               static_cast<std::size_t>(j - 1);
    }
};

using TwoWayTable = TwoWay<std::int32_t>;  ///< counts
using ExpectedTable = TwoWay<double>;      ///< expected or fitted counts, margins included

/// Fills the margins from the cells. The total must fit 32 bits.
void Fill_margins(TwoWayTable& counts);
void Fill_margins(ExpectedTable& expected);

/// Expected counts under independence with the margins of `counts`. All zero when the total is 0.
/// The two differ in the last bit, by which factor is divided by the total first, and the counts of
/// a Monte Carlo test turn on that bit where tables tie: a table that stands alone takes the column
/// total's share, n_i+ (n_+j / n), a slice of a list of strata the row total's, (n_i+ / n) n_+j.
ExpectedTable Expected_under_independence(const TwoWayTable& counts);
ExpectedTable Expected_of_slice(const TwoWayTable& counts);

/// Which of the statistics, with the constants of the power divergence.
struct StatisticRule {
    Statistic statistic = Statistic::pearson;
    double lambda = 2.0 / 3.0;
    Extended factor = 1.8L;  ///< 2 / (lambda (lambda + 1))
};

StatisticRule Statistic_rule(const TestSettings& settings);

/// The contribution of one cell with n cases and e expected before the final factor: (n-e)^2/e for
/// Pearson; n ln(n/e) for the deviance and n ((n/e)^lambda - 1) for the power divergence, which are
/// 0 for an empty cell. 0 when e is not positive.
Extended Statistic_term(std::int32_t n, double e, const StatisticRule& rule);

/// What the sum of the terms is multiplied by: 1, 2, or the factor of the power divergence.
Extended Statistic_factor(const StatisticRule& rule);

/// A chi-square-type statistic of one table.
struct TwoWayStatistic {
    Extended statistic = 0;  ///< kept to 64 bits of mantissa: Monte Carlo tests compare it by >=
    int df = 0;              ///< (rows with cases - 1)(columns with cases - 1)
    double p = 1;            ///< upper tail of chi-square; 1 when df is 0
};

/// The statistic of `counts` against `expected`, summed row by row; margins of `counts` are read
/// for the degrees of freedom: empty rows and columns do not count. A total of 0 gives the start
/// values. Cressie & Read (1984), JRSS B 46, 440-464, for the family.
TwoWayStatistic Two_way_statistic(const TwoWayTable& counts, const ExpectedTable& expected,
                                  const StatisticRule& rule);

/// Only the sum; margins of `counts` are not read. The one arithmetic for the observed table and
/// for random tables, since ties between them count.
Extended Sum_of_statistic(const TwoWayTable& counts, const ExpectedTable& expected,
                          const StatisticRule& rule);

/// (rows with a positive total - 1)(columns with a positive total - 1); 0 for an empty table.
int Degrees_of_freedom(const TwoWayTable& counts);

}  // namespace tarven
