#include "app/register.h"

#include "graph/register_graph.h"
#include "project/data_commands.h"
#include "project/project_commands.h"
#include "rasch/register_rasch.h"
#include "shell/commands.h"
#include "shell/shell_commands.h"
#include "shell/workspace.h"
#include "tables/register_tables.h"

namespace tarven {

void Register_all() {
    Register_shell_lifecycle();
    Register_shell_commands();
    Register_project_commands();
    Register_data_commands();
    Register_tables();
    Register_graph();
    Register_rasch();
    Init_workspace();
}

}  // namespace tarven
