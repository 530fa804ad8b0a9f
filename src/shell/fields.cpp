#include "shell/fields.h"

#include <fmt/format.h>

#include <cmath>

namespace tarven {

namespace {

bool Is_zero(std::string_view digits) {
    return digits.find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

std::string Field(double value, int width, int decimals) {
    if (std::isnan(value)) return Blanks(width);
    if (std::isinf(value)) return Right(value > 0 ? "inf" : "-inf", width);
    std::string text = fmt::format("{:.{}f}", value, decimals);
    if (text[0] == '-' && Is_zero(text)) text.erase(0, 1);
    return Right(text, width);
}

std::string Field_of_integer(std::int64_t value, int width) {
    return Right(fmt::format("{}", value), width);
}

std::string Right(std::string_view text, int width) {
    return Blanks(width - static_cast<int>(text.size())).append(text);
}

std::string Left(std::string_view text, int width) {
    std::string result(text);
    return result.append(Blanks(width - static_cast<int>(text.size())));
}

std::string Beside(std::string line, std::string_view field) {
    if (!line.empty() && line.back() != ' ' && !field.empty() && field.front() != ' ') line += ' ';
    return line.append(field);
}

std::string Blanks(int count) {
    return std::string(count > 0 ? static_cast<std::size_t>(count) : 0, ' ');
}

void Append_lines(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

}  // namespace tarven
