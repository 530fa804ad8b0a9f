#include "app/line_history.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>

#include "shell/text.h"

namespace tarven {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t ShortestLine = 3;
constexpr std::size_t LongestLine = 1000;
constexpr off_t MostBytes = off_t{256} * 1024;  ///< read from the end of the file
constexpr int LockTrials = 20;
constexpr useconds_t LockPause = 5000;  ///< microseconds

/// An open plain file, locked for this program alone while it lives. A lock that is not to be had
/// within a tenth of a second (a stopped program holds it, or the disk knows none) is done without.
class LockedFile {
  public:
    LockedFile(const fs::path& file, int flags)
        // Opening a pipe that nobody reads must not wait.
        : descriptor_(open(file.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0600)) {
        struct stat status {};
        if (!ok()) return;
        if (fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
            close(descriptor_);
            descriptor_ = -1;
            return;
        }
        size_ = status.st_size;
        if ((status.st_mode & 077) != 0 && fchmod(descriptor_, 0600) != 0) return;
        for (int k = 0; k < LockTrials && flock(descriptor_, LOCK_EX | LOCK_NB) != 0; ++k)
            usleep(LockPause);
        if (fstat(descriptor_, &status) == 0) size_ = status.st_size;
    }
    ~LockedFile() {
        if (ok()) close(descriptor_);
    }
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    bool ok() const { return descriptor_ >= 0; }
    off_t size() const { return size_; }

    std::string Bytes_from(off_t start) const {
        std::string bytes(static_cast<std::size_t>(size_ - start), '\0');
        const ssize_t got = pread(descriptor_, bytes.data(), bytes.size(), start);
        bytes.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
        return bytes;
    }
    /// In one piece, behind what another program may have added meanwhile (O_APPEND).
    void Append(const std::string& bytes) const {
        if (write(descriptor_, bytes.data(), bytes.size()) < 0) return;
    }
    /// The file keeps its place, since others may have it open.
    void Replace(const std::string& bytes) const {
        if (pwrite(descriptor_, bytes.data(), bytes.size(), 0) ==
                static_cast<ssize_t>(bytes.size()) &&
            ftruncate(descriptor_, static_cast<off_t>(bytes.size())) != 0)
            return;
    }

  private:
    int descriptor_;
    off_t size_ = 0;
};

std::optional<fs::path> State_folder() {
    const char* state = std::getenv("XDG_STATE_HOME");
    if (state && *state == '/') return state;  // a relative one is to be ignored
    const char* home = std::getenv("HOME");
    if (home && *home == '/') return fs::path(home) / ".local" / "state";
    return {};
}

void Make_private_folder(const fs::path& folder) {
    if (folder.empty() || mkdir(folder.c_str(), 0700) == 0 || errno != ENOENT) return;
    if (folder == folder.parent_path()) return;
    Make_private_folder(folder.parent_path());
    mkdir(folder.c_str(), 0700);
}

bool Is_good(const std::string& line) {
    return line.size() >= ShortestLine && line.size() <= LongestLine && Printable(line) == line;
}

}  // namespace

fs::path History_file() {
    const auto state = State_folder();
    return state ? *state / "tarven" / "history" : fs::path();
}

std::vector<std::string> Read_line_history(const fs::path& file) {
    const LockedFile locked(file, O_RDWR);
    if (!locked.ok()) return {};
    const off_t start = std::max<off_t>(0, locked.size() - MostBytes);
    std::vector<std::string> raw = Split_lines(locked.Bytes_from(start));
    if (start > 0 && !raw.empty()) raw.erase(raw.begin());  // begins within a line
    const bool cut = start > 0 || raw.size() > 2 * HistoryLength;
    std::vector<std::string> lines;
    for (const std::string& bytes : raw)
        if (std::string line = To_line(bytes); Is_good(line)) lines.push_back(std::move(line));
    if (lines.size() > HistoryLength)
        lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(HistoryLength));
    if (cut) {
        std::string kept;
        for (const std::string& line : lines) kept += To_utf8(line) + "\n";
        locked.Replace(kept);
    }
    return lines;
}

void Add_to_line_history(const fs::path& file, const std::string& line) {
    if (file.empty() || !Is_good(line)) return;
    Make_private_folder(file.parent_path());
    const LockedFile locked(file, O_RDWR | O_CREAT | O_APPEND);
    if (!locked.ok()) return;
    // What somebody else left may lack its line end.
    const bool ended = locked.size() == 0 || locked.Bytes_from(locked.size() - 1) == "\n";
    locked.Append((ended ? "" : "\n") + To_utf8(line) + "\n");
}

}  // namespace tarven
