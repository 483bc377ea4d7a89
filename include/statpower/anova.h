// One-way analysis of variance: do k group means differ?
//
// Arguments that recur
//   k        number of groups, at least 2
//   means    k doubles, the group means
//   sizes    k doubles, the group sizes; in the sample-size functions allocation weights, of which only the
//            proportions matter
//   sigma    common standard deviation within the groups, greater than 0
//   alpha    significance level, between 0 and 1, both excluded
//   power    target power; not checked: a target that no sample size reaches is a failed search, see below
//   es       effect size, of the kind that esType names; not checked
//   esType   a StatpowerEffect: which measure es is
//   groupSizes  the caller's vector, resized to k elements and filled with the size of each group; left as it
//            is when an argument is refused
//   coefficients  k doubles, the contrast: they sum to zero, and in most uses lie in [-1, 1]
//   directional  a StatpowerSides: the two-sided F test of the contrast or the one-sided t test
//   nMin, nMax  ends of the axis of the total sample size, nMin <= nMax, each of them 2 or more, or 0 for
//            "the library chooses" (both ends, see below). A curve has every whole number of it. A surface,
//            whose first axis it is, has every second one where nMax - nMin is 1000 or more, and the last
//            one may exceed nMax by one
//   sdMin, sdMax, esMin, esMax  ends of the axis of the standard deviation or the effect size, in order; 0
//            has a meaning of its own, see below
//   step     spacing of a continuous axis as a fraction of its width, greater than 0 (for example 0.05)
//
// Failures. An argument outside the range that its function checks gives the missing value. A sample-size
// search that fails (a target that no total below 2^1023 reaches) is not reported as such: the missing value
// is negative and goes through the rounding below like any other total, so the caller sees the smallest
// allocation, 2 in every group and a total of 2k (unless weights are negative): compare the power of the
// answer with the target.
//
// A power whose noncentrality is negative, infinite or NaN (an infinite mean, negative weights, a proportion
// of variance of 1 or more or below 0) cannot be computed and counts as 1.
//
// Ranges that the library chooses. If nMin or nMax is 0, both ends are: with P the power of the design at its
// current sizes and N their sum, from (1 - P) N rounded down to (2 - P) N rounded up, kept where the smallest
// group has at least 2 observations and the largest at most 5000. If sdMin or sdMax is 0, the standard
// deviation runs from D / 5 to 5 D, D^2 = sum of sizes[i] (means[i] - m)^2 with m the size-weighted grand
// mean. If esMax is 0, the effect size runs from 0, whatever esMin is, to 2 for f and 1 for a proportion of
// variance. A range that comes out reversed, or is of zero width and divided into steps, gives the empty
// result.
//
// Source of the powers: J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988),
// chapter 8 (contrasts: S. E. Maxwell and H. D. Delaney, Designing Experiments and Analyzing Data, 2nd ed.
// (2004), chapter 4); the noncentral distributions are evaluated exactly instead of by tables.
#pragma once

#include "statpower/core.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Measure of the effect of the overall test. Any value other than 0 is the proportion of variance.
enum StatpowerEffect {
    STATPOWER_COHENS_F = 0,           ///< root mean square standardised effect f
    STATPOWER_VARIANCE_EXPLAINED = 1  ///< proportion of variance explained, f^2 / (1 + f^2)
};

/// Adjustment of the level of one comparison for all k (k - 1) / 2 pairs.
enum StatpowerAdjustment {
    STATPOWER_BONFERRONI = 0,  ///< 2 alpha / (k (k - 1))
    STATPOWER_SIDAK = 1,       ///< 1 - (1 - alpha)^(2 / (k (k - 1)))
    STATPOWER_UNADJUSTED = 2   ///< alpha
};

// ---- Overall F test: what power has a design? ------------------------------------------------------------

