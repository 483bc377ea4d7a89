// Two independent proportions: power curves and surfaces.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "orvcommon/mv.h"
#include "statpower/independent_binomial.h"
#include "support/curves.h"
#include "support/values.h"

using testing::DoubleEq;
using testing::ElementsAre;
using namespace testing_support;

namespace {

/// Two-sided exact chi-square power unless said otherwise.
double power(double n1, double n2, double p1, double p2, int method = 1, int test = 0) {
    return narrowed(PowerIndSampBinom(n1, n2, p1, p2, 0.05, method, test, 0, true, false, nullptr));
}

TEST(TwoProportionsByProportions, TheGridIsTheMultiplesOfTheStep) {
    const Surface s(PlotPropIndSampBinom(1, 0, 0, true, false, 12, 9, 0.5, 0.5, 0.05, 0.05));
    ASSERT_EQ(s.x.size(), 19U);
    ASSERT_EQ(s.y.size(), 19U);
    for (std::size_t k = 0; k < 19; ++k) {
        EXPECT_EQ(s.x[k], static_cast<double>(k + 1) * 0.05);
        EXPECT_EQ(s.y[k], static_cast<double>(k + 1) * 0.05);
    }
    EXPECT_EQ(s.at(3, 14), power(12, 9, 4 * 0.05, 15 * 0.05));
    EXPECT_EQ(s.at(14, 3), power(12, 9, 15 * 0.05, 4 * 0.05));
}

TEST(TwoProportionsByProportions, TheCountIsTruncated) {
    EXPECT_EQ(Surface(PlotPropIndSampBinom(0, 0, 0, false, false, 12, 9, 0.5, 0.5, 0.05, 0.3)).x.size(), 2U);
    EXPECT_EQ(Surface(PlotPropIndSampBinom(0, 0, 0, false, false, 12, 9, 0.5, 0.5, 0.05, 0.5)).x.size(), 1U);
}

TEST(TwoProportionsByProportions, EveryArgumentIsCheckedAlsoTheProportionsThatTheGridReplaces) {
    const auto is_empty = [](double n1, double n2, double p1, double p2, double alpha, double step) {
        return Surface(PlotPropIndSampBinom(0, 0, 0, false, false, n1, n2, p1, p2, alpha, step)).empty();
    };
    EXPECT_FALSE(is_empty(12, 9, 0.5, 0.5, 0.05, 0.25));
    EXPECT_TRUE(is_empty(0.9, 9, 0.5, 0.5, 0.05, 0.25));
    EXPECT_TRUE(is_empty(12, 0.9, 0.5, 0.5, 0.05, 0.25));
    for (double bad : {0.0, 1.0, kNaN}) {
        EXPECT_TRUE(is_empty(12, 9, bad, 0.5, 0.05, 0.25));
        EXPECT_TRUE(is_empty(12, 9, 0.5, bad, 0.05, 0.25));
        EXPECT_TRUE(is_empty(12, 9, 0.5, 0.5, bad, 0.25));
    }
    for (double step : {0.51, 0.0, -0.1, kNaN, 1e-300})
        EXPECT_TRUE(is_empty(12, 9, 0.5, 0.5, 0.05, step)) << step;
}

TEST(TwoProportionsByRiskDifference, TheCountIsRoundedAndTheAxisShifted) {
    const Curve c(PlotRiskDiffIndSampBinom(1, 0, 0, true, false, 12, 9, 0.4, 0.05, 0.3));
    ASSERT_EQ(c.x.size(), 2U);
    EXPECT_EQ(c.x[0], 0.3 + (0.4 - 1));
    EXPECT_EQ(c.x[1], 2 * 0.3 + (0.4 - 1));
    EXPECT_EQ(c.y[1], power(12, 9, 0.4, 0.4 - c.x[1]));
}

TEST(TwoProportionsByRiskDifference, TheCountIsRoundedUnlikeThatOfTheOtherGrids) {
    // 1 / 0.4 = 2.5: rounded 3, truncated 2.
    EXPECT_EQ(Curve(PlotRiskDiffIndSampBinom(1, 0, 0, true, false, 12, 9, 0.4, 0.05, 0.4)).x.size(), 2U);
    EXPECT_EQ(Surface(PlotPropIndSampBinom(1, 0, 0, true, false, 12, 9, 0.4, 0.5, 0.05, 0.4)).x.size(), 1U);
}

TEST(TwoProportionsByRiskDifference, EveryArgumentIsChecked) {
    const auto is_empty = [](double n1, double n2, double p1, double alpha, double step) {
        return Curve(PlotRiskDiffIndSampBinom(0, 0, 0, false, false, n1, n2, p1, alpha, step)).empty();
    };
    EXPECT_FALSE(is_empty(12, 9, 0.4, 0.05, 0.5));
    EXPECT_TRUE(is_empty(0.9, 9, 0.4, 0.05, 0.5));
    EXPECT_TRUE(is_empty(12, kNaN, 0.4, 0.05, 0.5));
    for (double bad : {0.0, 1.0, kNaN}) {
        EXPECT_TRUE(is_empty(12, 9, bad, 0.05, 0.5));
        EXPECT_TRUE(is_empty(12, 9, 0.4, bad, 0.5));
    }
    for (double step : {0.51, 0.0, -0.1, kNaN}) EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, step)) << step;
}

