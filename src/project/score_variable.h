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
        if (narrow_) {
            Add(Narrow_case(codes), parts_[0], bad, points);
        } else {
            for (const Part *part = parts_.data(), *end = part + count_; part != end; ++part) {
                Bytes code;
                std::memcpy(&code, codes + part->place, sizeof code);
                Add(code, *part, bad, points);
            }
        }
        const auto faults = Words(bad);
        if ((faults[0] | faults[1]) != 0) return 0;
        // The score is below 256, so sums of bytes may wrap. They are added up in lanes of two
        // bytes.
        constexpr std::uint64_t Low = 0x00FF00FF00FF00FF, Ones = 0x0001000100010001;
        const Words halves = (Words(points) & Low) + (Words(points) >> 8 & Low);
        const std::uint64_t sum = (halves[0] + halves[1]) * Ones >> 48;
        return group_of_[static_cast<std::uint8_t>(sum + constant_)];
    }

  private:
    using Bytes [[gnu::vector_size(16)]] = std::uint8_t;
    using Words [[gnu::vector_size(16)]] = std::uint64_t;
    /// Sixteen columns of a case.
    struct Part {
        Bytes highest{};        ///< last step of a scored column, 255 in the others
        Bytes flipped{};        ///< 255 where steps count downwards
        Bytes used{};           ///< 255 in the columns that this part adds up
        std::size_t place = 0;  ///< of the first column, from 0
    };

    /// A case of less than sixteen columns: two words that overlap, or the columns one by one.
    Bytes Narrow_case(const std::uint8_t* codes) const {
        Words words{};
        if (columns_ >= sizeof words[0]) {
            std::uint64_t first, last;
            std::memcpy(&first, codes, sizeof first);
            std::memcpy(&last, codes + columns_ - sizeof last, sizeof last);
            words = Words{first, last};
            return Bytes(words);
        }
        Bytes code{};
        for (std::size_t k = 0; k < columns_; ++k) code[k] = codes[k];
        return code;
    }
    /// Where a column stands in the parts, and in that part.
    struct Place {
        std::size_t part = 0, at = 0;
    };
    Place Place_of(std::size_t column) const;

    static void Add(const Bytes& code, const Part& part, Bytes& bad, Bytes& points) {
        const Bytes step = code - 1;  // a missing 0 becomes 255, which is above every limit
        bad |= Bytes(step > part.highest);
        points += (step ^ part.flipped) & part.used;
    }

    std::array<Part, (MaxVariables + 15) / 16 + 1> parts_{};
    int count_ = 0;
    std::size_t columns_ = 0;
    bool narrow_ = false;         ///< a case has less than sixteen columns
    std::uint64_t constant_ = 0;  ///< what the flipped columns lack: step ^ 255 is -1 - step
    std::array<std::uint8_t, 256> group_of_{};
};

}  // namespace tarven
