#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarven {

/// The regular file of that name, or one in the same folder whose name differs in case alone (the
/// exact name first, then the first in byte order). Nothing when there is none.
std::optional<std::filesystem::path> Find_file(const std::filesystem::path& wanted);

/// Why what stands under a name is no file that can be read, "NAME is a folder"; empty when a file
/// or nothing stands there.
std::string Why_no_file(const std::filesystem::path& path);

/// Find_file, or `wanted` itself: the path a file has, or that it would be written to.
std::filesystem::path Existing_or(const std::filesystem::path& wanted);

/// A path as text for messages and reports, as To_line makes it.
std::string Path_text(const std::filesystem::path& path);

/// The path that the text of a command or a file names.
std::filesystem::path Text_path(std::string_view text);

/// A text file read whole: Latin-1 lines without their ends.
struct TextFile {
    bool ok = false;
    std::string error;  ///< why it could not be read, when not ok
    std::vector<std::string> lines;
};

/// What becomes of letters outside Latin-1 in a text file: "?" where columns and labels count
/// characters, an escape of To_line where lines are commands or names of files.
enum class Letters : std::uint8_t { latin1, kept };

/// Reads at most 64 MiB; a folder, a larger file, a pipe without a writer or a failing read is not
/// ok.
TextFile Read_text_file(const std::filesystem::path& path, Letters letters = Letters::latin1);

/// The path to which symbolic links lead; what stands there need not exist. Links in a circle lead
/// to one of them.
std::filesystem::path Behind_links(std::filesystem::path path);

/// A file open for writing, by its number in the system.
struct OpenedFile {
    int number = -1;
    std::string error;  ///< why not, when the number is -1
};

/// Opens what is no plain file: a device or a named pipe is written to, a pipe only while somebody
/// reads it; a folder, a disk or a socket is not opened.
OpenedFile Open_special_file(const std::filesystem::path& path, const struct stat& status);

/// Writes all the bytes; 0, or the number of the error.
int Write_bytes(int number, std::string_view bytes);

/// A file that replaces another: written beside it under a name of its own, and put in its place
/// by Commit. A failed or abandoned write leaves the old file whole and removes the new one. Links
/// are followed to what they name, and a device or a pipe is written to as it is.
class ReplacementFile {
  public:
    explicit ReplacementFile(std::filesystem::path target);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Appends bytes as they are. After a failure it does nothing.
    void Write(std::string_view bytes);
    /// Hands what is buffered to the system; false after a failure. Where several files must change
    /// together, all are flushed before the first is committed.
    bool Flush();
    /// True when everything reached the disk and the target is replaced.
    bool Commit();
    bool ok() const { return error_.empty(); }
    /// "NAME could not be written: reason", in Latin-1; empty while all is well.
    std::string Failure() const;

  private:
    void Fail(int error_number);
    void Abandon();

    std::filesystem::path target_;
    std::filesystem::path beside_;  ///< empty when the target itself is written to
    std::FILE* file_ = nullptr;
    std::string error_;
};

/// Replaces a file by lines of Latin-1 text, written as UTF-8. The text of the failure, or empty.
std::string Write_text_file(const std::filesystem::path& path,
                            const std::vector<std::string>& lines);

/// Appends lines to a file, which is created when missing. The text of the failure, or empty: a
/// plain file is then as it was before.
std::string Append_text_file(const std::filesystem::path& path,
                             const std::vector<std::string>& lines);

}  // namespace tarven
