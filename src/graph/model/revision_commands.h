#pragma once

#include "graph/model/chain_graph.h"
#include "shell/commands.h"

namespace tarven {

/// Gives the pairs of The_line a status, as ADD, DELETE, FIX and PREVENT do, and tells what became
/// of them. Refused, with the model as it was, when fewer than two variables are named.
Outcome Revise_pairs_of_line(EdgeStatus status);

/// The part of the help that these commands share: forms, wildcard, refusals.
extern const char* const PairsHelp;

/// ADD, FIX, PREVENT, NEWMODEL and XPLANATORY.
void Register_revision_commands();

}  // namespace tarven
