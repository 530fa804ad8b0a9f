#include "shell/later_commands.h"

#include <fmt/format.h>

#include "shell/user.h"

namespace tarven {

void Register_later_commands(const std::vector<LaterCommand>& commands) {
    for (const LaterCommand& later : commands)
        Register_command({.keyword = later.keyword,
                          .run =
                              [spelling = later.spelling] {
                                  ShowMessage(
                                      fmt::format("The command {} is not available yet", spelling));
                                  return Outcome::refused;
                              },
                          .needs = later.needs,
                          .spelling = later.spelling,
                          .summary = later.summary,
                          .available = false});
}

Need Never(std::string message) {
    return {[] { return false; }, std::move(message)};
}

}  // namespace tarven
