#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarven {

/// Where command lines come from, and, without a user, the answers to questions too: a stack of
/// sources, the innermost on top (a command file within a command file within standard input).
/// Only the innermost is ever read; its end is not the end of those below it.
struct LineSource {
    std::function<std::optional<std::string>()> read;  ///< a Latin-1 line, or nothing at the end
    std::optional<std::string> peeked;                 ///< looked at and not yet taken
};

struct CommandStream {
    std::vector<LineSource> sources;
};

inline CommandStream The_command_stream;

void Push_line_source(std::function<std::optional<std::string>()> read);
/// A source of given lines.
void Push_lines(std::vector<std::string> lines);
void Pop_line_source();

/// The next line of the innermost source; nothing at its end or without a source.
std::optional<std::string> Next_line();
/// The same, the line staying.
std::optional<std::string> Peek_line();

}  // namespace tarven
