#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shell/limits.h"

namespace tarven {

/// The arrays of `size` elements that `elements` elements fill.
constexpr std::int64_t Arrays_for(std::int64_t elements, std::int64_t size) {
    return elements / size + (elements % size != 0 ? 1 : 0);
}

/// TABdata: the distinct response patterns of the cases, each with its count, in ascending order of
/// the codes, variable 1 the most significant and a missing code 0 first. Cells count from 1.
///
/// The limits are those of 30 arrays of 655000 codes and 30 arrays of 162230 counts; what is held
/// is one block of codes and one of counts, as long as they are used.
struct CellStore {
    int N = 0;                         ///< variables of a cell
    int Ntabdata_arrays = 0;           ///< arrays of codes that the store may fill, at most 30
    int Ntabcount_arrays = 0;          ///< arrays of counts that it may fill, at most 30
    std::vector<std::uint8_t> codes;   ///< code of variable v of cell k at (k-1)*N + v-1
    std::vector<std::int32_t> counts;  ///< count of cell k at k-1

    std::int64_t Ncells() const { return static_cast<std::int64_t>(counts.size()); }
    const std::uint8_t* Cell(std::int64_t cell) const { return codes.data() + (cell - 1) * N; }

    bool operator==(const CellStore&) const = default;
};

/// Makes `store` a store of `ncells` zero cells of N variables, or, with ncells 0, an empty one
/// that may grow up to the limits. The text of the failure, with an empty store, or empty: more
/// than 30 arrays of codes, "Failure initializing TABdata"; more than 30 arrays of counts, "TABDATA
/// not possible"; no memory, "Not enough memory for TABdata".
std::string Init_TABdata(CellStore& store, std::int64_t ncells, int N);

/// Gives the store's memory back.
void Dispose_TABdata(CellStore& store);

/// What a store of N variables says that grows over a limit: the one it meets first.
std::string Failure_of_overflow(int N);

/// Whether `cells` cells of N variables are within both limits.
constexpr bool Cells_fit(std::int64_t cells, int N) {
    return cells * N <= MaxDataBytes && cells <= MaxTableCells;
}

}  // namespace tarven
