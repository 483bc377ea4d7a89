// Two independent proportions: powers by normal approximation.
//
// n1, n2: group sizes, at least 1 - tol1; p1, p2 and alpha: between 0 and 1; sides: 0 two-sided, any other
// value one-sided in the direction of the difference. Every function returns -1 for an argument out of its
// range.
#pragma once

#include "statpower/core.h"

namespace POWER_NAMESPACE {

/// Chi-square (z) test of the difference d = p1 - p2: Phi((d - z S0 - c) / S1) and its mirror image. S1 is
/// the standard error under the alternative, S0 that under the null hypothesis: the same, unless `pooled`; c
/// is the continuity correction (1/n1 + 1/n2) / 2 or 0.
STATPOWER_API double _PowerIndSamBinNormalApproxChisq(double n1, double n2, double p1, double p2, int sides,
                                                      double alpha, bool continuityCorrection, bool pooled);

/// t test of the 0/1 outcomes with n1 + n2 - 2 degrees of freedom, noncentrality d over its standard error.
/// -1 also unless n1 + n2 > 2.
STATPOWER_API double _PowerIndSamBinNormalApproxT(double n1, double n2, double p1, double p2, int sides,
                                                  double alpha, bool pooled);

/// Likelihood-ratio test: the root of the expected statistic, 2 G, as the distance of two normal
/// distributions. An infinite size is not refused, as in no other approximation: the distance cannot be
/// computed there, nor its probability, which is then taken as the number that says so.
STATPOWER_API double _PowerIndSamBinNormalApproxLRT(double n1, double n2, double p1, double p2, int sides,
                                                    double alpha);

/// Fisher's test by the arcsine transformation, each proportion moved half an observation towards the other.
/// -1 also where that would leave [0, 1], with a slack of tol1 in the group size.
STATPOWER_API double _PowerIndSamBinNormalApproxFisher(double n1, double n2, double p1, double p2, int sides,
                                                       double alpha);

}  // namespace POWER_NAMESPACE
