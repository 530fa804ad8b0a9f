#pragma once

#include <vector>

namespace tarven {

/// The gammas of all pairs of project variables, as the last GAMMA found them.
struct ProjectGammas {
    static constexpr double None =
        999;                       ///< where there is no gamma: nominal variables, the diagonal
    std::vector<double> IJXgamma;  ///< of variables i and j, from 1: at (i-1) * N + j-1
    bool ready = false;            ///< until the variables change
};

inline ProjectGammas The_project_gammas;

}  // namespace tarven
