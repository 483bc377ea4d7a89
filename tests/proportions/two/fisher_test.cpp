// Two independent proportions: Fisher's exact test.
#include "proportions/two/fisher.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "orvcommon/mv.h"
#include "proportions/two/transcription.h"
#include "support/record.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using testing_support::CountingCancel;
using testing_support::kInfinity;
using testing_support::kNaN;
using transcription::Design;

namespace {

double power(const Design& d, OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    return _PowerIndSamBinBinEnumFisher(d.n1, d.n2, d.p1, d.p2, d.sides, d.alpha, cancel);
}

void expect_as_transcribed(const Design& d) {
    const double reference = transcription::fisher(d);
    EXPECT_NEAR(power(d), reference, 1e-14 * reference)
        << "n " << d.n1 << " " << d.n2 << " p " << d.p1 << " " << d.p2 << " sides " << d.sides << " alpha "
        << d.alpha;
}

TEST(FisherExact, EveryDesignUpToTwelveInAGroupIsDecidedAsTranscribed) {
    for (int n1 = 1; n1 <= 12; ++n1)
        for (int n2 = 1; n2 <= 12; ++n2)
            for (double alpha : {0.05, 0.1, 0.025, 0.01, 0.5, 0.85}) {
                expect_as_transcribed({1.0 * n1, 1.0 * n2, 0.5, 0.45, 0, alpha});
                expect_as_transcribed({1.0 * n1, 1.0 * n2, 0.5, 0.45, 1, alpha});
                expect_as_transcribed({1.0 * n1, 1.0 * n2, 0.45, 0.5, 1, alpha});
            }
}

TEST(FisherExact, LookingProbabilitiesUpInTheTranscriptionChangesNothing) {
    for (int n : {2, 5, 9}) {
        const Design d{1.0 * n, n + 2.5, 0.35, 0.6, 0, 0.1};
        EXPECT_EQ(transcription::fisher(d), transcription::fisher(d, true));
    }
}

TEST(FisherExact, RandomDesignsUpToSixtyInAGroupAreDecidedAsTranscribed) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> unit(0.001, 0.999);
    std::uniform_int_distribution<int> size(1, 60);
    for (int i = 0; i < 150; ++i)
        expect_as_transcribed({1.0 * size(random), 1.0 * size(random), unit(random), unit(random), i % 2,
                               i % 3 ? 0.05 : unit(random)});
}

TEST(FisherExact, FractionalGroupsAreDecidedAsTranscribed) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> size(1, 40);
    std::uniform_real_distribution<double> unit(0.01, 0.99);
    for (int i = 0; i < 200; ++i)
        expect_as_transcribed(
            {size(random), size(random), unit(random), unit(random), i % 2, i % 3 ? 0.05 : unit(random)});
    // Sizes as a search tries them, the second one a ratio of the first.
    for (double ratio : {0.5, 1.0, 2.0, 1.5, 1.0 / 3})
        for (int i = 0; i < 20; ++i) {
            const double n1 = size(random) + 2;
            expect_as_transcribed({n1, std::max(1.0, ratio * n1), 0.2, 0.6, i % 2, 0.05});
            expect_as_transcribed({n1, std::max(1.0, ratio * n1), 0.6, 0.2, i % 2, 0.05});
        }
    // One fractional size, fractions that make a whole trial, and sizes close to a whole number.
    for (double fraction : {0.25, 0.5, 0.75, 1e-12, 1 - 1e-12})
        for (int sides : {0, 1}) {
            expect_as_transcribed({12 + fraction, 9, 0.7, 0.3, sides, 0.05});
            expect_as_transcribed({12, 9 + fraction, 0.7, 0.3, sides, 0.05});
            expect_as_transcribed({12 + fraction, 10 - fraction, 0.7, 0.3, sides, 0.05});
            expect_as_transcribed({12 + fraction, 9.5, 0.3, 0.7, sides, 0.05});
        }
}

