#include "project/score_variable.h"

#include <algorithm>
#include <cassert>

namespace tarven {

ScoreReader::Place ScoreReader::Place_of(std::size_t column) const {
    constexpr std::size_t Width = sizeof(Bytes), Half = Width / 2;
    if (narrow_ && columns_ >= Half) return {0, column < Half ? column : column + Width - columns_};
    const std::size_t part = std::min(column / Width, static_cast<std::size_t>(count_ - 1));
    return {part, column - parts_[part].place};
}

ScoreReader::ScoreReader(const ScoreVariable& score, int N) {
    assert(N >= 1 && N <= MaxVariables && "cases are rows of the project's variables");
    columns_ = static_cast<std::size_t>(N);
    constexpr std::size_t Width = sizeof(Bytes);
    narrow_ = columns_ < Width;
    // Where the columns are no multiple of sixteen the last part reaches back over the one before.
    for (std::size_t at = 0; at < columns_; at += Width) {
        Part& part = parts_[static_cast<std::size_t>(count_++)];
        part.place = narrow_ ? 0 : std::min(at, columns_ - Width);
        for (std::size_t k = 0; k < Width; ++k) part.highest[k] = 255;
    }
    for (const ScoredVariable& item : score.items) {
        assert(item.variable >= 1 && item.variable <= N && item.dim >= 1);
        const auto [k, at] = Place_of(static_cast<std::size_t>(item.variable - 1));
        Part& part = parts_[k];
        part.highest[at] = static_cast<std::uint8_t>(item.dim - 1);
        part.used[at] = 255;
        part.flipped[at] = item.flipped ? 255 : 0;
        if (item.flipped) constant_ += static_cast<std::uint64_t>(item.dim);
    }
    for (std::size_t s = 0; s < std::min(score.group_of.size(), group_of_.size()); ++s)
        group_of_[s] = score.group_of[s];
}

}  // namespace tarven
