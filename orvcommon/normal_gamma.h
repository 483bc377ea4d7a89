// The normal distribution and functions of the gamma function.
//
// Stirling error and deviance keep the large terms of log Gamma from cancelling: C. Loader (2000), Fast and
// accurate computation of binomial probabilities.
#pragma once

namespace orvmath {

/// Standard normal distribution function; relative accuracy in the lower tail.
double normal_cdf(double x);

/// Standard normal quantile, 0 < p < 1.
double normal_quantile(double p);

/// The same without the last rounding errors taken out, for a start.
double rough_normal_quantile(double p);

/// log |Gamma(x)|, infinite at the poles.
double log_gamma(double x);

/// The Stirling error log Gamma(x + 1) - (x + 1/2) log x + x - log sqrt(2 pi) for x >= 1/2.
inline double stirling_error(double x);

/// The same for x below 16, by polynomials.
double stirling_error_below_16(double x);

/// Gamma(x + 1) e^x / x^x = sqrt(2 pi square) e^log for x > 0, with no large logarithm for a small x.
struct GammaFactor {
    double square, log;
};
inline GammaFactor gamma_factor(double x);
GammaFactor gamma_factor_below_half(double x);

/// Poisson weight e^-m m^x / Gamma(x + 1), x >= 0, by Stirling error and deviance.
double poisson_weight(double x, double m);

/// Gamma(z + 1/2) / Gamma(z), z > 0: F. G. Tricomi and A. Erdelyi (1951), Pacific J. Math. 1, 133-142.
double gamma_half_ratio(double z);

inline double stirling_error(double x) {
    if (!(x >= 16)) return stirling_error_below_16(x);
    const double w = 1 / x, q = w * w, q2 = q * q;  // Stirling's series, Abramowitz and Stegun 6.1.41
    return w * ((1.0 / 12 - q * (1.0 / 360)) +
                q2 * ((1.0 / 1260 - q * (1.0 / 1680)) + q2 * (1.0 / 1188 - q * (691.0 / 360360))));
}

inline GammaFactor gamma_factor(double x) {
    return x >= 0.5 ? GammaFactor{x, stirling_error(x)} : gamma_factor_below_half(x);
}

}  // namespace orvmath
