#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "project/line_reader.h"
#include "project/project.h"

namespace tarven {

/// What stands for a word of the DAT file that is no number. It is below the lower limit of any
/// sensible variable, and so becomes missing.
inline constexpr double NotANumber = -999999.0;

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
RecordReading Read_record(LineReader& file, int NTAL, std::vector<double>& values);

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

}  // namespace tarven