TEST(FisherExact, TheSumOfProbabilitiesBetweenShiftedGridsIsNotBounded) {
    // The odds of the last fraction of a trial are part of the counts downwards, but not of their total.
    expect_as_transcribed({40.9, 40.9, 0.9, 0.1, 1, 0.05});
    EXPECT_GT(power({40.9, 40.9, 0.9, 0.1, 1, 0.05}), 1);
}

// The tail probability of each possible critical value, as a fraction, is taken as the level: whether it
// still counts as "does not exceed" is a matter of the last bit.
TEST(FisherExact, LevelsThatEqualATailProbabilityAreDecidedAsTranscribed) {
    for (int n1 = 1; n1 <= 8; ++n1)
        for (int n2 = 1; n2 <= 8; ++n2)
            for (int t = 1; t < n1 + n2; ++t) {
                const int hi = std::min(t, n1);
                const auto choose = [](int n, int k) { return std::round(Combination(n, k)); };
                double numerator = 0;
                for (int u = hi; u > std::max(0, t - n2); --u) {
                    numerator += choose(n1, u) * choose(n2, t - u);
                    const double tail = numerator / choose(n1 + n2, t);
                    expect_as_transcribed({1.0 * n1, 1.0 * n2, 0.5, 0.45, 1, tail});
                    expect_as_transcribed({1.0 * n2, 1.0 * n1, 0.45, 0.5, 1, tail});
                    if (tail < 0.5) expect_as_transcribed({1.0 * n1, 1.0 * n2, 0.5, 0.45, 0, 2 * tail});
                }
            }
}

TEST(FisherExact, WellKnownTiesAreDecidedAsTranscribed) {
    expect_as_transcribed({3, 3, 0.9, 0.1, 1, 0.05});
    expect_as_transcribed({3, 3, 0.9, 0.1, 0, 0.1});
    expect_as_transcribed({2, 14, 0.9, 0.1, 1, 1.0 / 40});
    expect_as_transcribed({8, 8, 0.9, 0.1, 1, 0.1});
    expect_as_transcribed({8, 8, 0.1, 0.9, 0, 0.2});
}

TEST(FisherExact, IsConservativeAtEqualProportions) {
    for (double p : {0.05, 0.3, 0.5, 0.9})
        for (int n : {5, 20, 60, 600})
            for (int sides : {0, 1}) {
                EXPECT_LE(power({1.0 * n, n + 3.0, p, p, sides, 0.05}), 0.05);
                EXPECT_GE(power({1.0 * n, n + 3.0, p, p, sides, 0.05}), 0);
            }
}

TEST(FisherExact, OneSidedTestsAreMirrorImages) {
    for (double n : {20.0, 700.0})
        EXPECT_NEAR(power({n, n + 5, 0.3, 0.25, 1, 0.05}), power({n + 5, n, 0.25, 0.3, 1, 0.05}), 1e-13);
}

// 511 in each group is about the last size whose weights all stay within a double.
TEST(FisherExact, PowersDoNotJumpWhereTheWeightsLeaveTheRangeOfADouble) {
    double last = power({500, 500, 0.45, 0.55, 1, 0.05});
    for (int n = 501; n <= 530; ++n) {
        const double next = power({1.0 * n, 1.0 * n, 0.45, 0.55, 1, 0.05});
        EXPECT_NEAR(next, last, 0.004) << n;
        last = next;
    }
}

/// The definition in long doubles, whose range has room for the weights of a thousand trials. Ties of a tail
/// probability and the level are decided as they come.
class FisherInLongDoubles {
  public:
    explicit FisherInLongDoubles(const Design& design)
        : d_(design), psi_(static_cast<long double>(d_.p1) / (1 - d_.p1) / (d_.p2 / (1 - d_.p2))) {
        for (int i = 1; i <= std::max(d_.n1, d_.n2); ++i) factorial_.push_back(factorial_.back() * i);
    }

