#include "tables/ordinal/local_cpr.h"

#include <cmath>

#include "tables/table/gamma.h"

namespace tarven {

namespace {

double Root(double x, int t) {
    return x <= 0 ? 0 : std::exp(std::log(x) / t);
}

LocalTable Local_table(const TwoWayTable& counts, int i, int k, int j, int l) {
    LocalTable table{.i = i, .k = k, .j = j, .l = l};
    TwoWayTable cells(2, 2);
    cells(1, 1) = counts(i, j);
    cells(1, 2) = counts(i, l);
    cells(2, 1) = counts(k, j);
    cells(2, 2) = counts(k, l);
    const auto product = [](std::int32_t a, std::int32_t b) { return std::int64_t{a} * b; };
    table.C = product(cells(1, 1), cells(2, 2));
    table.D = product(cells(1, 2), cells(2, 1));
    table.n = static_cast<double>(cells(1, 1)) + cells(1, 2) + cells(2, 1) + cells(2, 2);
    table.defined = table.C + table.D > 0;
    if (!table.defined) return table;
    const GammaRecord gamma = Gamma_of_table(cells);
    table.gamma = gamma.gamma;
    table.p = gamma.p;
    table.cpr = Local_cpr(table.gamma, (k - i) * (l - j));
    return table;
}

/// Adds tables one by one; Summary gives what they amount to.
struct Accumulator {
    LocalSummary sums;
    double weighted = 0, weight = 0;

    void Add(const LocalTable& table) {
        sums.C += table.C;
        sums.D += table.D;
        if (!table.defined) return;
        sums.defined = true;
        weighted += table.n * table.n * table.cpr;
        weight += table.n * table.n;
    }
    LocalSummary Summary() const {
        LocalSummary result = sums;
        if (!result.defined) return result;
        result.gamma = static_cast<double>(sums.C - sums.D) / static_cast<double>(sums.C + sums.D);
        result.cpr = weighted / weight;
        return result;
    }
};

/// One pair of categories after another, 1-2, 1-3, .., 2-3, ..
std::vector<LocalAnalysis::Parallel> Summaries_of_pairs(const std::vector<LocalTable>& tables,
                                                        int categories, bool of_rows) {
    std::vector<LocalAnalysis::Parallel> pairs;
    for (int a = 1; a <= categories; ++a)
        for (int b = a + 1; b <= categories; ++b) {
            Accumulator sum;
            for (const LocalTable& table : tables)
                if ((of_rows ? table.i : table.j) == a && (of_rows ? table.k : table.l) == b)
                    sum.Add(table);
            pairs.push_back({a, b, sum.Summary()});
        }
    return pairs;
}

}  // namespace

double Local_cpr(double g, int t) {
    if (t == 1) return g;
    const double A = Root(1 + g, t), B = Root(1 - g, t);
    return (A - B) / (A + B);
}

LocalAnalysis Analysis_of_local_tables(const TwoWayTable& counts) {
    LocalAnalysis analysis;
    analysis.R = counts.rows;
    analysis.C = counts.columns;
    Accumulator all, adjacent;
    for (int i = 1; i <= counts.rows; ++i)
        for (int k = i + 1; k <= counts.rows; ++k)
            for (int j = 1; j <= counts.columns; ++j)
                for (int l = j + 1; l <= counts.columns; ++l) {
                    const LocalTable& table =
                        analysis.tables.emplace_back(Local_table(counts, i, k, j, l));
                    all.Add(table);
                    if (table.adjacent()) adjacent.Add(table);
                }
    analysis.all = all.Summary();
    analysis.adjacent = adjacent.Summary();
    analysis.rows = Summaries_of_pairs(analysis.tables, counts.rows, true);
    analysis.columns = Summaries_of_pairs(analysis.tables, counts.columns, false);
    return analysis;
}

}  // namespace tarven
