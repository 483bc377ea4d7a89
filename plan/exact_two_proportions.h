// Exact tests of two independent proportions: the probability of all tables that reject.
//
// x1 of n1 and x2 of n2 are successes. The chi-square (z), t and likelihood-ratio tests reject where the statistic in
// the direction of the alternative exceeds the critical value of its limiting distribution; they are exact in that
// the power counts tables, not in keeping alpha. Fisher's test keeps alpha: it rejects where the probability of the
// table's margins leaving as many successes in the larger group, or more, is at most alpha. Two-sided tests have
// alpha / 2 in each tail. All of these reject with x2 where they reject with a smaller x2 beside the same x1, as far
// as the direction p1 > p2 is concerned, so that a number for each x1 describes the test; the other direction is the
// same for the failures.
#pragma once

#include <vector>

#include "plan/exact_binomial.h"
#include "plan/saw_tooth.h"

namespace statplan {

struct TwoProportions {
    enum Statistic { chi_square, t, likelihood_ratio, fisher };

    Statistic statistic;
    bool pooled;      // variance of the chi-square statistic
    bool continuity;  // chi-square: the distance of the proportions is lessened by (1 / n1 + 1 / n2) / 2
    Tails tails;      // large: p1 > p2 is the alternative
    double alpha;

    /// Probability of the tables that reject. NaN, like the level, for more than 2e7 observations.
    double power(double n1, double n2, double p1, double p2) const;
    /// Largest probability of rejecting when both proportions are the same, over all values of theirs; NaN when
    /// cancelled.
    double level(double n1, double n2, Cancel* cancel) const;
    /// The powers of ever larger groups. As sizes grow, the boundary of rejection moves towards fewer rejections by
    /// a success of the smaller group at most: its bounds allow for two. This has no proof, but holds for all sizes
    /// of thousands of random designs, except that the least groups may reject more, by a variance of 0.
    SawTooth powers(double p1, double p2) const;
};

}  // namespace statplan
