#include "tables/table/table_workspace.h"

#include <fmt/format.h>

#include "shell/lifecycle.h"
#include "shell/user.h"
#include "tables/numbers/stream_workspace.h"

namespace tarven {

void Set_current_table(ContingencyTable table, const std::string& origin) {
    The_table.table = std::move(table);
    The_table.table_allocated = The_table.table_ready = true;
    The_table.origin = origin;
    Run_moment(Moment::table_replaced);
    Show_table_status();
}

void Dispose_current_table() {
    const bool was_there = The_table.table_allocated;
    The_table = TableWorkspace();
    if (was_there) Run_moment(Moment::table_replaced);
    Show_table_status();
}

void Show_table_status() {
    if (!The_table.table_ready) {
        SetStatus(1, "No table");
        return;
    }
    const std::string& origin = The_table.origin;
    SetStatus(1, fmt::format("{} {} ({})", origin.empty() ? "Table" : origin,
                             The_table.table.labels(), The_table.table.NTOTAL));
}

bool Tabulate_current_table(const TableRequest& request) {
    Dispose_current_table();
    Result<Tabulation> made = Tabulate(Cases_of_project(), request, [] { return Stop_asked(); });
    if (!made) {
        for (const std::string& message : made.failure().messages) ShowMessage(message);
        ShowMessage("TABULATE failure");
        return false;
    }
    Set_current_table(std::move(made->table));
    return true;
}

void Register_table_lifecycle() {
    At_moment(Moment::workspace_reset, "table", [] { The_table = TableWorkspace(); });
    At_moment(Moment::workspace_reset, "stream", [] { The_stream = RandomStream(); });
    At_moment(Moment::project_about_to_close, "table", Dispose_current_table);
    At_moment(Moment::variables_changed, "table", Dispose_current_table);
    // Its counts are those of other cases.
    At_moment(Moment::data_replaced, "table", [] {
        if (!The_table.table_allocated) return;
        ShowMessage("TABLE HAS BEEN LOST");
        Dispose_current_table();
    });
}

}  // namespace tarven
