#pragma once

#include <string_view>

#include "graph/model/chain_graph.h"
#include "shell/commands.h"

namespace tarven {

/// Gives the pairs of The_line a status, as ADD, DELETE, FIX and PREVENT do, and tells what became
/// of them. Refused, with the model as it was, when fewer than two variables are named.
Outcome Revise_pairs_of_line(EdgeStatus status);

/// Says what of a long list of variables is not read.
void Tell_unread_places(std::string_view text);

/// The part of the help that these commands share: forms, wildcard, refusals.
extern const char* const PairsHelp;

/// ADD, FIX, PREVENT, NEWMODEL and XPLANATORY.
void Register_revision_commands();

}  // namespace tarven
