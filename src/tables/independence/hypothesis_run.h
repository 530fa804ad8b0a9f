#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "tables/independence/global_engine.h"
#include "tables/independence/hypotheses.h"
#include "tables/independence/local_engine.h"
#include "tables/independence/slices.h"
#include "tables/independence/summary_report.h"

namespace tarven {

/// A list of hypotheses tested on one table: every hypothesis gets its slices and goes through the
/// global or the local engine.

/// Gamma is defined for the hypothesis's pair.
bool Has_gamma(const ContingencyTable& table, const Hypothesis& hypothesis);

/// One hypothesis after the global engine.
struct GlobalOutcome {
    TestResult row;
    bool has_gamma = false;
    bool missing_slices = false;  ///< some combinations of Z tell nothing about X and Y
    bool too_many_slices = false;
    std::int64_t cases = 0;  ///< in the table
};

/// How a run speaks to the one who waits: `begin` at the start of each hypothesis's simulation,
/// `stop` after each replicate.
struct RunControl {
    std::function<void()> begin;
    StopCheck stop;
    std::function<void()> end;
};

/// Tests one hypothesis with the stream as it stands. Without simulation no slice is stored.
GlobalOutcome Test_globally(const ContingencyTable& table, const Hypothesis& hypothesis,
                            const TestSettings& settings, RandomStream& stream, DrawMemory& memory,
                            const RunControl& control = {});

/// Tests the whole list. With Monte Carlo tests every hypothesis starts from settings.Seed, so its
/// p does not depend on its place in the list. Once a run is stopped, the hypothesis under way
/// keeps the replicates done and the rest of the list gets asymptotic p-values alone.
std::vector<GlobalOutcome> Test_globally(const ContingencyTable& table,
                                         std::span<const Hypothesis> list,
                                         const TestSettings& settings, RandomStream& stream,
                                         const RunControl& control = {});

/// The hypothesis with its slices as the local engine wants them: all combinations of the
/// conditioning variables, and those with margins when wanted.
LocalHypothesis Form_xyz_table(const ContingencyTable& table, const Hypothesis& hypothesis,
                               bool with_margins);

/// Remarks of the global engine on one hypothesis: missing slices, too many, no df.
std::vector<std::string> Remarks(const GlobalOutcome& outcome, const std::string& label);

}  // namespace tarven
