// Confidence intervals of one proportion: half-widths and the sample sizes that give them.
#include "proportions/one/half_width.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "statpower/one_sample_binomial.h"
#include "support/normal.h"
#include "support/record.h"
#include "support/table.h"

using OrvCommon_940::OrvMV;
using testing_support::CountingCancel;
using testing_support::kZ975;
using testing_support::read_table;

namespace {

TEST(OneSampleInterval, HalfWidthsAreThoseToFortyDigits) {
    for (const auto& row : read_table("proportions/one_half_width.csv"))
        EXPECT_NEAR(HalfCIOneSampBinom(row[0], row[1], row[2], static_cast<int>(row[3]), row[4] != 0), row[5],
                    1e-14)
            << "line " << row.line;
}

TEST(OneSampleInterval, TheCorrectionMattersToTheWaldAndTheScoreMethodOnly) {
    for (int method = 0; method <= 6; ++method) {
        const double plain = HalfCIOneSampBinom(40, 0.3, 0.05, method, false);
        const double corrected = HalfCIOneSampBinom(40, 0.3, 0.05, method, true);
        if (method == 0 || method == 5)
            EXPECT_GT(corrected, plain) << method;
        else
            EXPECT_EQ(corrected, plain) << method;
    }
    EXPECT_NEAR(HalfCIOneSampBinom(40, 0.3, 0.05, 0, true) - HalfCIOneSampBinom(40, 0.3, 0.05, 0, false),
                0.5 / 40, 1e-16);
}

TEST(OneSampleInterval, TheExactIntervalReachesTheEndWhenNoneOrAllSucceed) {
    // x = 0: the limits are 0 and 1 - (alpha / 2)^(1 / N).
    const double expected = (1 - std::pow(0.025, 1.0 / 20)) / 2;
    EXPECT_NEAR(HalfCIOneSampBinom(20, 0, 0.05, 3, false), expected, 1e-15);
    EXPECT_NEAR(HalfCIOneSampBinom(20, 1, 0.05, 3, false), expected, 1e-15);
}

TEST(OneSampleInterval, TheLogitOfACertainProportionIsIndefinite) {
    EXPECT_TRUE(std::isnan(HalfCIOneSampBinom(20, 0, 0.05, 2, false)));
    EXPECT_TRUE(std::isnan(HalfCIOneSampBinom(20, 1, 0.05, 2, false)));
}

TEST(OneSampleInterval, AMethodOutsideTheTableHasHalfWidthZero) {
    for (int method : {-1, 7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        for (bool correction : {false, true})
            EXPECT_EQ(HalfCIOneSampBinom(40, 0.3, 0.05, method, correction), 0);
}

TEST(OneSampleInterval, SampleSizesAreThoseToFortyDigits) {
    for (const auto& row : read_table("proportions/one_half_width_size.csv")) {
        const int method = static_cast<int>(row[3]);
        const double N =
            PowerReversebyHalfCIOneSampBinom(row[0], row[1], row[2], method, row[4] != 0, nullptr);
        // A search ends where the half-width is within 1e-14 of the target.
        EXPECT_NEAR(N, row[5], method == 0 ? 1e-11 : 1e-8) << "line " << row.line;
    }
}

TEST(OneSampleInterval, TheWaldSampleSizeIsAClosedFormThatAsksNothing) {
    CountingCancel cancel(1);
    EXPECT_NEAR(PowerReversebyHalfCIOneSampBinom(0.1, 0.5, 0.05, 0, false, &cancel),
                kZ975 * kZ975 * 0.25 / 0.01, 1e-12);
    EXPECT_GT(PowerReversebyHalfCIOneSampBinom(0.1, 0.5, 0.05, 0, true, &cancel), 100);
    EXPECT_EQ(cancel.queries, 0);
}

TEST(OneSampleInterval, TheWaldSampleSizeMayLieBelowOne) {
    // Unlike the searched ones, which start at 1.
    EXPECT_LT(PowerReversebyHalfCIOneSampBinom(3, 0.5, 0.05, 0, false, nullptr), 1);
    for (int method = 1; method <= 6; ++method)
        EXPECT_EQ(PowerReversebyHalfCIOneSampBinom(3, 0.5, 0.05, method, false, nullptr), 1) << method;
}

TEST(OneSampleInterval, AMethodOutsideTheTableGivesTheUpperEndOfTheFirstInterval) {
    for (int method : {-1, 7})
        EXPECT_EQ(PowerReversebyHalfCIOneSampBinom(0.1, 0.5, 0.05, method, false, nullptr), 400);
}

TEST(OneSampleInterval, AHalfWidthThatIsNeverReachedIsMissing) {
    for (int method = 1; method <= 6; ++method)
        EXPECT_TRUE(
            OrvMV::IsMissing(PowerReversebyHalfCIOneSampBinom(-0.1, 0.5, 0.05, method, false, nullptr)))
            << method;
}

TEST(OneSampleInterval, ACancelledSearchIsMissing) {
    for (int method = 1; method <= 6; ++method) {
        CountingCancel cancel(1);
        EXPECT_TRUE(
            OrvMV::IsMissing(PowerReversebyHalfCIOneSampBinom(0.1, 0.5, 0.05, method, false, &cancel)));
        EXPECT_EQ(cancel.queries, 1);
    }
}

TEST(OneSampleInterval, TheObjectiveIsTheTargetMinusTheHalfWidthForTheSearchedMethods) {
    for (int method = 1; method <= 6; ++method)
        for (double correction : {0.0, 1.0, -3.0})
            EXPECT_EQ(POWER_NAMESPACE::_SampleSizebyHalfCIOneSampBinom(
                          40, {0.07, 0.3, method + 0.5, 0.05, correction}, nullptr),
                      0.07 - HalfCIOneSampBinom(40, 0.3, 0.05, method, correction != 0));
    for (double method : {-1.0, 0.0, 7.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(POWER_NAMESPACE::_SampleSizebyHalfCIOneSampBinom(40, {0.07, 0.3, method, 0.05, 0}, nullptr),
                  0);
}

}  // namespace
