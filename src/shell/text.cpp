#include "shell/text.h"

#include <cstdint>
#include <optional>

namespace tarven {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

/// The code point at `at`, which is moved behind it; nothing when the bytes are not UTF-8.
std::optional<std::uint32_t> Next_code_point(std::string_view bytes, std::size_t& at) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(bytes[k]); };
    const unsigned lead = byte(at);
    if (lead < 0x80) {
        ++at;
        return lead;
    }
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || at + static_cast<std::size_t>(length) > bytes.size())
        return {};
    std::uint32_t point = lead & (0xFFu >> (length + 1));
    for (int k = 1; k < length; ++k) {
        const unsigned next = byte(at + static_cast<std::size_t>(k));
        if ((next & 0xC0) != 0x80) return {};
        point = point << 6 | (next & 0x3F);
    }
    if ((length == 3 && point < 0x800) || (length == 4 && point < 0x10000)) return {};
    at += static_cast<std::size_t>(length);
    return point;
}

bool Is_control(unsigned char c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

// An escape is OtherLetter and five digits of five bits each, the highest first, every digit one of
// the control characters 0x80 to 0x9F.

std::string Escape(std::uint32_t point) {
    std::string escape(1, OtherLetter);
    for (int shift = 20; shift >= 0; shift -= 5)
        escape += static_cast<char>(0x80 | (point >> shift & 0x1F));
    return escape;
}

/// The code point of an escape at `at`; 0 when there is none. What is no character outside Latin-1
/// (a surrogate, too large a number) is none.
std::uint32_t Escaped(std::string_view text, std::size_t at) {
    if (text[at] != OtherLetter || text.size() - at < OtherLetterLength) return 0;
    std::uint32_t point = 0;
    for (std::size_t k = 1; k < OtherLetterLength; ++k) {
        const auto digit = static_cast<unsigned char>(text[at + k]);
        if (digit < 0x80 || digit > 0x9F) return 0;
        point = point << 5 | (digit & 0x1F);
    }
    const bool surrogate = point >= 0xD800 && point < 0xE000;
    return point < 0x100 || point > 0x10FFFF || surrogate ? 0 : point;
}

void Append_utf8(std::string& bytes, std::uint32_t point) {
    const auto tail = [&](int shift) {
        bytes += static_cast<char>(0x80 | (point >> shift & 0x3F));
    };
    if (point < 0x80) {
        bytes += static_cast<char>(point);
    } else if (point < 0x800) {
        bytes += static_cast<char>(0xC0 | point >> 6);
        tail(0);
    } else if (point < 0x10000) {
        bytes += static_cast<char>(0xE0 | point >> 12);
        tail(6), tail(0);
    } else {
        bytes += static_cast<char>(0xF0 | point >> 18);
        tail(12), tail(6), tail(0);
    }
}

template <class Other>
std::string Latin1(std::string_view bytes, Other other) {
    if (bytes.starts_with(ByteOrderMark)) bytes.remove_prefix(ByteOrderMark.size());
    std::string result;
    result.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const auto point = Next_code_point(bytes, at);
        if (!point) return std::string(bytes);
        if (*point < 0x100)
            result += static_cast<char>(*point);
        else
            result += other(*point);
    }
    return result;
}

}  // namespace

std::string To_utf8(std::string_view latin1) {
    std::string result;
    result.reserve(latin1.size());
    for (std::size_t at = 0; at < latin1.size();) {
        const std::uint32_t other = Escaped(latin1, at);
        Append_utf8(result, other ? other : static_cast<unsigned char>(latin1[at]));
        at += other ? OtherLetterLength : 1;
    }
    return result;
}

std::string To_latin1(std::string_view bytes) {
    return Latin1(bytes, [](std::uint32_t) { return '?'; });
}

std::string To_line(std::string_view bytes) {
    return Latin1(bytes, Escape);
}

bool Is_other_letter(std::string_view text, std::size_t at) {
    return at < text.size() && Escaped(text, at) != 0;
}

std::string One_byte_a_letter(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();
         at += Is_other_letter(text, at) ? OtherLetterLength : 1)
        result += text[at];
    return result;
}

std::vector<std::string> Split_lines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.emplace_back(line);
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

std::string Printable(std::string_view text) {
    std::string result(text);
    for (std::size_t at = 0; at < result.size(); ++at) {
        char& c = result[at];
        if (!Is_control(static_cast<unsigned char>(c))) continue;
        if (Is_other_letter(result, at))
            at += OtherLetterLength - 1;
        else
            c = c == '\t' ? ' ' : '?';
    }
    return result;
}

}  // namespace tarven
