#pragma once

#include <cstdint>
#include <functional>

#include "shell/numbers.h"
#include "tables/table/gamma.h"
#include "tables/table/two_way.h"

namespace tarven {

/// Exact tests by enumeration of all two-way tables with the observed margins. Tables are ordered
/// by the statistic, so p_exact is not the p of the test that orders them by their probability.

struct FisherRecord {
    std::int64_t tables = 0;  ///< that fit the margins; fewer were met when `stopped`
    TwoWayStatistic statistic;
    double p_exact = 0;  ///< probability of the tables with a statistic at least the observed (>=)
    bool has_gamma = false;
    GammaRecord gamma;
    double p_gamma_exact = 0;  ///< one-sided, on the side of the observed gamma; 1 when that is 0
    double total_probability = 0;  ///< of all tables met: 1 up to the error of log factorials
    bool stopped = false;
};

/// A table of the enumeration, for a listing.
struct FisherTable {
    std::int64_t number;  ///< from 1
    const TwoWayTable& table;
    Extended statistic;
    double gamma;  ///< 0 when not wanted
    double probability;
};
using FisherListing = std::function<void(const FisherTable&)>;

/// Runs over all tables with the margins of `counts`, column by column, cell by cell, each cell
/// from its lowest value up. `stop` is asked about every thousand tables; true ends the run with
/// the tables met so far. Cost: R*C a table, and the number of tables grows exponentially with the
/// size.
FisherRecord Enumerate_tables(const TwoWayTable& counts, const StatisticRule& rule, bool has_gamma,
                              const std::function<bool()>& stop = {},
                              const FisherListing& listing = {});

}  // namespace tarven
