// Axes, curves, surfaces and their release.
#include "core/curves.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "support/curves.h"
#include "support/values.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace testing_support;

namespace {

std::vector<double> points(const Axis& axis) {
    std::vector<double> result;
    for (std::size_t i = 0; i < axis.size(); ++i) result.push_back(axis[i]);
    return result;
}

// ---- Axes ------------------------------------------------------------------------------------------------

TEST(Axis, IsEmptyUnlessItsCountIsAWholeNumberFromOneToTheLargestInt) {
    for (double count :
         {0.0, -1.0, 0.5, 1.5, kNaN, kInfinity, -kInfinity, 2147483648.0, 1e300, -0.0, OrvMV::Missing()}) {
        EXPECT_TRUE(multiples(count, 0, 1).empty()) << count;
        EXPECT_TRUE(multiples_to(count, 0, 1, 5).empty()) << count;
    }
    EXPECT_EQ(multiples(1, 0, 1).size(), 1u);
    EXPECT_EQ(multiples(kLargestInt, 0, 1).size(), 2147483647u);
}

TEST(Axis, MultiplesAreTheStartPlusWholeStepsWithoutAccumulatedRounding) {
    EXPECT_THAT(points(multiples(4, 0, 0.1)), ElementsAre(0, 0.1, 0.2, 3 * 0.1));
    EXPECT_THAT(points(multiples(3, 7, -2)), ElementsAre(7, 5, 3));
}

TEST(Axis, MultiplesToAnEndReplaceTheLastPointOnly) {
    ASSERT_NE(3 * 0.1, 0.3);
    EXPECT_THAT(points(multiples_to(4, 0, 0.1, 0.3)), ElementsAre(0, 0.1, 0.2, 0.3));
    EXPECT_EQ(multiples_to(4, 0, 0.1, 0.3).back(), 0.3);
    EXPECT_THAT(points(multiples_to(1, 0, 0.1, 0.3)), ElementsAre(0.3));
}

TEST(Axis, OfSampleSizesHasBothEnds) {
    EXPECT_THAT(points(sample_sizes(10, 10)), ElementsAre(10));
    EXPECT_THAT(points(sample_sizes(-1, 2)), ElementsAre(-1, 0, 1, 2));
    EXPECT_THAT(points(sample_sizes(10, 16, 3)), ElementsAre(10, 13, 16));
}

TEST(Axis, OfSampleSizesMayOvershootItsLastOneByLessThanAStep) {
    EXPECT_THAT(points(sample_sizes(10, 15, 2)), ElementsAre(10, 12, 14, 16));
    EXPECT_THAT(points(sample_sizes(10, 11, 50)), ElementsAre(10, 60));
}

TEST(Axis, OfSampleSizesIsEmptyForAReversedOrOverflowingRange) {
    EXPECT_TRUE(sample_sizes(10, 9).empty());
    EXPECT_TRUE(sample_sizes(10, 9, 50).empty());
    EXPECT_TRUE(sample_sizes(kNaN, 9).empty());
    EXPECT_TRUE(sample_sizes(0, kNaN).empty());
    EXPECT_TRUE(sample_sizes(kSmallestInt, kLargestInt).empty());
    EXPECT_TRUE(sample_sizes(0, kLargestInt).empty());
    EXPECT_EQ(sample_sizes(1, kLargestInt).size(), 2147483647u);
}

TEST(Axis, OfASurfaceTakesEverySecondSampleSizeFromAWidthOfAThousandUpwards) {
    const Axis every = surface_sample_sizes(10, 1009);
    EXPECT_EQ(every.size(), 1000u);
    EXPECT_EQ(every[1], 11);
    EXPECT_EQ(every[999], 1009);
    const Axis second = surface_sample_sizes(10, 1010);
    EXPECT_EQ(second.size(), 501u);
    EXPECT_EQ(second[1], 12);
    EXPECT_EQ(second[500], 1010);
    const Axis odd = surface_sample_sizes(10, 1011);
    EXPECT_EQ(odd.size(), 502u);
    EXPECT_EQ(odd[501], 1012);  // one beyond the range
}

TEST(Axis, OfFractionsEndsExactlyAtItsUpperEnd) {
    const double d = 0.3 * (2.0 - 1.0);
    EXPECT_THAT(points(fractions(1, 2, 0.3)), ElementsAre(1, 1 + d, 1 + 2 * d, 1 + 3 * d, 2));
    EXPECT_THAT(points(fractions(0, 1, 0.5)), ElementsAre(0, 0.5, 1));
    EXPECT_THAT(points(fractions(0, 1, 1)), ElementsAre(0, 1));
    EXPECT_THAT(points(fractions(-4, 1, 7)), ElementsAre(-4, 1));  // a step wider than the range
}

TEST(Axis, OfFractionsCountsTheWidthOverTheStepAndNotTheReciprocalOfTheFraction) {
    // A third of 5 rounds down, and 5 over it to just above 3: four steps, though 1 / (1 / 3) is 3.
    const double third = 1.0 / 3;
    ASSERT_GT(5 / (third * 5), 3);
    ASSERT_EQ(1 / third, 3);
    EXPECT_EQ(fractions(0, 5, third).size(), 5u);
    EXPECT_EQ(fractions(0, 1, third).size(), 4u);
}

TEST(Axis, OfFractionsIsEmptyUnlessItsStepIsPositiveAndFinite) {
    for (double fraction : {0.0, -0.0, -0.3, -1.0, -5.0, kNaN, kInfinity, -kInfinity, kSmallest})
        EXPECT_TRUE(fractions(1, 1.5, fraction).empty()) << fraction;
}

TEST(Axis, OfFractionsIsEmptyForAReversedZeroOrOverflowingWidth) {
    for (double fraction : {0.3, -0.3, -5.0}) {
        EXPECT_TRUE(fractions(2, 1, fraction).empty()) << fraction;
        EXPECT_TRUE(fractions(2, 2, fraction).empty()) << fraction;
        EXPECT_TRUE(fractions(-1e308, 1e308, fraction).empty()) << fraction;
        EXPECT_TRUE(fractions(0, kInfinity, fraction).empty()) << fraction;
        EXPECT_TRUE(fractions(kNaN, 1, fraction).empty()) << fraction;
        EXPECT_TRUE(fractions(0, kNaN, fraction).empty()) << fraction;
    }
}

TEST(Axis, OfFractionsIsEmptyForMoreStepsThanAnIntCounts) {
    EXPECT_TRUE(fractions(0, 1, 1e-10).empty());
    EXPECT_TRUE(fractions(0, 1, 1.0 / kLargestInt).empty());  // that many steps, and one point more
    EXPECT_FALSE(fractions(0, 1, 1.0 / (kLargestInt - 1)).empty());
}

// ---- Results ---------------------------------------------------------------------------------------------

TEST(Curve, HoldsThePowerAtEachPointInTheOrderOfTheAxis) {
    std::vector<double> asked;
    const auto curve_of = take(curve(multiples(3, 1, 2), [&](double x) {
        asked.push_back(x);
        return 10 * x;
    }));
    EXPECT_THAT(curve_of.x, ElementsAre(1, 3, 5));
    EXPECT_THAT(curve_of.y, ElementsAre(10, 30, 50));
    EXPECT_EQ(asked, curve_of.x);
}

TEST(Curve, KeepsAMissingPowerAsTheMissingValueAlsoInSinglePrecision) {
    const auto missing = take(curve(multiples(1, 0, 1), [](double) { return OrvMV::Missing(); }));
    EXPECT_TRUE(OrvMV::IsMissing(missing.y[0]));
    EXPECT_TRUE(OrvMV::IsMissing(to_single(OrvMV::Missing())));
}

TEST(Curve, OfAnEmptyAxisIsEmptyAndEvaluatesNothing) {
    const auto never = [](auto...) -> double { throw std::logic_error("evaluated"); };
    EXPECT_EMPTY(curve(Axis(), never));
    EXPECT_EMPTY(surface(Axis(), multiples(2, 0, 1), never));
    EXPECT_EMPTY(surface(multiples(2, 0, 1), Axis(), never));
}

TEST(Curve, InSinglePrecisionKeepsTwentyFourBits) {
    EXPECT_EQ(to_single(0.1), 0.100000001490116119384765625);
    EXPECT_EQ(to_single(1 + 0x1p-23), 1 + 0x1p-23);
    EXPECT_EQ(to_single(1 + 0x1p-25), 1);
}

TEST(Surface, IsEvaluatedAndStoredRowByRow) {
    std::vector<double> asked;
    const XYZPlot plot = surface(multiples(2, 1, 1), multiples(3, 10, 10), [&](double x, double y) {
        asked.push_back(100 * x + y);
        return 100 * x + y;
    });
    EXPECT_EQ(plot.nx, 2);
    EXPECT_EQ(plot.ny, 3);
    EXPECT_EQ(plot.z[1 * plot.ny + 2], 230);  // x[1] = 2, y[2] = 30
    const auto result = take(plot);
    EXPECT_THAT(result.x, ElementsAre(1, 2));
    EXPECT_THAT(result.y, ElementsAre(10, 20, 30));
    EXPECT_THAT(result.z, ElementsAre(110, 120, 130, 210, 220, 230));
    EXPECT_EQ(asked, result.z);
}

TEST(Result, ThatIsEmptyIsReleasedWithoutEffect) {
    FreeMemXYPlot({});
    FreeMemXYZPlot({});
}

TEST(Result, ReleasesOnlyTheArraysThatAreThere) {
    FreeMemXYPlot({1, new double[1], nullptr});
    FreeMemXYPlot({1, nullptr, new double[1]});
    FreeMemXYZPlot({1, 1, nullptr, new double[1], nullptr});
    FreeMemXYZPlot({1, 1, new double[1], nullptr, new double[1]});
}

TEST(Result, BeyondTheAddressSpaceIsRefusedByTheStandardExceptionBeforeAnyPointIsComputed) {
    const auto never = [](auto...) -> double { throw std::logic_error("computed"); };
    const Axis long_axis = axis(2e9, never);
    EXPECT_THROW(surface(long_axis, long_axis, never), std::bad_alloc);
}

TEST(Result, AnExceptionFromThePowerLeavesNothingBehind) {
    const auto fails_at_third = [n = 0](auto...) mutable -> double {
        if (++n == 3) throw std::bad_alloc();
        return n;
    };
    EXPECT_THROW(curve(multiples(5, 0, 1), fails_at_third), std::bad_alloc);
    EXPECT_THROW(surface(multiples(2, 0, 1), multiples(2, 0, 1), fails_at_third), std::bad_alloc);
}

// ---- The default range -----------------------------------------------------------------------------------

TEST(DefaultRange, RunsFromOneMinusThePowerToTwoMinusThePowerTimesTheSampleSize) {
    const auto range = default_range(0.8, 40, 8);
    EXPECT_EQ(range.min, 8);  // 1 - 0.8 is just below 0.2
    EXPECT_EQ(range.max, 48);
    EXPECT_EQ(default_range(0.8, 40, 2).min, 7);
    EXPECT_EQ(default_range(0.25, 101, 2).min, 75);   // floor of 75.75
    EXPECT_EQ(default_range(0.25, 101, 2).max, 177);  // ceiling of 176.75
    EXPECT_EQ(default_range(1, 40, 2).min, 2);
    EXPECT_EQ(default_range(1, 40, 2).max, 40);
}

TEST(DefaultRange, SaturatesInsteadOfOverflowing) {
    EXPECT_EQ(default_range(0.5, 1e300, 2).min, kLargestInt);
    EXPECT_EQ(default_range(0.5, 1e300, 2).max, kLargestInt);
    EXPECT_EQ(default_range(0.5, -1e300, 2).max, kSmallestInt);
    EXPECT_EQ(default_range(OrvMV::Missing(), 40, 2).min, kLargestInt);
    EXPECT_EQ(default_range(kNaN, 40, 2).max, 0);
}

}  // namespace
