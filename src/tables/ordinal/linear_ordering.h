#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tarven {

/// The linear ordering problem: the order of n things with the largest sum of D(a, b) over all
/// pairs with a before b. Solved exactly by dynamic programming over subsets, since the best order
/// of the last things does not depend on how the others stand. Cost: n 2^n, not n!; the memory is
/// kept from one problem to the next. Held & Karp (1962), J. SIAM 10, 196-210.
class LinearOrdering {
  public:
    static constexpr int Most = 16;

    /// n in 1..16.
    explicit LinearOrdering(int n);

    /// Of the n by n matrix D, row by row; its diagonal must be 0. Sums must fit 62 bits.
    std::int64_t Largest_sum(std::span<const std::int64_t> D);

    /// The order of the last problem, things from 0; the lexicographically first of the best ones.
    std::vector<int> First_best_order() const;

  private:
    std::int64_t Sum_before(std::size_t j, std::size_t others) const;

    std::size_t n_;
    std::vector<std::int64_t> best_;  ///< of each subset of things
    /// Sums of D(j, l) over the l of the lower, and of the upper, eight things of a subset: at
    /// subset * n + j.
    std::vector<std::int64_t> lower_, upper_;
};

}  // namespace tarven
