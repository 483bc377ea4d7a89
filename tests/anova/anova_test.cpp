// The overall F test of a one-way analysis of variance.
#include "anova/anova.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <thread>

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
    std::vector<double> means = {0, 1, 2};
    std::vector<double> sizes = {10, 10, 20};
    double sigma = 2;
    double alpha = 0.05;
    double target = 0.8;
    double es = 0.25;
    int es_type = 0;
    double half_width = 0.5;

    double power() { return PowerOverallTest(k, means.data(), sizes.data(), sigma, alpha); }
    double power_es() { return PowerOverallTestwES(k, es_type, sizes.data(), es, alpha); }
    double rmsse() { return RMSSEOverallTest(k, means.data(), sizes.data(), sigma, alpha); }
    double size(std::vector<double>* groups) {
        return PowerReverseOverallTest(k, means.data(), sizes.data(), groups, sigma, target, alpha);
    }
    double size_es(std::vector<double>* groups) {
        return PowerReverseOverallTestwES(k, es_type, sizes.data(), groups, es, target, alpha);
    }
    double size_half_width(std::vector<double>* groups) {
        return PowerReversebyHalfCIOverallTest(k, sizes.data(), groups, half_width, sigma, alpha);
    }
    double kernel(double N) { return _PowerOverallTestwithN(k, means.data(), sigma, sizes.data(), N, alpha); }
    double kernel_es(double N) { return _PowerOverallTestwithES(k, es, es_type, N, alpha); }
};

Design with(void (*change)(Design&)) {
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

// ---- Power -----------------------------------------------------------------------------------------------

TEST(OverallFPower, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("anova/anova_power.csv")) {
        auto lists = lists_in(row.label);
        const double power =
            PowerOverallTest(static_cast<int>(row[0]), lists[0].data(), lists[1].data(), row[1], row[2]);
        EXPECT_NEAR(power, row[3], 1e-12) << "line " << row.line;
    }
}

TEST(OverallFPower, ForAnEffectSizeAgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("anova/anova_effect_power.csv")) {
        const double power = _PowerOverallTestwithES(static_cast<int>(row[0]), row[2],
                                                     static_cast<int>(row[1]), row[3], row[4]);
        EXPECT_NEAR(power, row[5], 1e-12) << "line " << row.line;
    }
}

TEST(OverallFPower, IsMissingUnlessAlphaIsAboveZeroAndBelowOne) {
    for (Design d : {kAlphaZero, kAlphaOne, kAlphaNaN}) {
        EXPECT_MISSING(d.power());
        EXPECT_MISSING(d.power_es());
        EXPECT_MISSING(d.kernel(40));
        EXPECT_MISSING(d.kernel_es(40));
    }
    for (double alpha : {1e-300, kBelowOne}) {
        Design d;
        d.alpha = alpha;
        EXPECT_PRESENT(d.power());
        EXPECT_PRESENT(d.power_es());
    }
}

TEST(OverallFPower, IsMissingForFewerThanTwoGroups) {
    for (int k : {1, 0, -1, kSmallestInt}) {
        Design d;
        d.k = k;
        EXPECT_MISSING(d.power());
        EXPECT_MISSING(d.power_es());
        EXPECT_MISSING(d.kernel(40));
        EXPECT_MISSING(d.kernel_es(40));
    }
    Design two;
    two.k = 2;
    EXPECT_PRESENT(two.power());
}

TEST(OverallFPower, IsMissingUnlessSigmaIsAboveZero) {
    for (Design d : {kSigmaZero, kSigmaNaN, with([](Design& b) { b.sigma = -1; })}) {
        EXPECT_MISSING(d.power());
        EXPECT_MISSING(d.kernel(40));
        EXPECT_PRESENT(d.power_es());  // which has no sigma
    }
}

