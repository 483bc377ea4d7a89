// One proportion: the default range of the sample size.
#pragma once

#include "statpower/core.h"

namespace POWER_NAMESPACE {

/// Range of the sample size around the design (N, p1, p0) of power P: from floor((1 - P) N), but at least 1,
/// to ceil((2 - P) N).
STATPOWER_API void _SetPlotRangeN(double N, double p1, double p0, int method, int sides, double alpha,
                                  int& nMin, int& nMax, bool continuityCorrection);

}  // namespace POWER_NAMESPACE
