#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "tables/independence/case_strata.h"
#include "tables/independence/global_engine.h"
#include "tables/independence/hypotheses.h"
#include "tables/independence/local_engine.h"
#include "tables/independence/slices.h"

namespace tarven {

/// A list of hypotheses tested on one table: every hypothesis gets its slices and goes through the
/// global or the local engine. Every command that tests a list runs it here.

/// Gamma is defined for the hypothesis's pair.
bool Has_gamma(const ContingencyTable& table, const Hypothesis& hypothesis);

/// How far a hypothesis came before its run ended.
enum class Reached : std::uint8_t {
    end,
    cut_short,   ///< the user stopped its simulation: Nsim holds the tables done
    not_reached  ///< the user stopped the run before; its row is that of an untested hypothesis
};

/// One hypothesis after its test.
struct TestedHypothesis {
    TestResult row = Untested_result();
    bool has_gamma = false;
    bool missing_slices = false;  ///< some combinations of Z tell nothing about X and Y
    bool too_many_slices = false;
    std::int64_t cases = 0;  ///< in the table
    Reached reached = Reached::end;
};

/// How a run speaks to the one who waits, and how many threads it may use.
struct RunControl {
    std::function<void(std::int64_t steps)> begin;  ///< once a run, with the questions to come
    StopCheck stop;                                 ///< after each replicate and each hypothesis
    std::function<void()> end;
    int jobs = 1;      ///< threads; a list whose hypotheses draw from one stream uses a single one
    StopCheck within;  ///< the question between parts of a hypothesis that are no steps of the run;
                       ///< without it they ask `stop`
};

/// Working memory of one thread of a run.
struct RunMemory {
    DrawMemory draws;
    StrataMemory strata;
};

/// Tests one hypothesis with the stream as it stands. Without simulation no slice is stored.
TestedHypothesis Test_globally(const ContingencyTable& table, const Hypothesis& hypothesis,
                               const TestSettings& settings, RandomStream& stream,
                               DrawMemory& memory, const StopCheck& stop = {});

/// Tests the whole list; the outcomes are parallel to it. With Monte Carlo tests every hypothesis
/// starts from settings.Seed, so its p depends neither on its place in the list nor on the number
/// of threads; the stream ends where the last hypothesis of the list left it. A stop ends the run.
std::vector<TestedHypothesis> Test_globally(const ContingencyTable& table,
                                            std::span<const Hypothesis> list,
                                            const TestSettings& settings, RandomStream& stream,
                                            const RunControl& control = {});

/// Calls test(k, stream, memory, stop) for each k in 0..count-1 on control.jobs threads, each with
/// a stream and a memory of its own, and returns the outcomes by k. `test` sets the stream before
/// it draws; `stop`, which may be empty, stays true once it was. What a stop left out is not
/// reached. An exception of a thread ends the run and is thrown again here.
std::vector<TestedHypothesis> Run_list(
    std::size_t count, const TestSettings& settings, RandomStream& stream,
    const RunControl& control,
    const std::function<TestedHypothesis(std::size_t k, RandomStream& stream, RunMemory& memory,
                                         const StopCheck& stop)>& test);

/// The hypothesis with its slices as the local engine wants them: all combinations of the
/// conditioning variables, and those with margins when wanted.
LocalHypothesis Form_xyz_table(const ContingencyTable& table, const Hypothesis& hypothesis,
                               bool with_margins);

/// What a local test is asked for beside the settings.
struct LocalWishes {
    bool with_margins = false;  ///< strata at the margin of a conditioning variable, too
    bool partial_off = false;   ///< no test against two-factor association
};

/// One hypothesis after the local engine.
struct LocallyTested {
    LocalHypothesis hypothesis;
    LocalResult result;
    TestedHypothesis outcome;
};

/// Tests the whole list, one stream through all of it from settings.Seed on. Each outcome is given
/// to `each` as soon as it stands, since those of a long list do not fit the memory; the rows are
/// returned, parallel to the list. A stop ends the run, behind the `each` of the one under way. On
/// a big table no test against two-factor association is made.
std::vector<TestedHypothesis> Test_locally(
    const ContingencyTable& table, std::span<const Hypothesis> list, const LocalWishes& wishes,
    const TestSettings& settings, RandomStream& stream, const RunControl& control = {},
    const std::function<void(std::size_t k, const LocallyTested& one)>& each = {});

}  // namespace tarven
