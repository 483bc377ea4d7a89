#!/usr/bin/env python3
"""Writes dyadic_binomial.csv: P(X <= x) for n trials at p = u / 2^m, where n m is at most 512.

The sum is a whole number over 2^(n m); Python divides whole numbers with one correct rounding.
"""
import os
import random
from math import comb


def cdf(x, n, u, m):
    v = 2 ** m - u
    return sum(comb(n, k) * u ** k * v ** (n - k) for k in range(x + 1)) / 2 ** (n * m)


def main():
    random.seed("dyadic")
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "dyadic_binomial.csv")
    with open(path, "w") as file:
        file.write("x,n,p,value\n")
        for m in list(range(1, 13)) * 200 + list(range(13, 64)) * 20:
            n = random.randint(1, min(62, 512 // m))
            u = 2 * random.randrange(2 ** min(m - 1, 52)) + 1  # odd, and p is a double
            x = random.randrange(n)
            file.write("%d,%d,%r,%r\n" % (x, n, u / 2 ** m, cdf(x, n, u, m)))


main()
