#pragma once

#include "project/data.h"
#include "rasch/items/gllrm.h"
#include "rasch/items/response_table.h"
#include "shell/result.h"
#include "shell/stop_check.h"

namespace tarven {

/// The responses to the items of the model and its exogenous variables, from the cheapest source of
/// the cases: distinct patterns in ascending order of their codes (so that the source decides
/// nothing), cells of a store with their counts. Records with missing items are there as well; a
/// table of no patterns is no failure. Fails also for lack of memory. Cost: one pass over the
/// cases, and sorting of the patterns.
Result<ResponseTable> Read_responses(const CasesAtHand& cases, const GLLRM& model,
                                     const StopCheck& stop = {});

}  // namespace tarven
