#include "shell/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>
#include <vector>

#include "shell/text.h"
#include "shell/words.h"

namespace tarven {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t LargestTextFile = 64u << 20;

std::string Failure_text(const fs::path& path, std::string_view what, std::string_view reason) {
    return fmt::format("{} could not be {}: {}", Path_text(path), what, reason);
}

std::string Failure_text(const fs::path& path, std::string_view what, int error_number) {
    return Failure_text(path, what, std::strerror(error_number));
}

/// The name in capitals, those of Latin-1 included; other letters stay as they are.
std::string Folded_name(const fs::path& path) {
    std::string name = To_line(path.filename().string());
    for (char& c : name) {
        const auto code = static_cast<unsigned char>(c);
        const bool small = code >= 0xE0 && code <= 0xFE && code != 0xF7;
        c = small ? static_cast<char>(code - 0x20) : Upper(c);
    }
    return name;
}

}  // namespace

std::optional<fs::path> Find_file(const fs::path& wanted) {
    std::error_code error;
    if (wanted.filename().empty()) return {};
    if (fs::is_regular_file(wanted, error)) return wanted;
    const fs::path folder = wanted.has_parent_path() ? wanted.parent_path() : fs::path(".");
    const std::string name = Folded_name(wanted);
    std::optional<fs::path> found;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const fs::path file = entry->path().filename();
        std::error_code ignored;
        if (Folded_name(file) == name && entry->is_regular_file(ignored) &&
            (!found || file < found->filename()))
            found = wanted.has_parent_path() ? wanted.parent_path() / file : file;
    }
    return found;
}

std::string Why_no_file(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error == std::errc::too_many_symbolic_link_levels)
        return Path_text(path) + " is a link that leads back to itself";
    switch (status.type()) {
        case fs::file_type::none:
        case fs::file_type::not_found:
        case fs::file_type::regular:
            return "";
        case fs::file_type::directory:
            return Path_text(path) + " is a folder";
        case fs::file_type::fifo:
            return Path_text(path) + " is a pipe";
        default:
            return Path_text(path) + " is no file";
    }
}

fs::path Existing_or(const fs::path& wanted) {
    return Find_file(wanted).value_or(wanted);
}

std::string Path_text(const fs::path& path) {
    return Printable(To_line(path.string()));
}

fs::path Text_path(std::string_view text) {
    // A name typed in Latin-1 is UTF-8 on disk; an embedded NUL ends no name silently.
    const std::string name = To_utf8(text);
    if (name.find('\0') != std::string::npos) return {};
    return name;
}

int Write_bytes(int number, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(number, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return written < 0 ? errno : EIO;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

fs::path Behind_links(fs::path path) {
    constexpr int MostLinks = 40;
    std::error_code error;
    for (int k = 0; k < MostLinks && fs::is_symlink(path, error); ++k) {
        const fs::path next = fs::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / next;  // an absolute `next` stands for itself
    }
    return path;
}

OpenedFile Open_special_file(const fs::path& path, const struct stat& status) {
    if (S_ISDIR(status.st_mode)) return {-1, "it is a folder"};
    if (S_ISBLK(status.st_mode)) return {-1, "it is a disk"};
    if (S_ISSOCK(status.st_mode)) return {-1, "it is a socket"};
    // Not to wait for ever at a pipe that nobody reads.
    const int number = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (number < 0 && errno == ENXIO && S_ISFIFO(status.st_mode))
        return {-1, "no program reads this pipe"};
    if (number < 0) return {-1, std::strerror(errno)};
    ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) & ~O_NONBLOCK);
    return {number, ""};
}

TextFile Read_text_file(const fs::path& path, Letters letters) {
    TextFile result;
    std::error_code error;
    if (fs::is_directory(path, error)) {
        result.error = Path_text(path) + " is a folder";
        return result;
    }
    // A pipe that nobody writes to must not hold the program up.
    const int number = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    std::FILE* file = number < 0 ? nullptr : ::fdopen(number, "rb");
    if (!file) {
        result.error = Failure_text(path, "read", errno);
        if (number >= 0) ::close(number);
        return result;
    }
    ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) & ~O_NONBLOCK);
    struct stat status {};
    const bool pipe = ::fstat(number, &status) == 0 && S_ISFIFO(status.st_mode);
    std::string bytes;
    char buffer[65536];
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        bytes.append(buffer, got);
        if (bytes.size() > LargestTextFile) break;
    }
    if (std::ferror(file)) result.error = Failure_text(path, "read", errno);
    std::fclose(file);
    if (bytes.size() > LargestTextFile) result.error = Path_text(path) + " is too large";
    if (pipe && bytes.empty())
        result.error = Path_text(path) + " could not be read: no program writes to this pipe";
    if (!result.error.empty()) return result;
    result.ok = true;
    result.lines = Split_lines(letters == Letters::kept ? To_line(bytes) : To_latin1(bytes));
    return result;
}

