#include "tables/table/gamma.h"

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
    // S(i, j): the cases of rows 1..i and columns 1..j, with an edge of zeros.
    const std::size_t pitch = static_cast<std::size_t>(C) + 1;
    std::vector<std::int64_t> sums((static_cast<std::size_t>(R) + 1) * pitch);
    const auto S = [&](int i, int j) -> std::int64_t& {
        return sums[static_cast<std::size_t>(i) * pitch + static_cast<std::size_t>(j)];
    };
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j)
            S(i, j) = counts(i, j) + S(i - 1, j) + S(i, j - 1) - S(i - 1, j - 1);
    CellConcordance result{TwoWay<std::int64_t>(R, C), TwoWay<std::int64_t>(R, C)};
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j) {
            const std::int64_t above_left = S(i - 1, j - 1);
            const std::int64_t above_right = S(i - 1, C) - S(i - 1, j);
            const std::int64_t below_left = S(R, j - 1) - S(i, j - 1);
            const std::int64_t below_right = S(R, C) - S(i, C) - S(R, j) + S(i, j);
            result.A(i, j) = above_left + below_right;
            result.D(i, j) = above_right + below_left;
        }
    return result;
}

double GammaRecord::se() const {
    return P > 0 ? std::sqrt(V) / P : 0;
}

GammaRecord Gamma_of_table(const TwoWayTable& counts) {
    GammaRecord g;
    const CellConcordance pairs = Cell_concordance(counts);
    std::int64_t P = 0, Q = 0, N = 0;
    Extended squares = 0;
    for (int i = 1; i <= counts.rows; ++i)
        for (int j = 1; j <= counts.columns; ++j) {
            const std::int64_t n = counts(i, j);
            const std::int64_t difference = pairs.A(i, j) - pairs.D(i, j);
            N += n;
            P += n * (pairs.A(i, j) + pairs.D(i, j));
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
        const GammaRecord gamma = Gamma_of_table(stratum);
        P += gamma.P;
        Q += gamma.Q;
        V += gamma.V;
    }
    return Partial_gamma(P, Q, V);
}

}  // namespace tarven
