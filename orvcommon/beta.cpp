#include "orvcommon/beta.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvcommon/normal_gamma.h"
#include "orvcommon/saddlepoint.h"

namespace orvmath {
namespace {

constexpr int kMaxSteps = 1000;      // never met: the choice of method keeps both loops below some hundred
constexpr double kSeriesTerms = 30;  // up to here the series is the fastest
constexpr double kLargeParameter = 1e5;  // both parameters above: the continued fraction gets long

/// I_x(a, b) / prefix = 1 + (a+b)/(a+1) x + (a+b)(a+b+1)/((a+1)(a+2)) x^2 + ..., all terms positive
/// (Abramowitz and Stegun 26.5.4).
double series(const BetaPoint& p, double slack) {
    double term = 1, sum = 1, n = p.a + p.b, d = p.a + 1;
    for (int j = 0; j < kMaxSteps; ++j, n += 1, d += 1) {
        count_step();
        const double ratio = n * p.x / d;
        term *= ratio;
        sum += term;
        const double bound = std::max(ratio, p.x);  // of all further ratios
        if (bound < 1 && term * bound < 1e-17 * slack * sum * (1 - bound)) break;
    }
    return sum;
}

/// prefix * a / I_x(a, b) for x up to the mean, as a continued fraction beta_0 + alpha_1 / (beta_1 + alpha_2
/// / ...): DiDonato and Morris (1992), Algorithm 708, ACM TOMS 18, 360-373, BFRAC. Its convergents A / B are
/// formed forwards from the equivalent fraction with unit denominators, A_m = A_(m-1) + alpha_m / (beta_m
/// beta_(m-1)) A_(m-2), where the denominators D_m = a + 2m + 1 within alpha and beta are cleared: one
/// division a step.
double continued_fraction(const BetaPoint& p, double slack) {
    const double a = p.a, b = p.b, x = p.x, lambda1 = 1 - p.deviation;
    // scale is 1 / (D_m D_(m-1) beta_m), but beta_0 counts as one
    double D = a + 1, last_D = 1, scale = 1 / D;
    double A = a * lambda1 * scale, B = 1, last_A = 1, last_B = 0;
    const double negligible = 2e-16 * slack;
    for (double m = 1; m < kMaxSteps; m += 1) {
        count_step();
        const double next_D = D + 2, step = m * (b - m) * x;
        const double next_scale = 1 / ((m * D + step) * next_D + (a + m) * D * (lambda1 + m * (2 - x)));
        const double coefficient =
            ((a + m - 1) * next_D * next_scale) * ((a + b + m - 1) * x) * (step * last_D * scale);
        last_D = std::exchange(D, next_D);
        scale = next_scale;
        last_A = std::exchange(A, A + coefficient * last_A);
        last_B = std::exchange(B, B + coefficient * last_B);
        if (!(std::fabs(A * last_B - last_A * B) > negligible * (A * last_B))) break;
        if (B > 1e100) {
            A *= 1e-100;
            B *= 1e-100;
            last_A *= 1e-100;
            last_B *= 1e-100;
        }
    }
    return A / B;
}

/// Whether x lies above the mean only because a is small (or y below it because b is), near enough for a
/// short series.
bool has_short_end(double a, double x, double n) {
    return a < 0.5 && x < 0.5 && x * n < 1.5;
}

/// I_x(a, b) at a point at or below the mean, with relative accuracy.
double lower_tail(const BetaPoint& p, double prefix, double slack) {
    if (prefix == 0) return 0;
    if (beta_series_is_short(p, kSeriesTerms)) return prefix * series(p, slack);
    if (std::min(p.a, p.b) < kLargeParameter) return prefix * p.a / continued_fraction(p, slack);
    return saddlepoint_tails({p.a, p.b, 0, p.x / p.y, -p.deviation / p.y}).lower;
}

}  // namespace

BetaPoint BetaPoint::at(double x, double a, double b) {
    const TwoDoubles bx = two_product(b, x), ax = two_product(a, x);
    const TwoDoubles s = two_sum(ax.high, -a), t = two_sum(s.high, bx.high);
    return {a, b, x, 1 - x, t.high + (s.low + t.low + ax.low + bx.low)};
}

BetaPoint BetaPoint::at_ratio(TwoDoubles r, double a, double b) {
    const TwoDoubles sum = two_sum(r.high, b);
    const double sum_low = sum.low + r.low;
    const double x = r.high / sum.high, y = b / sum.high;
    const TwoDoubles back = two_product(x, sum.high);
    const double x_low = ((r.high - back.high) - back.low + r.low - x * sum_low) / sum.high;
    return {a, b, x, y, y * ((r.high - a) + r.low), x_low};
}

double beta_prefix(const BetaPoint& p) {
    const double n = p.a + p.b;
    // log(x / mean) and log(y / (1 - mean)) from the deviation near the mean, directly far below it.
    const double u = p.deviation / p.a, v = -p.deviation / p.b;
    const double du = u > -0.45   ? log1p_deficit(u)
                      : p.y < 0.1 ? u - (std::log1p(-p.y) + std::log(n / p.a))
                                  : u - std::log(p.x * (n / p.a));
    const double dv = v > -0.45   ? log1p_deficit(v)
                      : p.x < 0.1 ? v - (std::log1p(-p.x) + std::log(n / p.b))
                                  : v - std::log(p.y * (n / p.b));
    const double deviances = p.a * du + p.b * dv;
    if (std::min(p.a, p.b) >= 0.5)
        return std::sqrt(p.b / (n * p.a)) * kInvSqrt2Pi *
               std::exp(stirling_error(n) - stirling_error(p.a) - stirling_error(p.b) - deviances);
    const GammaFactor fn = gamma_factor(n), fa = gamma_factor(p.a), fb = gamma_factor(p.b);
    return std::sqrt(fn.square / (fa.square * fb.square)) * (p.b / n) * kInvSqrt2Pi *
           std::exp(fn.log - fa.log - fb.log - deviances);
}

bool beta_series_is_short(const BetaPoint& p, double terms) {
    const double beyond_mean = std::max(0.0, p.deviation);
    const double room = terms * p.y - beyond_mean - 20 * (1 + p.x) * (1 - 0.5 * p.y);
    if (room > 0 && 78 * p.b * p.x < room * room) return true;
    const double first = p.a + 1, second = p.x * std::max(p.a + p.b, first);
    return p.deviation <= 0 && 20 * (first + second) < terms * (first - second);
}

double beta_small_lower_tail(const BetaPoint& p, double prefix) {
    const bool is_direct = p.deviation <= 0 && !(p.b < 0.5 && p.y * (p.a + p.b) < kNearEnd);
    return is_direct ? lower_tail(p, prefix, 1) : beta_tails(p, prefix).lower;
}

Tails beta_tails(const BetaPoint& p, double prefix, double slack) {
    // (Seen from the other end, the prefix is prefix * a / b.)
    if (p.deviation <= 0) {
        // With a parameter below one half the mean is no middle: near that end its series serves both tails.
        if (has_short_end(p.b, p.y, p.a + p.b)) {
            const double upper = prefix * p.a / p.b * series(p.mirrored(), slack);
            // (A small lower tail is better computed by itself, where that does not take long.)
            if (upper < 0.9 || p.y < 0.02) return Tails::from_upper(upper);
        }
        return Tails::from_lower(lower_tail(p, prefix, slack));
    }
    if (has_short_end(p.a, p.x, p.a + p.b)) return Tails::from_lower(prefix * series(p, slack));
    // A short series beyond the mean does as well, unless it leaves little for this side.
    if (p.a < 60 && beta_series_is_short(p, kSeriesTerms)) {
        const double lower = prefix * series(p, slack);
        if (lower < 0.96) return Tails::from_lower(lower);
    }
    return Tails::from_upper(lower_tail(p.mirrored(), prefix * p.a / p.b, slack));
}

Tails beta_cdf(double x, double a, double b) {
    if (!(x > 0)) return {0, 1};
    if (!(x < 1)) return {1, 0};
    if (std::max(a, b) <= kHugeParameter)
        return beta_tails(BetaPoint::at(x, std::max(a, kTinyParameter), std::max(b, kTinyParameter)));
    // The ratio of x to the mean is what counts: keep it where a parameter is brought down.
    const double limited_a = std::clamp(a, kTinyParameter, kHugeParameter);
    const double limited_b = std::clamp(b, kTinyParameter, kHugeParameter);
    const double r = b / a * (x / (1 - x)) * limited_a;
    return beta_tails(
        BetaPoint::at_ratio({std::clamp(r, kSmallestRatio, kLargestRatio), 0}, limited_a, limited_b));
}

}  // namespace orvmath
