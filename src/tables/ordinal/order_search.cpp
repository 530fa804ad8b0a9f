#include "tables/ordinal/order_search.h"

#include <algorithm>
#include <cassert>
#include <numeric>

namespace tarven {

namespace {

/// n!/2 for n >= 2 where permuted, else 1.
double Orders(std::size_t n, bool permuted) {
    double orders = 1;
    if (permuted)
        for (std::size_t k = 3; k <= n; ++k) orders *= static_cast<double>(k);
    return orders;
}

/// All orders of n things by plain changes, each by an exchange of neighbours. The first half of
/// them has thing 0 before thing 1: one of each pair of mirror images. Johnson (1963), Math. Comp.
/// 17, 282-285.
class PlainChanges {
  public:
    explicit PlainChanges(std::size_t n) : order(n), left_(n, true) {
        std::iota(order.begin(), order.end(), std::size_t{0});
    }

    std::vector<std::size_t> order;

    /// The next order; `first` stood before `second` and now stands behind it.
    void Exchange(std::size_t& first, std::size_t& second) {
        const std::size_t n = order.size();
        std::size_t at = n;  // of the largest thing that looks at a smaller one
        for (std::size_t k = 0; k < n; ++k) {
            const bool left = left_[order[k]];
            if (left ? k == 0 : k + 1 == n) continue;
            if (order[left ? k - 1 : k + 1] < order[k] && (at == n || order[at] < order[k])) at = k;
        }
        assert(at < n && "no order is left");
        const std::size_t moved = order[at];
        const std::size_t place = left_[moved] ? at - 1 : at;
        first = order[place];
        second = order[place + 1];
        std::swap(order[place], order[place + 1]);
        for (std::size_t thing = moved + 1; thing < n; ++thing) left_[thing] = !left_[thing];
    }

