// The distribution operations of the common library.
#pragma once

#include "orvcommon/visibility.h"

namespace OrvMath_940 {

/// Thirteen operations on probability distributions: static, reentrant, never throwing.
///
/// Arguments are doubles; degrees of freedom, trial counts and sizes may be fractional. An argument that is
/// NaN or outside its domain gives the missing value (`OrvCommon_940::OrvMV`), in the binomial operations
/// also a non-zero status. A computable limit (an infinite x, a zero noncentrality, a parameter so large that
/// only its limit matters) is returned as that limit. Every call ends within microseconds.
class ORVCOMMON_API OrvDistFun {
  public:
    /// Standard normal distribution function, P(Z <= x).
    static double CdfStdNorm(double x) noexcept;

    /// Standard normal quantile of p in [0, 1]; p = 0 and 1 give minus and plus infinity.
    static double IdfStdNorm(double p) noexcept;

    /// Natural logarithm of |Gamma(x)|.
    static double vorndnlgam(const double& x) noexcept;

    /// Noncentral F distribution function at x.
    /// @param df1,df2        numerator and denominator degrees of freedom, greater than 0
    /// @param noncentrality  sum of squared standardised means (not its root), finite and at least 0
    /// @param tolerance      accuracy asked of the series; the result is always as accurate as a double
    /// allows
    static double NonCentralCdfF(double x, double df1, double df2, double noncentrality,
                                 double tolerance) noexcept;

    /// Noncentral t distribution function at x.
    /// @param df             degrees of freedom, greater than 0
    /// @param noncentrality  finite, of either sign
    /// @param tolerance      as in NonCentralCdfF
    static double NonCentralCdfT(double x, double df, double noncentrality, double tolerance) noexcept;

    /// Quantile of the central F distribution for p in [0, 1].
    static double IdfF(double p, double df1, double df2) noexcept;

    /// Quantile of the central t distribution for p in [0, 1].
    /// @param accuracy1,accuracy2  accuracy settings, accepted and not needed: see NonCentralCdfF
    static double IdfT(double p, double df, double accuracy1, double accuracy2) noexcept;

    /// Binomial distribution function P(X <= x): x is floored, n may be fractional (by the incomplete beta
    /// function); 0 for x < 0 and 1 for x >= n.
    /// @param status  left as it is on success; set to a non-zero code, with the missing value as the result,
    ///                when n or p is out of range or an argument is NaN
    static double CdfBin(double x, double n, double p, long& status) noexcept;

    /// Largest whole k with P(X <= k) <= probability, -1 when there is none. Status as in CdfBin.
    static double IdfBin(double probability, double n, double p, long& status) noexcept;

    /// Binomial probability P(X = x), by the gamma function for fractional n; 0 for x < 0 or x > n.
    /// Status as in CdfBin.
    static double PdfBin(double x, double n, double p, long& status) noexcept;

    /// Beta distribution function at x, the regularised incomplete beta function I_x(a, b).
    static double CdfBeta(double x, double a, double b) noexcept;

    /// Quantile of the beta distribution; 0 at a = 0 and 1 at b = 0, the limits that exact intervals for a
    /// proportion need when there are no successes, or nothing else.
    static double IdfBeta(const double& p, const double& a, const double& b) noexcept;

    /// Negative binomial probability of k failures before the r-th success, r real. Status as in CdfBin.
    static double PdfNegBin(double k, double r, double p, long& status) noexcept;
};

}  // namespace OrvMath_940