TEST(OverallFPower, IsMissingForATotalBelowTheNumberOfGroups) {
    Design d;
    for (double N : {std::nextafter(3.0, 0.0), 0.0, -5.0, kNaN}) {
        EXPECT_MISSING(d.kernel(N));
        EXPECT_MISSING(d.kernel_es(N));
    }
    EXPECT_PRESENT(d.kernel(3.5));
    d.sizes = {1, 1, 0.5};
    EXPECT_MISSING(d.power());
    EXPECT_MISSING(d.power_es());
}

TEST(OverallFPower, AtATotalOfKNoErrorDegreeOfFreedomIsLeftAndThePowerCountsAsOne) {
    Design d;
    EXPECT_EQ(d.kernel(3), 1);
    EXPECT_EQ(d.kernel_es(3), 1);
    d.sizes = {1, 1, 1};
    EXPECT_EQ(d.power(), 1);
}

TEST(OverallFPower, OfEqualMeansIsAlpha) {
    Design d;
    d.means = {5, 5, 5};
    EXPECT_NEAR(d.power(), 0.05, 1e-14);
    d.es = 0;
    EXPECT_NEAR(d.power_es(), 0.05, 1e-14);
}

TEST(OverallFPower, DependsOnTheProportionsOfTheWeightsOnly) {
    Design d, scaled;
    scaled.sizes = {1, 1, 2};
    EXPECT_DOUBLE_EQ(d.kernel(57.25), scaled.kernel(57.25));
}

TEST(OverallFPower, UsesTheSumOfTheSizesAsItsTotal) {
    Design d;
    EXPECT_EQ(d.power(), d.kernel(40));
    EXPECT_EQ(d.power_es(), d.kernel_es(40));
}

TEST(OverallFPower, OfFUsesTheNoncentralityNTimesFSquared) {
    // f = 0.25 and N = 80 mean lambda = 5: for two groups the means 0 and 1/2 at sigma 1 say the same.
    double means[] = {0, 0.5};
    double sizes[] = {40, 40};
    EXPECT_DOUBLE_EQ(_PowerOverallTestwithES(2, 0.25, 0, 80, 0.05),
                     PowerOverallTest(2, means, sizes, 1, 0.05));
    EXPECT_EQ(_PowerOverallTestwithES(2, -0.25, 0, 80, 0.05), _PowerOverallTestwithES(2, 0.25, 0, 80, 0.05));
}

TEST(OverallFPower, OfAProportionOfVarianceUsesItsOddsForAnyTypeThatIsNotZero) {
    // 0.2 / (1 - 0.2) = 1/4 = f^2 for f = 1/2: lambda = 20 at N = 80.
    const double power = _PowerOverallTestwithES(4, 0.5, 0, 80, 0.05);
    for (int type : {1, 2, -1, 100}) EXPECT_DOUBLE_EQ(_PowerOverallTestwithES(4, 0.2, type, 80, 0.05), power);
}

TEST(OverallFPower, CountsAsOneWhereTheNoncentralityCannotBeComputed) {
    for (double es : {1.0, 1.5, -0.2, kNaN, kInfinity})
        EXPECT_EQ(_PowerOverallTestwithES(4, es, 1, 80, 0.05), 1) << es;
    EXPECT_EQ(_PowerOverallTestwithES(4, kInfinity, 0, 80, 0.05), 1);
}

// ---- Effect size -----------------------------------------------------------------------------------------

TEST(RMSSE, IsTheRootOfTheUnweightedSumOfSquaresOverKMinusOne) {
    double means[] = {0, 0, 3};
    double equal[] = {1, 1, 1};
    EXPECT_DOUBLE_EQ(RMSSEOverallTest(3, means, equal, 1, 0.05), std::sqrt(3.0));
    EXPECT_DOUBLE_EQ(RMSSEOverallTest(3, means, equal, 2, 0.05), std::sqrt(3.0) / 2);
}

