#!/usr/bin/env python3
"""Writes power.csv, half_width.csv, size.csv and half_width_size.csv beside itself.

Powers and half-widths of the tests of a correlation to 40 digits, by the normal approximation of Fisher's z.
The kinds: 0 Pearson, 1 Pearson with bias correction, 2 partial, 3, 4, 5 Spearman with method 0, 1, 2.
"""

import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from mpmath import atanh, erfinv, floor, inf, ncdf, sign, sqrt, tanh  # noqa: E402

from high_precision import mpf  # noqa: E402
from tables import write_table  # noqa: E402


def normal_quantile(p):
    return sqrt(mpf(2)) * erfinv(2 * mpf(p) - 1)


def z(r):
    return sign(r) * inf if abs(r) == 1 else atanh(r)


def variance(kind, N, k, r):
    """Of z, in the large-sample form."""
    if kind == 3:
        return (1 + r * r / 2) / (N - 3)
    if kind == 4:
        return mpf(1.06) / (N - 3)
    if kind == 5:
        return 1 / (N - 2) + abs(z(r)) / (6 * N + 4 * sqrt(N))
    return 1 / (N - 3 - k)


def mean_bias(r, m):
    return r * (1 + (5 + r**2) / (4 * m) + (11 + 2 * r**2 + 3 * r**4) / (8 * m**2)) / (2 * m)


def power(kind, sided, N, k, r, r0, alpha):
    N, k, r, r0 = mpf(N), mpf(k), mpf(r), mpf(r0)
    q = normal_quantile(1 - alpha if sided else 1 - alpha / 2)
    if r == 1 or r0 == -1:
        return mpf(0) if sided and r <= r0 else mpf(1)
    if r == -1 or r0 == 1:
        return mpf(1)
    difference, v, sd_ratio = z(r) - z(r0), variance(kind, N, k, r), mpf(1)
    if kind in (1, 2):
        m = N - 1 - k
        difference += mean_bias(r, m) - r0 / (2 * m)
        sd_ratio = sqrt((1 + (4 - r**2) / (2 * m) + (22 - 6 * r**2 - 3 * r**4) / (6 * m**2)) / m / v)
    D = difference / sqrt(v)
    above, below = ncdf((D - q) / sd_ratio), ncdf(-(q + D) / sd_ratio)
    if sided:
        return above if r > r0 else below
    return above + below


def half_width(kind, N, k, r, alpha):
    N, k, r = mpf(N), mpf(k), mpf(r)
    margin = normal_quantile(1 - alpha / 2) * sqrt(variance(kind, N, k, r))
    middle = z(r) - (r / (2 * (N - 1)) if kind == 1 else 0)
    return (tanh(middle + margin) - tanh(middle - margin)) / 2


PAIRS = [(0.3, 0.0), (0.0, 0.3), (-0.5, 0.2), (0.2, 0.2), (0.1, 0.05), (0.9, 0.85), (0.99, -0.99), (-0.7, -0.75),
         (0.999999, 0.0), (1.0, 0.3), (-1.0, 0.3), (0.3, 1.0), (0.3, -1.0), (1.0, 1.0), (-1.0, -1.0), (1e-13, 0.0)]
SIZES = [(3.5, 0), (4, 0), (5.25, 1), (10, 2), (30, 0), (85, 5), (400.5, 12), (5000, 40), (1e6, 3)]

powers = []
for kind in range(6):
    for i, (N, k) in enumerate(SIZES):
        k = k if kind == 2 else 0
        for j, (r, r0) in enumerate(PAIRS):
            for sided in (0, 1):
                alpha = (0.05, 0.01, 0.3, 1e-6)[(i + j) % 4]
                powers.append([kind, sided, N, k, r, r0, alpha, float(power(kind, sided, N, k, r, r0, alpha))])
write_table(HERE / "power.csv", ["kind", "sided", "N", "k", "r", "r0", "alpha", "power"], powers)

widths = []
for kind in range(6):
    for i, (N, k) in enumerate(SIZES):
        k = k if kind == 2 else 0
        for j, r in enumerate((0.0, 0.3, -0.5, 0.9, -0.999, 1e-9)):
            alpha = (0.05, 0.01, 0.3, 1e-6)[(i + j) % 4]
            widths.append([kind, N, k, r, alpha, float(half_width(kind, N, k, r, alpha))])
write_table(HERE / "half_width.csv", ["kind", "N", "k", "r", "alpha", "half_width"], widths)


def smallest(reached, low, high):
    while not reached(high):
        low, high = high, 2 * high
    while high - low > mpf(10) ** -10:
        middle = (low + high) / 2
        low, high = (low, middle) if reached(middle) else (middle, high)
    return high


sizes, width_sizes = [], []
for kind in range(6):
    for r, r0, k, sided, target in [(0.3, 0.0, 2, 0, 0.8), (-0.15, 0.0, 0, 1, 0.9), (0.6, 0.75, 7, 0, 0.95)]:
        k = k if kind == 2 else 0
        N = smallest(lambda n: power(kind, sided, n, k, r, r0, 0.05) >= target, mpf(k + 4), mpf(k + 400))
        sizes.append([kind, sided, target, k, r, r0, 0.05, float(N)])
        N = smallest(lambda n: half_width(kind, n, k, r, 0.05) <= mpf(0.1), mpf(k + 4), mpf(k + 404))
        width_sizes.append([kind, 0.1, k, r, 0.05, int(floor(N)) + 1])
write_table(HERE / "size.csv", ["kind", "sided", "target", "k", "r", "r0", "alpha", "N"], sizes)
write_table(HERE / "half_width_size.csv", ["kind", "target", "k", "r", "alpha", "N"], width_sizes)
