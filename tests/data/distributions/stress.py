#!/usr/bin/env python3
"""Writes stress/<operation>.csv: random points of the distribution operations with their exact values, rounded once.

Usage: generate_stress [operation ...]        (needs mpmath; all of them take some minutes)

The arguments are random numbers of six significant digits, spread over the regions that the last column names. The
values come from the defining sums in fixed-point arithmetic of PRECISION bits, far more than any cancellation takes
away, and for parameters too large to sum from the inversion integral along a straight line, computed twice with
different lines and steps. A quantile is found from a random point: its probability is rounded to a double and the
point corrected by Newton steps until it is the quantile of that double.
"""
import os
import random
import sys

from mpmath import erfc, exp, expj, floor, inf, log, loggamma, mp, mpc, mpf, pi, sqrt

UNIT = 1 << 120  # fixed point of the parameters


def set_precision(bits):
    global PRECISION, ONE
    PRECISION, ONE = bits, 1 << bits
    mp.prec = bits + 60


set_precision(520)


def six(value):
    """The value with six significant digits, as a double."""
    return float("%.6g" % value)


def fixed(value, one=None):
    return int(floor(mpf(value) * (one or ONE)))


# ---- the beta family ------------------------------------------------------------------------------------------------

def log_prefix(a, b, x, y):
    """Of x^a y^b Gamma(a + b) / (Gamma(a + 1) Gamma(b))."""
    return a * log(x) + b * log(y) + loggamma(a + b) - loggamma(a + 1) - loggamma(b)


