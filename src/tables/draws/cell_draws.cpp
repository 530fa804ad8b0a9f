#include "tables/draws/cell_draws.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

#include "tables/numbers/log_factorial.h"

namespace tarven {

namespace {

// Slots and rows together should stay within a second-level cache.
constexpr std::size_t slot_bits = 12;
constexpr std::size_t pool_size = 1 << 16;
constexpr std::size_t longest_kept_row = 256;
constexpr std::int32_t met_often = 4;
constexpr std::int64_t largest_kept_margin = 32767;
constexpr double bound_within_tables = 0x1p-37;  // Bound_of_logs(FactorTableTop)
constexpr std::int32_t top_threshold = std::numeric_limits<std::int32_t>::max();

std::size_t Offset(std::int64_t n) {
    return static_cast<std::size_t>(n);
}

/// x rounded to the nearest integer, ties to even, for 0 <= x < 2^51, without a call.
std::int64_t Rounded(double x) {
    constexpr double shift = 0x1.8p52;
    return static_cast<std::int64_t>((x + shift) - shift);
}

CellDraw Fast_cell_draw(std::int64_t r, std::int64_t c, std::int64_t N) {
    const double share = static_cast<double>(c) / static_cast<double>(N);
    return {r,
            c,
            N,
            Rounded(share * static_cast<double>(r)),
            std::max<std::int64_t>(0, r + c - N),
            std::min(r, c)};
}

/// Ratios of neighbouring factorials when N is tabulated.
struct TabulatedRatios {
    const double* ratio;
    const double* inverse;
    double of(std::int64_t n) const { return ratio[n]; }
    double inverse_of(std::int64_t n) const { return inverse[n]; }
};

/// The same for any N, once the tables are full. Above 1000 the ratio of the stored formula is n
/// exp(1/(24 n^2) + ...), so n + 1/(24 n) is good to n^-3, which is nothing beyond the tables.
struct AnyRatios {
    const FactorialFactors& factors;
    double of(std::int64_t n) const {
        if (n < factors.size()) return n > 0 ? factors.ratio()[n] : 0;
        const auto m = static_cast<double>(n);
        return m + 1 / (24 * m);
    }
    double inverse_of(std::int64_t n) const { return 1 / of(n); }
};

/// The probabilities of a cell in outward order, in doubles. Up and down keep their own place.
template <class Ratios>
struct OutwardWalk {
    const Ratios& ratios;
    std::int64_t r, c, rest;  // rest: N - r - c
    std::int64_t x_up, x_down;
    double p_up, p_down;

    OutwardWalk(const Ratios& g, const CellDraw& cell, double p0)
        : ratios(g),
          r(cell.r),
          c(cell.c),
          rest(cell.N - cell.r - cell.c),
          x_up(cell.x0),
          x_down(cell.x0),
          p_up(p0),
          p_down(p0) {}

