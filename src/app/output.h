#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace tarven {

/// Where report lines and messages go: standard output, standard error and the copy of the report,
/// all as UTF-8 and each line at once.
struct Output {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> copy{nullptr, std::fclose};
    std::filesystem::path copy_path;
    bool failed = false;  ///< a line could not be written; told once
    /// Takes away what stands unfinished in the terminal's last line, before a line is printed.
    std::function<void()> before_line;
};

inline Output The_output;

/// Holds the places of standard input, output and error that are closed, so that no file opened
/// later takes one of them and gets report lines in it. Using them stays an error.
void Hold_closed_streams();

/// Creates the copy of the report; a device or a pipe is written to. The text of a failure (UTF-8),
/// or empty.
std::string Open_report_copy(const std::filesystem::path& path);

/// A Latin-1 line to standard output and the copy. What cannot be written is told once on standard
/// error; the run goes on, and its exit status tells.
void Print_report_line(const std::string& line);

/// UTF-8 to standard error. Where that cannot be written nobody is left to be told.
void Print_error(const std::string& text);

/// A Latin-1 message to standard error, unless that is the terminal on which the report shows.
void Print_message(const std::string& text);

/// Whether the two descriptors are one terminal.
bool Same_terminal(int a, int b);

}  // namespace tarven
