#include "app/register.h"

#include "project/data_commands.h"
#include "shell/commands.h"
#include "shell/shell_commands.h"
#include "shell/workspace.h"
<<<<<<< HEAD
#include "tables/tables_commands.h"
=======
#include "tables/contingency_table.h"
#include "tables/test_commands.h"
>>>>>>> 9f5d9f1 (Add HYPOTHESES, THREEWAY, ELABORATE, TEST, CHOOSE and FISHER on the current table)

namespace tarven {

void Register_all() {
    Register_shell_lifecycle();
    Register_shell_commands();
    Register_data_commands();
<<<<<<< HEAD
    Register_tables_commands();
=======
    Register_table_lifecycle();
    Register_test_commands();
>>>>>>> 9f5d9f1 (Add HYPOTHESES, THREEWAY, ELABORATE, TEST, CHOOSE and FISHER on the current table)
    Init_workspace();
}

}  // namespace tarven
