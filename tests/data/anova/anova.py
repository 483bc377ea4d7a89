#!/usr/bin/env python3
"""Writes anova_power.csv, anova_effect_power.csv and anova_size.csv beside itself.

Powers of the overall F test, and the power just around sample sizes that reach a target, to 40 digits.
"""

import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from high_precision import f_test_power, mpf  # noqa: E402
from sample_sizes import search  # noqa: E402
from tables import joined, write_table  # noqa: E402


def noncentrality(means, sigma, weights, total):
    weights = [mpf(w) / sum(mpf(w) for w in weights) for w in weights]
    grand = sum(w * mpf(m) for w, m in zip(weights, means))
    between = sum(w * (mpf(m) - grand) ** 2 for w, m in zip(weights, means))
    return between * total / mpf(sigma) ** 2


DESIGNS = [  # means, sigma, sizes
    ([10, 12, 14, 11], 4, [10, 10, 10, 10]),
    ([0, 1], 1, [5, 5]),
    ([0, 0.5], 1, [40, 20]),
    ([0, 0, 3], 2.5, [7, 9, 11]),
    ([1, 2, 3, 4, 5], 3, [3, 4, 5, 6, 7]),
    ([0.1, 0.2, 0.15, 0.3, 0.05, 0.25], 0.4, [12, 30, 8, 25, 17, 9]),
    ([5, 5, 5], 2, [10, 20, 30]),
    (list(range(12)), 15, [4, 8, 6, 10, 5, 7, 9, 11, 3, 12, 6, 8]),
    ([100, 103, 98], 15, [150.5, 90.25, 200]),
    ([0, 1e-3, -1e-3], 1, [1000, 2000, 1500]),
    ([0, 10], 2, [2, 2]),
    ([0, 1, 0, 1, 0, 1, 0, 1], 1, [2, 2, 2, 2, 2, 2, 2, 2]),
]

powers = []
for means, sigma, sizes in DESIGNS:
    for alpha in (0.05, 0.001, 0.3):
        total = sum(mpf(s) for s in sizes)
        power = f_test_power(alpha, len(means) - 1, total - len(means), noncentrality(means, sigma, sizes, total))
        powers.append([len(means), sigma, alpha, float(power), joined(means, sizes)])
write_table(HERE / "anova_power.csv", ["k", "sigma", "alpha", "power", "means;sizes"], powers)

effects = []
for k, kind, es, total in [(2, 0, 0.25, 80), (4, 0, 0.25, 80), (4, 1, 0.2, 80), (3, 1, 0.01, 1000), (12, 0, 0.4, 60),
                           (5, 0, 0.1, 2500), (2, 1, 0.9, 6), (6, 0, 0.0, 36), (3, 0, -0.3, 45), (8, 1, 0.05, 1e5)]:
    for alpha in (0.05, 0.01):
        lam = mpf(total) * mpf(es) / (1 - mpf(es)) if kind else mpf(total) * mpf(es) ** 2
        effects.append([k, kind, es, total, alpha, float(f_test_power(alpha, k - 1, total - k, lam))])
write_table(HERE / "anova_effect_power.csv", ["k", "esType", "es", "N", "alpha", "power"], effects)

# Totals that reach a power: the smallest N with power(N) >= target, the power of the group sizes that it gives,
# and the power just before any of them becomes smaller.
sizes = []
for means, sigma, weights, target, alpha in [
    ([10, 12, 14, 11], 4, [1, 1, 1, 1], 0.8, 0.05),
    ([0, 0.5], 1, [2, 1], 0.9, 0.05),
    ([0, 0, 3], 2.5, [1, 1, 2], 0.95, 0.01),
    ([1, 2, 3, 4, 5], 10, [1, 2, 3, 2, 1], 0.8, 0.05),
    ([0, 0.1], 1, [1, 1], 0.8, 0.05),
    ([0, 0.02, 0.04], 1, [1, 1, 1], 0.7, 0.1),
]:
    k = len(means)

    def power(group_sizes):
        total = sum(group_sizes)
        return f_test_power(alpha, k - 1, total - k, noncentrality(means, sigma, group_sizes, total))

    sizes.append([k, sigma, target, alpha, *search(power, weights, target), joined(means, weights)])
write_table(HERE / "anova_size.csv",
            ["k", "sigma", "target", "alpha", "N", "power_at", "power_below", "means;weights"], sizes)
