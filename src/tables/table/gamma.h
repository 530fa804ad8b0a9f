#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "tables/table/two_way.h"

namespace tarven {

/// Pairs of cases of a two-way table, each pair counted twice.
struct Concordance {
    std::int64_t P = 0;  ///< concordant plus discordant
    std::int64_t Q = 0;  ///< concordant minus discordant

    std::int64_t concordant() const { return (P + Q) / 2; }
    std::int64_t discordant() const { return (P - Q) / 2; }
    bool operator==(const Concordance&) const = default;
};

/// Concordant and discordant pairs of the cells counts[1..R][1..C]; margins are not read. Exact for
/// totals up to 2^31. Cost: R*C, by running sums of the rows above.
Concordance Concordance_of(const TwoWayTable& counts);

/// For every cell (i, j) the cases concordant with it (A) and discordant (D): the cells of both
/// outer quadrants of the same, or of the opposite, direction. Cost: R*C.
struct CellConcordance {
    TwoWay<std::int64_t> A, D;  ///< margins stay 0
};
CellConcordance Cell_concordance(const TwoWayTable& counts);

/// Gamma of one stratum and what its test needs.
struct GammaRecord {
    double P = 0;      ///< concordant plus discordant pairs, each pair counted twice
    double Q = 0;      ///< concordant minus discordant pairs, each pair counted twice
    double V = 0;      ///< variance of Q under independence
    double gamma = 0;  ///< Q/P, in [-1, 1]
    double p = 1;      ///< one-sided

    double se() const;  ///< sqrt(V)/P, the standard error of gamma under independence; 0 if P = 0
};

/// Goodman and Kruskal's gamma of counts[1..R][1..C], both variables ordinal in category order.
/// The margins are not read. Without an untied pair of cases (an empty table, a single row)
/// everything stays at its start value; a variance of 0 gives p = 1. Cost: R*C.
/// Goodman & Kruskal (1954), JASA 49, 732-764; V from Brown & Benedetti (1977), JASA 72, 309-315.
GammaRecord Gamma_of_table(const TwoWayTable& counts);

/// The same but for its p, which stays at 1: what a stratum adds to a partial gamma. The normal
/// tail costs more than all the rest of a small table.
GammaRecord Gamma_without_p(const TwoWayTable& counts);

/// Partial gamma: the strata weighted by their untied pairs.
struct PartialGamma {
    double gamma = 0;
    double p = 1;   ///< one-sided
    double se = 0;  ///< under the hypothesis; 0 when the variance is 0
    double z = 0;   ///< abs(gamma)/se, 4 when the variance is 0
};

/// Partial gamma of the sums of P, Q and V over the strata. Nothing untied (SP <= 0) gives the
/// start values. A variance of 0 gives z = 4. Beyond z = 4 p is the constant 1e-6, which stands for
/// "as good as impossible": the normal tail is not taken seriously that far out. (At 4 itself the
/// tail is 3.2e-5, so p jumps there.) Davis (1967), JASA 62, 189-193.
PartialGamma Partial_gamma(double SP, double SQ, double SV);

/// The same of some strata of X and Y.
PartialGamma Partial_gamma(std::span<const TwoWayTable> strata);

/// Gamma of a random table, or of the sums over its strata: Q/P, 0 when P is not positive.
inline double Gamma_of_pairs(std::int64_t P, std::int64_t Q) {
    return P > 0 ? static_cast<double>(Q) / static_cast<double>(P) : 0;
}

}  // namespace tarven
