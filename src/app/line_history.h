#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarven {

// Typed lines that outlive a session: a file of UTF-8 lines, the oldest first, which several
// programs may use at once. It is a comfort: whatever is wrong with it is passed over in silence.

inline constexpr std::size_t HistoryLength = 500;

/// tarven/history in the user's state folder (XDG_STATE_HOME, else ~/.local/state); empty when
/// there is no such folder to be had.
std::filesystem::path History_file();

/// The last 500 lines, as To_line makes them. Lines with control characters, of fewer than three
/// letters or of more than a thousand are passed over. A file of more than twice as many lines is
/// cut to those returned.
std::vector<std::string> Read_line_history(const std::filesystem::path& file);

/// Adds a line. The file and its folder are made when they are missing, for their owner alone.
void Add_to_line_history(const std::filesystem::path& file, const std::string& line);

}  // namespace tarven
