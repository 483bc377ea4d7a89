// The operations against tables of exact values, and the binomial distribution function against exact
// arithmetic.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "orvcommon/dist_fun.h"
#include "orvcommon/distribution_errors.h"

using OrvMath_940::OrvDistFun;
using testing_support::errors_by_region;
using testing_support::operation;
using testing_support::read_table;
using testing_support::Row;

namespace {

constexpr double kAny = HUGE_VAL;

struct Promise {
    std::string operation;
    double absolute, relative;
};

class Accuracy : public testing::TestWithParam<Promise> {};

TEST_P(Accuracy, IsKeptInEveryRegion) {
    const Promise& promise = GetParam();
    for (const auto& [region, errors] : errors_by_region(operation(promise.operation))) {
        SCOPED_TRACE(region + ", " + errors.worst);
        EXPECT_LE(errors.absolute, promise.absolute);
        const bool absolute_only = region.ends_with("otherwise") || region == "tiny";
        EXPECT_LE(absolute_only ? 0 : errors.relative, promise.relative);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Operations, Accuracy,
    testing::Values(Promise{"CdfStdNorm", 2e-16, 5e-15}, Promise{"IdfStdNorm", 1e-15, 5e-16},
                    Promise{"vorndnlgam", kAny, 5e-16}, Promise{"NonCentralCdfF", 1e-14, 1e-12},
                    Promise{"NonCentralCdfT", 1e-14, 1e-12}, Promise{"IdfF", kAny, 1e-14},
                    Promise{"IdfT", kAny, 1e-14}, Promise{"CdfBin", 1e-14, 1e-12}, Promise{"IdfBin", 0, 0},
                    Promise{"PdfBin", 1e-14, 1e-13}, Promise{"CdfBeta", 1e-14, 1e-12},
                    Promise{"IdfBeta", 1e-14, 1e-14}, Promise{"PdfNegBin", 1e-14, 1e-13}),
    [](const auto& test) { return test.param.operation; });

double cdf_bin(double x, double n, double p) {
    long status = 0;
    return OrvDistFun::CdfBin(x, n, p, status);
}

__extension__ using Wide = unsigned __int128;

/// Every x for n trials at p = u / 2^m against the sum in 128-bit integers, n m at most 127: both round
/// once.
void expect_exact(int n, int u, int m) {
    const unsigned v = (1U << m) - static_cast<unsigned>(u);
    Wide sum = 0, coefficient = 1;
    for (int x = 0; x < n; ++x) {
        Wide term = coefficient;
        for (int i = 0; i < x; ++i) term *= static_cast<unsigned>(u);
        for (int i = x; i < n; ++i) term *= v;
        sum += term;
        coefficient = coefficient * static_cast<unsigned>(n - x) / static_cast<unsigned>(x + 1);
        ASSERT_EQ(cdf_bin(x, n, std::ldexp(u, -m)), std::ldexp(static_cast<double>(sum), -n * m))
            << x << ' ' << n << ' ' << u << " / 2^" << m;
    }
}

TEST(BinomialCdf, IsCorrectlyRoundedAtOneHalf) {
    for (int n = 1; n <= 62; ++n) expect_exact(n, 1, 1);
}

TEST(BinomialCdf, IsCorrectlyRoundedAtFourthsEighthsAndSixteenths) {
    for (int m : {2, 3, 4})
        for (int u = 1; u < 1 << m; u += 2)
            for (int n = 1; n <= std::min(62, 127 / m); ++n) expect_exact(n, u, m);
}

TEST(BinomialCdf, IsCorrectlyRoundedWhereTheExactSumHasUpTo512Bits) {
    for (const Row& row : read_table("distributions/dyadic_binomial.csv"))
        EXPECT_EQ(cdf_bin(row[0], row[1], row[2]), row[3]) << "line " << row.line;
}

TEST(BinomialQuantile, BracketsTheProbabilityAsItsDistributionFunctionDoes) {
    long status = 0;
    for (int n = 1; n <= 62; ++n)
        for (double p : {0.5, 0.25, 0.3})
            for (int x = 0; x < n; ++x) {
                // (Far out the next values round to the same double: then the largest k counts.)
                const double tie = cdf_bin(x, n, p), below = std::nextafter(tie, 0);
                const double at_tie = OrvDistFun::IdfBin(tie, n, p, status);
                EXPECT_EQ(cdf_bin(at_tie, n, p), tie) << x << ' ' << n << ' ' << p;
                EXPECT_LT(OrvDistFun::IdfBin(below, n, p, status), x) << x << ' ' << n << ' ' << p;
            }
    EXPECT_EQ(status, 0);
}

TEST(BinomialQuantile, IsDecidedByAllDigitsHoweverNearAProbabilityIsToATie) {
    long status = 0;
    for (double n : {80.0, 400.0, 5000.0, 1e6})
        for (double p : {0.03, 0.3, 0.5, 0.97})
            for (double z : {-4.0, -1.0, 0.0, 0.7, 3.0}) {
                const double x = std::floor(n * p + z * std::sqrt(n * p * (1 - p)));
                if (x < 0) continue;
                const double tie = cdf_bin(x, n, p);
                const double nearest = std::min(tie - cdf_bin(x - 1, n, p), cdf_bin(x + 1, n, p) - tie);
                for (double distance : {1e-11, 1e-9, 1e-7, 1e-5, 9e-5, 1.1e-4, 1e-3}) {
                    if (distance * tie > nearest / 2) continue;
                    EXPECT_EQ(OrvDistFun::IdfBin(tie * (1 + distance), n, p, status), x)
                        << n << ' ' << p << ' ' << z << ' ' << distance;
                    EXPECT_EQ(OrvDistFun::IdfBin(tie * (1 - distance), n, p, status), x - 1)
                        << n << ' ' << p << ' ' << z << ' ' << distance;
                }
            }
    EXPECT_EQ(status, 0);
}

TEST(FQuantile, OfManyDegreesOfFreedomHasANormalLogarithm) {
    const double many[] = {1e9, 1e13, 1e15, 1e18, 3e20, 1e24, 1.7e31, 8.5e29, 1e36, 1e47, 1e59};
    for (double df1 : many)
        for (double df2 : many)
            for (double p : {1e-23, 0.011, 0.3, 0.9999, 0.99999998}) {
                const double z = OrvDistFun::IdfStdNorm(p), sd = std::sqrt(2 / df1 + 2 / df2);
                EXPECT_NEAR(OrvDistFun::IdfF(p, df1, df2), 1 + z * sd, 1e-15 + 4 * (1 + z * z) * sd * sd)
                    << p << ' ' << df1 << ' ' << df2;
            }
}

TEST(BetaQuantile, OfParametersBeyondAllUseIsTheMean) {
    for (double p : {0.01, 0.3, 0.9})
        for (double a : {1e40, 1e59, 1e61, 1e120, 1e250}) {
            EXPECT_NEAR(OrvDistFun::IdfBeta(p, a, 3 * a), 0.25, 1e-15) << p << ' ' << a;
            EXPECT_NEAR(OrvDistFun::IdfBeta(p, 3 * a, a), 0.75, 1e-15) << p << ' ' << a;
        }
}

TEST(FQuantile, OfOneNumeratorDegreeOfFreedomIsTheSquareOfATQuantile) {
    for (double df : {1.0, 2.5, 7.0, 60.0, 1e5})
        for (double p : {0.2, 0.5, 0.9, 0.99}) {
            const double t = OrvDistFun::IdfT((1 + p) / 2, df, 1e-40, 1e-30);
            EXPECT_NEAR(OrvDistFun::IdfF(p, 1, df) / (t * t), 1, 1e-14) << df << ' ' << p;
        }
}

}  // namespace
