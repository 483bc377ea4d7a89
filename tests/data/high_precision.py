"""Distributions to 40 digits with mpmath, for the scripts that make the tables of this folder.

Everything is computed from definitions: incomplete beta functions, Poisson mixtures, root finding. The
arguments are doubles and are taken as the exact numbers that they are.
"""

from mpmath import betainc, exp, findroot, log, loggamma, mp, mpf, ncdf

mp.dps = 40


def beta_cdf(x, a, b):
    """Regularised incomplete beta function I_x(a, b)."""
    return betainc(a, b, 0, x, regularized=True)


def f_cdf(x, df1, df2):
    y = df1 * x / (df1 * x + df2)
    return beta_cdf(y, mpf(df1) / 2, mpf(df2) / 2)


def f_quantile(p, df1, df2):
    """Quantile of the central F distribution, through the logarithm of x."""
    df1, df2, p = mpf(df1), mpf(df2), mpf(p)
    return exp(bisect(lambda s: f_cdf(exp(s), df1, df2) - p, mpf(-200), mpf(200)))


def t_cdf(t, df):
    t, df = mpf(t), mpf(df)
    tail = beta_cdf(df / (df + t * t), df / 2, mpf(1) / 2) / 2
    return 1 - tail if t > 0 else tail


def t_quantile(p, df):
    """Quantile of Student's t."""
    p, df = mpf(p), mpf(df)
    if p == mpf(1) / 2:
        return mpf(0)
    if p < mpf(1) / 2:
        return -t_quantile(1 - p, df)
    return exp(bisect(lambda s: t_cdf(exp(s), df) - p, mpf(-200), mpf(200)))


def bisect(f, low, high):
    """Root of an increasing function: bisection to a rough bracket, then the Illinois method."""
    flow, fhigh = f(low), f(high)
    while high - low > mpf(1) / 16:
        middle = (low + high) / 2
        value = f(middle)
        if value < 0:
            low, flow = middle, value
        else:
            high, fhigh = middle, value
    return findroot(f, (low, high), solver="illinois", tol=mpf(10) ** -70, maxsteps=200, verify=False)


def noncentral_f_cdf(x, df1, df2, noncentrality):
    """Poisson mixture of incomplete beta functions, summed outwards from the mode of the weights."""
    x, df1, df2, mean = mpf(x), mpf(df1), mpf(df2), mpf(noncentrality) / 2
    y = df1 * x / (df1 * x + df2)
    a, b = df1 / 2, df2 / 2
    return poisson_mixture(mean, lambda j: beta_cdf(y, a + j, b))


def poisson_mixture(mean, term):
    """Sum of Poisson(mean) weights times term(j)."""
    if mean == 0:
        return term(0)
    mode = int(mean)
    weight = exp(-mean + mode * log(mean) - loggamma(mode + 1))
    total, negligible = mpf(0), mpf(10) ** -(mp.dps - 5)
    w, j = weight, mode
    while w > negligible:
        total += w * term(j)
        j += 1
        w *= mean / j
    w, j = weight * mode / mean, mode - 1
    while j >= 0 and w > negligible:
        total += w * term(j)
        w *= j / mean
        j -= 1
    return total


def noncentral_t_cdf(t, df, noncentrality):
    """P(T <= t), by the two Poisson-like mixtures of incomplete beta functions (Lenth 1989)."""
    t, df, delta = mpf(t), mpf(df), mpf(noncentrality)
    if t < 0:
        return 1 - noncentral_t_cdf(-t, df, -delta)
    y = t * t / (t * t + df)
    mean = delta * delta / 2
    even = poisson_mixture(mean, lambda j: beta_cdf(y, mpf(j) + mpf(1) / 2, df / 2))
    odd = half_poisson_mixture(mean, lambda j: beta_cdf(y, mpf(j) + 1, df / 2))
    return ncdf(-delta) + (even + (odd if delta > 0 else -odd)) / 2


def half_poisson_mixture(mean, term):
    """Sum of exp(-mean) mean^(j + 1/2) / Gamma(j + 3/2) times term(j)."""
    if mean == 0:
        return mpf(0)
    mode = int(mean)
    weight = exp(-mean + (mode + mpf(1) / 2) * log(mean) - loggamma(mode + mpf(3) / 2))
    total, negligible = mpf(0), mpf(10) ** -(mp.dps - 5)
    w, j = weight, mode
    while w > negligible:
        total += w * term(j)
        j += 1
        w *= mean / (j + mpf(1) / 2)
    w, j = weight * (mode + mpf(1) / 2) / mean, mode - 1
    while j >= 0 and w > negligible:
        total += w * term(j)
        w *= (j + mpf(1) / 2) / mean
        j -= 1
    return total


def f_test_power(alpha, df1, df2, noncentrality):
    """P(F > critical value), the critical value at the double 1 - alpha."""
    return 1 - noncentral_f_cdf(f_quantile(1 - alpha, df1, df2), df1, df2, noncentrality)


def t_test_power_one_sided(alpha, df, noncentrality):
    return 1 - noncentral_t_cdf(t_quantile(1 - alpha, df), df, noncentrality)


def t_test_power_two_sided(alpha, df, noncentrality):
    t = t_quantile(1 - alpha / 2, df)
    return 1 - noncentral_t_cdf(t, df, noncentrality) + noncentral_t_cdf(-t, df, noncentrality)
