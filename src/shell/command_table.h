#pragma once

#include <string>
#include <string_view>

namespace tarven {

inline constexpr int CommandTableSize = 245;

/// The keyword of a command number 1..245; "---" marks an unused number.
std::string_view Command_keyword(int number);

/// The number of a keyword of exactly three upper-case characters: the first equal entry of the
/// table, 0 when there is none. "---" finds the first unused number.
int Command_number(std::string_view keyword);

}  // namespace tarven
