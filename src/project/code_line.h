#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "project/project.h"

namespace tarven {

// The SYS and the TAB file hold one case or one pattern a line: a category code for each project
// variable in order, each followed by one blank.

/// dim of the project variables, [v-1] for variable v: the highest code of each.
std::vector<int> Dimensions(const ProjectDefinition& definition);

/// Appends N codes, each with its blank, to a line.
void Append_codes(std::string& line, const std::uint8_t* codes, int N);

/// Reads one code 0..dim a variable from the front of `line` into codes[0..N-1] and leaves the
/// rest of the line in `rest`. What does not fit, or empty.
std::string Read_codes(std::string_view line, const std::vector<int>& dims, std::uint8_t* codes,
                       std::string_view& rest);

}  // namespace tarven
