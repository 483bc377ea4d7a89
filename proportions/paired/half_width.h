// Paired proportions: the objective of the search for a half-width.
#pragma once

#include <tuple>
#include <vector>

#include "statpower/core.h"

namespace statpower {

/// Design vector of the search for a half-width.
struct PairedProportionsHalfWidthSearch {
    double target, p1, p2;
    int method;
    double alpha;
    bool continuity_correction;
    auto fields() { return std::tie(target, p1, p2, method, alpha, continuity_correction); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Target minus the half-width at N for the methods 1 and 2, 0 for any other: Wald intervals have a closed
/// form. Design: PairedProportionsHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfCIRelSampBinom(double N, std::vector<double> design,
                                                     OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
