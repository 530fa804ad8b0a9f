#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarven {

/// Where lines of a floor stand in the environment report.
enum class EnvironmentPart : std::uint8_t {
    in_memory,   ///< what is ready: data, table, results
    above_tests  ///< what there is to test, in front of how tests are made
};

/// Adds lines to the report, behind those of the floors below. Once in a process.
void Register_environment(EnvironmentPart part, std::function<std::vector<std::string>()> lines);

/// The report of SHOW E.
std::vector<std::string> Environment_lines();

}  // namespace tarven
