// What the tests of proportions share: measures of effect, and the proportion that each gives beside a held one.
#pragma once

#include <cmath>
#include <numbers>

#include "plan/exact_binomial.h"
#include "statplan/catalogue.h"

namespace statplan {

inline double odds(double p) {
    return p / (1 - p);
}
inline double from_odds(double odds) {
    return odds / (1 + odds);
}

/// Twice the arcsine of the root; Cohen's h is a difference of two of them.
inline double angle(double p) {
    return 2 * std::asin(std::sqrt(p));
}
/// NaN where no proportion has the angle.
inline double from_angle(double angle) {
    if (!(angle >= 0 && angle <= std::numbers::pi)) return kNotGiven;
    const double root = std::sin(angle / 2);
    return root * root;
}

/// The tails that the alternative asks for; one-sided is the direction of the effect.
Tails tails_of(const Values& v, double effect);

/// Refuses a measure of effect from which no proportion follows beside the held one.
Check check_follows(const Values& v, const Argument& proportion, const Argument& held);

/// The result of a function of the C interface; NaN for its failure values.
inline double found_power(double power) {
    return power >= 0 ? std::fmin(power, 1) : kNotGiven;
}

}  // namespace statplan
