// The one-sample t test: objectives of its searches, and its default range of the sample size.
#pragma once

#include <optional>
#include <tuple>
#include <vector>

#include "core/rejection.h"
#include "statpower/core.h"

namespace statpower {

/// The t test of one mean, or of the mean difference of pairs, at a sample size: its critical value is computed
/// once for any number of effect sizes.
class OneMeanTest {
  public:
    /// Two-sided (directional 0), refused unless N > 1; or one-sided, refused unless alpha is between 0 and 1, too.
    OneMeanTest(int directional, double N, double alpha);

    /// The missing value where the test is refused.
    double power(double es) const;

  private:
    bool one_sided_;
    double root_N_;
    std::optional<TTest> test_;
};

/// Design vector of the search for a half-width.
struct OneMeanHalfWidthSearch {
    double target, sd, alpha;
    auto fields() { return std::tie(target, sd, alpha); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Two-sided power at N minus the target. Design: EffectSearch.
STATPOWER_API double NondirectionalFunc(double N, std::vector<double> design,
                                        OrvCommon_940::OrvQueryCancel* cancel);

/// One-sided power at N minus the target. Design: EffectSearch.
STATPOWER_API double DirectionalFunc(double N, std::vector<double> design,
                                     OrvCommon_940::OrvQueryCancel* cancel);

/// N halfWidth^2 / sd^2 - t^2, negative while t sd / sqrt(N) exceeds the half-width.
/// Design: OneMeanHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfWidthCIOneSampleFunc(double N, std::vector<double> design,
                                                           OrvCommon_940::OrvQueryCancel* cancel);

/// Default range of the sample size around a design of size N with power P: from the larger of 2 and
/// (1 - P) N to (2 - P) N.
/// @param directional  nonzero: P is the one-sided power, zero: the two-sided one
STATPOWER_API void _SetPlotRangeN(double N, double mean, double sd, int& nMin, int& nMax, int directional,
                                  double mean0, double alpha);

}  // namespace POWER_NAMESPACE
