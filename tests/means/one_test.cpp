// The one-sample t test.
#include "means/one.h"

#include "means/expectations.h"
#include "statpower/means.h"

using namespace POWER_NAMESPACE;

namespace {

constexpr double kLevelsRefused[] = {0, -0.1, 1, 1.5, kNaN};

// ---- Power -----------------------------------------------------------------------------------------------

TEST(OneSamplePower, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("means/one_power.csv")) {
        EXPECT_NEAR(PowerOneSampleNondirectionalES(row[0], row[1], row[2]), row[3], 1e-12) << row.line;
        EXPECT_NEAR(PowerOneSampleDirectionalES(row[0], row[1], row[2]), row[4], 1e-12) << row.line;
    }
}

TEST(OneSamplePower, OfMeansIsThatOfTheirEffectSize) {
    EXPECT_EQ(PowerOneSampleNondirectional(20, 103, 4, 100, 0.05),
              PowerOneSampleNondirectionalES(20, 0.75, 0.05));
    EXPECT_EQ(PowerOneSampleDirectional(20, 103, 4, 100, 0.05), PowerOneSampleDirectionalES(20, 0.75, 0.05));
}

TEST(OneSamplePower, WithoutAnEffectIsAlpha) {
    for (double N : {1.5, 2.0, 10.0, 1e6})
        for (double alpha : {1e-6, 0.05, 0.3}) {
            EXPECT_NEAR(PowerOneSampleNondirectionalES(N, 0, alpha), alpha, 1e-14);
            EXPECT_NEAR(PowerOneSampleDirectionalES(N, 0, alpha), alpha, 1e-14);
        }
}

TEST(OneSamplePower, TwoSidedIsSymmetricInTheEffect) {
    EXPECT_DOUBLE_EQ(PowerOneSampleNondirectionalES(17, -0.4, 0.05),
                     PowerOneSampleNondirectionalES(17, 0.4, 0.05));
    EXPECT_DOUBLE_EQ(PowerOneSampleNondirectional(17, 96, 10, 100, 0.05),
                     PowerOneSampleNondirectional(17, 104, 10, 100, 0.05));
}

TEST(OneSamplePower, OneSidedTakesTheEffectWithoutItsSign) {
    EXPECT_EQ(PowerOneSampleDirectionalES(17, -0.5, 0.05), PowerOneSampleDirectionalES(17, 0.5, 0.05));
    EXPECT_EQ(PowerOneSampleDirectional(17, 95, 10, 100, 0.05),
              PowerOneSampleDirectional(17, 105, 10, 100, 0.05));
}

TEST(OneSamplePower, IsMissingForOneObservationOrLess) {
    for (double N : {1.0, 0.5, 0.0, -3.0, -kInfinity}) {
        EXPECT_MISSING(PowerOneSampleNondirectionalES(N, 0.5, 0.05));
        EXPECT_MISSING(PowerOneSampleDirectionalES(N, 0.5, 0.05));
        EXPECT_MISSING(PowerOneSampleNondirectional(N, 1, 2, 0, 0.05));
        EXPECT_MISSING(PowerOneSampleDirectional(N, 1, 2, 0, 0.05));
    }
    EXPECT_PRESENT(PowerOneSampleNondirectionalES(kAboveOne, 0.5, 0.05));
    EXPECT_PRESENT(PowerOneSampleDirectionalES(kAboveOne, 0.5, 0.05));
}

TEST(OneSamplePower, TwoSidedForAnEffectSizeChecksOnlyThatNIsNotAtMostOne) {
    // alpha = 0 never rejects, alpha = 1 always does: the critical values are infinite and 0.
    EXPECT_EQ(PowerOneSampleNondirectionalES(10, 0.5, 0), 0);
    EXPECT_NEAR(PowerOneSampleNondirectionalES(10, 0.5, 1), 1, 1e-14);
    for (double alpha : kLevelsRefused) EXPECT_PRESENT(PowerOneSampleNondirectionalES(10, 0.5, alpha));
    // A NaN is not at most 1; no probability can be computed, and the power counts as 1.
    EXPECT_EQ(PowerOneSampleNondirectionalES(kNaN, 0.5, 0.05), 1);
    EXPECT_EQ(PowerOneSampleNondirectionalES(10, kNaN, 0.05), 1);
}

