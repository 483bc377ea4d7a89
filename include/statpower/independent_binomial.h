// Two independent proportions: do the success probabilities of two groups differ?
//
// Arguments that recur
//   n1, n2     group sizes, at least 1 - tol1; fractional sizes are accepted (see below)
//   p1, p2     success probabilities of the groups, between 0 and 1, both excluded
//   alpha      significance level, between 0 and 1, both excluded
//   method     0: normal approximation; any other value: exact, the probability of all outcomes that reject.
//              Sample-size searches refine their answer for method 1 only
//   test       0: chi-square (z) test; 1: t test of the 0/1 outcomes; 2: likelihood-ratio test; any other
//              value (3 is the usual one): Fisher's test, by normal approximation in the form of the arcsine
//              transformation with continuity correction
//   sides      0: two-sided; any other value: one-sided in the direction of the true difference
//   continuityCorrection  of the chi-square test; the other tests do not use it
//   pooled     the null variance of the chi-square test (normal approximation) and the variance of the t test
//              from both groups together; the other tests do not use it
//   r          allocation ratio n2 / n1
//   cancel     asked during exact powers and during searches; may be null
//
// Peculiarities of the exact tests, kept for compatibility
// - The one-sided chi-square statistic adds the continuity correction instead of subtracting it.
// - The likelihood-ratio test does not look at the direction of the difference: its one-sided form rejects on
//   both sides, each table whose root statistic exceeds the one-sided critical value.
// - Without `pooled` the t statistic weighs the variance of each group with the size of the other one.
// - A table without any success, or without any failure, gets 0.001 successes or failures a group in the
//   chi-square and t statistics.
//
// Group sizes that are not whole, which the searches try: exact powers count successes up to the truncated
// size, with binomial probabilities continued in n by the gamma function. Fisher's test steps through the
// possible successes of the first group from both ends, max(0, t - n2) and min(t, n1), which are fractions then;
// its power at such a size serves the search and may exceed 1. Exact powers take totals n1 + n2 up to the
// largest int.
//
// Sources: J. L. Fleiss, B. Levin, M. C. Paik, Statistical Methods for Rates and Proportions, 3rd ed. (2003),
// chapters 3 and 4 (chi-square, arcsine and Fisher tests); A. Agresti, Categorical Data Analysis, 2nd ed.
// (2002), chapter 3 (likelihood-ratio test, conditional distribution, intervals); R. B. D'Agostino, W. Chase,
// A. Belanger, The American Statistician 42 (1988) 198-202 (t test of binary outcomes).
#pragma once

#include <vector>

#include "statpower/core.h"

extern "C" {

// ---- What power has a design? ----------------------------------------------------------------------------

/// Power of the test of p1 = p2 that `method` and `test` name.
/// @return the power. -1 unless all arguments are in their ranges, for the t test unless n1 + n2 > 2, for the
///         normal approximation of Fisher's test where the correction by half an observation would move a
///         proportion out of [0, 1] (n p of the larger or n (1 - p) of the smaller one below 1/2), and for
///         exact tests where n1 + n2 is not below the largest int. -2 when a binomial probability of a
///         rejecting outcome cannot be computed. The missing value when cancelled.
STATPOWER_API double PowerIndSampBinom(double n1, double n2, double p1, double p2, double alpha, int method,
                                       int test, int sides, bool continuityCorrection, bool pooled,
                                       OrvCommon_940::OrvQueryCancel* cancel);

// ---- Which sample size reaches a power? ------------------------------------------------------------------

/// Group sizes whose power reaches `power` at the allocation ratio r.
///
/// n1 is searched by PowerReverse to within 1e-9, from 2 upwards, for test 3 from where its normal
/// approximation becomes usable, and rounded up; n2 is the ceiling of r times the unrounded size, but at
/// least 1. (In the one-sided chi-square test with both continuity correction and pooled variance n2 is the
/// ceiling of r times the square of the unrounded size.) For method 1 the search is repeated below the last
/// answer until it finds nothing new (for test 3 with the exact chi-square test), and then n1 is raised from
/// the smallest answer until the exact power reaches the target by the test asked for, with n2 = r n1 rounded
/// half up, but at least 1. The target is not checked. Without a cancel object the search for a power that
/// Fisher's exact test cannot reach practically never ends.
/// @param[out] result  n1 and n2 are appended to the empty vector, the missing value twice when the search
///                     fails or is cancelled; a vector that is not empty is left as it is. Cancelled during
///                     the refinement of method 1, the sizes found before it remain.
STATPOWER_API void PowerReverseIndSampBinom(double power, double p1, double p2, double r, double alpha,
                                            std::vector<double>& result, int method, int test, int sides,
                                            bool continuityCorrection, bool pooled,
                                            OrvCommon_940::OrvQueryCancel* cancel);

// ---- How precise is the difference of the proportions? ---------------------------------------------------

/// Half-width of the 100 (1 - alpha) % confidence interval of p1 - p2. No argument is checked.
/// @param method  0: Wald; 1: Agresti and Caffo, one success and one failure added to each group; 2: the same
///                with n + 3 in the denominators of the variances; 3: half a success and half a failure
///                added; 4: unbiased variances, n - 1, plus half an observation of the smaller group; 5:
///                Newcombe's hybrid score interval
/// @param continuityCorrection  of methods 0 and 5
/// @return the half-width; 0 for any other method
STATPOWER_API double HalfCIIndSampBinom(double n1, double n2, double p1, double p2, double alpha, int method,
                                        bool continuityCorrection);

/// Group sizes whose confidence interval has the half-width `halfWidth`, at the allocation ratio r: in closed
/// form for method 0, by PowerReverse from 2 upwards to within 1e-9 for the others. No argument is checked.
/// @param[out] result  emptied, then the ceiling of n1 and the ceiling of r times the unrounded n1, but at
///                     least 2; the missing value twice when the search fails or is cancelled
/// @param method  as in HalfCIIndSampBinom; any other method gives the upper end of the first interval, 400
STATPOWER_API void PowerReversebyHalfCIIndSampBinom(double halfWidth, double p1, double p2, double r,
                                                    double alpha, std::vector<double>& result, int method,
                                                    bool continuityCorrection,
                                                    OrvCommon_940::OrvQueryCancel* cancel);

// ---- How does the power vary? ----------------------------------------------------------------------------
//
// Powers of PowerIndSampBinom, stored in single precision; -1 where it refuses a point. `step` is at most
// 0.5.

/// Power over both proportions: x = p1 and y = p2 run over step, 2 step, ..., the whole part of 1 / step,
/// minus 1, points each. p1 and p2 are checked though the grid replaces them.
/// @return the empty result unless all arguments are in their ranges
STATPOWER_API XYZPlot PlotPropIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                           bool pooled, double n1, double n2, double p1, double p2,
                                           double alpha, double step);

