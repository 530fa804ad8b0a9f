#include "tables/independence/hypothesis_run.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace tarven {

namespace {

bool Simulates(const TestSettings& settings) {
    return settings.ExactTests && settings.Nsim > 0;
}

TestedHypothesis Not_reached() {
    return {.reached = Reached::not_reached};
}

/// The questions of a run: one a hypothesis and one a replicate.
std::int64_t Steps(std::size_t count, const TestSettings& settings) {
    const std::int64_t each = 1 + (Simulates(settings) ? std::int64_t{settings.Nsim} : 0);
    return static_cast<std::int64_t>(count) * each;
}

/// A stop that was once asked for stays, for all threads of the run.
class RunStop {
  public:
    explicit RunStop(const StopCheck& asked) : asked_(asked) {}
    bool Now() { return Now(asked_); }
    /// Another question with the same meaning.
    bool Now(const StopCheck& question) {
        if (!stopped_ && question && question()) stopped_ = true;
        return stopped_;
    }
    bool Was() const { return stopped_; }
    void End() { stopped_ = true; }
    StopCheck Check() {
        return asked_ ? StopCheck([this] { return Now(); }) : StopCheck{};
    }

  private:
    const StopCheck& asked_;
    std::atomic<bool> stopped_ = false;
};

/// The outcome with what a stop did to its simulation.
TestedHypothesis Cut(TestedHypothesis outcome, bool stopped, const TestSettings& settings) {
    if (stopped && outcome.row.Nsim > 0 && outcome.row.Nsim < static_cast<float>(settings.Nsim))
        outcome.reached = Reached::cut_short;
    return outcome;
}

}  // namespace

bool Has_gamma(const ContingencyTable& table, const Hypothesis& hypothesis) {
    const TestedPair pair = Tested_pair(hypothesis);
    const TableVariable& x = table.variable(pair.X);
    const TableVariable& y = table.variable(pair.Y);
    return Gamma_is_defined(x.DIM, x.VTYPE, y.DIM, y.VTYPE);
}

TestedHypothesis Test_globally(const ContingencyTable& table, const Hypothesis& hypothesis,
                               const TestSettings& settings, RandomStream& stream,
                               DrawMemory& memory, const StopCheck& stop) {
    TestedHypothesis outcome{.cases = table.NTOTAL};
    const TestedPair pair = Tested_pair(hypothesis);
    if (!pair.proper() || pair.Y > table.Nvar()) return outcome;
    outcome.has_gamma = Has_gamma(table, hypothesis);
    if (!Simulates(settings)) {
        const SlicesSummed summed = Sum_over_slices(View_of(table, hypothesis), outcome.has_gamma,
                                                    Statistic_rule(settings));
        outcome.missing_slices = summed.missing > 0;
        outcome.too_many_slices = summed.too_many;
        if (!summed.too_many) outcome.row = Row_of(Asymptotic_test(summed.sums, outcome.has_gamma));
        return outcome;
    }
    const InformativeSlices slices = XYZ1(View_of(table, hypothesis));
    outcome.missing_slices = slices.missing > 0;
    outcome.too_many_slices = slices.too_many;
    if (slices.too_many) return outcome;
    outcome.row = Row_of(Test_strata(slices.counts, slices.expected, outcome.has_gamma, settings,
                                     stream, memory, stop));
    return outcome;
}

