// Two independent proportions: do the success probabilities of two groups differ?
//
// Arguments that recur
//   n1, n2     group sizes, at least 1 - tol1; fractional sizes are accepted (see below)
//   p1, p2     success probabilities of the groups, between 0 and 1, both excluded
//   alpha      significance level, between 0 and 1, both excluded
//   method     a StatpowerMethod; exact is the probability of all outcomes that reject. Sample-size searches
//              refine their answer for exactly STATPOWER_EXACT only
//   test       a StatpowerTwoProportionsTest
//   sides      a StatpowerSides; one-sided is in the direction of the true difference
//   continuityCorrection  of the chi-square test; the other tests do not use it
//   pooled     the null variance of the chi-square test (normal approximation) and the variance of the t test
//              from both groups together; the other tests do not use it
//   r          allocation ratio n2 / n1
//   step       spacing of an axis, or fraction of its range, greater than 0 and at most 0.5
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
// possible successes of the first group from both ends, max(0, t - n2) and min(t, n1), which are fractions
// then; its power at such a size serves the search and may exceed 1. Exact powers take totals n1 + n2 up to
// the largest int.
//
// Sources: J. L. Fleiss, B. Levin, M. C. Paik, Statistical Methods for Rates and Proportions, 3rd ed. (2003),
// chapters 3 and 4 (chi-square, arcsine and Fisher tests); A. Agresti, Categorical Data Analysis, 2nd ed.
// (2002), chapter 3 (likelihood-ratio test, conditional distribution, intervals); R. B. D'Agostino, W. Chase,
// A. Belanger, The American Statistician 42 (1988) 198-202 (t test of binary outcomes).
#pragma once

#include "statpower/core.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Test of two proportions. Any other value is Fisher's test.
enum StatpowerTwoProportionsTest {
    STATPOWER_CHI_SQUARE = 0,        ///< chi-square (z) test
    STATPOWER_T_OF_PROPORTIONS = 1,  ///< t test of the 0/1 outcomes
    STATPOWER_LIKELIHOOD_RATIO = 2,  ///< likelihood-ratio test
    /// Fisher's test, by normal approximation in the form of the arcsine transformation with continuity
    /// correction.
    STATPOWER_FISHER = 3
};

/// Confidence interval of the difference of two proportions.
enum StatpowerTwoProportionsInterval {
    STATPOWER_TWO_PROPORTIONS_WALD = 0,            ///< without or with continuity correction
    STATPOWER_TWO_PROPORTIONS_AGRESTI_CAFFO = 1,   ///< one success and one failure added to each group
    STATPOWER_TWO_PROPORTIONS_AGRESTI_CAFFO3 = 2,  ///< the same with n + 3 under the variances
    STATPOWER_TWO_PROPORTIONS_HALF_ADDED = 3,      ///< half a success and half a failure added
    /// Unbiased variances, n - 1, plus half an observation of the smaller group.
    STATPOWER_TWO_PROPORTIONS_UNBIASED = 4,
    STATPOWER_TWO_PROPORTIONS_HYBRID_SCORE = 5  ///< Newcombe's, without or with continuity correction
};

// ---- What power has a design? ----------------------------------------------------------------------------

/// Power of the test of p1 = p2 that `method` and `test` name.
/// @return the power. -1 unless n1 and n2 are at least 1 - tol1 and p1, p2 and alpha between 0 and 1, for the
///         t test unless n1 + n2 > 2, for the normal approximation of Fisher's test where the correction by
///         half an observation would move a proportion out of [0, 1] (n p of the larger or n (1 - p) of the
///         smaller one below 1/2), and for exact tests where n1 + n2 is not below the largest int. -2 when a
///         binomial probability of a rejecting outcome cannot be computed. The missing value when cancelled.
STATPOWER_API double PowerIndSampBinom(double n1, double n2, double p1, double p2, double alpha, int method,
                                       int test, int sides, bool continuityCorrection, bool pooled,
                                       StatpowerCancel* cancel);

// ---- Which sample size reaches a power? ------------------------------------------------------------------

#ifdef __cplusplus
/// Group sizes whose power reaches `power` at the allocation ratio r.
///
/// n1 is searched by PowerReverse to within 1e-9, from 2 upwards, for test 3 from where its normal
/// approximation becomes usable, and rounded up; n2 is the ceiling of r times the unrounded size, but at
/// least 1. (In the one-sided chi-square test with both continuity correction and pooled variance n2 is the
/// ceiling of r times the square of the unrounded size.) For method 1 the search is repeated below the last
/// answer until it finds nothing new (for test 3 with the exact chi-square test), and then n1 is raised from
/// the smallest answer until the exact power reaches the target by the test asked for, with n2 = r n1 rounded
/// half up, but at least 1. The target is not checked. A power above the level at equal proportions, which
/// Fisher's exact test cannot reach, is the missing value at once.
/// @param[out] result  n1 and n2 are appended to the empty vector, the missing value twice when the search
///                     fails or is cancelled; a vector that is not empty is left as it is. Cancelled during
///                     the refinement of method 1, the sizes found before it remain.
STATPOWER_API void PowerReverseIndSampBinom(double power, double p1, double p2, double r, double alpha,
                                            std::vector<double>& result, int method, int test, int sides,
                                            bool continuityCorrection, bool pooled, StatpowerCancel* cancel);
