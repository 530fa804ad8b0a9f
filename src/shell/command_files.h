#pragma once

#include <filesystem>

namespace tarven {

/// Command files may run each other this deep; a file that runs itself ends here.
inline constexpr int MaxCommandFileDepth = 50;

/// Runs every line of a command file. Without a user the lines behind a question answer it. A line
/// that fails gives its message and the next one follows; EXI ends all. A missing file gives its
/// name and " not found", one that cannot be read its reason. False when nothing was run.
bool RunBatchfile(const std::filesystem::path& file);

}  // namespace tarven
