#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tables/table/contingency_table.h"
#include "tables/table/two_way.h"

namespace tarven {

/// Tables as a report shows them: one box a stratum of the variables behind the first two. All
/// procedures return lines.

/// What is printed of each cell. Which option letters set what is the business of Test_parameters.
struct TableOptions {
    bool Observed = true;
    bool PrintMarginals = false;  ///< strata at the margin of a variable, too
    bool RowPercentages = false;
    bool ColumnPercentages = false;
    bool JointProbabilities = false;  ///< percentages of the total
    bool ExpectedCounts = false;      ///< under independence of rows and columns
    bool FittedCounts = false;        ///< where a stratum has them
};

/// One box.
struct PrintedStratum {
    std::vector<int> category;  ///< one a conditioning variable; DIM+1 is the margin
    TwoWayTable counts;
    const ExpectedTable* fitted = nullptr;  ///< with margins; may be missing
    std::string result;                     ///< line under the box; empty: none
};

/// Category c of a variable: its name cut to 6 characters, its number when it has none, "TOTAL" for
/// the margin.
std::string Category_label(const TableVariable& variable, int c);

/// The head and the box of one stratum, with the line of its result. A stratum without cases says
/// so instead of its rows.
std::vector<std::string> Stratum_lines(const TableVariable& rows, const TableVariable& columns,
                                       const std::vector<TableVariable>& conditioning,
                                       const PrintedStratum& stratum, const TableOptions& options);

/// Every stratum of a table, the first conditioning variable fastest, under variables 3..Nvar;
/// strata at a margin only with PrintMarginals. `fitted` holds fitted counts under the same cell
/// numbers, or is empty. The lines go to `write` stratum by stratum, since a large table has
/// millions of them.
void Print_table(const ContingencyTable& table, const TableOptions& options,
                 const std::vector<double>& fitted,
                 const std::function<void(const std::string&)>& write);

/// "Variables included in the current table" with label, name, categories, type and block.
std::vector<std::string> Table_variables_lines(const ContingencyTable& table);

}  // namespace tarven
