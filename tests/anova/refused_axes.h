// Ends and steps of axes that every curve of a one-way design refuses.
#pragma once

#include "support/values.h"

namespace testing_support {

template <class Number>
struct Ends {
    Number min, max;
};

/// Out of order, or an end that is neither at least 2 nor exactly 0.
inline constexpr Ends<int> kRefusedSampleSizes[] = {
    {11, 10}, {1, 10}, {-1, 10}, {-3, -2}, {1, 1}, {0, 1}, {-1, 0}, {5, 0}, {kSmallestInt, kLargestInt}};

/// Out of order, NaN, or of a width that is zero or overflows.
inline constexpr Ends<double> kRefusedRanges[] = {
    {2, 1}, {1.0000000000000002, 1}, {kNaN, 1},       {1, kNaN},      {1, -1},
    {1, 1}, {-1e308, 1e308},         {-kInfinity, 1}, {1, kInfinity}, {kInfinity, kInfinity}};

/// Zero, negative, NaN, or so small that an int does not count the points.
inline constexpr double kRefusedSteps[] = {0.0, -0.25, -1.0, -5.0, kNaN, 1e-10, kSmallest};

}  // namespace testing_support