    double power() const {
        double power = 0;
        for (int t = 0; t <= d_.n1 + d_.n2; ++t) {
            const double lo = std::max(0.0, t - d_.n2);
            const double hi = std::min(1.0 * t, d_.n1);
            long double null_total = 0, total = 0, rejected = 0;
            for (double u = lo; u <= hi; ++u) {
                null_total += weight(u, t);
                total += weight(u, t) * odds(u);
            }
            if (d_.sides == 0 || d_.p1 > d_.p2) rejected += weight_beyond(hi, -1, lo, hi, t, null_total);
            if (d_.sides == 0 || !(d_.p1 > d_.p2)) rejected += weight_beyond(lo, 1, lo, hi, t, null_total);
            power += _ProbTotalSucc(d_.n1, d_.n2, d_.p1, d_.p2, t, lo, hi, nullptr) *
                     static_cast<double>(rejected / total);
        }
        return power;
    }

  private:
    long double coefficient(double n, double k) const {
        const double m = std::min(n - k, k);
        if (m < 0) return 1;
        const auto factorial = [&](double x) { return factorial_.at(static_cast<std::size_t>(x)); };
        return factorial(n) / factorial(n - m) / factorial(m);
    }
    long double weight(double u, int t) const {
        return u < 0 || u > t ? 0 : coefficient(d_.n1, u) * coefficient(d_.n2, t - u);
    }
    long double odds(double u) const { return std::pow(psi_, static_cast<long double>(u)); }

    /// The weight under the alternative of the counts from `first` on, in steps up or down, that reject.
    long double weight_beyond(double first, double step, double lo, double hi, int t,
                              long double null_total) const {
        const double level = d_.sides == 0 ? d_.alpha / 2 : d_.alpha;
        long double tail = 0, rejected = 0;
        for (double k = first; lo <= k && k <= hi; k += step) {
            tail += weight(k, t) / null_total;
            if (tail > level) break;
            rejected += weight(k, t) * odds(k);
            if (tail + weight(k + step, t) / null_total > level) return rejected;
        }
        return 0;
    }

    Design d_;
    long double psi_;
    std::vector<long double> factorial_{1};
};

TEST(FisherExact, ScaledWeightsAreTheWeightsOfTheDefinition) {
    for (const Design& d :
         {Design{560.25, 560.5, 0.55, 0.45, 0, 0.05}, Design{560.75, 560.5, 0.45, 0.55, 1, 0.05},
          Design{560, 580.25, 0.6, 0.5, 1, 0.01}, Design{530.5, 795.75, 0.6, 0.5, 0, 0.05},
          Design{530.5, 530.5, 0.9, 0.1, 0, 0.05}}) {
        const double reference = FisherInLongDoubles(d).power();
        EXPECT_NEAR(power(d), reference, 1e-11 * reference) << d.n1 << " " << d.n2;
    }
    // The same reference where nothing is scaled yet.
    const Design plain{60.25, 45.5, 0.6, 0.4, 0, 0.05};
    EXPECT_NEAR(FisherInLongDoubles(plain).power(), transcription::fisher(plain), 1e-12);
}

TEST(FisherExact, PowersOfFractionalSizesDoNotJumpWhereTheWeightsLeaveTheRangeOfADouble) {
    for (double fraction : {0.25, 0.5, 0.75}) {
        double last = power({500 + fraction, 500 + fraction, 0.55, 0.45, 1, 0.05});
        for (int n = 501; n <= 530; ++n) {
            const double next = power({n + fraction, n + fraction, 0.55, 0.45, 1, 0.05});
            EXPECT_NEAR(next, last, 0.006) << n;
            last = next;
        }
    }
}

