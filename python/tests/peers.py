"""What other programs say of the same designs: powers and half-widths by statsmodels where it has the test, else by the
test's definition on scipy's distributions.

A peer has no search, and needs none: at the answer of any question its power must be the one that was asked for.
"""

from __future__ import annotations

import math
from collections.abc import Callable
from types import SimpleNamespace
from typing import Any

import numpy as np
from scipy import special, stats
from statsmodels.stats import power as sm_power
from statsmodels.stats import proportion as sm_proportion

from statpower._catalogue import tests

# ---- Tails ----------------------------------------------------------------------------------------------

SIDES = {"two-sided": "two-sided", "greater": "larger", "less": "smaller"}


def side(v: SimpleNamespace, effect: float) -> str:
    """The alternative in statsmodels' words; one-sided is the side of the effect."""
    if v.alternative == "one-sided":
        return "larger" if effect > 0 else "smaller"
    return SIDES[v.alternative]


def tails(v: SimpleNamespace, effect: float) -> tuple[bool, bool, float]:
    """Does it reject small values, and large ones; the level of each tail."""
    which = side(v, effect)
    return which != "larger", which != "smaller", v.alpha / 2 if which == "two-sided" else v.alpha


def t_quantile(level: float, df: float) -> float:
    """The t that is exceeded so often: the root of an F. In older scipys their own is off by some 4e-9."""
    return math.sqrt(stats.f.isf(2 * level, 1, df))


#: statsmodels takes its critical values from scipy's t distribution.
T_OF_SCIPY_IS_PRECISE = abs(stats.t.sf(stats.t.isf(0.025, 39), 39) - 0.025) < 1e-12


def noncentral_t(v: SimpleNamespace, effect: float, delta: float, df: float) -> float:
    small, large, level = tails(v, effect)
    critical = t_quantile(level, df)
    return float((stats.nct.sf(critical, df, delta) if large else 0)
                 + (stats.nct.cdf(-critical, df, delta) if small else 0))


def normal(v: SimpleNamespace, effect: float, shift: float, spread: float = 1) -> float:
    """Power where a statistic with unit variance under the null hypothesis is normal(shift, spread^2)."""
    small, large, level = tails(v, effect)
    critical = stats.norm.isf(level)
    return float((stats.norm.sf((critical - shift) / spread) if large else 0)
                 + (stats.norm.cdf((-critical - shift) / spread) if small else 0))


def noncentral_f(v: SimpleNamespace, df1: float, df2: float, noncentrality: float) -> float:
    return float(stats.ncf.sf(stats.f.isf(v.alpha, df1, df2), df1, df2, noncentrality))


def quantile(v: SimpleNamespace) -> float:
    return float(stats.norm.ppf((1 + v.confidence) / 2))


def t_halfwidth(v: SimpleNamespace, df: float, error: float) -> float:
    return t_quantile((1 - v.confidence) / 2, df) * error


# ---- Means ----------------------------------------------------------------------------------------------


def t_one_power(v: SimpleNamespace) -> float:
    return float(sm_power.TTestPower().power(v.d, v.n, v.alpha, alternative=side(v, v.d)))


def t_paired_power(v: SimpleNamespace) -> float:
    dz = v.dz if hasattr(v, "dz") else v.diff / v.sd
    return float(sm_power.TTestPower().power(dz, v.n, v.alpha, alternative=side(v, dz)))


def halfwidth_of_one_mean(v: SimpleNamespace) -> float:
    return t_halfwidth(v, v.n - 1, v.sd / math.sqrt(v.n))


def two(v: SimpleNamespace) -> tuple[float, float]:
    return (v.n, v.n * v.ratio) if hasattr(v, "n") else (v.n1, v.n2)


def two_variances(v: SimpleNamespace) -> tuple[float, float]:
    """Degrees of freedom, and the standard error of the difference of two means."""
    n1, n2 = two(v)
    sd1, sd2 = (v.sd, v.sd) if hasattr(v, "sd") else (v.sd1, v.sd2) if hasattr(v, "sd1") else (1, 1)
    if v.variance == "pooled":
        df = n1 + n2 - 2
        return df, math.sqrt(((n1 - 1) * sd1**2 + (n2 - 1) * sd2**2) / df * (1 / n1 + 1 / n2))
    a, b = sd1**2 / n1, sd2**2 / n2
    return (a + b) ** 2 / (a**2 / (n1 - 1) + b**2 / (n2 - 1)), math.sqrt(a + b)


