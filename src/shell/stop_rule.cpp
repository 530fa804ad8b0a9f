#include "shell/stop_rule.h"

#include <algorithm>
#include <array>

namespace tarven {

namespace {

/// Bounds by crit, risk and hundreds of tables.
constexpr double bounds[3][5][10] = {
    {{1.058, 1.058, 1.058, 1.058, 1.058, 1.058, 1.058, 1.058, 1.058, 1.058},
     {0.849, 0.87, 0.872, 0.874, 0.875, 0.882, 0.883, 0.883, 0.883, 0.883},
     {0.777, 0.81, 0.815, 0.823, 0.827, 0.828, 0.828, 0.828, 0.828, 0.829},
     {0.702, 0.725, 0.739, 0.739, 0.743, 0.744, 0.749, 0.749, 0.75, 0.752},
     {0.573, 0.603, 0.621, 0.633, 0.639, 0.642, 0.645, 0.645, 0.645, 0.646}},
    {{1.287, 1.313, 1.317, 1.317, 1.317, 1.317, 1.321, 1.347, 1.347, 1.347},
     {1.095, 1.116, 1.137, 1.147, 1.147, 1.162, 1.163, 1.163, 1.163, 1.163},
     {1.0, 1.025, 1.042, 1.053, 1.061, 1.067, 1.067, 1.068, 1.068, 1.068},
     {0.904, 0.941, 0.956, 0.971, 0.98, 0.983, 0.983, 0.99, 0.991, 0.992},
     {0.772, 0.811, 0.828, 0.837, 0.85, 0.852, 0.855, 0.858, 0.861, 0.863}},
    {{1.641, 1.686, 1.714, 1.721, 1.724, 1.724, 1.724, 1.724, 1.724, 1.724},
     {1.471, 1.526, 1.539, 1.541, 1.552, 1.563, 1.563, 1.565, 1.565, 1.566},
     {1.383, 1.427, 1.443, 1.461, 1.466, 1.47, 1.473, 1.477, 1.485, 1.488},
     {1.257, 1.304, 1.337, 1.35, 1.354, 1.362, 1.371, 1.371, 1.376, 1.379},
     {1.066, 1.133, 1.157, 1.174, 1.186, 1.192, 1.2, 1.205, 1.207, 1.21}}};

/// The number of limits that `value` has reached: its row of the table.
template <std::size_t N>
std::size_t Class_of(double value, const std::array<double, N>& upper_limits) {
    std::size_t k = 0;
    while (k < N && !(value < upper_limits[k])) ++k;
    return k;
}

}  // namespace

double Repeat_boundary(double crit, std::int32_t nsim, double risk) {
    const std::size_t level = Class_of(crit, std::array{0.1, 0.25});
    const std::size_t row = Class_of(risk, std::array{0.005, 0.01, 0.02, 0.05});
    const std::int64_t hundreds = (static_cast<std::int64_t>(nsim) + 99) / 100;
    return bounds[level][row][std::clamp<std::int64_t>(hundreds, 1, 10) - 1];
}

}  // namespace tarven
