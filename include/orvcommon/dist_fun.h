// The distribution operations of the common library.
#pragma once

#include "orvcommon/visibility.h"

namespace OrvMath_940 {

/// Thirteen operations on probability distributions: static, reentrant, never throwing.
///
/// Arguments are doubles; degrees of freedom, trial counts and sizes may be fractional.
///  - An argument that is NaN or outside its domain gives the missing value (`OrvCommon_940::OrvMV`), in the
///    binomial operations also a non-zero status. The missing value as an argument is a very negative number.
///  - A limit is returned where there is one: at an infinite x, a probability of 0 or 1, infinite degrees of
///    freedom, or a parameter so large or so small that only its limit matters.
///  - Every call ends within 20 microseconds, most within one. docs/accuracy.md lists methods, measured
///  errors
///    and times.
class ORVCOMMON_API OrvDistFun {
  public:
    // ---- Standard normal distribution and gamma function
    // ----------------------------------------------------

    /// Standard normal distribution function, P(Z <= x).
    static double CdfStdNorm(double x) noexcept;

    /// Standard normal quantile of p in [0, 1]; p = 0 and 1 give minus and plus infinity.
    static double IdfStdNorm(double p) noexcept;

    /// Natural logarithm of |Gamma(x)|: infinite at the poles 0, -1, -2, ...; missing at minus infinity.
    static double vorndnlgam(const double& x) noexcept;

    // ---- Noncentral F and t distributions
    // -------------------------------------------------------------------

    /// Noncentral F distribution function at x.
    /// @param df1,df2        numerator and denominator degrees of freedom, greater than 0, possibly infinite
    /// @param noncentrality  sum of squared standardised means (not its root), finite and at least 0
    /// @param tolerance      accepted and not needed: the result is always accurate to 1e-14, and small
    /// results
    ///                       to 1e-12 of their size
    static double NonCentralCdfF(double x, double df1, double df2, double noncentrality,
                                 double tolerance) noexcept;

    /// Noncentral t distribution function at x, accurate to 1e-14; small results are accurate to 1e-12 of
    /// their size where x and the noncentrality are positive.
    /// @param df             degrees of freedom, greater than 0, possibly infinite
    /// @param noncentrality  mean of the normal numerator, finite, of either sign
    /// @param tolerance      accepted and not needed
    static double NonCentralCdfT(double x, double df, double noncentrality, double tolerance) noexcept;

    // ---- Quantiles of the central F and t distributions
    // -----------------------------------------------------

    /// Quantile of the central F distribution, 0 for p = 0 and infinity for p = 1.
    /// @param p        probability, 0 to 1
    /// @param df1,df2  degrees of freedom, greater than 0, possibly infinite
    static double IdfF(double p, double df1, double df2) noexcept;

    /// Quantile of the central t distribution, minus and plus infinity for p = 0 and 1.
    /// @param p                    probability, 0 to 1
    /// @param df                   degrees of freedom, greater than 0, possibly infinite
    /// @param accuracy1,accuracy2  accepted and not needed: the result is accurate to 1e-13 of its size
    static double IdfT(double p, double df, double accuracy1, double accuracy2) noexcept;

    // ---- Binomial and negative binomial distributions
    // -------------------------------------------------------

    /// Binomial distribution function P(X <= x), 0 for x < 0 and 1 for x >= n. For a fractional n, its
    /// continuation by the incomplete beta function, smooth in n.
    ///
    /// Critical values of exact tests sit on exact ties: for a whole n up to 62 and p = u / 2^m, m up to 63,
    /// with n m at most 512, the exact sum is rounded once.
    /// @param x       any number; its fraction is dropped
    /// @param n       number of trials, finite and at least 0
    /// @param p       success probability, 0 to 1
    /// @param status  left as it is on success; set to a non-zero code, with the missing value as the result,
    ///                when n or p is out of range or an argument is NaN
    static double CdfBin(double x, double n, double p, long& status) noexcept;

    /// Largest whole k, at most n rounded up, with P(X <= k) <= probability by CdfBin; -1 when there is none.
    /// @param probability  0 to 1
    /// @param n,p,status   as in CdfBin
    static double IdfBin(double probability, double n, double p, long& status) noexcept;

    /// Binomial probability P(X = x), 0 for x < 0 or x > n; for a fractional x or n, its continuation by the
    /// gamma function.
    /// @param n,p,status  as in CdfBin
    static double PdfBin(double x, double n, double p, long& status) noexcept;

    /// Negative binomial probability of k failures before success number r.
    /// @param k       number of failures; 0 is the result below zero
    /// @param r       number of successes, finite and greater than 0, possibly fractional
    /// @param p       success probability, 0 to 1
    /// @param status  as in CdfBin
    static double PdfNegBin(double k, double r, double p, long& status) noexcept;

    // ---- Beta distribution
    // ----------------------------------------------------------------------------------

    /// Beta distribution function at x, the regularised incomplete beta function I_x(a, b).
    /// @param a,b  shape parameters, greater than 0, not both infinite
    static double CdfBeta(double x, double a, double b) noexcept;

    /// Quantile of the beta distribution.
    /// @param p    probability, 0 to 1
    /// @param a,b  shape parameters, at least 0, not both 0 nor both infinite: the quantile is 0 at a = 0 and
    /// 1 at
    ///             b = 0, the limits that exact intervals for a proportion need at no successes or only
    ///             successes
    static double IdfBeta(const double& p, const double& a, const double& b) noexcept;
};

}  // namespace OrvMath_940