def t_two_power(v: SimpleNamespace) -> float:
    df, error = two_variances(v)
    diff = v.d if hasattr(v, "d") else v.diff
    if v.variance == "unpooled" or hasattr(v, "sd1"):
        return noncentral_t(v, diff, diff / error, df)
    n1, n2 = two(v)
    d = diff / getattr(v, "sd", 1)
    return float(sm_power.TTestIndPower().power(d, n1, v.alpha, n2 / n1, alternative=side(v, d)))


def t_two_halfwidth(v: SimpleNamespace) -> float:
    df, error = two_variances(v)
    return t_halfwidth(v, df, error)


def z_one_power(v: SimpleNamespace) -> float:
    d = v.d if hasattr(v, "d") else (v.mean - v.null) / v.sd
    return float(sm_power.NormalIndPower().power(d, v.n, v.alpha, ratio=0, alternative=side(v, d)))


def z_one_halfwidth(v: SimpleNamespace) -> float:
    return quantile(v) * v.sd / math.sqrt(v.n)


# ---- Groups ---------------------------------------------------------------------------------------------


def sizes(v: SimpleNamespace) -> np.ndarray:
    if hasattr(v, "sizes"):
        return np.asarray(v.sizes, dtype=float)
    groups = len(v.means) if hasattr(v, "means") else len(v.coefficients) if hasattr(v, "coefficients") else v.groups
    return np.full(int(groups), float(v.n))


def anova_power(v: SimpleNamespace) -> float:
    n = sizes(v)
    f = v.f if hasattr(v, "f") else math.sqrt(np.average(
        (np.asarray(v.means) - np.average(v.means, weights=n)) ** 2, weights=n)) / v.sd
    return float(sm_power.FTestAnovaPower().power(f, n.sum(), v.alpha, len(n)))


def anova_halfwidth(v: SimpleNamespace) -> float:
    n = sizes(v)
    if v.interval == "grand-mean" or len(set(n)) > 1:
        raise NotImplementedError
    return t_halfwidth(v, n.sum() - len(n), v.sd / math.sqrt(n[0]))


def contrast_power(v: SimpleNamespace) -> float:
    n, c = sizes(v), np.asarray(v.coefficients)
    if hasattr(v, "means"):
        psi = float(c @ np.asarray(v.means)) / v.sd
        delta = psi / math.sqrt(np.sum(c**2 / n))
    else:
        psi = v.d
        delta = psi / math.sqrt(np.sum(c**2 / n))
    return noncentral_t(v, psi, delta, n.sum() - len(n))


def contrast_halfwidth(v: SimpleNamespace) -> float:
    n, c = sizes(v), np.asarray(v.coefficients)
    return t_halfwidth(v, n.sum() - len(n), v.sd * math.sqrt(np.sum(c**2 / n)))


def level_of_a_pair(adjustment: str, level: float, groups: int) -> float:
    pairs = groups * (groups - 1) / 2
    return {"bonferroni": level / pairs, "sidak": -math.expm1(math.log1p(-level) / pairs), "none": level}[adjustment]


def pair(v: SimpleNamespace) -> tuple[int, float, float]:
    """Groups, degrees of freedom, and the standard error of the difference over the standard deviation."""
    n = sizes(v)
    return len(n), n.sum() - len(n), math.sqrt(1 / n[int(v.first) - 1] + 1 / n[int(v.second) - 1])


def pairwise_power(v: SimpleNamespace) -> float:
    groups, df, error = pair(v)
    diff = v.means[int(v.first) - 1] - v.means[int(v.second) - 1] if hasattr(v, "means") else v.diff
    pairs = SimpleNamespace(alternative="two-sided", alpha=level_of_a_pair(v.adjustment, v.alpha, groups))
    return noncentral_t(pairs, diff, diff / v.sd / error, df)


def pairwise_halfwidth(v: SimpleNamespace) -> float:
    groups, df, error = pair(v)
    level = level_of_a_pair(v.adjustment, 1 - v.confidence, groups)
    return t_quantile(level / 2, df) * v.sd * error


# ---- Proportions ----------------------------------------------------------------------------------------


def binomial_rejections(n: int, p0: float, small: bool, large: bool, level: float) -> np.ndarray:
    """Which numbers of successes reject: their tail's probability is at most the level."""
    x = np.arange(n + 1)
    return ((stats.binom.cdf(x, n, p0) <= level) & small) | ((stats.binom.sf(x - 1, n, p0) <= level) & large)


