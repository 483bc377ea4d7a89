// Powers of tests of proportions that are none.
#pragma once

namespace statpower {

inline constexpr double kInvalid = -1;  ///< an argument is out of its range
inline constexpr double kDistributionFailure =
    -2;  ///< a binomial operation of the distribution library failed

}  // namespace statpower