TEST(RMSSE, TakesTheDeviationsFromTheWeightedMean) {
    // Weights 1, 1, 2: grand mean 1.5, deviations 2.25, 2.25, 2.25, summed without weights.
    double means[] = {0, 0, 3};
    double sizes[] = {1, 1, 2};
    EXPECT_DOUBLE_EQ(RMSSEOverallTest(3, means, sizes, 1, 0.05), std::sqrt(3 * 2.25 / 2));
}

TEST(RMSSE, ChecksAlphaThoughItPlaysNoOtherPart) {
    for (Design d : {kAlphaZero, kAlphaOne, kAlphaNaN, kOneGroup, kSigmaZero, kSigmaNaN})
        EXPECT_MISSING(d.rmsse());
    Design d, other;
    other.alpha = 0.9;
    EXPECT_EQ(d.rmsse(), other.rmsse());
}

// ---- Sample size -----------------------------------------------------------------------------------------

TEST(OverallFSize, AllocatesTheCeilingOfEachShareOfTheHighPrecisionTotal) {
    for (const auto& row : read_table("anova/anova_size.csv")) {
        auto lists = lists_in(row.label);
        auto& weights = lists[1];
        std::vector<double> sizes;
        const double total = PowerReverseOverallTest(static_cast<int>(row[0]), lists[0].data(),
                                                     weights.data(), &sizes, row[1], row[2], row[3]);
        double weight_sum = 0, expected_total = 0;
        for (double w : weights) weight_sum += w;
        std::vector<double> expected;
        for (double w : weights) expected.push_back(std::ceil(w / weight_sum * row[4]));
        for (double n : expected) expected_total += n;
        EXPECT_EQ(sizes, expected) << "line " << row.line;
        EXPECT_EQ(total, expected_total);
        // High-precision powers of this answer and of the next smaller one.
        EXPECT_GE(row[5], row[2]);
        EXPECT_LT(row[6], row[2]);
        EXPECT_NEAR(PowerOverallTest(static_cast<int>(row[0]), lists[0].data(), sizes.data(), row[1], row[3]),
                    row[5], 1e-12);
    }
}

TEST(OverallFSize, ReachesThePowerAndOneLessInEachGroupDoesNot) {
    Design d;
    d.sizes = {1, 1, 1};
    std::vector<double> sizes;
    const double total = d.size(&sizes);
    EXPECT_EQ(total, sizes[0] + sizes[1] + sizes[2]);
    d.sizes = sizes;
    EXPECT_GE(d.power(), d.target);
    for (double& n : d.sizes) --n;
    EXPECT_LT(d.power(), d.target);
}

TEST(OverallFSize, ForAnEffectSizeIsThatOfTheMeansThatHaveIt) {
    Design d;
    d.k = 2;
    d.means = {0, 0.5};
    d.sizes = {1, 1};
    d.sigma = 1;
    std::vector<double> by_means, by_f, by_proportion;
    EXPECT_EQ(d.size(&by_means), d.size_es(&by_f));
    d.es_type = 1;
    d.es = 1.0 / 17;  // f^2 / (1 + f^2) with f = 1/4
    d.size_es(&by_proportion);
    EXPECT_EQ(by_means, by_f);
    EXPECT_EQ(by_means, by_proportion);
}

TEST(OverallFSize, GivesEveryGroupAtLeastTwo) {
    Design d;
    d.means = {0, 100, 200};
    d.sizes = {1, 1, 8};
    std::vector<double> sizes;
    // The target is met at the smallest total, 6: shares 0.6, 0.6 and 4.8.
    EXPECT_EQ(d.size(&sizes), 9);
    EXPECT_THAT(sizes, ElementsAre(2, 2, 5));
}

TEST(OverallFSize, ResizesTheVectorToOneElementAGroup) {
    Design d;
    for (double (Design::*search)(std::vector<double>*) :
         {&Design::size, &Design::size_es, &Design::size_half_width})
        for (std::size_t before : {0u, 1u, 3u, 7u}) {
            std::vector<double> sizes(before, -1);
            (d.*search)(&sizes);
            EXPECT_EQ(sizes.size(), 3u);
            EXPECT_THAT(sizes, Each(testing::Ge(2)));
        }
}

