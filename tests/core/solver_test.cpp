// The sample-size solver: which points it evaluates, when it asks the cancel object, what it returns.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "statpower/core.h"
#include "support/record.h"
#include "support/values.h"

using OrvCommon_940::OrvMV;
using testing::Each;
using testing::ElementsAre;
using testing_support::CountingCancel;
using testing_support::kInfinity;
using testing_support::kNaN;
using testing_support::RecordedObjective;

namespace {

constexpr double kCeiling = 8.988465674311579e+307;

const std::vector<double> kDesign = {0.8, 1, 2};

double solve(double low, double high, double tolerance = 1e-6,
             OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    return PowerReverse(kDesign, RecordedObjective::call, cancel, low, high, tolerance);
}

TEST(PowerReverse, ReturnsTheUpperEndAtOnceWhenItHitsTheTarget) {
    for (double value : {0.0, 9.99e-15, -9.99e-15}) {
        RecordedObjective f([=](double) { return value; });
        EXPECT_EQ(solve(10, 410), 410);
        EXPECT_THAT(f.points, ElementsAre(410));
    }
}

TEST(PowerReverse, ATinyValueOfTenToTheMinusFourteenIsNoHit) {
    RecordedObjective f([](double) { return 1e-14; });
    EXPECT_EQ(solve(10, 410), 10);
    EXPECT_THAT(f.points, ElementsAre(410, 10));
}

TEST(PowerReverse, ReturnsTheLowerEndWhenItAlreadyReachesTheTarget) {
    for (double at_low : {0.0, 1e-300, 0.5}) {
        RecordedObjective f([=](double n) { return n == 10 ? at_low : 1; });
        EXPECT_EQ(solve(10, 410), 10);
        EXPECT_THAT(f.points, ElementsAre(410, 10));
    }
}

TEST(PowerReverse, ReturnsTheLowerEndEvenWhenTheUpperEndFallsShort) {
    RecordedObjective f([](double n) { return n == 10 ? 0.5 : -0.5; });
    EXPECT_EQ(solve(10, 410), 10);
}

TEST(PowerReverse, DoublesTheUpperEndAndMovesTheLowerEndWithIt) {
    RecordedObjective f([](double n) { return n - 1000; });
    const double found = solve(10, 410);
    // After the two ends: 820, 1640 (sign change), then the middle of [820, 1640].
    ASSERT_GE(f.points.size(), 5u);
    EXPECT_EQ(std::vector<double>(f.points.begin(), f.points.begin() + 5),
              (std::vector<double>{410, 10, 820, 1640, 1230}));
    EXPECT_LE(found, 1000);
    EXPECT_GT(found, 1000 - 1e-6);
}

TEST(PowerReverse, ReturnsADoubledEndThatHitsTheTarget) {
    RecordedObjective f([](double n) { return n - 820; });
    EXPECT_EQ(solve(10, 410), 820);
    EXPECT_THAT(f.points, ElementsAre(410, 10, 820));
}

TEST(PowerReverse, DoublesAfterAnUnderflowOfTheProductNoMore) {
    // Both ends fall short by so little that their product is zero: no expansion is made.
    RecordedObjective f([](double n) { return n > 300 ? -1e-13 : -1e-320; });
    solve(10, 410);
    EXPECT_THAT(f.points, testing::Not(testing::Contains(820)));
}

TEST(PowerReverse, HalvesUntilTheBracketIsNarrowerThanTheTolerance) {
    RecordedObjective f([](double n) { return n < 37.3 ? -1 : 1; });
    const double found = solve(0, 64, 1);
    // Widths 32, 16, 8, 4, 2, 1, 0.5: the first one below 1 ends the search.
    EXPECT_THAT(f.points, ElementsAre(64, 0, 32, 48, 40, 36, 38, 37, 37.5));
    EXPECT_EQ(found, 37);
}

TEST(PowerReverse, TheLeftEndMovesToAnExactZeroAndTheSearchEndsThere) {
    RecordedObjective f([](double n) { return n - 48; });
    EXPECT_EQ(solve(0, 64), 48);
    EXPECT_THAT(f.points, ElementsAre(64, 0, 32, 48));
}

TEST(PowerReverse, ATinyPositiveValueEndsTheSearchAtTheUnchangedLeftEnd) {
    RecordedObjective f([](double n) { return n == 48 ? 5e-15 : n - 48; });
    EXPECT_EQ(solve(0, 64), 32);
}

TEST(PowerReverse, ATinyNegativeValueAtTheLowerEndIsNoHit) {
    RecordedObjective f([](double n) { return n == 10 ? -5e-15 : n - 100; });
    EXPECT_NEAR(solve(10, 410), 100, 1e-6);
}

TEST(PowerReverse, TheToleranceHoldsForTheAbsoluteWidth) {
    // A starting interval the wrong way round: the widths are negative.
    RecordedObjective f([](double n) { return 37.3 - n; });
    EXPECT_NEAR(solve(64, 0), 37.3, 1e-6);
    EXPECT_GT(f.points.size(), 20u);
}

TEST(PowerReverse, ReturnsAPointAtWhichTheObjectiveIsNotPositive) {
    for (double root : {10.001, 123.456, 409.999, 5000.1, 1e9 + 0.3}) {
        RecordedObjective f([=](double n) { return std::atan(n - root); });
        const double found = solve(10, 410, 1e-9);
        EXPECT_LE(found, root);
        EXPECT_NEAR(found, root, 1e-9 + 1e-15 * root) << root;
    }
}

TEST(PowerReverse, HandsAFreshCopyOfTheDesignToEveryEvaluation) {
    RecordedObjective f([](double n) { return n - 1000; });
    std::vector<double> design = kDesign;
    PowerReverse(design, RecordedObjective::call, nullptr, 10, 410, 1e-6);
    EXPECT_EQ(design, kDesign);
    EXPECT_GT(f.designs.size(), 4u);
    EXPECT_THAT(f.designs, Each(kDesign));
}

TEST(PowerReverse, HandsItsCancelPointerToTheObjective) {
    RecordedObjective f([](double n) { return n - 100; });
    CountingCancel cancel;
    solve(10, 410, 1e-6, &cancel);
    EXPECT_THAT(f.cancels, Each(&cancel));
    EXPECT_FALSE(f.cancels.empty());
}

TEST(PowerReverse, ATargetThatIsNeverReachedIsMissingOnceTheUpperEndExceedsTwoToThe1023) {
    RecordedObjective f([](double) { return -1; });
    EXPECT_TRUE(OrvMV::IsMissing(solve(10, 410)));
    EXPECT_GT(f.points.back(), kCeiling);
    EXPECT_LE(f.points[f.points.size() - 2], kCeiling);
}

TEST(PowerReverse, TheCeilingItselfIsStillDoubledAndTheNextDoubleIsNot) {
    RecordedObjective f([](double n) { return n > kCeiling ? 1 : -1; });
    solve(1, kCeiling);
    EXPECT_EQ(f.points.at(2), std::numeric_limits<double>::max());

    RecordedObjective never([](double) { return -1; });
    EXPECT_TRUE(OrvMV::IsMissing(solve(1, std::nextafter(kCeiling, kInfinity))));
    EXPECT_EQ(never.points.size(), 2u);
}

TEST(PowerReverse, TheCeilingHoldsForTheAbsoluteValueOfTheUpperEnd) {
    RecordedObjective f([](double) { return -1; });
    EXPECT_TRUE(OrvMV::IsMissing(solve(1, OrvMV::Missing())));
    EXPECT_LT(f.points.back(), -kCeiling);
    EXPECT_TRUE(std::isfinite(f.points.back()));
    EXPECT_GE(f.points[f.points.size() - 2], -kCeiling);
}

TEST(PowerReverse, AnUpperEndThatCannotGrowIsMissing) {
    RecordedObjective f([](double) { return -1; });
    EXPECT_TRUE(OrvMV::IsMissing(solve(-1, 0)));
    EXPECT_TRUE(OrvMV::IsMissing(solve(1, kNaN)));
    EXPECT_TRUE(OrvMV::IsMissing(solve(1, kInfinity)));
}

TEST(PowerReverse, AMissingObjectiveIsJustANegativeNumber) {
    RecordedObjective f([](double n) { return n < 1000 ? OrvMV::Missing() : n - 1500; });
    EXPECT_NEAR(solve(10, 410), 1500, 1e-6);
}

TEST(PowerReverse, ANaNAtTheUpperEndLeadsToBisection) {
    RecordedObjective f([](double n) { return n == 410 ? kNaN : n - 100; });
    EXPECT_NEAR(solve(10, 410), 100, 1e-6);
    EXPECT_THAT(f.points, testing::Not(testing::Contains(820)));
}

TEST(PowerReverse, ANaNAtTheLowerEndLeadsToBisection) {
    RecordedObjective f([](double n) { return n == 10 ? kNaN : n - 100; });
    EXPECT_NEAR(solve(10, 410), 100, 1e-6);
}

TEST(PowerReverse, ANaNInTheMiddleCountsAsPositive) {
    RecordedObjective f([](double n) { return n > 100 && n < 410 ? kNaN : n - 150; });
    EXPECT_NEAR(solve(10, 410), 100, 1e-6);
    EXPECT_LE(solve(10, 410), 100);
}

TEST(PowerReverse, AsksTheCancelObjectBeforeEveryDoublingAndEveryHalving) {
    RecordedObjective f([](double n) { return n - 1000; });
    CountingCancel cancel;
    solve(10, 410, 1e-6, &cancel);
    // Every evaluation but the first two.
    EXPECT_EQ(cancel.queries, static_cast<long>(f.points.size()) - 2);
}

TEST(PowerReverse, DoesNotAskBeforeTheDoublingThatTheCeilingForbids) {
    RecordedObjective f([](double) { return -1; });
    CountingCancel cancel;
    EXPECT_TRUE(OrvMV::IsMissing(solve(10, 410, 1e-6, &cancel)));
    EXPECT_EQ(cancel.queries, static_cast<long>(f.points.size()) - 2);
}

TEST(PowerReverse, EndsForAnyLowerEnd) {
    for (double low : {kNaN, -kInfinity, kInfinity, 1e300}) {
        RecordedObjective f([](double n) { return n < 100 ? -1 : 1; });
        EXPECT_NO_FATAL_FAILURE(solve(low, 410)) << low;
        EXPECT_LT(f.points.size(), 2200u) << low;
    }
}

TEST(PowerReverse, NeverAsksBeforeTheFirstTwoEvaluations) {
    CountingCancel cancel(1);
    RecordedObjective f([](double n) { return n - 5; });
    EXPECT_EQ(solve(10, 410, 1e-6, &cancel), 10);
    EXPECT_EQ(cancel.queries, 0);
}

TEST(PowerReverse, ACancelledSearchIsMissingAtTheNextDoublingOrHalving) {
    for (long stop_at = 1; stop_at <= 20; ++stop_at) {
        RecordedObjective f([](double n) { return n - 1000; });
        CountingCancel cancel(stop_at);
        EXPECT_TRUE(OrvMV::IsMissing(solve(10, 410, 1e-6, &cancel)));
        EXPECT_EQ(cancel.queries, stop_at);
        EXPECT_EQ(f.points.size(), static_cast<std::size_t>(stop_at) + 1);
    }
}

TEST(PowerReverse, EndsWithoutAToleranceThatCanBeMet) {
    for (double tolerance : {0.0, -1.0, kNaN}) {
        RecordedObjective f([](double n) { return n < 37.3 ? -1 : 1; });
        EXPECT_DOUBLE_EQ(solve(0, 64, tolerance), 37.3);
        EXPECT_LT(f.points.size(), 2200u);
    }
}

TEST(PowerReverse, EndsOnAnInfiniteBracket) {
    RecordedObjective f([](double n) { return n == kInfinity ? 1 : -1; });
    EXPECT_EQ(solve(10, kInfinity), 10);
}

}  // namespace