TEST(TwoProportionsByRiskRatio, TheAxisRunsFromTheMinimum) {
    const Curve c(PlotRiskRatioIndSampBinom(1, 0, 0, true, false, 12, 9, 0.4, 0.05, 0.5, 2.5, 0.25));
    EXPECT_THAT(c.x, ElementsAre(0.5, 1, 1.5, 2, 2.5));
    EXPECT_EQ(c.y[3], power(12, 9, 0.4, 0.2));
}

TEST(TwoProportionsByRiskRatio, WithoutAMinimumTheAxisStartsOneIncrementAboveTheProportion) {
    const Curve c(PlotRiskRatioIndSampBinom(1, 0, 0, true, false, 12, 9, 0.4, 0.05, 0, 2, 0.25));
    EXPECT_THAT(c.x, ElementsAre(0.9, 1.4, 1.9));
}

TEST(TwoProportionsByRiskRatio, EveryArgumentIsChecked) {
    const auto is_empty = [](double n1, double n2, double p1, double alpha, double low, double high,
                             double step) {
        return Curve(PlotRiskRatioIndSampBinom(0, 0, 0, false, false, n1, n2, p1, alpha, low, high, step))
            .empty();
    };
    EXPECT_FALSE(is_empty(12, 9, 0.4, 0.05, 0.5, 2, 0.25));
    EXPECT_TRUE(is_empty(0.9, 9, 0.4, 0.05, 0.5, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 0.9, 0.4, 0.05, 0.5, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 9, 1, 0.05, 1.5, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 9, 0.4, 0, 0.5, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, 0.3, 2, 0.25));  // p1 above the minimum
    EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, 0.4, 2, 0.25));  // p1 at the minimum
    EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, 2.1, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, 0.5, 10.1, 0.25));
    EXPECT_FALSE(is_empty(12, 9, 0.4, 0.05, 0.5, 10, 0.25));
    for (double step : {0.51, 0.0, -0.1, kNaN}) EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, 0.5, 2, step)) << step;
    EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, 2, 2, 0.25));  // a range without width
    EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, kNaN, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 9, 0.4, 0.05, 0.5, kNaN, 0.25));
}

TEST(TwoProportionsByOddsRatio, TheAxisRunsFromTheMinimum) {
    const Curve c(PlotOddsRatioIndSampBinom(1, 0, 0, true, false, 12, 9, 0.4, 0.05, 0.5, 2.5, 0.25));
    EXPECT_THAT(c.x, ElementsAre(0.5, 1, 1.5, 2, 2.5));
    EXPECT_EQ(c.y[3], power(12, 9, 0.4, 0.4 / ((1 - 0.4) * 2 + 0.4)));
}

TEST(TwoProportionsByOddsRatio, WithoutAMinimumTheAxisStartsAtOneThird) {
    const Curve c(PlotOddsRatioIndSampBinom(1, 0, 0, true, false, 12, 9, 0.4, 0.05, 0, 3, 0.5));
    ASSERT_EQ(c.x.size(), 3U);
    EXPECT_EQ(c.x[0], 1.0 / 3);
    EXPECT_DOUBLE_EQ(c.x[1], 5.0 / 3);
}

