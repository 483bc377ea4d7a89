// What the operations do at the edges of their domains: limits, the missing value, the status.
#include <gtest/gtest.h>

#include <cmath>

#include "orvcommon/dist_fun.h"
#include "orvcommon/mv.h"
#include "support/values.h"

using OrvCommon_940::OrvMV;
using OrvMath_940::OrvDistFun;
using testing_support::kInfinity;
using testing_support::kNaN;

namespace {

double cdf_t(double t, double df, double delta) {
    return OrvDistFun::NonCentralCdfT(t, df, delta, 1e-12);
}
double cdf_f(double f, double df1, double df2, double nc) {
    return OrvDistFun::NonCentralCdfF(f, df1, df2, nc, 1e-12);
}
double idf_t(double p, double df) {
    return OrvDistFun::IdfT(p, df, 1e-40, 1e-30);
}

TEST(NormalDistribution, HasItsLimitsAndSymmetry) {
    EXPECT_EQ(OrvDistFun::CdfStdNorm(-kInfinity), 0);
    EXPECT_EQ(OrvDistFun::CdfStdNorm(kInfinity), 1);
    EXPECT_EQ(OrvDistFun::CdfStdNorm(0), 0.5);
    EXPECT_EQ(OrvDistFun::IdfStdNorm(0), -kInfinity);
    EXPECT_EQ(OrvDistFun::IdfStdNorm(1), kInfinity);
    EXPECT_EQ(OrvDistFun::IdfStdNorm(0.5), 0);
    EXPECT_EQ(OrvDistFun::IdfStdNorm(0.03125), -OrvDistFun::IdfStdNorm(0.96875));
}

TEST(NormalDistribution, IsMissingForNaNAndForNoProbability) {
    EXPECT_MISSING(OrvDistFun::CdfStdNorm(kNaN));
    for (double p : {-1e-300, 1 + 0x1p-52, kInfinity, kNaN}) EXPECT_MISSING(OrvDistFun::IdfStdNorm(p)) << p;
}

TEST(LogGamma, IsInfiniteAtThePolesAndMissingWhereThereIsNoLimit) {
    for (double pole : {0.0, -1.0, -7.0}) EXPECT_EQ(OrvDistFun::vorndnlgam(pole), kInfinity) << pole;
    EXPECT_EQ(OrvDistFun::vorndnlgam(kInfinity), kInfinity);
    EXPECT_MISSING(OrvDistFun::vorndnlgam(-kInfinity));
    EXPECT_MISSING(OrvDistFun::vorndnlgam(kNaN));
}

TEST(LogGamma, IsOfTheAbsoluteValueBelowZero) {
    EXPECT_NEAR(OrvDistFun::vorndnlgam(-0.5), std::log(2 * std::sqrt(M_PI)), 1e-15);
    EXPECT_NEAR(OrvDistFun::vorndnlgam(-1.5), std::log(4 * std::sqrt(M_PI) / 3), 1e-15);
}

TEST(NoncentralF, IsMissingOutsideItsDomain) {
    for (double df : {0.0, -0.0, -1.0, -kInfinity, kNaN}) {
        EXPECT_MISSING(cdf_f(1, df, 5, 1)) << df;
        EXPECT_MISSING(cdf_f(1, 5, df, 1)) << df;
    }
    for (double nc : {-1e-300, -kInfinity, kInfinity, kNaN}) EXPECT_MISSING(cdf_f(1, 5, 5, nc)) << nc;
    EXPECT_MISSING(cdf_f(kNaN, 5, 5, 1));
    EXPECT_MISSING(cdf_f(-1, 0, 5, 1)) << "the domain comes before the limits";
}

TEST(NoncentralF, HasItsLimitsInX) {
    for (double x : {-kInfinity, OrvMV::Missing(), -1.0, 0.0}) EXPECT_EQ(cdf_f(x, 3, 5, 1), 0) << x;
    EXPECT_EQ(cdf_f(kInfinity, 3, 5, 1), 1);
}

TEST(NoncentralF, WithManyDegreesOfFreedomIsAtItsLimit) {
    // Both infinite: F is 1, approached with a symmetric distribution.
    EXPECT_EQ(cdf_f(0.999, kInfinity, kInfinity, 3), 0);
    EXPECT_EQ(cdf_f(1.001, kInfinity, kInfinity, 3), 1);
    EXPECT_NEAR(cdf_f(1, kInfinity, kInfinity, 3), 0.5, 1e-14);
    // Infinite denominator degrees of freedom: chi-square over df1, elementary for df1 = 2.
    EXPECT_NEAR(cdf_f(1.5, 2, kInfinity, 0), -std::expm1(-1.5), 1e-15);
    // Infinite numerator degrees of freedom: the inverse of a chi-square over df2.
    EXPECT_NEAR(cdf_f(1.5, kInfinity, 2, 3), std::exp(-1 / 1.5), 1e-15);
}

TEST(NoncentralT, IsMissingOutsideItsDomain) {
    for (double df : {0.0, -0.0, -1.0, -kInfinity, kNaN}) EXPECT_MISSING(cdf_t(1, df, 1)) << df;
    for (double delta : {-kInfinity, kInfinity, kNaN}) EXPECT_MISSING(cdf_t(1, 5, delta)) << delta;
    EXPECT_MISSING(cdf_t(kNaN, 5, 1));
}

TEST(NoncentralT, HasItsLimits) {
    EXPECT_EQ(cdf_t(-kInfinity, 5, 1), 0);
    EXPECT_EQ(cdf_t(kInfinity, 5, 1), 1);
    EXPECT_NEAR(cdf_t(0, 5, 1), 0.15865525393145705, 1e-16);
    EXPECT_NEAR(cdf_t(2, kInfinity, 1), 0.84134474606854293, 1e-15) << "normal";
    EXPECT_EQ(cdf_t(5, 5, 1e300), 0);
    EXPECT_EQ(cdf_t(5, 5, -1e300), 1);
}

TEST(NoncentralT, IsSymmetric) {
    for (double delta : {0.3, 3.0, 30.0})
        for (double t : {0.1, 2.0, 25.0}) EXPECT_NEAR(cdf_t(t, 7, delta) + cdf_t(-t, 7, -delta), 1, 1e-15);
}

TEST(TAndFQuantiles, HaveTheirLimitsAndAreMissingOutsideTheirDomain) {
    EXPECT_EQ(idf_t(0, 5), -kInfinity);
    EXPECT_EQ(idf_t(1, 5), kInfinity);
    EXPECT_EQ(idf_t(0.5, 5), 0);
    EXPECT_EQ(OrvDistFun::IdfF(0, 3, 5), 0);
    EXPECT_EQ(OrvDistFun::IdfF(1, 3, 5), kInfinity);
    for (double p : {-0.1, 1.1, kNaN}) {
        EXPECT_MISSING(idf_t(p, 5)) << p;
        EXPECT_MISSING(OrvDistFun::IdfF(p, 3, 5)) << p;
    }
    for (double df : {0.0, -2.0, kNaN}) {
        EXPECT_MISSING(idf_t(0.9, df)) << df;
        EXPECT_MISSING(OrvDistFun::IdfF(0.9, df, 5)) << df;
        EXPECT_MISSING(OrvDistFun::IdfF(0.9, 5, df)) << df;
    }
    EXPECT_EQ(idf_t(0.975, kInfinity), OrvDistFun::IdfStdNorm(0.975));
    EXPECT_NEAR(OrvDistFun::IdfF(0.9, 2, kInfinity), -std::log(0.1), 1e-14);
    EXPECT_EQ(OrvDistFun::IdfF(0.9, kInfinity, kInfinity), 1);
}

TEST(AccuracyArguments, AreNotNeeded) {
    EXPECT_EQ(OrvDistFun::NonCentralCdfF(2, 3, 5, 1, kNaN), cdf_f(2, 3, 5, 1));
    EXPECT_EQ(OrvDistFun::NonCentralCdfT(2, 3, 1, 1e300), cdf_t(2, 3, 1));
    EXPECT_EQ(OrvDistFun::IdfT(0.9, 3, kNaN, -1), idf_t(0.9, 3));
}

/// Calls f with a status of 42, which a success leaves as it is.
template <typename F>
double value_with_status_untouched(F f) {
    long status = 42;
    const double value = f(status);
    EXPECT_EQ(status, 42);
    return value;
}

template <typename F>
void expect_failure(F f) {
    long status = 0;
    EXPECT_MISSING(f(status));
    EXPECT_NE(status, 0);
}

TEST(Status, IsSetWithTheMissingValueOutsideTheDomainOfABinomialFunction) {
    for (double bad : {-0.1, 1.1, kInfinity, kNaN}) {
        expect_failure([&](long& s) { return OrvDistFun::CdfBin(1, 5, bad, s); });
        expect_failure([&](long& s) { return OrvDistFun::PdfBin(1, 5, bad, s); });
        expect_failure([&](long& s) { return OrvDistFun::IdfBin(0.5, 5, bad, s); });
        expect_failure([&](long& s) { return OrvDistFun::IdfBin(bad, 5, 0.5, s); });
        expect_failure([&](long& s) { return OrvDistFun::PdfNegBin(1, 5, bad, s); });
    }
    for (double n : {-1.0, kInfinity, kNaN}) {
        expect_failure([&](long& s) { return OrvDistFun::CdfBin(1, n, 0.5, s); });
        expect_failure([&](long& s) { return OrvDistFun::PdfBin(1, n, 0.5, s); });
        expect_failure([&](long& s) { return OrvDistFun::IdfBin(0.5, n, 0.5, s); });
        expect_failure([&](long& s) { return OrvDistFun::PdfNegBin(1, n, 0.5, s); });
    }
    expect_failure([&](long& s) { return OrvDistFun::PdfNegBin(1, 0, 0.5, s); });
    expect_failure([&](long& s) { return OrvDistFun::CdfBin(kNaN, 5, 0.5, s); });
    expect_failure([&](long& s) { return OrvDistFun::PdfBin(kNaN, 5, 0.5, s); });
    expect_failure([&](long& s) { return OrvDistFun::PdfNegBin(kNaN, 5, 0.5, s); });
}

TEST(BinomialCdf, IsZeroBelowZeroAndOneFromNOn) {
    const auto cdf = [](double x, double n, double p) {
        return value_with_status_untouched([&](long& s) { return OrvDistFun::CdfBin(x, n, p, s); });
    };
    for (double x : {-kInfinity, OrvMV::Missing(), -1.0, -1e-300}) EXPECT_EQ(cdf(x, 5, 0.5), 0) << x;
    for (double x : {5.0, 5.5, 1e300, kInfinity}) EXPECT_EQ(cdf(x, 5, 0.5), 1) << x;
    EXPECT_EQ(cdf(2.999, 5, 0.5), 0.5) << "x is floored";
    EXPECT_EQ(cdf(3, 3.5, 0.5) < 1, true) << "a fractional n is not floored";
    EXPECT_EQ(cdf(0, 0, 0.5), 1);
    EXPECT_EQ(cdf(0, 5, 0), 1);
    EXPECT_EQ(cdf(4, 5, 1), 0);
}

TEST(BinomialProbability, IsZeroOutsideZeroToN) {
    const auto pdf = [](double x, double n, double p) {
        return value_with_status_untouched([&](long& s) { return OrvDistFun::PdfBin(x, n, p, s); });
    };
    for (double x : {-kInfinity, -1.0, 5.001, kInfinity}) EXPECT_EQ(pdf(x, 5, 0.5), 0) << x;
    EXPECT_EQ(pdf(0, 5, 0.5), 0.03125);
    EXPECT_EQ(pdf(5, 5, 0.5), 0.03125);
    EXPECT_EQ(pdf(0, 5, 0), 1);
    EXPECT_EQ(pdf(1, 5, 0), 0);
    EXPECT_EQ(pdf(5, 5, 1), 1);
    EXPECT_EQ(pdf(4, 5, 1), 0);
    EXPECT_EQ(pdf(0, 0, 0.3), 1);
    // C(1, 1/2) = 1 / (Gamma(3/2))^2 = 4 / pi
    EXPECT_NEAR(pdf(0.5, 1, 0.5), 2 / M_PI, 1e-16);
}

TEST(BinomialQuantile, IsTheLargestWholeNumberNotAboveTheProbability) {
    const auto idf = [](double prob, double n, double p) {
        return value_with_status_untouched([&](long& s) { return OrvDistFun::IdfBin(prob, n, p, s); });
    };
    EXPECT_EQ(idf(0.03125, 5, 0.5), 0) << "a tie counts";
    EXPECT_EQ(idf(std::nextafter(0.03125, 0), 5, 0.5), -1) << "none";
    EXPECT_EQ(idf(0.5, 5, 0.5), 2);
    EXPECT_EQ(idf(0, 5, 0.5), -1);
    EXPECT_EQ(idf(1, 5, 0.5), 5);
    EXPECT_EQ(idf(1, 5.5, 0.5), 6) << "P(X <= 5) is below 1 for 5.5 trials";
    EXPECT_EQ(idf(0.5, 5, 0), -1);
    EXPECT_EQ(idf(0.5, 5, 1), 4);
    EXPECT_EQ(idf(1, 5, 1), 5);
    EXPECT_EQ(idf(0.5, 0, 0.5), -1);
}

TEST(BetaDistribution, HasItsLimitsAndIsMissingOutsideItsDomain) {
    for (double x : {-kInfinity, OrvMV::Missing(), 0.0}) EXPECT_EQ(OrvDistFun::CdfBeta(x, 2, 3), 0) << x;
    for (double x : {1.0, 7.0, kInfinity}) EXPECT_EQ(OrvDistFun::CdfBeta(x, 2, 3), 1) << x;
    EXPECT_EQ(OrvDistFun::CdfBeta(0.5, kInfinity, 3), 0);
    EXPECT_EQ(OrvDistFun::CdfBeta(0.5, 3, kInfinity), 1);
    for (double bad : {0.0, -1.0, kNaN}) {
        EXPECT_MISSING(OrvDistFun::CdfBeta(0.5, bad, 3)) << bad;
        EXPECT_MISSING(OrvDistFun::CdfBeta(0.5, 3, bad)) << bad;
    }
    EXPECT_MISSING(OrvDistFun::CdfBeta(kNaN, 2, 3));
    EXPECT_MISSING(OrvDistFun::CdfBeta(0.5, kInfinity, kInfinity)) << "no limit";
}

TEST(BetaQuantile, IsAtTheEndWhereAParameterVanishes) {
    EXPECT_EQ(OrvDistFun::IdfBeta(0.025, 0, 11), 0);
    EXPECT_EQ(OrvDistFun::IdfBeta(0.975, 11, 0), 1);
    EXPECT_EQ(OrvDistFun::IdfBeta(0.5, kInfinity, 3), 1);
    EXPECT_EQ(OrvDistFun::IdfBeta(0.5, 3, kInfinity), 0);
    EXPECT_EQ(OrvDistFun::IdfBeta(0, 2, 3), 0);
    EXPECT_EQ(OrvDistFun::IdfBeta(1, 2, 3), 1);
    EXPECT_MISSING(OrvDistFun::IdfBeta(0.5, 0, 0)) << "no limit";
    EXPECT_MISSING(OrvDistFun::IdfBeta(0.5, kInfinity, kInfinity)) << "no limit";
    for (double bad : {-0.1, kNaN}) {
        EXPECT_MISSING(OrvDistFun::IdfBeta(bad, 2, 3)) << bad;
        EXPECT_MISSING(OrvDistFun::IdfBeta(0.5, bad, 3)) << bad;
        EXPECT_MISSING(OrvDistFun::IdfBeta(0.5, 2, bad)) << bad;
    }
    EXPECT_MISSING(OrvDistFun::IdfBeta(1.1, 2, 3));
}

TEST(NegativeBinomialProbability, CountsFailuresBeforeTheRthSuccess) {
    const auto pdf = [](double k, double r, double p) {
        return value_with_status_untouched([&](long& s) { return OrvDistFun::PdfNegBin(k, r, p, s); });
    };
    EXPECT_NEAR(pdf(3, 2, 0.5), 4 * 0.03125, 1e-16);
    EXPECT_EQ(pdf(0, 2, 0.5), 0.25);
    EXPECT_NEAR(pdf(1, 0.5, 0.75), 0.125 * std::sqrt(0.75), 1e-16) << "r may be fractional";
    EXPECT_EQ(pdf(-1, 2, 0.5), 0);
    EXPECT_EQ(pdf(kInfinity, 2, 0.5), 0);
    EXPECT_EQ(pdf(0, 2, 1), 1);
    EXPECT_EQ(pdf(1, 2, 1), 0);
    EXPECT_EQ(pdf(0, 2, 0), 0) << "there never is a success";
}

}  // namespace
