#include "tables/table/two_way.h"

#include <cmath>

#include "tables/numbers/distributions.h"

namespace tarven {

namespace {

/// Wide is wide enough for any sum of cells; a total that does not fit the cell wraps around.
template <class Wide, class Cell>
void Sum_margins(TwoWay<Cell>& t) {
    const int R = t.rows, C = t.columns;
    for (int j = 1; j <= C + 1; ++j) t(R + 1, j) = 0;
    for (int i = 1; i <= R; ++i) {
        Wide row_total = 0;
        for (int j = 1; j <= C; ++j) {
            row_total += t(i, j);
            t(R + 1, j) = static_cast<Cell>(Wide{t(R + 1, j)} + t(i, j));
        }
        t(i, C + 1) = static_cast<Cell>(row_total);
        t(R + 1, C + 1) = static_cast<Cell>(t(R + 1, C + 1) + row_total);
    }
}

template <class Formula>
ExpectedTable Expected_by(const TwoWayTable& counts, Formula formula) {
    const int R = counts.rows, C = counts.columns;
    ExpectedTable expected(R, C);
    const double n = counts.Total();
    if (n == 0) return expected;
    for (int i = 1; i <= R; ++i) expected(i, C + 1) = counts(i, C + 1);
    for (int j = 1; j <= C + 1; ++j) expected(R + 1, j) = counts(R + 1, j);
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j)
            expected(i, j) = formula(expected(i, C + 1), expected(R + 1, j), n);
    return expected;
}

}  // namespace

void Fill_margins(TwoWayTable& counts) {
    Sum_margins<std::int64_t>(counts);
}

void Fill_margins(ExpectedTable& expected) {
    Sum_margins<double>(expected);
}

ExpectedTable Expected_under_independence(const TwoWayTable& counts) {
    return Expected_by(counts,
                       [](double row, double column, double n) { return row * (column / n); });
}

ExpectedTable Expected_of_slice(const TwoWayTable& counts) {
    return Expected_by(counts,
                       [](double row, double column, double n) { return row / n * column; });
}

StatisticRule Statistic_rule(const TestSettings& settings) {
    return {Statistic_of(settings), settings.PowerLambda, settings.PowerFactor};
}

Extended Statistic_term(std::int32_t n, double e, const StatisticRule& rule) {
    if (!(e > 0)) return 0;
    const Extended E = e;
    if (rule.statistic == Statistic::pearson) {
        const Extended d = static_cast<Extended>(n) - E;
        return d * d / E;
    }
    if (n <= 0) return 0;
    const Extended N = n;
    if (rule.statistic == Statistic::deviance) return N * std::log(N / E);
    return N * (std::pow(N / E, static_cast<Extended>(rule.lambda)) - 1);
}

Extended Statistic_factor(const StatisticRule& rule) {
    switch (rule.statistic) {
        case Statistic::pearson:
            return 1;
        case Statistic::deviance:
            return 2;
        default:
            return rule.factor;
    }
}

Extended Sum_of_statistic(const TwoWayTable& counts, const ExpectedTable& expected,
                          const StatisticRule& rule) {
    Extended sum = 0;
    for (int i = 1; i <= counts.rows; ++i)
        for (int j = 1; j <= counts.columns; ++j)
            sum += Statistic_term(counts(i, j), expected(i, j), rule);
    return sum * Statistic_factor(rule);
}

int Degrees_of_freedom(const TwoWayTable& counts) {
    const int R = counts.rows, C = counts.columns;
    int used_rows = 0, used_columns = 0;
    for (int i = 1; i <= R; ++i) used_rows += counts(i, C + 1) > 0;
    for (int j = 1; j <= C; ++j) used_columns += counts(R + 1, j) > 0;
    return used_rows > 0 && used_columns > 0 ? (used_rows - 1) * (used_columns - 1) : 0;
}

TwoWayStatistic Two_way_statistic(const TwoWayTable& counts, const ExpectedTable& expected,
                                  const StatisticRule& rule) {
    TwoWayStatistic result;
    if (counts.Total() == 0) return result;
    result.statistic = Sum_of_statistic(counts, expected, rule);
    result.df = Degrees_of_freedom(counts);
    if (result.df > 0) result.p = Chi2_tail(result.df, static_cast<double>(result.statistic));
    return result;
}

}  // namespace tarven
