#include "orvcommon/beta.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvcommon/normal_gamma.h"
#include "orvcommon/saddlepoint.h"

namespace orvmath {
namespace {

constexpr int kMaxSteps = 3000;      // never met: the choice of method keeps both loops below some hundred
constexpr double kSeriesTerms = 50;  // up to here the series is the fastest
constexpr double kLargeParameter = 1e5;  // both parameters above: the continued fraction gets long

/// I_x(a, b) / prefix = 1 + (a+b)/(a+1) x + (a+b)(a+b+1)/((a+1)(a+2)) x^2 + ..., all terms positive
/// (Abramowitz and Stegun 26.5.4).
double series(const BetaPoint& p) {
    double term = 1, sum = 1, n = p.a + p.b, d = p.a + 1;
    for (int j = 0; j < kMaxSteps; ++j, n += 1, d += 1) {
        count_step();
        const double ratio = n * p.x / d;
        term *= ratio;
        sum += term;
        if (ratio < 1 && term * ratio < 1e-17 * sum * (1 - ratio)) break;
    }
    return sum;
}

/// prefix * a / I_x(a, b) for x up to the mean, as a continued fraction: DiDonato and Morris (1992),
/// Algorithm 708, ACM TOMS 18, 360-373, BFRAC; evaluated forwards, each convergent scaled to denominator 1.
double continued_fraction(const BetaPoint& p) {
    const double a = p.a, b = p.b, x = p.x, lambda = -p.deviation;
    double inverse = 1 / (a + 1);  // 1 / (a + 2m + 1)
    double value = a * inverse * (lambda + 1), previous_numerator = 1, previous_denominator = 0;
    for (int m = 1; m < kMaxSteps; ++m) {
        count_step();
        const double last = std::exchange(inverse, 1 / (a + 2 * m + 1));
        const double step = m * (b - m) * x * last;
        const double alpha =
            ((a + m - 1) * last) * ((a + b + m - 1) * step) * x;  // in an order that cannot overflow
        const double beta = m + step + ((a + m) * inverse) * (lambda + 1 + m * (2 - x));
        const double scale = 1 / (beta + alpha * previous_denominator);
        const double next = (beta * value + alpha * previous_numerator) * scale;
        previous_numerator = value * scale;
        previous_denominator = scale;
        const double change = std::fabs(next - value);
        value = next;
        if (!(change > 2e-16 * value)) break;
    }
    return value;
}

/// I_x(a, b) at a point at or below the mean, with relative accuracy.
double lower_tail(const BetaPoint& p, double prefix) {
    if (prefix == 0) return 0;
    if (beta_series_terms(p) < kSeriesTerms) return prefix * series(p);
    if (std::min(p.a, p.b) < kLargeParameter) return prefix * p.a / continued_fraction(p);
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
    const double x_low = (std::fma(-x, sum.high, r.high) + r.low - x * sum_low) / sum.high;
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
    const double exponent =
        stirling_error(n) - stirling_error(p.a) - stirling_error(p.b) - p.a * du - p.b * dv;
    return std::sqrt(p.b / n / p.a) * kInvSqrt2Pi * std::exp(exponent);
}

double beta_series_terms(const BetaPoint& p) {
    // The terms are those of a negative binomial tail from a upwards, with mean b x / y.
    const double beyond_mean = p.b * p.x / p.y - p.a, ratio = std::max(p.x * (p.a + p.b) / (p.a + 1), p.x);
    const double tail = std::sqrt(78 * p.b * p.x) / p.y + 20 * (1 + p.x) / p.y * (1 - 0.5 * p.y);
    if (beyond_mean > 0 || ratio >= 1) return std::max(0.0, beyond_mean) + tail;
    return std::min(tail, 20 * (1 + ratio) / (1 - ratio));
}

Tails beta_tails(const BetaPoint& p, double prefix) {
    // With a parameter below one half the mean is no middle: the series about the near end serves both tails.
    bool from_below = p.deviation <= 0;
    if (from_below && p.b < 0.5 && p.y < 0.5 && p.y * (p.a + p.b) < 1.5) from_below = false;
    if (!from_below && p.a < 0.5 && p.x < 0.5 && p.x * (p.a + p.b) < 1.5) from_below = true;
    if (from_below) return Tails::from_lower(lower_tail(p, prefix));
    // A short series beyond the mean does as well, unless it leaves little for this side.
    if (p.a < 60 && beta_series_terms(p) < kSeriesTerms) {
        const double lower = prefix * series(p);
        if (lower < 0.96) return Tails::from_lower(lower);
    }
    return Tails::from_upper(lower_tail(p.mirrored(), prefix * p.a / p.b));
}

Tails beta_cdf(double x, double a, double b) {
    if (!(x > 0)) return {0, 1};
    if (!(x < 1)) return {1, 0};
    if (std::max(a, b) <= kHugeParameter)
        return beta_tails(BetaPoint::at(x, std::max(a, kTinyParameter), std::max(b, kTinyParameter)));
    // The ratio of x to the mean is what counts: keep it where a parameter is brought down.
    const double limited_a = std::min(a, kHugeParameter), limited_b = std::min(b, kHugeParameter);
    const double r = b / a * (x / (1 - x)) * limited_a;
    return beta_tails(
        BetaPoint::at_ratio({std::clamp(r, kSmallestRatio, kLargestRatio), 0}, limited_a, limited_b));
}

}  // namespace orvmath
