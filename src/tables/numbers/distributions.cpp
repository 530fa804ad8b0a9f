#include "tables/numbers/distributions.h"

#include <cmath>
#include <utility>

#include "shell/numbers.h"
#include "tables/numbers/log_factorial.h"

namespace tarven {

namespace {

/// 1 / sqrt(2 pi), to the digits of the published algorithms.
constexpr Extended density_at_zero = 0.3989422804014327L;

Extended Normal_series(bool upper, Extended y, Extended z) {
    const Extended q = z * z;
    Extended s = y * z;
    Extended t = s;
    Extended d = 0;
    for (Extended n = 3; s != d; n += 2) {
        d = s;
        t = t * q / n;
        s += t;
    }
    return upper ? 0.5L - s : 0.5L + s;
}

/// A convergent is b1/c1; b0 and c0 are those of the convergent before it.
Extended Normal_fraction(bool upper, Extended y, Extended z) {
    const auto convergent = [upper](Extended b, Extended c) { return upper ? b / c : 1 - b / c; };
    Extended b0 = y, b1 = y * z;
    Extended c0 = z, c1 = 1 + z * z;
    Extended oldest = -1;  // no convergent is negative
    Extended before = convergent(b0, c0);
    Extended newest = convergent(b1, c1);
    for (Extended n = 2; newest != before && newest != oldest; ++n) {
        const Extended b = b1 * z + n * b0;
        const Extended c = c1 * z + n * c0;
        b0 = b1, b1 = b;
        c0 = c1, c1 = c;
        oldest = before;
        before = newest;
        newest = convergent(b1, c1);
    }
    return newest;
}

Extended Normal_integral(bool upper, Extended z) {
    if (!(z < 0 || z > 0)) return 0.5L;
    if (z < 0) {
        upper = !upper;
        z = -z;
    }
    const Extended q = z * z;
    const Extended y = q / 2 < 170 ? density_at_zero * std::exp(-q / 2) : 0;
    if (y / z == 0) return upper ? 0 : 1;
    const bool series = upper ? z <= 2.32L : z <= 3.5L;
    return series ? Normal_series(upper, y, z) : Normal_fraction(upper, y, z);
}

}  // namespace

double Normal_tail(bool upper, double z) {
    return static_cast<double>(Normal_integral(upper, z));
}

double Normal_p(double z) {
    if (std::fabs(z) >= 100) return 0;
    return Normal_tail(true, z);
}

double Chi2_tail(std::int64_t df, double x) {
    if (df <= 0 || !(x > 0)) return 1;
    if (std::isinf(x)) return 0;
    const Extended X = x;
    if (df > 100) {
        const Extended f = static_cast<Extended>(df);
        const Extended z = (std::cbrt(X / f) + 1 / (4.5L * f) - 1) * std::sqrt(4.5L * f);
        return static_cast<double>(Normal_integral(true, z));
    }
    if (df % 2 == 0) {
        Extended s = X < 170 ? std::exp(-X / 2) : 0;
        Extended t = s;
        for (std::int64_t i = 1; i <= df / 2 - 1; ++i) {
            t = t * 0.5L * X / static_cast<Extended>(i);
            s += t;
        }
        return static_cast<double>(s);
    }
    const Extended root = std::sqrt(X);
    Extended s = 2 * Normal_integral(true, root);
    Extended t = X < 170 ? 2 * density_at_zero * std::exp(-X / 2) / root : 0;
    for (std::int64_t i = 1; i <= (df - 1) / 2; ++i) {
        t = t * X / static_cast<Extended>(2 * i - 1);
        s += t;
    }
    return static_cast<double>(s);
}

namespace {

/// The sum for a + b >= 41, x <= 1/2.
Extended Beta_of_many(Extended a, Extended b, Extended x, std::int64_t ia, std::int64_t ib) {
    const Extended L = Log_gamma_half(ia + ib) + (b / 2 - 1) * std::log(1 - x) +
                       (a / 2) * std::log(x) - Log_gamma_half(ia + 2) - Log_gamma_half(ib);
    Extended t = L < -1000 ? 0 : std::exp(L);
    if (t <= 1e-35L) return x < a / (a + b) ? 0 : 1;
    Extended s = 0;
    for (Extended i = 0; !(std::fabs(t) <= 1e-25L && (1 - x) * (a + i) >= (b - i) * x);) {
        s += t;
        i += 2;
        t = t * x * (b - i) / (1 - x) / (a + i);
    }
    return s;
}

/// The power series for a + b < 41, x <= 1/2.
Extended Beta_of_few(Extended a, Extended b, Extended x, std::int64_t ia, std::int64_t ib) {
    Extended t = std::exp((a / 2) * std::log(x) + Log_gamma_half(ia + ib) - Log_gamma_half(ib) -
                          Log_gamma_half(ia + 2));
    Extended s = 0;
    for (Extended k = 0; !(b <= k && std::fabs(t) <= 1e-20L);) {
        s += t;
        k += 2;
        t = -t * x * (b - k) * (k + a - 2) / k / (k + a);
    }
    return s;
}

}  // namespace

double Beta_tail(std::int64_t a, std::int64_t b, double x) {
    if (a <= 0 || b <= 0) return a <= 0 ? 1 : 0;
    if (a == b && x == 0.5) return 0.5;
    if (!(x > 0)) return 0;
    if (x >= 1) return 1;
    Extended X = x;
    const bool exchanged = X > 1 - X;
    if (exchanged) {
        std::swap(a, b);
        X = 1 - X;
    }
    const auto A = static_cast<Extended>(a), B = static_cast<Extended>(b);
    Extended s = a + b < 41 ? Beta_of_few(A, B, X, a, b) : Beta_of_many(A, B, X, a, b);
    if (exchanged) s = 1 - s;
    return static_cast<double>(std::fabs(s));
}

double Binomial_tail(std::int64_t n, std::int64_t k, double p) {
    return Beta_tail(2 * k, 2 * (n - k) + 2, p);
}

}  // namespace tarven