TEST(OneSamplePower, OneSidedForAnEffectSizeIsMissingUnlessAlphaIsBetweenZeroAndOne) {
    for (double alpha : kLevelsRefused) EXPECT_MISSING(PowerOneSampleDirectionalES(10, 0.5, alpha));
    EXPECT_MISSING(PowerOneSampleDirectionalES(kNaN, 0.5, 0.05));
    for (double alpha : {kSmallest, kBelowOne}) EXPECT_PRESENT(PowerOneSampleDirectionalES(10, 0.5, alpha));
    EXPECT_EQ(PowerOneSampleDirectionalES(10, kNaN, 0.05), 1);
}

TEST(OneSamplePower, OfMeansIsMissingUnlessAlphaIsBetweenZeroAndOne) {
    for (double alpha : kLevelsRefused) {
        EXPECT_MISSING(PowerOneSampleNondirectional(10, 1, 2, 0, alpha));
        EXPECT_MISSING(PowerOneSampleDirectional(10, 1, 2, 0, alpha));
    }
    EXPECT_MISSING(PowerOneSampleNondirectional(kNaN, 1, 2, 0, 0.05));
    EXPECT_MISSING(PowerOneSampleDirectional(kNaN, 1, 2, 0, 0.05));
}

TEST(OneSamplePower, OfMeansIsMissingUnlessTheStandardDeviationIsAboveZero) {
    for (double sd : {0.0, -1.0, kNaN}) {
        EXPECT_MISSING(PowerOneSampleNondirectional(10, 1, sd, 0, 0.05));
        EXPECT_MISSING(PowerOneSampleDirectional(10, 1, sd, 0, 0.05));
    }
    EXPECT_PRESENT(PowerOneSampleNondirectional(10, 0, 1e-300, 0, 0.05));
}

// ---- Effect size -----------------------------------------------------------------------------------------

TEST(OneSampleEffectSize, IsTheDifferenceInStandardDeviations) {
    EXPECT_EQ(EffectSizeOneSample(107, 14, 100), 0.5);
    EXPECT_EQ(EffectSizeOneSample(100, 14, 107), -0.5);
}

TEST(OneSampleEffectSize, IsMissingForAStandardDeviationOfExactlyZeroOnly) {
    EXPECT_MISSING(EffectSizeOneSample(1, 0, 0));
    EXPECT_MISSING(EffectSizeOneSample(1, -0.0, 0));
    EXPECT_EQ(EffectSizeOneSample(5, -1, 3), -2);
    EXPECT_EQ(EffectSizeOneSample(1, kSmallest, 0), kInfinity);
}

// ---- Sample size -----------------------------------------------------------------------------------------

TEST(OneSampleSize, LiesWhereTheHighPrecisionPowerCrossesTheTarget) {
    for (const auto& row : read_table("means/one_size.csv")) {
        ASSERT_LT(row[6], 0);
        ASSERT_GT(row[7], 0);
        const bool directional = row[0] != 0;
        const double N = directional ? PowerReverseOneSampleDirectionalES(row[1], row[2], row[3])
                                     : PowerReverseOneSampleNondirectionalES(row[1], row[2], row[3]);
        EXPECT_GE(N, row[4]) << row.line;
        EXPECT_LE(N, row[5]) << row.line;
    }
}

TEST(OneSampleSize, IsNotRounded) {
    for (double N : {PowerReverseOneSampleNondirectionalES(0.8, 0.5, 0.05),
                     PowerReverseOneSampleDirectionalES(0.8, 0.5, 0.05),
                     PowerReverseOneSampleNondirectional(0.8, 1, 2, 0, 0.05),
                     PowerReverseOneSampleDirectional(0.8, 1, 2, 0, 0.05)})
        EXPECT_NE(N, std::floor(N));
}

