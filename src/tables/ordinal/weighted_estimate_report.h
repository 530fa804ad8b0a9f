#pragma once

#include <span>
#include <string>
#include <vector>

#include "tables/ordinal/weighted_estimate.h"

namespace tarven {

/// The report on values of any kind; `labels` name the groups.
std::vector<std::string> Weighted_estimate_lines(const WeightedEstimate& estimate,
                                                 std::span<const std::string> labels);

/// The lines of the test under its name `test`, or why there is none; `incomplete` is what is said
/// when a group has no variance.
std::vector<std::string> Equality_lines(const WeightedEstimate& estimate, const std::string& test,
                                        const std::string& incomplete);

}  // namespace tarven
