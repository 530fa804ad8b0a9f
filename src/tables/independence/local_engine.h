#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tables/independence/fit_xyz.h"
#include "tables/independence/global_engine.h"
#include "tables/table/contingency_table.h"

namespace tarven {

/// The local engine: one hypothesis with the results of each stratum, of each category of each
/// conditioning variable, and of the test against two-factor association.

/// One combination of the conditioning variables. `category` has one entry a variable; DIM+1 is the
/// margin over it.
struct LocalSlice {
    std::vector<int> category;
    TwoWayTable counts;  ///< with margins
};

/// A hypothesis in the order X, Y, Z.
struct LocalHypothesis {
    TableVariable X, Y;
    std::vector<TableVariable> Z;
    /// The first conditioning variable fastest. Slices with a margin category are tested for
    /// themselves and add nothing to the hypothesis.
    std::vector<LocalSlice> slices;
};

/// Whether a category of the slice stands at its margin.
bool Is_margin(const LocalHypothesis& hypothesis, const LocalSlice& slice);

/// What one stratum gives. Nothing of an empty one.
struct StratumResult {
    bool margin = false;  ///< a category stands at its margin
    bool empty = false;   ///< no cases
    TwoWayStatistic statistic;
    GammaRecord gamma;
    ExpectedTable expected;
};

/// The accumulated results of one category of a conditioning variable, over the strata that have
/// it. The asymptotic values are in single precision, as a row's.
struct CategoryResult {
    std::int64_t cases = 0;
    float Statistic = 0;
    float Df = 0;
    float PAsymp = 1;
    float Gamma = 0;
    float PGammaAsymp = 1;
    float P = 0, Q = 0, V = 0;
    Sim_counts counts{};  ///< n is 0 without simulation
};

/// Strata with a gamma, by its sign and by p = 2 x its one-sided p: above 0.05; above 0.01 up to
/// 0.05; up to 0.01. A gamma of 0 counts nowhere.
struct SixWayCount {
    int negative[3] = {};
    int positive[3] = {};
};

/// Counts one stratum with a gamma.
void Count_stratum(SixWayCount& count, const GammaRecord& gamma);

struct LocalResult {
    bool has_gamma = false;
    HypothesisTest test;
    std::vector<StratumResult> strata;                    ///< parallel to the slices
    std::vector<std::vector<CategoryResult>> categories;  ///< [variable of Z][category - 1]
    SixWayCount six_way;
    std::optional<PartialTest> partial;  ///< when wanted and there are conditioning variables
    std::int32_t partial_count = 0;      ///< replicates with an lr at least the observed
    float smallest_p = 1;                ///< of the asymptotic p of the statistic and of gamma

    double PPartialExact() const {
        return test.counts.n > 0 ? static_cast<double>(partial_count) / test.counts.n : 0;
    }
};

/// All Monte Carlo p-values rest on settings.Nsim replicates, whatever the stop rule, so that those
/// of all categories rest on the same number; only `stop` ends the run earlier. The stream is used
/// as it stands. `partial_off` leaves the test against two-factor association out.
LocalResult EXANALYSE(const LocalHypothesis& hypothesis, const TestSettings& settings,
                      bool partial_off, RandomStream& stream, DrawMemory& memory,
                      const StopCheck& stop = {});

}  // namespace tarven
