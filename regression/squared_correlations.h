// The effect of a regression as the fit of its full and its reduced model.
#pragma once

#include <cmath>

#include "core/checks.h"

namespace statpower {

/// With a reduced model both are squared multiple correlations, inside (0, 1); without one (R2red exactly 0)
/// R2full is a multiple correlation, inside (-1, 1).
inline bool are_squared_correlations(double R2full, double R2red) {
    if (R2red == 0) return std::abs(R2full) < 1;
    return is_inside_unit_interval(R2red) && is_inside_unit_interval(R2full);
}

}  // namespace statpower
