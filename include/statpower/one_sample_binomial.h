// One proportion: does the success probability of N independent trials differ from a null value?
//
// Arguments that recur
//   N         number of trials, at least 1; whole in normal use. The exact test takes a fractional N as the
//             distribution library continues the binomial distribution
//   p1        the true (alternative) proportion, in [0, 1]
//   p0        the null proportion, in [0, 1]
//   alpha     significance level, between 0 and 1, both excluded
//   power     target power; not checked
//   step      spacing of an axis of proportions, greater than 0 and at most 0.5
//   method    a StatpowerMethod; of an interval, a StatpowerOneProportionInterval
//   sides     a StatpowerSides; one-sided is in the lower tail when p1 <= p0, else in the upper
//   continuityCorrection  adds 1 / (2 sqrt(N)) to the distance of the normal approximation; the exact test
//             has no use for it
//   cancel    asked by the exact test; may be null
//
// Failures of a power: -1.0 for an argument out of its range (NaN included), -2.0 when the distribution
// library fails in the exact test, the missing value when an exact test is cancelled.
//
// The exact test. Its rejection region holds the counts whose tail probability under p0 does not exceed alpha
// (alpha / 2 in each tail of a two-sided test), found by walking the cumulative distribution F from the
// outside in: the lower critical count L is the first x from -1 upwards with F(x) <= alpha < F(x + 1), the
// upper one U = j + 1 for the first j from N downwards with F(j + 1) >= 1 - alpha > F(j). A count at which
// the distribution library fails is passed over. A walk that ends without a critical count gives L = N,
// U = 0. The cancel object is asked once before every count of every walk. Without one the critical counts
// are found by bisection in microseconds at any N; with one the questions alone take time in proportion to N,
// and a search for a target that cannot be reached goes on until the object says stop.
//
// Sources: J. L. Fleiss, B. Levin and M. C. Paik, Statistical Methods for Rates and Proportions, 3rd ed.
// (2003), chapter 2 (powers); A. Agresti, Categorical Data Analysis, 3rd ed. (2013), section 1.4 (intervals).
#pragma once

#include "statpower/core.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Confidence interval of a proportion, z the normal quantile of 1 - alpha / 2.
enum StatpowerOneProportionInterval {
    STATPOWER_ONE_PROPORTION_WALD = 0,  ///< z sqrt(p (1 - p) / N); with continuity correction 0.5 / N more
    STATPOWER_ONE_PROPORTION_LOGIT_ADDED = 1,   ///< logit of the counts with 0.5 added to each
    STATPOWER_ONE_PROPORTION_LOGIT = 2,         ///< NaN at p = 0 and 1
    STATPOWER_ONE_PROPORTION_EXACT = 3,         ///< Clopper-Pearson, from beta quantiles
    STATPOWER_ONE_PROPORTION_JEFFREYS = 4,      ///< Bayesian: beta quantiles with 0.5 added to each count
    STATPOWER_ONE_PROPORTION_SCORE = 5,         ///< Wilson, without or with continuity correction
    STATPOWER_ONE_PROPORTION_ADJUSTED_WALD = 6  ///< Agresti-Coull
};

// ---- What power has a design? ----------------------------------------------------------------------------

/// Power of the test of one proportion. With s0 = sqrt(p0 (1 - p0)), s1 = sqrt(p1 (1 - p1)), the distance
/// d = (p0 - p1) sqrt(N), the correction c and the normal quantile z of 1 - alpha (two-sided 1 - alpha / 2),
/// the normal approximation adds
///     lower tail  Phi((d - s0 z - c) / s1)   and   upper tail  1 - Phi((d + s0 z + c) / s1);
/// a one-sided test has the one tail, a two-sided one always both. The exact test has the probability under
/// p1 of its rejection region: F1(L) and 1 - F1(U).
/// @return the power, or a failure value: -1.0 unless N >= 1, p0 and p1 in [0, 1] and 0 < alpha < 1.
///         At p1 = 0 and 1 the normal approximation divides by zero and the tails are 0 or 1; 0 / 0 counts as
///         a missing probability.
STATPOWER_API double PowerOneSampBinom(double N, double p1, double p0, double alpha, int method, int sides,
                                       bool continuityCorrection, StatpowerCancel* cancel);

// ---- Which sample size reaches a power? ------------------------------------------------------------------

