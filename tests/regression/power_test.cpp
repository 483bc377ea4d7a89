// Power of the F test of a multiple regression, and the sample size that reaches a power.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "orvcommon/dist_fun.h"
#include "regression/regression.h"
#include "statpower/regression.h"
#include "support/record.h"
#include "support/table.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using namespace testing_support;
using OrvCommon_940::OrvMV;

namespace {

constexpr int kFixed = 0, kRandom = 1;

// ---- Power -----------------------------------------------------------------------------------------------

TEST(RegressionPower, WithFixedPredictorsAgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("regression/fixed_power.csv"))
        EXPECT_NEAR(Powerbymlr(kFixed, row[0] != 0, row[1], row[2], row[3], row[4], row[5], row[6]), row[7],
                    1e-12)
            << "line " << row.line;
}

TEST(RegressionPower, WithRandomPredictorsAgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("regression/random_power.csv"))
        EXPECT_NEAR(Powerbymlr(kRandom, row[0] != 0, row[1], row[2], row[3], row[4], row[5], row[6]), row[7],
                    1e-12)
            << "line " << row.line;
}

TEST(RegressionPower, OfRandomPredictorsIsAProbabilityFromSmallToLargeDesigns) {
    for (double N : {10.0, 33.0, 100.0, 700.0, 2000.0, 5000.0})
        for (double p : {1.0, 2.0, 5.0, 8.0, 30.0})
            for (double R : {0.0, 0.01, 0.1, 0.3, 0.6, 0.9, 0.97}) {
                const double power = Powerbymlr(kRandom, true, N, p, p, R, 0, 0.05);
                if (N < p + 2) {
                    EXPECT_EQ(power, -1);
                } else {
                    EXPECT_GE(power, 0.05 - 1e-12) << N << ' ' << p << ' ' << R;
                    EXPECT_LE(power, 1);
                }
            }
}

TEST(RegressionPower, ForAnEffectSizeIsThatForTheSameSquaredCorrelations) {
    // f^2 = (R2full - R2red) / (1 - R2full), so that e = f^2 / (1 + f^2) and N e / (1 - e) = N f^2.
    for (int random : {kFixed, kRandom})
        EXPECT_NEAR(PowerbymlrwES(random, true, 60, 6, 2, (0.4 - 0.3) / (1 - 0.4), 0.05),
                    Powerbymlr(random, true, 60, 6, 2, 0.4, 0.3, 0.05), 1e-14);
}

TEST(RegressionPower, WithoutAReducedModelReadsACorrelationAndSquaresIt) {
    for (int random : {kFixed, kRandom}) {
        const double f2 = 0.25 / (1 - 0.25);
        EXPECT_NEAR(Powerbymlr(random, true, 40, 3, 3, 0.5, 0, 0.05),
                    PowerbymlrwES(random, true, 40, 3, 3, f2, 0.05), 1e-14);
        EXPECT_EQ(Powerbymlr(random, true, 40, 3, 3, -0.5, 0, 0.05),
                  Powerbymlr(random, true, 40, 3, 3, 0.5, 0, 0.05));
        // With one, however small, squared correlations are meant.
        EXPECT_NEAR(Powerbymlr(random, true, 40, 3, 3, 0.5, 1e-15, 0.05),
                    PowerbymlrwES(random, true, 40, 3, 3, 0.5 / (1 - 0.5), 0.05), 1e-13);
    }
}

TEST(RegressionPower, WithoutAReducedModelNeedsACorrelationInsideMinusOneToOne) {
    for (int random : {kFixed, kRandom}) {
        for (double R : {1.0, -1.0, 1.5, kNaN}) EXPECT_EQ(Powerbymlr(random, true, 40, 3, 3, R, 0, 0.05), -1);
        for (double R : {std::nextafter(1.0, 0.0), -std::nextafter(1.0, 0.0), 0.0})
            EXPECT_GE(Powerbymlr(random, true, 40, 3, 3, R, 0, 0.05), 0);
        EXPECT_GE(Powerbymlr(random, true, 40, 3, 3, 0.5, -0.0, 0.05), 0);
    }
}