TEST(TwoProportionsByOddsRatio, EveryArgumentIsChecked) {
    const auto is_empty = [](double n1, double p1, double alpha, double low, double high, double step) {
        return Curve(PlotOddsRatioIndSampBinom(0, 0, 0, false, false, n1, 9, p1, alpha, low, high, step))
            .empty();
    };
    EXPECT_FALSE(is_empty(12, 0.4, 0.05, 0.1, 2, 0.25));
    EXPECT_FALSE(is_empty(12, 0.4, 0.05, 0.3, 2, 0.25));  // below p1 is fine here
    EXPECT_TRUE(is_empty(12, 0.4, 0.05, 0.05, 2, 0.25));
    EXPECT_TRUE(is_empty(0.9, 0.4, 0.05, 0.5, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 0, 0.05, 0.5, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 0.4, 1, 0.5, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 0.4, 0.05, 2.1, 2, 0.25));
    EXPECT_TRUE(is_empty(12, 0.4, 0.05, 0.5, 10.1, 0.25));
    for (double step : {0.51, 0.0, -0.1, kNaN}) EXPECT_TRUE(is_empty(12, 0.4, 0.05, 0.5, 2, step)) << step;
    EXPECT_TRUE(is_empty(12, 0.4, 0.05, kNaN, 2, 0.25));
}

TEST(TwoProportionsByRatio, AnExplicitRangeEndsAtItsMaximum) {
    const Curve c(PlotNRatioIndSampBinom(1, 0, 0, true, false, 100, 0.3, 0.6, 0.05, 0.5, 2, 0.25));
    EXPECT_THAT(c.x, ElementsAre(0.5, 0.875, 1.25, 1.625, 2));
    EXPECT_EQ(c.y[3], power(100 / (1.625 + 1), 1.625 * 100 / (1.625 + 1), 0.3, 0.6));
}

TEST(TwoProportionsByRatio, AnAutomaticRangeDoesNotShowItsEnds) {
    const double low = 1 / 99.0;
    const double d = (99 - low) / 4;
    for (double r_max : {0.0, 3.0}) {
        const Curve c(PlotNRatioIndSampBinom(1, 0, 0, true, false, 100, 0.3, 0.6, 0.05, 0, r_max, 0.25));
        EXPECT_THAT(c.x, ElementsAre(DoubleEq(low + d), DoubleEq(low + 2 * d), DoubleEq(low + 3 * d)));
    }
}

TEST(TwoProportionsByRatio, AnAutomaticRangeOfTheArcsineFormIsWhereItIsUsable) {
    // Ratios at which the group that is moved outwards has exactly half an observation left.
    const Curve rising(PlotNRatioIndSampBinom(0, 3, 0, false, false, 20, 0.9, 0.95, 0.05, 0, 0, 0.5));
    const double low = std::max(1 / (40 * 0.95 - 1), 1 / 19.0);
    const double high = std::min(40 * (1 - 0.9) - 1, 19.0);
    EXPECT_THAT(rising.x, ElementsAre(DoubleEq(low + (high - low) / 2)));
    const Curve falling(PlotNRatioIndSampBinom(0, 3, 0, false, false, 20, 0.15, 0.9e-1, 0.05, 0, 0, 0.5));
    const double low2 = std::max(1 / (40 * (1 - 0.09) - 1), 1 / 19.0);
    const double high2 = std::min(40 * 0.15 - 1, 19.0);
    EXPECT_THAT(falling.x, ElementsAre(DoubleEq(low2 + (high2 - low2) / 2)));
    // The exact test has the whole range.
    const Curve exact(PlotNRatioIndSampBinom(1, 3, 0, false, false, 20, 0.9, 0.95, 0.05, 0, 0, 0.5));
    EXPECT_THAT(exact.x, ElementsAre(DoubleEq(1 / 19.0 + (19 - 1 / 19.0) / 2)));
}

