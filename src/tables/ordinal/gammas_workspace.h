#pragma once

#include <vector>

namespace tarven {

/// The gammas of all pairs of project variables, as the last GAMMA or the GAM file gave them.
struct ProjectGammas {
    /// Where there is no gamma: nominal variables, the diagonal, pairs that cannot be tested.
    static constexpr double None = 999;
    std::vector<double> IJXgamma;  ///< of variables i and j, from 1: at (i-1) * N + j-1
    bool ready = false;            ///< until variables, data or the project graph change
    bool marginal = false;         ///< of GAMMA M: they tell nothing of the project graph
    bool from_file = false;        ///< of a GAM file, which may be one of another model
};

inline ProjectGammas The_project_gammas;

}  // namespace tarven
