// The axes of the curves of a one-way design, and the ranges that stand in where the caller leaves an end
// open.
#pragma once

#include <algorithm>
#include <span>

#include "core/curves.h"
#include "core/groups.h"
#include "core/sums.h"
#include "statpower/visibility.h"

namespace statpower {

/// The ends of a sample-size axis are in order, and each is 2 or more, or 0 for an open end.
inline bool valid_ends(int nMin, int nMax) {
    return nMin <= nMax && (nMin >= 2 || nMin == 0) && (nMax >= 2 || nMax == 0);
}

/// The default range of the total N of a design with these group sizes and this power at them: core's
/// default_range, kept where the smallest group has at least 2 observations and the largest at most 5000.
SampleSizeRange default_totals(std::span<const double> sizes, double power);

/// The range of the total N: the caller's, or when either end is open the default around the current sizes,
/// where the power is power(N).
template <class Power>
SampleSizeRange total_range(int nMin, int nMax, std::span<const double> sizes, Power power) {
    if (nMin != 0 && nMax != 0) return {nMin, nMax};
    return default_totals(sizes, power(sum(sizes)));
}

/// The axis of the standard deviation. When either end is 0, both come from the spread of the means:
/// D / 5 to 5 D, with D^2 = sum of sizes[i] (means[i] - m)^2 and m the size-weighted grand mean.
Axis standard_deviations(std::span<const double> means, std::span<const double> sizes, double sdMin,
                         double sdMax, double step);

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Bounds of the total N: the smallest one with 2 observations in the smallest group, ceil(2 / pMin), and the
/// largest one with 5000 in the largest, floor(5000 / pMax), where sizes[i] / (sum of sizes) are the
/// proportions. Both 0 for k below 1.
STATPOWER_API void _MinMaxNR(int k, double* sizes, int& nMin, int& nMax);

/// Default range of the total N for the overall F test of group means.
STATPOWER_API void _SetPlotRangeN(int k, double* means, double sigma, double* sizes, int& nMin, int& nMax,
                                  double alpha);

/// Default range of the total N for the overall F test of an effect size.
STATPOWER_API void _SetPlotRangeN(int k, double es, int esType, double* sizes, int& nMin, int& nMax,
                                  double alpha);

/// Default range of the total N for a contrast. The last coefficient is repaired as in EffectSizeSC.
STATPOWER_API void _SetPlotRangeN(int k, double* means, double sigma, double* sizes, int& nMin, int& nMax,
                                  double* coefficients, int directional, double alpha);

/// Default range of the standard deviation, D / 5 to 5 D with D as in standard_deviations. Both 0 for k
/// below 1.
STATPOWER_API void _SetPlotRangeSD(int k, double* means, double* sizes, double& sdMin, double& sdMax);

}  // namespace POWER_NAMESPACE
