// What the tests of curves of one proportion and of paired proportions share.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "support/curves.h"

namespace testing_support {

/// Every point of the curve is power(x) in single precision.
template <class Power>
void expect_curve(const Curve& curve, const std::vector<double>& xs, Power power) {
    EXPECT_EQ(curve.x, xs);
    ASSERT_EQ(curve.y.size(), xs.size());
    for (std::size_t i = 0; i < xs.size(); ++i) EXPECT_EQ(curve.y[i], narrowed(power(xs[i]))) << xs[i];
}

/// Every cell of the surface is power(x, y) in single precision.
template <class Power>
void expect_surface(const Surface& surface, const std::vector<double>& xs, const std::vector<double>& ys,
                    Power power) {
    EXPECT_EQ(surface.x, xs);
    EXPECT_EQ(surface.y, ys);
    ASSERT_EQ(surface.z.size(), xs.size() * ys.size());
    for (std::size_t i = 0; i < xs.size(); ++i)
        for (std::size_t j = 0; j < ys.size(); ++j)
            EXPECT_EQ(surface.at(i, j), narrowed(power(xs[i], ys[j]))) << xs[i] << ", " << ys[j];
}

/// step, 2 step, ..., count step, each less `shift`.
inline std::vector<double> steps(int count, double step, double shift = 0) {
    std::vector<double> points;
    for (int k = 1; k <= count; ++k) points.push_back(k * step - shift);
    return points;
}

}  // namespace testing_support
