// The test of paired proportions: powers and sample sizes.
#include "proportions/paired/power.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <span>

#include "proportions/paired/sum.h"
#include "statpower/related_binomial.h"
#include "support/normal.h"
#include "support/record.h"
#include "support/table.h"
#include "support/values.h"

using namespace testing_support;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using POWER_NAMESPACE::PRelSampBionmFunc;

namespace {

/// A valid design in its four forms, of which a test breaks one argument.
struct Design {
    int sided = 0;
    int exact = 1;
    double N = 40;
    double p1 = 0.3;
    double p2 = 0.1;
    double c1 = 12;
    double c2 = 4;
    double pA = 0.6;
    double pB = 0.4;
    double rho = 0.25;
    double cA = 24;
    double cB = 16;
    double alpha = 0.05;
    double target = 0.8;

    double power(OrvQueryCancel* cancel = nullptr) const {
        return PowerbyPRelSampBionm(sided, exact, cancel, N, p1, p2, alpha);
    }
    double by_counts() const { return PowerbyCRelSampBionm(sided, exact, N, c1, c2, alpha); }
    double by_margins() const { return PowerbyMargPRelSampBionm(sided, exact, N, pA, pB, rho, alpha); }
    double by_marginal_counts() const {
        return PowerbyMargCRelSampBionm(sided, exact, N, cA, cB, rho, alpha);
    }
    double size(OrvQueryCancel* cancel = nullptr) const {
        return PowerReversebyPRelSampBionm(sided, exact, cancel, target, p1, p2, alpha);
    }
    double size_by_margins(OrvQueryCancel* cancel = nullptr) const {
        return PowerReversebyMargPRelSampBionm(sided, exact, cancel, target, pA, pB, rho, alpha);
    }
    double by_sum() const { return related_power_by_sum(sided, N, p1, p2, alpha); }
};

using Change = std::function<void(Design&)>;

/// The design after the change, in every form of the test.
std::vector<Design> forms(const Change& change = [](Design&) {}) {
    std::vector<Design> designs;
    for (int sided : {0, 1})
        for (int exact : {0, 1}) {
            Design d;
            d.sided = sided;
            d.exact = exact;
            change(d);
            designs.push_back(d);
        }
    return designs;
}

// ---- Checks

const Change kBadLevels[] = {
    [](Design& d) { d.alpha = 0; },
    [](Design& d) { d.alpha = 1; },
    [](Design& d) { d.alpha = -kSmallest; },
    [](Design& d) { d.alpha = kNaN; },
};
const Change kBadSizes[] = {
    [](Design& d) { d.N = kBelowTwo; },
    [](Design& d) { d.N = -kInfinity; },
    [](Design& d) { d.N = kNaN; },
};

TEST(PairedProportions, AllPowersAreMinusOneForABadLevelOrFewerThanTwoPairs) {
    for (const auto& changes : {std::span<const Change>(kBadLevels), std::span<const Change>(kBadSizes)})
        for (const Change& change : changes)
            for (const Design& d : forms(change)) {
                EXPECT_EQ(d.power(), -1);
                EXPECT_EQ(d.by_counts(), -1);
                EXPECT_EQ(d.by_margins(), -1);
                EXPECT_EQ(d.by_marginal_counts(), -1);
            }
}

TEST(PairedProportions, PowerIsMinusOneForImpossibleCells) {
    const Change changes[] = {
        [](Design& d) { d.p1 = -kSmallest; },
        [](Design& d) { d.p2 = -kSmallest; },
        [](Design& d) { d.p1 = kNaN; },
        [](Design& d) { d.p2 = kNaN; },
        [](Design& d) { d.p1 = 0.5, d.p2 = 0.5 + 0x1p-52; },
    };
    for (const Change& change : changes)
        for (const Design& d : forms(change)) EXPECT_EQ(d.power(), -1);
}

TEST(PairedProportions, PowerIsComputedAtTheEndsOfTheRanges) {
    const Change changes[] = {
        [](Design& d) { d.N = 2; },
        [](Design& d) { d.p1 = 0.5, d.p2 = 0.5; },
        [](Design& d) { d.p1 = 0; },
        [](Design& d) { d.p2 = 0; },
        [](Design& d) { d.p1 = 1, d.p2 = 0; },
        [](Design& d) { d.p1 = 0, d.p2 = 1; },
        [](Design& d) { d.alpha = kSmallest; },
        [](Design& d) { d.alpha = kBelowOne; },
    };
    for (const Change& change : changes)
        for (const Design& d : forms(change)) {
            EXPECT_GE(d.power(), 0);
            EXPECT_LE(d.power(), 1 + 1e-15);
        }
}

TEST(PairedProportions, CountsAreRefusedWhereNegativeOrMoreThanThePairs) {
    const Change changes[] = {
        [](Design& d) { d.c1 = -1; },   [](Design& d) { d.c2 = -kSmallest; },
        [](Design& d) { d.c1 = 37; },  // c1 + c2 = N + 1
        [](Design& d) { d.c1 = kNaN; }, [](Design& d) { d.c2 = kNaN; },
    };
    for (const Change& change : changes)
        for (const Design& d : forms(change)) EXPECT_EQ(d.by_counts(), -1);
    for (const Design& d : forms([](Design& e) { e.c1 = 36; })) EXPECT_GT(d.by_counts(), 0);
}

TEST(PairedProportions, MarginsAreRefusedAtTheirEndsAndCorrelationsBeyondOne) {
    const Change changes[] = {
        [](Design& d) { d.rho = kAboveOne; }, [](Design& d) { d.rho = -kAboveOne; },
        [](Design& d) { d.rho = kNaN; },      [](Design& d) { d.pA = 0; },
        [](Design& d) { d.pA = 1; },          [](Design& d) { d.pB = 0; },
        [](Design& d) { d.pB = 1; },          [](Design& d) { d.pA = kNaN; },
        [](Design& d) { d.pB = -0.2; },
    };
    for (const Change& change : changes)
        for (const Design& d : forms(change)) {
            EXPECT_EQ(d.by_margins(), -1);
            EXPECT_EQ(d.size_by_margins(), -1);
        }
    // Correlations of exactly -1 and 1 are possible where the margins allow them.
    for (const Design& d : forms([](Design& e) { e.pA = e.pB = 0.5, e.rho = -1; })) {
        EXPECT_GT(d.by_margins(), 0);
        EXPECT_LT(d.by_margins(), 1);
    }
    for (const Design& d : forms([](Design& e) { e.exact = 1, e.pA = e.pB = 0.5, e.rho = 1; }))
        EXPECT_EQ(d.by_margins(), 0);
}

TEST(PairedProportions, MarginsThatGiveAnImpossibleCellAreRefused) {
    // pA = 0.6, pB = 0.4: p2 = 0.16 - 0.24 rho is negative above rho = 2/3.
    for (const Design& d : forms([](Design& e) { e.rho = 0.67; })) {
        EXPECT_EQ(d.by_margins(), -1);
        EXPECT_MISSING(d.size_by_margins());  // not refused by the search, but never reached either
    }
    for (const Design& d : forms([](Design& e) { e.rho = 0.66; })) EXPECT_GT(d.by_margins(), 0);
    // A negative probability of two positive responses is not noticed: p1 = p2 = 0.42 leaves 0.3 - 0.42 for
    // it.
    for (const Design& d : forms([](Design& e) { e.pA = e.pB = 0.3, e.rho = -1; }))
        EXPECT_GT(d.by_margins(), 0);
}

TEST(PairedProportions, MarginalCountsAreRefusedAtNAndWhereTheirProductIsNotPositive) {
    const Change changes[] = {
        [](Design& d) { d.cA = d.N; },        [](Design& d) { d.cB = d.N; },
        [](Design& d) { d.cA = 0; },          [](Design& d) { d.cB = 0; },
        [](Design& d) { d.cA = -24; },        [](Design& d) { d.cA = -24, d.cB = -16; },
        [](Design& d) { d.cA = kNaN; },       [](Design& d) { d.cB = kNaN; },
        [](Design& d) { d.rho = kAboveOne; },
    };
    for (const Change& change : changes)
        for (const Design& d : forms(change)) EXPECT_EQ(d.by_marginal_counts(), -1);
}

// ---- The four ways of giving a design

TEST(PairedProportions, CountsAreProbabilitiesOutOfN) {
    for (const Design& d : forms()) EXPECT_EQ(d.by_counts(), d.power());
}

TEST(PairedProportions, MarginalCountsAreMarginsOutOfN) {
    for (const Design& d : forms()) EXPECT_EQ(d.by_marginal_counts(), d.by_margins());
}

TEST(PairedProportions, MarginsAndCorrelationGiveTheCells) {
    // p2 = 0.4 * 0.4 - rho * 0.24 = 0.1, p1 = p2 + 0.2 = 0.3.
    for (const Design& d : forms()) EXPECT_NEAR(d.by_margins(), d.power(), 1e-13);
    // pA = 1/2, pB = 1/4, rho = 0: p2 = 1/8, p1 = 3/8, exactly.
    for (const Design& d :
         forms([](Design& e) { e.pA = 0.5, e.pB = 0.25, e.rho = 0, e.p1 = 0.375, e.p2 = 0.125; }))
        EXPECT_EQ(d.by_margins(), d.power());
}

TEST(PairedProportions, EqualMarginsWithoutCorrelationGiveTheSizeOfTheTest) {
    for (Design d : forms([](Design& e) { e.pA = e.pB = 0.5, e.rho = 0, e.p1 = e.p2 = 0.25; })) {
        EXPECT_EQ(d.by_margins(), d.power());
        if (d.exact == 0)
            EXPECT_NEAR(d.power(), 0.05, 1e-14);
        else
            EXPECT_LT(d.power(), 0.05);
    }
}

TEST(PairedProportions, ACellBelowTenToTheMinusFourteenIsFlushedToZero) {
    // pA = pB = 1/2: p1 = p2 = (1 - rho) / 4. At a level of 0.6 one discordant pair is enough for a power
    // above 0.
    const auto power = [](double cell) {
        return PowerbyMargPRelSampBionm(1, 1, 40, 0.5, 0.5, 1 - 4 * cell, 0.6);
    };
    EXPECT_EQ(power(0), 0);
    EXPECT_EQ(power(9.9e-15), 0);
    EXPECT_GT(power(1.01e-14), 0);
}

TEST(PairedProportions, ACellIsFlushedBeforeTheOtherIsFormedFromIt) {
    // pA = 3/4, pB = 1/4: p2 = 1/16 - 3/16 rho, p1 = p2 + 1/2.
    const auto power = [](double p2) {
        return PowerbyMargPRelSampBionm(0, 1, 40, 0.75, 0.25, (1.0 / 16 - p2) * 16 / 3, 0.05);
    };
    const double without_second_kind = PowerbyPRelSampBionm(0, 1, nullptr, 40, 0.5, 0, 0.05);
    EXPECT_EQ(power(-1e-15), without_second_kind);
    EXPECT_EQ(power(1e-15), without_second_kind);
    EXPECT_EQ(power(-1e-13), -1);
    EXPECT_GT(power(1e-13), 0);
}

// ---- Normal approximation

TEST(PairedProportions, NormalPowerAddsBothTailsTwoSided) {
    Design d;
    d.exact = 0;
    for (double p2 : {0.1, 0.3, 0.6}) {
        d.p2 = p2;
        const double psi = 0.3 + p2, diff = 0.3 - p2;
        const double A = std::sqrt(40.0) * diff, B = kZ975 * std::sqrt(psi);
        const double C = std::sqrt(psi - diff * diff);
        EXPECT_NEAR(d.power(), 1 - phi((A + B) / C) + phi((A - B) / C), 1e-14);
    }
}

TEST(PairedProportions, NormalPowerOneSidedIsTheTailOnTheSideOfTheAlternative) {
    Design d;
    d.exact = 0;
    d.sided = 1;
    const double C = std::sqrt(0.4 - 0.04), B = kZ95 * std::sqrt(0.4), A = std::sqrt(40.0) * 0.2;
    EXPECT_NEAR(d.power(), phi((A - B) / C), 1e-14);
    std::swap(d.p1, d.p2);
    EXPECT_NEAR(d.power(), 1 - phi((-A + B) / C), 1e-14);
    d.p1 = d.p2 = 0.2;  // equal: the second form
    EXPECT_NEAR(d.power(), 1 - phi(kZ95), 1e-14);
}

TEST(PairedProportions, NormalPowerWithoutDiscordantPairsCountsAsAMissingProbability) {
    for (int sided : {0, 1}) EXPECT_EQ(PowerbyPRelSampBionm(sided, 0, nullptr, 40, 0, 0, 0.05), 1);
}

// ---- Exact test

TEST(PairedProportions, ExactPowersAreThoseOfEnumerationInRationalArithmetic) {
    for (const auto& row : read_table("proportions/paired_exact_power.csv"))
        EXPECT_NEAR(
            PowerbyPRelSampBionm(static_cast<int>(row[4]), 1, nullptr, row[0], row[1], row[2], row[3]),
            row[5], 1e-13)
            << "line " << row.line;
}

TEST(PairedProportions, TermsThatAreLeftOutDoNotChangeTheSum) {
    for (int sided : {0, 1})
        for (double N : {2.0, 3.0, 10.0, 77.0, 400.0, 1500.0})
            for (double psi : {1e-6, 0.01, 0.3, 0.8, 1.0})
                for (double share : {0.0, 0.2, 0.5, 0.7, 1.0})
                    for (double alpha : {1e-6, 0.05, 0.0625, 0.7}) {
                        Design d;
                        d.sided = sided;
                        d.N = N;
                        d.p1 = psi * share;
                        d.p2 = psi - d.p1;
                        d.alpha = alpha;
                        ASSERT_EQ(d.power(), d.by_sum()) << N << " " << psi << " " << share << " " << alpha;
                    }
}

TEST(PairedProportions, ManyPairsAreSummedByRecurrencesToTheSamePower) {
    for (int sided : {0, 1})
        for (double N : {2500.0, 7000.5, 30000.0})
            for (double psi : {0.03, 0.3, 0.9})
                for (double noncentrality : {-4.0, -1.0, 0.0, 2.8}) {
                    Design d;
                    d.sided = sided;
                    d.N = N;
                    d.p1 = (psi + noncentrality * std::sqrt(psi / N)) / 2;
                    d.p2 = psi - d.p1;
                    ASSERT_NEAR(d.power(), d.by_sum(), 2e-13) << N << " " << psi << " " << noncentrality;
                }
    // Levels and powers far from ordinary, relative to their size.
    for (double alpha : {1e-12, 0.4}) {
        Design d;
        d.N = 9000;
        d.alpha = alpha;
        d.p1 = 0.16;
        d.p2 = 0.14;
        ASSERT_NEAR(d.power(), d.by_sum(), 1e-10 * d.by_sum()) << alpha;
    }
}

TEST(PairedProportions, AnyNumberOfPairsIsAnsweredAtOnce) {
    // The exact power falls short of the normal one by about a constant over the root of N.
    double last_distance = 0;
    for (double N : {1e6, 1e9, 6e9, 1e12, 0x1p50}) {
        Design d;
        d.N = N;
        d.p1 = 0.25 + 1.4 / std::sqrt(2 * N);
        d.p2 = 0.5 - d.p1;
        const double exact = d.power();
        d.exact = 0;
        const double distance = (d.power() - exact) * std::sqrt(N);
        if (last_distance != 0) {
            EXPECT_NEAR(distance, last_distance, 0.02) << N;
        }
        last_distance = distance;
    }
    Design d;
    d.N = 0x1p1023;
    EXPECT_EQ(d.power(), 1);
}

TEST(PairedProportions, TheCancelObjectIsAskedForEveryOneOfManyPairs) {
    Design d;
    d.N = 12345.5;
    CountingCancel never;
    EXPECT_EQ(d.power(&never), d.power());
    EXPECT_EQ(never.queries, 12345);
    CountingCancel last(12345);
    EXPECT_MISSING(d.power(&last));
}

TEST(PairedProportions, AnExactSearchForMoreThanTheLevelAtEqualProportionsIsMissingAtOnce) {
    for (int sided : {0, 1})
        for (double p : {0.0, 0.2, 0.5}) {
            Design d;
            d.sided = sided;
            d.p1 = d.p2 = p;
            CountingCancel cancel;
            EXPECT_MISSING(d.size(&cancel));
            EXPECT_LE(cancel.queries, 1);
            EXPECT_MISSING(d.size());
        }
    // Equal margins whose cells differ in the last digit.
    CountingCancel cancel;
    EXPECT_MISSING(PowerReversebyMargPRelSampBionm(0, 1, &cancel, 0.8, 0.4, 0.4, 0.1, 0.05));
    EXPECT_LE(cancel.queries, 1);
    Design d;
    d.p1 = d.p2 = 0.2;
    d.target = 0.04;  // below the level: the search goes on until the power comes that close to it
    EXPECT_LT(d.size(), 1e6);
    EXPECT_GT(d.size(), 1);
}

TEST(PairedProportions, AnyNonZeroExactFlagIsTheExactTest) {
    Design d, e;
    e.exact = -3;
    EXPECT_EQ(d.power(), e.power());
    Design one, other;
    one.sided = 1;
    other.sided = -7;
    EXPECT_EQ(one.power(), other.power());
}

TEST(PairedProportions, WithoutDiscordantPairsTheExactPowerIsZero) {
    for (int sided : {0, 1})
        for (double N : {2.0, 40.0, 0x1p1023})
            EXPECT_EQ(PowerbyPRelSampBionm(sided, 1, nullptr, N, 0, 0, 0.05), 0);
}

TEST(PairedProportions, AFractionalNumberOfPairsSumsUpToItsIntegerPart) {
    Design d;
    d.alpha = 0.6;
    d.N = 2.5;
    EXPECT_EQ(d.power(), d.by_sum());
    CountingCancel cancel;
    d.power(&cancel);
    EXPECT_EQ(cancel.queries, 2);
}

TEST(PairedProportions, EqualCellsOneSidedUseTheLowerTail) {
    // m = 2 pairs, both discordant: the lower region {0} has 1/4; the upper one, on the exact tie, is empty.
    EXPECT_EQ(PowerbyPRelSampBionm(1, 1, nullptr, 2, 0.5, 0.5, 0.25), 0.25);
    const double p2 = std::nextafter(0.5, 1.0);
    EXPECT_EQ(PowerbyPRelSampBionm(1, 1, nullptr, 2, 1 - p2, p2, 0.25), 0);
}

TEST(PairedProportions, OnAnExactTieTheUpperRegionIsOneCountSmallerThanTheLower) {
    // m = 3, all discordant, level 1/2: P(X <= 1) = 1/2. The lower region is {0, 1}, the upper {3} only.
    const double p2 = 0.75;
    EXPECT_NEAR(PowerbyPRelSampBionm(1, 1, nullptr, 3, 1 - p2, p2, 0.5), std::pow(0.75, 3) + 0, 1e-15);
    EXPECT_NEAR(PowerbyPRelSampBionm(1, 1, nullptr, 3, p2, 1 - p2, 0.5),
                std::pow(0.75, 3) + 3 * std::pow(0.75, 2) * 0.25, 1e-15);
}

TEST(PairedProportions, EveryNumberOfDiscordantPairsWithANonEmptyRegionContributes) {
    // With p1 + p2 = 1 all pairs are discordant: the power at N = m is the conditional power for m.
    for (double alpha : {0.05, 0.001, 0.3})
        for (double m = 2; m <= 2000; ++m) {
            const double p_extreme = std::ldexp(1.0, -static_cast<int>(std::min(m, 1070.0)));
            const double two_sided = PowerbyPRelSampBionm(0, 1, nullptr, m, 0.5, 0.5, alpha);
            ASSERT_EQ(two_sided > 0, p_extreme <= alpha / 2) << alpha << " " << m;
            ASSERT_LE(two_sided, alpha + 1e-15);
            const double lower = PowerbyPRelSampBionm(1, 1, nullptr, m, 0.5, 0.5, alpha);
            ASSERT_EQ(lower > 0, p_extreme <= alpha) << alpha << " " << m;
            ASSERT_LE(lower, alpha);
            const double upper = PowerbyPRelSampBionm(1, 1, nullptr, m, 0.25, 0.75, alpha);
            ASSERT_EQ(upper > 0, p_extreme <= alpha) << alpha << " " << m;
            // The region is as large as the level allows: with one more count it would exceed it.
            long status = 0;
            const double k = OrvMath_940::OrvDistFun::IdfBin(lower, m, 0.5, status);
            ASSERT_GT(OrvMath_940::OrvDistFun::CdfBin(k + 1, m, 0.5, status), alpha);
        }
}

TEST(PairedProportions, OnePairHasARegionOnlyForLevelsOfAHalfAndMore) {
    // N = 2 with both pairs discordant or not: P(m = 1) = 2 psi (1 - psi).
    const double psi = 0.5;
    const double level = 0.6;  // m = 1: {0}; m = 2: {0}
    const double expected = 2 * psi * (1 - psi) * 0.5 + psi * psi * 0.25;
    EXPECT_NEAR(PowerbyPRelSampBionm(1, 1, nullptr, 2, 0.25, 0.25, level), expected, 1e-16);
    EXPECT_NEAR(PowerbyPRelSampBionm(1, 1, nullptr, 2, 0.25, 0.25, 0.4), psi * psi * 0.25, 1e-16);
}

TEST(PairedProportions, AnUpperLevelBelowEveryCountAddsNothing) {
    // P(X <= 0) = 1/2 > 1 - alpha at m = 1, 1/4 > 1 - alpha at m = 2: no quantile brackets the level.
    EXPECT_EQ(PowerbyPRelSampBionm(1, 1, nullptr, 2, 0.4, 0.6, 0.8), 0);
}

TEST(PairedProportions, TheCancelObjectIsAskedOnceForEveryNumberOfDiscordantPairs) {
    for (int sided : {0, 1})
        for (double N : {2.0, 40.0, 999.0}) {
            Design d;
            d.sided = sided;
            d.N = N;
            CountingCancel never;
            const double power = d.power(&never);
            EXPECT_EQ(never.queries, static_cast<long>(N));
            for (long stop_at : {1L, 2L, static_cast<long>(N)}) {
                CountingCancel cancel(stop_at);
                EXPECT_MISSING(d.power(&cancel));
                EXPECT_EQ(cancel.queries, stop_at);
            }
            CountingCancel too_late(static_cast<long>(N) + 1);
            EXPECT_EQ(d.power(&too_late), power);
        }
}

TEST(PairedProportions, AGiantNGoesOnAskingUntilItIsToldToStop) {
    Design d;
    d.N = 0x1p1023;
    CountingCancel cancel(1000);
    EXPECT_MISSING(d.power(&cancel));
    EXPECT_EQ(cancel.queries, 1000);
}

// ---- Sample size

TEST(PairedProportions, TheObjectiveIsThePowerLessTheTarget) {
    for (const Design& d : forms()) {
        const double sided = d.sided + 0.5, exact = d.exact;  // codes are truncated
        EXPECT_EQ(PRelSampBionmFunc(d.N, {0.25, d.p1, d.p2, sided, exact, d.alpha}, nullptr),
                  d.power() - 0.25);
    }
    CountingCancel cancel(1);
    EXPECT_EQ(PRelSampBionmFunc(40, {0.25, 0.3, 0.1, 0, 1, 0.05}, &cancel), OrvMV::Missing() - 0.25);
    EXPECT_EQ(cancel.queries, 1);
}

TEST(PairedProportions, TheNormalSampleSizeIsFractionalAndItsPowerJustReachesTheTarget) {
    for (int sided : {0, 1}) {
        Design d;
        d.exact = 0;
        d.sided = sided;
        d.N = d.size();
        EXPECT_NE(d.N, std::floor(d.N));
        EXPECT_LE(d.power(), d.target);
        d.N += 1e-8;
        EXPECT_GE(d.power(), d.target);
    }
}

TEST(PairedProportions, TheNormalSampleSizeOneSidedIsTheClosedForm) {
    Design d;
    d.exact = 0;
    d.sided = 1;
    const double root = (kZ95 * std::sqrt(0.4) + 0.8416212335729143 * std::sqrt(0.36)) / 0.2;
    EXPECT_NEAR(d.size(), root * root, 1e-8);
    EXPECT_NEAR(d.size_by_margins(), root * root, 1e-8);
}

TEST(PairedProportions, TheNormalSearchCannotBeCancelled) {
    Design d;
    d.exact = 0;
    CountingCancel cancel(1);
    EXPECT_GT(d.size(&cancel), 0);
    EXPECT_GT(d.size_by_margins(&cancel), 0);
    EXPECT_EQ(cancel.queries, 0);
}

TEST(PairedProportions, TheExactSampleSizeIsWhatTheSolversFindOnPowersByTheFullSum) {
    for (int sided : {0, 1}) {
        Design d;
        d.sided = sided;
        testing_support::RecordedObjective f([&](double N) {
            return N < 2 ? -1 - d.target : related_power_by_sum(d.sided, N, d.p1, d.p2, d.alpha) - d.target;
        });
        double expected = PowerReverse_Binom({}, testing_support::RecordedObjective::call, nullptr, 1, 400);
        OptimizeRtbBionm(&expected, {}, testing_support::RecordedObjective::call, nullptr);
        EXPECT_EQ(d.size(), expected);
        EXPECT_EQ(d.size(), std::floor(d.size()));
        d.N = d.size();
        EXPECT_GE(d.power(), d.target);
    }
}

TEST(PairedProportions, TheMarginalSearchIsThatOfTheCells) {
    for (const Design& d :
         forms([](Design& e) { e.pA = 0.5, e.pB = 0.25, e.rho = 0, e.p1 = 0.375, e.p2 = 0.125; }))
        EXPECT_EQ(d.size_by_margins(), d.size());
    // p2 = -1e-15 is flushed for the search too.
    for (Design d : forms([](Design& e) { e.pA = 0.75, e.pB = 0.25, e.p1 = 0.5, e.p2 = 0; })) {
        d.rho = (1.0 / 16 + 1e-15) * 16 / 3;
        EXPECT_EQ(d.size_by_margins(), d.size());
    }
}

TEST(PairedProportions, ADesignThatThePowerRefusesIsMissingAtOnce) {
    const Change changes[] = {
        [](Design& d) { d.p1 = 0.9, d.p2 = 0.2; },
        [](Design& d) { d.p1 = -0.1; },
        [](Design& d) { d.p2 = kNaN; },
        [](Design& d) { d.alpha = 0; },
        [](Design& d) { d.alpha = kNaN; },
        [](Design& d) { d.exact = 1, d.p1 = d.p2 = 0; },
    };
    for (const Change& change : changes)
        for (const Design& d : forms(change)) EXPECT_MISSING(d.size());
}

TEST(PairedProportions, TheMarginalSearchChecksTheLevelTheMarginsAndTheCorrelation) {
    for (const Change& change : kBadLevels)
        for (const Design& d : forms(change)) EXPECT_EQ(d.size_by_margins(), -1);
}

TEST(PairedProportions, ACancelledExactSearchIsMissing) {
    Design d;
    for (long stop_at : {1L, 5L, 500L}) {
        CountingCancel cancel(stop_at);
        EXPECT_MISSING(d.size(&cancel));
        CountingCancel other(stop_at);
        EXPECT_MISSING(d.size_by_margins(&other));
    }
    CountingCancel never;
    EXPECT_EQ(d.size(&never), d.size());
}

TEST(PairedProportions, AnExactSearchForWhatNeedsManyPairsEndsWhenItIsToldToStop) {
    Design d;
    d.p1 = 0.2;
    d.p2 = 0.2000001;
    CountingCancel cancel(50000);
    EXPECT_MISSING(d.size(&cancel));
}

}  // namespace
