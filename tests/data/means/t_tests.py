#!/usr/bin/env python3
"""Writes the tables of the t tests beside itself: powers, sample sizes and half-widths to 40 digits.
Takes some minutes.

Critical values are those of the doubles 1 - alpha and 1 - alpha / 2. At alpha = 1e-6 their rounding alone moves a
power by up to 1e-11.
"""

import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from high_precision import (  # noqa: E402
    bisect,
    mpf,
    t_quantile,
    t_test_power_one_sided,
    t_test_power_two_sided,
)
from mpmath import ceil, sqrt  # noqa: E402
from tables import write_table  # noqa: E402


def power(directional, alpha, df, noncentrality):
    if directional:
        return t_test_power_one_sided(alpha, df, abs(noncentrality))
    return t_test_power_two_sided(alpha, df, noncentrality)


def both(alpha, df, noncentrality):
    return [float(power(directional, alpha, df, noncentrality)) for directional in (False, True)]


# ---- The tests: degrees of freedom and noncentrality ----


def one_sample(N, es):
    return mpf(N) - 1, sqrt(mpf(N)) * es


def variance_of_differences(sd1, sd2, corr):
    return mpf(sd1) ** 2 + mpf(sd2) ** 2 - 2 * mpf(corr) * mpf(sd1) * mpf(sd2)


def pooled(N1, N2, es):
    N1, N2 = mpf(N1), mpf(N2)
    return N1 + N2 - 2, es * sqrt(N1 * N2 / (N1 + N2))


def welch(N1, sd1, N2, sd2, diff):
    N1, N2 = mpf(N1), mpf(N2)
    q1, q2 = mpf(sd1) ** 2 / N1, mpf(sd2) ** 2 / N2
    return (q1 + q2) ** 2 / (q1**2 / (N1 - 1) + q2**2 / (N2 - 1)), diff / sqrt(q1 + q2)


def independent(N1, sd1, N2, sd2, diff):
    return pooled(N1, N2, diff / mpf(sd1)) if sd1 == sd2 else welch(N1, sd1, N2, sd2, diff)


# ---- Powers ----

rows = []
for N, es, alpha in [
    (1.25, 0.5, 0.05), (1.5, 3, 0.05), (1.5, -0.25, 0.3), (1.9, 1, 0.01), (2, 0.5, 0.05), (2, 3, 1e-6),
    (2, -3, 0.3), (2, 1e-8, 0.05), (2.25, 1.5, 0.01), (2.75, -2, 0.1), (3, 3, 0.001), (3, 0, 0.05),
    (3.5, 0.8, 0.2), (5, 1, 0.05), (5, -2.5, 1e-6), (7.3, 1.2, 0.01), (10, 0.5, 0.05), (10, 3, 1e-6),
    (12.7, -0.9, 1e-4), (20, 0.6, 0.05), (30, 0.5, 0.05), (30, 1e-12, 0.3), (33.3, -0.35, 0.025),
    (50, 0.8, 1e-6), (64, 0.3, 0.1), (100, 0.2, 0.05), (100, -0.45, 1e-5), (100, 3, 0.05), (1000, -3, 1e-6), (250, 0.2, 0.01),
    (500, -0.1, 0.05), (1000, 0.1, 0.01), (1000, 1e-5, 1e-6), (1234.5, 0.15, 1e-6), (4000, -0.05, 0.3),
    (1e4, 0.03, 0.05), (1e4, 0.06, 1e-6), (65536.5, -0.01, 0.001), (1e5, 0.01, 0.05), (1e5, 0.02, 1e-6),
    (1e6, 0.003, 0.05), (1e6, -0.006, 1e-6), (1e6, 1e-6, 0.3), (1e6, 0, 1e-6),
]:  # fmt: skip
    rows.append([N, es, alpha, *both(alpha, *one_sample(N, mpf(es)))])
write_table(HERE / "one_power.csv", ["N", "es", "alpha", "two_sided", "one_sided"], rows)

rows = []
for N, mean1, sd1, mean2, sd2, corr, alpha in [
    (2, 1, 1, 0, 2, 0.5, 0.05), (1.5, 1, 1, 0, 2, -0.5, 0.3), (10, 10, 2, 12, 3, 0.6, 0.05),
    (25, 5, 2, 5.5, 2, 0.9, 0.01), (25, 5, 2, 5.5, 2, -0.9, 0.01), (40, 100, 15, 107, 15, 0.3, 1e-6),
    (40, 100, 15, 93, 15, 0.3, 1e-6), (15, 3, 2, 1, 1, -1, 0.05), (60, 0.1, 1, 0, 1.5, 1e-9, 0.3),
    (1000, 0.1, 1, 0, 1.5, 0.5, 0.05), (1e6, 0.003, 1, 0, 1, 0.5, 0.001), (30, 0.25, 0.5, 0, 0, 0.7, 0.05),
]:  # fmt: skip
    sdd = mpf(sd1) if sd2 == 0 else sqrt(variance_of_differences(sd1, sd2, corr))
    rows.append([N, mean1, sd1, mean2, sd2, corr, alpha,
                 *both(alpha, *one_sample(N, (mpf(mean1) - mpf(mean2)) / sdd))])  # fmt: skip
