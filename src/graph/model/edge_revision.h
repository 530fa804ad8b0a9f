#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "graph/model/chain_graph.h"

namespace tarven {

/// The second place of a pair that means every other variable.
inline constexpr int EveryOther = -1;

/// Two places of a list of pairs as they were typed: a variable, EveryOther for "*", or any other
/// number, which no variable has.
struct TypedPair {
    int first = 0;
    int second = 0;
    bool operator==(const TypedPair&) const = default;
};

/// What is read of a list of variables: its first 120 characters, less a number that goes on behind
/// them.
std::string Part_read(std::string_view text);

/// The variables that a text names, by label or by number, in the order written: EveryOther for
/// "*", and numbers of no variable as they are, those above 999 as 999. Nothing when a character is
/// no label. Reads no more than Part_read.
std::vector<int> Typed_places(std::string_view text, std::string_view labels);

/// The pairs in the text behind the keyword of a line, two by two, an odd last one dropped. Nothing
/// when a character is no label or there are fewer than two.
std::vector<TypedPair> Typed_pairs(std::string_view line, std::string_view labels);

enum class Revised : std::uint8_t {
    yes,
    unchanged,  ///< the pair had the status already
    refused     ///< a variable with itself, or what is no variable
};

/// What became of one pair.
struct RevisedPair {
    TypedPair pair;
    Revised outcome = Revised::yes;
    std::uint8_t before = 0;  ///< the status it had, unless refused
    bool operator==(const RevisedPair&) const = default;
};

struct EdgeRevision {
    ChainGraph graph;
    std::vector<RevisedPair> pairs;  ///< in the order given, "*" written out
    bool changed = false;            ///< at least one pair was
};

/// Gives each pair the status, in the order given. "A*" is A with every other variable, ascending.
/// The graph counts as revised when a pair changed.
EdgeRevision Revise_edges(const ChainGraph& graph, const std::vector<TypedPair>& pairs,
                          EdgeStatus status);

/// Why the edges of the last block cannot be fixed.
enum class NotFixed : std::uint8_t { fixed, one_block, one_variable, all_fixed_already };

struct ExplanatoryRevision {
    ChainGraph graph;
    NotFixed reason = NotFixed::fixed;
};
/// Fixes every pair of variables behind the last cut point but one.
ExplanatoryRevision Fix_explanatory(const ChainGraph& graph);

}  // namespace tarven
