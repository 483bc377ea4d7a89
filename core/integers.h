// From doubles to ints without undefined behaviour.
#pragma once

#include <cmath>
#include <limits>

namespace statpower {

/// Truncation towards zero; beyond the range of int the nearest int, NaN gives 0.
inline int to_int(double value) {
    if (std::isnan(value)) return 0;
    if (value >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    if (value <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

}  // namespace statpower