/// Power of the overall F test for group means, sizes and a common standard deviation: P(F > F_alpha) with
/// k - 1 and N - k degrees of freedom, N the sum of the sizes, and noncentrality
/// lambda = sum of (sizes[i] / N) (means[i] - m)^2 / (sigma^2 / N), m the size-weighted grand mean.
/// @return the power; missing unless k >= 2, sigma > 0, N >= k and 0 < alpha < 1. At N = k no error
///         degree of freedom is left: the power cannot be computed and counts as 1.
STATPOWER_API double PowerOverallTest(int k, const double* means, const double* sizes, double sigma,
                                      double alpha);

/// Power of the overall F test for an effect size: noncentrality N es^2 for f, N es / (1 - es) for a
/// proportion of variance; missing unless k >= 2, N >= k and 0 < alpha < 1. es is not checked.
STATPOWER_API double PowerOverallTestwES(int k, int esType, const double* sizes, double es, double alpha);

// ---- Overall F test: which effect does a design represent? -----------------------------------------------

/// Root mean square standardised effect: the root of the unweighted sum of (means[i] - m)^2 over k - 1,
/// divided by sigma, with m the size-weighted grand mean. (The mixture of a weighted mean and an unweighted
/// sum is the definition of this measure.)
/// @return the effect; missing unless k >= 2, sigma > 0 and 0 < alpha < 1 (alpha plays no other part)
STATPOWER_API double RMSSEOverallTest(int k, const double* means, const double* sizes, double sigma,
                                      double alpha);

// ---- Overall F test: which sample size reaches a power? --------------------------------------------------

#ifdef __cplusplus
/// Allocation whose power reaches a target. The total N is searched from 2k upwards (but 2k + 400, the first
/// guess, is taken if its power is exactly the target) and found from below to within 1e-6; group i gets the
/// ceiling of sizes[i] / (sum of sizes) times N, but at least 2. Where rounding up adds next to nothing, the
/// power can fall short of the target by what 1e-6 of an observation is worth.
/// @return the total, 2k after a failed search; missing unless k >= 2, sigma > 0 and 0 < alpha < 1
STATPOWER_API double PowerReverseOverallTest(int k, const double* means, const double* sizes,
                                             std::vector<double>* groupSizes, double sigma, double power,
                                             double alpha);

/// Allocation whose power for an effect size reaches a target, searched and allocated as in
/// PowerReverseOverallTest; missing unless k >= 2 and 0 < alpha < 1. es is not checked. A failed search: 2k.
STATPOWER_API double PowerReverseOverallTestwES(int k, int esType, const double* sizes,
                                                std::vector<double>* groupSizes, double es, double power,
                                                double alpha);
#endif

// ---- Overall F test: how precise is a group mean? --------------------------------------------------------

/// Half-width of the two-sided 100 (1 - alpha) % confidence interval of a mean at total sample size N:
/// t(1 - alpha / 2; N - k) sigma / sqrt(N). No argument is checked: where the quantile is missing (N at most
/// k, alpha outside [0, 2]) the result is computed with the missing value.
STATPOWER_API double HalfCIOverallTest(int k, double N, double sigma, double alpha);

#ifdef __cplusplus
/// Allocation whose half-width does not exceed a target (in the units of the data, not checked). The total N
/// is searched from 2k upwards to within 1e-9 and allocated as in PowerReverseOverallTest, but each share is
/// sizes[i] times N divided by the sum of the sizes, in this order.
/// @return the sum of the group sizes; missing unless k >= 2, sigma > 0 and 0 < alpha < 1
STATPOWER_API double PowerReversebyHalfCIOverallTest(int k, const double* sizes,
                                                     std::vector<double>* groupSizes, double halfWidth,
                                                     double sigma, double alpha);
#endif

// ---- Overall F test: how does power vary? ----------------------------------------------------------------

/// Power over the total sample size, split over the groups in the proportions of the sizes; a point below k
/// is missing. Empty unless k >= 2, sigma > 0, 0 < alpha < 1 and nMin and nMax are in range
STATPOWER_API XYPlot PlotNOverallTest(int k, const double* means, const double* sizes, int nMin, int nMax,
                                      double sigma, double alpha);

