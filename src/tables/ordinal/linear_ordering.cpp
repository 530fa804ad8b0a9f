#include "tables/ordinal/linear_ordering.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace tarven {

namespace {

constexpr std::size_t HalfBits = 8;
constexpr std::size_t HalfMask = (1U << HalfBits) - 1;

/// sums[subset * n + j]: of D(j, first + l) over the l of the subset of `count` things.
void Fill_sums(std::span<const std::int64_t> D, std::size_t n, std::size_t first, std::size_t count,
               std::vector<std::int64_t>& sums) {
    for (std::size_t subset = 1; subset < std::size_t{1} << count; ++subset) {
        const std::size_t l = static_cast<std::size_t>(std::countr_zero(subset));
        const std::size_t without = subset & (subset - 1);
        for (std::size_t j = 0; j < n; ++j)
            sums[subset * n + j] = sums[without * n + j] + D[j * n + first + l];
    }
}

}  // namespace

LinearOrdering::LinearOrdering(int n) : n_(static_cast<std::size_t>(n)) {
    assert(n >= 1 && n <= Most);
    const std::size_t low = std::min(n_, HalfBits);
    best_.resize(std::size_t{1} << n_);
    lower_.resize((std::size_t{1} << low) * n_);
    upper_.resize((std::size_t{1} << (n_ - low)) * n_);
}

std::int64_t LinearOrdering::Sum_before(std::size_t j, std::size_t others) const {
    return lower_[(others & HalfMask) * n_ + j] + upper_[(others >> HalfBits) * n_ + j];
}

std::int64_t LinearOrdering::Largest_sum(std::span<const std::int64_t> D) {
    const std::size_t low = std::min(n_, HalfBits);
    Fill_sums(D, n_, 0, low, lower_);
    Fill_sums(D, n_, low, n_ - low, upper_);
    for (std::size_t subset = 1; subset < best_.size(); ++subset) {
        std::int64_t best = INT64_MIN;
        for (std::size_t left = subset; left != 0; left &= left - 1) {
            const std::size_t j = static_cast<std::size_t>(std::countr_zero(left));
            best = std::max(best, Sum_before(j, subset) + best_[subset ^ (std::size_t{1} << j)]);
        }
        best_[subset] = best;
    }
    return best_.back();
}

std::vector<int> LinearOrdering::First_best_order() const {
    std::vector<int> order;
    std::size_t subset = best_.size() - 1;
    while (subset != 0)
        for (std::size_t left = subset; left != 0; left &= left - 1) {
            const std::size_t j = static_cast<std::size_t>(std::countr_zero(left));
            const std::size_t others = subset ^ (std::size_t{1} << j);
            if (Sum_before(j, subset) + best_[others] != best_[subset]) continue;
            order.push_back(static_cast<int>(j));
            subset = others;
            break;
        }
    return order;
}

}  // namespace tarven