TEST(OverallFSize, RefusedArgumentsAreMissingAndLeaveTheVectorUntouched) {
    expect_refused_sizes({kAlphaZero, kAlphaOne, kAlphaNaN, kOneGroup}, {kSigmaZero, kSigmaNaN});
}

TEST(OverallFSize, DoesNotCheckTheTargetPower) {
    Design d;
    std::vector<double> sizes;
    d.target = 0;
    EXPECT_EQ(d.size(&sizes), 7);  // met at the smallest total, 6: shares 1.5, 1.5 and 3
    d.target = -1;
    EXPECT_EQ(d.size(&sizes), 7);
}

TEST(OverallFSize, AFailedSearchGoesThroughTheRoundingAndGivesTheSmallestAllocation) {
    Design d;
    std::vector<double> sizes;
    d.target = 1.5;
    EXPECT_EQ(d.size(&sizes), 6);
    EXPECT_THAT(sizes, ElementsAre(2, 2, 2));
    d.means = {1, 1, 1};
    d.target = 0.8;
    EXPECT_EQ(d.size(&sizes), 6);
}

TEST(OverallFSize, ObjectivesReadTheirDesignVectorsInOrder) {
    Design d;
    const double N = 33.5;
    EXPECT_EQ(OverallTestFunc(N, {0.8, 3, 2, 0.05, 0, 1, 2, 0.25, 0.25, 0.5}, nullptr), d.kernel(N) - 0.8);
    EXPECT_EQ(OverallTestwESFunc(N, {0.8, 3, 0.25, 0, 0.05}, nullptr), d.kernel_es(N) - 0.8);
    EXPECT_EQ(OverallTestwESFunc(N, {0.8, 3.9, 0.25, 0.9, 0.05}, nullptr),
              d.kernel_es(N) - 0.8);  // truncated
    d.es_type = 1;
    EXPECT_EQ(OverallTestwESFunc(N, {0.8, 3, 0.25, 1, 0.05}, nullptr), d.kernel_es(N) - 0.8);
}

TEST(OverallFSize, AnObjectiveWithoutItsArraysIsMissing) {
    EXPECT_MISSING(OverallTestFunc(40, {0.0, 3, 2, 0.05, 0, 1, 2, 0.5}, nullptr));
    EXPECT_MISSING(OverallTestFunc(40, {0.0, 3, 2, 0.05}, nullptr));
    EXPECT_TRUE(std::isnan(OverallTestFunc(40, {}, nullptr)));
}

// ---- Half-width ------------------------------------------------------------------------------------------

TEST(OverallFHalfWidth, IsTheQuantileTimesTheStandardErrorOfTheMean) {
    // One error degree of freedom, where Student's t is the Cauchy distribution: t(0.975) = cot(0.025 pi).
    const double t = 1 / std::tan(0.025 * std::acos(-1.0));
    EXPECT_NEAR(HalfCIOverallTest(3, 4, 2, 0.05), t * 2 / 2, 1e-13 * t);
    // Two: t(1 - a/2) = (1 - a) sqrt(2 / (1 - (1 - a)^2)).
    const double t2 = 0.95 * std::sqrt(2 / (1 - 0.95 * 0.95));
    EXPECT_NEAR(HalfCIOverallTest(7, 9, 6, 0.05), t2 * 6 / 3, 1e-13 * t2);
}

TEST(OverallFHalfWidth, GoesToItsLimits) {
    EXPECT_EQ(HalfCIOverallTest(3, kInfinity, 2, 0.05), 0);
    EXPECT_EQ(HalfCIOverallTest(3, 40, 2, 0), kInfinity);
}

