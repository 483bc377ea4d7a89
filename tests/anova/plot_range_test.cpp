// The ranges that the library chooses for the curves of a one-way design.
#include "anova/plot_range.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "statpower/anova.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using namespace testing_support;

namespace {

struct Range {
    int min = -7, max = -7;
    bool operator==(const Range&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Range& r) {
    return out << r.min << " to " << r.max;
}

Range bounds(std::vector<double> sizes) {
    Range r;
    _MinMaxNR(static_cast<int>(sizes.size()), sizes.data(), r.min, r.max);
    return r;
}

TEST(TotalBounds, KeepTwoObservationsInTheSmallestGroupAndAtMostFiveThousandInTheLargest) {
    EXPECT_EQ(bounds({10, 10, 20}), (Range{8, 10000}));
    EXPECT_EQ(bounds({1, 1}), (Range{4, 10000}));
    EXPECT_EQ(bounds({3, 5}), (Range{6, 8000}));  // 2 / (3/8) = 5.33, up; 5000 / (5/8) = 8000
    EXPECT_EQ(bounds({2, 5, 4}), (Range{11, 11000}));
    EXPECT_EQ(bounds({3, 7, 4}), (Range{10, 10000}));  // 28/3 = 9.33, up
    EXPECT_EQ(bounds({7, 2}), (Range{9, 6428}));       // 5000 * 9/7 = 6428.57, down
}

TEST(TotalBounds, AreBothZeroForNoGroups) {
    for (int k : {0, -1, kSmallestInt}) {
        Range r;
        _MinMaxNR(k, nullptr, r.min, r.max);
        EXPECT_EQ(r, (Range{0, 0})) << k;
    }
}

TEST(TotalBounds, OfOneGroupAreItsOwn) {
    EXPECT_EQ(bounds({17}), (Range{2, 5000}));
}

TEST(TotalBounds, SaturateWhereAGroupIsEmptyAndEndForAnySizes) {
    EXPECT_EQ(bounds({0, 1}), (Range{kLargestInt, 5000}));
    EXPECT_EQ(bounds({kNaN, 1}), (Range{0, 0}));
    EXPECT_EQ(bounds({0, 0}), (Range{0, 0}));
    EXPECT_EQ(bounds({1e-300, 1}), (Range{kLargestInt, 5000}));
}

/// The default range by its definition, from the power that the library reports for the design.
Range by_definition(double power, const std::vector<double>& sizes) {
    double N = 0;
    for (double n : sizes) N += n;
    const Range kept = bounds(sizes);
    return {std::max(kept.min, static_cast<int>(std::floor((1 - power) * N))),
            std::min(static_cast<int>(std::ceil((2 - power) * N)), kept.max)};
}

TEST(DefaultTotals, RunFromOneMinusToTwoMinusThePowerTimesTheTotal) {
    double means[] = {10, 12, 14, 11};
    std::vector<double> sizes = {10, 10, 10, 10};
    // Power 0.43336 at N = 40 (tests/data/anova/anova_power.csv): 22.67 down and 62.67 up.
    Range r;
    _SetPlotRangeN(4, means, 4, sizes.data(), r.min, r.max, 0.05);
    EXPECT_EQ(r, (Range{22, 63}));
    EXPECT_EQ(r, by_definition(PowerOverallTest(4, means, sizes.data(), 4, 0.05), sizes));
}

TEST(DefaultTotals, OfAnEffectSizeUseItsPower) {
    std::vector<double> sizes = {30, 50};
    // Power 0.59815 at f = 0.25, N = 80 (tests/data/anova/anova_effect_power.csv): 32.1 and 112.1.
    Range r;
    _SetPlotRangeN(2, 0.25, 0, sizes.data(), r.min, r.max, 0.05);
    EXPECT_EQ(r, (Range{32, 113}));
    // f^2 / (1 + f^2) = 1/17 explains the same.
    Range same;
    _SetPlotRangeN(2, 1.0 / 17, 1, sizes.data(), same.min, same.max, 0.05);
    EXPECT_EQ(same, r);
}

TEST(DefaultTotals, OfAContrastUseItsPowerAndRepairItsCoefficients) {
    double means[] = {0, 0.5};
    std::vector<double> sizes = {64, 64};
    // Power 0.80146 at N = 128 (tests/data/anova/contrast_size.csv): 25.4 and 153.4.
    double coefficients[] = {1, -1};
    Range r;
    _SetPlotRangeN(2, means, 1, sizes.data(), r.min, r.max, coefficients, 0, 0.05);
    EXPECT_EQ(r, (Range{25, 154}));
    Range directional;
    _SetPlotRangeN(2, means, 1, sizes.data(), directional.min, directional.max, coefficients, 1, 0.05);
    EXPECT_EQ(directional, by_definition(PowerSC(2, means, sizes.data(), coefficients, 1, 1, 0.05), sizes));
    EXPECT_LT(directional.max, r.max);

    double unbalanced[] = {1, 3};
    Range repaired;
    _SetPlotRangeN(2, means, 1, sizes.data(), repaired.min, repaired.max, unbalanced, 0, 0.05);
    EXPECT_EQ(repaired, r);
    EXPECT_EQ(unbalanced[1], -1);
}

TEST(DefaultTotals, AreKeptWithinTheBounds) {
    double means[] = {0, 100, 200};
    std::vector<double> sizes = {10, 10, 20};
    Range r;  // power 1: from 0 to 40
    _SetPlotRangeN(3, means, 1, sizes.data(), r.min, r.max, 0.05);
    EXPECT_EQ(r, (Range{8, 40}));
    double equal[] = {0, 0, 0};  // power 0.05: from 0.95 N to 1.95 N
    sizes = {10000, 10000, 20000};
    _SetPlotRangeN(3, equal, 1, sizes.data(), r.min, r.max, 0.05);
    EXPECT_EQ(r.max, 10000);
    EXPECT_GE(r.min, 37999);  // reversed: no curve
}

TEST(DefaultTotals, AreReversedWhereThePowerIsMissing) {
    double means[] = {0, 1, 2};
    double sizes[] = {10, 10, 20};
    double coefficients[] = {1, 0, -1};
    for (double alpha : {0.0, 1.0, 1.5, kNaN}) {
        Range f, es, contrast;
        _SetPlotRangeN(3, means, 2, sizes, f.min, f.max, alpha);
        _SetPlotRangeN(3, 0.25, 0, sizes, es.min, es.max, alpha);
        _SetPlotRangeN(3, means, 2, sizes, contrast.min, contrast.max, coefficients, 0, alpha);
        for (const Range& r : {f, es, contrast}) EXPECT_GT(r.min, r.max) << alpha;
    }
}

TEST(DefaultDeviations, AreAFifthAndFiveTimesTheRootOfTheWeightedSumOfSquares) {
    double means[] = {0, 2};
    double equal[] = {1, 1};
    double low = -7, high = -7;
    _SetPlotRangeSD(2, means, equal, low, high);
    EXPECT_EQ(low, std::sqrt(2.0) / 5);
    EXPECT_EQ(high, 5 * std::sqrt(2.0));
    // Weights 1 and 3: mean 1.5, 2.25 + 3 * 0.25 = 3, not divided by anything.
    double weights[] = {1, 3};
    _SetPlotRangeSD(2, means, weights, low, high);
    EXPECT_EQ(low, std::sqrt(3.0) / 5);
    EXPECT_EQ(high, 5 * std::sqrt(3.0));
}

TEST(DefaultDeviations, AreZeroForNoGroupsAndForEqualMeans) {
    for (int k : {0, -5}) {
        double low = -7, high = -7;
        _SetPlotRangeSD(k, nullptr, nullptr, low, high);
        EXPECT_EQ(low, 0);
        EXPECT_EQ(high, 0);
    }
    double means[] = {3, 3};
    double sizes[] = {4, 5};
    double low = -7, high = -7;
    _SetPlotRangeSD(2, means, sizes, low, high);
    EXPECT_EQ(low, 0);
    EXPECT_EQ(high, 0);
}

}  // namespace
