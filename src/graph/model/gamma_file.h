#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "shell/result.h"

namespace tarven {

/// The lines of a gamma file, project.GAM: a line a variable, a value with three decimals in seven
/// columns for each variable; 999 where there is no gamma. `gammas` holds that of variables i and j
/// at (i-1) * nvar + j-1.
std::vector<std::string> GAM_lines(std::span<const double> gammas, int nvar);

/// The gammas of nvar variables, 999 where there are none. Fails when the lines are not nvar times
/// nvar values from -1 to 1 or 999 (888 of a nominal pair counts as 999); blank lines at the end
/// mean nothing.
Result<std::vector<double>> Read_gamma_file(const std::vector<std::string>& lines, int nvar,
                                            const std::string& name);

/// Gives both gammas of a pair the value of the upper triangle; returns the pairs, i < j, whose two
/// gammas differed.
std::vector<std::pair<int, int>> Make_symmetric(std::span<double> gammas, int nvar);

}  // namespace tarven
