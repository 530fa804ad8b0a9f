#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "tables/draws/random_table.h"

namespace tarven {

/// The fast road to the cells of random tables: every draw is exactly that of `Cell_for_uniform`,
/// at a tenth of its cost. Two means:
///
/// - The probabilities are walked by their ratio p(x+1)/p(x) in doubles. The ratio is that of the
///   stored log factorials, not the textbook's quotient, since above 1000 these differ. The sum so
///   made is within a proven bound of the prescribed one (see Walk_bound). Only where U lies within
///   the bound of a cumulative probability is the prescribed sum made; that is rare.
/// - A uniform number is a word of 32 bits, so the cumulative probabilities of a cell can be kept
/// as
///   words: value k is drawn when the word is above threshold k-1 and not above threshold k. Such
///   rows are exact, since a threshold that the bound leaves open is settled by the prescribed sum.

/// exp of the stored log factorials, split so that products of nine neither overflow nor lose
/// digits.
struct FactorialFactors {
    std::vector<double> mantissa;          ///< n! = mantissa 2^exponent, in [1, 2)
    std::vector<double> inverse_mantissa;  ///< 1 / mantissa
    std::vector<std::int32_t> exponent;
    std::vector<double> inverse_ratio;  ///< (n-1)! / n!: 1/n, but for rounding and beyond 1000
    /// n! / (n-1)!, after `Margin` zeros: a walk may run a few values beyond the range of its cell,
    /// where the ratio to a negative number makes the probability 0.
    std::vector<double> padded_ratio = std::vector<double>(Margin);
    static constexpr std::size_t Margin = 8;

    /// For totals up to ProductTop p(x) is a plain product of 2^7n / n! and their inverses, whose
    /// powers of two cancel and keep every product of a cell in range. The first stand after
    /// `Margin` zeros, forwards and backwards, so that neighbouring x stand side by side.
    static constexpr std::int64_t ProductTop = 512, Scale = 7;
    std::vector<double> padded_share = std::vector<double>(2 * Margin + ProductTop + 1);
    std::vector<double> backward_share = std::vector<double>(2 * Margin + ProductTop + 1);
    std::vector<double> inverse_share;

    const double* share() const { return padded_share.data() + Margin; }
    /// Where the share of n stands at place -n.
    const double* share_backwards() const { return backward_share.data() + Margin + ProductTop; }
    const double* ratio() const { return padded_ratio.data() + Margin; }
    std::int64_t size() const { return static_cast<std::int64_t>(inverse_ratio.size()); }
    /// Makes the tables cover 0..top; they never shrink.
    void Cover(std::int64_t top);
};

/// Totals up to here are tabulated; larger ones take their ratios from a formula.
inline constexpr std::int64_t FactorTableTop = 1 << 17;

/// The cumulative distribution of one cell in words, in groups of eight values of the outward
/// order: a group is eight thresholds (word - 2^31, as signed numbers) and then the eight values.
/// The last threshold of a row is the largest number, as are those beyond its length.
struct CellRow {
    std::vector<std::int32_t> groups;
    std::size_t length = 0;  ///< values

    std::int32_t& Threshold(std::size_t k) { return groups[k / 8 * 16 + k % 8]; }
    std::int32_t& Value(std::size_t k) { return groups[k / 8 * 16 + 8 + k % 8]; }
    void Push(std::int32_t threshold, std::int32_t value);
};

/// How many of eight thresholds lie below a word.
inline std::size_t Thresholds_below(const std::int32_t* threshold, std::uint32_t word) {
    using Four = std::int32_t __attribute__((vector_size(16)));
    const auto w = static_cast<std::int32_t>(word ^ 0x80000000u);
    Four low, high;
    std::memcpy(&low, threshold, sizeof low);
    std::memcpy(&high, threshold + 4, sizeof high);
    const Four below = (low < w) + (high < w);  // -1 for each
    return static_cast<std::size_t>(-(below[0] + below[1] + below[2] + below[3]));
}

/// The place (in `groups`) of the value that a word draws: the first whose threshold it is not
/// above.
inline std::size_t Place_in_row(const std::int32_t* groups, std::uint32_t word) {
    for (std::size_t group = 0;; group += 16) {
        const std::size_t below = Thresholds_below(groups + group, word);
        if (below < 8) return group + 8 + below;
    }
}

/// Working memory of the drawing, to be reused from hypothesis to hypothesis: tables of factors and
/// rows of cells met before. Nothing in it changes a result.
class DrawMemory {
  public:
    DrawMemory();

