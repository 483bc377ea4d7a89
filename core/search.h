// The sample-size searches of every family: a design, its objective and where to look.
#pragma once

#include <vector>

#include "core/design.h"
#include "statpower/core.h"

namespace statpower {

/// How closely a sample size is searched.
inline constexpr double kSizeTolerance = 1e-9;

/// How far the first upper end of a search lies above the smallest size, or above 0.
inline constexpr double kFirstReach = 400;

/// Size between `low` and `high`, or above, at which a steady objective changes its sign.
template <class Design>
double search_size(const Design& design, POWER_NAMESPACE::Objective objective,
                   OrvCommon_940::OrvQueryCancel* cancel, double low, double high,
                   double tolerance = kSizeTolerance) {
    return PowerReverse(pack(design), objective, cancel, low, high, tolerance);
}

// ---- Powers that grow with the sample size --------------------------------------------------------------

/// About where a power reaches its target: the sample size, and the slope of the normal quantile of the power in
/// the square root of the size. NaN where there is no telling.
struct SteadyStart {
    double size;
    double slope;
};

/// The start for a t test.
/// @param tail     the level of one tail
/// @param rate     noncentrality at N = 1, which grows with the square root of N
/// @param df_rate  degrees of freedom per observation, about
SteadyStart t_test_start(double target, double tail, double rate, double df_rate = 1);

/// The start for an F test.
/// @param rate  noncentrality at N = 1, which grows with N
SteadyStart f_test_start(double target, double alpha, double df1, double rate);

/// The answer of PowerReverse to the last bit from a few evaluations, for the library's own powers that grow with
/// N. PowerReverse itself answers where the start is of no use.
double search_steady(const std::vector<double>& design, POWER_NAMESPACE::Objective objective, double low,
                     double high, double tolerance, const SteadyStart& start);

/// As search_size above, for such a power.
template <class Design>
double search_size(const Design& design, POWER_NAMESPACE::Objective objective, const SteadyStart& start,
                   double low, double high, double tolerance = kSizeTolerance) {
    return search_steady(pack(design), objective, low, high, tolerance, start);
}

}  // namespace statpower
