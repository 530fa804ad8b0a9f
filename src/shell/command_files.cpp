#include "shell/command_files.h"

#include <fmt/format.h>

#include "shell/command_stream.h"
#include "shell/dispatcher.h"
#include "shell/files.h"
#include "shell/session.h"
#include "shell/user.h"

namespace tarven {

bool RunBatchfile(const std::filesystem::path& file) {
    const auto found = Find_file(file);
    if (!found && !std::filesystem::exists(file)) {
        ShowMessage(Path_text(file) + " not found");
        return false;
    }
    if (The_session.command_depth >= MaxCommandFileDepth) {
        ShowMessage(fmt::format("{} was not run: command files run each other more than {} deep",
                                Path_text(file), MaxCommandFileDepth));
        return false;
    }
    TextFile text = Read_text_file(found.value_or(file), Letters::kept);
    if (!text.ok) {
        ShowMessage(text.error);
        return false;
    }
    Push_lines(std::move(text.lines));
    ++The_session.command_depth;
    while (!The_session.QuitRequested) {
        const std::optional<std::string> line = Next_line();
        if (!line) break;
        Run_line(*line);
    }
    --The_session.command_depth;
    Pop_line_source();
    return true;
}

}  // namespace tarven
