#include "graph/register_graph.h"

#include "graph/hypotheses/generation_commands.h"
#include "graph/hypotheses/graph_gamma_commands.h"
#include "graph/hypotheses/graph_test_commands.h"
#include "graph/model/graph_commands.h"

namespace tarven {

void Register_graph() {
    Register_graph_commands();
    Register_generation_commands();
    Register_graph_test_commands();
    Register_graph_gamma_commands();
}

}  // namespace tarven