    double Up() {
        const std::int64_t x = x_up++;
        return p_up *= (ratios.of(r - x) * ratios.of(c - x)) *
                       (ratios.inverse_of(x + 1) * ratios.inverse_of(rest + x + 1));
    }
    double Down() {
        const std::int64_t x = x_down--;
        return p_down *= (ratios.of(x) * ratios.of(rest + x)) *
                         (ratios.inverse_of(r - x + 1) * ratios.inverse_of(c - x + 1));
    }
};

/// The value at an index of the outward order x0, x0+1, x0-1, ..., which alternates as long as both
/// sides last and then keeps to one.
std::int32_t Outward_value(const CellDraw& cell, std::int64_t index) {
    const std::int64_t below = cell.x0 - cell.low, above = cell.high - cell.x0;
    const std::int64_t both = std::min(below, above);
    const bool upwards = index > 2 * both ? below <= above : index % 2 == 1;
    const std::int64_t step = index > 2 * both ? index - both : (index + 1) / 2;
    return static_cast<std::int32_t>(upwards ? cell.x0 + step : cell.x0 - step);
}

/// p(x0) from the tabulated factors.
double First_probability(const FactorialFactors& f, const CellDraw& cell) {
    const auto [r, c, N, x, low, high] = cell;
    const double* m = f.mantissa.data();
    const double* v = f.inverse_mantissa.data();
    const std::int32_t* e = f.exponent.data();
    const std::int64_t rest = N - r - c + x;
    const double product =
        ((m[r] * m[N - r]) * (m[c] * m[N - c])) * ((v[x] * v[r - x]) * (v[c - x] * v[rest])) * v[N];
    const std::int32_t power =
        e[r] + e[N - r] + e[c] + e[N - c] - e[x] - e[r - x] - e[c - x] - e[rest] - e[N];
    assert(power > -1000 && power < 1000 && "x0 lies at the mode, where p is no smaller than 1/N");
    return product * std::bit_cast<double>(static_cast<std::uint64_t>(1023 + power) << 52);
}

/// Calls take(x, p) for the cell's values in outward order until it returns true or all are met.
template <class Ratios, class Take>
void For_each_outward(const Ratios& ratios, const CellDraw& cell, double p0, Take take) {
    OutwardWalk<Ratios> walk(ratios, cell, p0);
    if (take(cell.x0, p0)) return;
    const std::int64_t below = cell.x0 - cell.low, above = cell.high - cell.x0;
    const std::int64_t both = std::min(below, above);
    for (std::int64_t k = 1; k <= both; ++k) {
        if (const double p = walk.Up(); take(cell.x0 + k, p)) return;
        if (const double p = walk.Down(); take(cell.x0 - k, p)) return;
    }
    for (std::int64_t k = both + 1; k <= above; ++k)
        if (const double p = walk.Up(); take(cell.x0 + k, p)) return;
    for (std::int64_t k = both + 1; k <= below; ++k)
        if (const double p = walk.Down(); take(cell.x0 - k, p)) return;
}

/// Goes on value by value after k pairs with the given sum, which is below U.
template <class Ratios>
bool Walk_on(OutwardWalk<Ratios>& walk, const CellDraw& cell, std::int64_t k, std::int64_t both,
             std::int64_t longer, double sum, double U, double bound, std::int32_t& index) {
    const bool upwards = cell.high - cell.x0 >= cell.x0 - cell.low;
    double missing = U - sum, missing_before = missing;
    index = static_cast<std::int32_t>(k <= both ? 2 * k : both + std::min(k, longer));
    const auto taken = [&](double p) {
        ++index;
        missing_before = missing;
        missing -= p;
        return missing <= 0;
    };
    for (++k; k <= both; ++k)
        if (taken(walk.Up()) || taken(walk.Down()))
            return -missing > bound && missing_before > bound;
    for (; k <= longer; ++k)
        if (taken(upwards ? walk.Up() : walk.Down()))
            return -missing > bound && missing_before > bound;
    return missing > bound;  // the last value stands
}

/// The index for U in the outward order; false when the bound leaves it open. Four pairs of values
/// are summed at a time without a branch. The first four may run beyond the range of the cell,
/// where they add nothing.
template <class Ratios>
bool Walk_to(const Ratios& ratios, const CellDraw& cell, double p0, double U, double bound,
             std::int32_t& index) {
    OutwardWalk<Ratios> walk(ratios, cell, p0);
    const std::int64_t below = cell.x0 - cell.low, above = cell.high - cell.x0;
    const std::int64_t both = std::min(below, above), longer = std::max(below, above);
    constexpr int group = 4;
    std::array<double, 1 + 2 * group> sum;
    sum[0] = p0;
    index = 0;
    std::int64_t k = 0;
    do {
        for (std::size_t last = 2; last < sum.size(); last += 2) {
            sum[last - 1] = sum[last - 2] + walk.Up();
            sum[last] = sum[last - 1] + walk.Down();
        }
        int short_of_U = 0;
        for (const double s : sum) short_of_U += s < U;
        if (short_of_U <= 2 * group) {
            const std::int64_t alternating = 2 * k + short_of_U;
            index = static_cast<std::int32_t>(
                alternating <= 2 * both ? alternating : both + (alternating + 1) / 2);
            const double over = sum[static_cast<std::size_t>(short_of_U)] - U;
            const double missing =
                short_of_U == 0 ? 1 : U - sum[static_cast<std::size_t>(short_of_U - 1)];
            return over > bound && missing > bound;
        }
        k += group;
        sum[0] = sum.back();
    } while (k + group <= both);
    return Walk_on(walk, cell, k, both, longer, sum[0], U, bound, index);
}

/// The value for U by products, for N up to ProductTop; false when the bound leaves it open or U
/// lies beyond the range of the side that is shorter. Four pairs of values are met at a time,
/// without a branch; beyond the range of the cell they add nothing.
bool Walk_by_products(const FactorialFactors& f, std::int64_t r, std::int64_t c, std::int64_t N,
                      double U, double bound, std::int32_t& value) {
    using Two = double __attribute__((vector_size(16)));
    const double* inverse = f.inverse_share.data();
    const double* of_x = f.share();
    const double* of_rest = f.share() + (N - r - c);
    const double* of_row = f.share_backwards() - r;
    const double* of_column = f.share_backwards() - c;
    const double whole = ((inverse[r] * inverse[N - r]) * (inverse[c] * inverse[N - c])) * of_x[N];
    const auto p_of_two = [&](std::int64_t x) {  // of x and x + 1
        const auto at = [x](const double* place) {
            Two two;
            std::memcpy(&two, place + x, sizeof two);
            return two;
        };
        return (at(of_x) * at(of_rest)) * (at(of_row) * at(of_column)) * whole;
    };
    const std::int64_t x0 =
        Rounded(static_cast<double>(c) / static_cast<double>(N) * static_cast<double>(r));
    // Cumulative sums: -1, that up to here, four that end above x0 and four that end below; their
    // places in outward order, and the values there.
    std::array<double, 10> sum;
    constexpr std::array<std::uint8_t, 10> place = {0, 1, 2, 6, 3, 7, 4, 8, 5, 9};
    constexpr std::array<std::int8_t, 9> step = {0, 1, -1, 2, -2, 3, -3, 4, -4};
    constexpr std::array<std::int8_t, 9> side = {0, 1, -1, 1, -1, 1, -1, 1, -1};
    sum[0] = -1;
    sum[1] = ((of_x[x0] * of_rest[x0]) * (of_row[x0] * of_column[x0])) * whole;
    for (std::int64_t k = 0;; k += 4) {
        const Two up_1 = p_of_two(x0 + k + 1), up_3 = p_of_two(x0 + k + 3);
        const Two down_2 = p_of_two(x0 - k - 2), down_4 = p_of_two(x0 - k - 4);
        const Two both_1 = up_1 + Two{down_2[1], down_2[0]};
        const Two both_3 = up_3 + Two{down_4[1], down_4[0]};
        const double sum_1 = sum[1] + both_1[0], sum_2 = sum[1] + (both_1[0] + both_1[1]);
        const double sum_3 = sum_2 + both_3[0], sum_4 = sum_2 + (both_3[0] + both_3[1]);
        const Two above_1 = Two{sum[1], sum_1} + up_1, above_3 = Two{sum_2, sum_3} + up_3;
        const Two below_1 = {sum_1, sum_2}, below_3 = {sum_3, sum_4};
        std::memcpy(&sum[2], &above_1, sizeof above_1);
        std::memcpy(&sum[4], &above_3, sizeof above_3);
        std::memcpy(&sum[6], &below_1, sizeof below_1);
        std::memcpy(&sum[8], &below_3, sizeof below_3);
        const auto short_of_U = (above_1 < U) + (above_3 < U) + (below_1 < U) + (below_3 < U);
        const auto index = static_cast<std::size_t>((sum[1] < U) - short_of_U[0] - short_of_U[1]);
        if (index < step.size()) {
            value = static_cast<std::int32_t>(x0 + step[index] + side[index] * k);
            const double over = sum[place[index + 1]] - U, missing = U - sum[place[index]];
            return (over > bound) & (missing > bound);
        }
        if (k + 4 > std::min(std::min(x0, N - r - c + x0), std::min(r, c) - x0)) return false;
        sum[1] = sum_4;
    }
}

/// The prescribed cumulative sums of a cell, made as far as they are asked for.
struct PrescribedSums {
    const CellDraw& cell;
    std::int64_t done = -1;  ///< the index of the outward order up to which the sum goes
    Extended sum = 0;

