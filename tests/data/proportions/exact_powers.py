#!/usr/bin/env python3
"""Writes one_exact_power.csv and paired_exact_power.csv beside itself.

Powers of the exact tests of one proportion and of paired proportions, by enumeration of all outcomes in exact
rational arithmetic. The proportions and levels are doubles and are taken as the exact numbers that they are.
"""

import pathlib
import sys
from fractions import Fraction
from math import comb

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from tables import write_table  # noqa: E402


def probabilities(n, p):
    return [comb(n, k) * p**k * (1 - p) ** (n - k) for k in range(n + 1)]


def lower_region(null, level):
    """The counts 0 .. L whose total probability does not exceed the level."""
    total = Fraction(0)
    for k, probability in enumerate(null):
        total += probability
        if total > level:
            return range(k)
    return range(len(null))


def upper_region(null, level):
    size = len(lower_region(null[::-1], level))
    return range(len(null) - size, len(null))


def one_sample_power(n, p1, p0, alpha, sides):
    p1, p0, alpha = Fraction(p1), Fraction(p0), Fraction(alpha)
    null, alternative = probabilities(n, p0), probabilities(n, p1)
    if sides == 0:
        region = [*lower_region(null, alpha / 2), *upper_region(null, alpha / 2)]
    elif p1 > p0:
        region = upper_region(null, alpha)
    else:
        region = lower_region(null, alpha)
    return sum((alternative[k] for k in region), Fraction(0))


def paired_upper_region(null, level):
    """The counts above k + 1, k the largest count with P(X <= k) <= 1 - level: on an exact tie one count fewer than
    the tail could hold. No region at all where there is no such k."""
    below = lower_region(null, 1 - level)
    return range(len(below) + 1, len(null)) if below else range(0)


def related_power(n, p1, p2, alpha, sided):
    p1, p2, alpha = Fraction(p1), Fraction(p2), Fraction(alpha)
    psi = p1 + p2
    pairs = probabilities(n, psi)
    power = Fraction(0)
    for m in range(1, n + 1):
        null, alternative = probabilities(m, Fraction(1, 2)), probabilities(m, p2 / psi)
        if sided == 0:
            lower = lower_region(null, alpha / 2)
            region = [*lower, *paired_upper_region(null, alpha / 2)] if lower else []
        elif p2 > p1:
            region = paired_upper_region(null, alpha)
        else:
            region = lower_region(null, alpha)
        power += pairs[m] * sum((alternative[k] for k in region), Fraction(0))
    return power


def main():
    one_sample = [
        (n, p1, p0, alpha, sides)
        for n, p1, p0, alpha in [
            (1, 0.9, 0.5, 0.6), (2, 0.1, 0.5, 0.25), (5, 0.9, 0.5, 0.0625), (8, 0.75, 0.5, 0.0703125),
            (10, 0.3, 0.5, 0.05), (10, 0.5, 0.5, 0.05), (20, 0.7, 0.5, 0.01), (25, 0.2, 0.1, 0.05),
            (30, 0.05, 0.2, 0.1), (40, 0.6, 0.4, 0.05), (50, 0.01, 0.03, 0.05), (64, 0.625, 0.5, 0.05),
            (75, 0.9, 0.95, 0.2), (100, 0.45, 0.3, 0.001), (100, 1.0, 0.5, 0.05), (100, 0.0, 0.3, 0.05),
            (150, 0.5, 0.55, 0.05), (200, 0.12, 0.08, 0.025), (300, 0.31, 0.25, 0.05), (400, 0.5, 0.43, 0.01),
        ]
        for sides in (0, 1)
    ]
    related = [
        (n, p1, p2, alpha, sided)
        for n, p1, p2, alpha in [
            (2, 0.5, 0.5, 0.5), (3, 0.5, 0.25, 0.25), (5, 0.1, 0.6, 0.0625), (6, 0.0, 0.75, 0.03125),
            (8, 0.8, 0.1, 0.1), (10, 0.2, 0.4, 0.05), (12, 0.3, 0.3, 0.05), (20, 0.5, 0.1, 0.05),
            (25, 0.05, 0.3, 0.01), (30, 0.25, 0.1, 0.05), (40, 0.01, 0.02, 0.2), (50, 0.2, 0.35, 0.05),
            (60, 0.6, 0.4, 0.05), (80, 0.15, 0.05, 0.001), (100, 0.1, 0.2, 0.05), (120, 0.02, 0.08, 0.05),
        ]
        for sided in (0, 1)
    ]
    write_table(HERE / "one_exact_power.csv", ["N", "p1", "p0", "alpha", "sides", "power"],
                [(*case, repr(float(one_sample_power(*case)))) for case in one_sample])
    write_table(HERE / "paired_exact_power.csv", ["N", "p1", "p2", "alpha", "sided", "power"],
                [(*case, repr(float(related_power(*case)))) for case in related])


main()
