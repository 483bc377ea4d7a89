#!/usr/bin/env python3
"""Writes two_power.csv beside itself: powers of the tests of two independent proportions.

Normal approximations to 40 digits. Exact powers by enumeration: every table within reach of the probabilities is
judged, in 40 digits where double precision comes close to the critical value. A design with a table that is within
1e-9 of the critical value is refused: there rounding decides, which tests pin by other means.
"""

import math
import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
from high_precision import noncentral_t_cdf, t_quantile  # noqa: E402
from mpmath import asin, erfinv, log, mpf, ncdf, sqrt  # noqa: E402
from tables import write_table  # noqa: E402

NEGLIGIBLE = mpf(10) ** -40


def z_quantile(p):
    return sqrt(mpf(2)) * erfinv(2 * mpf(p) - 1)


def tail(sides, alpha):
    return alpha / 2 if sides == 0 else alpha


# ---- Normal approximations


def both(sides, p1, p2, upper, lower):
    """upper: rejection where p1 is found larger; lower: where p2 is."""
    if sides == 0:
        return upper() + lower()
    return upper() if p1 > p2 else lower()


def normal_chi_square(n1, n2, p1, p2, sides, alpha, correction, pooled):
    d = p1 - p2
    s1 = sqrt(p1 * (1 - p1) / n1 + p2 * (1 - p2) / n2)
    mean = (n1 * p1 + n2 * p2) / (n1 + n2)
    s0 = sqrt(mean * (1 - mean) * (1 / n1 + 1 / n2)) if pooled else s1
    c = (1 / n1 + 1 / n2) / 2 if correction else 0
    z = z_quantile(1 - tail(sides, alpha))
    return both(sides, p1, p2, lambda: ncdf((d - z * s0 - c) / s1), lambda: ncdf((-d - z * s0 - c) / s1))


def normal_t(n1, n2, p1, p2, sides, alpha, _, pooled):
    a, b = (n1, n2) if pooled else (n2, n1)
    se = sqrt((a * p1 * (1 - p1) + b * p2 * (1 - p2)) / (n1 * n2))
    df = n1 + n2 - 2
    t = t_quantile(1 - tail(sides, alpha), df)
    if sides != 0:
        return 1 - noncentral_t_cdf(t, df, abs(p1 - p2) / se)
    delta = (p1 - p2) / se
    return 1 - noncentral_t_cdf(t, df, delta) + noncentral_t_cdf(-t, df, delta)


def normal_likelihood_ratio(n1, n2, p1, p2, sides, alpha, _, __):
    mean = (n1 * p1 + n2 * p2) / (n1 + n2)
    g = sum(n * (p * log(p / mean) + (1 - p) * log((1 - p) / (1 - mean))) for n, p in ((n1, p1), (n2, p2)))
    distance = sqrt(2 * g)
    z = z_quantile(1 - tail(sides, alpha))
    return ncdf(distance - z) + (ncdf(-distance - z) if sides == 0 else 0)


def normal_fisher(n1, n2, p1, p2, sides, alpha, _, __):
    half = 0 if p1 == p2 else mpf(1) / 2 if p1 > p2 else -mpf(1) / 2
    h = 2 * sqrt(n1 * n2 / (n1 + n2)) * (asin(sqrt(p2 + half / n2)) - asin(sqrt(p1 - half / n1)))
    z = z_quantile(1 - tail(sides, alpha))
    return both(sides, p1, p2, lambda: ncdf(-h - z), lambda: ncdf(h - z))


# ---- Enumeration


def binomial(n, p):
    """Probabilities that are not negligible."""
    result, x, mode = {}, int(n * p), int(n * p)
    for step in (1, -1):
        x = mode if step == 1 else mode - 1
        while 0 <= x <= n:
            value = math.comb(n, x) * p**x * (1 - p) ** (n - x)
            if value < NEGLIGIBLE:
                break
            result[x] = value
            x += step
    return result


def enumerate_tables(n1, n2, p1, p2, statistic, critical):
    """statistic(x1, x2, number) computes with numbers of the type `number`."""
    first, second = binomial(n1, p1), binomial(n2, p2)
    power = mpf(0)
    for x1, probability in first.items():
        inner = mpf(0)
        for x2, other in second.items():
            value = statistic(x1, x2, float)
            if abs(value - float(critical)) < 1e-6:
                value = statistic(x1, x2, mpf)
                assert abs(value - critical) > 1e-9, (n1, n2, x1, x2)
            if value > critical:
                inner += other
        power += probability * inner
    return power


def observed(n1, n2, x1, x2, number):
    little = number(1) / 1000
    if x1 + x2 == 0:
        return little / n1, little / n2
    if x1 + x2 == n1 + n2:
        return 1 - little / n1, 1 - little / n2
    return number(x1) / n1, number(x2) / n2


def directed(sides, larger_first, a, b):
    if sides == 0:
        return abs(a - b)
    return a - b if larger_first else b - a


def root(x):
    return sqrt(x) if isinstance(x, mpf) else math.sqrt(x)


def exact_chi_square(n1, n2, p1, p2, sides, alpha, correction, _):
    def statistic(x1, x2, number):
        a, b = observed(n1, n2, x1, x2, number)
        mean = (n1 * a + n2 * b) / (n1 + n2)
        per_trial = number(1) / n1 + number(1) / n2
        c = per_trial / 2 if correction else 0
        return (directed(sides, p1 > p2, a, b) + (c if sides else -c)) / root(mean * (1 - mean) * per_trial)

    return enumerate_tables(n1, n2, p1, p2, statistic, z_quantile(1 - tail(sides, alpha)))


