#pragma once

#include <cstdint>

#include "shell/numbers.h"
#include "tables/random_stream.h"
#include "tables/random_table.h"
#include "tables/two_way.h"

namespace tarven {

/// The random tables of one stratum with what a Monte Carlo test reads of them.

/// Of one table, or summed over strata.
struct StratumReplicate {
    Extended statistic = 0;
    std::int64_t P = 0, Q = 0;  ///< untied pairs, as in Concordance; 0 when gamma is not wanted

    void Add(const StratumReplicate& other) {
        statistic += other.statistic;
        P += other.P;
        Q += other.Q;
    }
};

/// Working memory of the drawing, to be reused from hypothesis to hypothesis. Holds nothing that
/// changes a result.
struct DrawMemory {};

/// Draws the tables of one stratum. It refers to the expected table and the memory, which must
/// outlive it.
class StratumSampler {
  public:
    StratumSampler(const ExpectedTable& expected, const StatisticRule& rule, bool with_gamma,
                   DrawMemory& memory);

    /// One table, exactly that of `Random_table`.
    StratumReplicate Draw(RandomStream& stream);

    /// The same, with the table and its margins.
    StratumReplicate Draw(RandomStream& stream, TwoWayTable& table);

  private:
    const ExpectedTable* expected_;
    StatisticRule rule_;
    bool with_gamma_;
    Margins margins_;
    TwoWayTable table_;
};

}  // namespace tarven
