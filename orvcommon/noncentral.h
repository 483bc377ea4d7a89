// The noncentral F and t distributions.
#pragma once

#include "orvcommon/numeric.h"

namespace orvmath {

/// Noncentral F distribution with df1, df2 > 0 and noncentrality >= 0, at x.
Tails noncentral_f(double x, double df1, double df2, double noncentrality);

/// Noncentral t distribution with df > 0 and noncentrality delta, at t.
Tails noncentral_t(double t, double df, double delta);

}  // namespace orvmath
