#pragma once

#include <cstdint>

#include "project/cell_store.h"
#include "tables/numbers/random_stream.h"

namespace tarven {

/// `cases` cases drawn with replacement, each a Random_int over all cases in the order of the
/// cells. Cells without a case are left out. A store without cases gives an empty one.
CellStore Bootstrap_sample(const CellStore& store, std::int32_t cases, RandomStream& stream);

/// The cases of all cells.
std::int64_t Cases_of(const CellStore& store);

}  // namespace tarven
