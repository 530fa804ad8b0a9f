#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "project/cell_store.h"
#include "project/project.h"

namespace tarven {

/// What cases have in common whatever their order, so that it can be told whether a SYS and a TAB
/// file hold the same cases: how many there are, and the sum of a 64-bit number of the codes of
/// each. Different cases have the same sum with a chance of some 2^-64.
struct CaseTally {
    std::int64_t cases = 0;
    std::uint64_t sum = 0;
    std::array<std::uint8_t, MaxBigTableVariables> seen{};  ///< [v-1] 0: missing in all cases

    /// Adds `count` cases of codes[0..N-1].
    void Add(const std::uint8_t* codes, int N, std::int64_t count);

    bool operator==(const CaseTally&) const = default;
};

CaseTally Tally_of(const CellStore& store);

/// A line for each variable without an observed case, with its column and the raw values that have
/// a category; none when there are no cases at all. `first_line` is the line of DAT at which the
/// first case stands, 0 when that is not known.
std::vector<std::string> Lines_on_missing_variables(const ProjectDefinition& definition,
                                                    const CaseTally& tally,
                                                    const std::string& DAT_name,
                                                    std::int64_t first_line);

}  // namespace tarven
