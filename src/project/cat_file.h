#pragma once

#include <string>
#include <vector>

#include "project/project.h"

namespace tarven {

/// The name of a category that the CAT file does not name: the interval of raw values of an ordinal
/// variable ("64-72"), else "Cat " and the number.
std::string Default_category_name(const Variable& variable, int category);

/// Default names for all categories of all variables.
void Set_default_category_names(ProjectDefinition& project);

/// Takes the names of a CAT file: label, category number and name a line; of the name the first 8
/// characters. Lines that name no category of the project are passed over, and counted in the
/// result.
int Read_CAT_file(const std::vector<std::string>& lines, ProjectDefinition& project);

/// The lines of a CAT file with the names that the categories have.
std::vector<std::string> CAT_lines(const ProjectDefinition& project);

}  // namespace tarven
