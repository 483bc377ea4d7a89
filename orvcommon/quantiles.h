// Quantiles of the central F, t and beta distributions.
#pragma once

namespace orvmath {

/// Quantile of p in (0, 1) of the F distribution with df1, df2 > 0.
double f_quantile(double p, double df1, double df2);

/// Quantile of p in (0, 1) of the t distribution with df > 0.
double t_quantile(double p, double df);

/// Quantile of p in (0, 1) of the beta distribution with a, b > 0.
double beta_quantile(double p, double a, double b);

}  // namespace orvmath
