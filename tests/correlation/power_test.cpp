// Power of the tests of a correlation, and the sample size that reaches a power.
#include <gtest/gtest.h>

#include <cmath>

#include "correlation/correlation.h"
#include "correlation/kinds.h"
#include "support/normal.h"
#include "support/record.h"
#include "support/table.h"

using namespace POWER_NAMESPACE;
using namespace testing_support;
using OrvCommon_940::OrvMV;

namespace {

const double kBelowThree = std::nextafter(3.0, 0.0);
const double kAboveThree = std::nextafter(3.0, 4.0);
const double kAboveOne = std::nextafter(1.0, 2.0);
constexpr int kOneSided = 1, kTwoSided = 0;

// ---- Power -----------------------------------------------------------------------------------------------

TEST(CorrelationPower, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("correlation/power.csv")) {
        const double value = power(static_cast<Kind>(row[0]), static_cast<int>(row[1]), row[2], row[3],
                                   row[4], row[5], row[6]);
        EXPECT_NEAR(value, row[7], 1e-13) << "line " << row.line;
    }
}

TEST(CorrelationPower, IsMinusOneForACorrelationBeyondOne) {
    for (Kind kind : kAllKinds)
        for (double beyond : {kAboveOne, -kAboveOne, kInfinity, kNaN}) {
            EXPECT_EQ(power(kind, 1, 20, 2, beyond, 0, 0.05), -1);
            EXPECT_EQ(power(kind, 1, 20, 2, 0, beyond, 0.05), -1);
        }
}

TEST(CorrelationPower, IsMinusOneUnlessAlphaIsBetweenZeroAndOne) {
    for (Kind kind : kAllKinds) {
        for (double alpha : {0.0, 1.0, -0.1, 1.5, 1e-20, 0x1p-55, kNaN})
            EXPECT_EQ(power(kind, 1, 20, 2, 0.3, 0, alpha), -1);
        for (double alpha : {std::nextafter(0x1p-55, 1.0), 1 - 1e-16})
            EXPECT_GE(power(kind, 1, 20, 2, 0.3, 0, alpha), 0);
    }
}

TEST(CorrelationPower, OfASampleOfThreeIsMinusOneForPearson) {
    for (bool bias : {false, true}) {
        for (double N : {3.0, kBelowThree, -10.0, kNaN})
            EXPECT_EQ(PowerbyOneSampPearson(0, bias, N, 0.3, 0, 0.05), -1);
        EXPECT_GE(PowerbyOneSampPearson(0, bias, kAboveThree, 0.3, 0, 0.05), 0);
    }
}

TEST(CorrelationPower, OfASampleOfThreeIsOneForSpearmanUnlessTheMethodIsTwo) {
    EXPECT_EQ(PowerbyOneSampSpearman(0, 0, 3, 0.3, 0, 0.05), 1);
    EXPECT_EQ(PowerbyOneSampSpearman(1, 0, 3, 0.3, 0, 0.05), 1);
    EXPECT_EQ(PowerbyOneSampSpearman(5, 0, 3, 0.3, 0, 0.05), 1);  // before the method is looked at
    const double z = std::atanh(0.3), sd = std::sqrt(1 + z / (18 + 4 * std::sqrt(3.0)));
    EXPECT_NEAR(PowerbyOneSampSpearman(2, 1, 3, 0.3, 0, 0.05), phi(z / sd - kZ95), 1e-14);
    for (int method : {0, 1, 2, 5})
        for (double N : {kBelowThree, kNaN})
            EXPECT_EQ(PowerbyOneSampSpearman(method, 0, N, 0.3, 0, 0.05), -1);
}

TEST(CorrelationPower, OfASampleOfThreeChecksTheOtherArgumentsFirst) {
    EXPECT_EQ(PowerbyOneSampSpearman(0, 0, 3, 1.1, 0, 0.05), -1);
    EXPECT_EQ(PowerbyOneSampSpearman(0, 0, 3, 0, 1.1, 0.05), -1);
    EXPECT_EQ(PowerbyOneSampSpearman(0, 0, 3, 0.3, 0, 1), -1);
}

