#pragma once

#include "shell/settings.h"
#include "tables/independence/hypotheses.h"

namespace tarven {

/// Which of the p-values of a row count: that depends on the settings of the run that made it.

/// The p-values of gamma, one- or two-sided by settings.TwoSided. A two-sided asymptotic p is twice
/// the one-sided, at most 1.
struct ShownGamma {
    float PAsymp = 1;
    float PExact = 1;
};
ShownGamma Shown_gamma(const TestResult& result, const TestSettings& settings);

/// Whether the row has Monte Carlo p-values, and they were wanted.
bool Shows_exact(const TestResult& result, const TestSettings& settings);

}  // namespace tarven
