// Specified contrasts: effect size, power, sample size, half-width.
#include "anova/contrast.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "anova/one_way.h"
#include "statpower/anova.h"
#include "support/table.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using testing::Each;
using testing::ElementsAre;
using namespace testing_support;

namespace {

/// A valid design of three groups, of which a test breaks one argument.
struct Design {
    int k = 3;
    std::vector<double> means = {0, 1, 3};
    std::vector<double> sizes = {10, 10, 20};
    std::vector<double> coefficients = {0.5, 0.5, -1};
    int directional = 0;
    double sigma = 4;
    double alpha = 0.05;
    double target = 0.8;
    double es = 0.5;
    double half_width = 0.5;

    double effect() { return EffectSizeSC(k, means.data(), coefficients.data(), sigma); }
    double power() {
        return PowerSC(k, means.data(), sizes.data(), coefficients.data(), directional, sigma, alpha);
    }
    double power_es() { return PowerSCwES(k, sizes.data(), coefficients.data(), directional, es, alpha); }
    double size(std::vector<double>* groups) {
        return PowerReverseSC(k, means.data(), sizes.data(), coefficients.data(), groups, directional, sigma,
                              target, alpha);
    }
    double size_es(std::vector<double>* groups) {
        return PowerReverseSCwES(k, sizes.data(), coefficients.data(), groups, directional, es, target,
                                 alpha);
    }
    double half_width_at(double N) {
        return HalfCISCTest(k, sizes.data(), coefficients.data(), N, sigma, alpha);
    }
    double size_half_width(std::vector<double>* groups) {
        return PowerReversebyHalfCISCTest(k, sizes.data(), coefficients.data(), groups, half_width, sigma,
                                          alpha);
    }
    double kernel(double N) {
        return _PowerSCwithN(k, means.data(), sigma, sizes.data(), N, coefficients.data(), directional,
                             alpha);
    }
    double kernel_es(double N) {
        return _PowerSCwithES(k, es, sizes.data(), N, coefficients.data(), directional, alpha);
    }
};

Design with(std::function<void(Design&)> change) {
    Design design;
    change(design);
    return design;
}

const Design kAlphaZero = with([](Design& d) { d.alpha = 0; });
const Design kAlphaOne = with([](Design& d) { d.alpha = 1; });
const Design kAlphaNaN = with([](Design& d) { d.alpha = kNaN; });
const Design kOneGroup = with([](Design& d) { d.k = 1; });
const Design kSigmaZero = with([](Design& d) { d.sigma = 0; });
const Design kSigmaNaN = with([](Design& d) { d.sigma = kNaN; });

// ---- Effect size and the repair of the last coefficient --------------------------------------------------

TEST(ContrastEffect, IsTheWeightedSumOfTheMeansOverSigma) {
    Design d;
    EXPECT_EQ(d.effect(), (0.5 * 0 + 0.5 * 1 - 3.0) / 4);
    EXPECT_THAT(d.coefficients, ElementsAre(0.5, 0.5, -1));
}

TEST(ContrastEffect, OverwritesALastCoefficientThatDoesNotMakeTheSumZero) {
    Design d = with([](Design& b) { b.coefficients = {1, 0, 5}; });
    EXPECT_EQ(d.effect(), (0 - 3.0) / 4);  // mean[0] - mean[2]
    EXPECT_THAT(d.coefficients, ElementsAre(1, 0, -1));
}

TEST(ContrastEffect, IsMissingWhenTheNewCoefficientLiesOutsideMinusOneToOne) {
    Design below = with([](Design& b) { b.coefficients = {1, 1, 0}; });
    EXPECT_MISSING(below.effect());
    EXPECT_THAT(below.coefficients, ElementsAre(1, 1, -2));
    Design above = with([](Design& b) { b.coefficients = {-1, -0.5, 0}; });
    EXPECT_MISSING(above.effect());
    EXPECT_THAT(above.coefficients, ElementsAre(-1, -0.5, 1.5));
    Design at_one = with([](Design& b) { b.coefficients = {-1, 0, 0}; });
    EXPECT_EQ(at_one.effect(), 3.0 / 4);
    Design at_minus_one = with([](Design& b) { b.coefficients = {0, 1, 0}; });
    EXPECT_EQ(at_minus_one.effect(), (1 - 3.0) / 4);
}

TEST(ContrastEffect, LeavesCoefficientsThatSumToZeroAloneEvenOutsideMinusOneToOne) {
    Design d = with([](Design& b) { b.coefficients = {1, 1, -2}; });
    EXPECT_EQ(d.effect(), (1 - 6.0) / 4);
    EXPECT_THAT(d.coefficients, ElementsAre(1, 1, -2));
}

TEST(ContrastEffect, CallsASumZeroBelowTenToTheMinusFourteen) {
    // Around 1 doubles are 2.2e-16 apart: 45 of them are 9.99e-15, 46 of them 1.02e-14.
    const double unit = std::numeric_limits<double>::epsilon();
    Design within = with([=](Design& b) { b.coefficients = {-1, 0, 1 + 45 * unit}; });
    within.effect();
    EXPECT_EQ(within.coefficients[2], 1 + 45 * unit);
    Design beyond = with([=](Design& b) { b.coefficients = {-1, 0, 1 + 46 * unit}; });
    beyond.effect();
    EXPECT_EQ(beyond.coefficients[2], 1);
    Design exactly = with([](Design& b) { b.coefficients = {0, 0, 1e-14}; });
    exactly.effect();
    EXPECT_EQ(exactly.coefficients[2], 0);
    Design just_below = with([](Design& b) { b.coefficients = {0, 0, -std::nextafter(1e-14, 0.0)}; });
    just_below.effect();
    EXPECT_EQ(just_below.coefficients[2], -std::nextafter(1e-14, 0.0));
}

TEST(ContrastEffect, ChecksSigmaOnlyAfterTheRepair) {
    for (double sigma : {0.0, -1.0, kNaN}) {
        Design d = with([=](Design& b) { b.sigma = sigma, b.coefficients = {1, 0, 5}; });
        EXPECT_MISSING(d.effect());
        EXPECT_EQ(d.coefficients[2], -1);
    }
}

TEST(ContrastEffect, OfNoGroupsIsMissingAndReadsNothing) {
    for (int k : {0, -1, kSmallestInt}) EXPECT_MISSING(EffectSizeSC(k, nullptr, nullptr, 1));
}

TEST(ContrastEffect, OfOneGroupIsZero) {
    double mean = 7, coefficient = 0.5;
    EXPECT_EQ(EffectSizeSC(1, &mean, &coefficient, 2), 0);
    EXPECT_EQ(coefficient, 0);
}

// ---- Power -----------------------------------------------------------------------------------------------

TEST(ContrastPower, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("anova/contrast_power.csv")) {
        auto lists = lists_in(row.label);
        const double power = PowerSC(static_cast<int>(row[0]), lists[0].data(), lists[1].data(),
                                     lists[2].data(), static_cast<int>(row[1]), row[2], row[3]);
        EXPECT_NEAR(power, row[4], 1e-12) << "line " << row.line;
    }
}

