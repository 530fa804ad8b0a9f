#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "project/line_reader.h"
#include "project/project.h"
#include "project/raw_record.h"

namespace tarven {

/// Values of one column of the DAT file, and the categories they fall in where the column is a
/// project variable.
struct ColumnFrequencies {
    /// Above this many different values only the categories are counted on.
    static constexpr std::size_t MostValues = 10000;

    int column = 0;
    int variable = 0;                       ///< number of the project variable, 0 for no variable
    std::map<double, std::int64_t> values;  ///< the raw values seen, with their counts
    bool too_many_values = false;           ///< values is empty: there were more than MostValues
    std::vector<std::int64_t> categories;   ///< [c-1] of category c; empty without a variable
    std::int64_t below = 0;                 ///< values below vfra, words that are no numbers too
    std::int64_t above = 0;                 ///< values above the last cut point
    std::int64_t total = 0;                 ///< accepted cases

    std::int64_t missing() const { return below + above; }
};

struct FrequenciesResult {
    std::vector<ColumnFrequencies> columns;
    std::int64_t read = 0;      ///< records
    std::int64_t accepted = 0;  ///< those that satisfy conditions and selections
    std::string failure;        ///< why the file was not read to its end
};

/// Counts raw values and categories of the accepted records of a DAT file, for the columns of the
/// project variables listed, from 1, in that order, and then, when `extended`, for every column
/// that no project variable is in.
FrequenciesResult Count_frequencies(const ProjectDefinition& definition, LineReader& DAT,
                                    const std::vector<int>& variables, bool extended);

}  // namespace tarven
