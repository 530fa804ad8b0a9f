#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "tables/ordinal/linear_ordering.h"
#include "tables/table/gamma.h"
#include "tables/table/two_way.h"

namespace tarven {

/// The order of the categories of one or of both variables that gives the largest absolute partial
/// gamma: their pseudo gamma.

/// Categories that may be permuted: of one variable, or of each when both are.
inline constexpr int MostPermuted = LinearOrdering::Most;
inline constexpr int MostBothPermuted = 8;

/// Which categories take part, ascending, and what may be permuted.
struct OrderProblem {
    std::vector<int> rows, columns;  ///< categories from 1; at least one each
    bool permute_rows = false, permute_columns = false;

    bool too_many() const;
    /// Orders of the rows, of the columns: n!/2 where permuted, mirror images counted once; else 1.
    double row_permutations() const;
    double column_permutations() const;
};

/// The categories with cases in one of the strata.
OrderProblem Categories_with_cases(std::span<const TwoWayTable> strata);

/// The order that gives the pseudo gamma. Where several do, the lexicographically first. When both
/// variables are permuted, that goes for the one with fewer categories (the rows, when equal)
/// before the other, and the first category of its order has a smaller number than the last.
struct BestOrder {
    std::vector<int> rows, columns;  ///< categories in their order
    std::int64_t P = 0;              ///< untied pairs of the strata, each counted twice
    /// Concordant minus discordant pairs in this order. Not negative when a variable is permuted:
    /// of two mirror images the one with the positive association is taken.
    std::int64_t Q = 0;
    double gamma() const { return Gamma_of_pairs(P, Q); }
};

/// Searches all orders of one problem, for one set of strata after another. The concordance of the
/// strata is summed once for each pair of columns given each order of the rows; then the best order
/// of the columns follows from these sums alone, and from one order of the rows to the next, two
/// neighbours change places, only the pairs of those two rows are added.
/// Cost for r and c categories and one permuted variable: r c^2 a stratum + c 2^c; for both, with r
/// the smaller one, r!/2 times c 2^c.
class OrderSearch {
  public:
    /// The problem must not have too many categories.
    explicit OrderSearch(OrderProblem problem);

    /// The pseudo gamma of strata of one shape.
    double Largest_gamma(std::span<const TwoWayTable> strata);
    BestOrder Find_best_order(std::span<const TwoWayTable> strata);

  private:
    std::int64_t Count(const TwoWayTable& table, std::size_t i, std::size_t j) const;
    void Sum_row_pairs(std::span<const TwoWayTable> strata);
    void Sum_column_pairs(std::span<const TwoWayTable> strata);
    void Add_row_pair(int first, int second, std::int64_t factor);
    std::int64_t Sum_in_given_order() const;
    std::int64_t Search_row_orders();
    std::int64_t Largest_Q(std::span<const TwoWayTable> strata);

    OrderProblem problem_;
    bool turned_;        ///< the problem is searched with rows and columns exchanged
    bool row_orders_;    ///< both are permuted; the rows, then, are not more than the columns
    bool column_order_;  ///< the columns are permuted; false: nothing is
    std::vector<int> rows_, columns_;         ///< categories, after the exchange
    std::vector<std::size_t> row_order_;      ///< places in rows_
    LinearOrdering ordering_;                 ///< of the columns
    std::vector<std::int64_t> column_pairs_;  ///< Q of columns j before l: at j * columns + l
    std::vector<std::int64_t> row_pairs_;     ///< the same of rows i < k alone, a matrix a pair
};

/// The table with some categories put together: class a of the rows becomes row a+1, in that
/// order; categories of no class are left out. Margins are filled.
TwoWayTable Regrouped(const TwoWayTable& counts, const std::vector<std::vector<int>>& row_classes,
                      const std::vector<std::vector<int>>& column_classes);

}  // namespace tarven