/// Power for an effect size over the total sample size; a point below k is missing. Empty unless k >= 2,
/// 0 < alpha < 1 and nMin and nMax are in range. es is not checked.
STATPOWER_API XYPlot PlotNOverallTestFES(int k, int esType, const double* sizes, int nMin, int nMax,
                                         double es, double alpha);

/// Power over the effect size at the current sizes, stored in single precision. The axis runs from esMin in
/// steps of step (esMax - esMin), as many as cover the width. For f (esType 0) the point after the last step,
/// at esMax or beyond it by less than a step, is included; for a proportion of variance it is left out.
/// @return the curve; empty unless k >= 2, esMin <= esMax, 0 < alpha < 1 and the step divides a range
STATPOWER_API XYPlot PlotESOverallTest(int k, int esType, const double* sizes, double esMin, double esMax,
                                       double alpha, double step);

/// Power over the standard deviation at the current sizes, stored in single precision. The axis runs from
/// sdMin in steps of step (sdMax - sdMin), and its last point is exactly sdMax.
/// @param sigma  only checked
/// @return the curve; a point that is not positive is missing. Empty unless k >= 2, sigma > 0,
///         sdMin <= sdMax, 0 < alpha < 1 and the step divides a range
STATPOWER_API XYPlot PlotSDOverallTest(int k, const double* means, const double* sizes, double sigma,
                                       double sdMin, double sdMax, double alpha, double step);

/// Power over the total sample size and the standard deviation (as in PlotSDOverallTest).
/// @param sigma  current standard deviation, used where the library chooses the sample sizes
/// @return the surface; empty unless k >= 2, sigma > 0, sdMin <= sdMax, alpha > 0, nMin and nMax are in range
///         and the step divides a range. Alpha is not checked against 1: every power is then missing.
STATPOWER_API XYZPlot PlotNaSDOverallTest(int k, const double* means, const double* sizes, int nMin, int nMax,
                                          double sigma, double sdMin, double sdMax, double alpha,
                                          double step);

/// Power over the total sample size and the effect size (as in PlotESOverallTest).
/// @param es  current effect size, used where the library chooses the sample sizes
/// @return the surface; empty unless k >= 2, esMin <= esMax, alpha > 0, nMin and nMax are in range and the
///         step divides a range. Alpha is not checked against 1: every power is then missing.
STATPOWER_API XYZPlot PlotNaESOverallTest(int k, int esType, const double* sizes, int nMin, int nMax,
                                          double es, double esMin, double esMax, double alpha, double step);

// ---- Contrasts: which effect does a design represent? ----------------------------------------------------

/// Standardised contrast psi / sigma, psi = sum of coefficients[i] means[i].
/// @param[in,out] coefficients  where they do not sum to zero (within 1e-14), the last one is overwritten
///                              with minus the sum of the others. So does every function below that takes
///                              them without const.
/// @return the effect; missing when the overwritten coefficient lies outside [-1, 1] (coefficients that sum
///         to zero are not looked at), unless sigma > 0 (checked after the coefficients) or for k below 1
STATPOWER_API double EffectSizeSC(int k, const double* means, double* coefficients, double sigma);

// ---- Contrasts: what power has a design? -----------------------------------------------------------------

/// Power of the test of a contrast at total N, the sum of the sizes: noncentrality
/// lambda = (psi / sigma)^2 / Q with Q = sum of coefficients[i]^2 / sizes[i]. Two-sided: P(F > F_alpha) with
/// 1 and N - k degrees of freedom. One-sided: P(T > t_alpha) with N - k degrees of freedom and noncentrality
/// sqrt(lambda), so always in the direction of the contrast.
/// @param[in,out] coefficients  repaired as in EffectSizeSC, but not when an argument is refused. An effect
///                              that EffectSizeSC reports as missing is used as it comes, a huge number, so
///                              that the power is 1.
/// @return the power; missing unless k >= 2, sigma > 0, N >= k and 0 < alpha < 1
STATPOWER_API double PowerSC(int k, const double* means, const double* sizes, double* coefficients,
                             int directional, double sigma, double alpha);