TEST(OneSampleSize, OfMeansIsThatOfTheirEffectSize) {
    EXPECT_EQ(PowerReverseOneSampleNondirectional(0.8, 97, 4, 100, 0.05),
              PowerReverseOneSampleNondirectionalES(0.8, -0.75, 0.05));
    EXPECT_EQ(PowerReverseOneSampleDirectional(0.8, 97, 4, 100, 0.05),
              PowerReverseOneSampleDirectionalES(0.8, 0.75, 0.05));
}

TEST(OneSampleSize, OfMeansIsMissingUnlessAlphaIsBetweenZeroAndOne) {
    for (double alpha : kLevelsRefused) {
        EXPECT_MISSING(PowerReverseOneSampleNondirectional(0.8, 1, 2, 0, alpha));
        EXPECT_MISSING(PowerReverseOneSampleDirectional(0.8, 1, 2, 0, alpha));
    }
}

TEST(OneSampleSize, OfMeansIsMissingUnlessTheStandardDeviationIsAboveZero) {
    for (double sd : {0.0, -1.0, kNaN}) {
        EXPECT_MISSING(PowerReverseOneSampleNondirectional(0.8, 1, sd, 0, 0.05));
        EXPECT_MISSING(PowerReverseOneSampleDirectional(0.8, 1, sd, 0, 0.05));
    }
}

TEST(OneSampleSize, ForAnEffectSizeChecksNothing) {
    // Two-sided, alpha = 1 rejects at any size; one-sided, its power is missing at any size.
    EXPECT_EQ(PowerReverseOneSampleNondirectionalES(0.8, 0.5, 1), 2);
    EXPECT_MISSING(PowerReverseOneSampleDirectionalES(0.8, 0.5, 1));
    EXPECT_MISSING(PowerReverseOneSampleNondirectionalES(0.8, 0.5, 0));
    EXPECT_MISSING(PowerReverseOneSampleDirectionalES(0.8, 0.5, 0));
}

TEST(OneSampleSize, StartsAtTwo) {
    EXPECT_EQ(PowerReverseOneSampleNondirectionalES(0.04, 0.5, 0.05), 2);
    EXPECT_EQ(PowerReverseOneSampleDirectionalES(0, 0.5, 0.05), 2);
    EXPECT_EQ(PowerReverseOneSampleDirectional(-1, 1, 2, 0, 0.05), 2);
}

TEST(OneSampleSize, OfATargetThatIsNeverReachedIsMissing) {
    EXPECT_MISSING(PowerReverseOneSampleNondirectionalES(0.8, 0, 0.05));
    EXPECT_MISSING(PowerReverseOneSampleDirectionalES(0.8, 0, 0.05));
    EXPECT_MISSING(PowerReverseOneSampleNondirectional(0.8, 3, 2, 3, 0.05));
    EXPECT_MISSING(PowerReverseOneSampleDirectional(0.8, 3, 2, 3, 0.05));
    for (double es : {0.0, 0.5, 3.0, 1e-200}) {
        EXPECT_MISSING(PowerReverseOneSampleNondirectionalES(1.5, es, 0.05));
        EXPECT_MISSING(PowerReverseOneSampleDirectionalES(1.5, es, 0.05));
    }
}

TEST(OneSampleSize, ObjectivesReadTheirDesignVectorsInOrder) {
    EXPECT_EQ(NondirectionalFunc(12.5, {0.8, -0.4, 0.1}, nullptr),
              PowerOneSampleNondirectionalES(12.5, -0.4, 0.1) - 0.8);
    EXPECT_EQ(DirectionalFunc(12.5, {0.8, -0.4, 0.1}, nullptr),
              PowerOneSampleDirectionalES(12.5, 0.4, 0.1) - 0.8);
    EXPECT_TRUE(std::isnan(NondirectionalFunc(12.5, {}, nullptr)));
}

// ---- Half-width ------------------------------------------------------------------------------------------

TEST(OneSampleHalfWidth, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("means/one_half_width.csv"))
        EXPECT_NEAR(HalfCIOneSampleMeans(row[0], row[1], row[2]), row[3], 1e-12 * row[3]) << row.line;
}

