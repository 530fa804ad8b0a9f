#pragma once

#include <string>
#include <vector>

#include "rasch/items/gllrm.h"

namespace tarven {

/// The model as lines of a command file: running them gives the same items, flips, exogenous
/// variables, terms and, where "#" occurs in a term, score groups, whatever stood before. A line
/// takes at most 120 columns but for CUT, which is read whole; the terms of a long model are spread
/// over lines of LLR, and GRM stands bare then.
std::vector<std::string> Model_file_lines(const GLLRM& model);

}  // namespace tarven