/// Power of the test of a contrast for an effect size es = psi / sigma; the coefficients are used as they
/// are; missing unless k >= 2, N >= k and 0 < alpha < 1. es is not checked.
STATPOWER_API double PowerSCwES(int k, const double* sizes, const double* coefficients, int directional,
                                double es, double alpha);

// ---- Contrasts: which sample size reaches a power? -------------------------------------------------------

#ifdef __cplusplus
/// Allocation whose power reaches a target, searched and allocated as in PowerReverseOverallTest.
/// Coefficients that do not sum to zero are repaired as in EffectSizeSC, but in a copy; where that fails
/// every power counts as 1, and the smallest allocation is the answer.
/// @return the total, 2k after a failed search; missing unless k >= 2, sigma > 0 and 0 < alpha < 1
STATPOWER_API double PowerReverseSC(int k, const double* means, const double* sizes,
                                    const double* coefficients, std::vector<double>* groupSizes,
                                    int directional, double sigma, double power, double alpha);

/// Allocation whose power for an effect size es = psi / sigma reaches a target; the coefficients are used as
/// they are; missing unless k >= 2 and 0 < alpha < 1. es is not checked. A failed search: 2k.
STATPOWER_API double PowerReverseSCwES(int k, const double* sizes, const double* coefficients,
                                       std::vector<double>* groupSizes, int directional, double es,
                                       double power, double alpha);
#endif

// ---- Contrasts: how precise is the estimate? -------------------------------------------------------------

/// Half-width of the two-sided 100 (1 - alpha) % confidence interval of psi at total sample size N:
/// sqrt(W Q / N) t(1 - alpha / 2; N - k) sigma, with W the sum of the sizes and Q as in PowerSC (the sizes
/// are rescaled to the total N). No argument is checked: where the quantile is missing (N at most k, alpha
/// outside [0, 2]) the result is computed with the missing value.
STATPOWER_API double HalfCISCTest(int k, const double* sizes, const double* coefficients, double N,
                                  double sigma, double alpha);

#ifdef __cplusplus
/// Allocation whose half-width does not exceed a target (in the units of the data, not checked),
/// searched and allocated as in PowerReversebyHalfCIOverallTest. The coefficients are used as they are.
/// @return the sum of the group sizes; missing unless k >= 2, sigma > 0 and 0 < alpha < 1
STATPOWER_API double PowerReversebyHalfCISCTest(int k, const double* sizes, const double* coefficients,
                                                std::vector<double>* groupSizes, double halfWidth,
                                                double sigma, double alpha);
#endif

// ---- Contrasts: how does power vary? ---------------------------------------------------------------------
// The powers are evaluated in the order of the points, and each may repair the coefficients for the next.

/// Power over the total sample size, split over the groups in the proportions of the sizes.
/// @param[in,out] coefficients  repaired as in EffectSizeSC by the first power whose N is at least k
/// @return the curve; a point below k is missing. Empty unless k >= 2, sigma > 0, 0 < alpha < 1 and nMin and
///         nMax are in range
STATPOWER_API XYPlot PlotNSC(int k, const double* means, const double* sizes, double* coefficients, int nMin,
                             int nMax, int directional, double sigma, double alpha);

/// Power over the total sample size for an effect size es = psi / sigma (not checked). This curve has no
/// default range: an end of 0 is a sample size of 0, whose power is missing.
/// @return the curve; empty unless k >= 2, 0 < alpha < 1 and nMin and nMax are in range
STATPOWER_API XYPlot PlotNSCFES(int k, const double* sizes, const double* coefficients, int nMin, int nMax,
                                int directional, double es, double alpha);

