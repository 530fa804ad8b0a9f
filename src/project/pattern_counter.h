#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "project/cell_store.h"

namespace tarven {

/// Counts cases by response pattern as they arrive in any order, and puts the patterns in order. A
/// pattern is packed into as few 64-bit words as its variables need, variable 1 in the highest
/// bits, so that comparing words is comparing patterns; cases are sorted in chunks and the chunks
/// merged. Memory follows the number of patterns, not of cases; time is n log n in the patterns and
/// linear in the cases.
class PatternCounter {
  public:
    /// dims[v-1] is the highest code of variable v, at most 255.
    explicit PatternCounter(const std::vector<int>& dims);
    ~PatternCounter();
    PatternCounter(PatternCounter&&) noexcept;

    /// Counts a case of codes[0..N-1], none above its dim.
    void Add(const std::uint8_t* codes);

    /// There are more patterns than a cell store may hold; none are kept then.
    bool Overflowed();

    std::int64_t Ncells();

    /// The patterns in ascending order with their counts. The counter is empty afterwards. The
    /// text of a failure, with an empty store, or empty.
    std::string Move_to(CellStore& store);

  private:
    struct Counts;
    template <std::size_t W>
    struct CountsOfWords;
    std::unique_ptr<Counts> counts_;
};

}  // namespace tarven
