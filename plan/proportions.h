// What the tests of proportions share: measures of effect, and the proportion that each gives beside a held one.
#pragma once

#include <cmath>
#include <initializer_list>
#include <numbers>
#include <vector>

#include "plan/exact_binomial.h"
#include "plan/vocabulary.h"

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

/// The measures of effect of two proportions p and q in the words of a test.
struct Measures {
    Argument difference = risk_difference, ratio = risk_ratio, odds = odds_ratio;
};

template <const Argument& p, const Argument& q>
std::vector<Effect> measures_of(const Measures& words = {}) {
    return {{words.difference, [](const Values& v) { return v[p] - v[q]; }},
            {words.ratio, [](const Values& v) { return v[p] / v[q]; }},
            {words.odds, [](const Values& v) { return odds(v[p]) / odds(v[q]); }},
            {h, [](const Values& v) { return angle(v[p]) - angle(v[q]); }}};
}

/// A measure beside q, from which p follows.
template <const Argument& p, const Argument& q>
std::vector<Way> measures_beside_second(const Measures& words = {}) {
    return {{{q, words.difference}, [](Values& v) { v.set(p, v[q] + v[risk_difference]); }},
            {{q, words.ratio}, [](Values& v) { v.set(p, v[q] * v[risk_ratio]); }},
            {{q, words.odds}, [](Values& v) { v.set(p, from_odds(odds(v[q]) * v[odds_ratio])); }},
            {{q, h}, [](Values& v) { v.set(p, from_angle(angle(v[q]) + v[h])); }}};
}

/// A measure beside p, from which q follows.
template <const Argument& p, const Argument& q>
std::vector<Way> measures_beside_first(const Measures& words = {}) {
    return {{{p, words.difference}, [](Values& v) { v.set(q, v[p] - v[risk_difference]); }},
            {{p, words.ratio}, [](Values& v) { v.set(q, v[p] / v[risk_ratio]); }},
            {{p, words.odds}, [](Values& v) { v.set(q, from_odds(odds(v[p]) / v[odds_ratio])); }},
            {{p, h}, [](Values& v) { v.set(q, from_angle(angle(v[p]) - v[h])); }}};
}

/// All ways of some lists.
inline std::vector<Way> any_of(std::initializer_list<std::vector<Way>> lists) {
    std::vector<Way> ways;
    for (const auto& list : lists) ways.insert(ways.end(), list.begin(), list.end());
    return ways;
}

/// The tails that the alternative asks for; one-sided is the direction of the effect.
Tails tails_of(const Values& v, double effect);

/// Refuses a measure of effect from which no proportion follows beside the held one.
Check does_not_follow(const Values& v, const Argument& proportion, const Argument& held);
inline Check check_follows(const Values& v, const Argument& proportion, const Argument& held) {
    if (kInside01.holds(v[proportion]) || std::isnan(v[held])) return {};
    return does_not_follow(v, proportion, held);
}

/// The result of a function of the C interface; NaN for its failure values.
inline double found_power(double power) {
    return power >= 0 ? std::fmin(power, 1) : kNotGiven;
}

}  // namespace statplan
