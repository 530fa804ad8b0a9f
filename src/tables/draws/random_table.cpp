#include "tables/draws/random_table.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "tables/numbers/log_factorial.h"

namespace tarven {

namespace {

std::int64_t Whole_margin(double margin) {
    constexpr double top = 2147483647.0;
    if (!(margin > 0)) return 0;
    return Round_to_even(std::min(margin, top));
}

Extended Stored_log_factorial(std::int64_t n) {
    return static_cast<double>(Log_factorial(n));
}

}  // namespace

Margins Margins_of_expected(const ExpectedTable& expected) {
    const int R = expected.rows, C = expected.columns;
    Margins margins;
    for (int i = 1; i <= R; ++i) margins.row.push_back(Whole_margin(expected(i, C + 1)));
    for (int j = 1; j <= C; ++j) margins.column.push_back(Whole_margin(expected(R + 1, j)));
    margins.total = Whole_margin(expected(R + 1, C + 1));
    return margins;
}

CellDraw Cell_draw(std::int64_t r, std::int64_t c, std::int64_t N) {
    assert(N != 0 && "nothing is left to draw from");
    const double share = static_cast<double>(c) / static_cast<double>(N);
    return {r,
            c,
            N,
            Round_to_even(share * static_cast<double>(r)),
            std::max<std::int64_t>(0, r + c - N),
            std::min(r, c)};
}

Extended Cell_probability(const CellDraw& cell, std::int64_t x) {
    const auto [r, c, N, x0, low, high] = cell;
    const Extended exponent =
        Stored_log_factorial(r) + Stored_log_factorial(N - r) + Stored_log_factorial(c) +
        Stored_log_factorial(N - c) - Stored_log_factorial(x) - Stored_log_factorial(r - x) -
        Stored_log_factorial(c - x) - Stored_log_factorial(N - r - c + x) - Stored_log_factorial(N);
    return std::exp(exponent);
}

std::int64_t Cell_for_uniform(const CellDraw& cell, double U) {
    const Extended u = U;
    std::int64_t x = cell.x0;
    Extended sum = Cell_probability(cell, x);
    if (u <= sum) return x;
    const std::int64_t below = cell.x0 - cell.low, above = cell.high - cell.x0;
    const std::int64_t both = std::min(below, above);
    for (std::int64_t k = 1; k <= both; ++k) {
        x = cell.x0 + k;
        sum += Cell_probability(cell, x);
        if (u <= sum) return x;
        x = cell.x0 - k;
        sum += Cell_probability(cell, x);
        if (u <= sum) return x;
    }
    const bool upwards = below <= above;
    for (std::int64_t k = std::max<std::int64_t>(both, 0) + 1; k <= std::max(below, above); ++k) {
        x = upwards ? cell.x0 + k : cell.x0 - k;
        sum += Cell_probability(cell, x);
        if (u <= sum) return x;
    }
    return x;
}

std::int64_t Random_cell(const CellDraw& cell, RandomStream& stream) {
    return Cell_for_uniform(cell, Random_real(stream));
}

void Random_table(const Margins& margins, RandomStream& stream, TwoWayTable& table) {
    const int R = static_cast<int>(margins.row.size());
    const int C = static_cast<int>(margins.column.size());
    assert(table.rows == R && table.columns == C && "the table has another shape than its margins");
    std::fill(table.cells.begin(), table.cells.end(), 0);
    if (margins.total == 0 || R == 0 || C == 0) return;
    std::vector<std::int64_t> left = margins.column;  // what each column still has to get
    std::int64_t allotted = 0;
    for (int i = 1; i < R; ++i) {
        std::int64_t r = margins.row[static_cast<std::size_t>(i - 1)];
        if (r == 0) continue;
        std::int64_t N = margins.total - allotted;
        for (int j = 1; j < C; ++j) {
            std::int64_t& c = left[static_cast<std::size_t>(j - 1)];
            const std::int64_t x = c == 0 || N == 0 ? 0 : Random_cell(Cell_draw(r, c, N), stream);
            table(i, j) = static_cast<std::int32_t>(x);
            allotted += x;
            r -= x;
            N -= c;
            c -= x;
        }
        table(i, C) = static_cast<std::int32_t>(r);
        allotted += r;
        left.back() -= r;
    }
    for (int j = 1; j <= C; ++j)
        table(R, j) = static_cast<std::int32_t>(left[static_cast<std::size_t>(j - 1)]);
    Fill_margins(table);
}

TwoWayTable Random_table(const ExpectedTable& expected, RandomStream& stream) {
    TwoWayTable table(expected.rows, expected.columns);
    Random_table(Margins_of_expected(expected), stream, table);
    return table;
}

}  // namespace tarven
