#include "app/output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "shell/files.h"
#include "shell/text.h"

namespace tarven {

namespace {

void Tell_failure(const std::string& name, int error_number) {
    if (The_output.failed) return;
    The_output.failed = true;
    Print_error(fmt::format("{} could not be written: {}\n", name, std::strerror(error_number)));
}

bool Put(std::FILE* file, const std::string& bytes) {
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
           std::fflush(file) == 0;
}

}  // namespace

void Hold_closed_streams() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(number, F_GETFD) >= 0 || errno != EBADF) continue;
        // The lowest free number is this one. Open the wrong way round, it cannot be used.
        [[maybe_unused]] const int held =
            open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

std::string Open_report_copy(const std::filesystem::path& path) {
    struct stat status {};
    const bool exists = stat(path.c_str(), &status) == 0;
    std::string error;
    if (exists && !S_ISREG(status.st_mode)) {
        const OpenedFile opened = Open_special_file(path, status);
        error = opened.error;
        if (opened.number >= 0) The_output.copy.reset(fdopen(opened.number, "wb"));
    } else {
        // Another name of the same file keeps what it has.
        if (exists && status.st_nlink > 1) unlink(Behind_links(path).c_str());
        The_output.copy.reset(std::fopen(path.c_str(), "wb"));
    }
    if (!The_output.copy && error.empty()) error = std::strerror(errno);
    The_output.copy_path = path;
    return The_output.copy ? "" : fmt::format("{} could not be written: {}", path.string(), error);
}

void Print_error(const std::string& text) {
    std::fputs(text.c_str(), stderr);
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
    for (const std::string& line : Split_lines(text)) Print_error(To_utf8(Printable(line)) + "\n");
}

bool Same_terminal(int a, int b) {
    struct stat first {};
    struct stat second {};
    return isatty(a) && isatty(b) && fstat(a, &first) == 0 && fstat(b, &second) == 0 &&
           first.st_rdev == second.st_rdev;
}

}  // namespace tarven
