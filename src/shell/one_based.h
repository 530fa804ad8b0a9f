#pragma once

#include <array>
#include <cassert>
#include <cstddef>

namespace tarven {

/// A table of fixed capacity N whose entries are numbered 1..N, as variables, categories and
/// blocks are. Slot 0 exists and stays at its start value, so that a loop may look one entry back.
/// The range is asserted in debug builds.
template <class T, std::size_t N>
struct One_based {
    std::array<T, N + 1> entries{};

    T& operator[](std::size_t i) {
        assert(i <= N && "index of a one-based table out of range");
        return entries[i];
    }
    const T& operator[](std::size_t i) const {
        assert(i <= N && "index of a one-based table out of range");
        return entries[i];
    }
    static constexpr std::size_t capacity() { return N; }
    bool operator==(const One_based&) const = default;
};

}  // namespace tarven
