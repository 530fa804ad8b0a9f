#include "project/line_reader.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "shell/files.h"
#include "shell/limits.h"
#include "shell/text.h"

namespace tarven {

namespace {

constexpr std::size_t BlockSize = 1u << 18;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

struct LineReader::Descriptor {
    int number = -1;
    Descriptor() = default;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number >= 0) ::close(number);
    }
};

LineReader::LineReader(const std::filesystem::path& path)
    : file_(std::make_unique<Descriptor>()), name_(Path_text(path.filename())) {
    // Non-blocking, so that a pipe in place of a data file is refused instead of waited for.
    file_->number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status {};
    if (file_->number < 0 || ::fstat(file_->number, &status) != 0)
        failure_ = fmt::format("{} could not be read: {}", name_, std::strerror(errno));
    else if (!S_ISREG(status.st_mode))
        failure_ = fmt::format("{} could not be read: not a regular file", name_);
    if (!failure_.empty()) return;
    opened_ = true;
    buffer_.resize(BlockSize);
    begin_ = end_ = buffer_.data();
    Fill();
    if (std::string_view(begin_, static_cast<std::size_t>(end_ - begin_))
            .starts_with(ByteOrderMark))
        begin_ += ByteOrderMark.size();
}

LineReader::LineReader(std::string_view text, std::string name)
    : at_end_(true), opened_(true), name_(std::move(name)) {
    if (text.starts_with(ByteOrderMark)) text.remove_prefix(ByteOrderMark.size());
    begin_ = text.data();
    end_ = text.data() + text.size();
}

LineReader::~LineReader() = default;
LineReader::LineReader(LineReader&&) noexcept = default;

bool LineReader::Next(std::string_view& line) {
    if (!opened_ || !failure_.empty()) return false;
    std::size_t searched = 0;
    const char* stop = nullptr;
    while (true) {
        const std::size_t held = static_cast<std::size_t>(end_ - begin_);
        if (held > searched)
            stop = static_cast<const char*>(std::memchr(begin_ + searched, '\n', held - searched));
        if (stop || at_end_) break;
        searched = held;
        if (!Fill()) return false;
    }
    if (!stop && begin_ == end_) return false;
    const char* after = stop ? stop + 1 : end_;
    if (!stop) stop = end_;
    if (stop > begin_ && stop[-1] == '\r') --stop;
    line = {begin_, static_cast<std::size_t>(stop - begin_)};
    begin_ = after;
    ++line_number_;
    return true;
}

/// Moves what is left to the front and reads on; false after a failure.
bool LineReader::Fill() {
    const std::size_t left = static_cast<std::size_t>(end_ - begin_);
    if (left > LongestLine) {
        failure_ = fmt::format("{}, line {}: longer than {} characters", name_, line_number_ + 1,
                               LongestLine);
        return false;
    }
    if (left > 0) std::memmove(buffer_.data(), begin_, left);
    if (buffer_.size() < 2 * left + BlockSize) buffer_.resize(2 * left + BlockSize);
    ssize_t got = 0;
    do got = ::read(file_->number, buffer_.data() + left, buffer_.size() - left);
    while (got < 0 && errno == EINTR);
    if (got < 0) {
        failure_ = fmt::format("{} could not be read: {}", name_, std::strerror(errno));
        got = 0;
    }
    if (got == 0) at_end_ = true;
    begin_ = buffer_.data();
    end_ = begin_ + left + static_cast<std::size_t>(got);
    return failure_.empty();
}

std::string LineReader::Place() const {
    return fmt::format("{}, line {}", name_, line_number_);
}

std::int64_t Count_lines(const std::filesystem::path& path) {
    LineReader reader(path);
    std::string_view line;
    while (reader.Next(line)) {
    }
    return reader.opened() && reader.failure().empty() ? reader.line_number() : -1;
}

std::string Line_for_message(std::string_view line) {
    std::string text = Printable(To_latin1(line.substr(0, std::size_t{4} * MaxTextLength)));
    if (text.size() > MaxTextLength) text.resize(MaxTextLength);
    return text;
}

}  // namespace tarven
