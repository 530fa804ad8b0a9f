#pragma once

#include <string>
#include <vector>

#include "rasch/items/gllrm.h"

namespace tarven {

/// How the latent variable and the score are called.
struct ScaleNames {
    char ThetaLabel = 'T';
    std::string Thetaname = "Theta";
    char ScoreLabel = 'S';
    std::string Scorename = "Score";
};

/// A picture of the model in lines of text: the items hang on a stem from the latent variable down
/// to the score; items that depend on each other are joined by rails on the right, one rail for an
/// item and the later items it depends on; arrows come from the sources of DIF. Rails that do not
/// overlap share a column. With more than MostRails columns the dependences are named instead.
std::vector<std::string> Model_picture(const GLLRM& model, const ScaleNames& names);

inline constexpr int MostRails = 12;

}  // namespace tarven
