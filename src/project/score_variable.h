#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "shell/limits.h"

namespace tarven {

/// The score of the current items, in groups, as a variable of tables with the label "#": what
/// counting needs of it. The floor of the items sets it; floors below read it without knowing what
/// an item is.

/// A variable whose categories count: category c of dim gives c-1 points, or dim-c when flipped.
struct ScoredVariable {
    int variable = 0;  ///< project variable number
    int dim = 2;
    bool flipped = false;
};

struct ScoreVariable {
    std::vector<ScoredVariable> items;     ///< dims less 1 sum to at most MaxTotalScore
    std::vector<std::uint8_t> group_of;    ///< [score] its group from 1 on, 0 outside every group
    std::vector<std::string> group_names;  ///< group g at g-1
    int block = 0;                         ///< recursive block of the score

    int groups() const { return static_cast<int>(group_names.size()); }  ///< 0: there is no score
};

inline ScoreVariable The_score;

inline constexpr char ScoreLabelOfTables = '#';
inline constexpr const char* ScoreNameOfTables = "ScoreGrp";

/// Gives each case its score group.
class ScoreReader {
  public:
    /// Cases are rows of N codes. An empty score gives group 0 to all.
    ScoreReader(const ScoreVariable& score, int N);

    /// The group of the case of codes[v-1] of project variable v: 0 when a response is missing or
    /// out of range, or when the score is in no group.
    int Group(const std::uint8_t* codes) const {
        Bytes bad{}, points{};
        for (int k = 0; k < count_; ++k) {
            const Part& part = parts_[static_cast<std::size_t>(k)];
            Bytes code{};
            if (part.length == sizeof code)
                std::memcpy(&code, codes + part.place, sizeof code);
            else
                std::memcpy(&code, codes, part.length);
            const Bytes step = code - 1;  // a missing 0 becomes 255, which is above every limit
            bad |= Bytes(step > part.highest);
            points += (step ^ part.flipped) & part.used;
        }
        Halves halves;
        std::memcpy(&halves, &bad, sizeof halves);
        if ((halves[0] | halves[1]) != 0) return 0;
        // The score is below 256, so sums of bytes may wrap. They are added up in lanes of two
        // bytes.
        std::memcpy(&halves, &points, sizeof halves);
        constexpr std::uint64_t Low = 0x00FF00FF00FF00FF, Ones = 0x0001000100010001;
        const std::uint64_t lanes =
            (halves[0] & Low) + (halves[0] >> 8 & Low) + (halves[1] & Low) + (halves[1] >> 8 & Low);
        const std::uint64_t sum = lanes * Ones >> 48;
        return group_of_[static_cast<std::uint8_t>(sum + constant_)];
    }

  private:
    using Bytes [[gnu::vector_size(16)]] = std::uint8_t;
    using Halves = std::array<std::uint64_t, 2>;
    /// Sixteen columns of a case, or all of them when there are fewer.
    struct Part {
        std::size_t place = 0;   ///< of the first column, from 0
        std::size_t length = 0;  ///< 16, or N when there are fewer columns
        Bytes highest{};         ///< last step of a scored column, 255 in the others
        Bytes flipped{};         ///< 255 where steps count downwards
        Bytes used{};            ///< 255 in the columns that this part adds up
    };
    std::array<Part, (MaxVariables + 15) / 16 + 1> parts_{};
    int count_ = 0;
    std::uint64_t constant_ = 0;  ///< what the flipped columns lack: step ^ 255 is -1 - step
    std::array<std::uint8_t, 256> group_of_{};
};

}  // namespace tarven
