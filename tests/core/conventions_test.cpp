// Constants and small helpers.
#include <gtest/gtest.h>

#include <cmath>

#include "statpower/core.h"
#include "support/values.h"

using testing_support::kInfinity;
using testing_support::kNaN;

namespace {

TEST(Constants, SlackAndToleranceHaveTheirValues) {
    EXPECT_EQ(tol1, 1e-12);
    EXPECT_EQ(POWER_NAMESPACE::tol, 1e-10);
}

TEST(SampleSizeTotal, IsTheSumOfTheGroupSizes) {
    const double sizes[] = {10, 20.5, 3};
    EXPECT_EQ(SampleSizeTotal(3, sizes), 33.5);
    EXPECT_EQ(SampleSizeTotal(1, sizes), 10);
}

TEST(SampleSizeTotal, IsZeroWithoutReadingTheArrayForKBelowOne) {
    EXPECT_EQ(SampleSizeTotal(0, nullptr), 0);
    EXPECT_EQ(SampleSizeTotal(-3, nullptr), 0);
}

TEST(MeanAverage, IsTheWeightedMean) {
    double values[] = {1, 2, 4};
    double weights[] = {1, 1, 2};
    EXPECT_EQ(POWER_NAMESPACE::_MeanAverage(3, values, weights), 11.0 / 4);
}

TEST(MeanAverage, IsNaNForKBelowOne) {
    EXPECT_TRUE(std::isnan(POWER_NAMESPACE::_MeanAverage(0, nullptr, nullptr)));
    EXPECT_TRUE(std::isnan(POWER_NAMESPACE::_MeanAverage(-1, nullptr, nullptr)));
}

TEST(Combination, IsExactlyOneForNoneAndForAll) {
    EXPECT_EQ(Combination(5, 0), 1);
    EXPECT_EQ(Combination(5, 5), 1);
    EXPECT_EQ(Combination(0.5, 0.5), 1);
    EXPECT_EQ(Combination(kNaN, 0), 1);
    EXPECT_EQ(Combination(kInfinity, 0), 1);
    EXPECT_EQ(Combination(kInfinity, kInfinity), 1);
}

TEST(Combination, IsTheBinomialCoefficientWithinRoundingOfExpAndLog) {
    EXPECT_NEAR(Combination(10, 3), 120, 120 * 1e-14);
    EXPECT_NEAR(Combination(52, 5), 2598960, 2598960 * 1e-14);
    EXPECT_NEAR(Combination(60, 30), 118264581564861424.0, 118264581564861424.0 * 1e-12);
}

TEST(Combination, TakesTheSamePathForKAndNMinusK) {
    EXPECT_EQ(Combination(10, 7), Combination(10, 3));
    EXPECT_EQ(Combination(100, 99), Combination(100, 1));
}

TEST(Combination, NeverReturnsLessThanOne) {
    // k beyond n: both sums are empty. A fractional k: the second sum, ln 5, is all there is.
    EXPECT_EQ(Combination(3, 5), 1);
    EXPECT_EQ(Combination(5, -2), 1);
    EXPECT_NEAR(Combination(5, 0.5), 5, 1e-14);
}

TEST(Combination, StartsTheProductAtTheTruncatedNumber) {
    // n = 10.5, m = 2: ln 1 + ln 2 against ln 9 + ln 10 (9 is 9.5 truncated).
    EXPECT_NEAR(Combination(10.5, 2), 45, 1e-12);
    // n = 10.5, m = 2.5: the factorial runs to 2, the product from 9 to 10.
    EXPECT_NEAR(Combination(10.5, 2.5), 45, 1e-12);
}

TEST(Combination, IsInfiniteWhereTheSmallestCoefficientOverflows) {
    // The largest finite central coefficient, and the one after it.
    EXPECT_NEAR(Combination(1029, 514) / 1.4298206864989042e308, 1, 1e-11);
    EXPECT_EQ(Combination(1030, 515), kInfinity);
    EXPECT_EQ(Combination(1e300, 1e299), kInfinity);
    EXPECT_EQ(Combination(2000, 1000), kInfinity);
    EXPECT_EQ(Combination(kInfinity, 3), kInfinity);
}

TEST(Combination, CountsFactorsWhereAddingOneNoLongerMovesADouble) {
    const double n = 1e17;
    EXPECT_NEAR(Combination(n, 3) / (n * n * n / 6), 1, 1e-13);
}

TEST(Combination, IsNaNForNaN) {
    EXPECT_TRUE(std::isnan(Combination(kNaN, 3)));
    EXPECT_TRUE(std::isnan(Combination(3, kNaN)));
}

TEST(InvTanh, ReturnsTheSentinelBeyondOne) {
    EXPECT_EQ(InvTanh(1.5), -1);
    EXPECT_EQ(InvTanh(-1.5), -1);
    EXPECT_EQ(InvTanh(std::nextafter(1.0, 2.0)), -1);
}

TEST(InvTanh, IsInfiniteAtOne) {
    EXPECT_EQ(InvTanh(1), kInfinity);
    EXPECT_EQ(InvTanh(-1), -kInfinity);
}

TEST(InvTanh, ReturnsATinyArgumentUnchanged) {
    EXPECT_EQ(InvTanh(1e-13), 1e-13);
    EXPECT_EQ(InvTanh(-9.99e-13), -9.99e-13);
    EXPECT_EQ(InvTanh(0), 0);
    // From 1e-12 on the logarithms are used, which at that size know only four digits.
    EXPECT_NE(InvTanh(1e-12), 1e-12);
}

TEST(InvTanh, IsHalfTheDifferenceOfTheLogarithms) {
    EXPECT_DOUBLE_EQ(InvTanh(0.5), std::log(3.0) / 2);
    EXPECT_DOUBLE_EQ(InvTanh(-0.5), -std::log(3.0) / 2);
    EXPECT_TRUE(std::isnan(InvTanh(kNaN)));
}

}  // namespace
