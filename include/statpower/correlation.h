// Tests of one correlation: is Pearson's, Spearman's or a partial correlation equal to a given value?
//
// All tests use Fisher's z = InvTanh(r) and the normal distribution; they differ in the mean and variance of
// z.
//
// Arguments that recur
//   sided    a StatpowerSides: one-sided at level alpha, or two-sided with alpha / 2 in each tail
//   bias     Pearson: true corrects the mean and variance of z for small samples, false does not
//   method   Spearman: the variance of z, a StatpowerSpearmanVariance
//   N        sample size, finite; may be fractional
//   k        partial correlation: number of variables partialled out, at least 0
//   r, r0    the alternative and the null correlation, from -1 to 1
//   alpha    significance level, between 0 and 1, both excluded (up to 2^-55 it counts as 0)
//   power    target power, not checked
//   step     spacing of an axis of correlations, greater than 0 and at most 0.5
//   cancel   asked by the search before every doubling and halving; may be null
//
// Failures. A power is -1 when an argument is refused. A sample-size search is the missing value when it is
// cancelled or when no N up to about 1e308 reaches the target, which for a target above -1 includes every
// search with refused arguments. A power or half-width that is NaN (a NaN target) reads as reached: the
// search answers with its lower end.
//
// Sources: R. A. Fisher, On the "probable error" of a coefficient of correlation deduced from a small sample,
// Metron 1 (1921), 3-32; the small-sample mean and variance of z: H. Hotelling, New light on the correlation
// coefficient and its transforms, J. R. Statist. Soc. B 15 (1953), 193-232.
#pragma once

#include "statpower/core.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Variance of z for Spearman's rank correlation. At r = 1 and -1 the largest finite double stands for |z|.
enum StatpowerSpearmanVariance {
    /// (1 + r^2 / 2) / (N - 3): D. G. Bonett and T. A. Wright, Psychometrika 65 (2000), 23-28.
    STATPOWER_BONETT_WRIGHT = 0,
    /// 1.06 / (N - 3): E. C. Fieller, H. O. Hartley and E. S. Pearson, Biometrika 44 (1957), 470-481.
    STATPOWER_FIELLER_HARTLEY_PEARSON = 1,
    /// 1 / (N - 2) + |z| / (6 N + 4 sqrt(N)): J. C. Caruso and N. Cliff, Educ. Psychol. Meas. 57 (1997),
    /// 637-654.
    STATPOWER_CARUSO_CLIFF = 2
};

// ---- What power has a sample size? -----------------------------------------------------------------------

/// Power for Pearson's correlation. With D the difference of z under the alternative and under the null in
/// standard deviations of z under the null, s the ratio of the two standard deviations and q the normal
/// quantile of 1 - alpha (1 - alpha / 2 when two-sided), the power is
///   one-sided, r > r0:   Phi((D - q) / s)
///   one-sided, r <= r0:  1 - Phi((q + D) / s)
///   two-sided:           the sum of both.
/// The variance of z is 1 / (N - 3). With `bias`, D includes the difference of the small-sample biases of z,
/// of which r0 / (2 (N - 1)) is the null's, and s the small-sample variance at r. At correlations of 1 and -1
/// the largest finite double stands for an infinite difference of z: positive for r = 1 or r0 = -1, which
/// decide first, negative for r = -1 or r0 = 1.
/// @return the power; -1 unless N > 3, |r| <= 1, |r0| <= 1 and 0 < alpha < 1
STATPOWER_API double PowerbyOneSampPearson(int sided, bool bias, double N, double r, double r0, double alpha);

/// Power for Spearman's rank correlation, as for Pearson's without `bias`, but with a variance of z that the
/// alternative decides and that serves the null too.
/// @param method  a StatpowerSpearmanVariance
/// @return the power; -1 unless N >= 3, |r| <= 1, |r0| <= 1, 0 < alpha < 1 and the method is one of those.
///         At N = 3, where only method 2 has a variance, every other method (an unknown one too) gives 1.
STATPOWER_API double PowerbyOneSampSpearman(int method, int sided, double N, double r, double r0,
                                            double alpha);

/// Power for a partial correlation: Pearson's with `bias` at the effective sample size N - k.
/// @return the power; -1 unless k >= 0, N > k + 3, |r| <= 1, |r0| <= 1 and 0 < alpha < 1
STATPOWER_API double PowerbyOneSampPartial(int sided, double N, double k, double r, double r0, double alpha);

// ---- Which sample size reaches a power? ------------------------------------------------------------------

// N is found to within 1e-9, at or just below the target: round it up. Only Pearson's can be cancelled.

/// Sample size for Pearson's correlation, searched from 4 upwards; 4 where that is enough.
STATPOWER_API double PowerReversebyOneSampPearson(int sided, bool bias, StatpowerCancel* cancel, double power,
                                                  double r, double r0, double alpha);

/// Sample size for Spearman's rank correlation, searched from 4 (method 2: from 3) upwards.
STATPOWER_API double PowerReversebyOneSampSpearman(int method, int sided, double power, double r, double r0,
                                                   double alpha);

