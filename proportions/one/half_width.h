// One proportion: the objective of the search for a half-width.
#pragma once

#include <tuple>
#include <vector>

#include "statpower/core.h"

namespace statpower {

/// Design vector of the search for a half-width.
struct OneProportionHalfWidthSearch {
    double target, p;
    int method;
    double alpha;
    bool continuity_correction;
    auto fields() { return std::tie(target, p, method, alpha, continuity_correction); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Target minus the half-width at N for the methods 1 to 6, 0 for any other: Wald intervals have a closed
/// form. Design: OneProportionHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfCIOneSampBinom(double N, std::vector<double> design,
                                                     OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
