// The distribution of the sample squared multiple correlation with random predictors.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "orvcommon/dist_fun.h"
#include "regression/regression.h"
#include "statpower/regression.h"
#include "support/table.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using OrvMath_940::OrvDistFun;
using namespace testing_support;

namespace {

// ---- The series, term by term ----------------------------------------------------------------------------

double log_rising_factorial(double a, double t) {
    double sum = 0;
    for (double i = 0; i <= t - 1; ++i) sum += std::log(a + i);
    return sum;
}

double log_gamma(double x) {
    return OrvDistFun::vorndnlgam(x);
}

double log_term(double k, double e, double q, double dfe, double n, double x) {
    return 2 * log_rising_factorial(n / 2, k) + k * std::log(e) + log_gamma(q / 2 + k) + log_gamma(dfe / 2) -
           log_gamma(q / 2 + k + dfe / 2) + std::log(OrvDistFun::CdfBeta(x, q / 2 + k, dfe / 2)) -
           log_rising_factorial(q / 2, k) - log_gamma(k + 1);
}

/// The series summed as it is written: every term from scratch, in logarithms, shifted by a multiple of 709,
/// up to the first negative binomial weight beyond the mode that underflows.
double series_term_by_term(double e, double q, double dfe, double n, double x) {
    const double a = n / 2;
    const double log_beta = log_gamma(q / 2) + log_gamma(dfe / 2) - log_gamma(q / 2 + dfe / 2);
    const double first = log_beta + std::log(OrvDistFun::CdfBeta(x, q / 2, dfe / 2));
    const double mode = (a - 1) * e / (1 - e);
    double maximum = first;
    std::vector<double> terms;
    for (double k = 1;; ++k) {
        terms.push_back(log_term(k, e, q, dfe, n, x));
        long status = 0;
        const double weight = OrvDistFun::PdfNegBin(k, a, 1 - e, status);
        if (k > mode && std::log(weight) < -708.3964) break;
        maximum = std::max(terms.back(), maximum);
    }
    const double shift = std::trunc(maximum / 709) * 709;
    double sum = std::exp(first - shift);
    for (double term : terms) sum += std::exp(term - shift);
    return shift + std::log(sum) - log_beta + a * std::log(1 - e);
}

double series(double e, double q, double dfe, double x) {
    return _EstCseriesRoutine(x, e, q, dfe, dfe + q, x);
}

TEST(RandomPredictorsSeries, HasTheValueOfTheSumTermByTerm) {
    for (double e : {0.0, 1e-6, 0.01, 0.1, 0.3, 0.6})
        for (double q : {1.0, 2.0, 5.0, 30.0})
            for (double dfe : {1.0, 2.5, 8.0, 30.0})
                for (double x : {1e-3, 0.3, 0.95, 0.9999}) {
                    const double expected = series_term_by_term(e, q, dfe, dfe + q, x);
                    EXPECT_NEAR(series(e, q, dfe, x), expected, 2e-12 * (1 + std::abs(expected)))
                        << "e " << e << " q " << q << " dfe " << dfe << " x " << x;
                }
}

TEST(RandomPredictorsSeries, HasTheValueOfTheSumTermByTermForALargeSample) {
    for (double e : {0.001, 0.05, 0.4})
        for (double x : {0.002, 0.05, 0.4}) {
            const double expected = series_term_by_term(e, 5, 1500, 1505, x);
            EXPECT_NEAR(series(e, 5, 1500, x), expected, 1e-11 * (1 + std::abs(expected)))
                << "e " << e << " x " << x;
        }
}

TEST(RandomPredictorsSeries, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("regression/random_probability.csv"))
        EXPECT_NEAR(series(row[2], row[0], row[1], row[3]), row[4], 1e-12 * std::max(1.0, std::abs(row[4])))
            << "line " << row.line;
}

TEST(RandomPredictorsSeries, DoesNotReadItsFirstArgument) {
    for (double unread : {0.0, 5.0, kNaN})
        EXPECT_EQ(_EstCseriesRoutine(unread, 0.2, 3, 40, 43, 0.1), series(0.2, 3, 40, 0.1));
}

TEST(RandomPredictorsSeries, WithoutAnEffectIsTheBetaDistribution) {
    for (double x : {0.01, 0.3, 0.99})
        EXPECT_NEAR(std::exp(series(0, 3, 20, x)), OrvDistFun::CdfBeta(x, 1.5, 10), 1e-15);
}

TEST(RandomPredictorsSeries, IsMinusInfinityForAProbabilityOfZero) {
    EXPECT_EQ(series(0.3, 3, 20, 0), -kInfinity);
    EXPECT_EQ(series(1, 3, 20, 0.5), -kInfinity);
    EXPECT_EQ(series(0.3, 3, kInfinity, 0), -kInfinity);
}

TEST(RandomPredictorsSeries, IsZeroForAProbabilityOfOne) {
    EXPECT_NEAR(series(0.3, 3, 20, 1), 0, 1e-14);
    EXPECT_NEAR(series(0, 3, 20, 1), 0, 1e-14);
    EXPECT_NEAR(series(0.95, 30, 4970, 1), 0, 1e-11);
}

TEST(RandomPredictorsSeries, IsNotANumberForAnImpossibleEffect) {
    for (double e : {-0.5, -2.0, 1.1, kNaN}) EXPECT_TRUE(std::isnan(series(e, 3, 20, 0.5)));
}

TEST(RandomPredictorsSeries, AgreesWithHighPrecisionValuesWhereTheSumIsLong) {
    for (const auto& row : read_table("regression/random_probability_long.csv"))
        EXPECT_NEAR(std::exp(series(row[2], row[0], row[1], row[3])), row[4], 1e-13) << "line " << row.line;
}

