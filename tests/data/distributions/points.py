#!/usr/bin/env python3
"""Writes the values of <operation>.csv: points chosen by hand and at random, each in the region that the last column names.

Usage: points.py [operation ...]        (needs mpmath; all of them take some minutes)

The arguments and regions of the tables are kept; the values are computed anew from the defining sums and integrals of
stress.py, with 1200 bits, and rounded once.
"""
import csv
import os
import sys

from mpmath import erfc, exp, inf, log, loggamma, mpf, pi, sqrt
from stress import beta_density, incomplete_beta, noncentral_f, noncentral_t, normal_cdf, set_precision

set_precision(1200)  # small tails are differences of numbers near 1


def beta_cdf(x, a, b):
    return incomplete_beta(a, b, mpf(x), 1 - mpf(x))[0]


def beta_quantile(p, a, b):
    """x and 1 - x where I_x(a, b) = p, by Newton's method on the logarithm of the smaller tail in the log odds of x."""
    p, a, b = mpf(p), mpf(a), mpf(b)
    lower = p < mpf(1) / 2
    target = log(p if lower else 1 - p)
    low, high = mpf(-800), mpf(800)  # 1 - x keeps its digits
    s = log(a / b)
    for _ in range(400):
        x, y = 1 / (1 + exp(-s)), 1 / (1 + exp(s))
        tail = incomplete_beta(a, b, x, y)[0 if lower else 1]
        excess = log(tail) - target if tail > 0 else -inf
        if (excess < 0) == lower:
            low = s
        else:
            high = s
        slope = beta_density(a, b, x, y) * x * y / tail * (1 if lower else -1) if tail > 0 else mpf(0)
        step = -excess / slope if slope else inf
        if abs(step) < mpf(10) ** -60:
            return x, y
        s = s + step if low < s + step < high else (low + high) / 2
    raise ArithmeticError("beta quantile of %s for %s and %s" % (p, a, b))


def f_quantile(p, df1, df2):
    x, y = beta_quantile(p, mpf(df1) / 2, mpf(df2) / 2)
    return x / y * mpf(df2) / mpf(df1)


def t_quantile(p, df):
    p, df = mpf(p), mpf(df)
    if p == mpf(1) / 2:
        return mpf(0)
    tail = min(p, 1 - p)
    x, y = beta_quantile(2 * tail, df / 2, mpf(1) / 2)
    return sqrt(df * y / x) * (1 if p > tail else -1)


def noncentral_f_cdf(x, df1, df2, noncentrality):
    if noncentrality == 0:
        return beta_cdf(mpf(df1) * mpf(x) / (mpf(df1) * mpf(x) + mpf(df2)), mpf(df1) / 2, mpf(df2) / 2)
    return noncentral_f(x, df1, df2, noncentrality)


def noncentral_t_cdf(t, df, delta):
    if t == 0:
        return normal_cdf(-mpf(delta))
    if delta == 0:
        t, df = mpf(t), mpf(df)
        tail = beta_cdf(df / (df + t * t), df / 2, mpf(1) / 2) / 2
        return 1 - tail if t > 0 else tail
    return noncentral_t(t, df, delta)


def normal_quantile(p):
    """Newton's method on the logarithm of the smaller tail, from the tail's leading term."""
    p = mpf(p)
    tail = min(p, 1 - p)
    if tail == mpf(1) / 2:
        return mpf(0)
    z = sqrt(-2 * log(2 * tail))
    for _ in range(100):
        upper = erfc(z / sqrt(mpf(2))) / 2
        density = exp(-z * z / 2) / sqrt(2 * pi)
        step = log(upper / tail) * upper / density
        z += step
        if abs(step) < abs(z) * mpf(10) ** -60:
            return z if p > tail else -z
    raise ArithmeticError("normal quantile of %s" % p)


def binomial_cdf(x, n, p):
    x, n, p = mpf(int(x // 1)), mpf(n), mpf(p)
    if x >= n:
        return mpf(1)
    return incomplete_beta(x + 1, n - x, p, 1 - p)[1] if x >= 0 else mpf(0)


def binomial_quantile(prob, n, p):
    """The largest whole k whose distribution function, rounded to a double, does not exceed prob."""
    low, high = -1, int(n) + 1
    while high - low > 1:
        k = (low + high) // 2
        if k < n and float(binomial_cdf(k, n, p)) <= prob:
            low = k
        else:
            high = k
    return mpf(low)


def binomial_pdf(x, n, p):
    x, n, p = mpf(x), mpf(n), mpf(p)
    return exp(loggamma(n + 1) - loggamma(x + 1) - loggamma(n - x + 1) + x * log(p) + (n - x) * log(1 - p))


def negative_binomial_pdf(k, r, p):
    k, r, p = mpf(k), mpf(r), mpf(p)
    return exp(loggamma(k + r) - loggamma(k + 1) - loggamma(r) + r * log(p) + k * log(1 - p))


OPERATIONS = {
    "CdfStdNorm": lambda x: normal_cdf(mpf(x)),
    "IdfStdNorm": normal_quantile,
    "vorndnlgam": lambda x: loggamma(mpf(x)),
    "NonCentralCdfF": noncentral_f_cdf,
    "NonCentralCdfT": noncentral_t_cdf,
    "IdfF": f_quantile,
    "IdfT": t_quantile,
    "CdfBin": binomial_cdf,
    "IdfBin": binomial_quantile,
    "PdfBin": binomial_pdf,
    "PdfNegBin": negative_binomial_pdf,
    "CdfBeta": beta_cdf,
    "IdfBeta": lambda p, a, b: beta_quantile(p, a, b)[0],
}


def main():
    folder = os.path.dirname(os.path.abspath(__file__))
    for name in sys.argv[1:] or OPERATIONS:
        path = os.path.join(folder, name + ".csv")
        with open(path) as file:
            heading, *rows = csv.reader(file)
        lines = [",".join(heading)]
        for *arguments, _, region in rows:
            value = OPERATIONS[name](*map(float, arguments))
            lines.append(",".join([*arguments, "%.17g" % float(value), region]))
        with open(path, "w") as file:
            file.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
