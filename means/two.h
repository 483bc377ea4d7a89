// The independent-samples t test: its power by total size and allocation ratio, and the objectives of its
// searches.
#pragma once

#include <tuple>
#include <vector>

#include "statpower/core.h"

namespace statpower {

// ---- Design vectors of the sample-size searches ----------------------------------------------------------

struct TwoMeansSearch {
    double target, ratio, mean1, sd1, mean2, sd2, alpha;
    auto fields() { return std::tie(target, ratio, mean1, sd1, mean2, sd2, alpha); }
};

struct TwoMeansEffectSearch {
    double target, ratio, es, alpha;
    auto fields() { return std::tie(target, ratio, es, alpha); }
};

struct TwoMeansHalfWidthSearch {
    double target, ratio, sd1, sd2, alpha;
    auto fields() { return std::tie(target, ratio, sd1, sd2, alpha); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Two-sided power of the unequal-variance (Welch) t test for a total size and an allocation ratio N2 / N1;
/// Welch-Satterthwaite degrees of freedom even where the standard deviations are equal.
/// @param diff  mean1 - mean2
/// @return the missing value when alpha <= 0, alpha >= 1, sd2 <= 0, sd1 <= 0 or ratio <= 0, or when a group
///         has at most one observation
STATPOWER_API double _PowerIndependentNondirectional(double Ntotal, double ratio, double diff, double sd1,
                                                     double sd2, double alpha);

/// The same, one-sided; the sign of diff does not matter.
STATPOWER_API double _PowerIndependentDirectional(double Ntotal, double ratio, double diff, double sd1,
                                                  double sd2, double alpha);

// Objectives: N is the size of group 1, ratio * N that of group 2.

/// Two-sided power minus the target. Design: TwoMeansSearch.
STATPOWER_API double PowerIndependentNondirectionalFunc(double N, std::vector<double> design,
                                                        OrvCommon_940::OrvQueryCancel* cancel);

/// One-sided power minus the target. Design: TwoMeansSearch.
STATPOWER_API double IndependentDirectionalFunc(double N, std::vector<double> design,
                                                OrvCommon_940::OrvQueryCancel* cancel);

/// Two-sided power minus the target. Design: TwoMeansEffectSearch.
STATPOWER_API double IndependentNondirectionalESFunc(double N, std::vector<double> design,
                                                     OrvCommon_940::OrvQueryCancel* cancel);

/// One-sided power minus the target. Design: TwoMeansEffectSearch.
STATPOWER_API double IndependentDirectionalESFunc(double N, std::vector<double> design,
                                                  OrvCommon_940::OrvQueryCancel* cancel);

/// halfWidth^2 N - t^2 (sd2^2 / ratio + sd1^2), divided by sd1^2 where the standard deviations are equal;
/// negative while the half-width at N is wider than the target.
/// Design: TwoMeansHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfWidthCIIndependentFunc(double N, std::vector<double> design,
                                                             OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
