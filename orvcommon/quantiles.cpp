// All three quantiles solve for s = log f, where f = (b / a) x / (1 - x) and x is beta distributed: Newton's
// method with two further terms of the inverse series on log(tail probability). Both tails are log-concave
// in s, so the iteration converges from any start, and a good start leaves one or two evaluations.
#include "orvcommon/quantiles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "orvcommon/beta.h"
#include "orvcommon/normal_gamma.h"

namespace orvmath {
namespace {

// Reached only where a shape parameter below 1e-10 leaves a tail without the accuracy to converge with.
constexpr int kMaxIterations = 40;
constexpr double kMaxLog = 700;     // |log f| is kept where exp neither overflows nor underflows
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

/// The point of the beta distribution at f = e^s.
BetaPoint point_at_log(double s, double a, double b) {
    const double odds = a / b * std::exp(s);
    const double y = odds > 1e300 ? std::exp(-s) * (b / a) : 1 / (1 + odds);
    const double x = odds > 1e300 ? 1 : std::max(odds * y, std::numeric_limits<double>::denorm_min());
    return {a, b, x, y, a * std::expm1(s) * y};
}

/// Solves P(log F <= s) = p, 1 - p = q, from the start s.
double solve_log_f(double a, double b, double p, double q, double s) {
    const double spread = std::sqrt(1 / a + 1 / b);  // of log F, about
    if (spread < 1e-17) return 0;
    const bool lower = p < q;
    s = std::clamp(s, -kMaxLog, kMaxLog);
    double low = -kMaxLog - 1, high = kMaxLog + 1;  // bracket of the solution
    for (int i = 0; i < kMaxIterations; ++i) {
        count_step();
        const BetaPoint point = point_at_log(s, a, b);
        const double prefix = beta_prefix(point);
        const Tails tails = beta_tails(point, prefix);
        const double tail = lower ? tails.lower : tails.upper;
        const bool below = lower ? tail < p : tail > q;
        (below ? low : high) = s;
        if (low >= kMaxLog || high <= -kMaxLog) break;
        // L(s) = log(tail / target): slope, half the log derivative of the slope, and one further term
        const double slope = prefix * a / tail * (lower ? 1 : -1);
        const double newton = -std::log(tail / (lower ? p : q)) / slope;
        const double bend = -point.deviation - slope, c2 = 0.5 * bend;
        const double c3 = (bend * bend - (a + b) * point.x * point.y - slope * bend) / 6;
        const double step = std::fabs(c2 * newton) < 0.2
                                ? newton * (1 - newton * (c2 - newton * (2 * c2 * c2 - c3)))
                                : newton / std::clamp(1 + c2 * newton, 0.5, 2.0);
        const double next = std::clamp(s + std::clamp(step, -40.0, 40.0), -kMaxLog, kMaxLog);
        // The convergence is of fourth order: after a step this small nothing is left to do.
        if (std::fabs(step) < 1e-4 * std::min(1.0, spread) || std::fabs(step) <= 1e-16 * std::fabs(s))
            return next;
        // A step out of the bracket is no step, nor is that of a tail that underflowed.
        s = next > low && next < high ? next : low + (high - low) / 2;
    }
    return s;
}

/// exp(s), or the limit where the iteration ended at the end of its range.
double exp_or_limit(double s) {
    if (s >= kMaxLog) return std::numeric_limits<double>::infinity();
    return s <= -kMaxLog ? 0 : std::exp(s);
}

/// A start for log F: from the normal deviate (Abramowitz and Stegun 26.5.22), or the power law of the
/// nearer end.
double log_f_start(double a, double b, double p, double q) {
    if (a > 0.7 && b > 0.7) {
        const double z = p < q ? normal_quantile(p) : -normal_quantile(q);
        const double ra = 1 / (2 * a - 1), rb = 1 / (2 * b - 1), h = 2 / (ra + rb), l = (z * z - 3) / 6;
        if (h + l > 0) {
            const double w = z * std::sqrt(h + l) / h - (ra - rb) * (l + 5.0 / 6 - 2 / (3 * h));
            if (std::fabs(w) < 20) return 2 * w;
        }
    }
    const double lb = log_beta(a, b), scale = std::log(b / a);
    // log odds at which the power of x reaches p, and that of y reaches q
    const double low = (std::log(p) + std::log(a) + lb) / a, high = -(std::log(q) + std::log(b) + lb) / b;
    if (low < -1 && (p < q || !(high > 1))) return low + scale;
    if (high > 1) return high + scale;
    return low < -1 ? low + scale : 0;
}

/// log F with P(log F <= s) = p, 1 - p = q, for any parameters.
double log_f_quantile(double a, double b, double p, double q) {
    a = std::clamp(a, kTinyParameter, kHugeParameter);
    b = std::clamp(b, kTinyParameter, kHugeParameter);
    return solve_log_f(a, b, p, q, log_f_start(a, b, p, q));
}

/// t with P(T > t) = q, q < 1/2.
double upper_t_quantile(double q, double df) {
    df = std::max(df, 2 * kTinyParameter);
    if (df > kNormalDf) return -normal_quantile(q);
    if (df == 1) return 1 / std::tan(std::numbers::pi * q);
    const double z = -normal_quantile(q), z2 = z * z;
    double start = z;
    if (df >= 3 && z2 < 0.7 * df + 2) {  // Cornish-Fisher expansion, Abramowitz and Stegun 26.7.5
        const double w = 1 / df;
        const double g1 = (z2 + 1) / 4, g2 = ((5 * z2 + 16) * z2 + 3) / 96;
        const double g3 = (((3 * z2 + 19) * z2 + 17) * z2 - 15) / 384;
        const double g4 = ((((79 * z2 + 776) * z2 + 1482) * z2 - 1920) * z2 - 945) / 92160;
        start = z * (1 + w * (g1 + w * (g2 + w * (g3 + w * g4))));
    } else {  // the power law of the tail, in w = df / (df + t^2)
        const double log_w = (std::log(q * df) + log_beta(0.5, 0.5 * df)) * 2 / df, w = std::exp(log_w);
        if (w < 0.99)
            start = w > 1e-280 ? std::sqrt(df * (1 - w) / w) : std::sqrt(df) * std::exp(-0.5 * log_w);
    }
    start = std::max(start, 1e-300);
    const double s = solve_log_f(0.5, 0.5 * df, 1 - 2 * q, 2 * q, 2 * std::log(start));
    return s >= kMaxLog ? std::numeric_limits<double>::infinity() : std::exp(0.5 * s);
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
    return exp_or_limit(log_f_quantile(0.5 * df1, 0.5 * df2, p, q));
}

double t_quantile(double p, double df) {
    if (p == 0.5) return 0;
    return p < 0.5 ? -upper_t_quantile(p, df) : upper_t_quantile(1 - p, df);
}

double beta_quantile(double p, double a, double b) {
    const double odds = exp_or_limit(log_f_quantile(a, b, p, 1 - p)) * (a / b);
    return odds < 1e300 ? odds / (1 + odds) : 1;
}

}  // namespace orvmath
