#include "shell/test_settings.h"

#include <algorithm>

#include "shell/stop_rule.h"

namespace tarven {

namespace {

constexpr double NoBoundary = 1000;

TestSettings With_run(TestSettings settings, const MonteCarloRun& run) {
    settings.ExactTests = true;
    settings.Nsim = std::max(run.nsim, 0);
    settings.Seed = run.seed;
    settings.SimulatedTablesCriterion = settings.Nsim;
    return settings;
}

}  // namespace

TestSettings Exact_settings(TestSettings settings, const MonteCarloRun& run) {
    settings = With_run(settings, run);
    settings.SequentialTests = false;
    settings.SequentialLimit = settings.Nsim;
    return settings;
}

TestSettings Repeated_settings(TestSettings settings, const MonteCarloRun& run,
                               const RepeatRule& rule) {
    settings = With_run(settings, run);
    settings.SequentialTests = true;
    settings.SequentialLimit = rule.limit;
    settings.RepeatedLevel1 = rule.level;
    settings.RepeatedLevel2 = rule.risk;
    settings.SimBoundary = Repeat_boundary(rule.level, settings.Nsim, rule.risk);
    return settings;
}

TestSettings Sequential_settings(TestSettings settings, const MonteCarloRun& run,
                                 const SequentialRule& rule) {
    settings = With_run(settings, run);
    settings.SequentialTests = true;
    settings.RepeatedLevel1 = rule.level;
    // No risk marks a sequential run: the status field tells the two kinds apart by it.
    settings.RepeatedLevel2 = 0;
    settings.SequentialLimit = rule.limit;
    settings.SimBoundary = NoBoundary;
    return settings;
}

TestSettings Asymptotic_settings(TestSettings settings) {
    settings.ExactTests = false;
    settings.SequentialTests = false;
    return settings;
}

}  // namespace tarven