/// Sample size for a partial correlation, searched from k + 3 upwards.
STATPOWER_API double PowerReversebyOneSampPartial(int sided, double power, double k, double r, double r0,
                                                  double alpha);

// ---- How precise is a correlation? -----------------------------------------------------------------------

/// Half-width of the interval of Pearson's correlation r: half the length of the two-sided 100 (1 - alpha) %
/// confidence interval tanh(z -/+ q sd), q the normal quantile of 1 - alpha / 2, of variance 1 / (N - 3);
/// with `bias`, z is reduced by r / (2 (N - 1)).
/// @return the half-width, 0 at r = 1 and -1. No argument is checked: outside its range the result is
///         undefined.
STATPOWER_API double HalfCIOneSampPearson(bool bias, double N, double r, double alpha);

/// Half-width of the interval of Spearman's rank correlation, with the variance that the method names.
/// @return the half-width, 0 at r = 1 and -1 and for an unknown method. No other argument is checked.
STATPOWER_API double HalfCIOneSampSpearman(int method, double N, double r, double alpha);

/// Half-width of the interval of a partial correlation: variance 1 / (N - 3 - k), z as it is.
/// @return the half-width, 0 at r = 1 and -1. No argument is checked.
STATPOWER_API double HalfCIOneSampPartial(double N, double k, double r, double alpha);

/// Smallest whole N whose half-width for Pearson's correlation does not exceed `halfWidth`, searched from 4
/// upwards to within 1e-9 and rounded up. Half-widths below about 1e-9 are not resolved: the difference of
/// two nearly equal correlations rounds off.
/// @return the size; the missing value when the search fails. No argument is checked.
STATPOWER_API double PowerReversebyHalfCIOneSampPearson(bool bias, StatpowerCancel* cancel, double halfWidth,
                                                        double r, double alpha);

/// Smallest whole N for Spearman's rank correlation, searched from 4 upwards for every method.
/// @return the size; the missing value when the search fails. No argument is checked.
STATPOWER_API double PowerReversebyHalfCIOneSampSpearman(int method, StatpowerCancel* cancel,
                                                         double halfWidth, double r, double alpha);

/// Smallest whole N for a partial correlation, searched from k + 4 upwards.
/// @return the size; the missing value when the search fails. No argument is checked.
STATPOWER_API double PowerReversebyHalfCIOneSampPartial(StatpowerCancel* cancel, double halfWidth, double k,
                                                        double r, double alpha);

// ---- Curves and surfaces of the power --------------------------------------------------------------------

// Powers are stored in single precision; a point that the power function refuses holds -1, so an unknown
// Spearman method is a curve of -1. Where a curve varies N, r or r0, the argument of that name is the
// design's own: it is checked, and serves a default range. In a surface the axes are named in their order.
//
// An axis of N is nMin, nMin + 1, ..., nMax; in a surface with r - r0, where nMax - nMin > 999, every second
// N, the last of which reaches or passes nMax. An axis of r or r0 is -1, -1 + step, ...: 2 / step truncated,
// plus 1 points. One of r - r0 at a fixed r0 is -1 - r0, -1 - r0 + step, ...: width / step truncated, plus 1
// points, with the width computed as (1 - r0) - (-1 - r0); in the surfaces over N and r - r0, the ceiling of
// width / (width step), plus 1 points with that step, so that r covers only -1 to about 0.

// Pearson's correlation. A size of 3 or less holds -1.

/// Power against N; empty unless nMin < nMax <= 5000, nMin is not 1, 2 or 3, N > 3 and the rest is in range
STATPOWER_API XYPlot PlotNOneSampPearson(int sided, bool bias, int nMin, int nMax, double N, double r,
                                         double r0, double alpha);

/// Power against r0; empty unless N > 3, |r| <= 1, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYPlot PlotNullOneSampPearson(int sided, bool bias, double N, double r, double alpha,
                                            double step);

/// Power against r; empty unless N > 3, |r0| <= 1, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYPlot PlotAlterOneSampPearson(int sided, bool bias, double N, double r0, double alpha,
                                             double step);

/// Power against r - r0, r0 held; empty unless N > 3, |r0| <= 1, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYPlot PlotRiskDiffOneSampPearson(int sided, bool bias, double N, double r0, double alpha,
                                                double step);

/// Power against N and r - r0, r0 held; empty unless 4 <= nMin < nMax <= 5000, N > 3 and the rest is in range
STATPOWER_API XYZPlot PlotNRiskDiffOneSampPearson(int sided, bool bias, int nMin, int nMax, double N,
                                                  double r, double r0, double alpha, double step);

/// Power against N and r0, without a default range; empty unless nMin < nMax <= 5000 or both are 0, nMin is
/// not 1, 2 or 3, N > 3 and the rest is in range
STATPOWER_API XYZPlot PlotNNullOneSampPearson(int sided, bool bias, int nMin, int nMax, double N, double r,
                                              double r0, double alpha, double step);

