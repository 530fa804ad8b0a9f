#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "project/project.h"
#include "shell/parsed_line.h"

namespace tarven {

/// The variables of a table from the parameters of a command.

/// The score as a variable, when score groups have been defined.
struct ScoreGroups {
    int count = 0;  ///< of score groups, at most 85; 0: none have been defined
    int block = 0;  ///< recursive block of the score
};

struct SelectedVariables {
    bool ok = false;
    std::vector<int> numbers;           ///< project variables in project order; 255 is the score
    std::vector<Variable> variables;    ///< parallel to numbers
    std::vector<int> LevelEnd;          ///< last selected variable of each block, from 1
    std::vector<std::string> messages;  ///< why it failed
    std::string not_understood;         ///< `: "X" in "PX" is no variable`, when that is why
};

/// Reads the labels, variable numbers and "#" behind the keyword of `line`; a lone "*" is all
/// variables. Duplicates, numbers above N and wildcards among others mean nothing. The variables
/// come in project order, the score in front of the first of them as "#", ordinal, with the groups
/// as categories. A block begins at each variable of a higher block than all before it. At least 2
/// variables, with `at_most_eight` at most 8; a list of more than 8 entries is refused in any case.
SelectedVariables Select_variables(const ParsedLine& line, const ProjectDefinition& project,
                                   const ScoreGroups& score, bool at_most_eight);

}  // namespace tarven