#endif

// ---- How precise is the difference of the proportions? ---------------------------------------------------

/// Half-width of the 100 (1 - alpha) % confidence interval of p1 - p2. No argument is checked.
/// @param method  a StatpowerTwoProportionsInterval
/// @param continuityCorrection  of the Wald and the hybrid score interval
/// @return the half-width; 0 for any other method
STATPOWER_API double HalfCIIndSampBinom(double n1, double n2, double p1, double p2, double alpha, int method,
                                        bool continuityCorrection);

#ifdef __cplusplus
/// Group sizes whose confidence interval has the half-width `halfWidth`, at the allocation ratio r: in closed
/// form for method 0, by PowerReverse from 2 upwards to within 1e-9 for the others. No argument is checked.
/// @param[out] result  emptied, then the ceiling of n1 and the ceiling of r times the unrounded n1, but at
///                     least 2; the missing value twice when the search fails or is cancelled
/// @param method  a StatpowerTwoProportionsInterval; any other value gives 400, the upper end of the first
///                interval
/// @param continuityCorrection  of the Wald and the hybrid score interval
STATPOWER_API void PowerReversebyHalfCIIndSampBinom(double halfWidth, double p1, double p2, double r,
                                                    double alpha, std::vector<double>& result, int method,
                                                    bool continuityCorrection, StatpowerCancel* cancel);
#endif

// ---- How does the power vary? ----------------------------------------------------------------------------
//
// Powers of PowerIndSampBinom, stored in single precision; -1 where it refuses a point.

/// Power over both proportions: x = p1 and y = p2 run over step, 2 step, ..., the whole part of 1 / step,
/// minus 1, points each. p1 and p2 are checked though the grid replaces them.
/// @return the surface; empty unless n1, n2, p1, p2, alpha and step are in range
STATPOWER_API XYZPlot PlotPropIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                           bool pooled, double n1, double n2, double p1, double p2,
                                           double alpha, double step);

/// Power over the risk difference x = p1 - p2 at fixed p1: x = p1 - 1 + step, p1 - 1 + 2 step, ...; the whole
/// part of 1 / step + 1/2, minus 1, points. Empty unless n1, n2, p1, alpha and step are in range
STATPOWER_API XYPlot PlotRiskDiffIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                              bool pooled, double n1, double n2, double p1, double alpha,
                                              double step);

/// Power over the risk ratio x = p1 / p2 at fixed p1, from rMin to rMax by `step` times (rMax - rMin).
/// @param rMin  greater than p1, or 0: the axis starts one increment above p1
/// @param rMax  at least rMin, at most 10
/// @return the curve; empty unless n1, n2, p1, alpha, step, rMin and rMax are in range
STATPOWER_API XYPlot PlotRiskRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                               bool pooled, double n1, double n2, double p1, double alpha,
                                               double rMin, double rMax, double step);

/// Power over the odds ratio x at fixed p1, p2 = p1 / ((1 - p1) x + p1), from rMin to rMax by `step` times
/// the range.
/// @param rMin  at least 0.1, or 0: the axis starts at 1/3
/// @param rMax  at least rMin, at most 10
/// @return the curve; empty unless n1, n2, p1, alpha, step, rMin and rMax are in range
STATPOWER_API XYPlot PlotOddsRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                               bool pooled, double n1, double n2, double p1, double alpha,
                                               double rMin, double rMax, double step);

/// Power over the allocation ratio x = n2 / n1 at a fixed total N: n1 = N / (x + 1), n2 = x N / (x + 1).
/// @param N     total sample size, at least 2
/// @param rMin  at least 1 / (N - 1); the axis starts there
/// @param rMax  at least rMin, at most N - 1; the last point. Where rMin or rMax is 0 the range is automatic,
///            from 1 / (N - 1) to N - 1 (method 0 with test 3: narrowed to where the approximation is
///            usable), and its ends are not plotted
/// @param step  fraction of the range
/// @return the curve; empty unless p1, p2, alpha, step, N, rMin and rMax are in range
STATPOWER_API XYPlot PlotNRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                            bool pooled, double N, double p1, double p2, double alpha,
                                            double rMin, double rMax, double step);

/// Power over both group sizes, from nMin to nMax by 1, by 5 when nMax - nMin is at least 250, by 10 when it
/// exceeds 1000; the last point is nMax.
/// @param nMin1,nMax1,nMin2,nMax2  bounds of the sizes, a minimum being 0 or at least 2 and at most its
///            maximum. Method 0 with test 3 chooses them itself: a minimum of 0 or 2 becomes the smallest
///            usable size, a maximum of 0 or 2500 becomes the design's size above that; there any minimum
///            will do
/// @param n1,n2  sizes of the design, for that choice only
/// @return the surface; empty unless n1, n2, p1, p2, alpha and the bounds are in range
STATPOWER_API XYZPlot PlotNIndSampBinom(int method, int test, int sides, bool continuityCorrection,
                                        bool pooled, int nMin1, int nMax1, int nMin2, int nMax2, double n1,
                                        double n2, double p1, double p2, double alpha);

#ifdef __cplusplus
}
#endif
