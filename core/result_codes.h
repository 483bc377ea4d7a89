// Powers that are none, as the code names them.
#pragma once

#include "statpower/core.h"

namespace statpower {

inline constexpr double kInvalid = STATPOWER_REFUSED;
inline constexpr double kDistributionFailure = STATPOWER_DISTRIBUTION_FAILED;

}  // namespace statpower