  private:
    std::vector<bool> left_;  ///< the direction each thing looks in
};

/// The order or its mirror image, the one that begins with the smaller thing.
std::vector<std::size_t> Normalized(std::vector<std::size_t> order) {
    if (order.front() > order.back()) std::reverse(order.begin(), order.end());
    return order;
}

}  // namespace

bool OrderProblem::too_many() const {
    if (permute_rows && permute_columns)
        return std::max(rows.size(), columns.size()) > MostBothPermuted;
    return (permute_rows && rows.size() > MostPermuted) ||
           (permute_columns && columns.size() > MostPermuted);
}

double OrderProblem::row_permutations() const {
    return Orders(rows.size(), permute_rows);
}

double OrderProblem::column_permutations() const {
    return Orders(columns.size(), permute_columns);
}

OrderProblem Categories_with_cases(std::span<const TwoWayTable> strata) {
    OrderProblem problem;
    if (strata.empty()) return problem;
    const auto any = [&](auto margin) { return std::any_of(strata.begin(), strata.end(), margin); };
    for (int i = 1; i <= strata[0].rows; ++i)
        if (any([&](const TwoWayTable& t) { return t(i, t.columns + 1) > 0; }))
            problem.rows.push_back(i);
    for (int j = 1; j <= strata[0].columns; ++j)
        if (any([&](const TwoWayTable& t) { return t(t.rows + 1, j) > 0; }))
            problem.columns.push_back(j);
    return problem;
}

OrderSearch::OrderSearch(OrderProblem problem)
    : problem_(std::move(problem)),
      turned_(problem_.permute_rows &&
              (!problem_.permute_columns || problem_.rows.size() > problem_.columns.size())),
      row_orders_(problem_.permute_rows && problem_.permute_columns),
      column_order_(problem_.permute_rows || problem_.permute_columns),
      rows_(turned_ ? problem_.columns : problem_.rows),
      columns_(turned_ ? problem_.rows : problem_.columns),
      row_order_(rows_.size()),
      ordering_(column_order_ ? static_cast<int>(columns_.size()) : 1),
      column_pairs_(columns_.size() * columns_.size()) {
    assert(!problem_.too_many());
    if (row_orders_)
        row_pairs_.resize(rows_.size() * (rows_.size() - 1) / 2 * column_pairs_.size());
}

std::int64_t OrderSearch::Count(const TwoWayTable& table, std::size_t i, std::size_t j) const {
    return turned_ ? table(columns_[j], rows_[i]) : table(rows_[i], columns_[j]);
}

/// Over the pairs of rows in row_order_.
void OrderSearch::Sum_column_pairs(std::span<const TwoWayTable> strata) {
    const std::size_t c = columns_.size();
    std::fill(column_pairs_.begin(), column_pairs_.end(), 0);
    std::vector<std::int64_t> above(c), row(c);
    for (const TwoWayTable& table : strata) {
        std::fill(above.begin(), above.end(), 0);
        for (const std::size_t i : row_order_) {
            for (std::size_t j = 0; j < c; ++j) row[j] = Count(table, i, j);
            for (std::size_t j = 0; j < c; ++j)
                for (std::size_t l = 0; l < c; ++l)
                    column_pairs_[j * c + l] += 2 * (above[j] * row[l] - above[l] * row[j]);
            for (std::size_t j = 0; j < c; ++j) above[j] += row[j];
        }
    }
}

void OrderSearch::Sum_row_pairs(std::span<const TwoWayTable> strata) {
    const std::size_t r = rows_.size(), c = columns_.size();
    std::fill(row_pairs_.begin(), row_pairs_.end(), 0);
    for (const TwoWayTable& table : strata) {
        std::int64_t* pair = row_pairs_.data();
        for (std::size_t i = 0; i < r; ++i)
            for (std::size_t k = i + 1; k < r; ++k, pair += c * c)
                for (std::size_t j = 0; j < c; ++j)
                    for (std::size_t l = 0; l < c; ++l)
                        pair[j * c + l] += 2 * (Count(table, i, j) * Count(table, k, l) -
                                                Count(table, i, l) * Count(table, k, j));
    }
}

/// Adds `factor` times the pairs of two rows, `first` before `second`, to those of the columns.
void OrderSearch::Add_row_pair(int first, int second, std::int64_t factor) {
    const int i = std::min(first, second), k = std::max(first, second);
    const int r = static_cast<int>(rows_.size());
    const std::size_t number = static_cast<std::size_t>(i * (2 * r - i - 1) / 2 + k - i - 1);
    const std::int64_t* pair = row_pairs_.data() + number * column_pairs_.size();
    const std::int64_t times = first < second ? factor : -factor;
    for (std::size_t n = 0; n < column_pairs_.size(); ++n) column_pairs_[n] += times * pair[n];
}

std::int64_t OrderSearch::Sum_in_given_order() const {
    std::int64_t Q = 0;
    for (std::size_t j = 0; j < columns_.size(); ++j)
        for (std::size_t l = j + 1; l < columns_.size(); ++l)
            Q += column_pairs_[j * columns_.size() + l];
    return Q;
}

/// Over all orders of the rows but mirror images; the best one is left in row_order_.
std::int64_t OrderSearch::Search_row_orders() {
    PlainChanges rows(rows_.size());
    std::fill(column_pairs_.begin(), column_pairs_.end(), 0);
    const int r = static_cast<int>(rows_.size());
    for (int i = 0; i < r; ++i)
        for (int k = i + 1; k < r; ++k) Add_row_pair(i, k, 1);
    std::int64_t best = ordering_.Largest_sum(column_pairs_);
    row_order_ = rows.order;
    const auto orders = static_cast<std::int64_t>(Orders(rows_.size(), true));
    for (std::int64_t n = 1; n < orders; ++n) {
        std::size_t first = 0, second = 0;
        rows.Exchange(first, second);
        Add_row_pair(static_cast<int>(first), static_cast<int>(second), -2);
        const std::int64_t Q = ordering_.Largest_sum(column_pairs_);
        if (Q < best) continue;
        std::vector<std::size_t> order = Normalized(rows.order);
        if (Q == best && row_order_ < order) continue;
        best = Q;
        row_order_ = std::move(order);
    }
    return best;
}

std::int64_t OrderSearch::Largest_Q(std::span<const TwoWayTable> strata) {
    if (row_orders_) {
        Sum_row_pairs(strata);
        return Search_row_orders();
    }
    std::iota(row_order_.begin(), row_order_.end(), std::size_t{0});
    Sum_column_pairs(strata);
    return column_order_ ? ordering_.Largest_sum(column_pairs_) : Sum_in_given_order();
}

double OrderSearch::Largest_gamma(std::span<const TwoWayTable> strata) {
    std::int64_t P = 0;
    for (const TwoWayTable& table : strata) P += Concordance_of(table).P;
    return std::abs(Gamma_of_pairs(P, Largest_Q(strata)));
}

BestOrder OrderSearch::Find_best_order(std::span<const TwoWayTable> strata) {
    BestOrder best;
    best.Q = Largest_Q(strata);
    for (const TwoWayTable& table : strata) best.P += Concordance_of(table).P;
    std::vector<int> rows, columns;
    for (const std::size_t i : row_order_) rows.push_back(rows_[i]);
    if (column_order_) {
        Sum_column_pairs(strata);
        ordering_.Largest_sum(column_pairs_);
        for (const int j : ordering_.First_best_order())
            columns.push_back(columns_[static_cast<std::size_t>(j)]);
    } else {
        columns = columns_;
    }
    best.rows = turned_ ? columns : rows;
    best.columns = turned_ ? rows : columns;
    return best;
}

TwoWayTable Regrouped(const TwoWayTable& counts, const std::vector<std::vector<int>>& row_classes,
                      const std::vector<std::vector<int>>& column_classes) {
    TwoWayTable table(static_cast<int>(row_classes.size()),
                      static_cast<int>(column_classes.size()));
    for (std::size_t a = 0; a < row_classes.size(); ++a)
        for (std::size_t b = 0; b < column_classes.size(); ++b)
            for (const int i : row_classes[a])
                for (const int j : column_classes[b])
                    table(static_cast<int>(a + 1), static_cast<int>(b + 1)) += counts(i, j);
    Fill_margins(table);
    return table;
}

}  // namespace tarven