TEST(ContrastPower, ForAnEffectSizeAgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("anova/contrast_effect_power.csv")) {
        auto lists = lists_in(row.label);
        const double power = PowerSCwES(static_cast<int>(row[0]), lists[0].data(), lists[1].data(),
                                        static_cast<int>(row[1]), row[2], row[3]);
        EXPECT_NEAR(power, row[4], 1e-12) << "line " << row.line;
    }
}

TEST(ContrastPower, OfTwoGroupsIsThatOfTheOverallTest) {
    // Sizes 10 and 10, contrast 1, -1: lambda = es^2 5, as for the overall test of the two means.
    double means[] = {0, 1.25}, sizes[] = {10, 10}, coefficients[] = {1, -1};
    EXPECT_NEAR(PowerSC(2, means, sizes, coefficients, 0, 2, 0.05),
                PowerOverallTest(2, means, sizes, 2, 0.05), 1e-14);
    EXPECT_NEAR(PowerSCwES(2, sizes, coefficients, 0, 0.625, 0.05),
                PowerOverallTest(2, means, sizes, 2, 0.05), 1e-14);
}

TEST(ContrastPower, OfAOneSidedTestAssumesTheDirectionOfTheContrastForAnyCodeThatIsNotZero) {
    Design d = with([](Design& b) { b.directional = 1; });
    const double power = d.power();
    Design reversed = with([](Design& b) { b.directional = -3, b.means = {0, -1, -3}; });
    EXPECT_EQ(reversed.power(), power);
    EXPECT_GT(power, Design().power());
    EXPECT_EQ(with([](Design& b) { b.directional = 2; }).power_es(),
              with([](Design& b) { b.directional = 1, b.es = -0.5; }).power_es());
}

