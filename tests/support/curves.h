// Curves and surfaces as values: copied, and their arrays released.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "statpower/core.h"

namespace testing_support {

struct Curve {
    std::vector<double> x, y;
};

/// A null pointer with a count of zero is what the empty result must hold.
inline bool is_empty(const XYPlot& plot) {
    return plot.count == 0 && plot.x == nullptr && plot.y == nullptr;
}
inline bool is_empty(const XYZPlot& plot) {
    return plot.nx == 0 && plot.ny == 0 && plot.x == nullptr && plot.y == nullptr && plot.z == nullptr;
}

inline Curve take(XYPlot plot) {
    Curve curve{{plot.x, plot.x + plot.count}, {plot.y, plot.y + plot.count}};
    FreeMemXYPlot(plot);
    return curve;
}

struct Surface {
    std::vector<double> x, y, z;

    double at(std::size_t i, std::size_t j) const { return z.at(i * y.size() + j); }
};

inline Surface take(XYZPlot plot) {
    const auto cells = static_cast<std::size_t>(plot.nx) * static_cast<std::size_t>(plot.ny);
    Surface surface{{plot.x, plot.x + plot.nx}, {plot.y, plot.y + plot.ny}, {plot.z, plot.z + cells}};
    FreeMemXYZPlot(plot);
    return surface;
}

}  // namespace testing_support

#define EXPECT_EMPTY(plot) EXPECT_PRED1([](auto p) { return testing_support::is_empty(p); }, plot)
