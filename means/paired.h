// The related-samples t test: what a paired design must satisfy, and the objectives of its searches.
#pragma once

#include <tuple>
#include <vector>

#include "statpower/core.h"

namespace statpower {

/// Whether a paired design is refused whatever its size and direction: sd2 < 0, sd1 <= 0, a correlation of
/// exactly 0 or below -1, a perfect correlation (of either sign) of equal standard deviations, alpha <= 0 or
/// alpha >= 1. Upper bounds of the correlation depend on the direction and are checked where it is known.
bool paired_design_refused(double sd1, double sd2, double corr, double alpha);

/// Design vector of the search for a half-width.
struct PairedMeansHalfWidthSearch {
    double target, sd1, sd2, corr, alpha;
    auto fields() { return std::tie(target, sd1, sd2, corr, alpha); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Two-sided power at N pairs minus the target. Design: EffectSearch.
STATPOWER_API double RelatedNondirectionalFunc(double N, std::vector<double> design,
                                               OrvCommon_940::OrvQueryCancel* cancel);

/// One-sided power at N pairs minus the target. Design: EffectSearch.
STATPOWER_API double RelatedDirectionalFunc(double N, std::vector<double> design,
                                            OrvCommon_940::OrvQueryCancel* cancel);

/// N halfWidth^2 / sdd^2 - t^2, sdd the standard deviation of the differences; negative while t sdd / sqrt(N)
/// exceeds the half-width. Design: PairedMeansHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfWidthCIRelatedFunc(double N, std::vector<double> design,
                                                         OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
