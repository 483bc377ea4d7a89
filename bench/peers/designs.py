#!/usr/bin/env python3
"""Many designs from Python beside statsmodels and R: processor time of a design in nanoseconds, and ratios.

    designs.py BARE_CALLS      with the package statpower on the path, statsmodels, scipy and Rscript

BARE_CALLS: the program that calls the library's functions for the same designs. Peers that take one design at a time are
given fewer; each time is the least of several rounds.
"""

import math
import subprocess
import sys
import threading
import time

import numpy as np
from scipy import stats
from statsmodels.stats import power as peers
from statsmodels.stats.proportion import power_proportions_2indep

import statpower as sp

DESIGNS = 100_000
ROUNDS, FEW = 5, 200

i = np.arange(DESIGNS)
n = 10 + i % 190
d = 0.2 + i % 7 * 0.1
f = 0.1 + i % 5 * 0.05
p1, p2 = 0.2 + i % 9 * 0.05, 0.5 + i % 4 * 0.1


def each(function, *columns):
    return np.array([function(*(column[j].item() for column in columns)) for j in range(min(FEW, len(columns[0])))])


def fisher(a, b):
    """Power of Fisher's exact test, 50 in each group, by the definition on scipy's probabilities."""
    x = np.arange(51)
    p, q = stats.binom.pmf(x, 50, a), stats.binom.pmf(x, 50, b)
    total = 0.0
    for successes in range(101):
        first = np.arange(max(0, successes - 50), min(50, successes) + 1)
        table = stats.hypergeom.pmf(first, 100, successes, 50)
        ordered = np.sort(table)
        below = np.cumsum(ordered)[np.searchsorted(ordered, table * (1 + 1e-7), side="right") - 1]
        total += np.sum((p[first] * q[successes - first])[below <= 0.05])
    return total


JOBS = {
    "t power": (lambda: sp.t_two(n=n, d=d).power(), lambda: each(
        lambda size, effect: peers.TTestIndPower().power(effect, size, 0.05), n, d),
        "suppressWarnings(power.t.test(n = n, delta = d, strict = TRUE)$power)"),
    "t size": (lambda: sp.t_two(d=d).size().n1, lambda: np.ceil(each(
        lambda effect: peers.TTestIndPower().solve_power(effect, power=0.8, alpha=0.05), d)),
        "sapply(d[1:2000], function(x) ceiling(power.t.test(delta = x, power = 0.8)$n))"),
    "anova power": (lambda: sp.anova(f=f, groups=4, n=n).power(), lambda: each(
        lambda size, effect: peers.FTestAnovaPower().power(effect, 4 * size, 0.05, 4), n, f),
        "pf(qf(0.95, 3, 4 * n - 4), 3, 4 * n - 4, 4 * n * f^2, lower.tail = FALSE)"),
    "two proportions power": (lambda: sp.prop_two(p1=p1, p2=p2, n=n).power(), lambda: each(
        lambda size, a, b: power_proportions_2indep(a - b, b, size, return_results=False), n, p1, p2),
        "suppressWarnings(power.prop.test(n = n, p1 = p1, p2 = p2, strict = TRUE)$power)"),
    "Fisher exact power, 50": (
        lambda: sp.prop_two(p1=p1[:2000], p2=p2[:2000], n=50, statistic="fisher", method="exact").power(),
        lambda: each(fisher, p1[:20], p2[:20]), "mapply(fisher, p1[1:20], p2[1:20])"),
}


def timed(job):
    best, found = math.inf, None
    for _ in range(ROUNDS):
        started = time.process_time()
        found = job()
        best = min(best, time.process_time() - started)
    return best / len(found) * 1e9, found


def in_r(expression):
    program = f"""i <- 0:{DESIGNS - 1}; n <- 10 + i %% 190; d <- 0.2 + i %% 7 * 0.1; f <- 0.1 + i %% 5 * 0.05
        p1 <- 0.2 + i %% 9 * 0.05; p2 <- 0.5 + i %% 4 * 0.1
        fisher <- function(a, b) {{
          x <- expand.grid(x1 = 0:50, x2 = 0:50); total <- x$x1 + x$x2
          rejected <- phyper(x$x1, 50, 50, total) <= 0.025 |
            phyper(x$x1 - 1, 50, 50, total, lower.tail = FALSE) <= 0.025
          sum((dbinom(x$x1, 50, a) * dbinom(x$x2, 50, b))[rejected])
        }}
        best <- Inf; for (round in 1:3) best <- min(best, sum(system.time(x <- {expression})[1:2]))
        cat(best / length(x) * 1e9, sprintf("%.17g", x[seq_len(min({FEW}, length(x)))]))"""
    time_of_one, *found = map(float, subprocess.run(["Rscript", "-e", program], check=True, capture_output=True,
                                                    text=True).stdout.split())
    return time_of_one, np.array(found)


print(f"{'ns a design':26}{'statpower':>11}{'Python peer':>13}{'R':>10}{'ratios':>20}   largest difference")
for name, (ours, peer, r) in JOBS.items():
    time_of_ours, found = timed(ours)
    time_of_peer, theirs = timed(peer)
    time_of_r, of_r = in_r(r)
    differences = [float(np.nanmax(np.abs(other - found[:len(other)]))) for other in (theirs, of_r)]
    print(f"{name:26}{time_of_ours:11.0f}{time_of_peer:13.0f}{time_of_r:10.0f}{time_of_peer / time_of_ours:10.0f}"
          f"{time_of_r / time_of_ours:10.1f}   " + ", ".join(f"{x:.1g}" for x in differences))


def one(call):
    times = []
    for _ in range(300):
        started = time.perf_counter_ns()
        for _ in range(200):
            call()
        times.append((time.perf_counter_ns() - started) / 200)
    return min(times)


print(f"\n{'ns':26}{'bare C call':>12}{'row of a ufunc':>16}{'call of the ufunc':>19}{'of the method':>15}")
bare = dict(line.split("\t") for line in subprocess.run([sys.argv[1]], check=True, capture_output=True,
                                                         text=True).stdout.splitlines())
size = n.astype(float)
for name, design, columns in [("t power", sp.t_two(n=40, d=0.5), (size, d)),
                              ("two proportions power", sp.prop_two(p1=0.3, p2=0.5, n=40), (p1, p2, size))]:
    given = ("n", "d") if len(columns) == 2 else ("p1", "p2", "n")
    ufunc = type(design).ufunc("power", *given)
    rows = timed(lambda: ufunc(*columns))[0]
    alone = tuple(float(column[0]) for column in columns)
    print(f"{name:26}{float(bare[name]):12.0f}{rows:16.0f}{one(lambda: ufunc(*alone)):19.0f}{one(design.power):15.0f}")


def in_threads(threads):
    """Wall time, and processor time, of as many calls as threads, each in one."""
    call = sp.t_two.ufunc("power", "n", "d")
    all_of_them = [threading.Thread(target=lambda: [call(size, d) for _ in range(5)]) for _ in range(threads)]
    wall, processor = time.perf_counter(), time.process_time()
    for thread in all_of_them:
        thread.start()
    for thread in all_of_them:
        thread.join()
    return time.perf_counter() - wall, time.process_time() - processor


print()
for threads in (1, 8):
    wall, processor = in_threads(threads)
    print(f"Threads: {threads}, processors in use: {processor / wall:.2f}")