/// Power over the risk difference x = p1 - p2 at fixed p1: x = p1 - 1 + step, p1 - 1 + 2 step, ...; the whole
/// part of 1 / step + 1/2, minus 1, points.
/// @return the empty result unless all arguments are in their ranges
STATPOWER_API XYPlot PlotRiskDiffIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                              bool pooled, double n1, double n2, double p1, double alpha,
                                              double step);

/// Power over the risk ratio x = p1 / p2 at fixed p1, from rMin to rMax by `step` times (rMax - rMin).
/// @param rMin  greater than p1, or 0: the axis starts one increment above p1
/// @param rMax  at least rMin, at most 10
/// @return the empty result unless all arguments are in their ranges
STATPOWER_API XYPlot PlotRiskRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                               bool pooled, double n1, double n2, double p1, double alpha,
                                               double rMin, double rMax, double step);

/// Power over the odds ratio x at fixed p1, p2 = p1 / ((1 - p1) x + p1), from rMin to rMax by `step` times
/// the range.
/// @param rMin  at least 0.1, or 0: the axis starts at 1/3
/// @param rMax  at least rMin, at most 10
/// @return the empty result unless all arguments are in their ranges
STATPOWER_API XYPlot PlotOddsRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                               bool pooled, double n1, double n2, double p1, double alpha,
                                               double rMin, double rMax, double step);

/// Power over the allocation ratio x = n2 / n1 at a fixed total N: n1 = N / (x + 1), n2 = x N / (x + 1).
/// @param N     total sample size, at least 2
/// @param rMin  at least 1 / (N - 1); the axis starts there
/// @param rMax  at least rMin, at most N - 1; the last point. Where rMin or rMax is 0 the range is
///              automatic, from 1 / (N - 1) to N - 1 (method 0 with test 3: narrowed to where the
///              approximation is usable), and its ends are not plotted
/// @param step  fraction of the range
/// @return the empty result unless all arguments are in their ranges
STATPOWER_API XYPlot PlotNRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                            bool pooled, double N, double p1, double p2, double alpha,
                                            double rMin, double rMax, double step);

/// Power over both group sizes, from nMin to nMax by 1, by 5 when nMax - nMin is at least 250, by 10 when it
/// exceeds 1000; the last point is nMax.
/// @param nMin1,nMax1,nMin2,nMax2  bounds of the sizes, a minimum being 0 or at least 2. Method 0 with test 3
///                     chooses them itself: a minimum of 0 or 2 becomes the smallest usable size, a maximum
///                     of 0 or 2500 becomes the design's size above that; there any minimum is accepted
/// @param n1,n2        sizes of the design, for that choice only
/// @return the empty result unless all arguments are in their ranges
STATPOWER_API XYZPlot PlotNIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                        bool pooled, int nMin1, int nMax1, int nMin2, int nMax2, double n1,
                                        double n2, double p1, double p2, double alpha);
}