TEST(FisherExact, AnOddsRatioThatLeavesTheRangeOfADoubleDoesNoHarm) {
    // psi = 0.298: its powers from 590 on are denormal or 0, where the coefficients stay finite.
    EXPECT_NEAR(power({700, 50, 0.85, 0.95, 1, 0.05}), power({50, 700, 0.95, 0.85, 1, 0.05}), 1e-12);
    for (double tiny : {1e-12, 1e-300}) {
        EXPECT_NEAR(power({60, 60, tiny, 1 - 1e-12, 1, 0.05}), 1, 1e-9);
        EXPECT_NEAR(power({60, 60, 1 - 1e-12, tiny, 0, 0.05}), 1, 1e-9);
    }
}

TEST(FisherExact, RefusesArgumentsOutOfTheirRanges) {
    for (double Design::*argument : {&Design::p1, &Design::p2, &Design::alpha})
        for (double bad : {0.0, 1.0, -0.5, kNaN}) {
            Design d{10, 12, 0.3, 0.6, 0, 0.05};
            d.*argument = bad;
            EXPECT_EQ(power(d), -1);
        }
    for (double Design::*argument : {&Design::n1, &Design::n2})
        for (double bad : {0.99, 0.0, -3.0, kNaN, kInfinity, 3e9}) {
            Design d{10, 12, 0.3, 0.6, 0, 0.05};
            d.*argument = bad;
            EXPECT_EQ(power(d), -1);
        }
    EXPECT_GE(power({1, 1, 0.3, 0.6, 0, 0.05}), 0);
    EXPECT_GE(power({0.9999999999995, 5, 0.3, 0.6, 0, 0.05}), 0);
}

TEST(FisherExact, AYesToAnyQueryGivesTheMissingValue) {
    const Design d{6, 9, 0.2, 0.7, 0, 0.1};
    CountingCancel all;
    power(d, &all);
    for (long query = 1; query <= all.queries; ++query) {
        CountingCancel cancel(query);
        EXPECT_TRUE(OrvMV::IsMissing(power(d, &cancel))) << query;
        EXPECT_EQ(cancel.queries, query);
    }
    CountingCancel never(all.queries + 1);
    EXPECT_EQ(power(d, &never), power(d));
}

TEST(FisherExact, AsksForEveryTotalAndEveryTermThatItComputes) {
    // 16 totals; with 6 and 9 in the groups 70 tables, each a term of its total and of two distributions.
    CountingCancel count;
    power({6, 9, 0.2, 0.7, 0, 0.1}, &count);
    EXPECT_EQ(count.queries, 16 + 3 * 70);
}

// ---- The helpers on their own ----------------------------------------------------------------------------

TEST(ConditionalProbability, IsHypergeometricAtOddsRatioOne) {
    EXPECT_NEAR(_CondDisProb(3, 3, 3, 3, 1, 0, 3, nullptr), 1.0 / 20, 1e-15);
    EXPECT_NEAR(_CondDisProb(3, 3, 1, 3, 1, 0, 3, nullptr), 9.0 / 20, 1e-15);
    EXPECT_NEAR(_CondDisProb(2, 14, 1, 3, 1, 0, 2, nullptr), 2 * 91.0 / 560, 1e-15);
}

TEST(ConditionalProbability, WeighsWithPowersOfTheOddsRatio) {
    // Weights 1, 9 * 2, 9 * 4, 8.
    EXPECT_NEAR(_CondDisProb(3, 3, 2, 3, 2, 0, 3, nullptr), 36.0 / 63, 1e-15);
}

TEST(ConditionalProbability, IsZeroOutsideZeroToTheTotal) {
    EXPECT_EQ(_CondDisProb(3, 3, -1, 3, 1, 0, 3, nullptr), 0);
    EXPECT_EQ(_CondDisProb(3, 3, 4, 3, 1, 0, 3, nullptr), 0);
}

TEST(ConditionalProbability, RefusesSizesBelowOneAndNegativeTotals) {
    EXPECT_EQ(_CondDisProb(0.5, 3, 1, 2, 1, 0, 2, nullptr), -1);
    EXPECT_EQ(_CondDisProb(3, kNaN, 1, 2, 1, 0, 2, nullptr), -1);
    EXPECT_EQ(_CondDisProb(3, 3, 0, -1, 1, 0, 0, nullptr), -1);
}