TEST(ContrastPower, OfNoEffectIsAlpha) {
    for (int directional : {0, 1}) {
        Design d = with([=](Design& b) { b.means = {2, 2, 2}, b.directional = directional, b.es = 0; });
        EXPECT_NEAR(d.power(), 0.05, 1e-14);
        EXPECT_NEAR(d.power_es(), 0.05, 1e-14);
    }
}

TEST(ContrastPower, RescalesTheSizesToTheTotal) {
    Design d, scaled = with([](Design&b) { b.sizes = {1, 1, 2}; });
    EXPECT_DOUBLE_EQ(d.kernel(57.25), scaled.kernel(57.25));
    EXPECT_DOUBLE_EQ(d.kernel_es(57.25), scaled.kernel_es(57.25));
    EXPECT_EQ(d.power(), d.kernel(40));
    EXPECT_EQ(d.power_es(), d.kernel_es(40));
}

TEST(ContrastPower, IsMissingUnlessAlphaIsAboveZeroAndBelowOne) {
    for (Design d : {kAlphaZero, kAlphaOne, kAlphaNaN}) {
        EXPECT_MISSING(d.power());
        EXPECT_MISSING(d.power_es());
        EXPECT_MISSING(d.kernel(40));
        EXPECT_MISSING(d.kernel_es(40));
    }
    for (double alpha : {1e-300, kBelowOne}) {
        Design d = with([=](Design& b) { b.alpha = alpha; });
        EXPECT_PRESENT(d.power());
        EXPECT_PRESENT(d.power_es());
    }
}

TEST(ContrastPower, IsMissingForFewerThanTwoGroups) {
    for (int k : {1, 0, -1, kSmallestInt}) {
        Design d = with([=](Design& b) { b.k = k; });
        EXPECT_MISSING(d.power());
        EXPECT_MISSING(d.power_es());
        EXPECT_MISSING(d.kernel(40));
        EXPECT_MISSING(d.kernel_es(40));
    }
    Design two = with([](Design& b) { b.k = 2, b.coefficients = {1, -1}; });
    EXPECT_PRESENT(two.power());
    EXPECT_PRESENT(two.power_es());
}

TEST(ContrastPower, IsMissingUnlessSigmaIsAboveZero) {
    for (Design d : {kSigmaZero, kSigmaNaN, with([](Design& b) { b.sigma = -1; })}) {
        EXPECT_MISSING(d.power());
        EXPECT_MISSING(d.kernel(40));
        EXPECT_PRESENT(d.power_es());  // which has no sigma
    }
}

TEST(ContrastPower, IsMissingForATotalBelowTheNumberOfGroups) {
    Design d;
    for (double N : {std::nextafter(3.0, 0.0), 0.0, -5.0, kNaN}) {
        EXPECT_MISSING(d.kernel(N));
        EXPECT_MISSING(d.kernel_es(N));
    }
    EXPECT_PRESENT(d.kernel(3.5));
    EXPECT_PRESENT(d.kernel_es(3.5));
    d.sizes = {1, 1, 0.5};
    EXPECT_MISSING(d.power());
    EXPECT_MISSING(d.power_es());
}

TEST(ContrastPower, AtATotalOfKNoErrorDegreeOfFreedomIsLeftAndThePowerCountsAsOne) {
    for (int directional : {0, 1}) {
        Design d = with([=](Design& b) { b.directional = directional; });
        EXPECT_EQ(d.kernel(3), 1);
        EXPECT_EQ(d.kernel_es(3), 1);
    }
}

TEST(ContrastPower, LeavesTheRepairedCoefficientInTheCallersArray) {
    Design repaired = with([](Design& b) { b.coefficients = {0.5, 0.5, 0.25}; });
    EXPECT_EQ(repaired.power(), Design().power());
    EXPECT_EQ(repaired.coefficients[2], -1);
    Design by_kernel = with([](Design& b) { b.coefficients = {0.5, 0.5, 0.25}; });
    EXPECT_EQ(by_kernel.kernel(40), Design().kernel(40));
    EXPECT_EQ(by_kernel.coefficients[2], -1);
}

