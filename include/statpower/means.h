// Tests of one mean, of paired means and of two independent means: t tests.
//
// Arguments that recur
//   N         sample size, or number of pairs; N1 and N2 the sizes of two groups, Ntotal their sum. Real
//             numbers: they need not be whole
//   mean, sd  mean and standard deviation of the population; mean1, sd1, mean2, sd2 those of two
//             measurements or groups
//   mean0     mean under the null hypothesis
//   corr      correlation of the two measurements of a pair
//   es        standardised effect size: a difference of means in standard deviations
//   ratio     allocation ratio N2 / N1
//   alpha     significance level
//   power     target power; never checked: a target that no sample size reaches is a failed search
//   halfWidth target half-width of the two-sided 100 (1 - alpha) % confidence interval, in the units of the
//             data; only its square counts
//
// Directions. A Nondirectional function is two-sided: its power is the probability of rejecting in either
// tail, and the sign of the effect does not matter. A Directional function is one-sided and assumes that the
// true difference lies on the side of the alternative: it takes the effect without its sign.
//
// Failures. The missing value. Conditions are tested exactly as they are worded: "unless alpha > 0" refuses a
// NaN, "when N <= 1" lets it through, and what is not mentioned is not checked. A probability that cannot be
// computed counts as 1 in the upper tail (see core.h) and as 0 in the lower one. A two-sided power is not
// clipped to 1: for an alpha that is NaN or outside [0, 2], where it is let through, the critical value is
// missing, the most negative of numbers, both tails are whole and the power is 2.
//
// Sample-size searches look for the smallest real N from 2 upwards, to within 1e-9, by PowerReverse on [2,
// 400] (whose hit at the upper end comes first: a power of exactly 1 at 400 answers a target of 1). They
// cannot be cancelled. A target that no N up to about 1e308 reaches gives the missing value.
//
// Sources: J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2, with
// the noncentral t distribution evaluated exactly; B. L. Welch, Biometrika 34 (1947) 28-35, and F. E.
// Satterthwaite, Biometrics Bulletin 2 (1946) 110-114, for unequal variances.
#pragma once

#include "statpower/core.h"

