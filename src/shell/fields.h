#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarven {

// The columns of a report. Everything is measured in characters, which are bytes (Latin-1); a value
// that does not fit widens its field; the decimal point is a point whatever the locale.

/// `value` with `decimals` decimals, right-aligned in `width`. Ties round by the exact binary
/// value; what rounds to zero has no sign; what is not a number is blank.
std::string Field(double value, int width, int decimals);

/// A whole number, right-aligned in `width`.
std::string Field_of_integer(std::int64_t value, int width);

template <std::integral T>
std::string Field(T value, int width) {
    return Field_of_integer(static_cast<std::int64_t>(value), width);
}

/// `text` at the right or the left of `width` characters, never cut.
std::string Right(std::string_view text, int width);
std::string Left(std::string_view text, int width);

/// Appends a field, with a blank between where neither side brings one: what outgrows its column
/// stays apart from its neighbour.
std::string Beside(std::string line, std::string_view field);

/// `count` blanks; none when count is not positive.
std::string Blanks(int count);

/// Puts more lines behind those there are.
void Append_lines(std::vector<std::string>& lines, const std::vector<std::string>& more);

}  // namespace tarven
