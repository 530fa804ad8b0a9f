#include "tables/independence/fisher.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "tables/numbers/log_factorial.h"

namespace tarven {

namespace {

/// Terms are kept 2^100 times too large, away from underflow; the sums are divided at the end.
constexpr Extended tail_scale = 0x1p100L;

/// The state of one enumeration. The cells of column j are filled from row 1 down; the last row and
/// the last column are what the margins leave.
struct Walk {
    const TwoWayTable& observed;
    const ExpectedTable& expected;
    const StatisticRule& rule;
    const std::function<bool()>& stop;
    const FisherListing& listing;

    TwoWayTable table;
    std::vector<std::int32_t> row_left;  // [i]: what row i still has to get
    Extended log_constant = 0;
    Extended observed_statistic = 0;
    double observed_gamma = 0;
    double gamma_sign = 0;
    bool has_gamma = false;
    Extended statistic_tail = 0, gamma_tail = 0, all = 0;
    std::int64_t tables = 0;
    bool stopped = false;

    /// What Statistic_term and Log_factorial give, by cell and count: [first_of_cell + n].
    std::vector<Extended> terms, log_factorials;
    std::vector<std::size_t> first_of_cell;
};

void Tabulate_terms(Walk& w) {
    const int R = w.observed.rows, C = w.observed.columns;
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j) {
            w.first_of_cell.push_back(w.terms.size());
            const std::int32_t top = std::min(w.observed(i, C + 1), w.observed(R + 1, j));
            for (std::int32_t n = 0; n <= top; ++n)
                w.terms.push_back(Statistic_term(n, w.expected(i, j), w.rule));
        }
    for (std::int32_t n = 0; n <= w.observed.Total(); ++n)
        w.log_factorials.push_back(Log_factorial(n));
}

/// The same sum as Sum_of_statistic.
Extended Tabulated_statistic(const Walk& w) {
    Extended sum = 0;
    std::size_t cell = 0;
    for (int i = 1; i <= w.table.rows; ++i) {
        const std::int32_t* row = w.table.Row(i);
        for (int j = 0; j < w.table.columns; ++j)
            sum += w.terms[w.first_of_cell[cell++] + static_cast<std::size_t>(row[j])];
    }
    return sum * Statistic_factor(w.rule);
}

void Score_table(Walk& w, Extended log_cells) {
    ++w.tables;
    const Extended probability = std::exp(w.log_constant - log_cells);
    const Extended statistic = Tabulated_statistic(w);
    double gamma = 0;
    w.all += probability;
    if (statistic >= w.observed_statistic) w.statistic_tail += probability;
    if (w.has_gamma) {
        const Concordance pairs = Concordance_of(w.table);
        gamma = Gamma_of_pairs(pairs.P, pairs.Q);
        if (w.gamma_sign * gamma >= w.gamma_sign * w.observed_gamma) w.gamma_tail += probability;
    }
    if (w.listing)
        w.listing(
            {w.tables, w.table, statistic, gamma, static_cast<double>(probability / tail_scale)});
    if (w.tables % 1024 == 0 && w.stop && w.stop()) w.stopped = true;
}

Extended Log_of(const Walk& w, std::int32_t n) {
    return w.log_factorials[static_cast<std::size_t>(n)];
}

void Fill_last_column(Walk& w, Extended log_cells) {
    const int C = w.table.columns;
    for (int i = 1; i <= w.table.rows; ++i) {
        w.table(i, C) = w.row_left[static_cast<std::size_t>(i)];
        log_cells += Log_of(w, w.table(i, C));
    }
    Score_table(w, log_cells);
}

void Fill_cell(Walk& w, int i, int j, std::int32_t column_left, std::int32_t rows_below,
               Extended log_cells);

void Start_column(Walk& w, int j, Extended log_cells) {
    if (j >= w.table.columns) {
        Fill_last_column(w, log_cells);
        return;
    }
    std::int32_t rows_below = 0;
    for (int i = 2; i <= w.table.rows; ++i) rows_below += w.row_left[static_cast<std::size_t>(i)];
    Fill_cell(w, 1, j, w.observed(w.table.rows + 1, j), rows_below, log_cells);
}

/// Cell (i, j): column j still has to get column_left, and the rows below i can take rows_below.
void Fill_cell(Walk& w, int i, int j, std::int32_t column_left, std::int32_t rows_below,
               Extended log_cells) {
    std::int32_t& left = w.row_left[static_cast<std::size_t>(i)];
    const std::int32_t low = std::max(0, column_left - rows_below);
    const std::int32_t high = std::min(left, column_left);
    const bool last_row = i == w.table.rows;
    for (std::int32_t n = low; n <= high && !w.stopped; ++n) {
        w.table(i, j) = n;
        left -= n;
        const Extended log_so_far = log_cells + Log_of(w, n);
        if (last_row)
            Start_column(w, j + 1, log_so_far);
        else
            Fill_cell(w, i + 1, j, column_left - n,
                      rows_below - w.row_left[static_cast<std::size_t>(i) + 1], log_so_far);
        left += n;
    }
}

Extended Log_constant(const TwoWayTable& counts) {
    const int R = counts.rows, C = counts.columns;
    Extended constant = 100 * std::numbers::ln2_v<Extended> - Log_factorial(counts.Total());
    for (int i = 1; i <= R; ++i) constant += Log_factorial(counts(i, C + 1));
    for (int j = 1; j <= C; ++j) constant += Log_factorial(counts(R + 1, j));
    return constant;
}

}  // namespace

FisherRecord Enumerate_tables(const TwoWayTable& counts, const StatisticRule& rule, bool has_gamma,
                              const std::function<bool()>& stop, const FisherListing& listing) {
    FisherRecord result;
    const int R = counts.rows, C = counts.columns;
    const ExpectedTable expected = Expected_under_independence(counts);
    result.statistic = Two_way_statistic(counts, expected, rule);
    result.has_gamma = has_gamma;
    if (has_gamma) result.gamma = Gamma_of_table(counts);
    if (R < 1 || C < 1) return result;

    Walk w{.observed = counts,
           .expected = expected,
           .rule = rule,
           .stop = stop,
           .listing = listing,
           .table = counts,
           .row_left = std::vector<std::int32_t>(static_cast<std::size_t>(R) + 1),
           .terms = {},
           .log_factorials = {},
           .first_of_cell = {}};
    for (int i = 1; i <= R; ++i) w.row_left[static_cast<std::size_t>(i)] = counts(i, C + 1);
    w.log_constant = Log_constant(counts);
    w.observed_statistic = result.statistic.statistic;
    w.has_gamma = has_gamma;
    w.observed_gamma = result.gamma.gamma;
    w.gamma_sign = w.observed_gamma > 0 ? 1 : w.observed_gamma < 0 ? -1 : 0;
    Tabulate_terms(w);
    Start_column(w, 1, 0);

    result.tables = w.tables;
    result.p_exact = static_cast<double>(w.statistic_tail / tail_scale);
    result.p_gamma_exact = static_cast<double>(w.gamma_tail / tail_scale);
    result.total_probability = static_cast<double>(w.all / tail_scale);
    result.stopped = w.stopped;
    return result;
}

}  // namespace tarven
