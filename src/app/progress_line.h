#pragma once

#include <cstdint>
#include <string>

namespace tarven {

/// "Tests: 12 of 190", and from the fifth second on the time left, as long as the steps to come
/// take what those before took: "Tests: 12 of 190, about 75 s left". Whole seconds, minutes from 90
/// of them on, hours from 90 minutes on, all rounded up.
std::string Progress_line(const std::string& title, std::int64_t position, std::int64_t end,
                          double seconds);

}  // namespace tarven
