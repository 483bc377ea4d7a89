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

}  // namespace statpower
