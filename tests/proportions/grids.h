// What the tests of curves share: results that release themselves, and the checks of every curve.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "statpower/core.h"

namespace testing_support {

/// A curve, copied and released.
struct Curve {
    Curve(XYPlot plot) : x(plot.x, plot.x + plot.count), y(plot.y, plot.y + plot.count) {
        EXPECT_EQ(plot.x == nullptr, plot.count == 0);
        EXPECT_EQ(plot.y == nullptr, plot.count == 0);
        FreeMemXYPlot(plot);
    }

    bool empty() const { return x.empty(); }

    std::vector<double> x;
    std::vector<double> y;
};

/// A surface, copied and released.
struct Surface {
    Surface(XYZPlot plot)
        : x(plot.x, plot.x + plot.nx), y(plot.y, plot.y + plot.ny), z(plot.z, plot.z + plot.nx * plot.ny) {
        EXPECT_EQ(plot.x == nullptr, plot.nx == 0);
        EXPECT_EQ(plot.y == nullptr, plot.ny == 0);
        EXPECT_EQ(plot.z == nullptr, plot.nx == 0);
        FreeMemXYZPlot(plot);
    }

    bool empty() const { return x.empty() && y.empty() && z.empty(); }
    double at(std::size_t i, std::size_t j) const { return z.at(i * y.size() + j); }

    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> z;
};

inline double narrowed(double power) {
    return static_cast<float>(power);
}

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

/// first, first + 1, ..., last.
inline std::vector<double> whole_numbers(double first, double last) {
    std::vector<double> numbers;
    for (double n = first; n <= last; ++n) numbers.push_back(n);
    return numbers;
}

/// step, 2 step, ..., count step, each less `shift`.
inline std::vector<double> steps(int count, double step, double shift = 0) {
    std::vector<double> points;
    for (int k = 1; k <= count; ++k) points.push_back(k * step - shift);
    return points;
}

}  // namespace testing_support
