// The binomial and negative binomial distributions.
#pragma once

namespace orvmath {

/// P(X = x), by the gamma function for fractional n and x; 0 <= p <= 1, n >= 0.
double binomial_probability(double x, double n, double p);

/// P(X <= x); correctly rounded where exact arithmetic is affordable, so that exact ties decide as they
/// should.
double binomial_cdf(double x, double n, double p);

/// Largest whole k with P(X <= k) <= prob, -1 when there is none.
double binomial_quantile(double prob, double n, double p);

/// Probability of k failures before success number r.
double negative_binomial_probability(double k, double r, double p);

}  // namespace orvmath
