#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "project/line_reader.h"
#include "project/project.h"

namespace tarven {

/// What stands for a word of the DAT file that is no number. It is below the lower limit of any
/// sensible variable, and so becomes missing.
inline constexpr double NotANumber = -999999.0;

/// A word of the DAT file that is no number and counts as missing.
struct WordOfNoNumber {
    std::string text;
    std::int64_t line = 0;  ///< of the file, from 1
    int column = 0;         ///< 1..NTAL
};

/// How reading a record ended: it was read, the file had ended before it, or `error` says what was
/// wrong, as it is shown to the user.
struct RecordReading {
    bool ok = false;
    bool at_end = false;
    std::string error;
};

/// Reads the next record, NTAL numbers separated by blanks and tabs over one line or several, into
/// values[1..NTAL] (values is made NTAL+1 long). A comma is a decimal point. A number is an
/// optional sign and digits with at most one point; every other word has the value NotANumber.
/// Blank lines between and behind records mean nothing. A record must end where a line ends.
/// `first_line`, when given, has been taken from the file already. `no_numbers`, when given, gets
/// the words of a record without error that are no number.
RecordReading Read_record(LineReader& file, int NTAL, std::vector<double>& values,
                          const std::string_view* first_line = nullptr,
                          std::vector<WordOfNoNumber>* no_numbers = nullptr);

/// The variables, conditions and selections of a project laid out for reading many records.
struct Recoding {
    static constexpr std::size_t LookedUp = 128;
    struct Column {
        int number = 0;
        double lowest = 0;
        std::vector<double> cuts;  ///< upper cut points of category 1, 2, ...
        std::array<std::uint8_t, LookedUp> code_of_whole{};  ///< codes of 0, 1, ... 127
    };
    int NTAL = 0;
    std::vector<Column> variables;  ///< [0..N-1]
    std::vector<RangeCondition> conditions;
    std::vector<ValueSelection> selections;
    /// What Read_case does with the word of a column: nothing, it is the code of the one variable
    /// that has this number, or its value is needed. [1..NTAL]
    std::vector<std::int16_t> use;
    static constexpr std::int16_t Unused = 0, Valued = -1;
    std::vector<std::size_t> valued;  ///< variables that are coded from values, [0..N-1]
    /// Why these definitions cannot read a record: NTAL out of range, or a column outside the
    /// record. Empty when they can.
    std::string failure;

    int N() const { return static_cast<int>(variables.size()); }
};

Recoding Make_recoding(const ProjectDefinition& definition);

/// Codes of values[1..NTAL] into codes[0..N-1]: the category 1..dim, 0 for missing (a value below
/// vfra or above the last cut point, or a variable that is neither nominal nor ordinal). False when
/// a condition or selection leaves the case out; the codes are 0 then. `recoding` must be without
/// failure.
bool Recode_record(const Recoding& recoding, const std::vector<double>& values,
                   std::uint8_t* codes);

/// The short road from a line to the codes of a case.
enum class CaseReading : std::uint8_t {
    taken,     ///< the codes stand
    left_out,  ///< by a condition or selection
    unusual    ///< not one whole record of short words: Read_record must look at the line
};

/// Memory of Read_case.
struct CaseScratch {
    std::vector<double> values;  ///< of the columns that need one
    /// Words of the line, in columns that are used, that are no number; their line is not set.
    std::vector<WordOfNoNumber> no_numbers;
    std::vector<std::uint64_t> nonblank;  ///< of the line: bit k % 64 of [k / 64] is character k
};

/// Reads and recodes a record that fills one line, as Read_record and Recode_record do together,
/// without a value for what needs none.
CaseReading Read_case(std::string_view line, const Recoding& recoding, CaseScratch& scratch,
                      std::uint8_t* codes);

}  // namespace tarven