def exact_t(n1, n2, p1, p2, sides, alpha, _, pooled):
    def statistic(x1, x2, number):
        a, b = observed(n1, n2, x1, x2, number)
        w1, w2 = (n1, n2) if pooled else (n2, n1)
        variance = (w1 * a * (1 - a) + w2 * b * (1 - b)) * (n1 + n2) / (n1 + n2 - 2)
        if variance <= 0:
            return number("inf") if directed(sides, p1 > p2, a, b) > 0 else -number("inf")
        return directed(sides, p1 > p2, a, b) * root(number(n1 * n2)) / root(variance)

    return enumerate_tables(n1, n2, p1, p2, statistic, t_quantile(1 - tail(sides, alpha), n1 + n2 - 2))


def exact_likelihood_ratio(n1, n2, p1, p2, sides, alpha, _, __):
    def statistic(x1, x2, number):
        ln = log if number is mpf else math.log
        total = n1 + n2
        g = number(0)
        for count, row, column in (
            (x1, n1, x1 + x2), (x2, n2, x1 + x2), (n1 - x1, n1, total - x1 - x2), (n2 - x2, n2, total - x1 - x2)
        ):
            if count > 0:
                g += 2 * count * ln(number(count) * total / (number(row) * column))
        return root(max(g, number(0)))

    return enumerate_tables(n1, n2, p1, p2, statistic, z_quantile(1 - tail(sides, alpha)))


def hypergeometric(n1, n2, t):
    """Probabilities of x1 given x1 + x2 = t that are not negligible, outwards from the mode."""
    lo, hi = max(0, t - n2), min(t, n1)
    mode = min(max((n1 + 1) * (t + 1) // (n1 + n2 + 2), lo), hi)
    weights = {mode: mpf(1)}
    for u in range(mode, hi):
        weights[u + 1] = weights[u] * ((n1 - u) * (t - u)) / ((u + 1) * (n2 - t + u + 1))
        if weights[u + 1] < NEGLIGIBLE:
            break
    for u in range(mode, lo, -1):
        weights[u - 1] = weights[u] * (u * (n2 - t + u)) / ((n1 - u + 1) * (t - u + 1))
        if weights[u - 1] < NEGLIGIBLE:
            break
    total = sum(weights.values())
    return {u: w / total for u, w in weights.items()}


def tail_within(level, probabilities):
    """The first counts whose total probability does not exceed the level."""
    cumulative, found = mpf(0), set()
    for u, probability in probabilities:
        cumulative += probability
        assert abs(cumulative / level - 1) > 1e-9, u
        if cumulative > level:
            break
        found.add(u)
    return found


def exact_fisher(n1, n2, p1, p2, sides, alpha, _, __):
    first, second = binomial(n1, p1), binomial(n2, p2)
    level = mpf(tail(sides, alpha))
    power = mpf(0)
    for t in range(min(first) + min(second), max(first) + max(second) + 1):
        ascending = sorted(hypergeometric(n1, n2, t).items())
        tables = set()
        if sides == 0 or p1 > p2:
            tables |= tail_within(level, reversed(ascending))
        if sides == 0 or not p1 > p2:
            tables |= tail_within(level, ascending)
        power += sum(first.get(u, 0) * second.get(t - u, 0) for u in tables)
    return power


POWERS = {
    (0, 0): normal_chi_square, (0, 1): normal_t, (0, 2): normal_likelihood_ratio, (0, 3): normal_fisher,
    (1, 0): exact_chi_square, (1, 1): exact_t, (1, 2): exact_likelihood_ratio, (1, 3): exact_fisher,
}  # fmt: skip

DESIGNS = [  # n1, n2, p1, p2, sides, alpha, correction, pooled
    (10, 10, 0.2, 0.7, 0, 0.05, 0, 1),
    (12, 9, 0.85, 0.3, 1, 0.05, 1, 0),
    (7, 19, 0.4, 0.8, 1, 0.01, 1, 1),
    (31, 14, 0.15, 0.45, 0, 0.1, 1, 0),
    (23, 23, 0.5, 0.25, 0, 0.025, 0, 0),
    (40, 25, 0.65, 0.9, 1, 0.05, 0, 1),
    (57, 61, 0.33, 0.55, 0, 0.05, 1, 1),
    (90, 30, 0.92, 0.71, 1, 0.02, 0, 0),
    (111, 97, 0.05, 0.17, 0, 0.05, 0, 1),
    (45, 150, 0.3, 0.3, 0, 0.05, 0, 0),
    (200, 310, 0.42, 0.52, 1, 0.05, 0, 1),
    (400, 400, 0.6, 0.5, 0, 0.01, 1, 1),
    (1000, 1000, 0.2, 0.25, 0, 0.05, 0, 1),
    (900, 1800, 0.5, 0.44, 1, 0.01, 0, 0),
    (700, 50, 0.85, 0.95, 1, 0.05, 0, 0),
    (5000, 5000, 0.02, 0.026, 0, 0.05, 0, 1),
    (5000, 3000, 0.03, 0.02, 1, 0.05, 1, 0),
    (5000, 5000, 0.5, 0.53, 0, 0.05, 0, 1),
]

rows = []
for (method, test), power in POWERS.items():
    for n1, n2, p1, p2, sides, alpha, correction, pooled in DESIGNS:
        sizes = (n1, n2) if method else (mpf(n1), mpf(n2))
        value = power(*sizes, mpf(p1), mpf(p2), sides, alpha, correction, pooled)
        rows.append([method, test, sides, correction, pooled, n1, n2, p1, p2, alpha, mpf(value)])
write_table(HERE / "two_power.csv", "method test sides correction pooled n1 n2 p1 p2 alpha power", rows)
