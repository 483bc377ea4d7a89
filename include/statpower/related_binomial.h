// Paired proportions: each of N subjects gives two yes-or-no responses; are the two equally often positive?
//
// Arguments that recur
//   sided     a StatpowerSides: two-sided with alpha / 2 in each tail, or one-sided at level alpha
//   exact     a StatpowerMethod; the exact test is given the number of discordant pairs
//   cancel    asked by the exact test once for each number of discordant pairs; may be null
//   N         number of pairs, at least 2; the exact test sums up to the integer part of a fractional N
//   p1        probability of a discordant pair of the first kind: first response positive, second negative
//   p2        probability of a discordant pair of the second kind; p1 + p2 at most 1
//   pA, pB    marginal probabilities of a positive first and second response, between 0 and 1, both excluded
//   rho       correlation of the two responses, in [-1, 1]
//   alpha     significance level, between 0 and 1, both excluded
//   power     target power; not checked
//
// Cells from margins: p2 = (1 - pA) pB - rho sqrt(pA (1 - pA) pB (1 - pB)), then p1 = p2 + pA - pB; each is
// set to 0 where it is below 1e-14 in absolute value.
//
// Failures of a power: -1.0 for an argument out of its range (NaN included), -2.0 when the distribution
// library fails in the exact test, the missing value when it is cancelled.
//
// The time of an exact power is proportional to N, some binomial calls for each number of discordant pairs
// that has any weight (one without weight is not computed, and cannot fail): a search for a target that
// cannot be reached (p1 = p2, say) needs a cancel object that ends it.
//
// Sources: R. S. Connor, Biometrics 43 (1987) 207-211 (normal approximation); O. S. Miettinen, Biometrics 24
// (1968) 339-352 and S. W. Duffy, Biometrics 40 (1984) 1005-1015 (exact test); A. Agresti and Y. Min,
// Statistics in Medicine 24 (2005) 729-740 (intervals).
#pragma once

#include "statpower/core.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Confidence interval of the difference d = p1 - p2 of paired proportions, q the normal quantile of
/// 1 - alpha / 2.
enum StatpowerPairedProportionsInterval {
    /// Wald: q sqrt((p1 + p2 - d^2) / N); with continuity correction 1 / N more.
    STATPOWER_PAIRED_PROPORTIONS_WALD = 0,
    /// Adjusted Wald with one pair added to the discordant ones and two to all of them:
    /// q sqrt((s - t^2) / (N + 2)), s = ((p1 + p2) N + 1) / (N + 2), t = d N / (N + 2).
    STATPOWER_PAIRED_PROPORTIONS_ONE_PAIR_ADDED = 1,
    /// The same with two discordant pairs added, s = ((p1 + p2) N + 2) / (N + 2).
    STATPOWER_PAIRED_PROPORTIONS_TWO_PAIRS_ADDED = 2
};

// ---- What power has a design? ----------------------------------------------------------------------------

/// Power for the probabilities of the two kinds of discordant pairs, psi = p1 + p2, d = p1 - p2.
///
/// Normal approximation: with the normal quantile q of 1 - alpha (two-sided 1 - alpha / 2), A = sqrt(N) d,
/// B = q sqrt(psi) and C = |sqrt(psi - d^2)|, the tails Phi((A - B) / C) and 1 - Phi((A + B) / C): both of
/// them two-sided, the first one one-sided with p1 > p2, else the second.
///
/// Exact test: among m discordant pairs the number X of the second kind is Binomial(m, 1/2) under the null
/// hypothesis and Binomial(m, p2 / psi) under the alternative. The power is the sum over m = 1 .. N of
/// P(m discordant pairs) times the conditional probability of rejection. In the lower tail X <= k is rejected
/// for the largest k with P(X <= k) <= alpha (alpha / 2), in the upper one X > k + 1 for the largest k with
/// P(X <= k) <= 1 - alpha; one-sided in the upper tail when p2 > p1, else in the lower one. An m with an
/// empty region adds nothing, and neither does p1 = p2 = 0. The cost grows with the root of N and is bounded:
/// from some 4e9 pairs on the sum is taken over a part of the numbers of discordant pairs (to about 1e-8),
/// from 2^50 pairs on the normal approximation answers (to about 1e-7). With a cancel object it is asked once
/// for every m up to N.
/// @return the power; -1.0 unless N >= 2, p1 and p2 >= 0, p1 + p2 <= 1 and 0 < alpha < 1; 0 / 0 in the normal
///         approximation (p1 = p2 = 0) counts as a missing probability, which is an upper tail of 1
STATPOWER_API double PowerbyPRelSampBionm(int sided, int exact, StatpowerCancel* cancel, double N, double p1,
                                          double p2, double alpha);

