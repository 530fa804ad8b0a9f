#pragma once

#include <filesystem>
#include <string>

#include "project/project.h"

namespace tarven {

/// The files of a project in a folder, found without regard to case, with their existence flags
/// (that of BEL stays clear). A file that is not there gets the extension in upper case.
ProjectFiles Set_project_files(const std::filesystem::path& folder, const std::string& name);

/// One file of a project by its extension, as Set_project_files finds it.
ProjectFile Project_file(const std::filesystem::path& folder, const std::string& name,
                         const std::string& extension);

/// Removes what a process that is gone has left of files that it was about to replace: files of the
/// folder called stem.EXTENSION.PROCESS.new, as ReplacementFile names them.
void Remove_leftovers(const std::filesystem::path& folder, const std::string& stem);

}  // namespace tarven
