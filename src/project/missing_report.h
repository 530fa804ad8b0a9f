#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "project/data_files.h"

namespace tarven {

/// Missing responses to some variables, code 0 of each.
struct MissingResult {
    std::vector<std::int64_t> observed;      ///< [k] of the k-th variable, from 0
    std::vector<std::int64_t> missing;       ///< likewise
    std::vector<std::int64_t> distribution;  ///< [m] cases with m of the variables missing
    std::int64_t total = 0;

    std::int64_t complete() const { return distribution.empty() ? 0 : distribution[0]; }
};

/// Takes cases into the counts of `result` for the variables numbered in `variables`, from 1. The
/// list must outlive the use of what is returned.
TakeCase Count_missing(const std::vector<int>& variables, MissingResult& result);

/// The lines of the report on missing responses, one variable a label.
std::vector<std::string> Missing_report_lines(const std::vector<std::string>& labels,
                                              const MissingResult& result);

}  // namespace tarven