def prop_one_power(v: SimpleNamespace) -> float:
    effect = v.p1 - v.p0
    if v.method == "exact":
        rejected = binomial_rejections(int(v.n), v.p0, *tails(v, effect))
        return float(np.sum(stats.binom.pmf(np.arange(v.n + 1), v.n, v.p1)[rejected]))
    if v.continuity != "no":
        raise NotImplementedError
    return float(sm_power.normal_power_het(
        effect, v.n, v.alpha, std_null=math.sqrt(v.p0 * (1 - v.p0)),
        std_alternative=math.sqrt(v.p1 * (1 - v.p1)), alternative=side(v, effect)))


def prop_one_halfwidth(v: SimpleNamespace) -> float:
    method = {"wald": "normal", "clopper-pearson": "beta", "jeffreys": "jeffreys", "wilson": "wilson",
              "agresti-coull": "agresti_coull"}.get(v.interval)
    if method is None or v.continuity != "no":
        raise NotImplementedError
    lower, upper = sm_proportion.proportion_confint(v.p1 * v.n, v.n, 1 - v.confidence, method)
    return float(upper - lower) / 2


def prop_paired_power(v: SimpleNamespace) -> float:
    effect, discordant = v.p10 - v.p01, v.p10 + v.p01
    if v.method == "exact":
        n, power = int(v.n), 0.0
        for pairs, probability in enumerate(stats.binom.pmf(np.arange(n + 1), n, discordant)):
            rejected = binomial_rejections(pairs, 0.5, *tails(v, effect))
            power += probability * np.sum(stats.binom.pmf(np.arange(pairs + 1), pairs, v.p10 / discordant)[rejected])
        return float(power)
    return float(sm_power.normal_power_het(
        effect, v.n, v.alpha, std_null=math.sqrt(discordant),
        std_alternative=math.sqrt(discordant - effect**2), alternative=side(v, effect)))


def prop_paired_halfwidth(v: SimpleNamespace) -> float:
    if v.continuity != "no" or v.interval == "agresti-min":
        raise NotImplementedError
    n, p10, p01 = v.n, v.p10, v.p01
    if v.interval == "bonett-price":
        n, p10, p01 = v.n + 2, (v.p10 * v.n + 1) / (v.n + 2), (v.p01 * v.n + 1) / (v.n + 2)
    return quantile(v) * math.sqrt((p10 + p01 - (p10 - p01) ** 2) / n)


def prop_two_power(v: SimpleNamespace) -> float:
    effect, (n1, n2) = v.p1 - v.p2, two(v)
    if v.continuity != "no":
        raise NotImplementedError
    if v.method == "approximate":
        if v.statistic != "chi-square":
            raise NotImplementedError
        unpooled = math.sqrt(v.p1 * (1 - v.p1) / n1 + v.p2 * (1 - v.p2) / n2)
        if v.variance == "pooled":
            found = sm_proportion.power_proportions_2indep(effect, v.p2, n1, n2 / n1, v.alpha,
                                                           alternative=side(v, effect), return_results=False)
            return float(found[0] if isinstance(found, tuple) else found)
        return normal(v, effect, effect / unpooled)
    small, large, level = tails(v, effect)
    x, y = np.meshgrid(np.arange(n1 + 1), np.arange(n2 + 1), indexing="ij")
    if v.statistic == "fisher":
        of = stats.hypergeom(n1 + n2, n1, x + y)
        rejected = ((of.cdf(x) <= level) & small) | ((of.sf(x - 1) <= level) & large)
    elif v.statistic == "chi-square":
        a, b, both = x / n1, y / n2, (x + y) / (n1 + n2)
        variance = (both * (1 - both) * (1 / n1 + 1 / n2) if v.variance == "pooled"
                    else a * (1 - a) / n1 + b * (1 - b) / n2)
        with np.errstate(divide="ignore", invalid="ignore"):
            z = np.where(a == b, 0, (a - b) / np.sqrt(variance))
        critical = stats.norm.isf(level)
        rejected = ((z < -critical) & small) | ((z > critical) & large)
    else:
        raise NotImplementedError
    probability = np.outer(stats.binom.pmf(np.arange(n1 + 1), n1, v.p1), stats.binom.pmf(np.arange(n2 + 1), n2, v.p2))
    return float(np.sum(probability[rejected]))


def prop_two_halfwidth(v: SimpleNamespace) -> float:
    method = {"wald": "wald", "agresti-caffo": "agresti-caffo", "newcombe": "newcomb"}.get(v.interval)
    if method is None or v.continuity != "no":
        raise NotImplementedError
    n1, n2 = two(v)
    lower, upper = sm_proportion.confint_proportions_2indep(
        v.p1 * n1, n1, v.p2 * n2, n2, method=method, compare="diff", alpha=1 - v.confidence)
    return float(upper - lower) / 2


