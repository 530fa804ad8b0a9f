#include "app/progress_line.h"

#include <fmt/format.h>

#include <cmath>

namespace tarven {

namespace {

constexpr double SecondsBeforeEstimate = 5;

std::string Rounded_time(double seconds) {
    if (seconds <= 90) return fmt::format("{:.0f} s", std::ceil(seconds));
    if (seconds <= 90 * 60) return fmt::format("{:.0f} min", std::ceil(seconds / 60));
    return fmt::format("{:.0f} h", std::ceil(seconds / 3600));
}

}  // namespace

std::string Progress_line(const std::string& title, std::int64_t position, std::int64_t end,
                          double seconds) {
    std::string line = fmt::format("{}: {} of {}", title, position, end);
    if (seconds < SecondsBeforeEstimate || position <= 0 || position >= end) return line;
    const double left =
        seconds * static_cast<double>(end - position) / static_cast<double>(position);
    return line + fmt::format(", about {} left", Rounded_time(left));
}

}  // namespace tarven
