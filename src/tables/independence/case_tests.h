#pragma once

#include "tables/independence/case_strata.h"
#include "tables/independence/hypothesis_run.h"

namespace tarven {

/// Tests one hypothesis over the variables of `packed`, whatever their number, with the stream as
/// it stands: the row of a table of these variables, in every digit, Monte Carlo included. Without
/// simulation no stratum is stored; with it the informative ones are. Cost: one pass over the
/// patterns, and the strata sorted.
TestedHypothesis Test_from_cases(const PackedCases& packed, const Hypothesis& hypothesis,
                                 const TestSettings& settings, RandomStream& stream,
                                 DrawMemory& memory, StrataMemory& strata,
                                 const StopCheck& stop = {});

}  // namespace tarven
