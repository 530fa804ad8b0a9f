#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarven {

/// Lines of the environment report that a floor above knows: what of the data and of the table is
/// in memory, and whether hypotheses exist.
struct EnvironmentSources {
    std::function<std::vector<std::string>()> data;   ///< DATA and TABDATA
    std::function<std::vector<std::string>()> table;  ///< Table
    std::function<bool()> hypotheses_exist;
    std::function<std::vector<std::string>()> screening;  ///< what screening has found
};

/// Set while floors register; it stays through the resets of the workspace.
inline EnvironmentSources The_environment_sources;

/// The report of SHOW E.
std::vector<std::string> Environment_lines();

}  // namespace tarven
