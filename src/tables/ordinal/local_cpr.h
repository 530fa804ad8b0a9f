#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tables/table/two_way.h"

namespace tarven {

/// Where in an ordinal two-way table the association lies: every 2 by 2 table of two rows and two
/// columns, and what its association would be for one step in both variables.

/// One local table: rows i < k, columns j < l.
struct LocalTable {
    int i = 0, k = 0, j = 0, l = 0;
    std::int64_t C = 0;  ///< concordant pairs n_ij n_kl, each counted once
    std::int64_t D = 0;  ///< discordant pairs n_il n_kj
    bool defined = false;
    double gamma = 0;  ///< (C - D)/(C + D), Yule's Q
    double cpr = 0;    ///< of one step in both variables; gamma itself for an adjacent table
    double p = 1;      ///< one-sided, of gamma under independence
    double n = 0;      ///< cases

    bool adjacent() const { return k == i + 1 && l == j + 1; }
};

/// Sums over some of the local tables.
struct LocalSummary {
    std::int64_t C = 0, D = 0;
    bool defined = false;  ///< one of the tables is
    double gamma = 0;      ///< (C - D)/(C + D)
    double cpr = 0;        ///< mean of theirs with weight n^2
};

/// A local table with n > 0 and C + D > 0 has the cross-product ratio (1 + g)/(1 - g). If the
/// association is uniform, the logarithm of that ratio is proportional to the t = (k-i)(l-j) steps
/// between its cells, so its t-th root belongs to one step; `cpr` is that root on the scale of
/// gamma, (A - B)/(A + B) with A = (1 + g)^(1/t), B = (1 - g)^(1/t). Tables without untied pairs
/// are not defined and left out of all means.
/// Goodman (1979), JASA 74, 537-552, for uniform association.
struct LocalAnalysis {
    int R = 0, C = 0;
    std::vector<LocalTable> tables;  ///< by i, k, j, l, the last fastest
    LocalSummary all;                ///< its gamma is that of the whole table
    LocalSummary adjacent;
    struct Parallel {
        int first = 0, second = 0;
        LocalSummary summary;
    };
    std::vector<Parallel> rows;     ///< one for each pair of rows
    std::vector<Parallel> columns;  ///< one for each pair of columns
};

/// The local value of gamma g over t >= 1 steps.
double Local_cpr(double g, int t);

/// Of counts[1..R][1..C], both variables ordinal; margins are not read. Cost: (R*C)^2.
LocalAnalysis Analysis_of_local_tables(const TwoWayTable& counts);

}  // namespace tarven
