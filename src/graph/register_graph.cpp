#include "graph/register_graph.h"

#include "graph/model/graph_commands.h"

namespace tarven {

void Register_graph() {
    Register_graph_commands();
}

}  // namespace tarven