TEST(RegressionPower, WithAReducedModelNeedsSquaredCorrelationsInsideZeroToOneInOrder) {
    for (int random : {kFixed, kRandom}) {
        for (double bad : {-0.1, 1.0, 1.2, kNaN}) {
            EXPECT_EQ(Powerbymlr(random, true, 40, 3, 2, bad, 0.2, 0.05), -1);
            EXPECT_EQ(Powerbymlr(random, true, 40, 3, 2, 0.9, bad, 0.05), -1);
        }
        EXPECT_EQ(Powerbymlr(random, true, 40, 3, 2, 0.0, 0.2, 0.05), -1);
        EXPECT_EQ(Powerbymlr(random, true, 40, 3, 2, 0.2, std::nextafter(0.2, 1.0), 0.05), -1);
    }
}

TEST(RegressionPower, OfEqualSquaredCorrelationsIsAlpha) {
    for (int random : {kFixed, kRandom}) {
        EXPECT_NEAR(Powerbymlr(random, true, 40, 3, 2, 0.2, 0.2, 0.05), 0.05, 1e-14);
        EXPECT_NEAR(Powerbymlr(random, true, 40, 3, 3, 0, 0, 0.05), 0.05, 1e-14);
        EXPECT_NEAR(PowerbymlrwES(random, true, 40, 3, 3, 0, 0.05), 0.05, 1e-14);
    }
}

TEST(RegressionPower, NeedsPredictorsAndAlphaInRange) {
    for (int random : {kFixed, kRandom}) {
        const auto both_refuse = [&](double N, double p, double q, double alpha) {
            EXPECT_EQ(Powerbymlr(random, true, N, p, q, 0.5, 0, alpha), -1);
            EXPECT_EQ(PowerbymlrwES(random, true, N, p, q, 0.2, alpha), -1);
        };
        both_refuse(40, 0.5, 0.5, 0.05);
        both_refuse(40, 3, 0.99, 0.05);
        both_refuse(40, 3, std::nextafter(3.0, 4.0), 0.05);
        both_refuse(40, kNaN, 1, 0.05);
        both_refuse(40, 3, kNaN, 0.05);
        both_refuse(kNaN, 3, 3, 0.05);
        for (double alpha : {0.0, 0x1p-55, 1.0, -0.2, kNaN}) both_refuse(40, 3, 3, alpha);
        for (double alpha : {std::nextafter(0x1p-55, 1.0), 0.05, std::nextafter(1.0, 0.0)}) {
            EXPECT_GE(Powerbymlr(random, true, 40, 1, 1, 0.5, 0, alpha), 0);
            EXPECT_GE(PowerbymlrwES(random, true, 40, 1, 1, 0.2, alpha), 0);
        }
    }
}

TEST(RegressionPower, NeedsOneErrorDegreeOfFreedom) {
    for (int random : {kFixed, kRandom})
        for (bool intercept : {false, true}) {
            const double smallest = 3 + 1 + intercept;
            EXPECT_GE(Powerbymlr(random, intercept, smallest, 3, 2, 0.5, 0, 0.05), 0);
            EXPECT_GE(PowerbymlrwES(random, intercept, smallest, 3, 2, 0.5, 0.05), 0);
            const double below = std::nextafter(smallest, 0.0);
            EXPECT_EQ(Powerbymlr(random, intercept, below, 3, 2, 0.5, 0, 0.05), -1);
            EXPECT_EQ(PowerbymlrwES(random, intercept, below, 3, 2, 0.5, 0.05), -1);
        }
}