ReplacementFile::ReplacementFile(fs::path target) : target_(std::move(target)) {
    struct stat status {};
    const bool exists = ::stat(target_.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) {
        const OpenedFile opened = Open_special_file(target_, status);
        file_ = opened.number < 0 ? nullptr : ::fdopen(opened.number, "wb");
        if (!file_) error_ = opened.number < 0 ? opened.error : std::strerror(errno);
        return;
    }
    // A link is followed, so that it keeps pointing at what was replaced.
    target_ = Behind_links(target_);
    std::error_code error;
    if (fs::is_symlink(target_, error)) {
        Fail(ELOOP);
        return;
    }
    beside_ = target_;
    beside_ += fmt::format(".{}.new", ::getpid());
    constexpr int Flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    int number = ::open(beside_.c_str(), Flags, 0666);
    if (number < 0 && errno == EEXIST && ::unlink(beside_.c_str()) == 0)
        number = ::open(beside_.c_str(), Flags, 0666);  // of a dead process with this number
    file_ = number < 0 ? nullptr : ::fdopen(number, "wb");
    if (!file_)
        Fail(errno);
    else if (exists)
        ::fchmod(number, status.st_mode & 07777);
}

ReplacementFile::~ReplacementFile() {
    if (!file_) return;
    std::fclose(file_);
    Abandon();
}

void ReplacementFile::Abandon() {
    std::error_code ignored;
    if (!beside_.empty()) fs::remove(beside_, ignored);
}

void ReplacementFile::Write(std::string_view bytes) {
    if (!file_ || !ok()) return;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) Fail(errno);
}

bool ReplacementFile::Flush() {
    if (file_ && ok() && std::fflush(file_) != 0) Fail(errno);
    return ok();
}

bool ReplacementFile::Commit() {
    if (!file_) return false;
    Flush();
    if (std::fclose(file_) != 0 && ok()) Fail(errno);
    file_ = nullptr;
    if (ok() && !beside_.empty() && std::rename(beside_.c_str(), target_.c_str()) != 0) Fail(errno);
    if (!ok()) Abandon();
    return ok();
}

void ReplacementFile::Fail(int error_number) {
    if (error_.empty()) error_ = std::strerror(error_number ? error_number : EIO);
}

std::string ReplacementFile::Failure() const {
    if (ok()) return {};
    return fmt::format("{} could not be written: {}", Path_text(target_), error_);
}

std::string Write_text_file(const fs::path& path, const std::vector<std::string>& lines) {
    ReplacementFile file(path);
    for (const std::string& line : lines) file.Write(To_utf8(line) + "\n");
    file.Commit();
    return file.Failure();
}

std::string Append_text_file(const fs::path& path, const std::vector<std::string>& lines) {
    struct stat status {};
    const bool exists = ::stat(path.c_str(), &status) == 0;
    OpenedFile file;
    if (exists && !S_ISREG(status.st_mode)) {
        file = Open_special_file(path, status);
    } else {
        file.number = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
        if (file.number < 0) file.error = std::strerror(errno);
    }
    if (file.number < 0) return Failure_text(path, "written", file.error);
    std::string bytes;
    for (const std::string& line : lines) bytes += To_utf8(line) + "\n";
    int error_number = Write_bytes(file.number, bytes);
    if (error_number != 0 && exists && S_ISREG(status.st_mode))
        // Half of the lines would be taken for all of them.
        if (::ftruncate(file.number, status.st_size) != 0) error_number = errno;
    if (::close(file.number) != 0 && error_number == 0) error_number = errno;
    if (error_number != 0 && !exists) ::unlink(Behind_links(path).c_str());
    return error_number == 0 ? std::string()
                             : Failure_text(path, "written", std::strerror(error_number));
}

}  // namespace tarven
