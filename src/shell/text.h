#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarven {

// Inside the program text is Latin-1, one byte a character, because labels and columns count
// characters. These procedures stand at the edges, where text is UTF-8.

/// Latin-1 text as UTF-8; an escape of To_line becomes its letter again.
std::string To_utf8(std::string_view latin1);

/// Bytes from outside as Latin-1: UTF-8 (a byte order mark is dropped) when the whole is valid
/// UTF-8, else taken as Latin-1 already. A character outside Latin-1 becomes "?".
std::string To_latin1(std::string_view bytes);

/// The same for typed lines and names of files, which lose nothing: a character outside Latin-1
/// becomes an escape of OtherLetterLength control characters, which are no label, no letter of an
/// option and no "?".
std::string To_line(std::string_view bytes);

inline constexpr char OtherLetter = '\x1A';  ///< the first character of an escape
inline constexpr std::size_t OtherLetterLength = 6;

/// Whether an escape of To_line begins at `at`.
bool Is_other_letter(std::string_view text, std::size_t at);

/// The text with each escape of To_line shortened to OtherLetter, so that a letter is one byte.
std::string One_byte_a_letter(std::string_view text);

/// Lines of a text, ended by LF or CRLF, with or without a last line end. An empty text has none.
std::vector<std::string> Split_lines(std::string_view text);

/// Control characters replaced, a tab by a blank, any other by "?", so that no data can steer a
/// terminal. Escapes of To_line stay: they leave as letters.
std::string Printable(std::string_view text);

}  // namespace tarven
