// The beta family: the incomplete beta function, both tails.
#pragma once

#include "orvcommon/numeric.h"

namespace orvmath {

/// Parameters beyond these are at their limit in double precision.
inline constexpr double kTinyParameter = 1e-100, kHugeParameter = 1e60;

/// With parameters in that range, beyond these ratios b x / y the tail is a power of the ratio in double
/// precision.
inline constexpr double kSmallestRatio = 1e-200, kLargestRatio = 1e200;

/// A point x of the Beta(a, b) distribution. What a difference would lose is kept beside: y = 1 - x, the
/// deviation from the mean b x - a y = (a + b)(x - mean), and what the rounding of x lost.
struct BetaPoint {
    double a, b, x, y, deviation, x_low = 0;

    static BetaPoint at(double x, double a, double b);

    /// The point x = r / (r + b) of the ratio r = b x / y to the parameter a at the mean; r between
    /// kSmallestRatio and kLargestRatio. (The F distribution with 2a and 2b degrees of freedom has r = a f.)
    static BetaPoint at_ratio(TwoDoubles r, double a, double b);

    /// The same point seen from the other end.
    BetaPoint mirrored() const { return {b, a, y, x, -deviation, -x_low}; }
};

/// x^a y^b Gamma(a + b) / (Gamma(a + 1) Gamma(b)), the factor in front of every form of the incomplete beta
/// function.
double beta_prefix(const BetaPoint& p);

/// Whether the power series of the incomplete beta function needs about that many terms or fewer. (They are
/// those of a negative binomial tail from a upwards with mean b x / y and variance b x / y^2, or fall at
/// least by the first ratio.)
bool beta_series_is_short(const BetaPoint& p, double terms);

/// Incomplete beta functions I_x(a, b) and I_y(b, a), given the prefix.
/// @param slack  how many times the last digit of a double the truncation of a series or fraction may leave, about
Tails beta_tails(const BetaPoint& p, double prefix, double slack = 1);

/// Mean counts (a + b) x up to which x is near its end: with a small a the fraction for the other tail is long there.
inline constexpr double kNearEnd = 1.25;

/// I_x(a, b) where it is expected to be small, given the prefix: as what the other tail leaves only near the end y = 0.
double beta_small_lower_tail(const BetaPoint& p, double prefix);

/// Both tails of a point.
inline Tails beta_tails(const BetaPoint& p) {
    return beta_tails(p, beta_prefix(p));
}

/// The beta distribution function at any x, a, b > 0.
Tails beta_cdf(double x, double a, double b);

}  // namespace orvmath