TEST(OverallFHalfWidth, ChecksNothing) {
    EXPECT_LT(HalfCIOverallTest(3, 40, -2, 0.05), 0);
    EXPECT_EQ(HalfCIOverallTest(3, 40, 0, 0.05), 0);
    EXPECT_EQ(HalfCIOverallTest(3, 40, 2, 1), 0);
    EXPECT_GT(HalfCIOverallTest(0, 40, 2, 0.05), 0);
    // N = k: the quantile is missing, and goes into the product as it is.
    EXPECT_EQ(HalfCIOverallTest(4, 4, 2, 0.05), OrvMV::Missing());
    EXPECT_EQ(HalfCIOverallTest(9, 4, 2, 0.05), OrvMV::Missing());
    EXPECT_TRUE(std::isnan(HalfCIOverallTest(4, -4, 2, 0.05)));
    EXPECT_TRUE(std::isnan(HalfCIOverallTest(4, kNaN, 2, 0.05)));
}

TEST(OverallFHalfWidth, SizeIsTheSmallestWhoseHalfWidthDoesNotExceedTheTarget) {
    for (double target : {2.0, 0.5, 0.1, 0.03}) {
        Design d;
        d.sizes = {1, 1, 1};
        d.half_width = target;
        std::vector<double> sizes;
        const double total = d.size_half_width(&sizes);
        EXPECT_LE(HalfCIOverallTest(3, total, d.sigma, d.alpha), target);
        EXPECT_GT(HalfCIOverallTest(3, total - 3, d.sigma, d.alpha), target);
        EXPECT_EQ(sizes[0], sizes[2]);
    }
}

TEST(OverallFHalfWidth, ObjectiveIsNegativeWhileTheIntervalIsTooWide) {
    const double N = 9;
    const double t = HalfCIOverallTest(7, N, 1, 0.05) * 3;
    EXPECT_NEAR(_SampleSizebyHalfCIOverallTestFunc(N, {0.5, 7, 2, 0.05}, nullptr), N * 0.25 / 4 - t * t,
                1e-13 * t * t);
}

TEST(OverallFHalfWidth, DoesNotCheckTheTarget) {
    Design d;
    std::vector<double> sizes;
    d.half_width = 0;  // never reached
    EXPECT_EQ(d.size_half_width(&sizes), 6);
    d.half_width = kInfinity;
    EXPECT_EQ(d.size_half_width(&sizes), 7);
}

TEST(OverallFHalfWidth, MultipliesBeforeItDividesUnlikeThePowerSearch) {
    // The last bit decides at whole shares. Both searches are met at the smallest total, 2k; in double
    // precision 0.4 / 0.8 * 10 is just above 5 and 0.4 * 10 / 0.8 is 5, 0.2 / 0.4 * 6 is 3 and 0.2 * 6 / 0.4
    // just above it (0.8 and 0.4 standing for the sums of the weights).
    Design d;
    d.target = 0;
    d.half_width = 1e6;
    std::vector<double> by_means, by_effect, by_half_width;
    const auto search = [&] {
        d.size(&by_means);
        d.size_es(&by_effect);
        d.size_half_width(&by_half_width);
    };

    d.k = 5;
    d.means = {0, 1, 2, 3, 4};
    d.sizes = {0.4, 0.1, 0.1, 0.1, 0.1};
    search();
    EXPECT_EQ(by_means[0], 6);
    EXPECT_EQ(by_effect[0], 6);
    EXPECT_EQ(by_half_width[0], 5);

    d.k = 3;
    d.sizes = {0.2, 0.1, 0.1};
    search();
    EXPECT_EQ(by_means[0], 3);
    EXPECT_EQ(by_effect[0], 3);
    EXPECT_EQ(by_half_width[0], 4);
}

// ---- Any input -------------------------------------------------------------------------------------------

