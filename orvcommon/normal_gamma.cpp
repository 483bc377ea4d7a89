#include "orvcommon/normal_gamma.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "orvcommon/numeric.h"
#include "orvcommon/stirling_table.h"

namespace orvmath {
namespace {

/// Rational approximation PPND16 of the normal quantile, q = p - 1/2 and tail = min(p, 1 - p): M. J. Wichura
/// (1988), Algorithm AS 241, Applied Statistics 37, 477-484.
double wichura_quantile(double q, double tail) {
    static constexpr double kA[] = {3.3871328727963666080e0, 1.3314166789178437745e2, 1.9715909503065514427e3,
                                    1.3731693765509461125e4, 4.5921953931549871457e4, 6.7265770927008700853e4,
                                    3.3430575583588128105e4, 2.5090809287301226727e3};
    static constexpr double kB[] = {1.0,
                                    4.2313330701600911252e1,
                                    6.8718700749205790830e2,
                                    5.3941960214247511077e3,
                                    2.1213794301586595867e4,
                                    3.9307895800092710610e4,
                                    2.8729085735721942674e4,
                                    5.2264952788528545610e3};
    static constexpr double kC[] = {1.42343711074968357734e0,  4.63033784615654529590e0,
                                    5.76949722146069140550e0,  3.64784832476320460504e0,
                                    1.27045825245236838258e0,  2.41780725177450611770e-1,
                                    2.27238449892691845833e-2, 7.74545014278341407640e-4};
    static constexpr double kD[] = {1.0,
                                    2.05319162663775882187e0,
                                    1.67638483018380384940e0,
                                    6.89767334985100004550e-1,
                                    1.48103976427480074590e-1,
                                    1.51986665636164571966e-2,
                                    5.47593808499534494600e-4,
                                    1.05075007164441684324e-9};
    static constexpr double kE[] = {6.65790464350110377720e0,  5.46378491116411436990e0,
                                    1.78482653991729133580e0,  2.96560571828504891230e-1,
                                    2.65321895265761230930e-2, 1.24266094738807843860e-3,
                                    2.71155556874348757815e-5, 2.01033439929228813265e-7};
    static constexpr double kF[] = {1.0,
                                    5.99832206555887937690e-1,
                                    1.36929880922735805310e-1,
                                    1.48753612908506148525e-2,
                                    7.86869131145613259100e-4,
                                    1.84631831751005468180e-5,
                                    1.42151175831644588870e-7,
                                    2.04426310338993978564e-15};
    if (std::fabs(q) <= 0.425) {
        const double r = 0.180625 - q * q;
        return q * polynomial(kA, r) / polynomial(kB, r);
    }
    const double r = std::sqrt(-std::log(tail));
    const double z = r <= 5 ? polynomial(kC, r - 1.6) / polynomial(kD, r - 1.6)
                            : polynomial(kE, r - 5) / polynomial(kF, r - 5);
    return std::copysign(z, q);
}

}  // namespace

double normal_cdf(double x) {
    if (x < -39) return 0;  // below the smallest double
    const double y = -x / std::numbers::sqrt2, v = 0.5 * std::erfc(y);
    if (x > -5) return v;
    // Far out the rounding of y is magnified: correct for it to first order by the logarithmic derivative of
    // erfc, about -(2y + 1/y).
    constexpr double kSqrtHalf = 0.70710678118654757, kSqrtHalfLow = -4.8336466567264567e-17;
    const TwoDoubles exact = two_product(-x, kSqrtHalf);
    const double error = (exact.high - y) + (exact.low - x * kSqrtHalfLow);
    return v - v * error * (2 * y + 1 / y);
}

double rough_normal_quantile(double p) {
    return wichura_quantile(p - 0.5, p < 0.5 ? p : 1 - p);
}

double normal_quantile(double p) {
    const double q = p - 0.5, tail = p < 0.5 ? p : 1 - p;
    const double z = wichura_quantile(q, tail);
    if (std::fabs(q) <= 0.425 || tail < std::numeric_limits<double>::min()) return z;
    // In the tails one step of Halley's method on the distribution function takes out the last rounding
    // errors.
    const double t = -std::fabs(z), density = kInvSqrt2Pi * std::exp(-0.5 * t * t);
    const double e = (normal_cdf(t) - tail) / density;
    return std::copysign(t - e / (1 + 0.5 * t * e), q);
}

double log_gamma(double x) {
    int sign;  // the reentrant form: std::lgamma would write a global
    return lgamma_r(x, &sign);
}

double stirling_error_below_16(double x) {
    const int row = x < 1 ? 0 : x < 2 ? 1 : x < 4 ? 2 : x < 8 ? 3 : 4;
    const double z = (2 << row) / x - 3;  // from 1 at the lower end to -1 at the upper
    const double z2 = z * z, z4 = z2 * z2;
    const double* c = kStirlingError[row];
    const double low =
        (c[0] + z * c[1]) + z2 * (c[2] + z * c[3]) + z4 * ((c[4] + z * c[5]) + z2 * (c[6] + z * c[7]));
    const double high =
        (c[8] + z * c[9]) + z2 * (c[10] + z * c[11]) + z4 * ((c[12] + z * c[13]) + z2 * (c[14] + z * c[15]));
    return low + z4 * z4 * high;
}

GammaFactor gamma_factor_below_half(double x) {
    return {1, log_gamma(1 + x) + x - x * std::log(x) - kLnSqrt2Pi};
}

double poisson_weight(double x, double m) {
    if (x == 0) return std::exp(-m);
    const double u = (m - x) / x;  // far below the mode, 1 + u would lose what m / x is
    const double deviance = u > -0.45 ? log1p_deficit(u) : u - std::log(m / x);
    return std::exp(-stirling_error(x) - x * deviance) * kInvSqrt2Pi / std::sqrt(x);
}

double gamma_half_ratio(double z) {
    // R(z) = R(z + 1) z / (z + 1/2) raises z to where the series converges.
    double numerator = 1, denominator = 1;
    for (; z < 12; z += 1) {
        numerator *= z;
        denominator *= z + 0.5;
    }
    const double w = z - 0.25;
    return std::sqrt(w) * polynomial(kHalfRatio, 1 / (w * w)) * (numerator / denominator);
}

}  // namespace orvmath
