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

/// The words of a DAT file that are no number, in columns that a variable, a condition or a
/// selection uses: the different ones with their count and where the first stands.
struct WordsOfNoNumber {
    static constexpr std::size_t MostKinds = 5;
    struct Kind {
        WordOfNoNumber first;
        std::int64_t count = 0;
    };
    std::vector<Kind> kinds;  ///< in the order of the file, the first five
    std::int64_t others = 0;  ///< words that are none of those

    void Add(const WordOfNoNumber& word);
};

/// What a DAT file gave.
struct RecordCounts {
    std::int64_t read = 0;  ///< records
    std::int64_t accepted = 0;
    std::int64_t first_line = 0;  ///< at which the first accepted record begins
    WordsOfNoNumber no_numbers;   ///< of the records read
};

/// A line a kind of word that is no number, for the user: how many, and where the first stands.
std::vector<std::string> Lines_on_words(const WordsOfNoNumber& words, const std::string& file_name);

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