    Extended Up_to(std::int64_t index) {
        while (done < index) sum += Cell_probability(cell, Outward_value(cell, ++done));
        return sum;
    }
};

std::int32_t Threshold_of_word(double word) {
    return static_cast<std::int32_t>(static_cast<std::int64_t>(word) - 0x80000000);
}

}  // namespace

void CellRow::Push(std::int32_t threshold, std::int32_t value) {
    if (length % 8 == 0) groups.resize(groups.size() + 16, top_threshold);
    Threshold(length) = threshold;
    Value(length) = value;
    ++length;
}

double Bound_of_logs(std::int64_t N) {
    const double L = N <= 1 ? 1 : static_cast<double>(N) * std::log(static_cast<double>(N));
    return N <= FactorTableTop ? 0x1p-58 * L : 0x1p-49 * L;
}

void FactorialFactors::Cover(std::int64_t top) {
    const std::int64_t first = size();
    if (std::min(top, FactorTableTop) < first) return;
    top = std::min(std::max(top, first + first / 2), FactorTableTop);
    double log_before = first > 0 ? static_cast<double>(Log_factorial(first - 1)) : 0;
    for (std::int64_t n = first; n <= top; ++n) {
        const auto log_factorial = static_cast<double>(Log_factorial(n));
        const Extended L = log_factorial;
        const Extended whole = std::floor(L * std::numbers::log2e_v<Extended>);
        const Extended m = std::exp(L - whole * std::numbers::ln2_v<Extended>);
        mantissa.push_back(static_cast<double>(m));
        inverse_mantissa.push_back(static_cast<double>(1 / m));
        exponent.push_back(static_cast<std::int32_t>(whole));
        if (n <= ProductTop + static_cast<std::int64_t>(Margin)) {
            const int power = static_cast<int>(whole) - static_cast<int>(Scale * n);
            const double share = std::ldexp(inverse_mantissa.back(), -power);
            padded_share[Margin + Offset(n)] = share;
            backward_share[Offset(ProductTop + static_cast<std::int64_t>(Margin) - n)] = share;
            inverse_share.push_back(std::ldexp(mantissa.back(), power));
        }
        const Extended g = std::exp(L - static_cast<Extended>(log_before));
        padded_ratio.push_back(n > 0 ? static_cast<double>(g) : 0);
        inverse_ratio.push_back(static_cast<double>(1 / g));
        log_before = log_factorial;
    }
}

DrawMemory::DrawMemory() : slots_(std::size_t{1} << slot_bits) {
    Forget_rows();
}

void DrawMemory::Forget_rows() {
    std::fill(slots_.begin(), slots_.end(), Slot{});
    pool_.assign(16, 0);  // place 0 stands for none
}

void DrawMemory::Cover(std::int64_t total) {
    // A walk may look a few values beyond its range.
    factors_.Cover(total + static_cast<std::int64_t>(FactorialFactors::Margin));
}

bool DrawMemory::Row(const CellDraw& cell, std::size_t longest, CellRow& row) const {
    row.groups.clear();
    row.length = 0;
    if (cell.N >= factors_.size()) return false;
    const double bound_of_logs = Bound_of_logs(cell.N);
    double sum = 0;
    bool too_long = false;
    PrescribedSums prescribed{cell};
    For_each_outward(
        TabulatedRatios{factors_.ratio(), factors_.inverse_ratio.data()}, cell,
        First_probability(factors_, cell), [&](std::int64_t x, double p) {
            const std::size_t index = row.length;
            too_long = index == longest;
            if (too_long) return true;
            sum += p;
            double limit = sum * 0x1p32;  // in units of the last bit of a word
            const double open = limit * Walk_bound(bound_of_logs, static_cast<std::int64_t>(index));
            bool whole = limit - open >= 0xFFFFFFFF;
            if (!whole && std::floor(limit - open) != std::floor(limit + open)) {
                const Extended exact = prescribed.Up_to(static_cast<std::int64_t>(index)) * 0x1p32L;
                limit = static_cast<double>(std::floor(exact));
                whole = exact >= 0xFFFFFFFF;
            }
            row.Push(whole ? top_threshold : Threshold_of_word(std::floor(limit)),
                     static_cast<std::int32_t>(x));
            return whole;
        });
    if (too_long) return false;
    row.Threshold(row.length - 1) = top_threshold;  // the last value stands
    return true;
}

void DrawMemory::Keep_row(Slot& slot, const CellDraw& cell) {
    if (!Row(cell, longest_kept_row, scratch_)) {
        slot.met = -30000;  // not soon again
        return;
    }
    const std::vector<std::int32_t>& groups = scratch_.groups;
    if (pool_.size() + groups.size() > pool_size) {
        const std::uint64_t key = slot.key;
        Forget_rows();
        slot.key = key;
    }
    for (std::size_t k = 0; k < 8; ++k) {
        slot.threshold[k] = groups[k];
        slot.value[k] = static_cast<std::int16_t>(groups[8 + k]);
    }
    slot.more = groups.size() > 16 ? static_cast<std::int32_t>(pool_.size()) : 0;
    pool_.insert(pool_.end(), groups.begin() + 16, groups.end());
}

std::int32_t DrawMemory::Walk(std::int64_t r, std::int64_t c, std::int64_t N, double U) {
    constexpr double bound = bound_within_tables + 0x1p-49 * (FactorialFactors::ProductTop + 2);
    std::int32_t value = 0;
    const bool covered = N + static_cast<std::int64_t>(FactorialFactors::Margin) < factors_.size();
    if (covered && N <= FactorialFactors::ProductTop &&
        Walk_by_products(factors_, r, c, N, U, bound, value))
        return value;
    return Walk_by_ratios(Fast_cell_draw(r, c, N), U);
}

std::int32_t DrawMemory::Walk_by_ratios(const CellDraw& cell, double U) {
    const std::int64_t Margin = FactorialFactors::Margin;
    if (cell.N + Margin > factors_.size()) Cover(cell.N);
    const bool tabulated = cell.N + Margin < factors_.size();
    const double bound = Walk_bound(tabulated ? bound_within_tables : Bound_of_logs(cell.N),
                                    cell.high - cell.low + 1);
    std::int32_t index = 0;
    const bool sure =
        tabulated ? Walk_to(TabulatedRatios{factors_.ratio(), factors_.inverse_ratio.data()}, cell,
                            First_probability(factors_, cell), U, bound, index)
                  : Walk_to(AnyRatios{factors_}, cell,
                            static_cast<double>(Cell_probability(cell, cell.x0)), U, bound, index);
    if (sure) return Outward_value(cell, index);
    ++settled_plainly;
    return static_cast<std::int32_t>(Cell_for_uniform(cell, U));
}

std::int32_t DrawMemory::Cell(std::int64_t r, std::int64_t c, std::int64_t N, std::uint32_t word,
                              bool recurs) {
    if (r == 0) return 0;
    if (r == N) return static_cast<std::int32_t>(c);
    if (c == N) return static_cast<std::int32_t>(r);
    if (!recurs || r > largest_kept_margin || c > largest_kept_margin)
        return Walk(r, c, N, word * 0x1p-32);
    const std::uint64_t key = static_cast<std::uint64_t>(N) | static_cast<std::uint64_t>(r) << 32 |
                              static_cast<std::uint64_t>(c) << 48;
    Slot& slot = slots_[(key * 0x9E3779B97F4A7C15u) >> (64 - slot_bits)];
    if (slot.key == key) {
        if (slot.more < 0 && ++slot.met == met_often) Keep_row(slot, Fast_cell_draw(r, c, N));
        if (slot.more >= 0) {
            slot.met = 4 * met_often;
            const std::size_t below = Thresholds_below(slot.threshold, word);
            if (below < 8) return slot.value[below];
            const std::int32_t* rest = pool_.data() + slot.more;
            return rest[Place_in_row(rest, word)];
        }
    } else if (--slot.met <= 0) {
        slot.key = key;
        slot.met = 1;
        slot.more = -1;
    }
    return Walk(r, c, N, word * 0x1p-32);
}

bool Margins_agree(const Margins& margins) {
    const auto fits = [&](const std::vector<std::int64_t>& sums) {
        return !sums.empty() &&
               std::all_of(sums.begin(), sums.end(), [](auto n) { return n >= 0; }) &&
               std::accumulate(sums.begin(), sums.end(), std::int64_t{0}) == margins.total;
    };
    return fits(margins.row) && fits(margins.column) &&
           margins.total <= std::numeric_limits<std::int32_t>::max();
}

RandomStream Draw_cells(const Margins& margins, RandomStream stream, DrawMemory& memory,
                        std::int32_t* cells) {
    const std::size_t R = margins.row.size(), C = margins.column.size();
    std::int32_t* left = cells + (R - 1) * C;  // what each column still has to get: the last row
    for (std::size_t j = 0; j < C; ++j) left[j] = static_cast<std::int32_t>(margins.column[j]);
    std::int64_t below = margins.total;  // what the rows from here on get
    std::int32_t* row = cells;
    for (std::size_t i = 0; i + 1 < R; ++i, row += C) {
        std::int64_t r = margins.row[i];
        std::int64_t N = below;
        below -= r;
        if (r == 0) {
            std::fill(row, row + C, 0);
            continue;
        }
        for (std::size_t j = 0; j + 1 < C; ++j) {
            const std::int64_t c = left[j];
            const std::int32_t x = c == 0 ? 0 : memory.Cell(r, c, N, Random_word(stream));
            row[j] = x;
            r -= x;
            N -= c;
            left[j] -= x;
        }
        row[C - 1] = static_cast<std::int32_t>(r);
        left[C - 1] -= static_cast<std::int32_t>(r);
    }
    return stream;
}

void Draw_cells_side_by_side(const Margins& margins, std::array<RandomStream, SideBySide>& streams,
                             DrawMemory& memory, CellsSideBySide* cells) {
    const std::size_t R = margins.row.size(), C = margins.column.size();
    CellsSideBySide* left = cells + (R - 1) * C;
    for (std::size_t j = 0; j < C; ++j) left[j].fill(static_cast<std::int32_t>(margins.column[j]));
    auto below = static_cast<std::int32_t>(margins.total);
    CellsSideBySide* row = cells;
    for (std::size_t i = 0; i + 1 < R; ++i, row += C) {
        CellsSideBySide r, N;
        r.fill(static_cast<std::int32_t>(margins.row[i]));
        N.fill(below);
        below -= r[0];
        if (r[0] == 0) {
            std::fill(row, row + C, CellsSideBySide{});
            continue;
        }
        for (std::size_t j = 0; j + 1 < C; ++j) {
            // Elsewhere r, c and N all vary, and seldom in the same way twice.
            const bool recurs = i == 0 || j == 0 || margins.total <= 150;
            for (std::size_t t = 0; t < SideBySide; ++t) {
                const std::int32_t c = left[j][t];
                const std::int32_t x =
                    c == 0 ? 0 : memory.Cell(r[t], c, N[t], Random_word(streams[t]), recurs);
                row[j][t] = x;
                r[t] -= x;
                N[t] -= c;
                left[j][t] = c - x;
            }
        }
        row[C - 1] = r;
        for (std::size_t t = 0; t < SideBySide; ++t) left[C - 1][t] -= r[t];
    }
}

void Draw_table(const Margins& margins, RandomStream& stream, DrawMemory& memory,
                TwoWayTable& table) {
    if (!Margins_agree(margins)) {
        Random_table(margins, stream, table);
        return;
    }
    memory.Cover(margins.total);
    const int R = table.rows, C = table.columns;
    std::vector<std::int32_t> cells(static_cast<std::size_t>(R) * static_cast<std::size_t>(C));
    stream = Draw_cells(margins, stream, memory, cells.data());
    for (int i = 1; i <= R; ++i)
        std::copy_n(cells.data() + Offset(i - 1) * Offset(C), C, table.Row(i));
    Fill_margins(table);
}

}  // namespace tarven
