#include "app/register.h"

#include "graph/register_graph.h"
#include "project/data_commands.h"
#include "project/project_commands.h"
#include "rasch/register_rasch.h"
#include "shell/commands.h"
#include "shell/shell_commands.h"
#include "shell/workspace.h"
#include "tables/gamma_commands.h"
#include "tables/later_table_commands.h"
#include "tables/multiple_testing_commands.h"
#include "tables/pseudo_gamma_commands.h"
#include "tables/tables_commands.h"
#include "tables/test_commands.h"

namespace tarven {

void Register_all() {
    Register_shell_lifecycle();
    Register_shell_commands();
    Register_project_commands();
    Register_data_commands();
    Register_tables_commands();
    Register_test_commands();
    Register_multiple_testing_commands();
    Register_gamma_commands();
    Register_pseudo_gamma_commands();
    Register_later_table_commands();
    Register_graph();
    Register_rasch();
    Init_workspace();
}

}  // namespace tarven
