#include "tables/independence/slices.h"

#include "shell/limits.h"

namespace tarven {

SliceView View_of(const ContingencyTable& table, const Hypothesis& hypothesis) {
    SliceView view;
    const TestedPair pair = Tested_pair(hypothesis);
    std::int64_t offset = 0;
    for (int k = 1; k <= table.Nvar(); ++k) {
        const int dim = table.DIM(k);
        const std::int64_t factor = table.Cfactor[static_cast<std::size_t>(k)];
        if (k == pair.X) {
            view.R = dim;
            view.step_x = factor;
        } else if (k == pair.Y) {
            view.C = dim;
            view.step_y = factor;
        } else if (hypothesis.Role(k) == role::conditioning) {
            view.DIM.push_back(dim);
            view.step.push_back(factor);
        } else {
            offset += dim * factor;
        }
    }
    view.cells = table.cells.data() + offset;
    return view;
}

namespace {

/// For_each_slice for the loops that must be fast.
template <class Visit>
void Walk_slices(const SliceView& view, bool with_margins, Visit&& visit) {
    const std::size_t n = view.DIM.size();
    std::vector<int> category(n, 1);
    std::int64_t offset = 0;
    while (true) {
        if (!visit(category, offset)) return;
        std::size_t k = 0;
        for (; k < n; ++k) {
            const int last = view.DIM[k] + (with_margins ? 1 : 0);
            if (category[k] < last) {
                ++category[k];
                offset += view.step[k];
                break;
            }
            offset -= (last - 1) * view.step[k];
            category[k] = 1;
        }
        if (k == n) return;
    }
}

bool At_least_two(const std::int32_t* margin, int categories, std::int64_t step) {
    int with_cases = 0;
    for (int c = 0; c < categories && with_cases < 2; ++c) with_cases += margin[c * step] > 0;
    return with_cases >= 2;
}

bool Informative(const SliceView& view, std::int64_t offset) {
    const std::int32_t* cell = view.cells + offset;
    return At_least_two(cell + view.C * view.step_y, view.R, view.step_x) &&
           At_least_two(cell + view.R * view.step_x, view.C, view.step_y);
}

/// Calls `use` with each informative slice; false when there are more than the limit.
template <class Use>
bool Visit_informative(const SliceView& view, std::int64_t& missing, Use&& use) {
    const std::int64_t limit = Slice_limit(view.R, view.C);
    std::int64_t found = 0;
    TwoWayTable counts(view.R, view.C);
    Walk_slices(view, false, [&](const std::vector<int>&, std::int64_t offset) {
        if (!Informative(view, offset)) {
            ++missing;
            return true;
        }
        if (++found > limit) return false;
        Read_slice(view, offset, counts);
        use(counts);
        return true;
    });
    return found <= limit;
}

}  // namespace

void For_each_slice(
    const SliceView& view, bool with_margins,
    const std::function<void(std::span<const int> category, std::int64_t offset)>& visit) {
    Walk_slices(view, with_margins, [&](const std::vector<int>& category, std::int64_t offset) {
        visit(category, offset);
        return true;
    });
}

void Read_slice(const SliceView& view, std::int64_t offset, TwoWayTable& counts) {
    counts.Shape(view.R, view.C);
    const std::int32_t* cell = view.cells + offset;
    for (int i = 0; i <= view.R; ++i)
        for (int j = 0; j <= view.C; ++j)
            counts(i + 1, j + 1) = cell[i * view.step_x + j * view.step_y];
}

std::int64_t Slice_limit(int R, int C) {
    return MaxTableCells / (std::int64_t{R + 1} * (C + 1));
}

InformativeSlices XYZ1(const SliceView& view) {
    InformativeSlices slices;
    slices.too_many = !Visit_informative(view, slices.missing, [&](const TwoWayTable& counts) {
        slices.counts.push_back(counts);
        slices.expected.push_back(Expected_of_slice(counts));
    });
    return slices;
}

SlicesSummed Sum_over_slices(const SliceView& view, bool has_gamma, const StatisticRule& rule) {
    SlicesSummed result;
    result.too_many = !Visit_informative(view, result.missing, [&](const TwoWayTable& counts) {
        Add_stratum(result.sums, counts, Expected_of_slice(counts), has_gamma, rule);
    });
    return result;
}

}  // namespace tarven
