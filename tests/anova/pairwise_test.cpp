// Pairwise differences of group means.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "statpower/anova.h"
#include "statpower/core.h"
#include "support/values.h"

using OrvCommon_940::OrvMV;
using testing::ElementsAre;
using namespace testing_support;

namespace {

constexpr int kBonferroni = 0, kSidak = 1, kUnadjusted = 2;

/// A valid comparison of groups 2 and 4 of four, of which a test breaks one argument.
struct Comparison {
    int k = 4;
    std::vector<double> means = {10, 12, 14, 11};
    std::vector<double> sizes = {10, 12, 8, 30};
    int i = 2, j = 4;
    int method = kUnadjusted;
    double sd = 2;
    double alpha = 0.05;
    double target = 0.8;
    double half_width = 1;

    double effect() { return EffectSizePairwiseDiff(k, means.data(), sizes.data(), i, j, sd); }
    double power() { return PowerPairwiseDiff(k, means.data(), sizes.data(), i, j, method, sd, alpha); }
    double size(std::vector<double>& groups) {
        return PowerReversePairwiseDiff(k, means.data(), sizes.data(), i, j, groups, method, sd, target,
                                        alpha);
    }
    double half_width_at(double N) { return HalfCIPairwiseDiff(k, sizes.data(), i, j, method, N, sd, alpha); }
    double size_half_width(std::vector<double>& groups) {
        return PowerReversebyHalfCIPairwiseDiff(k, sizes.data(), i, j, groups, method, half_width, sd, alpha);
    }
};

Comparison with(std::function<void(Comparison&)> change) {
    Comparison comparison;
    change(comparison);
    return comparison;
}

// ---- Effect size -----------------------------------------------------------------------------------------

TEST(PairwiseEffect, IsTheStandardisedDifferenceOfTheTwoMeans) {
    EXPECT_EQ(Comparison().effect(), (12 - 11) / 2.0);
    EXPECT_EQ(with([](Comparison& c) { c.i = 1, c.j = 3; }).effect(), (10 - 14) / 2.0);
    EXPECT_EQ(with([](Comparison& c) { c.i = 3, c.j = 4; }).effect(), (14 - 11) / 2.0);
}

TEST(PairwiseEffect, DoesNotReadItsThirdArgument) {
    const double means[] = {10, 12, 14, 11};
    EXPECT_EQ(EffectSizePairwiseDiff(4, means, nullptr, 2, 4, 2), 0.5);
}

TEST(PairwiseEffect, IsMissingUnlessTheGroupsAreInOrderAndCountedFromOne) {
    EXPECT_MISSING(with([](Comparison& c) { c.i = 4; }).effect());
    EXPECT_MISSING(with([](Comparison& c) { c.i = 4, c.j = 2; }).effect());
    EXPECT_MISSING(with([](Comparison& c) { c.i = 0; }).effect());
    EXPECT_MISSING(with([](Comparison& c) { c.i = -1; }).effect());
    EXPECT_PRESENT(with([](Comparison& c) { c.i = 1, c.j = 2; }).effect());
}

TEST(PairwiseEffect, IsMissingForFewerThanTwoGroupsAndUnlessTheDeviationIsAboveZero) {
    for (int k : {1, 0, -1, kSmallestInt})
        EXPECT_MISSING(with([=](Comparison& c) { c.k = k, c.i = 1, c.j = 2; }).effect());
    EXPECT_PRESENT(with([](Comparison& c) { c.k = 2, c.i = 1, c.j = 2; }).effect());
    for (double sd : {0.0, -1.0, kNaN}) EXPECT_MISSING(with([=](Comparison& c) { c.sd = sd; }).effect());
}

// ---- The level ------------------------------------------------------------------------------------------

/// Power at a level that the test has adjusted itself.
double power_at_level(double level) {
    double coefficients[] = {0, 1, 0, -1};
    Comparison c;
    return PowerSC(4, c.means.data(), c.sizes.data(), coefficients, 0, c.sd, level);
}

TEST(PairwiseLevel, IsAlphaOverTheNumberOfPairsByBonferroni) {
    EXPECT_DOUBLE_EQ(with([](Comparison& c) { c.method = kBonferroni; }).power(), power_at_level(0.05 / 6));
}

TEST(PairwiseLevel, IsThatOfIndependentComparisonsBySidak) {
    const double level = -std::expm1(std::log1p(-0.05) / 6);  // 1 - 0.95^(1/6)
    EXPECT_NEAR(with([](Comparison& c) { c.method = kSidak; }).power(), power_at_level(level), 1e-14);
}

TEST(PairwiseLevel, IsAlphaWithoutAdjustment) {
    EXPECT_EQ(Comparison().power(), power_at_level(0.05));
}

TEST(PairwiseLevel, GrowsFromBonferroniOverSidakToNone) {
    const double bonferroni = with([](Comparison& c) { c.method = kBonferroni; }).power();
    const double sidak = with([](Comparison& c) { c.method = kSidak; }).power();
    EXPECT_LT(bonferroni, sidak);
    EXPECT_LT(sidak, Comparison().power());
}

TEST(PairwiseLevel, OfTwoGroupsIsAlphaByEveryMethod) {
    for (int method : {kBonferroni, kSidak, kUnadjusted})
        EXPECT_NEAR(with([=](Comparison& c) { c.k = 2, c.i = 1, c.j = 2, c.method = method; }).power(),
                    with([](Comparison& c) { c.k = 2, c.i = 1, c.j = 2; }).power(), 1e-14);
}

TEST(PairwiseLevel, IsUnknownForAnyOtherCode) {
    for (int method : {-1, 3, kSmallestInt, kLargestInt}) {
        Comparison c = with([=](Comparison& b) { b.method = method; });
        EXPECT_MISSING(c.power());
        EXPECT_MISSING(c.half_width_at(60));
        std::vector<double> sizes;
        EXPECT_MISSING(c.size(sizes));
        EXPECT_MISSING(c.size_half_width(sizes));
    }
}

// ---- Power -----------------------------------------------------------------------------------------------

TEST(PairwisePower, IsThatOfTheTwoSidedContrast) {
    // At one error degree of freedom more than in the pair alone, with the other groups' observations.
    double coefficients[] = {1, 0, -1, 0};
    Comparison c = with([](Comparison& b) { b.i = 1, b.j = 3; });
    EXPECT_EQ(c.power(), PowerSC(4, c.means.data(), c.sizes.data(), coefficients, 0, 2, 0.05));
}

TEST(PairwisePower, IsMissingWhenAnArgumentIsOutOfRange) {
    for (int k : {1, 0, -1}) EXPECT_MISSING(with([=](Comparison& c) { c.k = k, c.i = 1, c.j = 2; }).power());
    for (double sd : {0.0, -1.0, kNaN}) EXPECT_MISSING(with([=](Comparison& c) { c.sd = sd; }).power());
    for (int i : {0, -1, 4, 5}) EXPECT_MISSING(with([=](Comparison& c) { c.i = i; }).power());
    for (double alpha : {0.0, -1.0, 1.0, 2.0, kNaN})
        EXPECT_MISSING(with([=](Comparison& c) { c.alpha = alpha; }).power());
    EXPECT_PRESENT(with([](Comparison& c) { c.k = 2, c.i = 1, c.j = 2; }).power());
    EXPECT_PRESENT(with([](Comparison& c) { c.sd = kSmallest; }).power());
    EXPECT_PRESENT(with([](Comparison& c) { c.alpha = 1e-300; }).power());
    EXPECT_PRESENT(with([](Comparison& c) { c.alpha = kBelowOne; }).power());
}

// ---- Sample size -----------------------------------------------------------------------------------------

TEST(PairwiseSize, IsThatOfTheContrastAtTheAdjustedLevel) {
    const double coefficients[] = {0, 1, 0, -1};
    for (int method : {kBonferroni, kSidak, kUnadjusted}) {
        Comparison c = with([=](Comparison& b) { b.method = method; });
        const double level = method == kBonferroni ? 0.05 / 6
                             : method == kSidak    ? 1 - std::pow(0.95, 1.0 / 6)
                                                   : 0.05;
        std::vector<double> sizes, expected;
        EXPECT_EQ(c.size(sizes), PowerReverseSC(4, c.means.data(), c.sizes.data(), coefficients, &expected, 0,
                                                2, 0.8, level));
        EXPECT_EQ(sizes, expected);
    }
}

TEST(PairwiseSize, ReachesThePowerAndOneLessInEachGroupDoesNot) {
    Comparison c = with([](Comparison& b) { b.sizes = {1, 1, 1, 1}, b.method = kBonferroni; });
    std::vector<double> sizes;
    const double total = c.size(sizes);
    EXPECT_EQ(total, 4 * sizes[0]);
    c.sizes = sizes;
    EXPECT_GE(c.power(), 0.8);
    for (double& n : c.sizes) --n;
    EXPECT_LT(c.power(), 0.8);
}

TEST(PairwiseSize, GivesEqualWeightsEqualGroupsOfAtLeastTwo) {
    Comparison c = with([](Comparison& b) { b.k = 3, b.sizes = {1, 1, 1}, b.i = 1, b.j = 3; });
    std::vector<double> sizes;
    const double total = c.size(sizes);
    EXPECT_THAT(sizes, ElementsAre(sizes[0], sizes[0], sizes[0]));
    EXPECT_EQ(total, 3 * sizes[0]);
    EXPECT_GT(sizes[0], 2);
    c.sd = 1e-3;
    EXPECT_EQ(c.size(sizes), 6);
    EXPECT_THAT(sizes, ElementsAre(2, 2, 2));
}

TEST(PairwiseSize, RefusedArgumentsAreMissingAndLeaveTheVectorUntouched) {
    const std::function<void(Comparison&)> refused[] = {
        [](Comparison& c) { c.k = 1, c.i = 1, c.j = 2; },
        [](Comparison& c) { c.k = -1, c.i = 1, c.j = 2; },
        [](Comparison& c) { c.sd = 0; },
        [](Comparison& c) { c.sd = kNaN; },
        [](Comparison& c) { c.i = 0; },
        [](Comparison& c) { c.i = 4; },
        [](Comparison& c) { c.alpha = 0; },
        [](Comparison& c) { c.alpha = 1; },
        [](Comparison& c) { c.alpha = kNaN; },
    };
    for (const auto& change : refused) {
        std::vector<double> sizes = {7, 8};
        EXPECT_MISSING(with(change).size(sizes));
        EXPECT_THAT(sizes, ElementsAre(7, 8));
    }
}

TEST(PairwiseSize, ResizesTheVectorBeforeItLooksAtTheMethod) {
    Comparison c = with([](Comparison& b) { b.method = 3; });
    const double missing = OrvMV::Missing();
    for (bool half_width : {false, true}) {
        const auto resized = [&](std::vector<double> sizes) {
            EXPECT_MISSING(half_width ? c.size_half_width(sizes) : c.size(sizes));
            return sizes;
        };
        EXPECT_THAT(resized({}), ElementsAre(missing, missing, missing, missing));
        EXPECT_THAT(resized({7, 8}), ElementsAre(7, 8, missing, missing));
        EXPECT_THAT(resized({1, 2, 3, 4, 5, 6}), ElementsAre(1, 2, 3, 4));
    }
}

TEST(PairwiseSize, FailedSearchesGoThroughTheRounding) {
    Comparison c = with([](Comparison& b) { b.target = 1.5; });
    std::vector<double> sizes;
    EXPECT_EQ(c.size(sizes), 8);
    EXPECT_THAT(sizes, ElementsAre(2, 2, 2, 2));
    // A level so small that Sidak's adjustment makes it 0: no power is reached, and the power is missing.
    c = with([](Comparison& b) { b.method = kSidak, b.alpha = 1e-20; });
    EXPECT_EQ(c.size(sizes), 8);
    EXPECT_MISSING(c.power());
}

TEST(PairwiseInput, AGroupThatDoesNotExistSetsNoCoefficient) {
    // That j is at most k is not checked; no memory beyond the groups is touched.
    for (int j : {5, 1000000, kLargestInt}) {
        Comparison c = with([=](Comparison& b) { b.j = j; });
        std::vector<double> sizes, expected;
        // 1 for group 2 alone: the last coefficient is repaired to -1, as in the comparison with group 4.
        EXPECT_EQ(c.effect(), Comparison().effect());
        EXPECT_EQ(c.power(), Comparison().power());
        EXPECT_EQ(c.size(sizes), Comparison().size(expected));
        EXPECT_EQ(sizes, expected);
    }
    Comparison neither = with([](Comparison& b) { b.i = 5, b.j = 6; });
    std::vector<double> any;
    EXPECT_EQ(neither.effect(), 0);
    EXPECT_EQ(neither.half_width_at(60), 0);
    EXPECT_EQ(neither.power(), 1);  // 0 / 0 is no noncentrality
    EXPECT_GE(neither.size(any), 8);
    for (int i : {-1, 0, kSmallestInt}) {
        Comparison c = with([=](Comparison& b) { b.i = i; });
        EXPECT_PRESENT(c.half_width_at(60));
        EXPECT_GE(c.size_half_width(any), 8);
    }
}

// ---- Half-width ------------------------------------------------------------------------------------------

TEST(PairwiseHalfWidth, IsThatOfTheContrastAtTheAdjustedLevel) {
    // N = 6 leaves two error degrees of freedom: t(1 - a/2) = (1 - a) sqrt(2 / (1 - (1 - a)^2)).
    for (int method : {kBonferroni, kSidak, kUnadjusted}) {
        const double confidence = method == kBonferroni ? 1 - 0.05 / 6
                                  : method == kSidak    ? std::pow(0.95, 1.0 / 6)
                                                        : 0.95;
        const double t = confidence * std::sqrt(2 / (1 - confidence * confidence));
        Comparison c = with([=](Comparison& b) { b.method = method; });
        // Sizes 12 and 30 of 60, rescaled to 6.
        EXPECT_NEAR(c.half_width_at(6), t * 2 * std::sqrt(1 / 1.2 + 1 / 3.0), 1e-11 * t);
    }
}

TEST(PairwiseHalfWidth, ChecksNothingButTheMethod) {
    EXPECT_PRESENT(with([](Comparison& c) { c.i = 4, c.j = 2; }).half_width_at(60));
    EXPECT_EQ(with([](Comparison& c) { c.sd = 0; }).half_width_at(60), 0);
    EXPECT_LT(with([](Comparison& c) { c.sd = -2; }).half_width_at(60), 0);
    EXPECT_EQ(with([](Comparison& c) { c.alpha = 1; }).half_width_at(60), 0);
    EXPECT_EQ(with([](Comparison& c) { c.k = 0; }).half_width_at(60), 0);
    EXPECT_EQ(with([](Comparison& c) { c.k = -3; }).half_width_at(60), 0);
}

TEST(PairwiseHalfWidth, SizeIsThatOfTheContrastAtTheAdjustedLevel) {
    const double coefficients[] = {0, 1, 0, -1};
    Comparison c = with([](Comparison& b) { b.method = kBonferroni; });
    std::vector<double> sizes, expected;
    EXPECT_EQ(c.size_half_width(sizes),
              PowerReversebyHalfCISCTest(4, c.sizes.data(), coefficients, &expected, 1, 2, 0.05 / 6));
    EXPECT_EQ(sizes, expected);
    const double total = c.size_half_width(sizes);
    c.sizes = sizes;
    EXPECT_LE(c.half_width_at(total), 1);
}

TEST(PairwiseHalfWidth, SizeRefusesItsArgumentsButNotTheIndices) {
    const std::function<void(Comparison&)> refused[] = {
        [](Comparison& c) { c.k = 1; },        [](Comparison& c) { c.k = -1; },
        [](Comparison& c) { c.sd = 0; },       [](Comparison& c) { c.sd = kNaN; },
        [](Comparison& c) { c.alpha = 0; },    [](Comparison& c) { c.alpha = 1; },
        [](Comparison& c) { c.alpha = kNaN; },
    };
    for (const auto& change : refused) {
        std::vector<double> sizes = {7, 8};
        EXPECT_MISSING(with(change).size_half_width(sizes));
        EXPECT_THAT(sizes, ElementsAre(7, 8));
    }
    // The same pair in the other order, which the power functions refuse.
    std::vector<double> sizes, reversed;
    Comparison c, r = with([](Comparison&b) { b.i = 4, b.j = 2; });
    EXPECT_EQ(r.size_half_width(reversed), c.size_half_width(sizes));
    EXPECT_EQ(reversed, sizes);
}

TEST(PairwiseInput, NaNAndInfinitiesAnywhereGiveSomeResultAndEnd) {
    const double odd[] = {kNaN, kInfinity, -kInfinity, 0, -1, kSmallest, 1e308, -1e308, OrvMV::Missing()};
    for (double value : odd)
        for (int method : {kBonferroni, kSidak, kUnadjusted})
            for (double Comparison::*argument :
                 {&Comparison::sd, &Comparison::alpha, &Comparison::target, &Comparison::half_width}) {
                Comparison c = with([=](Comparison& b) { b.method = method, b.*argument = value; });
                std::vector<double> sizes;
                const double power = c.power();
                EXPECT_TRUE(OrvMV::IsMissing(power) || (power >= 0 && power <= 1)) << value << ' ' << power;
                for (double total : {c.size(sizes), c.size_half_width(sizes)})
                    EXPECT_TRUE(OrvMV::IsMissing(total) || total >= 8) << value << ' ' << total;
            }
}

}  // namespace
