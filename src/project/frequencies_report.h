#pragma once

#include <string>
#include <vector>

#include "project/frequencies.h"

namespace tarven {

/// The report of FREQUENCIES.
std::vector<std::string> Frequencies_lines(const ProjectDefinition& definition,
                                           const FrequenciesResult& result);

/// The selections and conditions that a case must satisfy, one a line; "All cases will be used"
/// without any.
std::vector<std::string> Case_selection_lines(const ProjectDefinition& definition);

/// A raw value in its shortest decimal form.
std::string Raw_value(double value);

}  // namespace tarven