/// Power for the counts c1 and c2 of the two kinds of discordant pairs out of N: p1 = c1 / N, p2 = c2 / N.
/// @return the power; -1.0 unless N >= 2, c1 and c2 >= 0, c1 + c2 <= N and 0 < alpha < 1
STATPOWER_API double PowerbyCRelSampBionm(int sided, int exact, double N, double c1, double c2, double alpha);

/// Power for the margins and the correlation of the responses; -1.0 unless N >= 2, pA and pB between 0 and 1,
/// rho in [-1, 1] and 0 < alpha < 1, and the cells that they give are possible (p1, p2 >= 0, p1 + p2 <= 1)
STATPOWER_API double PowerbyMargPRelSampBionm(int sided, int exact, double N, double pA, double pB,
                                              double rho, double alpha);

/// Power for the marginal counts cA and cB out of N and the correlation: pA = cA / N, pB = cB / N.
/// @return the power; -1.0 unless N >= 2, cA and cB are below N, cA cB > 0, rho in [-1, 1] and 0 < alpha < 1,
///         and the cells that they give are possible (p1, p2 >= 0, p1 + p2 <= 1)
STATPOWER_API double PowerbyMargCRelSampBionm(int sided, int exact, double N, double cA, double cB,
                                              double rho, double alpha);

// ---- Which sample size reaches a power? ------------------------------------------------------------------

/// Number of pairs whose power reaches a target. By normal approximation it is searched from 1 upwards to
/// within 1e-9, not rounded and cannot be cancelled; the exact one is the smallest whole number that the
/// search for saw-toothed powers finds (OptimizeRtbBionm).
/// @return the number of pairs; the missing value when no number of pairs reaches the target (a design that
///         the power refuses included: nothing is checked here), or when the exact search is cancelled. At
///         p1 = p2 an exact power above the level is out of reach: missing without a search.
STATPOWER_API double PowerReversebyPRelSampBionm(int sided, int exact, StatpowerCancel* cancel, double power,
                                                 double p1, double p2, double alpha);

/// Number of pairs whose power reaches a target for margins and correlation, searched as in
/// PowerReversebyPRelSampBionm.
/// @return the number of pairs; -1.0 unless pA and pB between 0 and 1, rho in [-1, 1] and 0 < alpha < 1; the
///         missing value when no number of pairs reaches the target (impossible cells included), or when the
///         exact search is cancelled
STATPOWER_API double PowerReversebyMargPRelSampBionm(int sided, int exact, StatpowerCancel* cancel,
                                                     double power, double pA, double pB, double rho,
                                                     double alpha);

// ---- How precise is an estimated difference? -------------------------------------------------------------

/// Half-width of the two-sided 100 (1 - alpha) % confidence interval of p1 - p2 at N pairs.
/// @param method  a StatpowerPairedProportionsInterval
/// @param continuityCorrection  of the Wald interval
/// @return the half-width; 0 for an unknown method. No argument is checked.
STATPOWER_API double HalfCIRelSampBinom(int method, bool continuityCorrection, double N, double p1, double p2,
                                        double alpha);

/// Number of pairs, rounded up, whose half-width is at most halfWidth. Method 0 in closed form; the others
/// searched from 1 upwards to within 1e-9.
/// @return the number of pairs; the missing value when cancelled or when no sample size reaches the
///         half-width; 400, the upper end of the first interval, for an unknown method. Nothing else
///         is checked.
STATPOWER_API double PowerReversebyHalfCIRelSampBinom(int method, bool continuityCorrection,
                                                      StatpowerCancel* cancel, double halfWidth, double p1,
                                                      double p2, double alpha);