std::vector<TestedHypothesis> Run_list(
    std::size_t count, const TestSettings& settings, RandomStream& stream,
    const RunControl& control,
    const std::function<TestedHypothesis(std::size_t, RandomStream&, RunMemory&, const StopCheck&)>&
        test) {
    std::vector<TestedHypothesis> outcomes(count, Not_reached());
    RunStop stop(control.stop);
    std::atomic<std::size_t> next = 0;
    RandomStream last = stream;
    std::exception_ptr failure;
    std::mutex failing;
    const auto work = [&] {
        RandomStream own = stream;
        RunMemory memory;
        bool cut = false;
        const StopCheck& question = control.within ? control.within : control.stop;
        const StopCheck check = !question ? StopCheck{} : [&] { return cut = stop.Now(question); };
        try {
            for (std::size_t k = next++; k < count; k = next++) {
                if (stop.Now()) return;
                const TestedHypothesis outcome = test(k, own, memory, check);
                outcomes[k] = Cut(outcome, cut, settings);
                if (k + 1 == count) last = own;
            }
        } catch (...) {
            const std::lock_guard lock(failing);
            if (!failure) failure = std::current_exception();
            stop.End();
        }
    };
    if (control.begin) control.begin(Steps(count, settings));
    const auto threads = std::clamp<std::size_t>(
        static_cast<std::size_t>(std::max(control.jobs, 1)), 1, std::max<std::size_t>(count, 1));
    std::vector<std::thread> others;
    try {
        for (std::size_t t = 1; t < threads; ++t) others.emplace_back(work);
    } catch (const std::system_error&) {
        // No room for another thread: those that run do the work, with the same digits.
    }
    work();
    for (std::thread& other : others) other.join();
    if (control.end) control.end();
    if (failure) std::rethrow_exception(failure);
    stream = last;
    return outcomes;
}

std::vector<TestedHypothesis> Test_globally(const ContingencyTable& table,
                                            std::span<const Hypothesis> list,
                                            const TestSettings& settings, RandomStream& stream,
                                            const RunControl& control) {
    return Run_list(
        list.size(), settings, stream, control,
        [&](std::size_t k, RandomStream& own, RunMemory& memory, const StopCheck& stop) {
            if (settings.ExactTests) Set_seed(own, settings.Seed);
            return Test_globally(table, list[k], settings, own, memory.draws, stop);
        });
}

LocalHypothesis Form_xyz_table(const ContingencyTable& table, const Hypothesis& hypothesis,
                               bool with_margins) {
    LocalHypothesis local;
    const TestedPair pair = Tested_pair(hypothesis);
    local.X = table.variable(pair.X);
    local.Y = table.variable(pair.Y);
    for (const int k : Conditioning_variables(hypothesis)) local.Z.push_back(table.variable(k));
    const SliceView view = View_of(table, hypothesis);
    For_each_slice(view, with_margins, [&](std::span<const int> category, std::int64_t offset) {
        LocalSlice& slice = local.slices.emplace_back();
        slice.category.assign(category.begin(), category.end());
        Read_slice(view, offset, slice.counts);
    });
    return local;
}

std::vector<TestedHypothesis> Test_locally(
    const ContingencyTable& table, std::span<const Hypothesis> list, const LocalWishes& wishes,
    const TestSettings& wanted, RandomStream& stream, const RunControl& control,
    const std::function<void(std::size_t, const LocallyTested&)>& each) {
    TestSettings settings = wanted;
    if (table.big()) settings.PartialTests = false;
    if (settings.ExactTests) Set_seed(stream, settings.Seed);
    std::vector<TestedHypothesis> rows(list.size(), Not_reached());
    RunStop stop(control.stop);
    DrawMemory memory;
    if (control.begin) control.begin(Steps(list.size(), settings));
    for (std::size_t k = 0; k < list.size() && !stop.Now(); ++k) {
        LocallyTested one{.hypothesis = Form_xyz_table(table, list[k], wishes.with_margins)};
        one.result =
            EXANALYSE(one.hypothesis, settings, wishes.partial_off, stream, memory, stop.Check());
        one.outcome.row = Row_of(one.result.test);
        one.outcome.has_gamma = one.result.has_gamma;
        one.outcome.cases = table.NTOTAL;
        one.outcome = Cut(one.outcome, stop.Was(), settings);
        rows[k] = one.outcome;
        if (each) each(k, one);
    }
    if (control.end) control.end();
    return rows;
}

}  // namespace tarven
