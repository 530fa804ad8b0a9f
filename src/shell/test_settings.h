#pragma once

#include <cstdint>

#include "shell/settings.h"

namespace tarven {

/// The settings of Monte Carlo tests from plain values: what EXACT, REPEATED and SEQUENTIAL make of
/// a line, and what an analysis asks for that runs tests of its own.

struct MonteCarloRun {
    std::int32_t nsim = 1000;  ///< random tables; 0 or less: none
    std::uint8_t seed = 9;
};

/// Up to run.nsim tables for each hypothesis.
TestSettings Exact_settings(TestSettings settings, const MonteCarloRun& run);

/// When a repeated test ends early.
struct RepeatRule {
    double level = 0.05;  ///< critical level
    double risk = 0.001;  ///< of stopping a test that is significant at the level
    double limit = 20;    ///< tables at least as extreme that end it in any case
};
TestSettings Repeated_settings(TestSettings settings, const MonteCarloRun& run,
                               const RepeatRule& rule = {});

/// When a sequential test ends early.
struct SequentialRule {
    double level = 0.05;
    double limit = 20;  ///< tables at least as extreme
};
TestSettings Sequential_settings(TestSettings settings, const MonteCarloRun& run,
                                 const SequentialRule& rule = {});

TestSettings Asymptotic_settings(TestSettings settings);

}  // namespace tarven