TEST(ContrastPower, DoesNotRepairAnythingWhenAnArgumentIsRefused) {
    for (Design d : {kAlphaZero, kAlphaOne, kAlphaNaN, kOneGroup, kSigmaZero, kSigmaNaN}) {
        d.coefficients = {0.5, 0.5, 0.25};
        EXPECT_MISSING(d.power());
        EXPECT_MISSING(d.kernel(40));
        EXPECT_EQ(d.coefficients[2], 0.25);
    }
    Design d = with([](Design& b) { b.coefficients = {0.5, 0.5, 0.25}; });
    EXPECT_MISSING(d.kernel(2));
    EXPECT_EQ(d.coefficients[2], 0.25);
}

TEST(ContrastPower, UsesAnEffectThatCameBackMissingAsItIs) {
    for (int directional : {0, 1}) {
        Design d = with([=](Design& b) { b.coefficients = {1, 1, 0}, b.directional = directional; });
        EXPECT_EQ(d.power(), 1);  // the missing value is a huge effect
        EXPECT_EQ(d.coefficients[2], -2);
        EXPECT_LT(d.power(), 0.999);  // now they sum to zero, and the effect is what it is
    }
}

TEST(ContrastPower, ForAnEffectSizeTakesTheCoefficientsAsTheyAre) {
    // Q = 1/4 + 1/16 + 4 over the sizes, though they do not sum to zero.
    const double coefficients[] = {0.5, 0.25, 2};
    const double sizes[] = {10, 10, 20};
    const double variance = (0.25 + 0.0625) / 10 + 4.0 / 20;
    // A pair of groups with the same Q and error degrees of freedom: 1/n + 1/n = Q.
    const double es = 0.7;
    double pair[] = {1, -1, 0};
    double pair_sizes[] = {2 / variance, 2 / variance, 40 - 4 / variance};
    EXPECT_NEAR(PowerSCwES(3, sizes, coefficients, 0, es, 0.05), PowerSCwES(3, pair_sizes, pair, 0, es, 0.05),
                1e-14);
    EXPECT_EQ(coefficients[2], 2);
}

TEST(ContrastPower, CountsAsOneWhereTheNoncentralityCannotBeComputed) {
    for (int directional : {0, 1}) {
        for (double es : {kNaN, kInfinity, 1e200}) {
            Design d = with([=](Design& b) { b.es = es, b.directional = directional; });
            EXPECT_EQ(d.power_es(), 1) << es;
        }
        Design no_contrast = with([=](Design& b) {
            b.coefficients = {0, 0, 0}, b.directional = directional;
        });
        EXPECT_EQ(no_contrast.power_es(), 1);  // Q is 0
    }
}

// ---- Sample size -----------------------------------------------------------------------------------------

TEST(ContrastSize, AllocatesTheCeilingOfEachShareOfTheHighPrecisionTotal) {
    for (const auto& row : read_table("anova/contrast_size.csv")) {
        auto lists = lists_in(row.label);
        const int k = static_cast<int>(row[0]), directional = static_cast<int>(row[1]);
        auto &means = lists[0], &weights = lists[1], &coefficients = lists[2];
        std::vector<double> sizes;
        const double total = PowerReverseSC(k, means.data(), weights.data(), coefficients.data(), &sizes,
                                            directional, row[2], row[3], row[4]);
        const double weight_sum = SampleSizeTotal(k, weights.data());
        std::vector<double> expected;
        for (double w : weights) expected.push_back(std::ceil(w / weight_sum * row[5]));
        EXPECT_EQ(sizes, expected) << "line " << row.line;
        EXPECT_EQ(total, SampleSizeTotal(k, expected.data()));
        // High-precision powers of this answer and of the next smaller one.
        EXPECT_GE(row[6], row[3]);
        EXPECT_LT(row[7], row[3]);
        EXPECT_NEAR(PowerSC(k, means.data(), sizes.data(), coefficients.data(), directional, row[2], row[4]),
                    row[6], 1e-12);
    }
}

