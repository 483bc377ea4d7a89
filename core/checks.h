// Range checks that several families share.
#pragma once

#include <cmath>

namespace statpower {

/// A significance level, or a squared correlation, strictly between 0 and 1. A value up to 2^-55 is closer
/// to 0 than this test can tell and counts as 0. NaN fails.
inline bool inside_unit_interval(double value) {
    return std::abs(value - 0.5) < 0.5;
}

}  // namespace statpower
