#include "tables/numbers/log_factorial.h"

#include <array>
#include <cmath>
#include <numbers>

namespace tarven {

namespace {

constexpr Extended pi = std::numbers::pi_v<Extended>;

struct LogFactorials {
    std::array<Extended, LogFactorialTableTop + 1> sum{};
    Extended twice_ln_two_pi = std::log(4 * pi * pi);

    LogFactorials() {
        for (std::size_t n = 2; n < sum.size(); ++n)
            sum[n] = sum[n - 1] + std::log(static_cast<Extended>(n));
    }
};

const LogFactorials& Table() {
    static const LogFactorials table;
    return table;
}

}  // namespace

Extended Log_factorial(std::int64_t n) {
    const LogFactorials& table = Table();
    if (n < 2) return 0;
    if (n <= LogFactorialTableTop) return table.sum[static_cast<std::size_t>(n)];
    const Extended m = static_cast<Extended>(n);
    return (m + 0.5L) * std::log(m) + table.twice_ln_two_pi - m + 1 / (24 * m) - 2.756L;
}

Extended Log_binomial(std::int64_t n, std::int64_t k) {
    if (k > n) return 0;
    return Log_factorial(n) - Log_factorial(k) - Log_factorial(n - k);
}

Extended Log_gamma_half(std::int64_t n) {
    if (n < 501) {
        std::int64_t x = n;
        Extended s = 0;
        while (x > 2) {
            x -= 2;
            s += std::log(static_cast<Extended>(x) / 2);
        }
        return x == 1 ? s + std::log(pi) / 2 : s;
    }
    const Extended h = static_cast<Extended>(n) / 2;
    return std::log(2 * pi) / 2 + (h - 0.5L) * std::log(h) + 1 / (12 * h) - h -
           (1.0L / 360) / (h * h * h);
}

}  // namespace tarven
