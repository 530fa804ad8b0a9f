#include "graph/model/graph_commands.h"

#include <string>
#include <tuple>
#include <vector>

#include "graph/model/graph_file_commands.h"
#include "graph/model/graph_workspace.h"
#include "graph/model/revision_commands.h"
#include "graph/model/show_graph_commands.h"
#include "shell/commands.h"
#include "shell/environment.h"
#include "shell/later_commands.h"

namespace tarven {

namespace {

/// ONLOG and NOLOG mean something in graph mode alone. HELP names them; typed here they are unknown
/// words.
void Register_commands_of_graph_mode() {
    for (const auto& [keyword, spelling, summary] :
         {std::tuple{"ONL", "ONLOG", "turns the log of commands on (in graph mode)"},
          std::tuple{"NOL", "NOLOG", "turns the log of commands off (in graph mode)"}})
        Register_command(
            {.keyword = keyword, .spelling = spelling, .summary = summary, .available = false});
}

void Register_letters() {
    Register_letter(LetterCommand::show,
                    {.letter = 'B', .summary = "the beliefs on edges", .available = false});
    Register_letter(LetterCommand::dispose,
                    {.letter = 'B', .summary = "the beliefs on edges", .available = false});
    Register_letter(LetterCommand::input,
                    {.letter = 'B', .summary = "the beliefs of the BEL file", .available = false});
    Register_letter(LetterCommand::save,
                    {.letter = 'B', .summary = "the beliefs on edges", .available = false});
}

}  // namespace

void Register_graph_commands() {
    Register_graph_workspace();
    Register_graph_file_commands();
    Register_revision_commands();
    Register_show_graph();
    Register_later_commands({
        {"BAC", "BACKWARD", "backward model search"},
        {"BEL", "BELIEF", "beliefs on the edges of the project graph"},
        {"CAU", "CAUSAL", "analysis of causal relationships"},
        {"CGP", "CGP", "paths of the chain graph"},
        {"CHE", "CHECK", "checks the assumptions of the current model"},
        {"DES", "DESCRIBE", "describes relationships of the project graph"},
        {"FOR", "FORWARD", "forward model search"},
        {"GRA", "GRAPH", "enters graph mode"},
        {"MOD", "MODEL", "model search"},
        {"MPL", "MPLUS", "exports data and a model"},
        {"NAI", "NAIVE", "naive screening of the data"},
        {"NOD", "NODECOLOR", "colours nodes of the project graph"},
        {"PAT", "PATH", "paths between variables of the project graph"},
    });
    Register_commands_of_graph_mode();
    Register_letters();
    Register_environment(EnvironmentPart::in_memory, [] {
        return std::vector<std::string>{"          SCREEN-RESULTS  -    not ready"};
    });
}

}  // namespace tarven