/// Power against N and r, without a default range; empty unless nMin < nMax <= 5000 or both are 0, nMin is
/// not 1, 2 or 3, N > 3 and the rest is in range
STATPOWER_API XYZPlot PlotNAlterOneSampPearson(int sided, bool bias, int nMin, int nMax, double N, double r,
                                               double r0, double alpha, double step);

/// Power against r0 and r; empty unless N > 3, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYZPlot PlotNullAlterOneSampPearson(int sided, bool bias, double N, double alpha, double step);

// Spearman's rank correlation. In the surfaces over N and r0 or r, a 0 for nMin or nMax stands for the
// default range: with P the power at N, from (1 - P) N, but at least 4, to (2 - P) N.

/// Power against N; empty unless 4 <= nMin < nMax <= 5000, N > 3 and the rest is in range
STATPOWER_API XYPlot PlotNOneSampSpearman(int method, int sided, int nMin, int nMax, double N, double r,
                                          double r0, double alpha);

/// Power against r0; empty unless N > 3, |r| <= 1, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYPlot PlotNullOneSampSpearman(int method, int sided, double N, double r, double alpha,
                                             double step);

/// Power against r; empty unless N > 3, |r0| <= 1, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYPlot PlotAlterOneSampSpearman(int method, int sided, double N, double r0, double alpha,
                                              double step);

/// Power against r - r0, r0 held; empty unless N > 3, |r0| <= 1, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYPlot PlotRiskDiffOneSampSpearman(int method, int sided, double N, double r0, double alpha,
                                                 double step);

/// Power against N and r - r0, r0 held; empty unless 4 <= nMin < nMax <= 5000, N > 3 and the rest is in range
STATPOWER_API XYZPlot PlotNRiskDiffOneSampSpearman(int method, int sided, int nMin, int nMax, double N,
                                                   double r, double r0, double alpha, double step);

/// Power against N and r0, with a default range of N; empty unless nMax <= 5000, nMin <= nMax or one of them
/// is 0, nMin is not 1, 2 or 3, N > 3 and the rest is in range
STATPOWER_API XYZPlot PlotNNullOneSampSpearman(int method, int sided, int nMin, int nMax, double N, double r,
                                               double r0, double alpha, double step);

/// Power against N and r, with a default range of N; empty unless nMax <= 5000, nMin <= nMax or one of them
/// is 0, nMin is not 1, 2 or 3, N > 3 and the rest is in range
STATPOWER_API XYZPlot PlotNAlterOneSampSpearman(int method, int sided, int nMin, int nMax, double N, double r,
                                                double r0, double alpha, double step);

/// Power against r0 and r; empty unless N > 3, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYZPlot PlotNullAlterOneSampSpearman(int method, int sided, double N, double alpha,
                                                   double step);

// Partial correlation. Where N varies: nMin <= nMax <= k + 5000, nMin is 0 or at least k + 4 and not nMax,
// and N > k + 3; a 0 for nMin or nMax stands for the range from k + 4 to k + 5000, k truncated.

/// Power against N; empty unless nMin, nMax and N are as said above and the rest is in range
STATPOWER_API XYPlot PlotNOneSampPartial(int sided, int nMin, int nMax, double N, double k, double r,
                                         double r0, double alpha);

/// Power against k = 0, 1, ...: N truncated, minus 4 points; empty unless N >= 5 and the rest is in range
STATPOWER_API XYPlot PlotNPartialoutOneSampPartial(int sided, double N, double r, double r0, double alpha);

/// Power against r0; empty unless k >= 0, N > k + 3, |r| <= 1, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYPlot PlotNullOneSampPartial(int sided, double N, double k, double r, double alpha,
                                            double step);

/// Power against r; empty unless k >= 0, N > k + 3, |r0| <= 1, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYPlot PlotAlterOneSampPartial(int sided, double N, double k, double r0, double alpha,
                                             double step);

/// Power against r - r0, r0 held; empty unless N > k + 3 and the rest is in range
STATPOWER_API XYPlot PlotRiskDiffOneSampPartial(int sided, double N, double k, double r0, double alpha,
                                                double step);

/// Power against N and r - r0, r0 held; empty unless nMin, nMax, N are as said above and the rest is in range
STATPOWER_API XYZPlot PlotNRiskDiffOneSampPartial(int sided, int nMin, int nMax, double N, double k, double r,
                                                  double r0, double alpha, double step);

/// Power against N and r0; empty unless nMin, nMax and N are as said above and the rest is in range
STATPOWER_API XYZPlot PlotNNullOneSampPartial(int sided, int nMin, int nMax, double N, double k, double r,
                                              double r0, double alpha, double step);

/// Power against N and r; empty unless nMin, nMax and N are as said above and the rest is in range
STATPOWER_API XYZPlot PlotNAlterOneSampPartial(int sided, int nMin, int nMax, double N, double k, double r,
                                               double r0, double alpha, double step);

/// Power against r0 and r; empty unless k >= 0, N > k + 3, 0 < alpha < 1 and 0 < step <= 0.5
STATPOWER_API XYZPlot PlotNullAlterOneSampPartial(int sided, double N, double k, double alpha, double step);

#ifdef __cplusplus
}
#endif