TEST(OneSampleHalfWidth, IsTheQuantileTimesTheStandardError) {
    EXPECT_NEAR(HalfCIOneSampleMeans(2, 3, 0.05), t_quantile_1(0.975) * 3 / std::sqrt(2.0), 1e-11);
    EXPECT_NEAR(HalfCIOneSampleMeans(3, 3, 0.05), t_quantile_2(0.975) * 3 / std::sqrt(3.0), 1e-12);
}

TEST(OneSampleHalfWidth, ChecksNothing) {
    EXPECT_LT(HalfCIOneSampleMeans(10, -1, 0.05), 0);
    EXPECT_EQ(HalfCIOneSampleMeans(10, 1, 1), 0);
    EXPECT_LT(HalfCIOneSampleMeans(10, 1, 1.5), 0);
    // One observation: the quantile is missing and goes into the product as it is.
    EXPECT_EQ(HalfCIOneSampleMeans(1, 1, 0.05), kMissing);
    EXPECT_TRUE(std::isnan(HalfCIOneSampleMeans(-1, 1, 0.05)));
}

TEST(OneSampleHalfWidth, SizeIsTheSmallestWholeNumberByHighPrecisionHalfWidths) {
    for (const auto& row : read_table("means/one_half_width_size.csv")) {
        ASSERT_GT(row[4], row[0]);
        ASSERT_LE(row[5], row[0]);
        EXPECT_EQ(PowerReversebyHalfCIOneSampleMeans(row[0], row[1], row[2]), row[3]) << row.line;
    }
}

TEST(OneSampleHalfWidth, SizeIsTwoWhereTwoSuffice) {
    EXPECT_EQ(PowerReversebyHalfCIOneSampleMeans(100, 1, 0.05), 2);
}

TEST(OneSampleHalfWidth, OfZeroIsReachedByNoSize) {
    EXPECT_MISSING(PowerReversebyHalfCIOneSampleMeans(0, 1, 0.05));
}

TEST(OneSampleHalfWidth, ObjectiveIsNegativeWhileTheIntervalIsTooWide) {
    const double t = t_quantile_2(0.975);
    EXPECT_NEAR(_SampleSizebyHalfWidthCIOneSampleFunc(3, {0.5, 2, 0.05}, nullptr), 3 * 0.25 / 4 - t * t,
                1e-12);
}

// ---- Default range of the sample size --------------------------------------------------------------------

TEST(OneSampleRange, RunsFromTheComplementOfThePowerTimesNToThatPlusN) {
    int low = 0, high = 0;
    const double two_sided = PowerOneSampleNondirectional(40, 103, 8, 100, 0.05);
    _SetPlotRangeN(40, 103, 8, low, high, 0, 100, 0.05);
    EXPECT_EQ(low, std::floor((1 - two_sided) * 40));
    EXPECT_EQ(high, std::ceil((2 - two_sided) * 40));
    for (int directional : {1, -1}) {
        const double one_sided = PowerOneSampleDirectional(40, 103, 8, 100, 0.05);
        _SetPlotRangeN(40, 103, 8, low, high, directional, 100, 0.05);
        EXPECT_EQ(low, std::floor((1 - one_sided) * 40));
        EXPECT_EQ(high, std::ceil((2 - one_sided) * 40));
    }
}

TEST(OneSampleRange, StartsAtTwoAtLeast) {
    int low = 0, high = 0;
    _SetPlotRangeN(30, 200, 1, low, high, 0, 100, 0.05);
    EXPECT_EQ(low, 2);
    EXPECT_EQ(high, 30);
}

TEST(OneSampleRange, OfAMissingPowerStaysWithinInt) {
    int low = 0, high = 0;
    _SetPlotRangeN(30, 200, 0, low, high, 0, 100, 0.05);
    EXPECT_EQ(low, std::numeric_limits<int>::max());
    EXPECT_EQ(high, std::numeric_limits<int>::max());
}

TEST(OneSampleSize, SearchesFromTwoToFourHundredFirst) {
    // A power that has reached exactly 1 at the upper end is a hit there, before any smaller N is looked at.
    EXPECT_EQ(PowerReverseOneSampleNondirectionalES(1, 3, 0.05), 400);
}

}  // namespace
