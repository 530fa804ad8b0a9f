#pragma once

#include <string>
#include <vector>

#include "tables/independence/fisher.h"
#include "tables/table/two_way.h"

namespace tarven {

/// The result of an enumeration: the table, how many tables fit its margins, statistic and gamma
/// with their asymptotic and exact p.
std::vector<std::string> Fisher_report(const TwoWayTable& counts, char row_label, char column_label,
                                       const FisherRecord& record);

/// One table of a listing: its cells and what it counts for.
std::vector<std::string> Fisher_table_lines(const FisherTable& table);

}  // namespace tarven