TEST(CorrelationPower, OfAnUnknownSpearmanMethodIsMinusOne) {
    for (int method : {-1, 3, 5, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(PowerbyOneSampSpearman(method, 0, 20, 0.3, 0, 0.05), -1);
}

TEST(CorrelationPower, OfAPartialCorrelationNeedsMoreThanThreeBeyondTheVariablesPartialledOut) {
    EXPECT_EQ(PowerbyOneSampPartial(0, 5, 2, 0.3, 0, 0.05), -1);
    EXPECT_GE(PowerbyOneSampPartial(0, std::nextafter(5.0, 6.0), 2, 0.3, 0, 0.05), 0);
    EXPECT_GE(PowerbyOneSampPartial(0, 3.5, 0, 0.3, 0, 0.05), 0);
    for (double k : {-1e-300, -1.0, kNaN}) EXPECT_EQ(PowerbyOneSampPartial(0, 20, k, 0.3, 0, 0.05), -1);
}

TEST(CorrelationPower, OfAPartialCorrelationIsTheCorrectedPearsonPowerAtTheEffectiveSize) {
    for (int sided : {kOneSided, kTwoSided})
        EXPECT_EQ(PowerbyOneSampPartial(sided, 27, 7, 0.4, 0.1, 0.05),
                  PowerbyOneSampPearson(sided, true, 20, 0.4, 0.1, 0.05));
}

TEST(CorrelationPower, OfEqualCorrelationsTakesTheLowerTailWhenOneSided) {
    for (Kind kind : {kPearson, kSpearman0, kSpearman1, kSpearman2})
        for (double r : {-0.4, 0.0, 0.7}) EXPECT_NEAR(power(kind, kOneSided, 30, 0, r, r, 0.05), 0.05, 1e-15);
    // Corrected, the bias of z under the alternative pulls the two signs apart.
    EXPECT_LT(PowerbyOneSampPearson(kOneSided, true, 30, 0.7, 0.7, 0.05),
              PowerbyOneSampPearson(kOneSided, true, 30, -0.7, -0.7, 0.05));
}

TEST(CorrelationPower, AnyOtherSidedFlagThanZeroIsOneSided) {
    for (Kind kind : kAllKinds)
        EXPECT_EQ(power(kind, -7, 30, 1, 0.3, 0, 0.05), power(kind, kOneSided, 30, 1, 0.3, 0, 0.05));
}

TEST(CorrelationPower, TheNullCarriesABiasOfItsOwn) {
    // With the alternative at 0 the bias of z is that of the null alone, -r0 / (2 (N - 1)).
    const double N = 12, r0 = 0.6, sd = std::sqrt(1 / (N - 3)), m = N - 1;
    const double distance = (-std::atanh(r0) - r0 / (2 * m)) / sd;
    const double ratio = std::sqrt((1 + 4 / (2 * m) + 22 / (6 * m * m)) / m) / sd;
    const double expected = phi(-(kZ95 + distance) / ratio);
    EXPECT_NEAR(PowerbyOneSampPearson(kOneSided, true, N, 0, r0, 0.05), expected, 1e-14);
}

TEST(CorrelationPower, AtCorrelationsOfOneTheLargestFiniteDoubleStandsForTheDifference) {
    for (Kind kind : kAllKinds) {
        EXPECT_EQ(power(kind, kTwoSided, 20, 2, 1, 0.3, 0.05), 1);
        EXPECT_EQ(power(kind, kTwoSided, 20, 2, -1, 0.3, 0.05), 1);
        EXPECT_EQ(power(kind, kTwoSided, 20, 2, 0.3, 1, 0.05), 1);
        EXPECT_EQ(power(kind, kTwoSided, 20, 2, 0.3, -1, 0.05), 1);
        EXPECT_EQ(power(kind, kOneSided, 20, 2, 1, -1, 0.05), 1);
        EXPECT_EQ(power(kind, kOneSided, 20, 2, -1, 1, 0.05), 1);
        // Positive for r = 1 and for r0 = -1, which decide first: nothing in the lower tail.
        EXPECT_EQ(power(kind, kOneSided, 20, 2, 1, 1, 0.05), 0);
        EXPECT_EQ(power(kind, kOneSided, 20, 2, -1, -1, 0.05), 0);
        EXPECT_EQ(power(kind, kTwoSided, 20, 2, 1, 1, 0.05), 1);
    }
}

TEST(CorrelationPower, OfTheThirdSpearmanMethodStaysFiniteAtOne) {
    // z, and with it the variance, is huge but not infinite: the difference still wins.
    EXPECT_EQ(PowerbyOneSampSpearman(2, 0, 3, 1, 0, 0.05), 1);
    EXPECT_EQ(PowerbyOneSampSpearman(2, 0, 1e300, -1, 0, 0.05), 1);
}

TEST(CorrelationPower, AnswersForSamplesOfAnySize) {
    for (Kind kind : kAllKinds)
        for (double N : {1e15, 1e300, 0x1p1023}) {
            EXPECT_EQ(power(kind, kTwoSided, N, 2, 0.3, 0.2, 0.05), 1);
            EXPECT_NEAR(power(kind, kTwoSided, N, 2, 0.3, 0.3, 0.05), 0.05, 1e-6);
        }
}

// ---- Objectives ------------------------------------------------------------------------------------------

TEST(CorrelationObjective, IsThePowerMinusTheTarget) {
    EXPECT_EQ(PowerbyOneSampPearsonFunc(25, {0.75, 0.4, 0.1, 1, 2, 0.01}, nullptr),
              PowerbyOneSampPearson(1, true, 25, 0.4, 0.1, 0.01) - 0.75);
    EXPECT_EQ(PowerbyOneSampPearsonFunc(25, {0.75, 0.4, 0.1, 0, 0, 0.01}, nullptr),
              PowerbyOneSampPearson(0, false, 25, 0.4, 0.1, 0.01) - 0.75);
    EXPECT_EQ(PowerbyOneSampSpearmanFunc(25, {0.75, 0.4, 0.1, 2, 1, 0.01}, nullptr),
              PowerbyOneSampSpearman(2, 1, 25, 0.4, 0.1, 0.01) - 0.75);
    EXPECT_EQ(PowerbyOneSampPartialFunc(25, {0.75, 3, 0.4, 0.1, 1, 0.01}, nullptr),
              PowerbyOneSampPartial(1, 25, 3, 0.4, 0.1, 0.01) - 0.75);
}

TEST(CorrelationObjective, ReadsCodesByTruncation) {
    EXPECT_EQ(PowerbyOneSampSpearmanFunc(25, {0.75, 0.4, 0.1, 1.9, 0.9, 0.01}, nullptr),
              PowerbyOneSampSpearman(1, 0, 25, 0.4, 0.1, 0.01) - 0.75);
    EXPECT_EQ(PowerbyOneSampPearsonFunc(25, {0.75, 0.4, 0.1, 0.9, 0.1, 0.01}, nullptr),
              PowerbyOneSampPearson(0, true, 25, 0.4, 0.1, 0.01) - 0.75);
}

TEST(CorrelationObjective, PassesTheRefusalOn) {
    EXPECT_EQ(PowerbyOneSampPearsonFunc(3, {0.75, 0.4, 0.1, 1, 1, 0.01}, nullptr), -1.75);
}

TEST(CorrelationObjective, DoesNotAskTheCancelObject) {
    CountingCancel cancel(1);
    PowerbyOneSampPearsonFunc(25, {0.75, 0.4, 0.1, 1, 1, 0.01}, &cancel);
    PowerbyOneSampSpearmanFunc(25, {0.75, 0.4, 0.1, 2, 1, 0.01}, &cancel);
    PowerbyOneSampPartialFunc(25, {0.75, 3, 0.4, 0.1, 1, 0.01}, &cancel);
    EXPECT_EQ(cancel.queries, 0);
}

// ---- Sample size -----------------------------------------------------------------------------------------

TEST(CorrelationSize, AgreesWithHighPrecisionValuesAndIsNotRounded) {
    for (const auto& row : read_table("correlation/size.csv")) {
        const double N = size_for_power(static_cast<Kind>(row[0]), static_cast<int>(row[1]), row[2], row[3],
                                        row[4], row[5], row[6]);
        EXPECT_NEAR(N, row[7], 2e-9) << "line " << row.line;
        EXPECT_NE(N, std::ceil(N));
    }
}

TEST(CorrelationSize, IsTheLowerEndWhereThatIsEnough) {
    EXPECT_EQ(PowerReversebyOneSampPearson(1, false, nullptr, 0.1, 0.9, 0, 0.05), 4);
    EXPECT_EQ(PowerReversebyOneSampSpearman(0, 1, 0.1, 0.9, 0, 0.05), 4);
    EXPECT_EQ(PowerReversebyOneSampSpearman(1, 1, 0.1, 0.9, 0, 0.05), 4);
    EXPECT_EQ(PowerReversebyOneSampSpearman(2, 1, 0.1, 0.9, 0, 0.05), 3);
    // At k + 3 the power is refused, so the search goes on to just above it.
    const double N = PowerReversebyOneSampPartial(1, 0.1, 6, 0.99999, 0, 0.05);
    EXPECT_GE(N, 9);
    EXPECT_LT(N, 9.1);
}

TEST(CorrelationSize, IsMissingForATargetThatNoSizeReaches) {
    for (Kind kind : kAllKinds) {
        EXPECT_TRUE(OrvMV::IsMissing(size_for_power(kind, 0, 0.8, 1, 0.3, 0.3, 0.05)));
        EXPECT_TRUE(OrvMV::IsMissing(size_for_power(kind, 0, 1.5, 1, 0.3, 0.2, 0.05)));
    }
}

TEST(CorrelationSize, IsMissingForRefusedArguments) {
    for (Kind kind : kAllKinds) {
        EXPECT_TRUE(OrvMV::IsMissing(size_for_power(kind, 0, 0.8, 1, 1.3, 0.3, 0.05)));
        EXPECT_TRUE(OrvMV::IsMissing(size_for_power(kind, 0, 0.8, 1, 0.3, 0.2, 1)));
    }
    EXPECT_TRUE(OrvMV::IsMissing(PowerReversebyOneSampSpearman(4, 0, 0.8, 0.3, 0, 0.05)));
    for (double k : {-1.0, -400.0, -500.0, kNaN})
        EXPECT_TRUE(OrvMV::IsMissing(PowerReversebyOneSampPartial(0, 0.8, k, 0.3, 0, 0.05)));
}

TEST(CorrelationSize, OfPearsonAsksTheCancelObject) {
    CountingCancel stop(3), never;
    EXPECT_TRUE(OrvMV::IsMissing(PowerReversebyOneSampPearson(0, false, &stop, 0.8, 0.3, 0, 0.05)));
    EXPECT_EQ(stop.queries, 3);
    EXPECT_EQ(PowerReversebyOneSampPearson(0, false, &never, 0.8, 0.3, 0, 0.05),
              PowerReversebyOneSampPearson(0, false, nullptr, 0.8, 0.3, 0, 0.05));
    EXPECT_GT(never.queries, 3);
}

TEST(CorrelationPower, IsRefusedAtAnInfiniteSampleSize) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(PowerbyOneSampPearson(1, false, infinity, 0.3, 0.3, 0.05), -1);
    EXPECT_EQ(PowerbyOneSampSpearman(0, 1, infinity, 0.4, 0.3, 0.05), -1);
    EXPECT_EQ(PowerbyOneSampPartial(1, infinity, 2, 0.4, 0.3, 0.05), -1);
}

TEST(CorrelationSize, SearchesTheIntervalOfItsTestToOneBillionth) {
    using namespace POWER_NAMESPACE;
    // Powers of 0.9 lie between the lower end plus 300 and the upper end, where another end would change the bisection.
    EXPECT_EQ(PowerReversebyOneSampPearson(1, true, nullptr, 0.9, 0.155, 0, 0.05),
              PowerReverse({0.9, 0.155, 0, 1, 1, 0.05}, PowerbyOneSampPearsonFunc, nullptr, 4, 400, 1e-9));
    for (int method : {0, 1, 2})
        EXPECT_EQ(PowerReversebyOneSampSpearman(method, 1, 0.9, 0.155, 0, 0.05),
                  PowerReverse({0.9, 0.155, 0, static_cast<double>(method), 1, 0.05},
                               PowerbyOneSampSpearmanFunc, nullptr, method == 2 ? 3 : 4, 400, 1e-9));
    EXPECT_EQ(PowerReversebyOneSampPartial(1, 0.9, 7, 0.155, 0, 0.05),
              PowerReverse({0.9, 7, 0.155, 0, 1, 0.05}, PowerbyOneSampPartialFunc, nullptr, 10, 407, 1e-9));
    EXPECT_EQ(PowerReversebyHalfCIOneSampPearson(true, nullptr, 0.105, 0.2, 0.05),
              std::ceil(PowerReverse({0.105, 0.2, 1, 0.05}, _SampleSizebyHalfCIOneSampPearson, nullptr, 4,
                                     400, 1e-9)));
}

}  // namespace
