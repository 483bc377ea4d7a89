// Values at the edges of what a function takes, and what it gives back for them.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "orvcommon/mv.h"

namespace testing_support {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kSmallest = std::numeric_limits<double>::denorm_min();
inline const double kBelowOne = std::nextafter(1.0, 0.0);
inline const double kAboveOne = std::nextafter(1.0, 2.0);
inline const double kBelowTwo = std::nextafter(2.0, 0.0);
inline const double kMissing = OrvCommon_940::OrvMV::Missing();
inline constexpr int kLargestInt = std::numeric_limits<int>::max();
inline constexpr int kSmallestInt = std::numeric_limits<int>::min();

}  // namespace testing_support

#define EXPECT_MISSING(value) EXPECT_PRED1(OrvCommon_940::OrvMV::IsMissing, value)
#define EXPECT_PRESENT(value) \
    EXPECT_PRED1([](double v) { return !OrvCommon_940::OrvMV::IsMissing(v) && std::isfinite(v); }, value)