TEST(TwoProportionsByRatio, EveryArgumentIsChecked) {
    const auto is_empty = [](double N, double p1, double p2, double alpha, double low, double high,
                             double step) {
        return Curve(PlotNRatioIndSampBinom(0, 0, 0, false, false, N, p1, p2, alpha, low, high, step))
            .empty();
    };
    EXPECT_FALSE(is_empty(20, 0.3, 0.6, 0.05, 0.5, 2, 0.25));
    EXPECT_TRUE(is_empty(1.9, 0.3, 0.6, 0.05, 0, 0, 0.25));
    EXPECT_TRUE(is_empty(kNaN, 0.3, 0.6, 0.05, 0, 0, 0.25));
    EXPECT_TRUE(is_empty(20, 0.3, 0.6, 0.05, 0.05, 2, 0.25));
    EXPECT_TRUE(is_empty(20, 0.3, 0.6, 0.05, 0.5, 19.1, 0.25));
    EXPECT_FALSE(is_empty(20, 0.3, 0.6, 0.05, 0.5, 19, 0.25));
    EXPECT_TRUE(is_empty(20, 0.3, 0.6, 0.05, 2.1, 2, 0.25));
    for (double bad : {0.0, 1.0, kNaN}) {
        EXPECT_TRUE(is_empty(20, bad, 0.6, 0.05, 0.5, 2, 0.25));
        EXPECT_TRUE(is_empty(20, 0.3, bad, 0.05, 0.5, 2, 0.25));
        EXPECT_TRUE(is_empty(20, 0.3, 0.6, bad, 0.5, 2, 0.25));
    }
    for (double step : {0.51, 0.0, -0.1, kNaN})
        EXPECT_TRUE(is_empty(20, 0.3, 0.6, 0.05, 0.5, 2, step)) << step;
}

/// The size axes at cheap powers.
std::vector<double> first_sizes(int method, int test, int min1, int max1, int min2, int max2, double n1,
                                double n2, double p1 = 0.2, double p2 = 0.7) {
    const Surface s(
        PlotNIndSampBinom(method, test, 0, true, false, min1, max1, min2, max2, n1, n2, p1, p2, 0.05));
    std::vector<double> ends;
    if (!s.empty()) ends = {s.x.front(), s.x.back(), s.y.front(), s.y.back()};
    return ends;
}

TEST(TwoProportionsBySizes, PowersRunOverTheSecondGroupWithinTheFirst) {
    const Surface s(PlotNIndSampBinom(1, 0, 0, true, false, 5, 8, 10, 12, 1, 1, 0.2, 0.7, 0.05));
    EXPECT_THAT(s.x, ElementsAre(5, 6, 7, 8));
    EXPECT_THAT(s.y, ElementsAre(10, 11, 12));
    EXPECT_EQ(s.at(1, 2), power(6, 12, 0.2, 0.7));
    EXPECT_EQ(s.at(3, 0), power(8, 10, 0.2, 0.7));
}

TEST(TwoProportionsBySizes, TheStepGrowsWithTheSpanAndTheLastPointIsTheMaximum) {
    const auto axis = [](int low, int high) {
        const Surface s(PlotNIndSampBinom(0, 0, 0, true, false, low, high, 9, 9, 1, 1, 0.2, 0.7, 0.05));
        return std::vector<double>(s.x.begin(), s.x.end());
    };
    EXPECT_EQ(axis(10, 259).size(), 250U);
    EXPECT_EQ(axis(10, 259)[1], 11);
    EXPECT_EQ(axis(10, 260).size(), 51U);
    EXPECT_EQ(axis(10, 260)[1], 15);
    const auto by_five = axis(10, 510);
    EXPECT_EQ(by_five.size(), 101U);
    EXPECT_EQ(by_five[99], 505);
    EXPECT_EQ(by_five[100], 510);
    const auto uneven = axis(10, 513);  // the ceiling of 100.6, plus 1
    EXPECT_EQ(uneven.size(), 102U);
    EXPECT_EQ(uneven[100], 510);
    EXPECT_EQ(uneven[101], 513);
    EXPECT_EQ(axis(10, 1010).size(), 201U);
    const auto by_ten = axis(10, 1011);
    EXPECT_EQ(by_ten.size(), 102U);
    EXPECT_EQ(by_ten[1], 20);
    EXPECT_EQ(by_ten[101], 1011);
}

