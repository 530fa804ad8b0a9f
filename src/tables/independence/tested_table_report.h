#pragma once

#include <string>
#include <vector>

#include "tables/independence/local_engine.h"
#include "tables/table/print_table.h"

namespace tarven {

/// The boxes of a tested hypothesis.

/// The line of a stratum's test: statistic, df and p, and gamma with its p when it is defined.
/// `symbol` is that of the statistic.
std::string Stratum_result_line(const StratumResult& result, bool has_gamma,
                                const std::string& symbol);

/// A tested hypothesis stratum by stratum with the result under each box. `result` must be that of
/// `hypothesis`.
std::vector<std::string> Tested_table_lines(const LocalHypothesis& hypothesis,
                                            const LocalResult& result, const TableOptions& options,
                                            const std::string& symbol);

}  // namespace tarven
