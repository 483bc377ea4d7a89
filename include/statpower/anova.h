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
//   esType   0: es is the root mean square standardised effect f; any other value: es is the proportion of
//            variance explained, f^2 / (1 + f^2)
//   groupSizes  the caller's vector, resized to k elements and filled with the size of each group; left as it
//            is when an argument is refused
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
// Source of the powers: J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988),
// chapter 8; the noncentral F distribution is evaluated exactly instead of by its tables.
#pragma once

#include <vector>

#include "statpower/core.h"

extern "C" {

// ---- Overall F test: what power has a design? ------------------------------------------------------------

/// Power of the overall F test for group means, sizes and a common standard deviation: P(F > F_alpha) with
/// k - 1 and N - k degrees of freedom, N the sum of the sizes, and noncentrality
/// lambda = sum of (sizes[i] / N) (means[i] - m)^2 / (sigma^2 / N), m the size-weighted grand mean.
/// @return the power; the missing value unless alpha > 0, k >= 2, sigma > 0, alpha < 1 and N >= k. At N = k
///         no error degree of freedom is left: the power cannot be computed and counts as 1.
STATPOWER_API double PowerOverallTest(int k, const double* means, const double* sizes, double sigma,
                                      double alpha);

/// Power of the overall F test for an effect size: noncentrality N es^2 for f, N es / (1 - es) for a
/// proportion of variance.
/// @return as PowerOverallTest; sigma is not needed and es not checked
STATPOWER_API double PowerOverallTestwES(int k, int esType, const double* sizes, double es, double alpha);

// ---- Overall F test: which effect does a design represent? -----------------------------------------------

/// Root mean square standardised effect: the root of the unweighted sum of (means[i] - m)^2 over k - 1,
/// divided by sigma, with m the size-weighted grand mean. (The mixture of a weighted mean and an unweighted
/// sum is the definition of this measure.)
/// @return the effect; the missing value unless alpha > 0, k >= 2, sigma > 0 and alpha < 1 (alpha plays no
///         other part)
STATPOWER_API double RMSSEOverallTest(int k, const double* means, const double* sizes, double sigma,
                                      double alpha);

// ---- Overall F test: which sample size reaches a power? --------------------------------------------------

/// Allocation whose power reaches a target. The total N is searched from 2k upwards (but 2k + 400, the first
/// guess, is taken if its power is exactly the target) and found from below to within 1e-6; group i gets the
/// ceiling of sizes[i] / (sum of sizes) times N, but at least 2. Where rounding up adds next to nothing, the
/// power can fall short of the target by what 1e-6 of an observation is worth.
/// @return the sum of the group sizes; the missing value unless alpha > 0, k >= 2, sigma > 0 and alpha < 1.
///         A failed search: see the head of this file.
STATPOWER_API double PowerReverseOverallTest(int k, const double* means, const double* sizes,
                                             std::vector<double>* groupSizes, double sigma, double power,
                                             double alpha);

/// The same for an effect size.
/// @return as PowerReverseOverallTest; sigma is not needed and es not checked
STATPOWER_API double PowerReverseOverallTestwES(int k, int esType, const double* sizes,
                                                std::vector<double>* groupSizes, double es, double power,
                                                double alpha);

// ---- Overall F test: how precise is a group mean? --------------------------------------------------------

/// Half-width of the two-sided 100 (1 - alpha) % confidence interval of a mean at total sample size N:
/// t(1 - alpha / 2; N - k) sigma / sqrt(N). No argument is checked: where the quantile is missing (N at most
/// k, alpha outside [0, 2]) the result is computed with the missing value.
STATPOWER_API double HalfCIOverallTest(int k, double N, double sigma, double alpha);

/// Allocation whose half-width does not exceed a target (in the units of the data, not checked). The total N
/// is searched from 2k upwards to within 1e-9 and allocated as in PowerReverseOverallTest, but each share is
/// sizes[i] times N divided by the sum of the sizes, in this order.
/// @return the sum of the group sizes; the missing value unless alpha > 0, k >= 2, sigma > 0 and alpha < 1
STATPOWER_API double PowerReversebyHalfCIOverallTest(int k, const double* sizes,
                                                     std::vector<double>* groupSizes, double halfWidth,
                                                     double sigma, double alpha);
}