write_table(HERE / "paired_power.csv", ["N", "mean1", "sd1", "mean2", "sd2", "corr", "alpha", "two_sided", "one_sided"], rows)

POOLED = [
    (2, 2, 0.5, 0.05), (1.5, 1.25, 3, 0.05), (1.25, 1.5, -1, 0.3), (2, 3, -3, 1e-6), (5, 5, 1, 0.05),
    (10, 20, 0.8, 0.01), (20, 10, -0.8, 0.01), (30, 30, 0.5, 0.05), (64, 64, 0.5, 0.05), (50, 25.5, 1.5, 1e-6),
    (100, 3, 1, 0.1), (200, 400, 0.2, 0.05), (1000, 1000, 1e-7, 0.05), (1e4, 5e3, 0.05, 0.001),
    (5e5, 5e5, 0.004, 0.05), (9e5, 100, 0.3, 1e-6), (7, 9, 0, 0.3), (12, 12, 3, 1e-6),
]  # fmt: skip
rows = [[*row, *both(row[3], *pooled(row[0], row[1], mpf(row[2])))] for row in POOLED]
write_table(HERE / "two_pooled_power.csv", ["N1", "N2", "es", "alpha", "two_sided", "one_sided"], rows)

WELCH = [
    (2, 2, 1, 2, 1, 0.05), (1.25, 1.5, 1, 3, 4, 0.05), (1.5, 1.1, 2, 1, -3, 0.3), (2, 5, 1, 10, 3, 0.01),
    (5, 2, 1, 10, -3, 0.01), (10, 10, 1, 1, 1, 0.05), (10, 30, 1, 1, 1, 0.05), (10, 30, 3, 1, 2, 0.05),
    (10, 30, 1, 3, 2, 0.05), (30, 25, 2.5, 1.5, -1.2, 1e-6), (100, 150, 15, 20, 6, 0.01),
    (64, 64, 1, 1.000001, 0.5, 0.05), (1000, 10, 1, 0.01, 0.1, 0.1), (1e6, 1e5, 1, 2, 0.02, 0.001),
    (4e5, 6e5, 1, 1, 0.008, 1e-6), (20.5, 33.25, 7, 5, 4, 0.2), (40, 40, 1, 2, 0, 0.05), (15, 15, 1e-3, 1e3, 700, 0.05),
]  # fmt: skip
rows = [[*row, *both(row[5], *welch(*[row[i] for i in (0, 2, 1, 3)], mpf(row[4])))] for row in WELCH]
write_table(HERE / "two_welch_power.csv", ["N1", "N2", "sd1", "sd2", "diff", "alpha", "two_sided", "one_sided"], rows)


# ---- Sample sizes ----


def sample_size(target, power_at):
    """The real N at which the power is the target, found by bisection."""
    low, high = mpf(2), mpf(400)
    while power_at(high) < target:
        low, high = high, 2 * high
    return bisect(lambda N: power_at(N) - target, low, high)


# Not rounded: the power just below the answer, and at a point just above it. The interval is that of the search,
# 1e-9, and of an error of 3e-14 in the power.
rows = []
for directional in (0, 1):
    for target, es, alpha in [(0.8, 0.5, 0.05), (0.9, -0.2, 0.01), (0.95, 3, 1e-6), (0.8, 0.05, 0.05), (0.9, 1, 0.3),
                              (0.99, 0.8, 0.001), (0.8, 0.01, 0.05)]:  # fmt: skip

        def power_at(N):
            return power(directional, alpha, *one_sample(N, mpf(es)))

        root = sample_size(target, power_at)
        slope = (power_at(root + mpf(10) ** -6) - power_at(root)) * mpf(10) ** 6
        margin = mpf("2e-9") + mpf("3e-14") / slope
        below, above = float(root - margin), float(root + margin)
        rows.append([directional, target, es, alpha, below, above,
                     *[float(power_at(mpf(N)) - target) for N in (below, above)]])  # fmt: skip
write_table(HERE / "one_size.csv",
            ["directional", "target", "es", "alpha", "below", "above", "excess_below", "excess_above"], rows)  # fmt: skip

