#!/usr/bin/env python3
"""Writes contrast_power.csv, contrast_effect_power.csv and contrast_size.csv beside itself.

Powers of contrasts of group means, and sample sizes that reach a target, to 40 digits.
"""

import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from high_precision import f_test_power, mpf, t_test_power_one_sided  # noqa: E402
from mpmath import sqrt  # noqa: E402
from sample_sizes import search  # noqa: E402
from tables import joined, write_table  # noqa: E402


def power_of_effect(es, sizes, coefficients, directional, alpha):
    """Power for an effect psi / sigma: t test with one side, F test with two."""
    sizes = [mpf(n) for n in sizes]
    variance = sum(mpf(c) ** 2 / n for c, n in zip(coefficients, sizes))
    noncentrality = mpf(es) ** 2 / variance
    df = sum(sizes) - len(sizes)
    if directional:
        return t_test_power_one_sided(alpha, df, sqrt(noncentrality))
    return f_test_power(alpha, 1, df, noncentrality)


def effect(means, sigma, coefficients):
    return sum(mpf(c) * mpf(m) for c, m in zip(coefficients, means)) / mpf(sigma)


DESIGNS = [  # means, sigma, sizes, coefficients
    ([0, 1], 1, [10, 10], [1, -1]),
    ([3, 2.5], 0.75, [7, 23], [1, -1]),
    ([10, 12, 14], 4, [10, 20, 15], [-1, 0.5, 0.5]),
    ([10, 12, 14, 11], 4, [12, 9, 15, 30], [0.5, 0.5, -0.5, -0.5]),
    ([1, 2, 3, 4, 5], 3, [3, 4, 5, 6, 7], [-1, -0.5, 0, 0.5, 1]),
    ([0.1, 0.2, 0.15, 0.3, 0.05, 0.25], 0.4, [12, 30, 8, 25, 17, 9], [1, 0, 0, 0, 0, -1]),
    ([5, 5, 5], 2, [10, 20, 30], [1, -0.5, -0.5]),
    (list(range(8)), 15, [4, 8, 6, 10, 5, 7, 9, 11], [-7, -5, -3, -1, 1, 3, 5, 7]),
    (list(range(12)), 40, [4, 8, 6, 10, 5, 7, 9, 11, 3, 12, 6, 8], [-1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1]),
    ([100, 103, 98], 15, [150.5, 90.25, 200], [0.25, 0.75, -1]),
]

powers = []
for means, sigma, sizes, coefficients in DESIGNS:
    for directional in (0, 1):
        for alpha in (0.05, 0.001):
            power = power_of_effect(effect(means, sigma, coefficients), sizes, coefficients, directional, alpha)
            powers.append([len(means), directional, sigma, alpha, float(power), joined(means, sizes, coefficients)])
write_table(HERE / "contrast_power.csv",
            ["k", "directional", "sigma", "alpha", "power", "means;sizes;coefficients"], powers)

effects = []
for es, sizes, coefficients in [
    (0.5, [10, 10], [1, -1]),
    (-0.5, [10, 30], [1, -1]),
    (0.3, [40, 50, 60, 70], [0.5, 0.5, -0.5, -0.5]),
    (1.25, [5, 6, 7], [1, -0.5, -0.5]),
    (0, [20, 20, 20], [1, 0, -1]),
    (0.2, [12, 30, 8, 25, 17, 9, 14, 22, 31, 10, 11, 12], [1, -1] * 6),
]:
    for directional in (0, 1):
        power = power_of_effect(es, sizes, coefficients, directional, 0.05)
        effects.append([len(sizes), directional, es, 0.05, float(power), joined(sizes, coefficients)])
write_table(HERE / "contrast_effect_power.csv",
            ["k", "directional", "es", "alpha", "power", "sizes;coefficients"], effects)

sizes = []
for means, sigma, weights, coefficients, directional, target, alpha in [
    ([0, 0.5], 1, [1, 1], [1, -1], 0, 0.8, 0.05),
    ([0, 0.5], 1, [1, 1], [1, -1], 1, 0.8, 0.05),
    ([10, 12, 14, 11], 4, [1, 2, 1, 3], [0.5, 0.5, -0.5, -0.5], 0, 0.9, 0.01),
    ([10, 12, 14], 6, [1, 1, 2], [-1, 0.5, 0.5], 1, 0.95, 0.05),
    ([1, 1.1, 1.2], 1, [1, 1, 1], [1, 0, -1], 0, 0.7, 0.1),
    (list(range(12)), 12, [1] * 12, [-1] + [0] * 10 + [1], 0, 0.8, 0.05),
]:

    def power(group_sizes):
        return power_of_effect(effect(means, sigma, coefficients), group_sizes, coefficients, directional, alpha)

    sizes.append([len(means), directional, sigma, target, alpha, *search(power, weights, target),
                  joined(means, weights, coefficients)])
write_table(HERE / "contrast_size.csv",
            ["k", "directional", "sigma", "target", "alpha", "N", "power_at", "power_below",
             "means;weights;coefficients"], sizes)
