#pragma once

#include <cstdint>

namespace tarven {

// The limits of the system, as SHOW L prints them. They are rules, not sizes of memory: each is
// checked in 64 bits, with its own message, before anything is allocated.
inline constexpr int MaxVariables = 59;        ///< project variables
inline constexpr int MaxCategories = 57;       ///< categories of a variable
inline constexpr int MaxRecordLength = 1600;   ///< values in a record of the DAT file
inline constexpr int DataArraySize = 655000;   ///< bytes in an array of DATA or TABdata
inline constexpr int MaxDataArrays = 30;       ///< arrays of DATA, or of TABdata
inline constexpr int CountArraySize = 162230;  ///< counts in an array of TABcount or of a table
inline constexpr int MaxCountArrays = 30;      ///< arrays of TABcount, or blocks of a table
inline constexpr std::int64_t MaxDataBytes = 19650000;  ///< cases times variables
inline constexpr std::int64_t MaxTableCells = 4866900;  ///< cells, with or without margins
inline constexpr int MaxTableVariables = 8;             ///< dimensions of an ordinary table
inline constexpr int MaxBigTableVariables = 85;         ///< dimensions of a big table
inline constexpr int MaxHypotheses = 2500;
inline constexpr int MaxItems = 54;
inline constexpr int MaxItemScore = 7;
inline constexpr int MaxTotalScore = 253;
inline constexpr int MaxBootstrapItems = 40;
inline constexpr int MaxTextLength = 120;  ///< file names, category names, text records
inline constexpr int MaxNameLength = 8;    ///< names read from the VAR file
inline constexpr int MaxComments = 10;     ///< counted; nine are stored
inline constexpr int MaxSelections = 85;   ///< value-list selections of the DEF file

static_assert(static_cast<std::int64_t>(DataArraySize) * MaxDataArrays == MaxDataBytes);
static_assert(static_cast<std::int64_t>(CountArraySize) * MaxCountArrays == MaxTableCells);

}  // namespace tarven
