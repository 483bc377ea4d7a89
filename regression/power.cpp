// Power of the F test of a multiple linear regression, and the sample size that reaches a power.
#include <cmath>

#include "core/checks.h"
#include "core/design.h"
#include "core/rejection.h"
#include "core/sums.h"
#include "orvcommon/dist_fun.h"
#include "regression/regression.h"
#include "regression/squared_correlations.h"
#include "statpower/regression.h"

using namespace statpower;
using OrvCommon_940::OrvQueryCancel;

namespace {

constexpr double kInvalid = -1;

/// The design of a test of q among p predictors.
struct Design {
    bool intercept;
    double N;
    double p;
    double q;
    double alpha;

    bool is_valid() const {
        return p >= 1 && q >= 1 && q <= p && p + 1 + intercept <= N && inside_unit_interval(alpha);
    }
    double error_df() const { return N - intercept - p; }
};

double fixed_predictors_power(const Design& d, double noncentrality) {
    return f_test_power(d.alpha, d.q, d.error_df(), noncentrality, POWER_NAMESPACE::tol);
}

/// Probability that the sample squared partial multiple correlation exceeds its critical value.
/// @param e  the squared partial multiple correlation in the population
double random_predictors_power(const Design& d, double e) {
    const double dfe = d.error_df();
    const double critical = OrvMath_940::OrvDistFun::IdfF(1 - d.alpha, d.q, dfe);
    const double x = 1 / (1 + dfe / d.q / critical);  // of any quantile, 0 and infinity too
    const double n = (d.N - d.intercept) - (d.p - d.q);
    return 1 - std::exp(POWER_NAMESPACE::_EstCseriesRoutine(x, e, d.q, dfe, n, x));
}

double search(const std::vector<double>& design, POWER_NAMESPACE::Objective objective, double p,
              bool intercept) {
    constexpr double kTolerance = 1e-9;
    return PowerReverse(design, objective, nullptr, p + 1 + intercept, p + 400, kTolerance);
}

}  // namespace

// ---- Power -----------------------------------------------------------------------------------------------

double Powerbymlr(int random, bool intercept, double N, double p, double q, double R2full, double R2red,
                  double alpha) {
    const Design d{intercept, N, p, q, alpha};
    const bool is_reduced = R2red != 0;
    if (!are_squared_correlations(R2full, R2red) || (is_reduced && R2red > R2full) || !d.is_valid())
        return kInvalid;
    // Without a reduced model R2full is read as the multiple correlation itself.
    const double e = is_reduced ? (R2full - R2red) / (1 - R2red) : square(R2full);
    return random != 0 ? random_predictors_power(d, e) : fixed_predictors_power(d, N * e / (1 - e));
}

double PowerbymlrwES(int random, bool intercept, double N, double p, double q, double f2, double alpha) {
    const Design d{intercept, N, p, q, alpha};
    if (!d.is_valid()) return kInvalid;
    return random != 0 ? random_predictors_power(d, f2 / (f2 + 1)) : fixed_predictors_power(d, N * f2);
}

// ---- Sample size -----------------------------------------------------------------------------------------

namespace POWER_NAMESPACE {

double PowerbymlrFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    DesignReader d(design);
    const auto [target, p, q, R2full, R2red] = d.numbers<5>();
    const int random = d.integer();
    const bool intercept = d.flag();
    const double alpha = d.number();
    return Powerbymlr(random, intercept, N, p, q, R2full, R2red, alpha) - target;
}

double PowerbymlrwESFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    DesignReader d(design);
    const auto [target, p, q, f2] = d.numbers<4>();
    const int random = d.integer();
    const bool intercept = d.flag();
    const double alpha = d.number();
    return PowerbymlrwES(random, intercept, N, p, q, f2, alpha) - target;
}

}  // namespace POWER_NAMESPACE

double PowerReversebymlr(int random, bool intercept, double power, double p, double q, double R2full,
                         double R2red, double alpha) {
    return search(pack_design(power, p, q, R2full, R2red, random, intercept, alpha),
                  POWER_NAMESPACE::PowerbymlrFunc, p, intercept);
}

double PowerReversebymlrwES(int random, bool intercept, double power, double p, double q, double f2,
                            double alpha) {
    return search(pack_design(power, p, q, f2, random, intercept, alpha), POWER_NAMESPACE::PowerbymlrwESFunc,
                  p, intercept);
}