TEST(ContrastSize, ForAnEffectSizeIsThatOfTheMeansThatHaveIt) {
    for (int directional : {0, 1}) {
        Design d = with([=](Design& b) { b.es = 2.5 / 4, b.directional = directional; });
        std::vector<double> by_means, by_effect;
        EXPECT_EQ(d.size(&by_means), d.size_es(&by_effect));
        EXPECT_EQ(by_means, by_effect);
    }
}

TEST(ContrastSize, RepairsOnlyACopyOfTheCoefficients) {
    Design d = with([](Design& b) { b.coefficients = {0.5, 0.5, 0.25}; });
    std::vector<double> repaired, expected;
    EXPECT_EQ(d.size(&repaired), Design().size(&expected));
    EXPECT_EQ(repaired, expected);
    EXPECT_EQ(d.coefficients[2], 0.25);
}

TEST(ContrastSize, OfAnEffectThatComesBackMissingAtEveryEvaluationIsTheSmallest) {
    Design d = with([](Design& b) { b.coefficients = {1, 1, 0}; });
    std::vector<double> sizes;
    EXPECT_EQ(d.size(&sizes), 7);  // total 6: shares 1.5, 1.5 and 3
    EXPECT_THAT(sizes, ElementsAre(2, 2, 3));
}

TEST(ContrastSize, ResizesTheVectorToOneElementAGroup) {
    for (std::size_t before : {0u, 1u, 3u, 7u}) {
        std::vector<double> sizes(before, -1);
        Design().size(&sizes);
        EXPECT_EQ(sizes.size(), 3u);
        EXPECT_THAT(sizes, Each(testing::Ge(2)));
    }
}

TEST(ContrastSize, RefusedArgumentsAreMissingAndLeaveTheVectorUntouched) {
    expect_refused_sizes({kAlphaZero, kAlphaOne, kAlphaNaN, kOneGroup}, {kSigmaZero, kSigmaNaN});
}

TEST(ContrastSize, AFailedSearchGoesThroughTheRoundingAndGivesTheSmallestAllocation) {
    Design d = with([](Design& b) { b.target = 1.5; });
    std::vector<double> sizes;
    EXPECT_EQ(d.size(&sizes), 6);
    EXPECT_THAT(sizes, ElementsAre(2, 2, 2));
    EXPECT_EQ(d.size_es(&sizes), 6);
    d.half_width = 0;
    EXPECT_EQ(d.size_half_width(&sizes), 6);
}

TEST(ContrastSize, ObjectivesReadTheirDesignVectorsInOrder) {
    for (int directional : {0, 1}) {
        Design d = with([=](Design& b) { b.directional = directional; });
        const double N = 33.5, code = directional;
        EXPECT_EQ(SCFunc(N, {0.8, 3, 4, 0.05, code, 0, 1, 3, 0.25, 0.25, 0.5, 0.5, 0.5, -1}, nullptr),
                  with([=](Design& b) {
                      b.sizes = {0.25, 0.25, 0.5}, b.directional = directional;
                  }).kernel(N) -
                      0.8);
        EXPECT_EQ(SCwESFunc(N, {0.8, 3, 0.5, 0.05, code, 0.25, 0.25, 0.5, 0.5, 0.5, -1}, nullptr),
                  with([=](Design& b) {
                      b.sizes = {0.25, 0.25, 0.5}, b.directional = directional;
                  }).kernel_es(N) -
                      0.8);
    }
    EXPECT_EQ(SCFunc(33.5, {0.8, 3.9, 4, 0.05, -0.9, 0, 1, 3, 0.25, 0.25, 0.5, 0.5, 0.5, -1}, nullptr),
              SCFunc(33.5, {0.8, 3, 4, 0.05, 0, 0, 1, 3, 0.25, 0.25, 0.5, 0.5, 0.5, -1}, nullptr));
}

TEST(ContrastSize, AnObjectiveWithoutItsArraysIsMissing) {
    EXPECT_MISSING(SCFunc(40, {0.0, 3, 4, 0.05, 0, 0, 1, 3, 0.25, 0.25, 0.5, 0.5, 0.5}, nullptr));
    EXPECT_MISSING(SCFunc(40, {0.0, 3, 4, 0.05, 0, 0, 1, 3}, nullptr));
    EXPECT_MISSING(SCwESFunc(40, {0.0, 3, 0.5, 0.05, 0, 0.25, 0.25, 0.5}, nullptr));
    EXPECT_TRUE(std::isnan(SCFunc(40, {}, nullptr)));
    EXPECT_TRUE(std::isnan(SCwESFunc(40, {}, nullptr)));
    EXPECT_TRUE(std::isnan(_SampleSizebyHalfCISCTestFunc(40, {}, nullptr)));
}

