#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "shell/limits.h"

namespace tarven {

// Words and numbers of a line of text. A word is a maximal run of characters other than the blank;
// the tab is an ordinary character here.

inline constexpr int MaxNumbers = 58;  ///< digit runs taken from one line
inline constexpr int MaxReals = 59;    ///< reals taken from one line
inline constexpr double NoReal = -32000.0;

/// The digits 0 to 9, whatever the locale.
constexpr bool Is_digit(char c) {
    return c >= '0' && c <= '9';
}

/// What a whole text is, leading and trailing blanks aside.
enum class StringType : std::uint8_t {
    empty = 0,
    blanks = 1,         ///< only blanks
    several_words = 2,  ///< a blank inside
    text = 3,           ///< not numeric
    integer = 4,        ///< optional sign, digits
    real = 5            ///< optional sign, digits with exactly one point
};

/// Digit runs of a text. numbers[0..count-1]; surplus tells that there were more than 58.
struct Numbers {
    std::array<std::int32_t, MaxNumbers> numbers{};
    int count = 0;
    bool surplus = false;
};

/// reals[0..count-1]; the entries behind are -32000.
struct Reals {
    std::array<double, MaxReals> reals{};
    int count = 0;
};

int Word_count(std::string_view text);

/// The n-th word, n from 1; empty when there are fewer, or n is below 1.
std::string Get_word(int n, std::string_view text);

/// As Get_word, but a part between double quotes belongs to its word with its blanks, and the
/// quotes do not: the second of CHD "my study" is my study. A quote without a second one is an
/// ordinary character.
std::string Get_name(int n, std::string_view text);

/// "1E5" is text and never a number; so are "." and "+".
StringType String_type(std::string_view text);

/// Runs of digits among the first 120 characters, each by repeated multiplication by ten in 32
/// bits, wrapping silently. Signs and points only separate: "0.05" gives 0 and 5.
Numbers Extract_numbers(std::string_view text);

/// The words of type integer or real, in order, at most 59.
Reals Extract_reals(std::string_view text);

/// The value of a text of type integer or real; false for any other text, and for a value outside
/// the range of a double. Independent of the locale.
bool To_real(std::string_view text, double& value);

/// The value of a text of type integer that fits 32 bits; false for any other.
bool To_integer(std::string_view text, std::int32_t& value);

/// a-z to A-Z; every other character stays.
char Upper(char c);
std::string Upper(std::string_view text);

}  // namespace tarven