TEST(ConditionalProbability, KeepsTheRangeOfItsCoefficients) {
    EXPECT_TRUE(std::isnan(_CondDisProb(2000, 2000, 1000, 2000, 1, 0, 2000, nullptr)));
}

TEST(ConditionalProbability, AsksBeforeEveryTermOfTheSum) {
    CountingCancel count;
    _CondDisProb(6, 9, 2, 5, 1, 0, 5, &count);
    EXPECT_EQ(count.queries, 6);
    CountingCancel fourth(4);
    EXPECT_TRUE(OrvMV::IsMissing(_CondDisProb(6, 9, 2, 5, 1, 0, 5, &fourth)));
}

TEST(ConditionalProbability, EndsWhereCountsNoLongerMove) {
    EXPECT_GT(_CondDisProb(3, 3, 3, 3, 1, -kInfinity, -1, nullptr), 0);
    EXPECT_GT(_CondDisProb(3, 3, 3, 3, 1, 1e17, 1e17, nullptr), 0);
}

TEST(TotalProbability, IsTheSumOverTheFirstGroup) {
    // Two fair coins against one.
    EXPECT_NEAR(_ProbTotalSucc(2, 1, 0.5, 0.5, 1, 0, 1, nullptr), 3.0 / 8, 1e-15);
    EXPECT_NEAR(_ProbTotalSucc(2, 1, 0.5, 0.5, 1, 0.9, 1.9, nullptr), 3.0 / 8, 1e-15);
    EXPECT_NEAR(_ProbTotalSucc(2, 1, 0.5, 0.5, 1, 1, 1, nullptr), 2.0 / 8, 1e-15);
}

TEST(TotalProbability, RefusesArgumentsOutOfTheirRangesAndAsksBeforeEveryTerm) {
    EXPECT_EQ(_ProbTotalSucc(0.5, 1, 0.5, 0.5, 1, 0, 1, nullptr), -1);
    EXPECT_EQ(_ProbTotalSucc(2, 1, 0, 0.5, 1, 0, 1, nullptr), -1);
    EXPECT_EQ(_ProbTotalSucc(2, 1, 0.5, 1, 1, 0, 1, nullptr), -1);
    CountingCancel count;
    _ProbTotalSucc(9, 9, 0.5, 0.5, 5, 0, 5, &count);
    EXPECT_EQ(count.queries, 6);
    CountingCancel last(6);
    EXPECT_TRUE(OrvMV::IsMissing(_ProbTotalSucc(9, 9, 0.5, 0.5, 5, 0, 5, &last)));
}

TEST(ConditionalQuantiles, AreTheOuterMostCountsWithinTheLevel) {
    // 6 and 6 in the groups, 6 successes: tails 1/924, 37/924, 262/924, ...
    EXPECT_EQ(_quantileDescending(6, 6, 6, 0, 6, 1, 0.05, nullptr), 5);
    EXPECT_EQ(_quantileDescending(6, 6, 6, 0, 6, 1, 0.3, nullptr), 4);
    EXPECT_EQ(_quantileAscending(6, 6, 6, 0, 6, 1, 0.05, nullptr), 1);
    EXPECT_EQ(_quantileAscending(6, 6, 6, 0, 6, 1, 0.3, nullptr), 2);
}

TEST(ConditionalQuantiles, LieOutsideTheCountsWhereNoneIsWithinTheLevel) {
    EXPECT_EQ(_quantileDescending(6, 6, 6, 0, 6, 1, 0.001, nullptr), -1);
    EXPECT_EQ(_quantileAscending(6, 6, 6, 0, 6, 1, 0.001, nullptr), 7);
    EXPECT_EQ(_quantileDescending(6, 2, 6, 4, 6, 1, 0.001, nullptr), 3);
}

