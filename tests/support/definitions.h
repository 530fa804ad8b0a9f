#pragma once

#include <string>
#include <vector>

#include "project/project.h"

namespace tarven {

/// Variables in columns 1, 2, ... with raw values 1..dim for categories 1..dim, labels A, B, ...
ProjectDefinition Definition_of_dims(const std::vector<int>& dims);

/// The definitions of an example project, read in the plainest way.
ProjectDefinition Example_definition(const std::string& name);

/// Path of a file of an example project: "DAT" of "survey".
std::string Example_file(const std::string& name, const std::string& extension);

}  // namespace tarven
