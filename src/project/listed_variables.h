#pragma once

#include <string_view>
#include <vector>

#include "project/project.h"

namespace tarven {

/// Project variables behind the first word of a line, by label or by number, each once, in the
/// order written; all of them without a list and for "*". A label in the other case is found when
/// the project has no variable of the case typed. False when a label is unknown or no number is one
/// of a variable.
bool Listed_variables(std::string_view line, const ProjectDefinition& definition,
                      std::vector<int>& variables);

}  // namespace tarven
