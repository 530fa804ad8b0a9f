#include "app/output.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "shell/text.h"

namespace tarven {

namespace {

void Tell_failure(const std::string& name, int error_number) {
    if (The_output.failed) return;
    The_output.failed = true;
    fmt::print(stderr, "{} could not be written: {}\n", name, std::strerror(error_number));
}

bool Put(std::FILE* file, const std::string& bytes) {
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
           std::fflush(file) == 0;
}

}  // namespace

std::string Open_report_copy(const std::filesystem::path& path) {
    The_output.copy.reset(std::fopen(path.c_str(), "wb"));
    The_output.copy_path = path;
    if (The_output.copy) return "";
    return fmt::format("{} could not be written: {}", path.string(), std::strerror(errno));
}

void Print_report_line(const std::string& line) {
    if (The_output.before_line) The_output.before_line();
    const std::string bytes = To_utf8(line) + "\n";
    // The copy first: what a reader has seen stands in it, even if the program is killed then.
    if (The_output.copy && !Put(The_output.copy.get(), bytes)) {
        Tell_failure(The_output.copy_path.string(), errno);
        The_output.copy.reset();
    }
    if (!Put(stdout, bytes)) Tell_failure("Standard output", errno);
}

void Print_message(const std::string& text) {
    if (Same_terminal(STDOUT_FILENO, STDERR_FILENO)) return;
    if (The_output.before_line) The_output.before_line();
    for (const std::string& line : Split_lines(text))
        fmt::print(stderr, "{}\n", To_utf8(Printable(line)));
}

bool Same_terminal(int a, int b) {
    struct stat first {};
    struct stat second {};
    return isatty(a) && isatty(b) && fstat(a, &first) == 0 && fstat(b, &second) == 0 &&
           first.st_rdev == second.st_rdev;
}

}  // namespace tarven
