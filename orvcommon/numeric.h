// Small exact and cancellation-free pieces that every method here is built from.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "orvcommon/step_count.h"

namespace orvmath {

inline constexpr double kLnSqrt2Pi = 0.918938533204672741780;
inline constexpr double kInvSqrt2Pi = 0.398942280401432677940;

/// c[0] + c[1] x + c[2] x^2 + ...
template <std::size_t N>
double polynomial(const double (&c)[N], double x) {
    double sum = c[N - 1];
    for (std::size_t i = N - 1; i-- > 0;) sum = sum * x + c[i];
    return sum;
}

/// P(X <= x) and P(X > x). The one that a method computes directly keeps its relative accuracy; the other is
/// its complement.
struct Tails {
    double lower, upper;

    static Tails from_lower(double p) { return {std::min(p, 1.0), std::max(1 - p, 0.0)}; }
    static Tails from_upper(double p) { return from_lower(p).mirrored(); }
    Tails mirrored() const { return {upper, lower}; }
};

/// An unevaluated sum: `high` is the rounded result of an operation and `low` what the rounding lost.
struct TwoDoubles {
    double high, low;
};

inline TwoDoubles two_sum(double a, double b) {  // Knuth, TAOCP 4.2.2
    const double sum = a + b, b_part = sum - a;
    return {sum, (a - (sum - b_part)) + (b - b_part)};
}

/// For factors below 2^996 (Dekker 1971; std::fma would be a library call on the base platform).
inline TwoDoubles two_product(double a, double b) {
    const double split_a = 0x1p27 * a + a, a_high = split_a - (split_a - a), a_low = a - a_high;
    const double split_b = 0x1p27 * b + b, b_high = split_b - (split_b - b), b_low = b - b_high;
    const double product = a * b;
    return {product, a_low * b_low - (((product - a_high * b_high) - a_low * b_high) - a_high * b_low)};
}

/// u - log(1 + u), without cancellation near zero: with r = u / (2 + u), log(1 + u) = 2 artanh(r), so that
/// the difference is u r - 2 r^3 (1/3 + r^2/5 + r^4/7 + ...).
inline double log1p_deficit(double u) {
    const double size = std::fabs(u);
    if (size >= 0.45) {
        const double s =
            1 + u;  // log(1 + u) from log(s) and what the rounding of s lost: faster than std::log1p
        return u - (std::log(s) + (u - (s - 1)) / s);
    }
    const double r = u / (2 + u), q = r * r;
    if (size < 0.05)
        return u * r - 2 * r * q * (1.0 / 3 + q * (1.0 / 5 + q * (1.0 / 7 + q * (1.0 / 9 + q * (1.0 / 11)))));
    const double q2 = q * q, q4 = q2 * q2, q8 = q4 * q4;
    const double s0 = (1.0 / 3 + q * (1.0 / 5)) + q2 * (1.0 / 7 + q * (1.0 / 9));
    const double s1 = (1.0 / 11 + q * (1.0 / 13)) + q2 * (1.0 / 15 + q * (1.0 / 17));
    const double s2 = (1.0 / 19 + q * (1.0 / 21)) + q2 * (1.0 / 23 + q * (1.0 / 25));
    const double s3 = 1.0 / 27 + q * (1.0 / 29);
    return u * r - 2 * r * q * (s0 + q4 * s1 + q8 * (s2 + q4 * s3));
}

}  // namespace orvmath