TEST(OverallFInput, NaNAndInfinitiesAnywhereGiveSomeResultAndEnd) {
    const double odd[] = {kNaN, kInfinity, -kInfinity, 0, -1, kSmallest, 1e308, -1e308, OrvMV::Missing()};
    for (double value : odd) {
        for (double Design::*argument :
             {&Design::sigma, &Design::alpha, &Design::target, &Design::es, &Design::half_width})
            for (int type : {0, 1}) {
                Design d;
                d.es_type = type;
                d.*argument = value;
                std::vector<double> sizes;
                for (double result :
                     {d.power(), d.power_es(), d.rmsse(), d.kernel(value), d.kernel_es(value)})
                    EXPECT_TRUE(std::isnan(result) || OrvMV::IsMissing(result) || result >= 0)
                        << value << ' ' << result;
                for (double total : {d.size(&sizes), d.size_es(&sizes), d.size_half_width(&sizes)})
                    EXPECT_TRUE(OrvMV::IsMissing(total) || total >= 6) << value << ' ' << total;
            }
        for (std::vector<double> Design::*argument : {&Design::means, &Design::sizes}) {
            Design d;
            (d.*argument)[1] = value;
            std::vector<double> sizes;
            const double power = d.power();
            EXPECT_TRUE(OrvMV::IsMissing(power) || (power >= 0 && power <= 1)) << value << ' ' << power;
            EXPECT_GE(d.size(&sizes), 6);
            EXPECT_GE(d.size_es(&sizes), 6);
            EXPECT_GE(d.size_half_width(&sizes), 6);
        }
    }
}

TEST(OverallFInput, ArraysAreNotReadWhenAnotherArgumentIsRefused) {
    std::vector<double> sizes = {7};
    EXPECT_MISSING(PowerOverallTest(3, nullptr, nullptr, 1, 0));
    EXPECT_MISSING(PowerOverallTest(3, nullptr, nullptr, 1, 1));
    EXPECT_MISSING(PowerOverallTest(1, nullptr, nullptr, 1, 0.05));
    EXPECT_MISSING(PowerOverallTest(3, nullptr, nullptr, 0, 0.05));
    EXPECT_MISSING(PowerOverallTestwES(3, 0, nullptr, 0.25, 0));
    EXPECT_MISSING(PowerOverallTestwES(3, 0, nullptr, 0.25, 1));
    EXPECT_MISSING(PowerOverallTestwES(1, 0, nullptr, 0.25, 0.05));
    EXPECT_MISSING(RMSSEOverallTest(3, nullptr, nullptr, 1, 1));
    EXPECT_MISSING(PowerReverseOverallTest(3, nullptr, nullptr, &sizes, 1, 0.8, 1));
    EXPECT_MISSING(PowerReverseOverallTestwES(3, 0, nullptr, &sizes, 0.25, 0.8, 1));
    EXPECT_MISSING(PowerReversebyHalfCIOverallTest(3, nullptr, &sizes, 0.5, 1, 1));
    EXPECT_THAT(sizes, ElementsAre(7));
}

TEST(OverallFInput, TheSmallestDesignAndTheOutermostLevelsAreAccepted) {
    Design d;
    d.k = 2;
    d.means = {0, 1};
    d.sizes = {10, 10};
    d.sigma = kSmallest;
    for (double alpha : {1e-300, kBelowOne}) {
        d.alpha = alpha;
        std::vector<double> sizes;
        EXPECT_PRED1([](double v) { return !OrvMV::IsMissing(v); }, d.rmsse());
        for (double result : {d.power(), d.power_es(), d.kernel(20), d.kernel_es(20), d.size(&sizes),
                              d.size_es(&sizes), d.size_half_width(&sizes)})
            EXPECT_PRESENT(result);
    }
}

TEST(OverallFInput, ThreadsDoNotDisturbEachOther) {
    Design reference;
    std::vector<double> expected;
    const double total = reference.size(&expected);
    const double power = reference.power();
    std::vector<std::thread> threads;
    std::vector<int> agreed(4, 0);
    for (int& count : agreed)
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i) {
                Design d;
                std::vector<double> sizes;
                count += d.size(&sizes) == total && sizes == expected && d.power() == power;
            }
        });
    for (auto& thread : threads) thread.join();
    EXPECT_THAT(agreed, Each(200));
}

}  // namespace
