// All three quantiles solve for f = (b / a) x / (1 - x), x beta distributed, on the logarithm of the smaller tail as
// a function of log f. That is concave, so Newton's method converges from any start; near the solution six
// derivatives make up one step, and a good start leaves one evaluation of the tail. Most t quantiles need none:
// they are an expansion about the normal one.
//
// The error of a quantile is that of log(target / tail) over the derivative. So the tail is never what another one
// leaves where that is much larger, and near an end, where the derivative is small, it is compared as a logarithm whose
// terms are small too.
#include "orvcommon/quantiles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "orvcommon/beta.h"
#include "orvcommon/normal_gamma.h"
#include "orvcommon/student_table.h"

namespace orvmath {
namespace {

// Reached only where a shape parameter below 1e-10 leaves a tail without the accuracy to converge with.
constexpr int kMaxIterations = 40;
constexpr double kSmallestF = 0x1p-1010, kLargestF = 0x1p1010;  // beyond, the quantile is 0 or infinite
constexpr int kMaxTerms = 200;
constexpr double kSmallTail = 0.2;  // to be computed by itself
constexpr double kRounding = 1e-17, kFarOff = 1;
constexpr double kLargeShape = 1000;
constexpr double kNormalVariance =
    1e-20;                          // of log F, below which its normal start is all that a double can tell
constexpr double kNormalDf = 1e20;  // degrees of freedom from which t is normal in double precision

/// log B(a, b).
double log_beta(double a, double b) {
    const double n = a + b;
    const double la = a < b ? std::log(a / n) : std::log1p(-b / n);
    const double lb = a < b ? std::log1p(-a / n) : std::log(b / n);
    const GammaFactor fa = gamma_factor(a), fb = gamma_factor(b), fn = gamma_factor(n);
    // B(a, b) = Gamma(a + 1) Gamma(b + 1) / Gamma(n + 1) * n / (a b)
    return kLnSqrt2Pi + a * la + b * lb + 0.5 * std::log(fa.square * fb.square / fn.square) +
           std::log(n / b / a) + fa.log + fb.log - fn.log;
}

/// The point of the beta distribution at f; the smaller one of x and y is rounded once.
BetaPoint point_at(double f, double a, double b) {
    const TwoDoubles r = two_product(a, f);
    if (!(r.high > kSmallestRatio && std::max({a, f, r.high}) < kLargestRatio)) {
        const double odds = a / b * f;
        const double y = odds > 1e300 ? b / a / f : 1 / (1 + odds);
        const double x = odds > 1e300 ? 1 : std::max(odds * y, std::numeric_limits<double>::denorm_min());
        return {a, b, x, y, a * (f - 1) * y};
    }
    const TwoDoubles sum = two_sum(r.high, b);
    const bool x_is_smaller = r.high < b;
    const TwoDoubles part = x_is_smaller ? r : TwoDoubles{b, 0};
    const double quotient = part.high / sum.high;
    const TwoDoubles back = two_product(quotient, sum.high);
    const double rest = (part.high - back.high) - back.low + part.low - quotient * (sum.low + r.low);
    const double smaller = quotient + rest / sum.high, larger = 1 - smaller;
    const double x = x_is_smaller ? smaller : larger, y = x_is_smaller ? larger : smaller;
    return {a, b, x, y, a * (f - 1) * y};
}

struct Step {
    double size;
    double error;  // what the truncation of the series leaves, about
};

/// The step in s = log f after which the tail is the target: newton = log(target / tail) / m by the first
/// derivative m of log(tail), further ones up to the sixth.
///
/// Where T is the tail, m = T' / T and g = T'' / T', so that m' = m (g - m), and g = -deviation has derivatives in
/// x and y alone.
Step long_step(double newton, const BetaPoint& p, double m) {
    const double w = p.x * p.y, u = p.y - p.x;  // w' = w u, u' = -2 w
    const double g1 = -(p.a + p.b) * w, g2 = g1 * u, g3 = g1 * (u * u - 2 * w), g4 = g1 * u * (u * u - 8 * w);
    // Derivatives b, b1, ... of b = g - m, and P_k of m^(k) = m P_k, which obey P' = P b and b' = g' - m P.
    const double b = -p.deviation - m, b1 = g1 - m * b;
    const double P2 = b * b + b1, b2 = g2 - m * P2;
    const double P3 = b * P2 + 2 * b1 * b + b2, b3 = g3 - m * P3;
    const double P4 = b * P3 + 3 * b1 * P2 + 3 * b2 * b + b3, b4 = g4 - m * P4;
    const double P5 = b * P4 + 4 * b1 * P3 + 6 * b2 * P2 + 4 * b3 * b + b4;
    // newton = step + c2 step^2 + ... + c6 step^6: reverted to third order, and a step of Newton's method.
    const double c2 = b / 2, c3 = P2 / 6, c4 = P3 / 24, c5 = P4 / 120, c6 = P5 / 720;
    const double d = newton * (1 - newton * (c2 - newton * (2 * c2 * c2 - c3)));
    const double value = d * (1 + d * (c2 + d * (c3 + d * (c4 + d * (c5 + d * c6)))));
    const double slope = 1 + d * (2 * c2 + d * (3 * c3 + d * (4 * c4 + d * (5 * c5 + d * 6 * c6))));
    const double d2 = d * d, ratio = std::fabs(d) * (std::fabs(b) + std::fabs(m) + 1);
    return {d - (value - newton) / slope, std::fabs(d2 * d2 * d2 * c6) * ratio};
}

/// log Gamma(1 + a), accurate for a small a as well: the logarithm of Gamma at 1 + a as it is rounded, and what the
/// derivative makes of the rounding.
double log_gamma_1p(double a) {
    const double s = 1 + a, lost = a - (s - 1),
                 digamma = a < 1 ? -0.5772 + a * (1.645 - 0.645 * a) : std::log(a);
    return log_gamma(s) + lost * digamma;
}

/// log(Gamma(a + b) / (Gamma(b) Gamma(a + 1) (a + b)^a)), accurate for a small a as well.
double log_end_factor(double a, double b) {
    const double c = b + 1, n = c + a, r = a / c;  // by Stirling's formula for Gamma(n) / Gamma(c)
    return a * std::log1p(1 / (a + b)) - 0.5 * std::log1p(r) - c * log1p_deficit(r) +
           (stirling_error(n) - stirling_error(c)) - std::log1p(a / b) - log_gamma_1p(a);
}

/// Whether the tail at the end x = 0 is compared with its target as below: where x is so near that few terms grow
/// before they fall, and a small a, or a target far out, makes much of the rounding of a tail.
bool is_near_end(const BetaPoint& p, double target) {
    const double mean_count = p.x * (p.a + p.b);
    return p.x < 0.5 && p.x > 1e-290 && p.a < 100 &&
           mean_count < (p.a < 1 || target < 1e-20 ? kNearEnd : 0.1);
}

/// log(target / I_x(a, b)) near the end x = 0, rest = 1 - target: from the logarithms of ((a + b) x)^a and of
/// 1 + a ((1 - b) x / (1 + a) + (1 - b) (2 - b) x^2 / (2! (2 + a)) + ...), which for a small a are both as accurate as
/// log x. (Abramowitz and Stegun 26.5.4 without the power of 1 - x.)
double log_ratio_near_end(const BetaPoint& p, double target, double rest) {
    double term = 1, sum = 0;
    for (double k = 1; k < kMaxTerms; k += 1) {
        count_step();
        term *= (k - p.b) / k * p.x;
        const double addend = term / (k + p.a);
        sum += addend;
        if (std::fabs(addend) <= kRounding * std::fabs(sum)) break;
    }
    const double scaled = p.x * (p.a + p.b), log_power = p.a * std::log(scaled);
    const double log_quotient = std::fabs(log_power) < 1
                                    ? (target < rest ? std::log(target) : std::log1p(-rest)) - log_power
                                : log_power > -600 ? std::log(target / std::pow(scaled, p.a))
                                                   : std::log(target) - log_power;
    return log_quotient - log_end_factor(p.a, p.b) - std::log1p(p.a * sum);
}

/// A tail at a point beside its target.
struct Comparison {
    bool is_lower;
    double log_ratio;  // log(target / tail)
    double m;          // the derivative of log(tail) by log f; NaN where the tail underflowed

