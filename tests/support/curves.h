// Curves and surfaces as values: copied, and their arrays released.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "statpower/core.h"

namespace testing_support {

/// A null pointer with a count of zero is what the empty result must hold.
inline bool is_empty(const XYPlot& plot) {
    return plot.count == 0 && plot.x == nullptr && plot.y == nullptr;
}
inline bool is_empty(const XYZPlot& plot) {
    return plot.nx == 0 && plot.ny == 0 && plot.x == nullptr && plot.y == nullptr && plot.z == nullptr;
}

struct Curve {
    Curve(XYPlot plot) : x(plot.x, plot.x + plot.count), y(plot.y, plot.y + plot.count) {
        EXPECT_EQ(is_empty(plot), plot.count == 0);
        FreeMemXYPlot(plot);
    }
    bool empty() const { return x.empty(); }

    std::vector<double> x, y;
};

struct Surface {
    Surface(XYZPlot plot)
        : x(plot.x, plot.x + plot.nx), y(plot.y, plot.y + plot.ny), z(plot.z, plot.z + x.size() * y.size()) {
        EXPECT_EQ(is_empty(plot), plot.nx == 0);
        FreeMemXYZPlot(plot);
    }
    bool empty() const { return x.empty(); }
    double at(std::size_t i, std::size_t j) const { return z.at(i * y.size() + j); }

    std::vector<double> x, y, z;
};

inline Curve take(XYPlot plot) {
    return plot;
}
inline Surface take(XYZPlot plot) {
    return plot;
}

/// A power as most curves store it, in single precision.
inline double narrowed(double power) {
    return static_cast<float>(power);
}

/// first, first + 1, ..., last.
inline std::vector<double> whole_numbers(double first, double last) {
    std::vector<double> numbers;
    for (double n = first; n <= last; ++n) numbers.push_back(n);
    return numbers;
}

}  // namespace testing_support

#define EXPECT_EMPTY(plot) EXPECT_PRED1([](auto p) { return testing_support::is_empty(p); }, plot)
