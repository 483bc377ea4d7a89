#!/usr/bin/env python3
"""Writes fixed_power.csv, random_power.csv, random_probability.csv,
random_probability_long.csv and size.csv beside itself.

Powers of the F test of a multiple regression to 40 digits. Fixed predictors: the noncentral F distribution.
Random predictors: the negative binomial mixture of beta distributions, summed term by term.
"""

import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from high_precision import beta_cdf, exp, f_quantile, f_test_power, log, loggamma, mpf  # noqa: E402
from tables import write_table  # noqa: E402


def probability(x, e, q, dfe):
    """P(sample squared partial multiple correlation <= x): sum of w_k I_x(q/2 + k, dfe/2)."""
    x, e, b, d = mpf(x), mpf(e), mpf(q) / 2, mpf(dfe) / 2
    a = b + d
    weights = [(1 - e) ** a]
    while e > 0 and (len(weights) < a * e / (1 - e) or weights[-1] > mpf(10) ** -45):
        k = len(weights)
        weights.append(weights[-1] * e * (a + k - 1) / k)
    # I_x(b + k, d) = I_x(b + k + 1, d) + c_k, from the far end downwards: no cancellation.
    c = [x**b * (1 - x) ** d * exp(loggamma(a) - loggamma(b + 1) - loggamma(d))]
    for k in range(1, len(weights)):
        c.append(c[-1] * x * (a + k - 1) / (b + k))
    tail, total = beta_cdf(x, b + len(weights), d), mpf(0)
    for w, term in zip(reversed(weights), reversed(c)):
        tail += term
        total += w * tail
    return total


def random_power(e, q, dfe, alpha):
    F = f_quantile(1 - alpha, q, dfe)
    return 1 - probability(q * F / (dfe + q * F), e, q, dfe)


def effect(r2_full, r2_reduced):
    if r2_reduced == 0:
        return mpf(r2_full) ** 2
    return (mpf(r2_full) - mpf(r2_reduced)) / (1 - mpf(r2_reduced))


def fixed_power(e, N, q, dfe, alpha):
    return f_test_power(alpha, mpf(q), mpf(dfe), N * e / (1 - e))


# Multiple correlations (no reduced model) and pairs of squared ones.
EFFECTS = [(0.0, 0.0), (0.03, 0.0), (-0.1, 0.0), (0.3, 0.0), (0.55, 0.0), (0.7, 0.0), (0.9, 0.0), (0.97, 0.0),
           (0.25, 0.25), (0.26, 0.25), (0.5, 0.1), (0.4, 0.2), (0.955, 0.1)]
DESIGNS = [(10, 1, 1), (10, 4, 2), (12, 8, 8), (25, 3, 1), (40, 30, 30), (40, 12, 5), (100, 10, 10), (130, 30, 3),
           (500, 6, 2), (500, 30, 30), (2000, 5, 5), (5000, 30, 30), (5000, 3, 1)]

fixed, random = [], []
for i, (N, p, q) in enumerate(DESIGNS):
    for j, (full, reduced) in enumerate(EFFECTS):
        intercept = (i + j) % 2
        alpha = (0.05, 0.01, 0.2)[(i + 2 * j) % 3]
        e, dfe = effect(full, reduced), N - intercept - p
        if dfe < 1:
            continue
        row = [intercept, N, p, q, full, reduced, alpha]
        fixed.append(row + [float(fixed_power(e, N, q, dfe, alpha))])
        if N * e < 4000:  # beyond, the power is 1 to hundreds of digits
            random.append(row + [float(random_power(e, q, dfe, alpha))])
HEADING = ["intercept", "N", "p", "q", "R2full", "R2red", "alpha", "power"]
write_table(HERE / "fixed_power.csv", HEADING, fixed)
write_table(HERE / "random_power.csv", HEADING, random)

probabilities = []
for q, dfe, e, x in [(1, 1, 0.5, 0.5), (1, 8, 0.0, 0.3), (2, 7, 0.25, 0.9), (5, 30, 0.25, 0.3), (5, 30, 0.95, 0.9),
                     (5, 30, 0.95, 0.2), (3, 200, 0.5, 0.5), (3, 200, 0.5, 0.1), (10, 490, 0.3, 0.33),
                     (30, 969, 0.9, 0.9), (30, 4969, 0.5, 0.49), (30, 4969, 0.95, 0.95), (1, 4998, 0.95, 0.01),
                     (1, 4998, 0.001, 0.001), (1, 4998, 0.001, 1e-6), (2, 1.5, 0.6, 0.999), (1, 1, 0.99, 0.999999),
                     (4, 1e5, 1e-4, 2e-4), (2, 1e7, 1e-6, 1e-6), (7, 12.25, 0.4, 0.05)]:
    probabilities.append([q, dfe, e, x, float(log(probability(x, e, q, dfe)))])
write_table(HERE / "random_probability.csv", ["q", "dfe", "e", "x", "log_probability"], probabilities)

# Sums of several hundred thousand terms.
long_sums = []
for q, dfe, e, x in [(1, 1, 0.9999, 1 - 1e-9), (3, 2, 0.9998, 1 - 1e-7), (2, 12, 0.9999, 0.999995),
                     (30, 170, 0.9995, 0.99957), (1, 1, 0.9999, 0.9999)]:
    long_sums.append([q, dfe, e, x, float(probability(x, e, q, dfe))])
write_table(HERE / "random_probability_long.csv", ["q", "dfe", "e", "x", "probability"], long_sums)

# Sample sizes that reach a power, to 1e-9, by bisection on exact powers: random, intercept, target, p, q, R2full,
# R2red, alpha, N.
sizes = []
for flag, intercept, target, p, q, full, reduced, alpha in [
    (0, 1, 0.8, 5, 5, 0.4, 0.0, 0.05), (1, 1, 0.8, 5, 5, 0.4, 0.0, 0.05), (0, 0, 0.9, 4, 2, 0.3, 0.2, 0.01),
    (1, 0, 0.9, 4, 2, 0.3, 0.2, 0.01), (0, 1, 0.95, 1, 1, 0.1, 0.0, 0.05), (1, 1, 0.95, 1, 1, 0.1, 0.0, 0.05),
    (1, 1, 0.8, 30, 3, 0.6, 0.5, 0.05),
]:
    e = effect(full, reduced)

    def power(N):
        dfe = N - intercept - p
        return random_power(e, q, dfe, alpha) if flag else fixed_power(e, N, q, dfe, alpha)

    low, high = mpf(p + 1 + intercept), mpf(p + 400)
    while power(high) < target:
        low, high = high, 2 * high
    while high - low > mpf(10) ** -9:
        middle = (low + high) / 2
        low, high = (middle, high) if power(middle) < target else (low, middle)
    sizes.append([flag, intercept, target, p, q, full, reduced, alpha, float(high)])
write_table(HERE / "size.csv", ["random", "intercept", "target", "p", "q", "R2full", "R2red", "alpha", "N"], sizes)
