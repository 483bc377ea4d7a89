// Proportions and axes of proportions.
#pragma once

#include <cmath>

#include "core/checks.h"
#include "core/curves.h"

namespace statpower {

inline bool is_proportion(double p) {
    return p >= 0 && p <= 1;
}

/// step, 2 step, 3 step, ..., trunc(1 / step) - 1 points, each less `shift`.
inline Axis proportion_grid(double step, double shift = 0) {
    return axis(std::trunc(1 / step) - 1, [=](double i) { return (i + 1) * step - shift; });
}

}  // namespace statpower
