#pragma once

#include <cstdint>
#include <vector>

namespace tarven {

inline constexpr std::uint8_t NoResponse = 255;

/// The persons as item analysis reads them: the distinct patterns of item scores and exogenous
/// categories with their counts. Simulated samples are tables of the same form.
struct ResponseTable {
    int NITEMS = 0;
    int NEXOGENE = 0;
    /// Pattern p from 0: score of item i (0..7, flipped items reversed, NoResponse when missing or
    /// out of range) at p * width() + i-1, category of exogenous variable x (1..exo_dim, 0 missing)
    /// at p * width() + NITEMS + x-1.
    std::vector<std::uint8_t> codes;
    std::vector<std::int32_t> counts;  ///< of pattern p, above 0

    std::size_t width() const {
        return static_cast<std::size_t>(NITEMS) + static_cast<std::size_t>(NEXOGENE);
    }
    std::size_t size() const { return counts.size(); }
    const std::uint8_t* Scores(std::size_t p) const { return codes.data() + p * width(); }
    const std::uint8_t* Exo(std::size_t p) const {
        return Scores(p) + static_cast<std::size_t>(NITEMS);
    }
};

}  // namespace tarven
