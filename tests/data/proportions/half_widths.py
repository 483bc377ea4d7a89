#!/usr/bin/env python3
"""Writes one_half_width.csv, one_half_width_size.csv, paired_half_width.csv and
paired_half_width_size.csv beside itself.

Half-widths of confidence intervals for one proportion and for the difference of paired proportions, and the sample
sizes that give a half-width, to 40 digits. Limits that are defined by an equation (score, beta quantiles) are
found as its roots.
"""

import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from high_precision import beta_cdf, bisect, exp, log, mpf, ncdf  # noqa: E402
from mpmath import findroot, sqrt  # noqa: E402
from tables import write_table  # noqa: E402


def z_quantile(alpha):
    return bisect(lambda z: ncdf(z) - (1 - mpf(alpha) / 2), mpf(0), mpf(10))


def beta_quantile(p, a, b):
    if a == 0:
        return mpf(0)
    if b == 0:
        return mpf(1)
    return 1 / (1 + exp(-bisect(lambda s: beta_cdf(1 / (1 + exp(-s)), a, b) - p, mpf(-40), mpf(40))))


def expit(u):
    return 1 / (1 + exp(-u))


def score_limit(N, p, z, correction, side):
    """Root of |p - q| - correction / (2 N) = z sqrt(q (1 - q) / N), the upper or the lower one: a quadratic in q."""
    c = p + side * (mpf(1) / (2 * N) if correction else 0)
    # (c - q)^2 = z^2 q (1 - q) / N
    a2, a1, a0 = 1 + z**2 / N, -(2 * c + z**2 / N), c**2
    return (-a1 + side * sqrt(a1**2 - 4 * a2 * a0)) / (2 * a2)


def one_sample(N, p, alpha, method, correction):
    N, p, alpha = mpf(N), mpf(p), mpf(alpha)
    z, x = z_quantile(alpha), p * N
    f = N - x
    if method == 0:
        return z * sqrt(p * (1 - p) / N) + (mpf(1) / 2 / N if correction else 0)
    if method in (1, 2):
        if method == 1:
            center = log((x + mpf(1) / 2) / (f + mpf(1) / 2))
            spread = z * sqrt((N + 1) * (N + 2) / (N * (x + 1) * (f + 1)))
        else:
            center, spread = log(p / (1 - p)), z / sqrt(N * p * (1 - p))
        lower, upper = expit(center - spread), expit(center + spread)
    elif method == 3:
        lower, upper = beta_quantile(alpha / 2, x, f + 1), beta_quantile(1 - alpha / 2, x + 1, f)
    elif method == 4:
        half = mpf(1) / 2
        lower, upper = (beta_quantile(q, x + half, f + half) for q in (alpha / 2, 1 - alpha / 2))
    elif method == 5:
        lower, upper = (score_limit(N, p, z, correction, side) for side in (-1, 1))
    else:
        n = N + z**2
        center = (x + z**2 / 2) / n
        return z * sqrt(center * (1 - center) / n)
    return (upper - lower) / 2


def related(N, p1, p2, alpha, method, correction):
    N, p1, p2 = mpf(N), mpf(p1), mpf(p2)
    added = (0, 1, 2)[method]
    n = N if method == 0 else N + 2
    discordant, difference = ((p1 + p2) * N + added) / n, (p1 - p2) * N / n
    correction = 1 / N if correction and method == 0 else 0
    return z_quantile(alpha) * sqrt((discordant - difference**2) / n) + correction


def size(half_width, target):
    """The N at which half_width(N) falls to the target."""
    high = mpf(2)
    while half_width(high) > target:
        high *= 2
    return findroot(lambda N: half_width(N) - target, (high / 2, high), solver="ridder", tol=mpf(10) ** -30)


def main():
    # The last argument of a case: whether the correction makes a difference to the method.
    one_sample_methods = [(0, 0), (0, 1), (1, 0), (2, 0), (3, 0), (4, 0), (5, 0), (5, 1), (6, 0)]
    write_table(HERE / "one_half_width.csv", ["N", "p", "alpha", "method", "correction", "half_width"],
                [(*case, *method, one_sample(*case, *method))
                 for case in [(10, 0.5, 0.05), (25, 0.2, 0.1), (40, 0.625, 0.01), (100, 0.03125, 0.05),
                              (33.5, 0.75, 0.2), (2000, 0.4, 0.001)]
                 for method in one_sample_methods]
                + [(N, p, 0.05, method, 0, one_sample(N, p, 0.05, method, 0))
                   for N in (5, 60) for p in (0, 1) for method in (0, 1, 3, 4, 5, 6)])
    write_table(HERE / "one_half_width_size.csv", ["half_width", "p", "alpha", "method", "correction", "N"],
                [(w, p, alpha, *method, size(lambda N: one_sample(N, p, alpha, *method), mpf(w)))
                 for w, p, alpha in [(0.1, 0.5, 0.05), (0.02, 0.25, 0.1)]
                 for method in one_sample_methods])
    related_methods = [(0, 0), (0, 1), (1, 0), (2, 0)]
    write_table(HERE / "paired_half_width.csv", ["N", "p1", "p2", "alpha", "method", "correction", "half_width"],
                [(*case, *method, related(*case, *method))
                 for case in [(10, 0.25, 0.125, 0.05), (50, 0.1, 0.3, 0.1), (200, 0, 0.05, 0.01), (33.5, 0.5, 0.5, 0.2),
                              (40, 0, 0, 0.05)]
                 for method in related_methods])
    write_table(HERE / "paired_half_width_size.csv", ["half_width", "p1", "p2", "alpha", "method", "correction", "N"],
                [(*case, *method, size(lambda N: related(N, *case[1:], *method), mpf(case[0])))
                 for case in [(0.1, 0.25, 0.125, 0.05), (0.03, 0.1, 0.3, 0.1), (0.01, 0.02, 0.01, 0.05)]
                 for method in related_methods])


main()
