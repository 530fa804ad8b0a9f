#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "shell/words.h"

namespace tarven {

inline constexpr int MaxParameters = 59;

/// A command line after its three readings, each blind to the others: the keyword, every run of
/// digits, and every non-blank character behind the first blank. There is no syntax error; a
/// command takes what it wants, or reads CommandLine again itself.
struct ParsedLine {
    std::string CommandLine;         ///< as typed, case kept, never trimmed
    std::string Keyword;             ///< at most three characters, upper-cased
    std::uint8_t CommandNumber = 0;  ///< 1..245 for a keyword of the command table, else 0
    bool IsComment = false;          ///< the first significant character is "!" or "*"
    std::array<std::int32_t, MaxNumbers> NumericParameters{};  ///< [0..NumericCount-1]
    std::uint8_t NumericCount = 0;                             ///< 0..58
    std::array<char, MaxParameters> ParameterField{};          ///< [0..ParameterCount-1]
    std::uint8_t ParameterCount = 0;                           ///< 0..59
    bool NumbersCut = false;  ///< more than 58 numbers stood in the line

    bool operator==(const ParsedLine&) const = default;
};

/// The one parsed line of the workspace. A command that runs further lines loses its own.
inline ParsedLine The_line;

/// Reads `text` into `line`. An empty text leaves NumericCount and IsComment as the line before
/// left them. CommandLine is the caller's to store. Messages are left to the caller: NumbersCut.
void Parse_command(std::string_view text, ParsedLine& line);

/// Parse_command into The_line with CommandLine stored and "WARNING - too many numerical
/// parameters" shown where it is due.
void Read_command_line(const std::string& text);

/// Whether `letter` (upper case) is among the parameters of The_line.
bool Has_parameter(char letter);
bool Has_parameter(const ParsedLine& line, char letter);

}  // namespace tarven
