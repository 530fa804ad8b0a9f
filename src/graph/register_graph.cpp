#include "graph/register_graph.h"

#include "graph/model/graph_commands.h"
#include "graph/model/graph_workspace.h"

namespace tarven {

void Register_graph() {
    Register_graph_workspace();
    Register_graph_commands();
}

}  // namespace tarven