TEST(RegressionPower, AnyRandomFlagButZeroMeansRandomPredictors) {
    for (int random : {2, -1, 100})
        EXPECT_EQ(Powerbymlr(random, true, 40, 3, 2, 0.5, 0, 0.05),
                  Powerbymlr(kRandom, true, 40, 3, 2, 0.5, 0, 0.05));
    EXPECT_NE(Powerbymlr(kRandom, true, 40, 3, 2, 0.5, 0, 0.05),
              Powerbymlr(kFixed, true, 40, 3, 2, 0.5, 0, 0.05));
}

TEST(RegressionPower, DoesNotCheckTheEffectSize) {
    EXPECT_EQ(PowerbymlrwES(kFixed, true, 40, 3, 2, -0.1, 0.05), 1);  // no such noncentrality: missing, 1
    EXPECT_EQ(PowerbymlrwES(kFixed, true, 40, 3, 2, kInfinity, 0.05), 1);
    EXPECT_TRUE(std::isnan(PowerbymlrwES(kRandom, true, 40, 3, 2, -0.1, 0.05)));
    EXPECT_EQ(PowerbymlrwES(kRandom, true, 40, 3, 2, 1e300, 0.05), 1);
}

TEST(RegressionPower, OfRandomPredictorsIsOneMinusTheSeriesAtTheCriticalValue) {
    const double dfe = 40 - 1 - 5, F = OrvMath_940::OrvDistFun::IdfF(1 - 0.05, 2, dfe);
    const double x = 2 * F / (dfe + 2 * F), e = (0.5 - 0.1) / (1 - 0.1);
    EXPECT_NEAR(Powerbymlr(kRandom, true, 40, 5, 2, 0.5, 0.1, 0.05),
                1 - std::exp(_EstCseriesRoutine(x, e, 2, dfe, dfe + 2, x)), 1e-14);
}

// ---- Objectives ------------------------------------------------------------------------------------------

TEST(RegressionObjective, IsThePowerMinusTheTarget) {
    CountingCancel cancel(1);
    for (int random : {kFixed, kRandom}) {
        EXPECT_EQ(PowerbymlrFunc(45, {0.7, 5, 2, 0.5, 0.4, static_cast<double>(random), 1, 0.01}, &cancel),
                  Powerbymlr(random, true, 45, 5, 2, 0.5, 0.4, 0.01) - 0.7);
        EXPECT_EQ(PowerbymlrwESFunc(45, {0.7, 5, 2, 0.3, static_cast<double>(random), 0, 0.01}, &cancel),
                  PowerbymlrwES(random, false, 45, 5, 2, 0.3, 0.01) - 0.7);
    }
    EXPECT_EQ(cancel.queries, 0);
}

TEST(RegressionObjective, TruncatesTheRandomFlagAndComparesTheInterceptWithZero) {
    EXPECT_EQ(PowerbymlrFunc(45, {0.7, 5, 2, 0.5, 0.4, 0.9, 0.1, 0.01}, nullptr),
              Powerbymlr(kFixed, true, 45, 5, 2, 0.5, 0.4, 0.01) - 0.7);
    EXPECT_EQ(PowerbymlrwESFunc(45, {0.7, 5, 2, 0.3, -1.9, 0.1, 0.01}, nullptr),
              PowerbymlrwES(kRandom, true, 45, 5, 2, 0.3, 0.01) - 0.7);
}

// ---- Sample size -----------------------------------------------------------------------------------------

TEST(RegressionSize, AgreesWithHighPrecisionValuesAndIsNotRounded) {
    for (const auto& row : read_table("regression/size.csv")) {
        const double N = PowerReversebymlr(static_cast<int>(row[0]), row[1] != 0, row[2], row[3], row[4],
                                           row[5], row[6], row[7]);
        EXPECT_NEAR(N, row[8], 3e-9) << "line " << row.line;
        EXPECT_NE(N, std::ceil(N));
    }
}

