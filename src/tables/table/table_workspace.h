#pragma once

#include <string>

#include "tables/table/contingency_table.h"
#include "tables/table/tabulate.h"

namespace tarven {

/// The current table of the workspace.
struct TableWorkspace {
    ContingencyTable table;
    bool table_allocated = false;  ///< its variables have been selected
    bool table_ready = false;      ///< it is filled, with margins
    std::string origin;            ///< "EXA table" for one from a table file, else empty
};

inline TableWorkspace The_table;

/// Makes `table` the current one. Hypotheses of the former table are lost.
void Set_current_table(ContingencyTable table, const std::string& origin = {});

/// Gives up the current table; panel 1 says "No table".
void Dispose_current_table();

/// Shows the current table on panel 1: "Table ABC (2201)".
void Show_table_status();

/// Replaces the current table by one of these variables, from the source that Table_source names.
/// The former table is gone in any case. False, with messages, when there is no table then.
bool Tabulate_current_table(const TableRequest& request);

void Register_table_lifecycle();

}  // namespace tarven
