#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "tables/independence/global_engine.h"
#include "tables/independence/hypotheses.h"
#include "tables/table/contingency_table.h"
#include "tables/table/two_way.h"

namespace tarven {

/// The X by Y slices of a hypothesis, read in place from a block of counts that holds all margins:
/// no variable is ever summed over, since the sum stands in the block already.
struct SliceView {
    const std::int32_t* cells = nullptr;  ///< X, Y, Z at category 1, all others at their margin
    int R = 0, C = 0;                     ///< categories of X and of Y
    std::int64_t step_x = 0, step_y = 0;  ///< from one category to the next
    std::vector<int> DIM;                 ///< of the conditioning variables, in table order
    std::vector<std::int64_t> step;
};

/// Of a table with its margins, which must outlive the view. The pair is proper and within the
/// table; roles behind its last variable are not read.
SliceView View_of(const ContingencyTable& table, const Hypothesis& hypothesis);

/// Visits every combination of the conditioning variables, the first one fastest; `category` holds
/// one entry a variable, DIM+1 for its margin. `offset` is that of the slice from view.cells.
void For_each_slice(
    const SliceView& view, bool with_margins,
    const std::function<void(std::span<const int> category, std::int64_t offset)>& visit);

/// Copies a slice with its margins.
void Read_slice(const SliceView& view, std::int64_t offset, TwoWayTable& counts);

/// The slices in which both X and Y have at least two categories with cases, with their expected
/// counts. The others tell nothing about X and Y and are left out.
struct InformativeSlices {
    std::vector<TwoWayTable> counts;
    std::vector<ExpectedTable> expected;
    std::int64_t missing = 0;  ///< combinations left out
    bool too_many = false;     ///< more than the limit: the list is not complete
};

/// How many slices of an R by C pair a hypothesis may have.
std::int64_t Slice_limit(int R, int C);

InformativeSlices XYZ1(const SliceView& view);

/// The silent loop of `Sum_over_strata` on the slices of `XYZ1`, without storing them.
struct SlicesSummed {
    StrataSums sums;
    std::int64_t missing = 0;
    bool too_many = false;
};
SlicesSummed Sum_over_slices(const SliceView& view, bool has_gamma, const StatisticRule& rule);

}  // namespace tarven
