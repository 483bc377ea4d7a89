// What the tests of the t tests share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "orvcommon/mv.h"
#include "support/table.h"

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline const double kAboveZero = std::numeric_limits<double>::denorm_min();
inline const double kBelowOne = std::nextafter(1.0, 0.0);
inline const double kAboveOne = std::nextafter(1.0, 2.0);
inline const double kMissing = OrvCommon_940::OrvMV::Missing();

#define EXPECT_MISSING(value) EXPECT_PRED1(OrvCommon_940::OrvMV::IsMissing, value)
#define EXPECT_PRESENT(value) \
    EXPECT_PRED1([](double v) { return !OrvCommon_940::OrvMV::IsMissing(v) && std::isfinite(v); }, value)

/// Student's t for one and for two degrees of freedom, where the quantile has a closed form.
inline double t_quantile_1(double p) {
    return std::tan(std::acos(-1.0) * (p - 0.5));
}
inline double t_quantile_2(double p) {
    return (2 * p - 1) * std::sqrt(2 / (1 - (2 * p - 1) * (2 * p - 1)));
}
