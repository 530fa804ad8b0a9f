#pragma once

#include <string>

namespace tarven {

/// Opens the project that the program was started with: a name in the current folder, or a path.
/// False, after its message, when it could not be opened.
bool Open_project_at_start(const std::string& name);

}  // namespace tarven
