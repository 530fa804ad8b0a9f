#pragma once

#include <string>
#include <vector>

#include "tables/table/contingency_table.h"

namespace tarven {

/// A table entered as counts in a text file, project.EXA:
///
///     3                    number of variables, 2 to 8
///     S 2 3 Sex            one line each: label, categories, type (2 nominal, 3 ordinal), and a
///     A 4 3 Age            name if there is one
///     R 3 2
///     2 1 3                number of recursive blocks and the last variable of each
///     12 9 4 ...           the counts, in as many lines as wanted, the first variable fastest
///
/// Blank lines mean nothing.
struct TableFile {
    bool ok = false;
    ContingencyTable table;             ///< with margins
    std::vector<std::string> messages;  ///< what does not fit, when not ok
};

/// Reads the lines of such a file (Latin-1). Labels are different; all counts together fit 32 bits
/// and are 2 at least.
TableFile Read_table_file(const std::vector<std::string>& lines);

/// What the report says of a table so read.
std::vector<std::string> Table_file_lines(const ContingencyTable& table);

/// A table without its margins as the lines of a table file.
std::vector<std::string> Lines_of_table_file(const ContingencyTable& table);

}  // namespace tarven