TEST(TwoProportionsBySizes, OnlyTheArcsineFormChoosesItsBounds) {
    // p2 <= p1: 0.5 / 0.02 = 25 and 0.5 / (1 - 0.01); the design's sizes on top.
    EXPECT_THAT(first_sizes(0, 3, 0, 0, 0, 0, 30.7, 40.2, 0.02, 0.01), ElementsAre(25, 55, 1, 41));
    EXPECT_THAT(first_sizes(0, 3, 2, 2500, 2, 2500, 30.7, 40.2, 0.02, 0.01), ElementsAre(25, 55, 1, 41));
    // p2 > p1: 0.5 / (1 - 0.01) and 0.5 / 0.02.
    EXPECT_THAT(first_sizes(0, 3, 0, 0, 0, 0, 30.7, 40.2, 0.01, 0.02), ElementsAre(1, 31, 25, 65));
    // Explicit bounds stay.
    EXPECT_THAT(first_sizes(0, 3, 30, 40, 1, 50, 30.7, 40.2, 0.02, 0.01), ElementsAre(30, 40, 1, 50));
    EXPECT_THAT(first_sizes(0, 0, 0, 2, 2, 3, 30, 40), ElementsAre(0, 2, 2, 3));
    EXPECT_THAT(first_sizes(1, 3, 0, 2, 2, 3, 30, 40), ElementsAre(0, 2, 2, 3));
}

TEST(TwoProportionsBySizes, AMinimumIsZeroOrAtLeastTwoExceptForTheArcsineForm) {
    EXPECT_TRUE(first_sizes(0, 0, 1, 9, 5, 9, 10, 10).empty());
    EXPECT_TRUE(first_sizes(0, 0, 5, 9, -1, 9, 10, 10).empty());
    EXPECT_TRUE(first_sizes(1, 3, 1, 9, 5, 9, 10, 10).empty());
    EXPECT_FALSE(first_sizes(0, 3, 1, 9, 5, 9, 10, 10).empty());
    EXPECT_FALSE(first_sizes(0, 0, 0, 9, 5, 9, 10, 10).empty());
}

TEST(TwoProportionsBySizes, APointThatHasNoPowerIsMinusOne) {
    const Surface s(PlotNIndSampBinom(0, 0, 0, true, false, 0, 3, 5, 5, 10, 10, 0.2, 0.7, 0.05));
    EXPECT_EQ(s.at(0, 0), -1);
    EXPECT_GE(s.at(1, 0), 0);
}

TEST(TwoProportionsBySizes, EveryArgumentIsChecked) {
    const auto is_empty = [](int min1, int max1, double n1, double n2, double p1, double p2, double alpha) {
        return Surface(PlotNIndSampBinom(0, 0, 0, false, false, min1, max1, 5, 6, n1, n2, p1, p2, alpha))
            .empty();
    };
    EXPECT_FALSE(is_empty(5, 6, 10, 10, 0.3, 0.6, 0.05));
    EXPECT_TRUE(is_empty(7, 6, 10, 10, 0.3, 0.6, 0.05));
    EXPECT_TRUE(is_empty(5, 6, 0.9, 10, 0.3, 0.6, 0.05));
    EXPECT_TRUE(is_empty(5, 6, 10, kNaN, 0.3, 0.6, 0.05));
    for (double bad : {0.0, 1.0, kNaN}) {
        EXPECT_TRUE(is_empty(5, 6, 10, 10, bad, 0.6, 0.05));
        EXPECT_TRUE(is_empty(5, 6, 10, 10, 0.3, bad, 0.05));
        EXPECT_TRUE(is_empty(5, 6, 10, 10, 0.3, 0.6, bad));
    }
}

TEST(TwoProportionsCurves, PowersAreStoredInSinglePrecision) {
    const Curve c(PlotRiskDiffIndSampBinom(1, 3, 0, false, false, 12, 9, 0.4, 0.05, 0.1));
    for (double y : c.y) EXPECT_EQ(y, narrowed(y));
}

}  // namespace
