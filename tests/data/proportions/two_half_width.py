#!/usr/bin/env python3
"""Writes two_half_width.csv beside itself: half-widths of intervals for p1 - p2, to 40 digits."""

import pathlib
import sys

from mpmath import erfinv, mp, mpf, sqrt

mp.dps = 40
HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from tables import write_table  # noqa: E402


def added(n, p, successes, trials):
    a = (n * p + successes) / (n + trials)
    return a * (1 - a)


def score(n, p, z, corrected):
    """Limits of Wilson's interval: the proportions at which the score statistic is z."""
    if not corrected:
        # n (p - x)^2 = z^2 x (1 - x)
        a, b, c = n + z * z, -(2 * n * p + z * z), n * p * p
        root = sqrt(b * b - 4 * a * c)
        return (-b - root) / (2 * a), (-b + root) / (2 * a)
    # n (p - x -+ 1 / (2 n))^2 = z^2 x (1 - x), the correction away from p
    limits = []
    for sign in (-1, 1):
        q = p + sign / (2 * n)
        a, b, c = n + z * z, -(2 * n * q + z * z), n * q * q
        limits.append((-b + sign * sqrt(b * b - 4 * a * c)) / (2 * a))
    return tuple(limits)


def half_width(n1, n2, p1, p2, alpha, method, corrected):
    z = sqrt(mpf(2)) * erfinv(2 * mpf(1 - alpha / 2) - 1)
    n1, n2, p1, p2 = map(mpf, (n1, n2, p1, p2))
    v1, v2 = p1 * (1 - p1), p2 * (1 - p2)
    if method == 0:
        return z * sqrt(v1 / n1 + v2 / n2) + (corrected * (1 / n1 + 1 / n2) / 2)
    if method in (1, 2):
        return z * sqrt(added(n1, p1, 1, 2) / (n1 + 1 + method) + added(n2, p2, 1, 2) / (n2 + 1 + method))
    if method == 3:
        half = mpf(1) / 2
        return z * sqrt(added(n1, p1, half, 1) / n1 + added(n2, p2, half, 1) / n2)
    if method == 4:
        return z * sqrt(v1 / (n1 - 1) + v2 / (n2 - 1)) + 1 / (2 * min(n1, n2))
    (l1, u1), (l2, u2) = score(n1, p1, z, corrected), score(n2, p2, z, corrected)
    return (sqrt((p2 - l2) ** 2 + (u1 - p1) ** 2) + sqrt((u2 - p2) ** 2 + (p1 - l1) ** 2)) / 2


CASES = [(30, 40, 0.3, 0.6, 0.05), (12, 8, 0.25, 0.5, 0.1), (500, 250.5, 0.9, 0.85, 0.01), (10, 10, 0.5, 0.5, 0.2)]
write_table(HERE / "two_half_width.csv", "method correction n1 n2 p1 p2 alpha half_width",
            [(method, corrected, *case, half_width(*case, method, corrected))
             for method in range(6) for corrected in (0, 1) for case in CASES])  # fmt: skip
