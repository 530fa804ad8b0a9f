#include "shell/command_stream.h"

#include <cassert>
#include <memory>

namespace tarven {

void Push_line_source(std::function<std::optional<std::string>()> read) {
    The_command_stream.sources.push_back({std::move(read), {}});
}

void Push_lines(std::vector<std::string> lines) {
    auto rest = std::make_shared<std::deque<std::string>>(lines.begin(), lines.end());
    Push_line_source([rest]() -> std::optional<std::string> {
        if (rest->empty()) return {};
        std::string line = std::move(rest->front());
        rest->pop_front();
        return line;
    });
}

void Pop_line_source() {
    assert(!The_command_stream.sources.empty() && "no source of lines to take away");
    The_command_stream.sources.pop_back();
}

std::optional<std::string> Peek_line() {
    if (The_command_stream.sources.empty()) return {};
    LineSource& source = The_command_stream.sources.back();
    if (!source.peeked) source.peeked = source.read();
    return source.peeked;
}

std::optional<std::string> Next_line() {
    std::optional<std::string> line = Peek_line();
    if (line) The_command_stream.sources.back().peeked.reset();
    return line;
}

}  // namespace tarven
