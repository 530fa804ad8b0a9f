#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarven {

/// A dispatcher of its own over the same parsed line, as graph mode brings one. The one entered
/// last receives the typed lines.
struct Mode {
    std::string name;
    std::function<void(const std::string& line)> execute;
};

struct ModeStack {
    std::vector<Mode> modes;  ///< empty: the analysis commands
};

inline ModeStack The_modes;

void Enter_mode(Mode mode);
void Leave_mode();

/// Takes the line of the command field, or, when that is empty, the first line of the queue, and
/// runs it to its end. All effects are on the workspace and the report.
void ExecuteCommand();

/// Stores a line in the command field and runs it.
void Run_line(const std::string& text);

/// Lines of more than 2 characters; the 20 last are kept, cut to 120 characters.
void Add_to_history(const std::string& text);

/// Brings the two test status fields up to date with the settings.
void Refresh_test_status();

}  // namespace tarven
