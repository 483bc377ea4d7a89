"""The standard jobs (bench/jobs.h) in Python with scipy, as its users write them: vectorised where there is an array.

Prints for each job its answer and its processor time in microseconds.
"""

import time

import numpy as np
from scipy import optimize, stats
from scipy.special import bdtr, bdtrc, ncfdtr, nctdtr, stdtrit, fdtri


def t_power(n, es, alpha):
    critical = stdtrit(n - 1, 1 - alpha / 2)
    delta = np.sqrt(n) * es
    return 1 - nctdtr(n - 1, delta, critical) + nctdtr(n - 1, delta, -critical)


def f_power(N, k, f, alpha):
    return 1 - ncfdtr(k - 1, N - k, N * f**2, fdtri(k - 1, N - k, 1 - alpha))


def regression_power(N, p, q, f2, alpha):
    return 1 - ncfdtr(q, N - p - 1, N * f2, fdtri(q, N - p - 1, 1 - alpha))


def random_regression_power(N, p, q, f2, alpha):
    e, error = f2 / (1 + f2), N - p - 1
    x = 1 / (1 + error / q / fdtri(q, error, 1 - alpha))
    k = np.arange(stats.nbinom.ppf(1 - 1e-15, (error + q) / 2, 1 - e) + 1)
    return 1 - np.sum(stats.nbinom.pmf(k, (error + q) / 2, 1 - e) * stats.beta.cdf(x, q / 2 + k, error / 2))


def size(power, start):
    return optimize.brentq(lambda N: power(N) - 0.8, start, 400, xtol=1e-9)


def binomial_power(N, p1, p0, alpha):
    lower = stats.binom.ppf(alpha / 2, N, p0) - 1
    upper = stats.binom.isf(alpha / 2, N, p0)
    return bdtr(lower, N, p1) + bdtrc(upper, N, p1)


def fisher_power(n, p1, p2, alpha):
    x1, x2 = np.meshgrid(np.arange(n + 1), np.arange(n + 1), indexing="ij")
    null = stats.hypergeom(2 * n, n, x1 + x2)
    rejected = (null.cdf(x1) <= alpha / 2) | (null.sf(x1 - 1) <= alpha / 2)
    return np.sum((stats.binom.pmf(x1, n, p1) * stats.binom.pmf(x2, n, p2))[rejected])


F2 = np.var([10, 11, 12.5, 11.5]) / 9
GRID_N, GRID_ES = np.meshgrid(np.arange(11.0, 61), np.linspace(0.1, 0.9, 50), indexing="ij")
GRID_TOTAL, GRID_F = np.meshgrid(np.arange(20.0, 520), np.linspace(0.05, 1, 20), indexing="ij")

JOBS = {
    "t power": lambda: t_power(34, 0.5, 0.05),
    "t size": lambda: size(lambda n: t_power(n, 0.5, 0.05), 2),
    "t curve, 100 sizes": lambda: t_power(np.arange(10.0, 110), 0.3, 0.05)[-1],
    "t surface, 50 x 50": lambda: t_power(GRID_N, GRID_ES, 0.05)[-1, -1],
    "F power": lambda: f_power(80, 4, F2**0.5, 0.05),
    "F size": lambda: 4 * np.ceil(size(lambda N: f_power(N, 4, F2**0.5, 0.05), 8) / 4),
    "F surface, 500 x 20": lambda: f_power(GRID_TOTAL, 4, GRID_F, 0.05)[-1, -1],
    "size, fixed predictors": lambda: size(lambda N: regression_power(N, 5, 3, 0.15, 0.05), 7),
    "size, random predictors": lambda: size(lambda N: random_regression_power(N, 5, 3, 0.15, 0.05), 7),
    "binomial power, N = 400": lambda: binomial_power(400, 0.57, 0.5, 0.05),
    "Fisher power, 50 and 50": lambda: fisher_power(50, 0.3, 0.55, 0.05),
    "Fisher power, 100 and 100": lambda: fisher_power(100, 0.3, 0.5, 0.05),
}

for name, job in JOBS.items():
    answer = job()
    count, taken = 1, 0.0
    while taken < 0.1:
        count *= 4
        started = time.process_time()
        for _ in range(count):
            job()
        taken = time.process_time() - started
    print(f"{name}\t{answer:.12g}\t{1e6 * taken / count:.6g}")
