// Range checks that several families share.
#pragma once

#include <cmath>

namespace statpower {

/// A significance level, or a squared correlation, strictly between 0 and 1. Levels below 2^-55 are closer to
/// 0 than this test can tell and count as 0. NaN fails.
inline bool inside_unit_interval(double value) {
    return std::abs(value - 0.5) < 0.5;
}

}  // namespace statpower
