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

/// An F test at a level, its critical value computed once for any number of powers.
class FTest {
  public:
    FTest(double alpha, double df1, double df2, double tolerance = kNoncentralTolerance);

    /// The upper alpha quantile of the central F distribution.
    double critical() const { return critical_; }

    /// Probability that a noncentral F variable exceeds the critical value.
    /// @param noncentrality  sum of squared standardised means; where it is negative, infinite or NaN the
    ///                       probability is missing and the power 1
    double power(double noncentrality) const;

  private:
    double df1_;
    double df2_;
    double tolerance_;
    double critical_;
};

/// A t test whose critical value t leaves `tail` above it, computed once for any number of powers.
class TTest {
  public:
    TTest(double tail, double df, QuantileAccuracy accuracy = {});

    /// P(T > t) for T noncentral t.
    double power_one_sided(double noncentrality) const;

    /// P(T > t) + P(T < -t). The sum is not clipped to 1.
    double power_two_sided(double noncentrality) const;

  private:
    double df_;
    double critical_;
};

inline double f_test_power(double alpha, double df1, double df2, double noncentrality) {
    return FTest(alpha, df1, df2).power(noncentrality);
}

inline double t_test_power_one_sided(double alpha, double df, double noncentrality,
                                     QuantileAccuracy accuracy = {}) {
    return TTest(alpha, df, accuracy).power_one_sided(noncentrality);
}

/// With alpha / 2 in each tail.
inline double t_test_power_two_sided(double alpha, double df, double noncentrality,
                                     QuantileAccuracy accuracy = {}) {
    return TTest(alpha / 2, df, accuracy).power_two_sided(noncentrality);
}

}  // namespace statpower
