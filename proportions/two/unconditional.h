// Two independent proportions: exact powers of the chi-square, t and likelihood-ratio tests.
//
// A table of x1 successes of n1 and x2 of n2 rejects when its statistic exceeds the critical value; the power
// is the probability of the tables that reject. n1, n2: group sizes, at least 1 - tol1; p1, p2 and alpha:
// between 0 and 1; sides: 0 two-sided, any other value one-sided in the direction of the difference p1 - p2.
//
// What the enumeration of all tables would give, with far less work: for a given x1 the statistics are
// monotone in x2 on each side of equal proportions. Proof for the chi-square and t statistics: where the
// statistic exceeds z > 0, its numerator (linear in x2) is positive and its square exceeds z^2 times the
// squared denominator (a concave quadratic, not negative for possible x2): a convex quadratic in x2, not
// positive where the numerator is 0, is positive. So the tables that reject lie beyond the outer one of its
// roots, and for z < 0 those that do not. It takes that the numerator is 0 at possible proportions, which the
// continuity correction of half an observation spoils for no or only successes in the first group. The
// derivative of the likelihood-ratio statistic is the difference of the logits of x2 / n2 and the common
// proportion, whose sign changes once, where the proportions are equal. The rows x1 = 0 and x1 = n1, where
// also the adjusted tables are, are enumerated; in the others the ends of the stretches that reject are
// searched, with the statistic itself as the judge.
#pragma once

#include <utility>

#include "statpower/core.h"

namespace POWER_NAMESPACE {

/// Chi-square (z) statistic of a table: the difference over its standard error under equal proportions.
/// Two-sided: of the absolute difference, less the continuity correction c = (1/n1 + 1/n2) / 2 where asked
/// for. One-sided: of the difference in the direction of p1 - p2, plus the correction.
/// @return the statistic, and c; -1 unless the arguments are in their ranges and 0 <= x1 <= n1, 0 <= x2 <= n2
STATPOWER_API std::pair<double, double> _BinEnumChisqTestStatsZ(double n1, double n2, double p1, double p2,
                                                                int x1, int x2, int sides,
                                                                bool continuityCorrection);

/// t statistic of a table, the same difference over the standard error of a t test of the 0/1 outcomes.
/// Without `pooled` the variance of each group is weighted with the size of the other.
/// @return -1 unless the arguments are in their ranges, n1 + n2 > 2, 0 <= x1 <= n1 and 0 <= x2 <= n2
STATPOWER_API double _BinEnumTTestStatsT(double n1, double n2, double p1, double p2, int x1, int x2,
                                         int sides, bool pooled);

/// x ln x; 0 for 0 and -1 for negative x.
STATPOWER_API double _logLRT(double x);

/// Likelihood-ratio statistic G^2 of a table.
/// @return -1 unless the sizes are in their range, 0 <= x1 <= n1 and 0 <= x2 <= n2
STATPOWER_API double _BinEnumLRTTestStatsL(double n1, double n2, double x1, double x2);

/// Exact powers. Tables are visited while their counts are below the sizes plus 1; a count beyond a fractional
/// size has probability 0. The cancel object is asked once a table; by the t and likelihood-ratio tests once more for
/// every table that rejects.
/// @return -1 for an argument out of its range (t test: also unless n1 + n2 > 2), -2 when the probability of
///         a table that rejects cannot be computed, the missing value when cancelled
STATPOWER_API double _PowerIndSamBinBinEnumChisq(double n1, double n2, double p1, double p2, int sides,
                                                 double alpha, bool continuityCorrection,
                                                 OrvCommon_940::OrvQueryCancel* cancel);
STATPOWER_API double _PowerIndSamBinBinEnumT(double n1, double n2, double p1, double p2, int sides,
                                             double alpha, bool pooled,
                                             OrvCommon_940::OrvQueryCancel* cancel);
STATPOWER_API double _PowerIndSamBinBinEnumLRT(double n1, double n2, double p1, double p2, int sides,
                                               double alpha, OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
