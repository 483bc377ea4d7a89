// The sample-size solver for saw-toothed objectives: which points it evaluates, when it asks the cancel
// object, what it returns.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "statpower/core.h"
#include "support/record.h"
#include "support/values.h"

using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using testing::Each;
using testing::ElementsAre;
using testing_support::CountingCancel;
using testing_support::kInfinity;
using testing_support::kNaN;
using testing_support::RecordedObjective;

namespace {

constexpr double kCeiling = 8.988465674311579e+307;

const std::vector<double> kDesign = {0.8, 1, 2};

double search(double low, double high, OrvQueryCancel* cancel = nullptr) {
    return PowerReverse_Binom(kDesign, RecordedObjective::call, cancel, low, high);
}

double optimize(double n, OrvQueryCancel* cancel = nullptr) {
    OptimizeRtbBionm(&n, kDesign, RecordedObjective::call, cancel);
    return n;
}

/// -1 below `n`, 1 from there on.
auto reached_from(double n) {
    return [=](double x) { return x < n ? -1.0 : 1.0; };
}

/// The target is reached at 37, missed from 38 to 40 and reached from 41 onwards.
double saw_tooth(double x) {
    return x == 37 || x >= 41 ? 1 : -1;
}

TEST(PowerReverseBinom, ReturnsTheUpperEndAtOnceWhenItHitsTheTarget) {
    for (double value : {0.0, 9.99e-15, -9.99e-15}) {
        RecordedObjective f([=](double) { return value; });
        EXPECT_EQ(search(1, 400), 400);
        EXPECT_THAT(f.points, ElementsAre(400));
    }
}

TEST(PowerReverseBinom, ATinyValueOfTenToTheMinusFourteenIsNoHit) {
    RecordedObjective f([](double) { return 1e-14; });
    EXPECT_EQ(search(1, 400), 1);
    EXPECT_THAT(f.points, ElementsAre(400, 1));
}

TEST(PowerReverseBinom, ReturnsTheLowerEndWhenItAlreadyReachesTheTarget) {
    for (double at_low : {0.0, 1e-300, 0.5}) {
        RecordedObjective f([=](double n) { return n == 1 ? at_low : -1; });
        EXPECT_EQ(search(1, 400), 1);
        EXPECT_THAT(f.points, ElementsAre(400, 1));
    }
}

TEST(PowerReverseBinom, ProbesWholeNumbersAndTheBaseOnceMore) {
    RecordedObjective f(reached_from(250));
    EXPECT_EQ(search(1, 400), 250);
    // Widths 199.5, 99.75, 49.875, ..., 1.56, 0.78: rounded down, so the last probe is the base again.
    EXPECT_THAT(f.points, ElementsAre(400, 1, 200, 299, 249, 273, 261, 255, 252, 250, 249, 250));
}

TEST(PowerReverseBinom, AWidthOfExactlyOneIsHalvedOnceMore) {
    RecordedObjective f(reached_from(11));
    EXPECT_EQ(search(1, 17), 11);
    EXPECT_THAT(f.points, ElementsAre(17, 1, 9, 13, 11, 10, 10, 11));
}

TEST(PowerReverseBinom, DoublesTheUpperEndAndMovesTheLowerEndWithIt) {
    RecordedObjective f(reached_from(1000));
    EXPECT_EQ(search(1, 400), 1000);
    EXPECT_THAT(std::vector(f.points.begin(), f.points.begin() + 7),
                ElementsAre(400, 1, 800, 1600, 1200, 1000, 900));
}

TEST(PowerReverseBinom, ReturnsADoubledEndThatHitsTheTarget) {
    RecordedObjective f([](double n) { return n - 800; });
    EXPECT_EQ(search(1, 400), 800);
    EXPECT_THAT(f.points, ElementsAre(400, 1, 800));
}

TEST(PowerReverseBinom, DoesNotDoubleWhenTheProductOfTheEndsUnderflows) {
    RecordedObjective f([](double n) { return n == 1 ? -1e-320 : n == 400 ? -1e-13 : 1; });
    search(1, 400);
    EXPECT_THAT(f.points, testing::Not(testing::Contains(800)));
}

TEST(PowerReverseBinom, AHitEndsTheBisection) {
    RecordedObjective exact([](double n) { return n - 299; });
    EXPECT_EQ(search(1, 400), 299);
    EXPECT_THAT(exact.points, ElementsAre(400, 1, 200, 299));
}

TEST(PowerReverseBinom, ATinyPositiveHitReturnsTheUnchangedBase) {
    RecordedObjective f([](double n) { return n == 299 ? 5e-15 : n - 299; });
    EXPECT_EQ(search(1, 400), 200);
}

TEST(PowerReverseBinom, ATinyNegativeHitIsReturned) {
    RecordedObjective f([](double n) { return n == 299 ? -5e-15 : n - 299; });
    EXPECT_EQ(search(1, 400), 299);
}

TEST(PowerReverseBinom, ReturnsTheFirstWholeNumberAboveTheLastBaseThatReachesTheTarget) {
    RecordedObjective f([](double n) { return n == 9 || n == 5 || n == 12 || n == 17 ? 1.0 : -1.0; });
    EXPECT_EQ(search(1, 17), 5);
    EXPECT_EQ(f.points.back(), 5);
}

TEST(PowerReverseBinom, TheWalkMayTakeManySteps) {
    // A probe that is positive for its own call only: the walk goes past it.
    int calls = 0;
    RecordedObjective f([&](double n) { return ++calls == 3 || n >= 17 ? 1.0 : -1.0; });
    EXPECT_EQ(search(1, 17), 17);
    EXPECT_THAT(f.points, ElementsAre(17, 1, 9, 5, 7, 8, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17));
}

TEST(PowerReverseBinom, FindsTheToothOfASawWhenAProbeMeetsIt) {
    RecordedObjective f(saw_tooth);
    EXPECT_EQ(search(1, 400), 37);
    RecordedObjective g(saw_tooth);
    EXPECT_EQ(search(1, 41), 41);
}

TEST(PowerReverseBinom, EveryPointIsWholeWhenTheEndsAre) {
    for (double root : {2.0, 37.0, 399.0, 401.0, 12345.0, 999999.0}) {
        RecordedObjective f(reached_from(root));
        EXPECT_EQ(search(1, 400), root);
        for (double point : f.points) EXPECT_EQ(point, std::floor(point));
    }
}

TEST(PowerReverseBinom, HandsAFreshCopyOfTheDesignAndItsCancelPointerToEveryEvaluation) {
    RecordedObjective f(reached_from(1000));
    CountingCancel cancel;
    std::vector<double> design = kDesign;
    PowerReverse_Binom(design, RecordedObjective::call, &cancel, 1, 400);
    EXPECT_EQ(design, kDesign);
    EXPECT_GT(f.designs.size(), 4u);
    EXPECT_THAT(f.designs, Each(kDesign));
    EXPECT_THAT(f.cancels, Each(&cancel));
}

TEST(PowerReverseBinom, AsksBeforeEveryDoublingHalvingAndStepButNotBeforeTheFirstTwoEvaluations) {
    for (double root : {17.0, 250.0, 1000.0, 40000.0}) {
        RecordedObjective f(reached_from(root));
        CountingCancel cancel;
        search(1, 400, &cancel);
        EXPECT_EQ(cancel.queries, static_cast<long>(f.points.size()) - 2) << root;
    }
    CountingCancel at_once(1);
    RecordedObjective f(reached_from(1));
    EXPECT_EQ(search(1, 400, &at_once), 1);
    EXPECT_EQ(at_once.queries, 0);
}

TEST(PowerReverseBinom, ACancelledSearchIsMissingBeforeItsNextEvaluation) {
    RecordedObjective whole(reached_from(1000));
    search(1, 400);
    const long polls = static_cast<long>(whole.points.size()) - 2;
    for (long stop_at = 1; stop_at <= polls; ++stop_at) {
        RecordedObjective f(reached_from(1000));
        CountingCancel cancel(stop_at);
        EXPECT_MISSING(search(1, 400, &cancel));
        EXPECT_EQ(cancel.queries, stop_at);
        EXPECT_EQ(static_cast<long>(f.points.size()), stop_at + 1);
    }
}

TEST(PowerReverseBinom, ATargetThatIsNeverReachedIsMissingOnceTheUpperEndExceedsTwoToThe1023) {
    RecordedObjective f([](double) { return -1; });
    EXPECT_MISSING(search(1, 400));
    EXPECT_GT(f.points.back(), kCeiling);
    EXPECT_LE(f.points[f.points.size() - 2], kCeiling);

    RecordedObjective at_ceiling([](double) { return -1; });
    search(1, kCeiling);
    EXPECT_EQ(at_ceiling.points.back(), std::numeric_limits<double>::max());

    RecordedObjective above([](double) { return -1; });
    EXPECT_MISSING(search(1, std::nextafter(kCeiling, kInfinity)));
    EXPECT_EQ(above.points.size(), 2u);
}

TEST(PowerReverseBinom, TheCeilingComesBeforeTheQuestion) {
    RecordedObjective f([](double) { return -1; });
    CountingCancel cancel;
    EXPECT_MISSING(search(1, std::nextafter(kCeiling, kInfinity), &cancel));
    EXPECT_EQ(cancel.queries, 0);
}

TEST(PowerReverseBinom, TheCeilingHoldsForTheAbsoluteValueOfTheUpperEnd) {
    RecordedObjective f([](double) { return -1; });
    EXPECT_MISSING(search(1, OrvMV::Missing()));
    EXPECT_LT(f.points.back(), -kCeiling);
    EXPECT_LT(f.points.size(), 1000u);
}

TEST(PowerReverseBinom, AnUpperEndThatCannotGrowIsMissing) {
    for (double high : {0.0, kNaN, kInfinity, -kInfinity}) {
        RecordedObjective f([](double) { return -1; });
        EXPECT_MISSING(search(1, high));
    }
}

TEST(PowerReverseBinom, AMissingObjectiveIsJustANegativeNumber) {
    RecordedObjective f([](double n) { return n < 1000 ? OrvMV::Missing() : 1; });
    EXPECT_EQ(search(1, 400), 1000);
}

TEST(PowerReverseBinom, ANaNAtAnEndLeadsToBisection) {
    RecordedObjective at_high([](double n) { return n == 400 ? kNaN : n - 99.5; });
    EXPECT_EQ(search(1, 400), 100);
    EXPECT_THAT(at_high.points, testing::Not(testing::Contains(800)));

    // With a NaN at the lower end and positive values above, the base never moves and is returned.
    RecordedObjective at_low([](double n) { return n == 1 ? kNaN : 1; });
    EXPECT_EQ(search(1, 400), 1);
    EXPECT_EQ(at_low.points.back(), 1);
}

TEST(PowerReverseBinom, ANaNInTheMiddleCountsAsPositiveAndEndsTheWalk) {
    RecordedObjective f([](double n) { return n > 100 && n < 400 ? kNaN : n - 150; });
    EXPECT_EQ(search(1, 400), 101);
}

TEST(PowerReverseBinom, AWalkBeyondTheWholeNumbersOfADoubleIsMissing) {
    RecordedObjective f([](double n) { return n >= 0x1p60 ? 1 : -1; });
    EXPECT_MISSING(search(1, 0x1p60));
}

TEST(PowerReverseBinom, EndsOnAnInfiniteBracket) {
    RecordedObjective f([](double n) { return n == kInfinity ? 1 : -1; });
    EXPECT_EQ(search(1, kInfinity), 1);
}

TEST(OptimizeRtbBionm, SearchesBelowTheLastAnswerUntilNothingSmallerIsFound) {
    RecordedObjective f(saw_tooth);
    // [1, 73] probes 37; [1, 37] finds 37 again.
    EXPECT_EQ(optimize(73), 37);
    EXPECT_THAT(f.points, ElementsAre(73, 1, 37, 19, 28, 32, 34, 35, 35, 36, 37,  //
                                      37, 1, 19, 28, 32, 34, 35, 35, 36, 37));
}

TEST(OptimizeRtbBionm, KeepsAnAnswerBelowWhichNoProbeMeetsATooth) {
    RecordedObjective f(saw_tooth);
    EXPECT_EQ(optimize(41), 41);
    EXPECT_THAT(f.points, ElementsAre(41, 1, 21, 31, 36, 38, 39, 39, 40, 41));
}

TEST(OptimizeRtbBionm, TheAnswersOfTheRoundsDecreaseStrictly) {
    // The first probes of the rounds from 119 and 60 meet teeth.
    RecordedObjective f([](double n) { return n == 10 || n == 25 || n == 60 || n >= 100 ? 1.0 : -1.0; });
    const double smallest = optimize(119);
    std::vector<double> rounds;
    for (std::size_t i = 0; i + 1 < f.points.size(); ++i)
        if (f.points[i + 1] == 1) rounds.push_back(f.points[i]);
    ASSERT_GE(rounds.size(), 2u);
    EXPECT_EQ(rounds.front(), 119);
    EXPECT_TRUE(std::is_sorted(rounds.rbegin(), rounds.rend()));
    EXPECT_EQ(rounds.back(), smallest);
}

TEST(OptimizeRtbBionm, ARoundWhoseUpperEndHitsTheTargetEndsTheSearch) {
    RecordedObjective f([](double n) { return n == 50 ? 0 : n - 10; });
    EXPECT_EQ(optimize(50), 50);
    EXPECT_THAT(f.points, ElementsAre(50));
}

TEST(OptimizeRtbBionm, KeepsOneWhenOneReachesTheTarget) {
    RecordedObjective f([](double) { return 0.5; });
    EXPECT_EQ(optimize(50), 1);
    EXPECT_THAT(f.points, ElementsAre(50, 1, 1, 1));
}

TEST(OptimizeRtbBionm, ARoundThatFindsSomethingLargerIsNoImprovement) {
    // The given size does not reach the target: the round doubles and finds 60.
    RecordedObjective f(reached_from(60));
    EXPECT_EQ(optimize(40), 40);
}

TEST(OptimizeRtbBionm, ARoundWithoutAnswerEndsTheSearch) {
    RecordedObjective f([](double) { return -1; });
    EXPECT_EQ(optimize(40), 40);
}

TEST(OptimizeRtbBionm, AMissingSizeStaysMissing) {
    RecordedObjective f([](double) { return -1; });
    EXPECT_MISSING(optimize(OrvMV::Missing()));
    EXPECT_LT(f.points.size(), 1000u);
}

TEST(OptimizeRtbBionm, HandsAFreshCopyOfTheDesignAndItsCancelPointerToEveryEvaluation) {
    RecordedObjective f(saw_tooth);
    CountingCancel cancel;
    optimize(73, &cancel);
    EXPECT_THAT(f.designs, Each(kDesign));
    EXPECT_THAT(f.cancels, Each(&cancel));
}

TEST(OptimizeRtbBionm, AsksBeforeEveryRound) {
    RecordedObjective f(saw_tooth);
    CountingCancel cancel;
    optimize(73, &cancel);
    // Two rounds: one question before each, and one before every evaluation but the first two of a round.
    EXPECT_EQ(cancel.queries, 2 + static_cast<long>(f.points.size()) - 2 * 2);
}

TEST(OptimizeRtbBionm, CancelledBeforeTheFirstRoundItEvaluatesNothingAndLeavesTheSize) {
    RecordedObjective f(saw_tooth);
    CountingCancel cancel(1);
    EXPECT_EQ(optimize(73, &cancel), 73);
    EXPECT_TRUE(f.points.empty());
}

TEST(OptimizeRtbBionm, CancelledInsideARoundItKeepsTheSmallestAnswerOfTheEarlierOnes) {
    // The questions: 1 before the first round, 2 to 10 inside it, 11 before the second, then inside that.
    for (long stop_at = 2; stop_at <= 10; ++stop_at) {
        RecordedObjective f(saw_tooth);
        CountingCancel cancel(stop_at);
        EXPECT_EQ(optimize(73, &cancel), 73) << stop_at;
    }
    for (long stop_at = 12; stop_at <= 19; ++stop_at) {
        RecordedObjective f(saw_tooth);
        CountingCancel cancel(stop_at);
        EXPECT_EQ(optimize(73, &cancel), 37) << stop_at;
        EXPECT_EQ(cancel.queries, stop_at);
    }
}

TEST(OptimizeRtbBionm, CancelledBetweenTwoRoundsItLeavesTheSizeAsItWas) {
    RecordedObjective f(saw_tooth);
    CountingCancel cancel(11);
    EXPECT_EQ(optimize(73, &cancel), 73);
    EXPECT_EQ(f.points.size(), 11u);
}

TEST(OptimizeRtbBionm, EndsForASampleSizeThatIsNoNumber) {
    RecordedObjective f([](double) { return 0; });
    double n = std::numeric_limits<double>::quiet_NaN();
    OptimizeRtbBionm(&n, {0.8}, RecordedObjective::call, nullptr);
    EXPECT_TRUE(std::isnan(n));
    EXPECT_EQ(f.points.size(), 1u);
}

TEST(PowerReverseBinom, TheWalkEndsWhereTheObjectiveIsExactlyZero) {
    // The only probe of the bisection is the base itself, so the walk is the first to see 37.
    RecordedObjective f([](double n) { return n == 37 ? 0 : n == 37.5 || n > 40 ? 1 : -1; });
    EXPECT_EQ(PowerReverse_Binom({0.8}, RecordedObjective::call, nullptr, 36, 37.5), 37);
    EXPECT_THAT(f.points, ElementsAre(37.5, 36, 36, 37));
}

}  // namespace