/// Number of trials whose power reaches a target. By normal approximation it is searched from 1 upwards to
/// within 1e-9 and not rounded (the power there is just below the target); the exact one is the smallest
/// whole number that the search for saw-toothed powers finds (OptimizeRtbBionm).
/// @return the number of trials; -1.0 unless p0 and p1 are in [0, 1], |p0 - p1| > 1e-14 and 0 < alpha < 1;
///         the missing value when no sample size reaches the target or, in the exact search, when cancelled
STATPOWER_API double PowerReverseOneSampBinom(double power, double p1, double p0, double alpha, int method,
                                              int sides, bool continuityCorrection, StatpowerCancel* cancel);

// ---- How precise is an estimated proportion? -------------------------------------------------------------

/// Half-width of the two-sided 100 (1 - alpha) % confidence interval of a proportion p at N trials: half the
/// distance of its limits, which are not clipped to [0, 1].
/// @return the half-width; 0 for an unknown method. No other argument is checked: outside the domain
///         of a formula the result is NaN or computed with a missing quantile.
STATPOWER_API double HalfCIOneSampBinom(double N, double p, double alpha, int method,
                                        bool continuityCorrection);

/// Number of trials whose half-width is halfWidth, not rounded. Wald in closed form; the others searched from
/// 1 upwards to within 1e-9, the half-width there being at least the target.
/// @return the number of trials; the missing value when cancelled or when no sample size reaches the
///         half-width; 400, the upper end of the first interval, for an unknown method. Nothing else
///         is checked.
STATPOWER_API double PowerReversebyHalfCIOneSampBinom(double halfWidth, double p, double alpha, int method,
                                                      bool continuityCorrection, StatpowerCancel* cancel);

// ---- How does power vary? --------------------------------------------------------------------------------
//
// Powers are those of PowerOneSampBinom without a cancel object, in single precision; their failure values
// are stored as they come. An axis of a proportion is step, 2 step, ...: trunc(1 / step) - 1 points; one of
// differences p1 - p0 has k step - p0 instead. Where a surface varies N, p1 or p0, the argument of that name
// is the design's own: it is checked, and serves the default range. In the surfaces over N = nMin, nMin + 1,
// ..., nMax, either 0 < nMin < nMax <= 5000 or one of them is 0, which stands for the range around the design
// (N, p1, p0) of power P: from (1 - P) N, but at least 1, to (2 - P) N.

/// Power at N = nMin, nMin + 1, ..., nMax. The ends are taken literally: at 0 the power is -1.0.
/// @return the curve; empty unless 0 <= nMin < nMax <= 5000 or both are 0, and the rest is in range (N is
///         only checked)
STATPOWER_API XYPlot PlotNOneSampBinom(int method, int sides, int nMin, int nMax, bool continuityCorrection,
                                       double N, double p1, double p0, double alpha);

/// Power against the null proportion p0; empty unless N, p1, alpha and step are in range
STATPOWER_API XYPlot PlotNullOneSampBinom(int method, int sides, bool continuityCorrection, double N,
                                          double p1, double alpha, double step);

/// Power against the alternative proportion p1; empty unless N, p0, alpha and step are in range
STATPOWER_API XYPlot PlotAlterOneSampBinom(int method, int sides, bool continuityCorrection, double N,
                                           double p0, double alpha, double step);

/// Power against the difference p1 - p0 for a fixed p0; empty unless N, p0, alpha and step are in range
STATPOWER_API XYPlot PlotRiskDiffOneSampBionm(int method, int sides, bool continuityCorrection, double N,
                                              double p0, double alpha, double step);

/// Power against N (first axis) and the difference p1 - p0; empty unless all is in range
STATPOWER_API XYZPlot PlotNRiskDiffOneSampBinom(int method, int sides, int nMin, int nMax,
                                                bool continuityCorrection, double N, double p1, double p0,
                                                double alpha, double step);

/// Power against N (first axis) and the null proportion p0; empty unless all is in range
STATPOWER_API XYZPlot PlotNNullOneSampBinom(int method, int sides, int nMin, int nMax,
                                            bool continuityCorrection, double N, double p1, double p0,
                                            double alpha, double step);

/// Power against N (first axis) and the alternative proportion p1; empty unless all is in range
STATPOWER_API XYZPlot PlotNAlterOneSampBinom(int method, int sides, int nMin, int nMax,
                                             bool continuityCorrection, double N, double p1, double p0,
                                             double alpha, double step);

/// Power against the null proportion (first axis) and the alternative one; empty unless N, alpha and step are
/// in range
STATPOWER_API XYZPlot PlotNullAlterOneSampBinom(int method, int sides, bool continuityCorrection, double N,
                                                double alpha, double step);

#ifdef __cplusplus
}
#endif