# Rounded up: the power at group 1 of that size and of one less.
rows = []
for directional in (0, 1):
    for target, ratio, sd1, sd2, diff, alpha in [
        (0.8, 1, 1, 1, 0.5, 0.05), (0.9, 2, 2, 2, -0.6, 0.01), (0.8, 0.5, 1, 2, 0.7, 0.05),
        (0.95, 0.3, 3, 1, 1, 0.001), (0.8, 0.05, 1, 1, 0.4, 0.05), (0.8, 0.01, 1, 1.5, 1, 0.05),
        (0.99, 1.7, 10, 15, 3, 1e-4), (0.8, 1, 1, 1.1, 0.05, 0.05), (0.8, 1, 1, 1, 3, 0.05),
    ]:  # fmt: skip

        def power_at(N1):
            return power(directional, alpha, *independent(N1, sd1, mpf(ratio) * N1, sd2, mpf(diff)))

        low = mpf(2)
        if ratio < 1:  # from where both groups have more than one observation
            low = 1 / mpf(ratio) + mpf(1) / 100
        high = mpf(400)
        while power_at(high) < target:
            low, high = high, 2 * high
        root = bisect(lambda N: power_at(N) - target, low, high)
        N1 = ceil(root)
        N2 = max(mpf(2), ceil(mpf(ratio) * root))
        rows.append([directional, target, ratio, sd1, sd2, diff, alpha, int(N1), int(N2),
                     *[float(power_at(n) - target) for n in (N1 - 1, N1)]])  # fmt: skip
write_table(HERE / "two_size.csv",
            ["directional", "target", "ratio", "sd1", "sd2", "diff", "alpha", "N1", "N2", "excess_below", "excess"],
            rows)  # fmt: skip


# ---- Half-widths ----


def half_width(alpha, df, error):
    return t_quantile(1 - alpha / 2, df) * error


def one_sample_half_width(N, sd, alpha):
    return half_width(alpha, mpf(N) - 1, mpf(sd) / sqrt(mpf(N)))


def independent_half_width(N1, sd1, N2, sd2, alpha):
    df, _ = independent(N1, sd1, N2, sd2, mpf(0))
    return half_width(alpha, df, sqrt(mpf(sd1) ** 2 / N1 + mpf(sd2) ** 2 / N2))


rows = []
for N, sd, alpha in [(1.5, 1, 0.05), (2, 1, 0.05), (2.5, 10, 0.3), (10, 2, 0.05), (33.3, 0.1, 0.01), (1000, 15, 1e-6),
                     (1e6, 3, 0.05)]:  # fmt: skip
    rows.append([N, sd, alpha, float(one_sample_half_width(N, sd, alpha))])
write_table(HERE / "one_half_width.csv", ["N", "sd", "alpha", "half_width"], rows)

rows = []
for N1, sd1, N2, sd2, alpha in [(2, 1, 2, 1, 0.05), (10, 2, 15, 2, 0.05), (10, 1, 15, 3, 0.05), (15, 3, 10, 1, 0.05),
                                (1.5, 1, 1.25, 2, 0.3), (100, 1, 1e6, 10, 1e-6), (5, 0, 7, 2, 0.05)]:  # fmt: skip
    rows.append([N1, sd1, N2, sd2, alpha, float(independent_half_width(mpf(N1), sd1, mpf(N2), sd2, alpha))])
write_table(HERE / "two_half_width.csv", ["N1", "sd1", "N2", "sd2", "alpha", "half_width"], rows)


# The size that reaches a half-width, the half-width there and at one less.
def smallest(width_at, target, low=2):
    high = mpf(400)
    while width_at(high) > target:
        high *= 2
    return bisect(lambda N: target - width_at(N), mpf(low), high)


rows = []
for target, sd, alpha in [(0.5, 1, 0.05), (1, 10, 0.01), (0.1, 2, 0.3), (0.01, 1, 1e-6), (5, 1, 0.05)]:

    def width_at(N):
        return one_sample_half_width(N, sd, alpha)

    N = ceil(smallest(width_at, target))
    rows.append([target, sd, alpha, int(N), float(width_at(N - 1)), float(width_at(N))])
write_table(HERE / "one_half_width_size.csv", ["target", "sd", "alpha", "N", "width_below", "width"], rows)

rows = []
for target, ratio, sd1, sd2, alpha in [
    (0.5, 1, 1, 1, 0.05), (1, 2, 3, 3, 0.01), (0.3, 0.5, 1, 2, 0.05), (0.2, 0.1, 1, 1.5, 0.1), (0.05, 1.5, 1, 0.5, 0.05),
    (0.5, 0.01, 1, 2, 0.05), (3.77, 0.01, 1, 1, 0.05),
]:  # fmt: skip

    def width_at(N1):
        return independent_half_width(N1, sd1, mpf(ratio) * N1, sd2, alpha)

    # Welch's degrees of freedom exist from more than one observation in each group on.
    low = 2 if sd1 == sd2 else max(2, 1 / mpf(ratio) + mpf(1) / 100)
    root = smallest(width_at, target, low)
    N1, N2 = ceil(root), max(mpf(2), ceil(mpf(ratio) * root))
    rows.append([target, ratio, sd1, sd2, alpha, int(N1), int(N2), float(width_at(N1 - 1)), float(width_at(N1))])
write_table(HERE / "two_half_width_size.csv",
            ["target", "ratio", "sd1", "sd2", "alpha", "N1", "N2", "width_below", "width"], rows)  # fmt: skip
