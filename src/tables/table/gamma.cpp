#include "tables/table/gamma.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "shell/limits.h"
#include "tables/numbers/distributions.h"

namespace tarven {

namespace {

/// `column` holds the cases of each column in the rows above the current one; it starts at 0.
Concordance Count_pairs(const TwoWayTable& counts, std::int64_t* column) {
    std::int64_t concordant = 0, discordant = 0, above = 0;
    for (int i = 1; i <= counts.rows; ++i) {
        const std::int32_t* row = counts.Row(i);
        std::int64_t left = 0, added = 0;
        for (int j = 0; j < counts.columns; ++j) {
            const std::int64_t n = row[j];
            concordant += n * left;
            left += column[j];
            discordant += n * (above - left);
            column[j] += n;
            added += n;
        }
        above += added;
    }
    return {2 * (concordant + discordant), 2 * (concordant - discordant)};
}

/// S(i, j): the cases of rows 1..i and columns 1..j of a table, with an edge of zeros.
struct QuadrantSums {
    const std::int64_t* sums;
    std::size_t pitch;
    int R, C;

    std::int64_t S(int i, int j) const {
        return sums[static_cast<std::size_t>(i) * pitch + static_cast<std::size_t>(j)];
    }
    std::int64_t concordant(int i, int j) const {
        return S(i - 1, j - 1) + S(R, C) - S(i, C) - S(R, j) + S(i, j);
    }
    std::int64_t discordant(int i, int j) const {
        return S(i - 1, C) - S(i - 1, j) + S(R, j - 1) - S(i, j - 1);
    }
};

/// Tables up to this many sums, edges included, need no memory of their own.
constexpr std::size_t SmallTable = 81;

/// The sums stand in `few` when they have room there, else in `many`.
QuadrantSums Quadrant_sums(const TwoWayTable& counts, std::array<std::int64_t, SmallTable>& few,
                           std::vector<std::int64_t>& many) {
    const std::size_t pitch = static_cast<std::size_t>(counts.columns) + 1;
    const std::size_t size = (static_cast<std::size_t>(counts.rows) + 1) * pitch;
    if (size > few.size()) many.resize(size);
    std::int64_t* sums = size > few.size() ? many.data() : few.data();
    std::fill(sums, sums + pitch, 0);
    for (int i = 1; i <= counts.rows; ++i) {
        const std::int64_t* above = sums + static_cast<std::size_t>(i - 1) * pitch;
        std::int64_t* row = sums + static_cast<std::size_t>(i) * pitch;
        std::int64_t in_row = 0;
        row[0] = 0;
        for (int j = 1; j <= counts.columns; ++j) {
            in_row += counts(i, j);
            row[j] = above[j] + in_row;
        }
    }
    return {sums, pitch, counts.rows, counts.columns};
}

}  // namespace

Concordance Concordance_of(const TwoWayTable& counts) {
    std::array<std::int64_t, MaxCategories + 1> column{};
    if (counts.columns <= static_cast<int>(column.size()))
        return Count_pairs(counts, column.data());
    std::vector<std::int64_t> many(static_cast<std::size_t>(counts.columns));
    return Count_pairs(counts, many.data());
}

CellConcordance Cell_concordance(const TwoWayTable& counts) {
    const int R = counts.rows, C = counts.columns;
    std::array<std::int64_t, SmallTable> few;
    std::vector<std::int64_t> many;
    const QuadrantSums quadrants = Quadrant_sums(counts, few, many);
    CellConcordance result{TwoWay<std::int64_t>(R, C), TwoWay<std::int64_t>(R, C)};
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j) {
            result.A(i, j) = quadrants.concordant(i, j);
            result.D(i, j) = quadrants.discordant(i, j);
        }
    return result;
}

double GammaRecord::se() const {
    return P > 0 ? std::sqrt(V) / P : 0;
}

GammaRecord Gamma_without_p(const TwoWayTable& counts) {
    GammaRecord g;
    std::array<std::int64_t, SmallTable> few;
    std::vector<std::int64_t> many;
    const QuadrantSums quadrants = Quadrant_sums(counts, few, many);
    std::int64_t P = 0, Q = 0, N = 0;
    Extended squares = 0;
    for (int i = 1; i <= counts.rows; ++i)
        for (int j = 1; j <= counts.columns; ++j) {
            const std::int64_t n = counts(i, j);
            if (n == 0) continue;
            const std::int64_t A = quadrants.concordant(i, j), D = quadrants.discordant(i, j);
            const std::int64_t difference = A - D;
            N += n;
            P += n * (A + D);
            Q += n * difference;
            squares += static_cast<Extended>(n) * static_cast<Extended>(difference) *
                       static_cast<Extended>(difference);
        }
    if (P <= 0) return g;
    const auto q = static_cast<Extended>(Q);
    g.P = static_cast<double>(P);
    g.Q = static_cast<double>(Q);
    g.V = static_cast<double>(4 * (squares - q * q / static_cast<Extended>(N)));
    g.gamma = g.Q / g.P;
    return g;
}

GammaRecord Gamma_of_table(const TwoWayTable& counts) {
    GammaRecord g = Gamma_without_p(counts);
    if (g.V > 0) g.p = Normal_p(std::fabs(g.gamma / (std::sqrt(g.V) / g.P)));
    return g;
}

PartialGamma Partial_gamma(double SP, double SQ, double SV) {
    PartialGamma result;
    if (!(SP > 0)) return result;
    result.gamma = SQ / SP;
    const double variance = SV / SP / SP;
    result.z = 4;
    if (variance > 0) {
        result.se = std::sqrt(variance);
        result.z = std::fabs(result.gamma / result.se);
    }
    result.p = result.z > 4 ? 0.000001 : Normal_p(result.z);
    return result;
}

PartialGamma Partial_gamma(std::span<const TwoWayTable> strata) {
    double P = 0, Q = 0, V = 0;
    for (const TwoWayTable& stratum : strata) {
        const GammaRecord gamma = Gamma_without_p(stratum);
        P += gamma.P;
        Q += gamma.Q;
        V += gamma.V;
    }
    return Partial_gamma(P, Q, V);
}

}  // namespace tarven