    /// Prepares for tables of this total.
    void Cover(std::int64_t total);

    /// The value that a word draws for a cell with r, c and N left, N >= 1, 0 <= r, c <= N. A cell
    /// that hardly `recurs` is drawn without looking for its row.
    std::int32_t Cell(std::int64_t r, std::int64_t c, std::int64_t N, std::uint32_t word,
                      bool recurs = true);

    /// Fills the whole row of a cell. False when it would be longer than `longest` values, or N is
    /// not covered by the tables.
    bool Row(const CellDraw& cell, std::size_t longest, CellRow& row) const;

    /// How often the prescribed sum had to decide; for tests and figures.
    std::int64_t settled_plainly = 0;

  private:
    /// A cell that was met, and once it was met often the first eight values of its row: one line
    /// of the cache.
    struct alignas(64) Slot {
        std::uint64_t key = 0;
        std::int32_t met = 0;
        /// -1: no row yet; 0: it ends in this line; else where it goes on in pool_.
        std::int32_t more = -1;
        std::int32_t threshold[8] = {};
        std::int16_t value[8] = {};
    };
    std::int32_t Walk(std::int64_t r, std::int64_t c, std::int64_t N, double U);
    std::int32_t Walk_by_ratios(const CellDraw& cell, double U);
    void Keep_row(Slot& slot, const CellDraw& cell);
    void Forget_rows();

    FactorialFactors factors_;
    std::vector<Slot> slots_;
    std::vector<std::int32_t> pool_;  ///< groups of rows
    CellRow scratch_;
};

/// What the ratio walk may be off, relative to the prescribed sum, after `terms` terms:
/// with stored logs L up to ln N! and u = 2^-53
/// - the prescribed exponent is a sum of nine logs with partial sums up to 2L in 64 bits: 2^-60 L;
/// - each tabulated mantissa carries L 2^-63 from its reduction by ln 2: 2^-59 L for nine;
/// - nine mantissas, eight products: 17u; four ratios and four products a step, and a sum: 9u a
///   term;
/// - beyond the tables the ratio does not know how the logs were rounded, 9 uL, and its quotients
/// are
///   rounded oftener, which is less than the 7 uL that are added for it.
/// - a value made as one product of tabulated factors has the same nine factors and eight products.
/// The result bounds their sum; sums of probabilities are at most 1, so it holds absolutely too.
inline double Walk_bound(double bound_of_logs, std::int64_t terms) {
    return bound_of_logs + 0x1p-49 * static_cast<double>(terms + 2);
}
/// The part of the logs, for L <= N ln N.
double Bound_of_logs(std::int64_t N);

/// Whether rows and columns are not negative and both sum to the total, as margins of counts do.
/// Margins of fitted tables may fail it by rounding; they are drawn by the plain arithmetic.
bool Margins_agree(const Margins& margins);

/// Draws the cells of a table, the same from the same numbers as `Random_table`, row by row into
/// cells[0..R*C-1]. The margins must agree and their total be covered. Returns the advanced stream.
RandomStream Draw_cells(const Margins& margins, RandomStream stream, DrawMemory& memory,
                        std::int32_t* cells);

/// Tables drawn side by side: cell k of table t is cells[k][t].
inline constexpr std::size_t SideBySide = 4;
using CellsSideBySide = std::array<std::int32_t, SideBySide>;

/// Four tables with the same margins, each from a stream of its own as `Draw_cells` draws it.
/// Within a table each draw waits for the one before, so the four are drawn in turn, cell by cell.
void Draw_cells_side_by_side(const Margins& margins, std::array<RandomStream, SideBySide>& streams,
                             DrawMemory& memory, CellsSideBySide* cells);

/// A table with its margins, as `Random_table` draws it, whatever the margins.
void Draw_table(const Margins& margins, RandomStream& stream, DrawMemory& memory,
                TwoWayTable& table);

}  // namespace tarven