#ifdef __cplusplus
extern "C" {
#endif

// ---- One mean --------------------------------------------------------------------------------------------

/// Effect size (mean - mean0) / sd; missing when sd is exactly 0; a negative sd is accepted
STATPOWER_API double EffectSizeOneSample(double mean, double sd, double mean0);

/// Two-sided power for an effect size: noncentral t with N - 1 degrees of freedom and noncentrality sqrt(N)
/// es; missing when N <= 1; alpha is not checked
STATPOWER_API double PowerOneSampleNondirectionalES(double N, double es, double alpha);

/// One-sided power for an effect size; missing unless N > 1 and 0 < alpha < 1
STATPOWER_API double PowerOneSampleDirectionalES(double N, double es, double alpha);

/// Two-sided power for means and a standard deviation; missing unless N > 1, sd > 0 and 0 < alpha < 1
STATPOWER_API double PowerOneSampleNondirectional(double N, double mean, double sd, double mean0,
                                                  double alpha);

/// One-sided power for means and a standard deviation; missing unless N > 1, sd > 0 and 0 < alpha < 1
STATPOWER_API double PowerOneSampleDirectional(double N, double mean, double sd, double mean0, double alpha);

/// Sample size, not rounded, for a two-sided power; missing when the search fails. No argument is checked.
STATPOWER_API double PowerReverseOneSampleNondirectionalES(double power, double es, double alpha);

/// Sample size, not rounded, for a one-sided power; missing when the search fails. No argument is checked.
STATPOWER_API double PowerReverseOneSampleDirectionalES(double power, double es, double alpha);

/// Sample size that reaches a two-sided power for means and a standard deviation, not rounded.
/// @return the size; missing when the search fails and unless sd > 0 and 0 < alpha < 1
STATPOWER_API double PowerReverseOneSampleNondirectional(double power, double mean, double sd, double mean0,
                                                         double alpha);

/// Sample size that reaches a one-sided power for means and a standard deviation, not rounded.
/// @return the size; missing when the search fails and unless sd > 0 and 0 < alpha < 1
STATPOWER_API double PowerReverseOneSampleDirectional(double power, double mean, double sd, double mean0,
                                                      double alpha);

/// Smallest whole sample size whose interval of the mean is no wider than the target.
/// @return the size, rounded up; missing when the search fails. No argument is checked.
STATPOWER_API double PowerReversebyHalfCIOneSampleMeans(double halfWidth, double sd, double alpha);

/// Half-width of the interval of a mean: t(1 - alpha / 2; N - 1) sd / sqrt(N). No argument is checked: where
/// the quantile is missing the result is computed with the missing value.
STATPOWER_API double HalfCIOneSampleMeans(double N, double sd, double alpha);

// ---- Paired means ----------------------------------------------------------------------------------------
//
// The test of the differences: their standard deviation is sdd = sqrt(sd1^2 + sd2^2 - 2 corr sd1 sd2). An sd2
// of exactly 0 says that sd1 is itself the standard deviation of the differences, whatever corr is; only the
// half-width functions use the formula even then.

/// Effect size (mean1 - mean2) / sdd. Nothing is checked: a zero sdd gives the result of the division.
STATPOWER_API double EffectSizeRelated(double mean1, double sd1, double mean2, double sd2, double corr);

/// Two-sided power for an effect size: noncentral t with N - 1 degrees of freedom and noncentrality sqrt(N)
/// es; missing unless N > 1 and 0 < alpha < 1 (checked here, unlike for one mean)
STATPOWER_API double PowerRelatedNondirectionalES(double N, double es, double alpha);

/// One-sided power for an effect size; missing unless N > 1 and 0 < alpha < 1
STATPOWER_API double PowerRelatedDirectionalES(double N, double es, double alpha);

/// Two-sided power for means, standard deviations and a correlation.
/// @return missing when sd2 < 0, sd1 <= 0, corr is exactly 0 (refused on purpose), corr < -1,
///         corr > 1, N <= 1, alpha <= 0 or alpha >= 1, and when |corr| = 1 with sd1 = sd2. A correlation of 1
///         with different standard deviations is accepted.
STATPOWER_API double PowerRelatedNondirectional(double N, double mean1, double sd1, double mean2, double sd2,
                                                double corr, double alpha);

/// One-sided power for means, standard deviations and a correlation; missing when sd2 < 0, sd1 <= 0, corr is
/// exactly 0, corr < -1, corr >= 1, N <= 1, alpha <= 0 or alpha >= 1, and when corr = -1 with sd1 = sd2
STATPOWER_API double PowerRelatedDirectional(double N, double mean1, double sd1, double mean2, double sd2,
                                             double corr, double alpha);

/// Number of pairs, not rounded, for a two-sided power; missing when the search fails. Nothing is checked.
STATPOWER_API double PowerReverseRelatedNondirectionalES(double power, double es, double alpha);

/// Number of pairs, not rounded, for a one-sided power; missing when the search fails. Nothing is checked.
STATPOWER_API double PowerReverseRelatedDirectionalES(double power, double es, double alpha);

/// Number of pairs that reaches a two-sided power for means, standard deviations and a correlation, not
/// rounded; missing when the search fails and where PowerRelatedNondirectional gives it for every N
STATPOWER_API double PowerReverseRelatedNondirectional(double power, double mean1, double sd1, double mean2,
                                                       double sd2, double corr, double alpha);

/// Number of pairs that reaches a one-sided power for means, standard deviations and a correlation, not
/// rounded; missing when the search fails and where PowerRelatedDirectional gives it for every N
STATPOWER_API double PowerReverseRelatedDirectional(double power, double mean1, double sd1, double mean2,
                                                    double sd2, double corr, double alpha);

/// Smallest whole number of pairs whose interval of the mean difference is no wider than the target.
/// @return the number, rounded up; missing when the search fails. No argument is checked.
STATPOWER_API double PowerReversebyHalfCIRelatedMeans(double halfWidth, double sd1, double sd2, double corr,
                                                      double alpha);

/// Half-width of the interval of the mean difference: t(1 - alpha / 2; N - 1) sdd / sqrt(N). No argument is
/// checked.
STATPOWER_API double HalfCIRelatedMeans(double N, double sd1, double sd2, double corr, double alpha);

// ---- Two means -------------------------------------------------------------------------------------------
//
// Equal standard deviations: the pooled test, with N1 + N2 - 2 degrees of freedom and noncentrality
// es sqrt(N1 N2 / (N1 + N2)). Different ones: Welch's test, with noncentrality
// (mean1 - mean2) / sqrt(q1 + q2) for qi = sdi^2 / Ni and Welch-Satterthwaite degrees of freedom
// (q1 + q2)^2 / (q1^2 / (N1 - 1) + q2^2 / (N2 - 1)).

/// Effect size (mean1 - mean2) / sd. (The order of the arguments is not that of EffectSizeOneSample.)
/// @return missing when sd is exactly 0
STATPOWER_API double EffectSizeIndependent(double mean1, double mean2, double sd);

/// Two-sided power for means; missing unless N1 > 1, N2 > 1, sd1 > 0, sd2 > 0 and 0 < alpha < 1
STATPOWER_API double PowerIndependentNondirectional(double N1, double mean1, double sd1, double N2,
                                                    double mean2, double sd2, double alpha);

/// One-sided power for means; missing unless N1 > 1, N2 > 1, sd1 > 0, sd2 > 0 and 0 < alpha < 1
STATPOWER_API double PowerIndependentDirectional(double N1, double mean1, double sd1, double N2, double mean2,
                                                 double sd2, double alpha);

/// Two-sided power of the pooled test for an effect size; missing when N1 <= 1, and then, for the
/// ratio N2 / N1, when ratio <= 0, ratio N1 <= 1, alpha <= 0 or alpha >= 1
STATPOWER_API double PowerIndependentNondirectionalES(double N1, double N2, double es, double alpha);

/// One-sided power of the pooled test for an effect size; missing unless N1 > 1, N2 > 1 and 0 < alpha < 1
STATPOWER_API double PowerIndependentDirectionalES(double N1, double N2, double es, double alpha);

#ifdef __cplusplus
// The searches write [size of group 1, size of group 2] behind what the vector `sizes` holds: with R the size
// of group 1 that is found, the ceiling of R and the ceiling of ratio R, but at least 2; the missing value
// twice when the search fails. Arguments are not checked: where a power is missing, as with one observation
// or less in a group, the sample counts as too small.

/// Group sizes that reach a two-sided power for means and standard deviations.
/// @param[in,out] sizes  left as it is, and nothing is searched, unless it is empty
STATPOWER_API void PowerReverseIndependentNondirectional(double power, double ratio, double mean1, double sd1,
                                                         double mean2, double sd2, double alpha,
                                                         std::vector<double>& sizes);

/// Group sizes that reach a two-sided power for an effect size.
/// @param[in,out] sizes  need not be empty
STATPOWER_API void PowerReverseIndependentNondirectionalES(double power, double ratio, double es,
                                                           double alpha, std::vector<double>& sizes);

/// Group sizes that reach a one-sided power for means and standard deviations.
/// @param[in,out] sizes  left as it is, and nothing is searched, unless it is empty
STATPOWER_API void PowerReverseIndependentDirectional(double power, double ratio, double mean1, double sd1,
                                                      double mean2, double sd2, double alpha,
                                                      std::vector<double>& sizes);

/// Group sizes that reach a one-sided power for an effect size.
/// @param[in,out] sizes  need not be empty
STATPOWER_API void PowerReverseIndependentDirectionalES(double power, double ratio, double es, double alpha,
                                                        std::vector<double>& sizes);

/// Group sizes whose interval of the mean difference is no wider than the target at R and ratio R; a small
/// group 2 that is then raised to 2 observations can make it wider again. For different standard deviations
/// the search compares squares in the units of the data, and 1e-14 counts as equal: half-widths below about
/// 1e-6 want a smaller unit.
/// @param[in,out] sizes  need not be empty
STATPOWER_API void PowerReversebyHalfCIIndependentMeans(double halfWidth, double ratio, double sd1,
                                                        double sd2, double alpha, std::vector<double>& sizes);
#endif

/// Half-width of the interval of the mean difference: t(1 - alpha / 2; df) sqrt(q1 + q2), with the pooled or
/// Welch's degrees of freedom as above. No argument is checked.
STATPOWER_API double HalfCIIndependentMeans(double N1, double sd1, double N2, double sd2, double alpha);

// ---- Curves ----------------------------------------------------------------------------------------------
//
// Powers are stored in single precision, coordinates in full. (In the four functions over a ratio a missing
// point is replaced, see there.)
//
// directional   a StatpowerSides
// nLow, nHigh   range of the sample size, every whole number of it; in a surface, where nHigh - nLow is above
//               999, every second one, and the last one may be nHigh + 1. There is no default range.
// esLow, esHigh range of the effect size, refused when esLow >= esHigh and, two-sided, when esLow < 0. An
//               esLow of exactly -5 leaves the lower end open: 0 for two-sided curves, -5 for one-sided ones.
// stepFraction  width of a step as a fraction of the range; the last point is exactly the upper end
// unused        never read

/// Power over N; empty when sd <= 0, nLow < 2, nHigh <= nLow, alpha <= 0 or alpha >= 1
STATPOWER_API XYPlot PlotNOneSample(int nLow, int nHigh, int directional, double unused, double mean,
                                    double sd, double mean0, double alpha);

/// Power over N for an effect size; empty when nLow < 2, nHigh <= nLow, alpha <= 0 or alpha >= 1
STATPOWER_API XYPlot PlotNOneSampleFES(int nLow, int nHigh, int directional, double es, double alpha);

/// Power over the effect size; empty when N <= 1, alpha <= 0 or alpha >= 1, and for a refused range of es
STATPOWER_API XYPlot PlotESOneSample(int directional, double N, double esLow, double esHigh, double alpha,
                                     double stepFraction);

/// Power over effect size (x) and N (y); empty when nLow < 2, nHigh <= nLow, alpha <= 0 or alpha >= 1, and
/// for a refused range of es
STATPOWER_API XYZPlot PlotNaESOneSample(int nLow, int nHigh, int directional, double esLow, double esHigh,
                                        double alpha, double stepFraction);

/// Power over the number of pairs. Correlations of 1 and more that the power refuses give a curve of missing
/// points.
/// @return the curve; empty when sd2 < 0, sd1 <= 0, corr is exactly 0, corr < -1, nLow < 2, nHigh <= nLow,
///         alpha <= 0 or alpha >= 1, and when |corr| = 1 with sd1 = sd2
STATPOWER_API XYPlot PlotNRelated(int nLow, int nHigh, int directional, double unused, double mean1,
                                  double sd1, double mean2, double sd2, double corr, double alpha);

/// Power over the number of pairs for an effect size.
/// @return the curve; empty when nLow < 2, nHigh <= nLow, alpha <= 0 or alpha >= 1
STATPOWER_API XYPlot PlotNRelatedFES(int nLow, int nHigh, int directional, double es, double alpha);

/// Power over the effect size; empty when N <= 1, alpha <= 0 or alpha >= 1, and for a refused range of es
STATPOWER_API XYPlot PlotESRelated(int directional, double N, double esLow, double esHigh, double alpha,
                                   double stepFraction);

/// Power over effect size (x) and number of pairs (y); empty when nLow < 2, nHigh <= nLow, alpha <= 0 or
/// alpha >= 1, and for a refused range of es
STATPOWER_API XYZPlot PlotNaESRelated(int nLow, int nHigh, int directional, double esLow, double esHigh,
                                      double alpha, double stepFraction);

/// Power of the pooled test over the effect size; empty when N1 <= 1, N2 <= 1, alpha <= 0 or alpha >= 1, and
/// for a refused range of es
STATPOWER_API XYPlot PlotESIndepended(int directional, double N1, double N2, double esLow, double esHigh,
                                      double alpha, double stepFraction);

/// Power of Welch's test, even for equal standard deviations, over the difference of the means.
/// @param mean1,mean2     used only for the default range
/// @param diffLow,diffHigh  range of the difference; when diffHigh <= diffLow it is five times
///                        |mean1 - mean2| to either side of 0, or [-100, 100] for equal means
/// @param diffStep        width of a step, in the units of the data; the last point is exactly the upper end
/// @return the curve; empty unless N1 > 1, N2 > 1, sd1 > 0, sd2 > 0, 0 < alpha < 1 and diffStep > 0, and for
///         a range that is NaN
STATPOWER_API XYPlot PlotMeanDiffIndepended(int directional, double N1, double mean1, double sd1, double N2,
                                            double mean2, double sd2, double diffLow, double diffHigh,
                                            double alpha, double diffStep);

// Curves over the allocation ratio r at a fixed Ntotal: N1 = Ntotal / (r + 1) and N2 = r N1.
//
// ratioLow, ratioHigh  range of the ratio. When either is 0 it is [1 / h, h] with h = 0.8 (Ntotal - 2).
//
// There are ceil(1 / stepFraction) steps, even in a range of zero width. A power outside [0, 1], a missing
// one included, is replaced at every point but the first of a curve or of a row of a surface: by the value
// stored for the point before (so a missing first point is handed on), in the first row of a surface by the
// second coordinate of the point before, narrowed like a power.

/// Power over the ratio, of the pooled test for equal standard deviations, else of Welch's test; empty unless
/// Ntotal > 1, 1 / (Ntotal - 1) < ratioLow <= ratioHigh < Ntotal - 1, sd1 > 0, sd2 > 0 and 0 < alpha < 1
STATPOWER_API XYPlot PlotRatioIndependent(int directional, double Ntotal, double mean1, double sd1,
                                          double mean2, double sd2, double ratioLow, double ratioHigh,
                                          double alpha, double stepFraction);

/// Power of the pooled test over the ratio for an effect size; empty when Ntotal <= 1,
/// ratioLow <= 1 / (Ntotal - 1), ratioLow > ratioHigh, ratioHigh >= Ntotal - 1, alpha <= 0 or alpha >= 1
STATPOWER_API XYPlot PlotRatioIndependentFES(int directional, double Ntotal, double es, double ratioLow,
                                             double ratioHigh, double alpha, double stepFraction);

/// Power of the pooled test over ratio (x) and effect size (y); both axes have the same number of points;
/// empty when Ntotal <= 1, ratioLow >= ratioHigh, alpha <= 0 or alpha >= 1, and for a refused range of es
STATPOWER_API XYZPlot PlotRatioaESIndependent(int directional, double Ntotal, double ratioLow,
                                              double ratioHigh, double esLow, double esHigh, double alpha,
                                              double stepFraction);

/// Power of Welch's test, even for equal standard deviations, over ratio (x) and difference of the means (y).
/// The second axis has steps twice as wide: ceil(0.5 / stepFraction) of them.
/// @param diffLow,diffHigh  as in PlotMeanDiffIndepended, with its default range
/// @return the surface; empty unless Ntotal > 1, ratioLow <= ratioHigh, sd1 > 0, sd2 > 0 and 0 < alpha < 1,
///         and for a range of differences that is NaN
STATPOWER_API XYZPlot PlotRatioaMeanDiffIndependent(int directional, double Ntotal, double mean1, double sd1,
                                                    double mean2, double sd2, double ratioLow,
                                                    double ratioHigh, double diffLow, double diffHigh,
                                                    double alpha, double stepFraction);

#ifdef __cplusplus
}
#endif
