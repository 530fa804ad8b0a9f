#pragma once

#include <optional>
#include <string>

#include "graph/hypotheses/pairs_of_parameter.h"
#include "shell/commands.h"

namespace tarven {

/// SEPARATE, GMP, REDUCE and RELEVANCE.

/// The pairs that The_line names, asked for when it names none; nothing, with the message, for an
/// unknown label, a line that names no pair, and marks that no pair fits.
std::optional<PairList> Pairs_of_line();

/// The part of help that the commands on such pairs share.
extern const char* const GraphPairsHelp;

/// A stop check with a progress display, one step a question, until it goes.
class GenerationProgress {
  public:
    GenerationProgress(std::size_t steps, const std::string& title);
    ~GenerationProgress();
    GenerationProgress(const GenerationProgress&) = delete;
    GenerationProgress& operator=(const GenerationProgress&) = delete;
};

void Register_generation_commands();

}  // namespace tarven
