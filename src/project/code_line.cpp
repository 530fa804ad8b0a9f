#include "project/code_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>

#include "project/line_reader.h"
#include "shell/limits.h"

namespace tarven {

std::vector<int> Dimensions(const ProjectDefinition& definition) {
    std::vector<int> dims;
    for (int v = 1; v <= definition.N; ++v)
        dims.push_back(definition.variables[static_cast<std::size_t>(v)].dim);
    return dims;
}

void Append_codes(std::string& line, const std::uint8_t* codes, int N) {
    assert(N <= MaxBigTableVariables);
    char text[4 * MaxBigTableVariables];
    if (std::all_of(codes, codes + N, [](std::uint8_t code) { return code < 10; })) {
        for (int v = 0; v < N; ++v) {
            text[2 * v] = static_cast<char>('0' + codes[v]);
            text[2 * v + 1] = ' ';
        }
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
