#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/commands.h"
#include "shell/variable_lists.h"

namespace tarven {

/// What a lone parameter of a command on pairs and lists means.
enum class Wildcard : std::uint8_t {
    none = 0,
    absent = 1,  ///< "-": the missing edges
    linked = 2,  ///< "?" or "+": the edges
    all = 3      ///< "*"
};

struct RequiredParameters {
    bool ok = false;
    Wildcard wildcard = Wildcard::none;
};

/// For commands on pairs and lists: a lone "-", "+", "?" or "*", or two parameters at least. Else
/// asks, puts the answer behind the keyword in The_line and looks again; an empty answer ends it.
RequiredParameters Require_parameters();

/// "Failure: " and the line, for parameters that name nothing.
Outcome Refuse_line();

/// AskUser with one blank as the default.
std::string Ask_string(const std::string& caption, const std::string& prompt);

/// A list through String_to_variables; "Error converting string to variables" when it fails.
VariableList Ask_variables(const std::string& caption, const std::string& prompt,
                           std::string_view labels);

/// The same with `pure_items`, the labels of the items in no local dependence and no DIF, as the
/// default; "No pure Rasch items" when there are none.
VariableList Ask_pure_items(const std::string& caption, const std::string& prompt,
                            std::string_view labels, const std::string& pure_items);

/// Pairs of variable numbers, each ascending. A pair of equal numbers, or no pair, gives "Error
/// defining variable pairs" and none at all.
std::vector<std::pair<std::uint8_t, std::uint8_t>> Ask_pairs(const std::string& caption,
                                                             const std::string& prompt,
                                                             std::string_view labels);

struct AskedNumbers {
    std::array<std::int32_t, 86> numbers{};  ///< [0..count-1], zero behind
    int count = 0;
};
AskedNumbers Ask_numbers(const std::string& caption, const std::string& prompt);

inline constexpr std::int32_t NoInteger = -999;
/// The first number of the answer, -999 without one.
std::int32_t Ask_integer(const std::string& caption, const std::string& prompt);

}  // namespace tarven
