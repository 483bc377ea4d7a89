// Powers that are none: proportions, correlations and regressions say so by a negative number, means by the
// missing value.
#pragma once

namespace statpower {

/// An argument is out of its range.
inline constexpr double kInvalid = -1;

/// A binomial operation of the distribution library failed.
inline constexpr double kDistributionFailure = -2;

}  // namespace statpower
