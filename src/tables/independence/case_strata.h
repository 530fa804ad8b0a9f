#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "project/data.h"
#include "shell/limits.h"
#include "shell/one_based.h"
#include "shell/result.h"
#include "shell/stop_check.h"
#include "tables/independence/hypotheses.h"
#include "tables/table/gamma.h"
#include "tables/table/two_way.h"

namespace tarven {

/// Hypotheses with any number of conditioning variables, taken from the cases and not from a table:
/// the strata are the combinations of categories that occur, so that memory follows the cases.

/// The distinct patterns of the cases, packed so that a pass over them is cheap. A pattern is
/// `words` words; variable v holds its category, 0 when it has none, in the bits of its place, and
/// later variables stand in higher bits.
struct PackedCases {
    struct Place {
        std::uint32_t word = 0;
        std::uint32_t shift = 0;
        std::uint64_t mask = 0;  ///< of the category, before it is shifted
    };
    int nvar = 0;                        ///< at most MaxVariables
    One_based<int, MaxVariables> DIM;    ///< [1..nvar]
    One_based<int, MaxVariables> VTYPE;  ///< [1..nvar]
    One_based<Place, MaxVariables> place;
    std::size_t words = 0;
    std::vector<std::uint64_t> keys;     ///< word w of pattern k, from 0, at k * words + w
    std::vector<std::uint64_t> missing;  ///< of pattern k: bit v-1 when variable v has no category
    std::vector<std::int32_t> counts;    ///< of pattern k, positive

    std::size_t patterns() const { return counts.size(); }
};

/// No cases yet, of variables with these numbers of categories (variable v at v-1).
PackedCases Packed_cases_of(std::span<const int> dims, std::span<const int> types);
/// Adds `count` cases of codes[v-1] of variable v; a code of 0 or above the number of categories is
/// none.
void Add_cases(PackedCases& packed, const std::uint8_t* codes, std::int32_t count);

/// The cases of a project, from the source that a table would be filled from.
Result<PackedCases> Pack_cases(const CasesAtHand& cases, const StopCheck& stop = {});

/// Working memory of a pass, kept from one hypothesis to the next. One for each thread.
struct StrataMemory {
    std::vector<std::uint64_t> keys;     ///< narrow keys of patterns, each above its number
    std::vector<std::uint64_t> scratch;  ///< of their sort
    std::vector<std::uint32_t> slots;    ///< hash table of groups, counted from 1; 0 is free
    std::vector<std::uint32_t> group;    ///< of each pattern
    std::vector<std::uint32_t> first;    ///< pattern of each group that came first
    std::vector<std::uint32_t> begin;    ///< of each group in `sorted`
    std::vector<std::uint32_t> sorted;   ///< patterns, those of a group together
    std::vector<std::uint32_t> strata;   ///< informative groups in their order
    TwoWayTable counts;
};

/// How the cases of a hypothesis fall into strata.
struct StrataFound {
    std::int64_t cases = 0;       ///< those with a category of every variable of the hypothesis
    std::int64_t strata = 0;      ///< informative ones, each visited
    bool missing_slices = false;  ///< some combinations of Z tell nothing about X and Y
};

/// Visits the strata of a hypothesis over the variables of `packed` in which both X and Y have at
/// least two categories with cases, each a table with margins. Their order is that of the slices of
/// a table of these variables, the first conditioning variable fastest, so that sums over them come
/// out the same in every digit. Cost: one pass over the patterns, and the strata sorted.
StrataFound For_each_stratum(const PackedCases& packed, const Hypothesis& row, StrataMemory& memory,
                             const std::function<void(const TwoWayTable&)>& visit);

/// Partial gamma of a hypothesis.
struct GammaFromCases {
    bool tested = false;  ///< gamma is defined for the pair, and there is an informative stratum
    PartialGamma gamma;
    StrataFound found;
};
GammaFromCases Gamma_from_cases(const PackedCases& packed, const Hypothesis& row,
                                StrataMemory& memory);

/// Whether gamma is defined for a pair of variables.
bool Gamma_is_defined(const PackedCases& packed, int x, int y);

}  // namespace tarven
