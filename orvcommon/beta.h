// The beta family: the incomplete beta function, both tails.
#pragma once

#include "orvcommon/numeric.h"

namespace orvmath {

/// Parameters beyond this are at their limit in double precision.
inline constexpr double kHugeParameter = 1e100;

/// A point x of the Beta(a, b) distribution. What a difference would lose is kept beside: y = 1 - x, the
/// deviation from the mean b x - a y = (a + b)(x - mean), and what the rounding of x lost.
struct BetaPoint {
    double a, b, x, y, deviation, x_low = 0;

    static BetaPoint at(double x, double a, double b);

    /// The point x = a f / (a f + b) at which the distribution function of the F distribution with 2a and 2b
    /// degrees of freedom takes its value for f; f at most 1e180.
    static BetaPoint at_f(double f, double a, double b);

    /// The same point seen from the other end.
    BetaPoint mirrored() const { return {b, a, y, x, -deviation, -x_low}; }
};

/// x^a y^b Gamma(a + b) / (Gamma(a + 1) Gamma(b)), the factor in front of every form of the incomplete beta
/// function.
double beta_prefix(const BetaPoint& p);

/// About how many terms the power series of the incomplete beta function needs at the point.
double beta_series_terms(const BetaPoint& p);

/// Incomplete beta functions I_x(a, b) and I_y(b, a), given the prefix.
Tails beta_tails(const BetaPoint& p, double prefix);
inline Tails beta_tails(const BetaPoint& p) {
    return beta_tails(p, beta_prefix(p));
}

/// The beta distribution function at any x, a, b > 0.
Tails beta_cdf(double x, double a, double b);

}  // namespace orvmath
