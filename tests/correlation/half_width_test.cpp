// Half-width of the confidence interval of a correlation, and the sample size that reaches a half-width.
#include <gtest/gtest.h>

#include <cmath>

#include "correlation/correlation.h"
#include "correlation/kinds.h"
#include "support/record.h"
#include "support/table.h"

using namespace POWER_NAMESPACE;
using namespace testing_support;
using OrvCommon_940::OrvMV;

namespace {

TEST(CorrelationHalfWidth, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("correlation/half_width.csv"))
        EXPECT_NEAR(half_width(static_cast<Kind>(row[0]), row[1], row[2], row[3], row[4]), row[5], 1e-13)
            << "line " << row.line;
}

TEST(CorrelationHalfWidth, OfAnUnknownSpearmanMethodIsZero) {
    for (int method : {-1, 3, 5}) EXPECT_EQ(HalfCIOneSampSpearman(method, 20, 0.3, 0.05), 0);
}

TEST(CorrelationHalfWidth, OfAPartialCorrelationHasNoBiasTerm) {
    EXPECT_EQ(HalfCIOneSampPartial(24, 4, 0.6, 0.05), HalfCIOneSampPearson(false, 20, 0.6, 0.05));
    EXPECT_NE(HalfCIOneSampPartial(24, 4, 0.6, 0.05), HalfCIOneSampPearson(true, 20, 0.6, 0.05));
}

TEST(CorrelationHalfWidth, ChecksNothing) {
    for (Kind kind : kAllKinds) {
        EXPECT_EQ(half_width(kind, 20, 2, 1, 0.05), 0);
        EXPECT_EQ(half_width(kind, 20, 2, -1, 0.05), 0);
        EXPECT_TRUE(std::isnan(half_width(kind, 20, 2, 2, 0.05)));
        EXPECT_TRUE(std::isnan(half_width(kind, 1, 0, 0.3, 0.05)));
        EXPECT_GT(half_width(kind, 20, 2, 0.3, 1.5), -1);  // a level above 1 turns the interval around
        EXPECT_LT(half_width(kind, 20, 2, 0.3, 1.5), 0);
    }
    EXPECT_EQ(HalfCIOneSampPearson(false, 3, 0.3, 0.05), 1);  // an infinite standard deviation
    EXPECT_EQ(HalfCIOneSampPartial(5, 2, 0.3, 0.05), 1);
}

TEST(CorrelationHalfWidthObjective, IsTheTargetMinusTheHalfWidth) {
    EXPECT_EQ(_SampleSizebyHalfCIOneSampPearson(25, {0.2, 0.4, 1, 0.01}, nullptr),
              0.2 - HalfCIOneSampPearson(true, 25, 0.4, 0.01));
    EXPECT_EQ(_SampleSizebyHalfCIOneSampPearson(25, {0.2, 0.4, 0, 0.01}, nullptr),
              0.2 - HalfCIOneSampPearson(false, 25, 0.4, 0.01));
    EXPECT_EQ(_SampleSizebyHalfCIOneSampPearson(25, {0.2, 0.4, 0.5, 0.01}, nullptr),
              0.2 - HalfCIOneSampPearson(true, 25, 0.4, 0.01));
    EXPECT_EQ(_SampleSizebyHalfCIOneSampSpearman(25, {0.2, 0.4, 2.9, 0.01}, nullptr),
              0.2 - HalfCIOneSampSpearman(2, 25, 0.4, 0.01));
    EXPECT_EQ(_SampleSizebyHalfCIOneSampPartial(25, {0.2, 3, 0.4, 0.01}, nullptr),
              0.2 - HalfCIOneSampPartial(25, 3, 0.4, 0.01));
}

TEST(CorrelationHalfWidthSize, IsTheSmallestWholeSize) {
    for (const auto& row : read_table("correlation/half_width_size.csv"))
        EXPECT_EQ(size_for_half_width(static_cast<Kind>(row[0]), nullptr, row[1], row[2], row[3], row[4]),
                  row[5])
            << "line " << row.line;
}

TEST(CorrelationHalfWidthSize, IsTheLowerEndWhereThatIsEnough) {
    for (Kind kind : {kPearson, kCorrectedPearson, kSpearman0, kSpearman1, kSpearman2})
        EXPECT_EQ(size_for_half_width(kind, nullptr, 1.5, 0, 0.3, 0.05), 4);
    EXPECT_EQ(PowerReversebyHalfCIOneSampPartial(nullptr, 1.5, 2, 0.3, 0.05), 6);
    EXPECT_EQ(PowerReversebyHalfCIOneSampPartial(nullptr, 1.5, 2.5, 0.3, 0.05), 7);  // 6.5, rounded up
}

TEST(CorrelationHalfWidthSize, IsMissingForANegativeTarget) {
    for (Kind kind : kAllKinds)
        EXPECT_TRUE(OrvMV::IsMissing(size_for_half_width(kind, nullptr, -0.1, 2, 0.3, 0.05)));
}

TEST(CorrelationHalfWidthSize, IsTheLowerEndForAnUnknownSpearmanMethod) {
    EXPECT_EQ(PowerReversebyHalfCIOneSampSpearman(5, nullptr, 0.1, 0.3, 0.05), 4);
}

TEST(CorrelationHalfWidthSize, AsksTheCancelObject) {
    for (Kind kind : kAllKinds) {
        CountingCancel stop(2);
        EXPECT_TRUE(OrvMV::IsMissing(size_for_half_width(kind, &stop, 0.1, 2, 0.3, 0.05)));
        EXPECT_EQ(stop.queries, 2);
    }
}

}  // namespace
