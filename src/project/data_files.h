#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "project/cell_store.h"
#include "project/line_reader.h"
#include "project/raw_record.h"

namespace tarven {

// Readers of the three files that hold the cases of a project. Each returns what did not fit, with
// the name of the file and the number of the line, or an empty text; nothing is passed over.

/// Receives codes[0..N-1] of one case, or of `count` cases with the same codes. False ends reading.
using TakeCase = std::function<bool(const std::uint8_t* codes, std::int32_t count)>;

/// How many records a DAT file gave.
struct RecordCounts {
    std::int64_t read = 0;
    std::int64_t accepted = 0;
};

/// Every record of a DAT file, recoded; the accepted ones go to `take` with count 1. A failure
/// comes after the records before it.
std::string Read_DAT_cases(LineReader& file, const Recoding& recoding, RecordCounts& counts,
                           const TakeCase& take);

/// Every case of a SYS file: one line of exactly one code 0..dims[v-1] a variable.
std::string Read_SYS_cases(LineReader& file, const std::vector<int>& dims, const TakeCase& take);

/// Every cell of a TAB file: codes and a count of 1 or more, lines in strictly ascending order, the
/// counts together within 32 bits.
std::string Read_TAB_cells(LineReader& file, const std::vector<int>& dims, const TakeCase& take);

/// The cells of a TAB file as a store, which is empty after a failure. `cases` gets the sum of the
/// counts.
std::string Read_TAB_store(LineReader& file, const std::vector<int>& dims, CellStore& store,
                           std::int64_t& cases);

}  // namespace tarven