/// Power over the standard deviation at the current sizes, stored in single precision. The axis runs from
/// sdMin in steps of step (sdMax - sdMin), and its last point is exactly sdMax.
/// @param[in,out] coefficients  repaired as in EffectSizeSC by the first power whose standard deviation is
///            positive
/// @param sigma  only checked
/// @return the curve; a point that is not positive is missing. Empty unless k >= 2, sigma > 0,
///         sdMin <= sdMax, 0 < alpha < 1 and the step divides a range
STATPOWER_API XYPlot PlotSDSC(int k, const double* means, const double* sizes, double* coefficients,
                              int directional, double sigma, double sdMin, double sdMax, double alpha,
                              double step);

/// Power over the total sample size and the standard deviation (as in PlotSDSC).
/// @param[in,out] coefficients  repaired as in EffectSizeSC by the first power that is not refused
/// @param sigma  current standard deviation, used where the library chooses the sample sizes
/// @return the surface; empty unless sigma > 0, sdMin <= sdMax, 0 < alpha < 1, nMin and nMax are in range and
///         the step divides a range. The number of groups is not checked: below 2 every power is missing, and
///         a range that the library chooses can come out empty.
STATPOWER_API XYZPlot PlotNaSDSC(int k, const double* means, const double* sizes, double* coefficients,
                                 int nMin, int nMax, int directional, double sigma, double sdMin,
                                 double sdMax, double alpha, double step);

// ---- Pairwise differences --------------------------------------------------------------------------------
// The comparison of group i with group j is the contrast of +1 and -1, always tested two-sided, at a level
// adjusted for the k (k - 1) / 2 pairs.
//   i, j     groups compared, counted from 1, 1 <= i < j <= k. That j is at most k is not checked: an index
//            that no group has sets no coefficient.
//   method   a StatpowerAdjustment of the level
//   sd       common standard deviation within the groups, greater than 0

/// Standardised difference of the means of group i and group j, over sd.
/// @param unused  not read; may be null
/// @return the effect; missing unless k >= 2, 1 <= i < j and sd > 0
STATPOWER_API double EffectSizePairwiseDiff(int k, const double* means, const double* unused, int i, int j,
                                            double sd);

/// Power of the comparison at the adjusted level, that of PowerSC; missing unless k >= 2,
/// 1 <= i < j, sd > 0, 0 < alpha < 1, the method is known and the sum of the sizes is at least k
STATPOWER_API double PowerPairwiseDiff(int k, const double* means, const double* sizes, int i, int j,
                                       int method, double sd, double alpha);

#ifdef __cplusplus
/// Allocation whose power for the comparison reaches a target, as PowerReverseSC.
/// @param groupSizes  left as it is when an argument is refused, but resized to k elements before the method
///                    is looked at: those that it already had keep their values, new ones are missing
/// @return the sum of the group sizes; missing unless k >= 2, 1 <= i < j, sd > 0, 0 < alpha < 1 and
///         the method is known. A failed search: 2k.
STATPOWER_API double PowerReversePairwiseDiff(int k, const double* means, const double* sizes, int i, int j,
                                              std::vector<double>& groupSizes, int method, double sd,
                                              double power, double alpha);
#endif

/// Half-width of the confidence interval of the difference at total sample size N and the adjusted level, as
/// HalfCISCTest; missing for an unknown method. No other argument is checked.
STATPOWER_API double HalfCIPairwiseDiff(int k, const double* sizes, int i, int j, int method, double N,
                                        double sd, double alpha);

#ifdef __cplusplus
/// Allocation whose half-width for the difference does not exceed a target, as PowerReversebyHalfCISCTest.
/// The indices are not checked.
/// @param groupSizes  as in PowerReversePairwiseDiff
/// @return the sum of the group sizes; missing unless k >= 2, sd > 0, 0 < alpha < 1 and the method is known
STATPOWER_API double PowerReversebyHalfCIPairwiseDiff(int k, const double* sizes, int i, int j,
                                                      std::vector<double>& groupSizes, int method,
                                                      double halfWidth, double sd, double alpha);
}
#endif
