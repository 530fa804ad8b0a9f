#pragma once

#include <string>
#include <vector>

#include "shell/commands.h"

namespace tarven {

/// A command of the list whose procedure nobody has written yet. It stands with the floor that will
/// bring it, so that HELP tells of it and the refusals that hold already are those of the command.
struct LaterCommand {
    std::string keyword;
    std::string spelling;
    std::string summary;
    std::vector<Need> needs{};
};

/// Registers commands that refuse with "The command TABULATE is not available yet" where their
/// needs hold.
void Register_later_commands(const std::vector<LaterCommand>& commands);

/// A need that nothing can meet yet.
Need Never(std::string message);

}  // namespace tarven
