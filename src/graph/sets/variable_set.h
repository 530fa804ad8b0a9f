#pragma once

#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "shell/limits.h"

namespace tarven {

/// A set of variables 1..59: variable v is a member when bit v-1 is set.
using VariableSet = std::uint64_t;
using SetList = std::vector<VariableSet>;

static_assert(MaxVariables < 64, "a set of variables is one word");

/// The place of variable v in a table indexed from 1.
constexpr std::size_t At(int v) {
    return static_cast<std::size_t>(v);
}

constexpr VariableSet Only(int v) {
    assert(v >= 1 && v <= MaxVariables && "no variable");
    return VariableSet{1} << (v - 1);
}
/// The variables first..last; none when last < first.
constexpr VariableSet Variables_between(int first, int last) {
    if (last < first) return 0;
    return (~VariableSet{0} >> (64 - last)) & (~VariableSet{0} << (first - 1));
}
constexpr bool Contains(VariableSet set, int v) {
    return (set & Only(v)) != 0;
}
constexpr bool Is_subset(VariableSet inner, VariableSet outer) {
    return (inner & ~outer) == 0;
}
/// Counted in the word itself: std::popcount is a call where the processor's instruction may not be
/// used, and searches count sets at every step. Knuth (2009), The Art of Computer Programming 4A,
/// 7.1.3.
constexpr int Size(VariableSet set) {
    set -= set >> 1 & 0x5555555555555555U;
    set = (set & 0x3333333333333333U) + (set >> 2 & 0x3333333333333333U);
    set = (set + (set >> 4)) & 0x0F0F0F0F0F0F0F0FU;
    return static_cast<int>(set * 0x0101010101010101U >> 56);
}
/// The lowest and the highest member of a set that is not empty.
constexpr int Lowest(VariableSet set) {
    return std::countr_zero(set) + 1;
}
constexpr int Highest(VariableSet set) {
    return 64 - std::countl_zero(set);
}

/// Whether the members of `one`, ascending, stand before those of `other` in lexicographic order;
/// a set stands behind its own beginnings.
constexpr bool Lexicographically_before(VariableSet one, VariableSet other) {
    if (one == other) return false;
    const VariableSet lowest_difference = (one ^ other) & (~(one ^ other) + 1);
    const VariableSet above = ~(lowest_difference | (lowest_difference - 1));
    // The one that holds the lowest difference goes first, unless the other ends before it.
    if (one & lowest_difference) return (other & above) != 0;
    return (one & above) == 0;
}

/// Range over the members, ascending: for (int v : Members(set)).
class Members {
  public:
    explicit constexpr Members(VariableSet set) : set_(set) {}
    class iterator {
      public:
        explicit constexpr iterator(VariableSet rest) : rest_(rest) {}
        constexpr int operator*() const { return Lowest(rest_); }
        constexpr iterator& operator++() {
            rest_ &= rest_ - 1;
            return *this;
        }
        constexpr bool operator==(const iterator&) const = default;

      private:
        VariableSet rest_;
    };
    constexpr iterator begin() const { return iterator(set_); }
    constexpr iterator end() const { return iterator(0); }

  private:
    VariableSet set_;
};

}  // namespace tarven
