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

}  // namespace

std::string To_utf8(std::string_view latin1) {
    std::string result;
    result.reserve(latin1.size());
    for (const char c : latin1) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0 | code >> 6);
            result += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return result;
}

std::string To_latin1(std::string_view bytes) {
    if (bytes.starts_with(ByteOrderMark)) bytes.remove_prefix(ByteOrderMark.size());
    std::string result;
    result.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const auto point = Next_code_point(bytes, at);
        if (!point) return std::string(bytes);
        result += *point < 0x100 ? static_cast<char>(*point) : '?';
    }
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
    for (char& c : result)
        if (Is_control(static_cast<unsigned char>(c))) c = c == '\t' ? ' ' : '?';
    return result;
}

}  // namespace tarven