// ---- Bounded work ----------------------------------------------------------------------------------------

TEST(RandomPredictorsSeries, AnswersAnyArgument) {
    const double values[] = {-kInfinity, -1e300,    -1,       -1e-300,   0,   1e-300, 1e-16,
                             0.3,        1 - 1e-16, 1,        1.5,       30,  5000,   1e7,
                             1e12,       1e100,     0x1p1023, kInfinity, kNaN};
    for (double e : {0.0, 1e-300, 1e-9, 0.3, 0.999, 1 - 1e-16, 1.0, 2.0, -1.0, kNaN})
        for (double q : values)
            for (double dfe : values)
                for (double x : {0.0, 1e-300, 1e-9, 0.5, 1 - 1e-16, 1.0, -1.0, 2.0, kNaN}) {
                    const double L = series(e, q, dfe, x);
                    const bool valid =
                        e >= 0 && e < 1 && q >= 1 && q < 1e100 && dfe >= 1 && dfe < 1e100 && x >= 0 && x <= 1;
                    EXPECT_TRUE(!valid || L <= 0) << e << ' ' << q << ' ' << dfe << ' ' << x << ": " << L;
                }
}

// ---- Named helpers ---------------------------------------------------------------------------------------

TEST(LogRisingFactorial, IsTheSumOfItsLogarithms) {
    for (double a : {1e-3, 0.5, 1.0, 7.25, 300.0, 1e8})
        for (double t : {1.0, 2.0, 15.0, 16.0, 17.0, 40.0, 1000.0, 20000.0}) {
            const double expected = log_rising_factorial(a, t);
            EXPECT_NEAR(_Logt(a, t), expected, 1e-13 * (1 + std::abs(expected)) * std::sqrt(t))
                << a << ' ' << t;
        }
}

TEST(LogRisingFactorial, OfOneIsTheLogFactorial) {
    for (double t : {5.0, 16.0, 30.0, 170.0, 1e6, 1e15})
        EXPECT_NEAR(_Logt(1, t), std::lgamma(t + 1), 1e-15 * std::lgamma(t + 1) + 1e-14);
}

TEST(LogRisingFactorial, IsZeroForACountBelowOne) {
    for (double t : {0.0, -1.0, -kInfinity, 0.5, std::nextafter(1.0, 0.0), kNaN}) {
        EXPECT_EQ(_Logt(3, t), 0);
        EXPECT_EQ(_Logt(-3, t), 0);
    }
}

TEST(LogRisingFactorial, TruncatesItsCount) {
    EXPECT_EQ(_Logt(2.5, 3.9), _Logt(2.5, 3));
    EXPECT_EQ(_Logt(2.5, 1.5), std::log(2.5));
    EXPECT_EQ(_Logt(2.5, 40.9), _Logt(2.5, 40));
}

TEST(LogRisingFactorial, OfZeroIsMinusInfinityAndOfANegativeNumberNotANumber) {
    for (double t : {1.0, 5.0, 100.0}) {
        EXPECT_EQ(_Logt(0, t), -kInfinity);
        EXPECT_TRUE(std::isnan(_Logt(-2.5, t)));
    }
}

TEST(LogRisingFactorial, OfAnyLengthIsAnsweredAtOnce) {
    EXPECT_NEAR(_Logt(2, 1e300) / (1e300 * (std::log(1e300) - 1)), 1, 1e-14);
    EXPECT_EQ(_Logt(2, kInfinity), kInfinity);
    EXPECT_NEAR(_Logt(1e300, 100), 100 * std::log(1e300), 1e-9);
}

TEST(LogSeriesTerm, IsTheTermOfTheSeries) {
    for (double k : {1.0, 2.0, 10.0, 16.0, 17.0, 60.0, 400.0})
        for (double e : {0.01, 0.4, 0.95})
            for (double dfe : {1.0, 12.0, 300.0}) {
                const double expected = log_term(k, e, 3, dfe, dfe + 3, 0.6);
                EXPECT_NEAR(_LogCk(k, e, 3, dfe, dfe + 3, 0.6), expected, 1e-12 * (1 + std::abs(expected)));
                // By the identity B(q/2, dfe/2) (a)_k / k! e^k I_x(q/2 + k, dfe/2), with a = n/2.
                const double a = (dfe + 3) / 2;
                const double identity = log_gamma(1.5) + log_gamma(dfe / 2) - log_gamma(a) +
                                        log_gamma(a + k) - log_gamma(a) - log_gamma(k + 1) + k * std::log(e) +
                                        std::log(OrvDistFun::CdfBeta(0.6, 1.5 + k, dfe / 2));
                EXPECT_NEAR(_LogCk(k, e, 3, dfe, dfe + 3, 0.6), identity, 1e-12 * (1 + std::abs(identity)));
            }
}

TEST(LogSeriesTerm, IsMinusInfinityWithoutAnEffectOrProbability) {
    EXPECT_EQ(_LogCk(4, 0, 3, 20, 23, 0.5), -kInfinity);
    EXPECT_EQ(_LogCk(4, 0.3, 3, 20, 23, 0), -kInfinity);
}

TEST(LogSeriesTerm, OfAnyIndexIsAnsweredAtOnce) {
    EXPECT_FALSE(std::isnan(_LogCk(1e15, 0.999999, 3, 20, 23, 1)));
    _LogCk(1e300, 0.5, 3, 20, 23, 0.5);
    _LogCk(kInfinity, 0.5, 3, 20, 23, 0.5);
}

}  // namespace
