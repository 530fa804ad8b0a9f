#pragma once

#include <string>
#include <vector>

#include "project/project.h"

namespace tarven {

/// What the lenient reader takes from a VAR file.
struct VarFile {
    bool ok = false;
    std::string error;                  ///< why not, when not ok
    std::vector<std::string> warnings;  ///< the file is usable all the same
    int N = 0;
    One_based<Variable, 85> variables;
    int Nlevels = 0;
    One_based<int, MaxVariables> LevelEnd;
    std::vector<std::string> comments;
    int Ncomments = 0;
};

/// Reads variables, recursive blocks, comments and names. Blanks and line ends separate numbers;
/// of a label the first character counts. A number of blocks of 0 or above N means one block with
/// all variables; variables behind the last block end are in block Nlevels + 1. What is wrong is
/// told with the line, what stands there and what was expected; a warning also names `name`.
VarFile Read_VAR_file(const std::vector<std::string>& lines, const std::string& name = "VAR file");

/// Makes the variables, blocks and comments of the file those of a definition.
void Take_variables(const VarFile& file, ProjectDefinition& definition);

/// labels[i-1] is the label of variable i of N.
std::string Labels_of(const One_based<Variable, 85>& variables, int N);

/// One finding of the strict check, as it is shown.
struct VarFinding {
    bool error = true;  ///< else a warning
    int number = 0;
    std::string text;
    std::string place;  ///< file, line and what was expected

    bool operator==(const VarFinding&) const = default;
};

/// "VAR file error" or "WARNING", the number in 3 characters, ": ", the text, and the place in
/// parentheses.
std::string Finding_line(const VarFinding& finding);

/// The strict check, made when variables are revised and on import: the findings in the order of
/// the file. The first error ends it, and so does a record with too many cut points. The lower
/// limit may equal the first cut point, as integer codes are written; all others must ascend.
std::vector<VarFinding> Check_VAR_file(const std::vector<std::string>& lines,
                                       const std::string& name = "VAR file");

}  // namespace tarven
