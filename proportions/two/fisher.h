// Two independent proportions: exact power of Fisher's test.
//
// Given the total t of successes, the test rejects where x1 is in the tails of its conditional distribution
// with odds ratio 1; the power weighs the probability of that, under the odds ratio psi of p1 and p2, with
// the probability of each total. The helpers below are the definitions, each sum from scratch; the power
// makes the same decisions with every conditional distribution computed once.
//
// A sample-size search tries fractional sizes. There the possible x1 start from the fractional ends
// max(0, t - n2) and min(t, n1), and the power is what the helpers give, which may exceed 1.
#pragma once

#include <span>
#include <vector>

#include "statpower/core.h"

namespace POWER_NAMESPACE {

/// Probability of x1 = x given x1 + x2 = t at odds ratio psi: C(n1, x) C(n2, t - x) psi^x over the sum of the
/// same for u = lo, lo + 1, ..., hi, the possible x1.
/// @param cancel  asked before every term of the sum
/// @return 0 for x below 0 or above t; -1 unless n1 and n2 are at least 1 - tol1 and t >= 0; the missing
///         value when cancelled. Coefficients and powers beyond the range of a double are not scaled: NaN or
///         0.
STATPOWER_API double _CondDisProb(double n1, double n2, double x, double t, double psi, double lo, double hi,
                                  OrvCommon_940::OrvQueryCancel* cancel);

/// Probability of x1 + x2 = t: the sum over x1 from lo to hi, both truncated.
/// @param cancel  asked before every term
/// @return -1 unless the sizes and proportions are in their ranges; the missing value when cancelled; the sum
///         of the terms before the first one that cannot be computed
STATPOWER_API double _ProbTotalSucc(double n1, double n2, double p1, double p2, int t, double lo, double hi,
                                    OrvCommon_940::OrvQueryCancel* cancel);

/// Critical values of the conditional distribution on lo..hi at odds ratio psi: the smallest k such that the
/// probability of k..hi does not exceed a, lo - 1 when there is none; and the largest k such that the
/// probability of lo..k does not exceed a, hi + 1 when there is none.
/// @param cancel  asked before every term of every sum
/// @return -1 unless n1 and n2 are at least 1 - tol1, 0 < a < 1 and t >= 0; the missing value when cancelled
STATPOWER_API double _quantileDescending(double n1, double n2, int t, double lo, double hi, double psi,
                                         double a, OrvCommon_940::OrvQueryCancel* cancel);
STATPOWER_API double _quantileAscending(double n1, double n2, int t, double lo, double hi, double psi,
                                        double a, OrvCommon_940::OrvQueryCancel* cancel);

/// Exact power of Fisher's test, two-sided with alpha / 2 in each tail (sides 0) or one-sided in the
/// direction of p1 - p2.
/// @param cancel  asked before every total and for every term that is computed
/// @return -1 for an argument out of its range; the missing value when cancelled
STATPOWER_API double _PowerIndSamBinBinEnumFisher(double n1, double n2, double p1, double p2, int sides,
                                                  double alpha, OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE

namespace statpower {

/// Binomial coefficients C(n, k) of one n, for n and k possibly fractional: exactly the doubles of
/// Combination.
class Coefficients {
  public:
    explicit Coefficients(double n);

    double n() const { return n_; }
    /// Truncated n.
    int trials() const { return trials_; }

    double operator()(double k) const;

  private:
    double n_;
    int trials_;
    // For m, the smaller one of k and n - k, truncated, as far as they are finite: the coefficient of m whole
    // factors, and what a fraction of m that reaches one more factor of the numerator makes of it.
    std::vector<double> whole_;
    std::vector<double> one_factor_more_;
};

/// The coefficients C(n, k + fraction) of whole k, looked up.
class CoefficientTable {
  public:
    /// @param fraction  between -1 and 1
    CoefficientTable(const Coefficients& coefficients, double fraction);

    double operator()(int k) const;

    /// The coefficients of first..last side by side; none of too many trials.
    std::span<const double> values(int first, int last) const;

  private:
    int trials_;
    // Of k = -1, 0, ..., or, of many trials, from both ends inwards, as far as they are finite.
    std::vector<double> list_;
    std::vector<double> low_;
    std::vector<double> high_;
};

}  // namespace statpower
