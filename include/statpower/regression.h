// Multiple linear regression: does a set of predictors add to the fit?
//
// The F test of q among the p predictors of a linear regression. Fixed predictors: the noncentral F
// distribution. Random (jointly normal) predictors: the exact distribution of the sample squared partial
// multiple correlation, a negative binomial mixture of beta distributions.
//
// Arguments that recur
//   random     a StatpowerPredictors
//   intercept  true when the model has an intercept, which costs one error degree of freedom
//   N          sample size; may be fractional. With random predictors the power at an infinite one is 1
//   p, q       number of predictors in all and number tested, 1 <= q <= p
//   R2full, R2red   squared multiple correlations of the full model and of the model without the q
//              predictors, both between 0 and 1, both excluded. R2red = 0 says that there is no reduced
//              model, and then R2full is read as the multiple correlation R itself, between -1 and 1, not as
//              its square.
//   f2         effect size f^2 (Cohen), explained over unexplained variance; not checked. Negative: with
//              fixed predictors the power counts as 1, with random ones it is NaN, as for an infinite one.
//   alpha      significance level, between 0 and 1, both excluded (up to 2^-55 it counts as 0)
//   power      target power, not checked
//
// Failures. A power is -1 when an argument is refused. A sample-size search is the missing value when no N up
// to about 1e308 reaches the target, which for a target above -1 includes every search with refused
// arguments. A power or a target that is NaN reads as reached: the search answers with its lower end.
//
// Sources: J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 9;
// random predictors: R. A. Fisher, The general sampling distribution of the multiple correlation coefficient,
// Proc. R. Soc. A 121 (1928), 654-673.
#pragma once

#include "statpower/core.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Whether the values of the predictors are fixed by design or sampled. Any value other than 0 is random.
enum StatpowerPredictors { STATPOWER_FIXED_PREDICTORS = 0, STATPOWER_RANDOM_PREDICTORS = 1 };

// ---- What power has a sample size? -----------------------------------------------------------------------

/// Power for the fit of two models. With the squared partial multiple correlation
/// e = (R2full - R2red) / (1 - R2red), or R2full^2 when R2red is 0, and N - intercept - p error degrees of
/// freedom, the noncentrality for fixed predictors is N e / (1 - e).
/// @return the power; -1 unless R2full and R2red are as said above, R2red <= R2full, 1 <= q <= p,
///         p + 1 + intercept <= N and 0 < alpha < 1
STATPOWER_API double Powerbymlr(int random, bool intercept, double N, double p, double q, double R2full,
                                double R2red, double alpha);

/// Power for an effect size: noncentrality N f2 for fixed predictors, e = f2 / (f2 + 1) for random ones.
/// @return the power; -1 unless 1 <= q <= p, p + 1 + intercept <= N and 0 < alpha < 1
STATPOWER_API double PowerbymlrwES(int random, bool intercept, double N, double p, double q, double f2,
                                   double alpha);

// ---- Which sample size reaches a power? ------------------------------------------------------------------

// Neither can be cancelled. N is found to within 1e-9, at or just below the target, fractional: round it up.

/// Sample size for the fit of two models, searched from p + 1 + intercept upwards.
STATPOWER_API double PowerReversebymlr(int random, bool intercept, double power, double p, double q,
                                       double R2full, double R2red, double alpha);

/// Sample size for an effect size, searched from p + 1 + intercept upwards.
STATPOWER_API double PowerReversebymlrwES(int random, bool intercept, double power, double p, double q,
                                          double f2, double alpha);

// ---- Curves and surfaces of the power --------------------------------------------------------------------

// Powers are stored in single precision; a point that the power function refuses holds -1 (R2red above R2full
// is a curve of -1). The flags go to the power function as they are.
//
// nMin, nMax   p + intercept <= nMin <= nMax <= p + 5000, or 0 for nMin. A 0 for nMin or nMax stands for the
//              default range: from p + intercept + 1 to p + 5000 (p truncated). In a surface with random
//              predictors it is, with P the power at N, from (1 - P) N, but at least p + 2, to (2 - P) N.
// Steps        Where the random flag is exactly 1 grids are coarser. Of N, in a curve: steps of 5 for
//              nMax - nMin from 150, 10 from 500, 20 from 1000, 50 from 2000; in a surface: 2 above 99. Of
//              the effect: 0.05 in place of `step`, except in PlotESmlr. Otherwise N has steps of 1. The last
//              N reaches or passes nMax.

/// Power against N for the fit of two models.
/// @return the curve; empty unless 1 <= q <= p, 0 < alpha < 1, and nMin, nMax, R2full and R2red are as said
STATPOWER_API XYPlot PlotNmlr(int random, bool intercept, int nMin, int nMax, double p, double q,
                              double R2full, double R2red, double alpha);

/// Power against N for an effect size, a negative one (see f2) too.
/// @return the curve; empty unless 1 <= q <= p, 0 < alpha < 1, and nMin and nMax are as said
STATPOWER_API XYPlot PlotNmlrFES(int random, bool intercept, int nMin, int nMax, double p, double q,
                                 double f2, double alpha);

/// Power against the multiple correlation R = -1 + step, -1 + 2 step, ...: 2 / step truncated, minus 1
/// points; empty unless 1 <= q <= p, p + 1 + intercept <= N and 0 < alpha < 1
STATPOWER_API XYPlot PlotCorrmlr(int random, bool intercept, double N, double p, double q, double alpha,
                                 double step);

/// Power against f2 = step, 2 step, ...: the ceiling of 1 / step, minus 1 points, for every random flag.
/// @return the curve; empty unless 1 <= q <= p, p + 1 + intercept <= N and 0 < alpha < 1
STATPOWER_API XYPlot PlotESmlr(int random, bool intercept, double N, double p, double q, double alpha,
                               double step);

/// Power against N and R = -1 + step, -1 + 2 step, ...: the ceiling of 2 / step, minus 1 values of R. N,
/// R2full and R2red are checked and serve the default range.
/// @return the surface; empty unless 1 <= q <= p, p + 1 + intercept <= N, 0 < alpha < 1, and nMin, nMax,
///         R2full and R2red are as said
STATPOWER_API XYZPlot PlotNaCorrmlr(int random, bool intercept, int nMin, int nMax, double N, double p,
                                    double q, double R2full, double R2red, double alpha, double step);

/// Power against N and f2 = step, 2 step, ...: the ceiling of 1 / step, minus 1 values of f2. N is
/// checked, N and f2 serve the default range.
/// @return the surface; empty unless 1 <= q <= p, p + 1 + intercept <= N, 0 < alpha < 1, and nMin and nMax
///         are as said
STATPOWER_API XYZPlot PlotNaESmlr(int random, bool intercept, int nMin, int nMax, double N, double p,
                                  double q, double f2, double alpha, double step);

#ifdef __cplusplus
}
#endif