# ---- Correlations and regression ------------------------------------------------------------------------


def n_of_z(v: SimpleNamespace) -> float:
    return float(v.n - getattr(v, "partialled_out", 0))


def pearson_power(v: SimpleNamespace) -> float:
    if v.bias_correction != "no":
        raise NotImplementedError
    return normal(v, v.r - v.r0, (math.atanh(v.r) - math.atanh(v.r0)) * math.sqrt(n_of_z(v) - 3))


def z_halfwidth(v: SimpleNamespace, deviation: float) -> float:
    z, width = math.atanh(v.r), quantile(v) * deviation
    return (math.tanh(z + width) - math.tanh(z - width)) / 2


def pearson_halfwidth(v: SimpleNamespace) -> float:
    if v.bias_correction != "no":
        raise NotImplementedError
    return z_halfwidth(v, 1 / math.sqrt(n_of_z(v) - 3))


def spearman_deviation(v: SimpleNamespace) -> float:
    return math.sqrt({"bonett-wright": (1 + v.r**2 / 2) / (v.n - 3), "fieller": 1.06 / (v.n - 3),
                      "caruso-cliff": 1 / (v.n - 2) + abs(math.atanh(v.r)) / (6 * v.n + 4 * math.sqrt(v.n))
                      }[v.z_variance])


def spearman_power(v: SimpleNamespace) -> float:
    return normal(v, v.r - v.r0, (math.atanh(v.r) - math.atanh(v.r0)) / spearman_deviation(v))


def spearman_halfwidth(v: SimpleNamespace) -> float:
    return z_halfwidth(v, spearman_deviation(v))


def regression_power(v: SimpleNamespace) -> float:
    if hasattr(v, "r2_reduced") or hasattr(v, "tested") or v.intercept != "yes":
        raise NotImplementedError
    f2 = v.f2 if hasattr(v, "f2") else v.r2 / (1 - v.r2)
    df1, df2 = v.predictors, v.n - v.predictors - 1
    if v.model == "fixed":
        return noncentral_f(v, df1, df2, v.n * f2)
    half, share = (v.n - 1) / 2, f2 / (1 + f2)
    x = special.betaincinv(df1 / 2, df2 / 2, 1 - v.alpha)
    k = np.arange(stats.nbinom.isf(1e-16, half, 1 - share) + 1)
    return float(np.sum(stats.nbinom.pmf(k, half, 1 - share) * special.betainc(df2 / 2, df1 / 2 + k, 1 - x)))


# ---- All of them ----------------------------------------------------------------------------------------

Peer = Callable[[SimpleNamespace], float]

#: The power and the half-width of each test, and whose they are.
PEERS: dict[str, tuple[Peer, Peer | None, str]] = {
    "anova": (anova_power, anova_halfwidth, "statsmodels; scipy"),
    "contrast": (contrast_power, contrast_halfwidth, "scipy"),
    "pairwise": (pairwise_power, pairwise_halfwidth, "scipy"),
    "t_one": (t_one_power, halfwidth_of_one_mean, "statsmodels; scipy"),
    "t_paired": (t_paired_power, halfwidth_of_one_mean, "statsmodels; scipy"),
    "t_two": (t_two_power, t_two_halfwidth, "statsmodels; scipy"),
    "z_one": (z_one_power, z_one_halfwidth, "statsmodels; scipy"),
    "prop_one": (prop_one_power, prop_one_halfwidth, "statsmodels; scipy"),
    "prop_paired": (prop_paired_power, prop_paired_halfwidth, "statsmodels; scipy"),
    "prop_two": (prop_two_power, prop_two_halfwidth, "statsmodels; scipy"),
    "partial": (pearson_power, pearson_halfwidth, "scipy"),
    "pearson": (pearson_power, pearson_halfwidth, "scipy"),
    "spearman": (spearman_power, spearman_halfwidth, "scipy"),
    "regression": (regression_power, None, "scipy"),
}


def said_by_a_peer(test: str, measure: str, values: dict[str, Any]) -> float:
    """A peer's power or half-width of a whole design; NotImplementedError where none has it."""
    arguments = tests[test].questions[measure]
    defaults = {name: argument.default for name, argument in arguments.items() if argument.default is not None}
    power, halfwidth, _ = PEERS[test]
    peer = power if measure == "power" else halfwidth
    if peer is None:
        raise NotImplementedError
    return peer(SimpleNamespace(**{**defaults, **values}))
