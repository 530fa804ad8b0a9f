#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "project/project.h"

namespace tarven {

/// " binary", " 4 nominal categories" or " 4 ordinal categories".
std::string Type_text(const Variable& variable);

/// The labels of all variables with " <- " at each change of block.
std::string Block_line(const ProjectDefinition& project);

/// The summary that every opening writes. cells: those of TABdata or of the TAB file.
std::vector<std::string> Project_summary(const Project& project, std::int64_t cells);

/// SHOW V: variables with their categories, comments, and which variables may depend on which.
std::vector<std::string> Variables_report(const ProjectDefinition& project);

/// SHOW C: the comments of the project.
std::vector<std::string> Comments_report(const ProjectDefinition& project);

/// QVM: the fields of the workspace by their names.
std::vector<std::string> Global_variables_report(const Project& project, bool data_ready,
                                                 bool tabdata_ready, std::int64_t cells);

}  // namespace tarven
