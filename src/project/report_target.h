#pragma once

#include <filesystem>
#include <string>

namespace tarven {

/// Why a report may not be written to a file, or empty when it may. What makes up a project is no
/// target, REP and TMP aside: the files of the open project, by whatever name or link `path` leads
/// to them, and those of any project that is defined in the folder of `path`, there or not yet.
/// Nor is the file to which standard output goes, or the copy of the report: they have the lines
/// already, and would lose what follows. `DEF` may name a project that is going to be opened.
std::string Refusal_of_target(const std::filesystem::path& path,
                              const std::filesystem::path& DEF = {});

}  // namespace tarven
