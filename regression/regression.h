// The F test of a multiple linear regression: the series for random predictors, the objectives of the
// sample-size searches and the default ranges of the curves.
#pragma once

#include <optional>
#include <tuple>
#include <vector>

#include "core/rejection.h"
#include "statpower/core.h"

namespace statpower {

/// The F test of q among p predictors at a sample size: its critical value is computed once for any number of
/// effects.
class PredictorTest {
  public:
    PredictorTest(int random, bool intercept, double N, double p, double q, double alpha);

    /// Power for the fit of two models, as Powerbymlr.
    double power_of_fit(double R2full, double R2red) const;

    /// Power for an effect size, as PowerbymlrwES.
    double power_of_effect(double f2) const;

  private:
    double random_predictors_power(double e) const;

    bool is_random_;
    double N_;
    double q_;
    double error_df_;
    double sum_df_;  // N - p + q, less one for an intercept
    std::optional<FTest> test_;
};

// ---- Design vectors of the sample-size searches ----------------------------------------------------------

struct RegressionSearch {
    double target, p, q, R2full, R2red;
    int random;
    bool intercept;
    double alpha;
    auto fields() { return std::tie(target, p, q, R2full, R2red, random, intercept, alpha); }
};

struct RegressionEffectSearch {
    double target, p, q, f2;
    int random;
    bool intercept;
    double alpha;
    auto fields() { return std::tie(target, p, q, f2, random, intercept, alpha); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

// ---- Random predictors -----------------------------------------------------------------------------------

/// Logarithm of the probability that the sample squared partial multiple correlation is at most x2.
///
/// With a = n / 2 it is that of (1 - e)^a times the sum over k >= 0 of (a)_k / k! e^k I_x2(q / 2 + k, dfe /
/// 2), (a)_k the rising factorial: a negative binomial mixture of beta distributions (R. A. Fisher, The
/// general sampling distribution of the multiple correlation coefficient, Proc. R. Soc. A 121 (1928),
/// 654-673).
/// @param x    not read; callers pass x2 here too
/// @param e    population value, from 0 to 1
/// @param q    number of predictors tested
/// @param dfe  error degrees of freedom
/// @param n    dfe + q
/// @return minus infinity for a probability of 0; NaN for e outside [0, 1]. Where the sum is longer than 2^16
///         terms, the probability has an absolute error of some 1e-13 instead of a relative one, and one
///         below that may come out as 0.
STATPOWER_API double _EstCseriesRoutine(double x, double e, double q, double dfe, double n, double x2);

/// Logarithm of the k-th term (k >= 1) of this series as it is written: without (1 - e)^a, and times the
/// beta function B(q / 2, dfe / 2). Minus infinity for e = 0 or a vanishing incomplete beta function.
STATPOWER_API double _LogCk(double k, double e, double q, double dfe, double n, double x);

/// Logarithm of the rising factorial a (a + 1) ... (a + t - 1), t truncated: the sum of log(a + i) for
/// i = 0, 1, ... while i <= t - 1. 0 for t below 1; NaN for a below 0.
STATPOWER_API double _Logt(double a, double t);

// ---- Power at N minus the target -------------------------------------------------------------------------

/// Design: RegressionSearch.
STATPOWER_API double PowerbymlrFunc(double N, std::vector<double> design,
                                    OrvCommon_940::OrvQueryCancel* cancel);

/// Design: RegressionEffectSearch.
STATPOWER_API double PowerbymlrwESFunc(double N, std::vector<double> design,
                                       OrvCommon_940::OrvQueryCancel* cancel);

// ---- Default ranges of the sample size -------------------------------------------------------------------

/// Fixed predictors: from p + intercept + 1 to p + 5000, p truncated.
STATPOWER_API void _SetPlotRangeN(double p, bool intercept, int& nMin, int& nMax);

/// Random predictors: from (1 - P) N, but at least p + 2 (p truncated), to (2 - P) N, where P is the power at
/// N.
STATPOWER_API void _SetRandomPlotRangeN(double N, double p, double q, double R2full, double R2red, int random,
                                        bool intercept, double alpha, int& nMin, int& nMax);

/// The same for an effect size.
STATPOWER_API void _SetRandomPlotRangeN(double N, double p, double q, double f2, int random, bool intercept,
                                        double alpha, int& nMin, int& nMax);

}  // namespace POWER_NAMESPACE
