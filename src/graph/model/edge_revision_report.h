#pragma once

#include <string>
#include <vector>

#include "graph/model/edge_revision.h"

namespace tarven {

/// What ADD, DELETE, FIX and PREVENT say: a message for each pair that was refused or unchanged, in
/// the order given, and the pairs that have the new status now.
std::vector<std::string> Edge_revision_messages(const EdgeRevision& revision);
std::vector<std::string> Edge_revision_lines(const EdgeRevision& revision, EdgeStatus status);

/// "Explanatory variables: edges in the last block were fixed", or why not.
std::string Explanatory_message(NotFixed reason);

}  // namespace tarven
