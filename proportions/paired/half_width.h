// Paired proportions: the objective of the search for a half-width.
#pragma once

#include <vector>

#include "statpower/core.h"

namespace POWER_NAMESPACE {

/// Target minus the half-width at N for the methods 1 and 2, 0 for any other: Wald intervals have a closed
/// form. Design: target half-width, p1, p2, method, alpha, continuity correction.
STATPOWER_API double _SampleSizebyHalfCIRelSampBinom(double N, std::vector<double> design,
                                                     OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
