// The test of one proportion: powers and sample sizes.
#include "proportions/one/power.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "proportions/one/curves.h"
#include "proportions/one/walk.h"
#include "statpower/one_sample_binomial.h"
#include "support/normal.h"
#include "support/record.h"
#include "support/table.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using namespace testing_support;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;

namespace {

/// A valid design, of which a test breaks one argument.
struct Design {
    double N = 40;
    double p1 = 0.6;
    double p0 = 0.4;
    double alpha = 0.05;
    int method = 1;
    int sides = 0;
    bool correction = false;
    double target = 0.8;

    double power(OrvQueryCancel* cancel = nullptr) const {
        return PowerOneSampBinom(N, p1, p0, alpha, method, sides, correction, cancel);
    }
    double size(OrvQueryCancel* cancel = nullptr) const {
        return PowerReverseOneSampBinom(target, p1, p0, alpha, method, sides, correction, cancel);
    }
    double exact(OrvQueryCancel* cancel = nullptr) const {
        return _POSBBinEnum(N, p1, p0, method, sides, alpha, cancel);
    }
    double normal() const { return _POSBNormalAppro(N, p1, p0, method, sides, alpha, correction); }
    double by_walk(OrvQueryCancel* cancel = nullptr) const {
        return one_sample_power_by_walk(N, p1, p0, sides, alpha, cancel);
    }
};

using Change = std::function<void(Design&)>;

Design with(const Change& change) {
    Design d;
    change(d);
    return d;
}

TEST(OneSampleBinomial, PowerIsMinusOneForEveryArgumentOutOfItsRange) {
    const Change changes[] = {
        [](Design& d) { d.alpha = 0; },       [](Design& d) { d.alpha = -kSmallest; },
        [](Design& d) { d.alpha = 1; },       [](Design& d) { d.alpha = kNaN; },
        [](Design& d) { d.p0 = kAboveOne; },  [](Design& d) { d.p0 = -kSmallest; },
        [](Design& d) { d.p0 = kNaN; },       [](Design& d) { d.p1 = kAboveOne; },
        [](Design& d) { d.p1 = -kSmallest; }, [](Design& d) { d.p1 = kNaN; },
        [](Design& d) { d.N = kBelowOne; },   [](Design& d) { d.N = 0; },
        [](Design& d) { d.N = -kInfinity; },  [](Design& d) { d.N = kNaN; },
    };
    for (const Change& change : changes)
        for (int method : {0, 1})
            for (int sides : {0, 1}) {
                Design d = with(change);
                d.method = method;
                d.sides = sides;
                EXPECT_EQ(d.power(), -1);
                EXPECT_EQ(d.exact(), -1);
                EXPECT_EQ(d.normal(), -1);
            }
}

TEST(OneSampleBinomial, PowerIsComputedAtTheEndsOfTheRanges) {
    const Change changes[] = {
        [](Design& d) { d.alpha = kSmallest; },
        [](Design& d) { d.alpha = kBelowOne; },
        [](Design& d) { d.p0 = 0; },
        [](Design& d) { d.p0 = 1; },
        [](Design& d) { d.p1 = 0; },
        [](Design& d) { d.p1 = 1; },
        [](Design& d) { d.N = 1; },
    };
    for (const Change& change : changes)
        for (int method : {0, 1})
            for (int sides : {0, 1}) {
                Design d = with(change);
                d.method = method;
                d.sides = sides;
                EXPECT_GE(d.power(), 0);
                EXPECT_LE(d.power(), 2);
            }
}

TEST(OneSampleBinomial, MethodZeroIsTheNormalApproximationAndAnyOtherTheExactTest) {
    Design d;
    d.correction = true;
    d.method = 0;
    EXPECT_EQ(d.power(), d.normal());
    EXPECT_NE(d.power(), d.exact());
    for (int method : {1, 2, -1}) {
        d.method = method;
        EXPECT_EQ(d.power(), d.exact());
    }
}

TEST(OneSampleBinomial, TheKernelsDoNotReadTheMethod) {
    Design d, e;
    d.method = 0;
    e.method = 7;
    EXPECT_EQ(d.exact(), e.exact());
    EXPECT_EQ(d.normal(), e.normal());
}

// ---- Normal approximation

TEST(OneSampleBinomial, NormalPowerAddsBothTailsTwoSided) {
    Design d;
    d.method = 0;
    const double r = std::sqrt(d.N), s0 = std::sqrt(0.24);
    for (double p1 : {0.6, 0.2, 0.4, 0.999}) {
        d.p1 = p1;
        const double distance = (d.p0 - p1) * r, spread = std::sqrt(p1 * (1 - p1));
        const double lower = phi((distance - s0 * kZ975) / spread);
        const double upper = 1 - phi((distance + s0 * kZ975) / spread);
        EXPECT_NEAR(d.power(), lower + upper, 1e-14) << p1;
    }
}

TEST(OneSampleBinomial, NormalPowerTwoSidedIsSummedFromTheLeft) {
    // (Phi(a) + 1) - Phi(b); at equal proportions the last digits reach the default range.
    Design d;
    d.method = 0;
    const double a = OrvDistFun::CdfStdNorm(-0.3 * OrvDistFun::IdfStdNorm(0.975) / 0.3);
    const double b = OrvDistFun::CdfStdNorm(0.3 * OrvDistFun::IdfStdNorm(0.975) / 0.3);
    ASSERT_NE(a + 1 - b, a + (1 - b));
    d.p0 = d.p1 = 0.1;
    d.N = 20;
    EXPECT_EQ(d.power(), a + 1 - b);
    int n_min = 0, n_max = 0;
    _SetPlotRangeN(20, 0.1, 0.1, 0, 0, 0.05, n_min, n_max, false);
    EXPECT_EQ(n_min, 18);
    EXPECT_EQ(n_max, 39);
}

TEST(OneSampleBinomial, NormalPowerOneSidedIsTheTailOnTheSideOfTheAlternative) {
    Design d;
    d.method = 0;
    d.sides = 1;
    const double r = std::sqrt(d.N), s0 = std::sqrt(0.24);
    d.p1 = 0.6;
    EXPECT_NEAR(d.power(), 1 - phi((-0.2 * r + s0 * kZ95) / std::sqrt(0.24)), 1e-14);
    d.p1 = 0.3;
    EXPECT_NEAR(d.power(), phi((0.1 * r - s0 * kZ95) / std::sqrt(0.21)), 1e-14);
}

TEST(OneSampleBinomial, TheContinuityCorrectionShortensTheDistance) {
    Design d;
    d.method = 0;
    d.correction = true;
    const double r = std::sqrt(d.N), s0 = std::sqrt(0.24), c = 1 / (2 * r);
    EXPECT_NEAR(d.power(), phi((-0.2 * r - s0 * kZ975 - c) / s0) + 1 - phi((-0.2 * r + s0 * kZ975 + c) / s0),
                1e-14);
    d.sides = 1;
    EXPECT_NEAR(d.power(), 1 - phi((-0.2 * r + s0 * kZ95 + c) / s0), 1e-14);
    d.p1 = 0.3;
    EXPECT_NEAR(d.power(), phi((0.1 * r - s0 * kZ95 - c) / std::sqrt(0.21)), 1e-14);
}

TEST(OneSampleBinomial, TheContinuityCorrectionIsHalfOverTheRootAndMinusOneBelowOne) {
    EXPECT_EQ(_ConCorrValue(1, 0, 0), 0.5);
    EXPECT_EQ(_ConCorrValue(16, kNaN, kInfinity), 0.125);
    for (double N : {kBelowOne, 0.0, -4.0, kNaN}) EXPECT_EQ(_ConCorrValue(N, 0.5, 0.5), -1);
}

TEST(OneSampleBinomial, TheContinuityCorrectionDoesNotChangeTheExactTest) {
    Design d, corrected;
    corrected.correction = true;
    EXPECT_EQ(d.power(), corrected.power());
}

TEST(OneSampleBinomial, EqualProportionsOneSidedUseTheLowerTail) {
    Design d;
    d.sides = 1;
    d.p1 = d.p0 = 0.4;
    d.method = 0;
    EXPECT_NEAR(d.power(), 0.05, 1e-14);
    // At a tiny N the tails of the exact test differ: nothing lies in the lower one of three trials.
    d.method = 1;
    d.N = 3;
    d.p0 = d.p1 = 0.2;
    d.alpha = 0.1;
    EXPECT_EQ(d.power(), 0);
    d.p1 = std::nextafter(0.2, 1.0);
    EXPECT_NEAR(d.power(), 0.008, 1e-14);
}

TEST(OneSampleBinomial, NormalPowerAtACertainAlternativeIsZeroOrOne) {
    Design d;
    d.method = 0;
    d.sides = 1;
    d.p1 = 1;
    EXPECT_EQ(d.power(), 1);
    d.N = 1;
    d.p0 = 0.9;
    EXPECT_EQ(d.power(), 0);
    d.N = 40;
    d.p1 = 0;
    EXPECT_EQ(d.power(), 1);
}

TEST(OneSampleBinomial, AnIndefiniteTailCountsAsAMissingProbability) {
    Design d;
    d.method = 0;
    d.p1 = d.p0 = 0;
    EXPECT_EQ(d.power(), 1);
    d.sides = 1;
    EXPECT_EQ(d.power(), 0);
}

// ---- Exact test

TEST(OneSampleBinomial, ExactPowersAreThoseOfEnumerationInRationalArithmetic) {
    for (const auto& row : read_table("proportions/one_exact_power.csv"))
        EXPECT_NEAR(
            PowerOneSampBinom(row[0], row[1], row[2], row[3], 1, static_cast<int>(row[4]), false, nullptr),
            row[5], 1e-13)
            << "line " << row.line;
}

TEST(OneSampleBinomial, ATwoSidedExactPowerAlwaysCountsBothTails) {
    Design d;
    d.N = 10;
    d.p0 = 0.5;
    d.p1 = 0.7;
    // At N = 10 and p0 = 1/2 the region is {0, 1, 9, 10}.
    const double expected =
        std::pow(0.3, 10) + 10 * 0.7 * std::pow(0.3, 9) + 10 * 0.3 * std::pow(0.7, 9) + std::pow(0.7, 10);
    EXPECT_NEAR(d.power(), expected, 1e-15);
}

TEST(OneSampleBinomial, ACountWhoseTailIsExactlyTheLevelIsRejected) {
    Design d;
    d.N = 5;
    d.p0 = 0.5;
    d.p1 = 0.75;
    d.sides = 1;
    d.alpha = 0.03125;  // P(X = 5)
    EXPECT_EQ(d.power(), std::pow(0.75, 5));
    d.alpha = 1 - std::nextafter(0.96875, 1.0);  // the nearest smaller level that 1 - alpha can tell from it
    EXPECT_EQ(d.power(), 0);
    d.p1 = 0.25;
    EXPECT_EQ(d.power(), 0);
    d.alpha = 0.03125;
    EXPECT_EQ(d.power(), std::pow(0.75, 5));
}

/// The library against the walk: power and number of questions.
void expect_same_as_walk(const Design& d) {
    CountingCancel asked_by_library, asked_by_walk;
    const double expected = d.by_walk(&asked_by_walk);
    ASSERT_EQ(d.exact(&asked_by_library), expected)
        << "N " << d.N << " p0 " << d.p0 << " p1 " << d.p1 << " alpha " << d.alpha << " sides " << d.sides;
    ASSERT_EQ(d.exact(), expected);
    ASSERT_EQ(asked_by_library.queries, asked_by_walk.queries)
        << "N " << d.N << " p0 " << d.p0 << " p1 " << d.p1 << " alpha " << d.alpha << " sides " << d.sides;
}

void expect_same_as_walk_on_all_sides(Design d) {
    d.sides = 0;
    expect_same_as_walk(d);
    d.sides = 1;
    d.p1 = d.p0 / 2;
    expect_same_as_walk(d);
    d.p1 = (1 + d.p0) / 2;
    expect_same_as_walk(d);
}

/// A level at which a tail of the null distribution, or half of it, lies exactly.
double tied_level(double N, double p0, double count, bool lower) {
    long status = 0;
    const double cumulative = OrvDistFun::CdfBin(count, N, p0, status);
    const double tail = lower ? cumulative : 1 - cumulative;
    return 2 * tail < 1 ? 2 * tail : tail;
}

TEST(OneSampleBinomial, BisectionFindsTheCriticalCountsOfTheWalkForEveryNUpTo200) {
    for (double N = 1; N <= 200; ++N)
        for (double p0 : {0.0, 0.03, 0.25, 0.5, 0.7, 1.0})
            for (double alpha : {1e-9, 0.01, 0.05, 0.0625, 0.5, 0.99}) {
                Design d;
                d.N = N;
                d.p0 = p0;
                d.alpha = alpha;
                expect_same_as_walk_on_all_sides(d);
            }
}

TEST(OneSampleBinomial, BisectionFindsTheCriticalCountsOfTheWalkOnExactTies) {
    for (double N = 1; N <= 200; ++N)
        for (double p0 : {0.1, 0.25, 0.5})
            for (double quarter : {1.0, 2.0, 3.0})
                for (bool lower : {true, false})
                    for (double direction : {0.0, 0.5, 1.0}) {
                        Design d;
                        d.N = N;
                        d.p0 = p0;
                        const double tie = tied_level(N, p0, std::floor(N * p0 * quarter / 2), lower);
                        d.alpha = direction == 0.5 ? tie : std::nextafter(tie, direction);
                        if (d.alpha > 0 && d.alpha < 1) expect_same_as_walk_on_all_sides(d);
                    }
}

TEST(OneSampleBinomial, BisectionFindsTheCriticalCountsOfTheWalkForRandomN) {
    std::mt19937_64 random(20240917);
    std::uniform_real_distribution<double> unit;
    for (int i = 0; i < 12; ++i) {
        Design d;
        d.N = std::floor(std::pow(1e5, 0.5 + 0.5 * unit(random)));
        d.p0 = unit(random);
        d.alpha = i % 3 == 0 ? tied_level(d.N, d.p0, std::floor(d.N * d.p0), true) : 0.2 * unit(random);
        expect_same_as_walk_on_all_sides(d);
    }
}

TEST(OneSampleBinomial, BisectionFindsTheCriticalCountsOfTheWalkForFractionalN) {
    for (double N : {1.5, 2.5, 3.999, 10.25, 57.3, 150.75})
        for (double p0 : {0.0, 0.3, 0.5, 0.9, 0.9999, 1.0})
            for (double alpha : {0.01, 0.05, 0.5, 0.99}) {
                Design d;
                d.N = N;
                d.p0 = p0;
                d.alpha = alpha;
                expect_same_as_walk_on_all_sides(d);
            }
}

TEST(OneSampleBinomial, AFractionalNWithoutACriticalCountRejectsEverythingTwoSided) {
    // P(X <= 1) at 1.5 trials is far below the level when p0 is nearly one.
    Design d;
    d.N = 1.5;
    d.p0 = 0.9999;
    d.p1 = 0.3;
    long status = 0;
    ASSERT_LE(OrvDistFun::CdfBin(0, d.N, d.p0, status), 0.025);
    ASSERT_LE(OrvDistFun::CdfBin(1, d.N, d.p0, status), 0.025);
    EXPECT_GE(d.power(), 1);
}

TEST(OneSampleBinomial, TheCancelObjectIsAskedOnceAtEveryCountOfTheWalks) {
    // p0 = 1/2, N = 10: the lower walk stops at x = 1 (-1, 0, 1), the upper one at j = 7 (10, 9, 8, 7).
    Design d;
    d.N = 10;
    d.p0 = 0.5;
    CountingCancel two_sided;
    d.power(&two_sided);
    EXPECT_EQ(two_sided.queries, 3 + 4);
    d.sides = 1;
    CountingCancel upper;  // {8, 9, 10} has 56/1024: the region is {9, 10}
    d.power(&upper);
    EXPECT_EQ(upper.queries, 4);
    d.p1 = 0.3;
    CountingCancel lower;
    d.power(&lower);
    EXPECT_EQ(lower.queries, 3);
}

TEST(OneSampleBinomial, AnExactPowerIsMissingWhenAnyOfTheQuestionsIsAnsweredByStop) {
    for (int sides : {0, 1})
        for (double p1 : {0.2, 0.6}) {
            Design d;
            d.sides = sides;
            d.p1 = p1;
            CountingCancel never;
            const double power = d.power(&never);
            EXPECT_GT(never.queries, 5);
            for (long stop_at = 1; stop_at <= never.queries; ++stop_at) {
                CountingCancel cancel(stop_at);
                EXPECT_MISSING(d.power(&cancel));
                EXPECT_EQ(cancel.queries, stop_at);
            }
            CountingCancel too_late(never.queries + 1);
            EXPECT_EQ(d.power(&too_late), power);
        }
}

TEST(OneSampleBinomial, TheNormalApproximationAsksNothing) {
    Design d;
    d.method = 0;
    CountingCancel cancel(1);
    EXPECT_GT(d.power(&cancel), 0);
    EXPECT_GT(d.size(&cancel), 0);
    EXPECT_EQ(cancel.queries, 0);
}

TEST(OneSampleBinomial, AnExactPowerAtAnyNEnds) {
    for (double N : {1e6, 1e9, 1e15, 0x1p53, 1e30, 1e200, 0x1p1023, std::numeric_limits<double>::max()})
        for (int sides : {0, 1}) {
            Design d;
            d.N = N;
            d.sides = sides;
            EXPECT_NEAR(d.power(), 1, 1e-12) << N;
            d.p1 = 0.2;
            EXPECT_NEAR(d.power(), 1, 1e-12) << N;
            d.p1 = d.p0;
            EXPECT_NEAR(d.power(), 0.05, N < 1e16 ? 1e-3 : 1) << N;
        }
}

TEST(OneSampleBinomial, AnInfiniteNIsAFailureOfTheDistributionLibrary) {
    Design d;
    d.N = kInfinity;
    for (int sides : {0, 1}) {
        d.sides = sides;
        EXPECT_EQ(d.power(), -2);
    }
}

TEST(OneSampleBinomial, AGiantNGoesOnAskingUntilItIsToldToStop) {
    Design d;
    d.N = 0x1p1023;
    CountingCancel cancel(100000);
    EXPECT_MISSING(d.power(&cancel));
    EXPECT_EQ(cancel.queries, 100000);
}

// ---- Sample size

TEST(OneSampleBinomial, SampleSizeIsMinusOneForEveryArgumentOutOfItsRange) {
    const Change changes[] = {
        [](Design& d) { d.alpha = 0; },       [](Design& d) { d.alpha = 1; },
        [](Design& d) { d.alpha = kNaN; },    [](Design& d) { d.p0 = kAboveOne; },
        [](Design& d) { d.p0 = -kSmallest; }, [](Design& d) { d.p1 = kAboveOne; },
        [](Design& d) { d.p1 = -kSmallest; }, [](Design& d) { d.p1 = kNaN; },
        [](Design& d) { d.p0 = kNaN; },
    };
    for (const Change& change : changes)
        for (int method : {0, 1}) {
            Design d = with(change);
            d.method = method;
            EXPECT_EQ(d.size(), -1);
        }
}

TEST(OneSampleBinomial, SampleSizeNeedsAnEffectAboveTenToTheMinusFourteen) {
    for (int method : {0, 1}) {
        Design d;
        d.method = method;
        d.p0 = 0;
        d.p1 = 1e-14;
        EXPECT_EQ(d.size(), -1);
        d.p1 = 0;
        EXPECT_EQ(d.size(), -1);
    }
    Design d;
    d.method = 0;
    d.p0 = 0;
    d.p1 = std::nextafter(1e-14, 1.0);
    EXPECT_NE(d.size(), -1);
}

TEST(OneSampleBinomial, TheNormalSampleSizeIsFractionalAndItsPowerJustReachesTheTarget) {
    for (int sides : {0, 1})
        for (bool correction : {false, true}) {
            Design d;
            d.method = 0;
            d.sides = sides;
            d.correction = correction;
            const double N = d.size();
            EXPECT_NE(N, std::floor(N));
            d.N = N;
            EXPECT_LE(d.power(), d.target);
            d.N = N + 1e-8;
            EXPECT_GE(d.power(), d.target);
        }
}

TEST(OneSampleBinomial, TheNormalSampleSizeIsSearchedToWithinABillionth) {
    // The bisection that stops below a width of 1e-9 mostly ends at another double than one of 1e-8 or 1e-10.
    int other_than_coarse = 0, other_than_fine = 0;
    for (double p1 : {0.42, 0.45, 0.5, 0.55, 0.3, 0.33}) {
        const std::vector<double> design{0.8, p1, 0.4, 0, 0, 0.05, 0};
        const auto search = [&](double tolerance) {
            return PowerReverse(design, _POSBNormalApproFunc, nullptr, 1, 400, tolerance);
        };
        const double N = _POSBReverseNormalAppro(0.8, p1, 0.4, 0, 0, 0.05, false);
        EXPECT_EQ(N, search(1e-9)) << p1;
        other_than_coarse += N != search(1e-8) ? 1 : 0;
        other_than_fine += N != search(1e-10) ? 1 : 0;
    }
    EXPECT_GT(other_than_coarse, 1);
    EXPECT_GT(other_than_fine, 1);
}

TEST(OneSampleBinomial, TheNormalSampleSizeOneSidedIsTheClosedForm) {
    Design d;
    d.method = 0;
    d.sides = 1;
    const double z_power = 0.8416212335729143;
    const double root = (kZ95 * std::sqrt(0.24) + z_power * std::sqrt(0.24)) / 0.2;
    EXPECT_NEAR(d.size(), root * root, 1e-8);
}

TEST(OneSampleBinomial, TheExactSampleSizeIsWholeAndReachesTheTarget) {
    for (int sides : {0, 1})
        for (double p1 : {0.55, 0.7, 0.2}) {
            Design d;
            d.sides = sides;
            d.p1 = p1;
            d.N = d.size();
            EXPECT_EQ(d.N, std::floor(d.N));
            EXPECT_GE(d.power(), d.target);
        }
}

TEST(OneSampleBinomial, TheExactSampleSizeIsWhatTheSolversFindOnPowersByWalk) {
    for (int sides : {0, 1})
        for (double p1 : {0.55, 0.62, 0.2}) {
            Design d;
            d.sides = sides;
            d.p1 = p1;
            testing_support::RecordedObjective f([&](double N) {
                return one_sample_power_by_walk(N, d.p1, d.p0, d.sides, d.alpha) - d.target;
            });
            double expected =
                PowerReverse_Binom({}, testing_support::RecordedObjective::call, nullptr, 1, 400);
            OptimizeRtbBionm(&expected, {}, testing_support::RecordedObjective::call, nullptr);
            EXPECT_EQ(d.size(), expected);
        }
}

TEST(OneSampleBinomial, ATargetThatCannotBeReachedIsMissing) {
    for (double target : {1.5, kInfinity})
        for (int method : {0, 1}) {
            Design d;
            d.method = method;
            d.target = target;
            EXPECT_MISSING(d.size());
        }
}

TEST(OneSampleBinomial, ATargetOfZeroIsReachedByOneTrial) {
    for (int method : {0, 1}) {
        Design d;
        d.method = method;
        d.target = 0;
        EXPECT_EQ(d.size(), 1);
    }
}

TEST(OneSampleBinomial, ACancelledExactSearchIsMissing) {
    Design d;
    d.p1 = 0.45;
    CountingCancel never;
    const double N = d.size(&never);
    EXPECT_FALSE(OrvMV::IsMissing(N));
    for (long stop_at : {1L, 10L, 1000L}) {
        CountingCancel cancel(stop_at);
        EXPECT_MISSING(d.size(&cancel));
    }
}

TEST(OneSampleBinomial, TheDesignVectorsHoldTargetProportionsMethodSidesLevelAndCorrection) {
    Design d;
    d.correction = true;
    d.alpha = 0.03;
    d.sides = 1;
    EXPECT_EQ(_POSBNormalApproFunc(d.N, {0.25, 0.6, 0.4, 0, 1, 0.03, 1}, nullptr), d.normal() - 0.25);
    EXPECT_EQ(_POSBNormalApproFunc(d.N, {0.25, 0.6, 0.4, 9, 1.9, 0.03, -2}, nullptr), d.normal() - 0.25);
    EXPECT_EQ(_POSBBinEnumFunc(d.N, {0.25, 0.6, 0.4, 1, 1, 0.03}, nullptr), d.exact() - 0.25);
    d.correction = false;
    EXPECT_EQ(_POSBNormalApproFunc(d.N, {0.25, 0.6, 0.4, 0, 1, 0.03, 0}, nullptr), d.normal() - 0.25);
    // 0.9 is truncated to 0: two-sided.
    d.sides = 0;
    EXPECT_EQ(_POSBBinEnumFunc(d.N, {0.25, 0.6, 0.4, 1, 0.9, 0.03}, nullptr), d.exact() - 0.25);
}

TEST(OneSampleBinomial, TheExactObjectiveHandsItsCancelObjectOn) {
    CountingCancel cancel(1);
    EXPECT_EQ(_POSBBinEnumFunc(40, {0.25, 0.6, 0.4, 1, 1, 0.03}, &cancel), OrvMV::Missing() - 0.25);
    EXPECT_EQ(cancel.queries, 1);
}

TEST(OneSampleBinomial, TheSearchesBehindTheEntryPointAreItsOwn) {
    Design d;
    EXPECT_EQ(_POSBReverseBinEnum(d.target, d.p1, d.p0, 1, d.sides, d.alpha, nullptr), d.size());
    d.method = 0;
    EXPECT_EQ(_POSBReverseNormalAppro(d.target, d.p1, d.p0, 0, d.sides, d.alpha, false), d.size());
    // They check nothing themselves: a refused design is a target that is never reached.
    EXPECT_MISSING(_POSBReverseBinEnum(d.target, 2, d.p0, 1, d.sides, d.alpha, nullptr));
    EXPECT_MISSING(_POSBReverseNormalAppro(d.target, 2, d.p0, 0, d.sides, d.alpha, false));
}

}  // namespace
