// Critical values and probabilities of rejection: the steps that the tests of every family share.
#pragma once

#include "orvcommon/dist_fun.h"
#include "statpower/core.h"

namespace statpower {

/// Tolerance that the noncentral distributions are asked for, except in multiple regression.
inline constexpr double kNoncentralTolerance = 1e-12;

/// Probability above a critical value, one minus the cumulative probability. A missing one counts as certain
/// rejection: the upper tail is then 1.
double upper_tail(double cumulative);

/// Probability below a critical value. A missing one counts as 0.
double lower_tail(double cumulative);

/// The part of a level that one tail gets: half of it in a two-sided test, else all of it.
inline double tail_level(int sides, double alpha) {
    return sides == STATPOWER_TWO_SIDED ? alpha / 2 : alpha;
}

/// Critical value of a z test that leaves `tail` above it: the 1 - tail quantile of the standard normal
/// distribution.
inline double z_critical(double tail) {
    return OrvMath_940::OrvDistFun::IdfStdNorm(1 - tail);
}

/// Accuracy settings that go with a t quantile. The replacement of the common library has no need of them;
/// another one may.
struct QuantileAccuracy {
    double first = 1e-40;
    double second = 1e-30;
};

/// Critical value of a t test that leaves `tail` above it: the 1 - tail quantile of Student's t.
double t_critical(double tail, double df, QuantileAccuracy accuracy = {});

/// Power of an F test: the probability that a noncentral F variable exceeds the upper alpha quantile of the
/// central one.
/// @param noncentrality  sum of squared standardised means; where it is negative, infinite or NaN the
///                       probability is missing and the power 1
double f_test_power(double alpha, double df1, double df2, double noncentrality,
                    double tolerance = kNoncentralTolerance);

/// Power of a one-sided t test at level alpha: P(T > t_alpha) for T noncentral t.
double t_test_power_one_sided(double alpha, double df, double noncentrality, QuantileAccuracy accuracy = {});

/// Power of a two-sided t test: P(T > t) + P(T < -t), t the critical value with alpha / 2 above it. The sum
/// is not clipped to 1.
double t_test_power_two_sided(double alpha, double df, double noncentrality, QuantileAccuracy accuracy = {});

}  // namespace statpower
