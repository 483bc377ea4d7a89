// Power of the F test of a multiple linear regression, and the sample size that reaches a power.
#include <cmath>

#include "core/checks.h"
#include "core/rejection.h"
#include "core/result_codes.h"
#include "core/search.h"
#include "core/sums.h"
#include "orvcommon/dist_fun.h"
#include "regression/regression.h"
#include "regression/squared_correlations.h"
#include "statpower/regression.h"

using namespace statpower;
using OrvCommon_940::OrvQueryCancel;

namespace {

/// From one error degree of freedom upwards.
/// @param f2  the effect size, the noncentrality of one observation
template <class Design>
double search_size(const Design& design, POWER_NAMESPACE::Objective objective, double f2) {
    return search_size(design, objective, f_test_start(design.target, design.alpha, design.q, f2),
                       design.p + 1 + design.intercept, design.p + kFirstReach);
}

/// The squared partial multiple correlation. Without a reduced model R2full is read as the multiple correlation
/// itself.
double squared_correlation(double R2full, double R2red) {
    return R2red != 0 ? (R2full - R2red) / (1 - R2red) : square(R2full);
}

}  // namespace

// ---- Power -----------------------------------------------------------------------------------------------

statpower::PredictorTest::PredictorTest(int random, bool intercept, double N, double p, double q,
                                        double alpha)
    : is_random_(random != STATPOWER_FIXED_PREDICTORS),
      N_(N),
      q_(q),
      error_df_(N - intercept - p),
      sum_df_((N - intercept) - (p - q)) {
    if (p >= 1 && q >= 1 && q <= p && p + 1 + intercept <= N && is_inside_unit_interval(alpha))
        test_.emplace(alpha, q, error_df_, POWER_NAMESPACE::tol);
}

double statpower::PredictorTest::power_of_fit(double R2full, double R2red) const {
    if (!are_squared_correlations(R2full, R2red) || (R2red != 0 && R2red > R2full) || !test_) return kInvalid;
    const double e = squared_correlation(R2full, R2red);
    return is_random_ ? random_predictors_power(e) : test_->power(N_ * e / (1 - e));
}

double statpower::PredictorTest::power_of_effect(double f2) const {
    if (!test_) return kInvalid;
    return is_random_ ? random_predictors_power(f2 / (f2 + 1)) : test_->power(N_ * f2);
}

/// Probability that the sample squared partial multiple correlation exceeds its critical value.
/// @param e  the squared partial multiple correlation in the population
double statpower::PredictorTest::random_predictors_power(double e) const {
    const double x = 1 / (1 + error_df_ / q_ / test_->critical());  // of any quantile, 0 and infinity too
    return 1 - std::exp(POWER_NAMESPACE::_EstCseriesRoutine(x, e, q_, error_df_, sum_df_, x));
}

double Powerbymlr(int random, bool intercept, double N, double p, double q, double R2full, double R2red,
                  double alpha) {
    return PredictorTest(random, intercept, N, p, q, alpha).power_of_fit(R2full, R2red);
}

double PowerbymlrwES(int random, bool intercept, double N, double p, double q, double f2, double alpha) {
    return PredictorTest(random, intercept, N, p, q, alpha).power_of_effect(f2);
}

// ---- Sample size -----------------------------------------------------------------------------------------

namespace POWER_NAMESPACE {

double PowerbymlrFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<RegressionSearch>(design);
    return Powerbymlr(d.random, d.intercept, N, d.p, d.q, d.R2full, d.R2red, d.alpha) - d.target;
}

double PowerbymlrwESFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<RegressionEffectSearch>(design);
    return PowerbymlrwES(d.random, d.intercept, N, d.p, d.q, d.f2, d.alpha) - d.target;
}

}  // namespace POWER_NAMESPACE

double PowerReversebymlr(int random, bool intercept, double power, double p, double q, double R2full,
                         double R2red, double alpha) {
    const double e = squared_correlation(R2full, R2red);
    return search_size(RegressionSearch{power, p, q, R2full, R2red, random, intercept, alpha},
                       POWER_NAMESPACE::PowerbymlrFunc, e / (1 - e));
}

double PowerReversebymlrwES(int random, bool intercept, double power, double p, double q, double f2,
                            double alpha) {
    return search_size(RegressionEffectSearch{power, p, q, f2, random, intercept, alpha},
                       POWER_NAMESPACE::PowerbymlrwESFunc, f2);
}
