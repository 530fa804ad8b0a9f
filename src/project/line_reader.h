#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarven {

/// Reads a data file line by line in large blocks, so that its size costs no memory. Lines end by
/// LF or CRLF, the last with or without; a byte order mark at the start is dropped. Bytes are
/// handed on as they are.
class LineReader {
  public:
    /// The longest line that is read; a longer one is a failure.
    static constexpr std::size_t LongestLine = 64u << 20;

    /// Opens a regular file. Without one opened() is false and failure() says why.
    explicit LineReader(const std::filesystem::path& path);
    /// Reads a text in memory, which must stay; `name` stands in messages.
    LineReader(std::string_view text, std::string name);
    ~LineReader();
    LineReader(LineReader&&) noexcept;

    /// The next line, valid until the next call. False at the end of the file and after a failure.
    bool Next(std::string_view& line);

    bool opened() const { return opened_; }
    /// Why reading broke off, whole enough for a message; empty while all is well.
    const std::string& failure() const { return failure_; }
    /// Number of the line that Next gave last, from 1.
    std::int64_t line_number() const { return line_number_; }
    /// Name of the file, without its folder, in Latin-1.
    const std::string& name() const { return name_; }
    /// "NAME, line K"
    std::string Place() const;

  private:
    bool Fill();

    struct Descriptor;
    std::unique_ptr<Descriptor> file_;
    std::vector<char> buffer_;
    const char* begin_ = nullptr;  ///< what is read and not yet handed out
    const char* end_ = nullptr;
    bool at_end_ = false;
    bool opened_ = false;
    std::string failure_;
    std::string name_;
    std::int64_t line_number_ = 0;
};

/// The lines of a file, counted without looking into them; -1 when it cannot be read.
std::int64_t Count_lines(const std::filesystem::path& path);

/// A line of a data file as a message shows it: Latin-1, printable, at most 120 characters.
std::string Line_for_message(std::string_view line);

}  // namespace tarven
