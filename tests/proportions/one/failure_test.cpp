// The exact test of one proportion when the distribution library fails.
#include <gtest/gtest.h>

#include "orvcommon/mv.h"
#include "proportions/one/walk.h"
#include "statpower/one_sample_binomial.h"
#include "support/distribution_stand_in.h"
#include "support/record.h"

using namespace testing_support;
using OrvCommon_940::OrvMV;

namespace {

// Ten trials against p0 = 1/2 at level 0.05: the two-sided region is {0, 1, 9, 10}, L = 1 and U = 8; the
// one-sided ones are the same halves.
constexpr double kN = 10, kNull = 0.5, kAlpha = 0.05, kHigher = 0.7, kLower = 0.3;

double power(double p1, int sides, OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    return PowerOneSampBinom(kN, p1, kNull, kAlpha, 1, sides, false, cancel);
}

double by_walk(double p1, int sides, OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    return one_sample_power_by_walk(kN, p1, kNull, sides, kAlpha, cancel);
}

/// Calls for the null distribution at one count.
auto null_call_at(double x) {
    return [=](const BinomialCall& call) { return call.p == kNull && call.argument == x; };
}

auto every_call_with(double p) {
    return [=](const BinomialCall& call) { return call.p == p; };
}

TEST(OneSampleFailure, NothingFailsByItself) {
    EXPECT_GT(power(kHigher, 1), 0.1);
    EXPECT_EQ(power(kHigher, 0), by_walk(kHigher, 0));
}

TEST(OneSampleFailure, AFailedFinalCallIsMinusTwo) {
    for (double p1 : {kLower, kHigher})
        for (int sides : {0, 1}) {
            FailingCalls calls(every_call_with(p1));
            EXPECT_EQ(power(p1, sides), -2);
        }
}

TEST(OneSampleFailure, EitherFinalCallOfATwoSidedTestIsEnough) {
    for (double count : {1.0, 8.0}) {
        FailingCalls calls(
            [=](const BinomialCall& call) { return call.p == kHigher && call.argument == count; });
        EXPECT_EQ(power(kHigher, 0), -2);
    }
}

TEST(OneSampleFailure, AFailureAwayFromTheCriticalCountDoesNotMatter) {
    const double lower = power(kLower, 1), upper = power(kHigher, 1), both = power(kHigher, 0);
    for (double x : {-1.0, 0.0, 4.0, 5.0, 10.0, 11.0}) {
        FailingCalls calls(null_call_at(x));
        EXPECT_EQ(power(kLower, 1), lower) << x;
        EXPECT_EQ(power(kHigher, 1), upper) << x;
        EXPECT_EQ(power(kHigher, 0), both) << x;
    }
}

TEST(OneSampleFailure, ACriticalCountThatCannotBeComputedIsPassedOver) {
    // No other count qualifies: the lower walk ends at N, which rejects everything, the upper one at 0, which
    // rejects every count but 0.
    for (double x : {1.0, 2.0}) {
        FailingCalls calls(null_call_at(x));
        EXPECT_EQ(power(kLower, 1), 1) << x;
    }
    for (double x : {7.0, 8.0}) {
        FailingCalls calls(null_call_at(x));
        EXPECT_NEAR(power(kHigher, 1), 1 - std::pow(0.3, 10), 1e-15) << x;
    }
}

TEST(OneSampleFailure, ATwoSidedTestWithoutLowerCriticalCountRejectsEverything) {
    FailingCalls calls(null_call_at(1));
    const double upper_tail = std::pow(0.7, 10) + 10 * 0.3 * std::pow(0.7, 9);
    EXPECT_NEAR(power(kHigher, 0), upper_tail + 1, 1e-15);
}

TEST(OneSampleFailure, ATwoSidedTestWithoutUpperCriticalCountRejectsAllButZero) {
    FailingCalls calls(null_call_at(8));
    const double lower_tail = std::pow(0.3, 10) + 10 * 0.7 * std::pow(0.3, 9);
    EXPECT_NEAR(power(kHigher, 0), 1 - std::pow(0.3, 10) + lower_tail, 1e-15);
}

TEST(OneSampleFailure, WhenEverySearchCallFailsTheWalksRunToTheirEnds) {
    FailingCalls calls(every_call_with(kNull));
    CountingCancel cancel;
    EXPECT_EQ(power(kLower, 1, &cancel), 1);
    EXPECT_EQ(cancel.queries, 11);  // x = -1 .. 9
    EXPECT_NEAR(power(kHigher, 1, &cancel), 1 - std::pow(0.3, 10), 1e-15);
    EXPECT_EQ(cancel.queries, 11 + 11);  // j = 10 .. 0
    EXPECT_GT(power(kHigher, 0, &cancel), 1);
    EXPECT_EQ(cancel.queries, 11 + 11 + 22);
}

TEST(OneSampleFailure, APassedOverCountIsAskedAboutAllTheSame) {
    for (double x = -1; x <= 11; ++x)
        for (double p1 : {kLower, kHigher})
            for (int sides : {0, 1}) {
                FailingCalls calls(null_call_at(x));
                CountingCancel asked_by_library, asked_by_walk;
                const double expected = by_walk(p1, sides, &asked_by_walk);
                EXPECT_EQ(power(p1, sides, &asked_by_library), expected) << x << " " << p1 << " " << sides;
                EXPECT_EQ(power(p1, sides), expected);
                EXPECT_EQ(asked_by_library.queries, asked_by_walk.queries);
                for (long stop_at = 1; stop_at <= asked_by_walk.queries; ++stop_at) {
                    CountingCancel cancel(stop_at);
                    EXPECT_TRUE(OrvMV::IsMissing(power(p1, sides, &cancel)));
                    EXPECT_EQ(cancel.queries, stop_at);
                }
            }
}

TEST(OneSampleFailure, AnySetOfFailingCountsGivesWhatTheWalkGives) {
    for (unsigned set = 0; set < 1u << 13; set += 7)
        for (double p1 : {kLower, kHigher})
            for (int sides : {0, 1}) {
                FailingCalls calls([=](const BinomialCall& call) {
                    return call.p == kNull && (set >> static_cast<unsigned>(call.argument + 1) & 1) != 0;
                });
                CountingCancel asked_by_library, asked_by_walk;
                ASSERT_EQ(power(p1, sides, &asked_by_library), by_walk(p1, sides, &asked_by_walk)) << set;
                ASSERT_EQ(asked_by_library.queries, asked_by_walk.queries) << set;
            }
}

TEST(OneSampleFailure, AFailingSearchBeyondTheWholeNumbersOfADoubleEnds) {
    FailingCalls calls([](const BinomialCall&) { return true; });
    for (int sides : {0, 1})
        EXPECT_EQ(PowerOneSampBinom(0x1p60, kHigher, kNull, kAlpha, 1, sides, false, nullptr), -2);
}

TEST(OneSampleFailure, CurvesHoldMinusTwo) {
    FailingCalls calls(every_call_with(kHigher));
    const XYPlot curve = PlotNOneSampBinom(1, 0, 5, 8, false, kN, kHigher, kNull, kAlpha);
    ASSERT_EQ(curve.count, 4);
    for (int i = 0; i < curve.count; ++i) EXPECT_EQ(curve.y[i], -2);
    FreeMemXYPlot(curve);
}

TEST(OneSampleFailure, ASearchThatOnlyMeetsFailuresIsMissing) {
    FailingCalls calls(every_call_with(kHigher));
    CountingCancel cancel(5000);
    EXPECT_TRUE(
        OrvMV::IsMissing(PowerReverseOneSampBinom(0.8, kHigher, kNull, kAlpha, 1, 0, false, &cancel)));
}

}  // namespace
