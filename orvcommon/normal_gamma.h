// The normal distribution and functions of the gamma function.
#pragma once

namespace orvmath {

/// Standard normal distribution function; relative accuracy in the lower tail.
double normal_cdf(double x);

/// Standard normal quantile, 0 < p < 1.
double normal_quantile(double p);

/// log |Gamma(x)|, infinite at the poles.
double log_gamma(double x);

/// The Stirling error log Gamma(x + 1) - (x + 1/2) log x + x - log sqrt(2 pi), x > 0 (Loader 2000).
double stirling_error(double x);

/// Poisson weight e^-m m^x / Gamma(x + 1), x >= 0, by Stirling error and deviance (Loader 2000).
double poisson_weight(double x, double m);

/// Gamma(z + 1/2) / Gamma(z), z > 0.
double gamma_half_ratio(double z);

}  // namespace orvmath
