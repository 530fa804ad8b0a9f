#include "shell/files.h"

#include <fmt/format.h>
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

std::string Failure_text(const fs::path& path, std::string_view what, int error_number) {
    return fmt::format("{} could not be {}: {}", Path_text(path), what,
                       std::strerror(error_number));
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

TextFile Read_text_file(const fs::path& path, Letters letters) {
    TextFile result;
    std::error_code error;
    if (fs::is_directory(path, error)) {
        result.error = Path_text(path) + " is a folder";
        return result;
    }
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) {
        result.error = Failure_text(path, "read", errno);
        return result;
    }
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
    if (!result.error.empty()) return result;
    result.ok = true;
    result.lines = Split_lines(letters == Letters::kept ? To_line(bytes) : To_latin1(bytes));
    return result;
}

ReplacementFile::ReplacementFile(fs::path target) : target_(std::move(target)) {
    // A link is followed, so that it keeps pointing at what was replaced.
    std::error_code error;
    if (fs::is_symlink(target_, error)) {
        const fs::path real = fs::weakly_canonical(target_, error);
        if (!error) target_ = real;
    }
    beside_ = target_;
    beside_ += fmt::format(".{}.new", ::getpid());
    file_ = std::fopen(beside_.c_str(), "wb");
    if (!file_) {
        Fail(errno);
        return;
    }
    const auto status = fs::status(target_, error);
    if (!error && fs::is_regular_file(status))
        fs::permissions(beside_, status.permissions(), error);
}

ReplacementFile::~ReplacementFile() {
    if (!file_) return;
    std::fclose(file_);
    std::error_code ignored;
    fs::remove(beside_, ignored);
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
    if (ok() && std::rename(beside_.c_str(), target_.c_str()) != 0) Fail(errno);
    std::error_code ignored;
    if (!ok()) fs::remove(beside_, ignored);
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
    std::FILE* file = std::fopen(path.c_str(), "ab");
    if (!file) return Failure_text(path, "written", errno);
    bool good = true;
    for (const std::string& line : lines) {
        const std::string bytes = To_utf8(line) + "\n";
        good = good && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    }
    good = std::fflush(file) == 0 && good;
    const int error_number = errno;
    std::fclose(file);
    return good ? std::string() : Failure_text(path, "written", error_number);
}

}  // namespace tarven
