#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarven {

// Inside the program text is Latin-1, one byte a character, because labels and columns count
// characters. These procedures stand at the edges, where text is UTF-8.

std::string To_utf8(std::string_view latin1);

/// Bytes from outside as Latin-1: UTF-8 (a byte order mark is dropped) when the whole is valid
/// UTF-8, else taken as Latin-1 already. A character outside Latin-1 becomes "?".
std::string To_latin1(std::string_view bytes);

/// Lines of a text, ended by LF or CRLF, with or without a last line end. An empty text has none.
std::vector<std::string> Split_lines(std::string_view text);

/// Control characters replaced, a tab by a blank, any other by "?", so that no data can steer a
/// terminal.
std::string Printable(std::string_view text);

}  // namespace tarven
