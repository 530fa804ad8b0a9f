#include "project/code_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>

#include "project/line_reader.h"
#include "shell/limits.h"

namespace tarven {

std::vector<int> Dimensions(const ProjectDefinition& definition) {
    std::vector<int> dims;
    for (int v = 1; v <= definition.N; ++v)
        dims.push_back(definition.variables[static_cast<std::size_t>(v)].dim);
    return dims;
}

namespace {

/// Codes of one digit, each followed by a blank, into 2*N characters; false when one is longer.
/// Eight codes at a time, the last eight of more than eight again when they are no multiple: their
/// bytes are drawn apart to every second byte of two words, to which the digit 0 and the blank are
/// added.
bool One_digit_each(const std::uint8_t* codes, int N, char* text) {
    static_assert(std::endian::native == std::endian::little);
    const auto apart = [](std::uint64_t four) {
        four = (four | four << 16) & 0x0000FFFF0000FFFF;
        four = (four | four << 8) & 0x00FF00FF00FF00FF;
        return four + 0x2030203020302030;
    };
    std::uint64_t above_nine = 0;
    const auto put = [&](std::uint64_t eight, int v) {
        above_nine |= eight | ((eight & 0x7F7F7F7F7F7F7F7F) + 0x7676767676767676);
        const std::uint64_t words[2] = {apart(eight & 0xFFFFFFFF), apart(eight >> 32)};
        std::memcpy(text + std::ptrdiff_t{2} * v, words, sizeof words);
    };
    std::uint64_t eight = 0;
    if (N < 8) {
        for (int v = N - 1; v >= 0; --v) eight = eight << 8 | codes[v];
        put(eight, 0);
    }
    for (int v = 0; N >= 8 && v < N; v += 8) {
        const int from = std::min(v, N - 8);
        std::memcpy(&eight, codes + from, 8);
        put(eight, from);
    }
    return (above_nine & 0x8080808080808080) == 0;
}

}  // namespace

void Append_codes(std::string& line, const std::uint8_t* codes, int N) {
    assert(N <= MaxBigTableVariables);
    char text[4 * MaxBigTableVariables];
    if (One_digit_each(codes, N, text)) {
        line.append(text, 2 * static_cast<std::size_t>(N));
        return;
    }
    char* at = text;
    for (int v = 0; v < N; ++v) {
        const unsigned code = codes[v];
        if (code >= 100) *at++ = static_cast<char>('0' + code / 100);
        if (code >= 10) *at++ = static_cast<char>('0' + code / 10 % 10);
        *at++ = static_cast<char>('0' + code % 10);
        *at++ = ' ';
    }
    line.append(text, static_cast<std::size_t>(at - text));
}

std::string Read_codes(std::string_view line, const std::vector<int>& dims, std::uint8_t* codes,
                       std::string_view& rest) {
    const char* at = line.data();
    const char* const end = at + line.size();
    for (std::size_t v = 0; v < dims.size(); ++v) {
        while (at != end && *at == ' ') ++at;
        if (at == end) return fmt::format("{} codes, {} required", v, dims.size());
        const char* const first = at;
        int code = 0;
        for (; at != end && *at >= '0' && *at <= '9' && code <= 255; ++at)
            code = code * 10 + (*at - '0');
        if (at == first || (at != end && *at != ' ') || code > dims[v]) {
            while (at != end && *at != ' ') ++at;
            return fmt::format("\"{}\" is not a code 0 to {} of variable {}",
                               Line_for_message({first, static_cast<std::size_t>(at - first)}),
                               dims[v], v + 1);
        }
        codes[v] = static_cast<std::uint8_t>(code);
    }
    rest = {at, static_cast<std::size_t>(end - at)};
    return {};
}

}  // namespace tarven
