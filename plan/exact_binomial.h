// The exact test of one proportion, and of the discordant pairs of two paired ones.
//
// Both tails of a two-sided test have alpha / 2. A count is rejected where its tail probability under the null
// hypothesis is at most that, as p-values are compared with alpha; a relative 1e-12 makes good for rounding where
// the two are equal.
#pragma once

#include <optional>
#include <vector>

#include "plan/saw_tooth.h"
#include "statplan/catalogue.h"

namespace statplan {

/// Which counts a test rejects: small ones, large ones, or both.
enum class Tails { both, small, large };

/// The test of n trials with success probability p0 under the null hypothesis.
class BinomialTest {
  public:
    BinomialTest(double p0, double alpha, Tails tails);

    /// Probability of rejecting when the success probability is p.
    double power(double n, double p) const;
    double level(double n) const { return power(n, p0_); }

    /// The power between two bounds. With the count next to the rejected ones rejected just so often that alpha
    /// is attained, the test is most powerful; its power towards p, `most`, cannot fall when trials are added.
    /// What the exact test lacks of it is at most the largest probability of one count, which falls.
    struct Bounds {
        double power;
        double least;  // at most the power; never falls with n
        double most;   // never falls with n; with `other` at least the power
        double other;  // power of the other tail of a two-sided test, which never rises with n
    };
    Bounds bounds(double n, double p) const;

  private:
    bool rejects(Tails tail) const { return tails_ == Tails::both || tails_ == tail; }
    double last_small(double n, double p0) const;
    double randomised(double n, double p0, double p) const;

    double p0_, tail_;
    Tails tails_;
};

/// The powers of n = 1, 2, ... trials.
SawTooth powers(const BinomialTest& test, double p);

/// The exact test of paired proportions: given the number of discordant pairs, the test of p0 = 1/2.
class PairedTest {
  public:
    /// @param p10,p01  probabilities of the two kinds of discordant pairs
    PairedTest(double p10, double p01, double alpha, Tails tails);

    /// NaN, like the level, for more than 2e6 pairs.
    double power(double n);
    /// Largest probability of rejecting when both kinds are equally probable, over all probabilities of a
    /// discordant pair; NaN when cancelled.
    double level(double n, Cancel* cancel);
    SawTooth powers() const;

  private:
    const BinomialTest::Bounds& given_discordant(int m);

    BinomialTest test_;
    double discordant_, first_kind_;
    std::vector<std::optional<BinomialTest::Bounds>> known_;  // for each number of discordant pairs
};

}  // namespace statplan