def power_series(a, b, x):
    """1 + (a+b)/(a+1) x + (a+b)(a+b+1)/((a+1)(a+2)) x^2 + ..."""
    n, d, scaled_x = fixed(a + b, UNIT), fixed(a + 1, UNIT), fixed(x, ONE)
    term = total = ONE
    while True:
        term = (term * n // d) * scaled_x >> PRECISION
        total += term
        n += UNIT
        d += UNIT
        if term < total >> (PRECISION - 100):
            if n * scaled_x < d * (ONE - (ONE >> 8)) or term == 0:
                if term < total >> (PRECISION - 10):  # a tail may be the difference of this sum and 1
                    return mpf(total) / ONE


def incomplete_beta(a, b, x, y):
    """Both tails at x, y = 1 - x."""
    def terms(a, b, x, y):
        return max(mpf(0), b * x / y - a) + 12 * sqrt(b * x) / y + PRECISION * mpf("0.7") / -log(x)
    a, b, x, y = mpf(a), mpf(b), mpf(x), mpf(y)
    if terms(a, b, x, y) < terms(b, a, y, x):
        lower = exp(log_prefix(a, b, x, y)) * power_series(a, b, x)
        return lower, 1 - lower
    upper = exp(log_prefix(b, a, y, x)) * power_series(b, a, y)
    return 1 - upper, upper


def beta_density(a, b, x, y):
    return exp(log_prefix(a, b, x, y)) * a / (x * y)


# ---- Poisson mixtures -----------------------------------------------------------------------------------------------

def mixture(h, a, b, x, y, shift):
    """sum over j >= 0 of e^-h h^(j + shift) / Gamma(j + shift + 1) I_x(a + j, b)."""
    a, b, h, shift = mpf(a), mpf(b), mpf(h), mpf(shift)
    mode = int(h)
    scaled_h, scaled_x = fixed(h, UNIT), fixed(x)
    # Weights relative to the mode's, from the first to the last that counts.
    up, w, j = [], ONE, fixed(mode + shift, UNIT)
    while w:
        up.append(w)
        j += UNIT
        w = w * scaled_h // j
    down, w, j = [], ONE, fixed(mode + shift, UNIT)
    for _ in range(mode):
        w = w * j // scaled_h
        j -= UNIT
        if not w:
            break
        down.append(w)
    top = mode + len(up)  # I at the top by its series, below it by adding the differences
    at_top = incomplete_beta(a + top, b, x, y)[0]
    last = a + top - 1
    g_scale = max(0, 8 - int(floor(log_prefix(last, b, x, y) / log(mpf(2)))))  # keeps a small difference accurate
    g = fixed(exp(log_prefix(last, b, x, y)), ONE << g_scale)
    tail = fixed(at_top, ONE << g_scale)
    n, d = fixed(last + b, UNIT), fixed(last + 1, UNIT)
    total = 0
    for w in up[::-1] + down:
        tail += g
        total += w * tail
        n -= UNIT
        d -= UNIT
        g = (g * d // n << PRECISION) // scaled_x
    weight = exp(-h + (mode + shift) * log(h) - loggamma(mode + shift + 1))
    return weight * mpf(total) / (ONE * ONE << g_scale)


def noncentral_f(x, df1, df2, noncentrality):
    a, b, h = mpf(df1) / 2, mpf(df2) / 2, mpf(noncentrality) / 2
    s = a * mpf(x) + b
    return mixture(h, a, b, a * mpf(x) / s, b / s, 0)


def normal_cdf(x):
    return erfc(-x / sqrt(mpf(2))) / 2


def noncentral_t(t, df, delta):
    t, df, delta = mpf(t), mpf(df), mpf(delta)
    if t < 0:
        return 1 - noncentral_t(-t, df, -delta)
    h, s = delta * delta / 2, df + t * t
    even = mixture(h, mpf(1) / 2, df / 2, t * t / s, df / s, 0)
    odd = mixture(h, mpf(1), df / 2, t * t / s, df / s, mpf(1) / 2)
    return normal_cdf(-delta) + (even + odd * (1 if delta > 0 else -1)) / 2


def inversion(a, b, h, c):
    """P(X <= c Y), X a gamma variable of shape a + Poisson(h), Y one of shape b: for large parameters."""
    with mp.workprec(220):
        a, b, h, c = mpf(a), mpf(b), mpf(h), mpf(c)
        sd = sqrt(a + 2 * h + b * c * c)
        center = (a + h - b * c) / sd
        results = []
        for distance, step in ((mpf("1.7"), mpf("0.11")), (mpf("2.1"), mpf("0.1"))):
            # A line at about the saddlepoint, but not near the pole at 0.
            t0 = -center
            t0 = max(t0, distance) if t0 > 0 else min(t0, -distance)
            s0, total, i = t0 / sd, mpf(0), 0
            while True:
                s = mpc(s0, (i + mpf("0.5")) * step / sd)
                value = exp(-a * log(1 - s) + h * s / (1 - s) - b * log(1 + c * s)) / s
                total += value.real
                i += 1
                if abs(value) < abs(total) * mpf(10) ** -33:
                    break
            upper = total * step / sd / pi
            results.append(1 - upper if t0 > 0 else -upper)
        if abs(results[0] - results[1]) > mpf(10) ** -25 * abs(results[1]):
            raise ArithmeticError("inversion: %s %s" % tuple(results))
        return results[1]


# ---- points ---------------------------------------------------------------------------------------------------------

def log_uniform(low, high):
    return exp(mpf(random.uniform(float(log(low)), float(log(high)))))


def points_noncentral_f(count):
    for i in range(count):
        kind = i % 10
        z = random.gauss(0, 1.5)
        if kind < 4:
            region, df1, df2, nc = "ordinary", random.randint(1, 20), random.uniform(2, 500), random.uniform(0.01, 60)
        elif kind < 6:
            region, df1, df2, nc = "wide", log_uniform(0.3, 1e4), log_uniform(0.5, 1e6), log_uniform(1e-3, 1e4)
        elif kind == 6:
            region, df1, df2, nc = "lowdf", log_uniform(0.3, 1e3), log_uniform(0.4, 100), log_uniform(302, 1e5)
        elif kind == 7:
            region, df1, df2 = "switch", log_uniform(0.5, 300), log_uniform(1, 1e4)
            nc = random.choice((20, 300)) * random.uniform(0.98, 1.02)
        elif kind == 8:
            region, df1, df2, nc = "deep", log_uniform(1, 100), log_uniform(3, 1e3), log_uniform(0.1, 300)
            z = -random.uniform(3, 11)
        else:
            region, df1, df2, nc = "huge", log_uniform(10, 1e9), log_uniform(1e3, 1e12), log_uniform(1e5, 1e12)
        df1, df2, nc = six(df1), six(df2), six(nc)
        mean = 1 + nc / df1
        spread = min(3.0, float(sqrt(2 * (df1 + 2 * nc) / (df1 * mean) ** 2 + 2 / df2)))
        x = six(mean * float(exp(max(-60, z * spread))))
        if region == "huge":
            value = inversion(df1 / 2, df2 / 2, nc / 2, mpf(df1) * mpf(x) / mpf(df2))
        else:
            value = noncentral_f(x, df1, df2, nc)
        yield (x, df1, df2, nc), value, region


def points_noncentral_t(count):
    for i in range(count):
        kind = i % 10
        z = random.gauss(0, 1.5)
        sign = random.choice((-1, 1))
        if kind < 4:
            region, df, delta = "ordinary", random.uniform(1, 300), random.uniform(0.01, 6)
        elif kind == 4:
            region, df, delta = "wide", log_uniform(0.3, 1e8), log_uniform(1e-3, 140)
        elif kind == 5:
            region, df, delta, sign = "lowdf", log_uniform(0.4, 100), log_uniform(17.4, 300), 1
        elif kind == 6:
            region, df = "switch", log_uniform(1, 1e4)
            delta = random.choice((sqrt(20), sqrt(300))) * random.uniform(0.98, 1.02)
        elif kind == 7:
            region, df, delta = "deep", log_uniform(3, 1e3), random.uniform(0.5, 10)
            sign, z = 1, -random.uniform(3, 11)
        elif kind == 8:
            region, df, delta = "opposite", log_uniform(1, 300), random.uniform(0.01, 5)
        else:
            region, df, delta = "huge", log_uniform(1e3, 1e12), log_uniform(1e3, 1e6)
            sign = 1
        df, delta = six(df), six(delta)
        spread = float(sqrt(1 + mpf(delta) ** 2 / (2 * mpf(df))))
        if region == "opposite":
            t = -random.uniform(0, 4)
        else:
            t = delta + z * spread
            if df < 5 or region == "lowdf":
                t = delta * float(exp(z * min(3, float(sqrt(1 / (2 * mpf(df)))))))
        if region in ("deep", "huge"):
            t = abs(t)
        t = six(t)
        if region == "huge":
            value = inversion(mpf(1) / 2, mpf(df) / 2, mpf(delta) ** 2 / 2, mpf(t) ** 2 / mpf(df))
            # P(T^2 <= t^2) for a T that is positive but for 1e-200000
        else:
            value = noncentral_t(t * sign, df, delta * sign)
        yield (t * sign, df, delta * sign), value, region


def random_beta(i):
    """(a, b, x, region): shape parameters and a point within some standard deviations of the mean."""
    kind = i % 10
    z = random.gauss(0, 2)
    if kind < 4:
        region, a, b = "ordinary", random.uniform(0.5, 100), random.uniform(0.5, 100)
    elif kind < 7:
        region, a, b = "wide", log_uniform(0.05, 1e5), log_uniform(0.05, 1e5)
    elif kind == 7:
        region, a, b = "skew", log_uniform(0.01, 10), log_uniform(1, 1e6)
        if random.random() < 0.5:
            a, b = b, a
    elif kind == 8:
        region, a, b, z = "deep", log_uniform(1, 1e3), log_uniform(1, 1e3), -random.uniform(3, 11)
    else:
        region, a, b = "huge", log_uniform(1e5, 1e12), log_uniform(1e5, 1e12)
    a, b = six(a), six(b)
    odds = a / b * float(exp(max(-60, min(60, z * min(4.0, float(sqrt(1 / mpf(a) + 1 / mpf(b))))))))
    x = odds / (1 + odds)
    if region != "huge":
        x = six(x)
    return a, b, x, region


def cdf_beta(a, b, x, region):
    if region == "huge":
        return inversion(a, b, 0, mpf(x) / (1 - mpf(x)))
    return incomplete_beta(a, b, mpf(x), 1 - mpf(x))[0]


def points_beta(count):
    i = 0
    while i < count:
        a, b, x, region = random_beta(i)
        if i % 10 == 5:  # shapes near zero
            region, a, b = "tiny", log_uniform(1e-13, 0.1), log_uniform(1e-13, 1e3)
            x = six(random.random() if i % 20 == 5 else log_uniform(1e-12, 1))
            a, b = (six(a), six(b)) if random.random() < 0.5 else (six(b), six(a))
        if 0 < x < 1:
            yield (x, a, b), cdf_beta(a, b, x, region), region
            i += 1


def beta_quantile_from(a, b, x):
    """A double probability near P(X <= x) and its quantile (x, 1 - x); None where it would be ill-conditioned."""
    x, y = mpf(x), 1 - mpf(x)
    lower, upper = incomplete_beta(a, b, x, y)
    p = float(lower)
    if not 1e-300 < p < 1 or upper < 1e-9:
        return None
    for _ in range(6):
        change = (mpf(p) - incomplete_beta(a, b, x, y)[0]) / beta_density(a, b, x, y)
        x, y = x + change, y - change
        if not (x > 0 and y > 0):
            return None
        if abs(change) < min(x, y) * mpf(10) ** -40:
            return p, x, y
    return None


def points_quantile(count, make):
    i = 0
    while i < count:
        a, b, x, region = random_beta(i % 9)  # the huge ones are covered by their distribution function
        row = make(a, b, x) if 0 < x < 1 else None
        if row:
            yield row + (region,)
            i += 1


def make_beta_quantile(a, b, x):
    found = beta_quantile_from(a, b, x)
    return found and ((found[0], a, b), found[1])


def make_f_quantile(a, b, x):
    found = beta_quantile_from(a, b, x)
    return found and ((found[0], 2 * a, 2 * b), found[1] / found[2] * mpf(b) / mpf(a))


def points_t_quantile(count):
    i = 0
    while i < count:
        region = ("ordinary", "ordinary", "wide", "deep")[i % 4]
        df = six({"ordinary": random.uniform(1, 300), "wide": log_uniform(0.2, 1e6), "deep": log_uniform(2, 1e3)}[region])
        t = -abs(random.gauss(0, 2)) if region != "deep" else -random.uniform(5, 20)
        x = mpf(t) ** 2 / (mpf(df) + mpf(t) ** 2)
        p = float(incomplete_beta(mpf(df) / 2, mpf(1) / 2, 1 - x, x)[0] / 2)
        for _ in range(8):
            x = mpf(t) ** 2 / (mpf(df) + mpf(t) ** 2)
            tail = incomplete_beta(mpf(df) / 2, mpf(1) / 2, 1 - x, x)[0] / 2
            # density of t: half the beta density times dx/d|t|
            density = beta_density(mpf(1) / 2, mpf(df) / 2, x, 1 - x) * abs(mpf(t)) * mpf(df) / (mpf(df) + mpf(t) ** 2) ** 2
            change = (mpf(p) - tail) / density
            t = t + change
            if abs(change) < abs(t) * mpf(10) ** -40:
                break
        else:
            continue
        if random.random() < 0.5 and p > 1e-9:  # from the other side: p becomes 1 - p, if that is a double
            if mpf(float(1 - mpf(p))) == 1 - mpf(p):
                p, t = float(1 - mpf(p)), -t
        yield (p, df), t, region
        i += 1


def random_binomial(i):
    region = ("ordinary", "ordinary", "wide", "fractional")[i % 4]
    n = {"ordinary": random.randint(1, 500), "wide": int(log_uniform(100, 1e5)),
         "fractional": six(random.uniform(1.5, 500))}[region]
    p = six(random.uniform(0.01, 0.99)) if i % 3 else six(log_uniform(1e-5, 0.5))
    x = round(n * p + random.gauss(0, 2.5) * float(sqrt(n * p * (1 - p))))
    return n, p, x, region


def points_binomial_cdf(count):
    i = 0
    while i < count:
        n, p, x, region = random_binomial(i)
        if 0 <= x < n:
            yield (x, n, p), incomplete_beta(mpf(x) + 1, mpf(n) - x, mpf(p), 1 - mpf(p))[1], region
            i += 1


def points_binomial_quantile(count):
    i = 0
    while i < count:
        n, p, x, region = random_binomial(i)
        prob = six(random.choice((0.025, 0.05, 0.95, 0.975, random.random())))
        def cdf(k):
            if k < 0:
                return mpf(0)
            return incomplete_beta(mpf(k) + 1, mpf(n) - k, mpf(p), 1 - mpf(p))[1] if k < n else mpf(1)
        k = max(0, min(int(n), x))
        while k >= 0 and cdf(k) > prob:
            k -= 1
        while cdf(k + 1) <= prob:
            k += 1
        yield (prob, n, p), mpf(k), region
        i += 1


def points_binomial_pdf(count):
    i = 0
    while i < count:
        n, p, x, region = random_binomial(i)
        if i % 8 == 7:
            x, region = random.uniform(0, n), "tail"
            x = six(x) if n != int(n) else int(x)
        if 0 <= x <= n:
            n_, x_, p_ = mpf(n), mpf(x), mpf(p)
            value = exp(loggamma(n_ + 1) - loggamma(x_ + 1) - loggamma(n_ - x_ + 1) + x_ * log(p_)
                        + (n_ - x_) * log(1 - p_))
            if value > mpf(10) ** -290:
                yield (x, n, p), value, region
                i += 1


def points_negative_binomial(count):
    i = 0
    while i < count:
        r = six(log_uniform(0.5, 1e4)) if i % 2 else random.randint(1, 400) / 2
        p = six(random.uniform(0.02, 0.98))
        mean = r * (1 - p) / p
        k = round(mean + random.gauss(0, 2 if i % 4 else 8) * float(sqrt(mean / p)))
        if k < 0:
            continue
        p_ = mpf(p)
        value = exp(loggamma(mpf(k) + r) - loggamma(mpf(k) + 1) - loggamma(mpf(r)) + mpf(r) * log(p_) + k * log(1 - p_))
        if value > mpf(10) ** -290:
            yield (k, r, p), value, "ordinary" if i % 4 else "tail"
            i += 1


TABLES = {
    "NonCentralCdfF": ("x,df1,df2,noncentrality", points_noncentral_f, 6000),
    "NonCentralCdfT": ("t,df,delta", points_noncentral_t, 6000),
    "CdfBeta": ("x,a,b", points_beta, 3000),
    "CdfBin": ("x,n,p", points_binomial_cdf, 1500),
    "IdfBin": ("prob,n,p", points_binomial_quantile, 600),
    "IdfBeta": ("p,a,b", lambda count: points_quantile(count, make_beta_quantile), 1500),
    "IdfF": ("p,df1,df2", lambda count: points_quantile(count, make_f_quantile), 1500),
    "IdfT": ("p,df", points_t_quantile, 1500),
    "PdfBin": ("x,n,p", points_binomial_pdf, 1500),
    "PdfNegBin": ("k,r,p", points_negative_binomial, 1000),
}


def main():
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "stress")
    for name in sys.argv[1:] or TABLES:
        heading, points, count = TABLES[name]
        random.seed(name)
        with open(os.path.join(folder, name + ".csv"), "w") as file:
            file.write(heading + ",value,region\n")
            for arguments, value, region in points(int(os.environ.get("COUNT", count))):
                cells = [repr(float(v)).removesuffix(".0") for v in arguments]
                file.write(",".join(cells + [repr(float(value)).removesuffix(".0"), region]) + "\n")


if __name__ == "__main__":
    main()
