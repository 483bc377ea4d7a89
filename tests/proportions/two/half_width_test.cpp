// Two independent proportions: confidence intervals of their difference.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "orvcommon/dist_fun.h"
#include "orvcommon/mv.h"
#include "proportions/two/power.h"
#include "statpower/independent_binomial.h"
#include "support/record.h"
#include "support/table.h"

using OrvCommon_940::OrvMV;
using POWER_NAMESPACE::_SampleSizebyHalfCIIndSampBinom;
using testing::ElementsAre;
using testing_support::CountingCancel;
using testing_support::read_table;

namespace {

std::vector<double> sizes(double W, double p1, double p2, double r, int method, bool correction = false,
                          OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    std::vector<double> result = {1, 2, 3};  // emptied first
    PowerReversebyHalfCIIndSampBinom(W, p1, p2, r, 0.05, result, method, correction, cancel);
    return result;
}

TEST(TwoProportionsHalfWidth, AgreesWithHighPrecision) {
    for (const auto& row : read_table("proportions/two_half_width.csv"))
        EXPECT_NEAR(
            HalfCIIndSampBinom(row[2], row[3], row[4], row[5], row[6], static_cast<int>(row[0]), row[1] != 0),
            row[7], 1e-13)
            << "line " << row.line;
}

TEST(TwoProportionsHalfWidth, AnyOtherMethodIsZero) {
    EXPECT_EQ(HalfCIIndSampBinom(30, 40, 0.3, 0.6, 0.05, 6, false), 0);
    EXPECT_EQ(HalfCIIndSampBinom(30, 40, 0.3, 0.6, 0.05, -1, false), 0);
}

TEST(TwoProportionsHalfWidth, TheCorrectionBelongsToTheWaldAndScoreMethodsOnly) {
    for (int method = 0; method <= 5; ++method)
        EXPECT_EQ(HalfCIIndSampBinom(30, 40, 0.3, 0.6, 0.05, method, true) ==
                      HalfCIIndSampBinom(30, 40, 0.3, 0.6, 0.05, method, false),
                  method != 0 && method != 5)
            << method;
}

TEST(TwoProportionsHalfWidth, TheUnbiasedMethodAddsHalfAnObservationOfTheSmallerGroup) {
    const double z = OrvMath_940::OrvDistFun::IdfStdNorm(0.975);
    const double root = std::sqrt(0.25 / 19 + 0.25 / 9);
    EXPECT_NEAR(HalfCIIndSampBinom(20, 10, 0.5, 0.5, 0.05, 4, false), z * root + 0.05, 1e-15);
    EXPECT_NEAR(HalfCIIndSampBinom(10, 20, 0.5, 0.5, 0.05, 4, false), z * root + 0.05, 1e-15);
}

TEST(TwoProportionsHalfWidthObjective, IsTheTargetMinusTheHalfWidthAtTheRatio) {
    for (int method = 1; method <= 5; ++method)
        for (double r : {0.5, 1.0, 2.0})
            EXPECT_EQ(
                _SampleSizebyHalfCIIndSampBinom(50.5, {0.1, 0.3, 0.6, r, 1.0 * method, 0.05, 1.0}, nullptr),
                0.1 - HalfCIIndSampBinom(50.5, r * 50.5, 0.3, 0.6, 0.05, method, true));
}

TEST(TwoProportionsHalfWidthObjective, IsZeroForMethodsThatAreNotSearched) {
    for (double method : {0.0, 6.0, -1.0})
        EXPECT_EQ(_SampleSizebyHalfCIIndSampBinom(50, {0.1, 0.3, 0.6, 1, method, 0.05, 0}, nullptr), 0);
}

TEST(TwoProportionsHalfWidthSize, TheWaldIntervalHasAClosedForm) {
    EXPECT_THAT(sizes(0.1, 0.5, 0.5, 1, 0), ElementsAre(193, 193));
    // At twice the size in group 2: z^2 (0.21 + 0.24 / 2) / 0.01 = 126.8, and twice that is 253.5.
    EXPECT_THAT(sizes(0.1, 0.3, 0.6, 2, 0), ElementsAre(127, 254));
}

TEST(TwoProportionsHalfWidthSize, TheCorrectedWaldIntervalReachesTheTarget) {
    for (double r : {0.5, 1.0, 3.0}) {
        const auto result = sizes(0.1, 0.3, 0.6, r, 0, true);
        const auto width = [&](double n1) { return HalfCIIndSampBinom(n1, r * n1, 0.3, 0.6, 0.05, 0, true); };
        EXPECT_LE(width(result[0]), 0.1);
        EXPECT_GT(width(result[0] - 1), 0.1);
    }
}

TEST(TwoProportionsHalfWidthSize, TheOtherIntervalsReachTheTarget) {
    for (int method = 1; method <= 5; ++method)
        for (double r : {0.5, 1.0, 3.0})
            for (double W : {0.03, 0.1, 0.25}) {
                const auto result = sizes(W, 0.3, 0.6, r, method, true);
                const auto width = [&](double n1) {
                    return HalfCIIndSampBinom(n1, r * n1, 0.3, 0.6, 0.05, method, true);
                };
                EXPECT_LE(width(result[0]), W) << method;
                EXPECT_GT(width(result[0] - 1), W) << method;
                EXPECT_NEAR(result[1], r * result[0], r + 1);
            }
}

TEST(TwoProportionsHalfWidthSize, TheSecondGroupIsAtLeastTwo) {
    // z^2 (0.25 + 25) / 0.16 = 606.2
    EXPECT_THAT(sizes(0.4, 0.5, 0.5, 0.01, 0), ElementsAre(607, 7));
    EXPECT_EQ(sizes(0.9, 0.01, 0.01, 0.01, 0)[1], 2);
}

TEST(TwoProportionsHalfWidthSize, AMethodWithoutAnIntervalGivesTheUpperEndOfTheSearch) {
    EXPECT_THAT(sizes(0.1, 0.3, 0.6, 0.5, 6), ElementsAre(400, 200));
}

TEST(TwoProportionsHalfWidthSize, CancelledOrFailedBothSizesAreMissing) {
    CountingCancel cancel(1);
    EXPECT_THAT(sizes(0.1, 0.3, 0.6, 1, 1, false, &cancel), ElementsAre(OrvMV::Missing(), OrvMV::Missing()));
    EXPECT_THAT(sizes(-0.1, 0.3, 0.6, 1, 1), ElementsAre(OrvMV::Missing(), OrvMV::Missing()));
}

}  // namespace