// ---- Half-width ------------------------------------------------------------------------------------------

TEST(ContrastHalfWidth, IsTheQuantileTimesTheStandardErrorAtTheRescaledSizes) {
    // Two error degrees of freedom: t(1 - a/2) = (1 - a) sqrt(2 / (1 - (1 - a)^2)).
    const double t = 0.95 * std::sqrt(2 / (1 - 0.95 * 0.95));
    Design d;
    // W = 40, Q = 0.25/10 + 0.25/10 + 1/20 = 0.1; at N = 5 the sizes are 1.25, 1.25 and 2.5.
    EXPECT_NEAR(d.half_width_at(5), t * 4 * std::sqrt(40 * 0.1 / 5), 1e-13 * t);
    // The coefficients are not repaired.
    d.coefficients = {0.5, 0.5, 1};
    EXPECT_NEAR(d.half_width_at(5), t * 4 * std::sqrt(40 * 0.1 / 5), 1e-13 * t);
    d.coefficients = {0.5, 0.5, 0};
    EXPECT_NEAR(d.half_width_at(5), t * 4 * std::sqrt(40 * 0.05 / 5), 1e-13 * t);
}

TEST(ContrastHalfWidth, OfTwoGroupsIsTheFamiliarOne) {
    // sqrt(1/10 + 1/10) t sigma; the half-width of one mean at N = 20 is t sigma / sqrt(20).
    const double sizes[] = {10, 10}, coefficients[] = {1, -1};
    EXPECT_NEAR(HalfCISCTest(2, sizes, coefficients, 20, 3, 0.05), 2 * HalfCIOverallTest(2, 20, 3, 0.05),
                1e-14);
}

TEST(ContrastHalfWidth, ChecksNothing) {
    EXPECT_LT(with([](Design& d) { d.sigma = -2; }).half_width_at(40), 0);
    EXPECT_EQ(with([](Design& d) { d.sigma = 0; }).half_width_at(40), 0);
    EXPECT_EQ(with([](Design& d) { d.alpha = 1; }).half_width_at(40), 0);
    EXPECT_EQ(with([](Design& d) { d.k = 0; }).half_width_at(40), 0);
    // N = k: the quantile is missing, and goes into the product as it is.
    Design d = with([](Design& b) { b.sigma = 1, b.sizes = {1, 1, 1}, b.coefficients = {1, 0, 0}; });
    EXPECT_EQ(d.half_width_at(3), OrvMV::Missing());
}

TEST(ContrastHalfWidth, SizeIsTheSmallestWhoseHalfWidthDoesNotExceedTheTarget) {
    for (double target : {4.0, 0.5, 0.1}) {
        Design d = with([=](Design& b) { b.sizes = {1, 1, 1}, b.half_width = target; });
        std::vector<double> sizes;
        const double total = d.size_half_width(&sizes);
        EXPECT_EQ(total, 3 * sizes[0]);
        EXPECT_LE(d.half_width_at(total), target);
        EXPECT_GT(d.half_width_at(total - 3), target);
    }
}

TEST(ContrastHalfWidth, ObjectiveIsNegativeWhileTheIntervalIsTooWide) {
    // Half-width, k, sigma, alpha, W, Q.
    const double t = 0.95 * std::sqrt(2 / (1 - 0.95 * 0.95));
    EXPECT_NEAR(_SampleSizebyHalfCISCTestFunc(5, {0.5, 3, 4, 0.05, 40, 0.1}, nullptr),
                5 * 0.25 / (16 * 40) - t * t * 0.1, 1e-13 * t * t);
}