TEST(RegressionSize, ForAnEffectSizeIsThatForTheSameSquaredCorrelations) {
    for (int random : {kFixed, kRandom})
        EXPECT_NEAR(PowerReversebymlrwES(random, true, 0.8, 6, 2, (0.4 - 0.3) / (1 - 0.4), 0.05),
                    PowerReversebymlr(random, true, 0.8, 6, 2, 0.4, 0.3, 0.05), 3e-9);
}

TEST(RegressionSize, IsTheLowerEndWhereThatIsEnough) {
    for (int random : {kFixed, kRandom}) {
        EXPECT_EQ(PowerReversebymlr(random, true, 0.04, 5, 5, 0.5, 0, 0.05), 7);
        EXPECT_EQ(PowerReversebymlr(random, false, 0.04, 5, 5, 0.5, 0, 0.05), 6);
        EXPECT_EQ(PowerReversebymlrwES(random, true, 0.04, 5, 5, 0.5, 0.05), 7);
        EXPECT_EQ(PowerReversebymlrwES(random, false, 0.04, 5, 5, 0.5, 0.05), 6);
    }
}

TEST(RegressionSize, IsMissingForATargetThatNoSizeReaches) {
    for (int random : {kFixed, kRandom}) {
        EXPECT_TRUE(OrvMV::IsMissing(PowerReversebymlr(random, true, 0.8, 5, 5, 0, 0, 0.05)));
        for (double f2 : {1e-300, 1e-8, 0.3, 100.0})
            EXPECT_TRUE(OrvMV::IsMissing(PowerReversebymlrwES(random, true, 1.5, 5, 2, f2, 0.05))) << f2;
        // 112 + 400 is a power of two: doubling it would end at an infinite sample.
        EXPECT_TRUE(OrvMV::IsMissing(PowerReversebymlrwES(random, true, 1.5, 112, 2, 0.3, 0.05)));
    }
}

TEST(RegressionSize, IsMissingForRefusedArguments) {
    for (int random : {kFixed, kRandom}) {
        EXPECT_TRUE(OrvMV::IsMissing(PowerReversebymlr(random, true, 0.8, 5, 6, 0.5, 0, 0.05)));
        EXPECT_TRUE(OrvMV::IsMissing(PowerReversebymlr(random, true, 0.8, 5, 2, 0.1, 0.2, 0.05)));
        EXPECT_TRUE(OrvMV::IsMissing(PowerReversebymlrwES(random, true, 0.8, 5, 2, 0.2, 1)));
        EXPECT_TRUE(OrvMV::IsMissing(PowerReversebymlrwES(random, true, 0.8, kNaN, 2, 0.2, 0.05)));
    }
}

TEST(RegressionSize, IsFoundForVerySmallEffects) {
    // N f^2 is what counts: the power at f^2 = 1e-8 is that of 1e-4 at a ten thousandth of the size.
    for (int random : {kFixed, kRandom}) {
        const double large = PowerReversebymlrwES(random, true, 0.8, 5, 2, 1e-8, 0.05);
        const double small = PowerReversebymlrwES(random, true, 0.8, 5, 2, 1e-4, 0.05);
        EXPECT_NEAR(large / small, 1e4, 2);
    }
}

TEST(RegressionSize, SearchesUpToFourHundredMoreThanThePredictorsFirst) {
    EXPECT_EQ(PowerReversebymlr(kFixed, true, 0.9, 5, 5, 0.22, 0, 0.05),
              PowerReverse({0.9, 5, 5, 0.22, 0, kFixed, 1, 0.05}, POWER_NAMESPACE::PowerbymlrFunc, nullptr, 7,
                           405, 1e-9));
    EXPECT_EQ(PowerReversebymlrwES(kFixed, false, 0.9, 5, 2, 0.035, 0.05),
              PowerReverse({0.9, 5, 2, 0.035, kFixed, 0, 0.05}, POWER_NAMESPACE::PowerbymlrwESFunc, nullptr,
                           6, 405, 1e-9));
}

}  // namespace
