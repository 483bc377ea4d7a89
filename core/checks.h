// Range checks that several families share. Significance levels are checked in three ways, which differ in
// what a caller sees of NaN and of the smallest doubles.
#pragma once

#include <cmath>

namespace statpower {

/// A significance level or a proportion, 0 and 1 excluded. NaN is not.
inline bool is_between_0_and_1(double value) {
    return value > 0 && value < 1;
}

/// A significance level that is refused; NaN goes on to the distributions.
inline bool is_refused_level(double alpha) {
    return alpha <= 0 || alpha >= 1;
}

/// A significance level, or a squared correlation, strictly between 0 and 1. A value up to 2^-55 is closer
/// to 0 than this test can tell and counts as 0. NaN is not.
inline bool is_inside_unit_interval(double value) {
    return std::abs(value - 0.5) < 0.5;
}

}  // namespace statpower