TEST(ContrastHalfWidth, SizeMultipliesBeforeItDivides) {
    // Met at the smallest total, 2k = 10: 0.4 / 0.8 * 10 is just above 5, 0.4 * 10 / 0.8 is 5 in double
    // precision (0.8 standing for the sum of the weights).
    Design d = with([](Design& b) {
        b.k = 5;
        b.means = {0, 1, 2, 3, 4};
        b.sizes = {0.4, 0.1, 0.1, 0.1, 0.1};
        b.coefficients = {1, -1, 0, 0, 0};
        b.target = 0;
        b.half_width = 1e6;
    });
    std::vector<double> by_power, by_half_width;
    d.size(&by_power);
    d.size_half_width(&by_half_width);
    EXPECT_EQ(by_power[0], 6);
    EXPECT_EQ(by_half_width[0], 5);
}

TEST(ContrastHalfWidth, SearchesToATighterToleranceThanThePower) {
    // Both targets are those of a total just above 40, from which 21 in each group follow. The power search
    // stops at the multiple of 400 / 2^29 below it, which is below 40 too.
    Design d = with([](Design& b) { b.k = 2, b.sizes = {1, 1}, b.coefficients = {1, -1}; });
    d.half_width = d.half_width_at(40 + 4e-7);
    d.target = d.kernel(40 + 4e-7);
    std::vector<double> sizes;
    EXPECT_EQ(d.size_half_width(&sizes), 42);
    EXPECT_EQ(d.size(&sizes), 40);
    d.es = 1.0 / 4;  // of the means
    EXPECT_EQ(d.size_es(&sizes), 40);
}

// ---- Any input -------------------------------------------------------------------------------------------

TEST(ContrastInput, NaNAndInfinitiesAnywhereGiveSomeResultAndEnd) {
    const double odd[] = {kNaN, kInfinity, -kInfinity, 0, -1, kSmallest, 1e308, -1e308, OrvMV::Missing()};
    for (double value : odd)
        for (int directional : {0, 1}) {
            for (double Design::*argument :
                 {&Design::sigma, &Design::alpha, &Design::target, &Design::es, &Design::half_width}) {
                Design d = with([=](Design& b) { b.directional = directional, b.*argument = value; });
                std::vector<double> sizes;
                for (double power : {d.power(), d.power_es(), d.kernel(value), d.kernel_es(value)})
                    EXPECT_TRUE(OrvMV::IsMissing(power) || (power >= 0 && power <= 1))
                        << value << ' ' << power;
                for (double total : {d.size(&sizes), d.size_es(&sizes), d.size_half_width(&sizes)})
                    EXPECT_TRUE(OrvMV::IsMissing(total) || total >= 6) << value << ' ' << total;
            }
            for (std::vector<double> Design::*argument :
                 {&Design::means, &Design::sizes, &Design::coefficients}) {
                Design d = with([=](Design& b) { b.directional = directional, (b.*argument)[1] = value; });
                std::vector<double> sizes;
                const double power = d.power();
                EXPECT_TRUE(OrvMV::IsMissing(power) || (power >= 0 && power <= 1)) << value << ' ' << power;
                EXPECT_GE(d.size(&sizes), 6);
                EXPECT_GE(d.size_es(&sizes), 6);
                EXPECT_GE(d.size_half_width(&sizes), 6);
            }
        }
}

TEST(ContrastInput, ArraysAreNotReadWhenAnotherArgumentIsRefused) {
    std::vector<double> sizes = {7};
    EXPECT_MISSING(PowerSC(3, nullptr, nullptr, nullptr, 0, 1, 0));
    EXPECT_MISSING(PowerSC(3, nullptr, nullptr, nullptr, 0, 1, 1));
    EXPECT_MISSING(PowerSC(1, nullptr, nullptr, nullptr, 0, 1, 0.05));
    EXPECT_MISSING(PowerSC(3, nullptr, nullptr, nullptr, 0, 0, 0.05));
    EXPECT_MISSING(PowerSCwES(3, nullptr, nullptr, 0, 0.5, 1));
    EXPECT_MISSING(PowerSCwES(1, nullptr, nullptr, 0, 0.5, 0.05));
    EXPECT_MISSING(PowerReverseSC(3, nullptr, nullptr, nullptr, &sizes, 0, 1, 0.8, 1));
    EXPECT_MISSING(PowerReverseSCwES(3, nullptr, nullptr, &sizes, 0, 0.5, 0.8, 1));
    EXPECT_MISSING(PowerReversebyHalfCISCTest(3, nullptr, nullptr, &sizes, 0.5, 1, 1));
    EXPECT_THAT(sizes, ElementsAre(7));
}

}  // namespace
