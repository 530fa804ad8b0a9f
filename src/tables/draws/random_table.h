#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "shell/numbers.h"
#include "tables/numbers/random_stream.h"
#include "tables/table/two_way.h"

namespace tarven {

/// Random two-way tables with given margins under independence: cell after cell is drawn from its
/// conditional hypergeometric distribution. The numbers drawn and their order are fixed by
/// `Random_cell` and `Random_table`, so that a seed gives the same tables everywhere.

/// Margins of a table, as whole numbers.
struct Margins {
    std::vector<std::int64_t> row, column;  ///< [0] is the first row or column
    std::int64_t total = 0;
};

/// The margins in row R+1 and column C+1 of `expected`, each rounded to the nearest integer, ties
/// to even. Values beyond 32 bits, negative ones and nan are taken to the nearest bound.
Margins Margins_of_expected(const ExpectedTable& expected);

/// One cell: a number of successes among the r of a row that fall in a column of c, when N are left
/// altogether. The distribution function is inverted outwards from the mode-like start x0.
struct CellDraw {
    std::int64_t r = 0, c = 0, N = 0;
    std::int64_t x0 = 0, low = 0, high = 0;
};

/// The draw of a cell with r, c and N left: x0 = c/N*r rounded (the quotient first), low and high
/// its bounds. N must not be 0.
CellDraw Cell_draw(std::int64_t r, std::int64_t c, std::int64_t N);

/// p(x) of a cell: exp of nine log factorials, each taken as a 64-bit real, summed in Extended.
Extended Cell_probability(const CellDraw& cell, std::int64_t x);

/// The x taken for the uniform U: the first of x0, x0+1, x0-1, x0+2, ... (on one side only once the
/// other is exhausted) whose cumulative probability reaches U; the last one if none does. This is
/// the plain arithmetic that defines the draw. (Where the counts of a cell lie on both sides of
/// 1000 its probabilities may sum to 0.0008 less than 1; the last, most extreme value gets what is
/// missing, so Monte Carlo p-values of such tables do not fall much below that.)
std::int64_t Cell_for_uniform(const CellDraw& cell, double U);

/// Draws x by one number of the stream.
std::int64_t Random_cell(const CellDraw& cell, RandomStream& stream);

/// Draws the cells of a table with these margins, by the plain arithmetic; `table` must have the
/// shape of the margins and gets its margins too. A total of 0 gives the zero table without a draw.
/// A row of total 0 draws nothing, nor does a cell whose column is full; every other cell of rows
/// 1..R-1 and columns 1..C-1 takes one number, even if only one value is possible.
void Random_table(const Margins& margins, RandomStream& stream, TwoWayTable& table);

/// The same from an expected table.
TwoWayTable Random_table(const ExpectedTable& expected, RandomStream& stream);

}  // namespace tarven
