#pragma once

#include <span>
#include <string>
#include <vector>

#include "tables/table/gamma.h"
#include "tables/table/two_way.h"

namespace tarven {

/// Gammas of all pairs of some variables.
struct GammaMatrix {
    std::string labels;  ///< of the variables, in order
    /// Of variables i and j, i < j, from 0: at i * size + j; the others stay at their start value.
    std::vector<GammaRecord> gammas;

    const GammaRecord& At(std::size_t i, std::size_t j) const {
        return gammas[i * labels.size() + j];
    }
};

/// `tables` holds the two-way tables of the pairs, i < j, i ascending, then j.
GammaMatrix Gammas_of_pairs(const std::string& labels, std::span<const TwoWayTable> tables);

}  // namespace tarven