    bool is_below() const { return is_lower ? log_ratio > 0 : log_ratio < 0; }
};

/// log(target / tail): of numbers that are near one another without the rounding of their quotient.
double log_ratio_of(double target, double tail) {
    const double z = (target - tail) / (target + tail), q = z * z;
    if (q > 0.0016) return std::log(target / tail);
    return 2 * z + 2 * z * q * (1.0 / 3 + q * (1.0 / 5 + q * (1.0 / 7 + q * (1.0 / 9 + q * (1.0 / 11)))));
}

/// The tail at one end beside its target, rest = 1 - target, near that end: as if it were the lower one.
Comparison compare_near_end(const BetaPoint& p, double prefix, double target, double rest) {
    const double log_ratio = log_ratio_near_end(p, target, rest);
    return {true, log_ratio, p.a * prefix / target * std::exp(log_ratio)};
}

/// One of the two tails beside p or q = 1 - p: the smaller one, or near an end that of the end.
Comparison compare(const BetaPoint& point, double p, double q) {
    const double prefix = beta_prefix(point), slope = point.a * prefix;
    if (std::min(point.x, point.y) * (point.a + point.b) < kNearEnd) {
        if (is_near_end(point, p)) return compare_near_end(point, prefix, p, q);
        if (is_near_end(point.mirrored(), q)) {
            const Comparison upper = compare_near_end(point.mirrored(), slope / point.b, q, p);
            return {false, upper.log_ratio, -upper.m};
        }
    }
    if (p < q) {
        const double lower =
            p < kSmallTail ? beta_small_lower_tail(point, prefix) : beta_tails(point, prefix).lower;
        return {true, log_ratio_of(p, lower), slope / lower};
    }
    const double upper = q < kSmallTail ? beta_small_lower_tail(point.mirrored(), slope / point.b)
                                        : beta_tails(point, prefix).upper;
    return {false, log_ratio_of(q, upper), -slope / upper};
}

/// e^s - 1; a short step without a call.
double growth(double s) {
    if (std::fabs(s) > 0.0156) return std::expm1(std::clamp(s, -40.0, 40.0));
    const double s2 = s * s;
    return s + s2 * ((0.5 + s * (1.0 / 6)) +
                     s2 * ((1.0 / 24 + s * (1.0 / 120)) + s2 * (1.0 / 720 + s * (1.0 / 5040))));
}

/// A quantile of F, and the same as one of the beta distribution.
struct Quantile {
    double f, x;
};

/// The point of the beta distribution at any f, roughly: its last digits may be lost.
double x_at(double f, double a, double b) {
    const double odds = f * (a / b);
    return odds < 1e300 ? odds / (1 + odds) : 1;
}

/// Solves P(F <= f) = p, 1 - p = q, from the start f.
Quantile solve(double a, double b, double p, double q, double f) {
    const double variance = 1 / a + 1 / b;  // of log F, about
    f = std::clamp(f, kSmallestF, kLargestF);
    if (variance < kNormalVariance) return {f, x_at(f, a, b)};
    double low = kSmallestF / 2, high = 2 * kLargestF;  // bracket of the solution
    for (int i = 0; i < kMaxIterations; ++i) {
        count_step();
        const BetaPoint point = point_at(f, a, b);
        const Comparison at = compare(point, p, q);
        (at.is_below() ? low : high) = f;
        if (low >= kLargestF || high <= kSmallestF) break;
        const double newton = at.log_ratio / at.m;
        const double c2 = 0.5 * (-point.deviation - at.m);
        const bool near = std::fabs(c2 * newton) < 0.1 && newton * newton < 0.04 * std::min(1.0, variance);
        const Step step = near ? long_step(newton, point, at.m)
                               : Step{newton / std::clamp(1 + c2 * newton, 0.5, 2.0), kFarOff};
        const double change = growth(step.size), next = std::clamp(f + f * change, kSmallestF, kLargestF);
        if (step.error < kRounding || std::fabs(step.size) < kRounding) {
            const double moved = point.x * point.y * change / (1 + point.x * change);
            return {next, point.x < point.y ? point.x + moved : 1 - (point.y - moved)};
        }
        // A step out of the bracket is no step, nor is that of a tail that underflowed.
        f = next > low && next < high ? next : std::sqrt(low) * std::sqrt(high);
    }
    return {f, x_at(f, a, b)};
}

/// f, or the limit where the iteration ended at the end of its range.
double limited(double f) {
    if (f >= kLargestF) return std::numeric_limits<double>::infinity();
    return f <= kSmallestF ? 0 : f;
}

/// About the quantile of a gamma variable of shape a that belongs to the normal quantile z: the Cornish-Fisher
/// expansion (Abramowitz and Stegun 26.4.11 and 26.7.2) in the upper half, the cube of a normal one in the lower.
double gamma_start(double a, double z) {
    const double z2 = z * z, r = 1 / std::sqrt(a);
    if (z < 0) {
        const double cube_root = 1 - r * r / 9 + z * r / 3;
        return a * cube_root * cube_root * cube_root;
    }
    return a + z / r + (z2 - 1) / 3 +
           r * (z * (z2 - 7) / 36 - r * ((6 * z2 + 14) * z2 - 32) / 1620 +
                r * r * z * ((9 * z2 + 256) * z2 - 433) / 38880);
}

/// About the odds x / (1 - x) of a beta variable with a < b. Its -log(1 - x) is nearly a gamma variable of shape a
/// over b + (a - 1) / 2: M. E. Wise (1950), The incomplete beta function as a contour integral and a quickly
/// converging series for its inverse, Biometrika 37, 208-218. Zero where that is too far off.
double gamma_like_odds(double a, double b, double z) {
    const double N = b + 0.5 * (a - 1), g = gamma_start(a, z);
    const double u = g / N * (1 + (a - 1) / (24 * N * N) * (g + a + 1));
    return g > 0 && u < 0.6 ? (u < 1e-5 ? u : std::exp(u) - 1) : 0;
}

/// A start for F: from the normal quantile, or the power law of the nearer end.
double f_start(double a, double b, double p, double q) {
    if (a > 0.7 && b > 0.7) {
        const double z = p < q ? rough_normal_quantile(p) : -rough_normal_quantile(q);
        // Of two large parameters the gamma-like start may be many standard deviations off, though no more of log F.
        if (const double odds = a < std::min(b, kLargeShape) ? gamma_like_odds(a, b, z) : 0; odds > 0)
            return odds * (b / a);
        if (const double odds = b < std::min(a, kLargeShape) ? gamma_like_odds(b, a, -z) : 0; odds > 0)
            return b / a / odds;
        // Abramowitz and Stegun 26.5.22
        const double ra = 1 / (2 * a - 1), rb = 1 / (2 * b - 1), h = 2 / (ra + rb), l = (z * z - 3) / 6;
        if (h + l > 0) {
            const double w = z * std::sqrt(h + l) / h - (ra - rb) * (l + 5.0 / 6 - 2 / (3 * h));
            if (std::fabs(w) < 20) return std::exp(2 * w);
        }
    }
    const double lb = log_beta(a, b), scale = std::log(b / a);
    // log odds at which the power of x reaches p, and that of y reaches q
    const double low = (std::log(p) + std::log(a) + lb) / a, high = -(std::log(q) + std::log(b) + lb) / b;
    const double at = low < -1 && (p < q || !(high > 1)) ? low : high > 1 ? high : low < -1 ? low : -scale;
    return std::exp(std::clamp(at + scale, -800.0, 800.0));
}

/// The quantile of p, 1 - p = q, for any parameters.
Quantile quantile(double a, double b, double p, double q) {
    a = std::clamp(a, kTinyParameter, kHugeParameter);
    b = std::clamp(b, kTinyParameter, kHugeParameter);
    // With a = 1 the upper tail is (1 - x)^b, with b = 1 the lower one x^a.
    if (a == 1) {
        const double f = b * std::expm1(-(p < q ? std::log1p(-p) : std::log(q)) / b);
        return {limited(f), x_at(f, a, b)};
    }
    if (b == 1) {
        const double f = 1 / (a * std::expm1(-(q < p ? std::log1p(-q) : std::log(p)) / a));
        return {limited(f), x_at(f, a, b)};
    }
    const Quantile solution = solve(a, b, p, q, f_start(a, b, p, q));
    const double f = limited(solution.f);
    return {f, f > 0 && f < std::numeric_limits<double>::infinity() ? solution.x : x_at(f, a, b)};
}

/// t that belongs to the normal quantile z, by the expansion of student_table.h.
double expanded_t(double z, double df) {
    const double a = df - 0.5, e = 1 / (a * a), z2 = z * z;
    const double b1 = polynomial(kStudent1, z2), b2 = polynomial(kStudent2, z2),
                 b3 = polynomial(kStudent3, z2);
    double rest = 0;
    if (df > 12) {  // else the further terms grow again
        const double b4 = polynomial(kStudent4, z2), b5 = polynomial(kStudent5, z2);
        rest = e * (b4 + e * (b5 + e * polynomial(kStudent6, z2)));
    }
    const double w = z + z * (e * (b1 + e * (b2 + e * (b3 + rest))));
    return std::sqrt(df * std::expm1(w * w / a));
}

/// t with P(T > t) = q, q < 1/2.
double upper_t_quantile(double q, double df) {
    df = std::max(df, 2 * kTinyParameter);
    if (df > kNormalDf) return -normal_quantile(q);
    if (df == 1) return 1 / std::tan(std::numbers::pi * q);
    const double z = -normal_quantile(q), z2 = z * z;
    if (df > 24 + 1.5 * z2) return expanded_t(z, df);
    double start = z;
    if (df >= 3 && z2 < 0.7 * df + 2) {
        start = expanded_t(z, df);
    } else {  // the power law of the tail, in w = df / (df + t^2)
        const double log_w = (std::log(q * df) + log_beta(0.5, 0.5 * df)) * 2 / df, w = std::exp(log_w);
        if (w < 0.99)
            start = w > 1e-280 ? std::sqrt(df * (1 - w) / w) : std::sqrt(df) * std::exp(-0.5 * log_w);
    }
    start = std::clamp(start, 1e-150, 1e150);
    return std::sqrt(limited(solve(0.5, 0.5 * df, 1 - 2 * q, 2 * q, start * start).f));
}

}  // namespace

double f_quantile(double p, double df1, double df2) {
    const double q = 1 - p;
    // With one degree of freedom F is the square of a t variable, or its inverse.
    if (df1 == 1 && q < 0.9999) {
        const double t = upper_t_quantile(0.5 * q, df2);
        return t * t;
    }
    if (df2 == 1 && p < 0.9999 && p > std::numeric_limits<double>::min()) {
        const double t = upper_t_quantile(0.5 * p, df1);
        return 1 / (t * t);
    }
    return quantile(0.5 * df1, 0.5 * df2, p, q).f;
}

double t_quantile(double p, double df) {
    if (p == 0.5) return 0;
    return p < 0.5 ? -upper_t_quantile(p, df) : upper_t_quantile(1 - p, df);
}

double beta_quantile(double p, double a, double b) {
    const Quantile solution = quantile(a, b, p, 1 - p);
    const auto is_limited = [](double shape) { return shape < kTinyParameter || shape > kHugeParameter; };
    return is_limited(a) || is_limited(b) ? x_at(solution.f, a, b) : solution.x;
}

}  // namespace orvmath