// ---- How does power vary? --------------------------------------------------------------------------------
//
// Powers are computed without a cancel object and stored in single precision; points at which a power refuses
// its arguments hold its failure value.

/// Power at nMin, nMin + 1, ..., nMax pairs; empty unless 0 <= nMin <= nMax <= 2500, N >= 2 (only checked),
/// p1 and p2 are in [0, 1] and 0 < alpha < 1. Where p1 + p2 > 1 the points hold -1.0.
STATPOWER_API XYPlot PlotNRelSampBionm(int nMin, int nMax, int sided, int exact, double N, double p1,
                                       double p2, double alpha);

/// Power against the difference p1 - p2 for a fixed p1: the points (2 p1 - 1) + k (1 - p1) step, k = 1, 2,
/// ... inside the range that p1 leaves.
/// @return the curve; empty unless N >= 2, p1 is in [0, 1], 0 < alpha < 1 and a range is left (at p1 = 1
///         there is none)
STATPOWER_API XYPlot PlotRiskDiffRelSampBionm(int sided, int exact, double N, double p1, double alpha,
                                              double step);

/// Power against the ratio p1 / p2: p1 is held where it is at most 0.5, else p2. At the last point the first
/// probability is capped at 1 - p2.
/// @param p1,p2     in [0, 1]
/// @param low,high  ends of the range; where one of them is 0, from p1 / (1 - p1) to 3 (p1 at most 0.5) or
///                  from 1/3 to (1 - p2) / p2. high at most 10, low at least 0.1 and, where p1 is held, at
///                  least p1 / (1 - p1); where p2 is held, high at most (1 - p2) / p2
/// @param step      a fraction of the range
/// @return the curve; empty unless N >= 2, 0 < alpha < 1, step > 0 and the others are as said
STATPOWER_API XYPlot PlotRiskRatioRelSampBionm(int sided, int exact, double N, double p1, double p2,
                                               double low, double high, double alpha, double step);

/// Power against an odds ratio x for a fixed p1: the second probability is p1 / ((1 - p1) x + p1).
/// @param p1        in [0, 1]
/// @param low,high  ends of the range, low at most high; where one of them is 0, from o to o + 3 with
///                  o = (p1 / (1 - p1))^2. low at least o, high at most 10 + o
/// @param step      a fraction of the range
/// @return the curve; empty unless N >= 2, 0 < alpha < 1, step > 0 and the others are as said
STATPOWER_API XYPlot PlotOddsRatioRelSampBionm(int sided, int exact, double N, double p1, double low,
                                               double high, double alpha, double step);

/// Power against the correlation of the responses, from -1 to the largest one that the margins allow, which
/// is exactly the last point. (Equal margins allow 1; where that comes out a hair above, the point holds -1.)
/// @return the curve; empty unless N >= 2, pA, pB and alpha lie between 0 and 1, both excluded, and step > 0
STATPOWER_API XYPlot PlotCorrRelSampBionm(int sided, int exact, double N, double pA, double pB, double alpha,
                                          double step);

/// Power against p1 (first axis) and p2, both step, 2 step, ...: trunc(1 / step) - 1 points. 0 where p1 = p2
/// or p1 + p2 > 1; empty unless N >= 2, 0 < alpha < 1 and the step leaves a point
STATPOWER_API XYZPlot PlotPropRelSampBionm(int sided, int exact, double N, double alpha, double step);

/// Power against pA (first axis) and pB, the axes as in PlotPropRelSampBionm. 0 where pA + pB > 1; pA = pB is
/// computed; empty unless N >= 2, -1 < rho < 1, 0 < alpha < 1 and the step leaves a point
STATPOWER_API XYZPlot PlotMargPropRelSampBionm(int sided, int exact, double N, double rho, double alpha,
                                               double step);

#ifdef __cplusplus
}
#endif
