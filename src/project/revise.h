#pragma once

#include <string>
#include <vector>

#include "project/project.h"

namespace tarven {

/// How two definitions of variables and recursive structure differ.
struct DefinitionComparison {
    bool variables_differ = false;  ///< number, labels, columns, categories or types
    bool structure_differs = false;
    std::vector<std::string> lines;  ///< of the report; the heading alone when nothing differs
};

DefinitionComparison Compare_definitions(const ProjectDefinition& current,
                                         const ProjectDefinition& revised);

/// VAR, CAT, and the letters V, B and G of INPUT.
void Register_revise_commands();

}  // namespace tarven