TEST(ConditionalQuantiles, AreTheTranscribedOnesOnTheirOwn) {
    for (int n1 : {3, 8})
        for (int n2 : {3, 5, 14})
            for (int t = 0; t <= n1 + n2; ++t)
                for (double a : {0.05, 0.025, 0.1, 0.7}) {
                    const int lo = std::max(0, t - n2);
                    const int hi = std::min(t, n1);
                    transcription::Fisher fisher({1.0 * n1, 1.0 * n2, 0.3, 0.6, 0, a}, true);
                    EXPECT_EQ(_quantileDescending(n1, n2, t, lo, hi, 1, a, nullptr),
                              fisher.upper_critical_value(t, lo, hi, a));
                    EXPECT_EQ(_quantileAscending(n1, n2, t, lo, hi, 1, a, nullptr),
                              fisher.lower_critical_value(t, lo, hi, a));
                }
}

TEST(ConditionalQuantiles, RefuseArgumentsOutOfTheirRanges) {
    for (auto quantile : {_quantileDescending, _quantileAscending}) {
        EXPECT_EQ(quantile(0.5, 6, 3, 0, 3, 1, 0.05, nullptr), -1);
        EXPECT_EQ(quantile(6, 0.5, 3, 0, 3, 1, 0.05, nullptr), -1);
        EXPECT_EQ(quantile(6, 6, -1, 0, 3, 1, 0.05, nullptr), -1);
        EXPECT_EQ(quantile(6, 6, 3, 0, 3, 1, 0, nullptr), -1);
        EXPECT_EQ(quantile(6, 6, 3, 0, 3, 1, 1, nullptr), -1);
        EXPECT_EQ(quantile(6, 6, 3, 0, 3, 1, kNaN, nullptr), -1);
    }
}

TEST(ConditionalQuantiles, ATailThatEqualsTheLevelIsWithinItAndOneMoreThatEqualsItIsNotBeyond) {
    const auto P = [](double u) { return _CondDisProb(3, 3, u, 3, 1, 0, 3, nullptr); };
    EXPECT_EQ(_quantileDescending(3, 3, 3, 0, 3, 1, P(3), nullptr), 3);
    EXPECT_EQ(_quantileAscending(3, 3, 3, 0, 3, 1, P(0), nullptr), 0);
    // At k = 3 the next tail equals the level: not greater, so the search goes on, and finds it within.
    EXPECT_EQ(_quantileDescending(3, 3, 3, 0, 3, 1, P(2) + P(3), nullptr), 2);
    EXPECT_EQ(_quantileAscending(3, 3, 3, 0, 3, 1, P(0) + P(1), nullptr), 1);
}

TEST(ConditionalQuantiles, AskBeforeEveryTermOfEverySum) {
    // Each probability asks for the 7 terms of its denominator. At k = 6 one term and the next probability, at k = 5 two
    // terms and the next one: the answer.
    CountingCancel descending;
    EXPECT_EQ(_quantileDescending(6, 6, 6, 0, 6, 1, 0.05, &descending), 5);
    EXPECT_EQ(descending.queries, (1 + 7 + 7) + (2 * (1 + 7) + 7));
    CountingCancel ascending;
    EXPECT_EQ(_quantileAscending(6, 6, 6, 0, 6, 1, 0.05, &ascending), 1);
    EXPECT_EQ(ascending.queries, (1 + 7 + 7) + (2 * (1 + 7) + 7));
}

TEST(ConditionalQuantiles, AYesToAnyQueryGivesTheMissingValue) {
    for (auto quantile : {_quantileDescending, _quantileAscending}) {
        CountingCancel all;
        const double k = quantile(6, 6, 6, 0, 6, 1, 0.05, &all);
        EXPECT_FALSE(OrvMV::IsMissing(k));
        for (long query = 1; query <= all.queries; ++query) {
            CountingCancel cancel(query);
            EXPECT_TRUE(OrvMV::IsMissing(quantile(6, 6, 6, 0, 6, 1, 0.05, &cancel))) << query;
        }
    }
}

}  // namespace
