#pragma once

#include <string>
#include <vector>

#include "project/project.h"

namespace tarven {

/// The DEF file: how long a data record is, which cases are used, the title, and other names for
/// the project's files.
struct DefFile {
    int NTAL = 0;
    std::vector<RangeCondition> conditions;
    std::vector<ValueSelection> selections;
    bool definition_parameters = false;        ///< a SEL or PAR section stands in the file
    std::string title;                         ///< in upper case
    std::string var_name, grf_name, dat_name;  ///< replacing names, empty when not given
    std::vector<std::string> messages;
};

/// Line 1 is NTAL, then range conditions up to the first keyword line (a line whose first word
/// holds SEL, PAR, TIT or FIL), then sections. Trailing blank lines do not count. A line that is
/// in error gives its message, which names `name`, the line and what was expected; a condition
/// whose column or limits are in error stays in force.
DefFile Read_DEF_file(const std::vector<std::string>& lines, const std::string& name = "DEF file");

/// A plain file name: letters, digits, "-" and "_", with at most one point and at most three
/// characters behind it.
bool Is_plain_file_name(const std::string& name);

}  // namespace tarven
