#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tables/gamma.h"
#include "tables/two_way.h"

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

/// The gammas of all pairs of project variables, as the last GAMMA found them.
struct ProjectGammas {
    static constexpr double None =
        999;                       ///< where there is no gamma: nominal variables, the diagonal
    std::vector<double> IJXgamma;  ///< of variables i and j, from 1: at (i-1) * N + j-1
    bool ready = false;            ///< until the variables change
};

inline ProjectGammas The_project_gammas;

/// `table_of(i, j)` gives the two-way table of two of them, from 0, i < j.
GammaMatrix Gammas_of_pairs(const std::string& labels,
                            const std::function<TwoWayTable(std::size_t, std::size_t)>& table_of);

/// The coefficients above the diagonal and their one-sided p-values below, or the generalized odds
/// ratios.
std::vector<std::string> Gamma_matrix_lines(const GammaMatrix& matrix, bool odds_ratios);

}  // namespace tarven
