#include "tables/ordinal/gamma_matrix.h"

namespace tarven {

GammaMatrix Gammas_of_pairs(const std::string& labels, std::span<const TwoWayTable> tables) {
    auto table = tables.begin();
    GammaMatrix matrix{labels, std::vector<GammaRecord>(labels.size() * labels.size())};
    for (std::size_t i = 0; i < labels.size(); ++i)
        for (std::size_t j = i + 1; j < labels.size(); ++j)
            matrix.gammas[i * labels.size() + j] = Gamma_of_table(*table++);
    return matrix;
}

}  // namespace tarven
