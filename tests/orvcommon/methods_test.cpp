// The methods behind the operations, branch by branch, against each other and against the standard library.
#include <gtest/gtest.h>

#include <cmath>

#include "orvcommon/beta.h"
#include "orvcommon/noncentral.h"
#include "orvcommon/normal_gamma.h"
#include "orvcommon/quantiles.h"
#include "orvcommon/saddlepoint.h"

using namespace orvmath;

namespace {

TEST(StirlingError, AgreesWithTheLogGammaFunctionInEveryRow) {
    for (double x = 0.5; x < 40; x *= 1.003) {
        const long double wide = x;
        const long double exact =
            std::lgamma(wide + 1) - (wide + 0.5L) * std::log(wide) + wide - 0.918938533204672741780L;
        EXPECT_NEAR(stirling_error(x), static_cast<double>(exact), 6e-17) << x;
    }
    EXPECT_NEAR(stirling_error(1e8), 1 / 12e8, 1e-25);
}

TEST(GammaFactor, IsTheGammaFunctionBelowAndAboveOneHalf) {
    for (double x : {1e-300, 1e-20, 0.01, 0.3, 0.499, 0.5, 0.7, 3.0, 12.0}) {
        const GammaFactor factor = gamma_factor(x);
        const long double wide = x, log = factor.log + wide * (std::log(wide) - 1);
        const long double gamma = std::sqrt(2 * M_PI * factor.square) * std::exp(log);
        EXPECT_NEAR(static_cast<double>(gamma / std::tgamma(wide + 1)), 1, 2e-15) << x;
    }
}

TEST(GammaHalfRatio, AgreesWithTheLogGammaFunction) {
    for (double z : {0.1, 0.5, 1.0, 3.7, 11.9, 12.0, 12.1, 50.0, 1000.0}) {
        const long double wide = z;
        EXPECT_NEAR(
            gamma_half_ratio(z) / static_cast<double>(std::exp(std::lgamma(wide + 0.5L) - std::lgamma(wide))),
            1, 2e-15)
            << z;
    }
    EXPECT_EQ(gamma_half_ratio(1e60), std::sqrt(1e60));
}

TEST(PoissonWeight, IsTheElementaryOneForWholeNumbers) {
    for (double m : {1e-3, 0.5, 3.0, 40.0}) {
        double weight = std::exp(-m);
        for (int j = 0; j < 30; ++j) {
            // (the exponent is rounded)
            EXPECT_NEAR(poisson_weight(j, m) / weight, 1, 5e-15 + 3e-16 * -std::log(weight)) << j << ' ' << m;
            weight *= m / (j + 1);
        }
    }
}

TEST(Log1pDeficit, HasNoStepBetweenItsBranches) {
    for (double u : {0.05, 0.45, -0.05, -0.45}) {
        const double inside = log1p_deficit(u * (1 - 1e-15)), outside = log1p_deficit(u * (1 + 1e-15));
        EXPECT_NEAR(inside / outside, 1, 1e-14) << u;
        const long double wide = u;
        EXPECT_NEAR(inside / static_cast<double>(wide - std::log1p(wide)), 1, 1e-14) << u;
    }
}

TEST(TwoProductAndTwoSum, AreExact) {
    for (double a : {M_PI, 1e-80, 3e95, 1.0 / 3})
        for (double b : {M_E, 1e60, 7e-30, 1.0 / 3}) {
            EXPECT_EQ(two_product(a, b).low, std::fma(a, b, -a * b)) << a << ' ' << b;
            const TwoDoubles s = two_sum(a, b);
            EXPECT_EQ(static_cast<double>(static_cast<long double>(s.high) - s.high), 0);
            EXPECT_EQ(s.high, a + b);
        }
    EXPECT_EQ(two_sum(1, 0x1p-60).low, 0x1p-60);
}

/// The contour does not care about sizes: at moderate parameters it has to agree with the series and the
/// fraction.
TEST(Saddlepoint, AgreesWithTheSeriesAndTheFractionOfTheBetaDistribution) {
    for (double a : {20.0, 300.0, 4000.0})
        for (double b : {25.0, 400.0, 1e4})
            for (double f : {0.2, 0.6, 0.95, 1.0, 1.05, 1.5, 4.0}) {
                const BetaPoint p = BetaPoint::at_ratio(two_product(a, f), a, b);
                const Tails contour = saddlepoint_tails({a, b, 0, p.x / p.y, -p.deviation / p.y});
                const Tails tails = beta_tails(p);
                EXPECT_NEAR(contour.lower, tails.lower, 1e-14) << a << ' ' << b << ' ' << f;
                EXPECT_NEAR(contour.upper, tails.upper, 1e-14) << a << ' ' << b << ' ' << f;
            }
}

TEST(Saddlepoint, AgreesWithTheSumsOfTheNoncentralFDistribution) {
    for (double df1 : {1.0, 4.0, 50.0})
        for (double df2 : {1.0, 3.0, 40.0, 2000.0})
            for (double h : {60.0, 140.0})
                for (double ratio : {0.5, 0.9, 1.0, 1.1, 2.0}) {
                    const double f = ratio * (1 + 2 * h / df1), a = df1 / 2, b = df2 / 2;
                    const Tails contour = saddlepoint_tails({a, b, h, a * f / b, a + h - a * f});
                    EXPECT_NEAR(contour.lower, noncentral_f(f, df1, df2, 2 * h).lower, 1e-13)
                        << df1 << ' ' << df2 << ' ' << h << ' ' << ratio;
                }
}

TEST(Saddlepoint, IsZeroAndOneFarOut) {
    EXPECT_EQ(saddlepoint_tails({1e8, 1e8, 0, 0.5, 5e7}).lower, 0);
    EXPECT_EQ(saddlepoint_tails({1e8, 1e8, 0, 2, -1e8}).upper, 0);
}

TEST(BetaTails, AddUpToOneAndMirror) {
    for (double a : {1e-90, 0.01, 0.4, 2.0, 70.0, 5e4, 3e6})
        for (double b : {1e-90, 0.02, 0.45, 3.0, 50.0, 2e5, 1e7})
            for (double x : {1e-6, 0.02, 0.3, 0.5, 0.7, 0.97}) {
                const Tails tails = beta_cdf(x, a, b);
                EXPECT_NEAR(tails.lower + tails.upper, 1, 1e-15);
                EXPECT_NEAR(tails.lower, beta_tails(BetaPoint::at(x, a, b).mirrored()).upper, 1e-14)
                    << a << ' ' << b << ' ' << x;
            }
}

TEST(BetaTails, AreElementaryWhereAParameterIsOne) {
    for (double x : {1e-9, 0.1, 0.5, 0.9}) {
        EXPECT_NEAR(beta_cdf(x, 1, 7.5).lower / -std::expm1(7.5 * std::log1p(-x)), 1, 1e-14) << x;
        EXPECT_NEAR(beta_cdf(x, 7.5, 1).lower / std::pow(x, 7.5), 1, 1e-14) << x;
        EXPECT_NEAR(beta_cdf(x, 0.3, 1).lower / std::pow(x, 0.3), 1, 1e-14) << x;
    }
}

TEST(NoncentralF, OfASmallNoncentralityIsTheCentralOneAndAFirstCorrection) {
    // With h = noncentrality / 2, P = (1 - h) I_x(a, b) + h I_x(a + 1, b) but for h^2.
    for (double noncentrality : {1e-300, 1e-40, 1e-20, 1e-17, 3e-17, 1e-12, 1e-9, 1e-7})
        for (double a : {0.5, 3.0, 50.0, 900.0, 2e4})
            for (double b : {0.5, 2.0, 30.0, 2000.0})
                for (double f : {0.1, 0.3, 0.6, 0.8, 0.93, 1.0, 1.2, 3.0}) {
                    const BetaPoint p = BetaPoint::at_ratio(two_product(a, f), a, b);
                    BetaPoint next = p;
                    next.a += 1;
                    next.deviation -= p.y;
                    const double h = noncentrality / 2, central = beta_tails(p).lower;
                    if (central < 1e-30) continue;
                    const double expected = central - h * (central - beta_tails(next).lower);
                    EXPECT_NEAR(noncentral_f(f, 2 * a, 2 * b, noncentrality).lower / expected, 1, 1e-12)
                        << noncentrality << ' ' << a << ' ' << b << ' ' << f;
                }
}

TEST(NoncentralT, OfASmallNoncentralityIsNearlyCentral) {
    for (double delta : {0.0, 1e-300, 1e-170, 1e-30, 1e-17})
        for (double df : {0.5, 3.0, 400.0, 1e9})
            for (double t : {1e-3, 0.4, 2.0, 30.0}) {
                const double central =
                    0.5 + 0.5 * beta_tails(BetaPoint::at_ratio({t * t / 2, 0}, 0.5, df / 2)).lower;
                EXPECT_NEAR(noncentral_t(t, df, delta).lower, central, 1e-15)
                    << delta << ' ' << df << ' ' << t;
                EXPECT_NEAR(noncentral_t(-t, df, delta).lower, 1 - central, 1e-15)
                    << delta << ' ' << df << ' ' << t;
            }
}

TEST(NoncentralT, NearZeroGrowsByItsDensityThere) {
    // P(0 < T <= t) = t times the density at 0, phi(delta) Gamma((df + 1)/2) / Gamma(df/2) / sqrt(df/2), for small t.
    for (double delta : {4.0, 5.0, 8.0, 10.5})
        for (double df : {1.0, 30.0, 1e5})
            for (double t : {1e-13, 1e-9, 1e-7}) {
                const double density =
                    kInvSqrt2Pi * std::exp(-delta * delta / 2) * gamma_half_ratio(df / 2) / std::sqrt(df / 2);
                // (to first order in t: the next is t delta times as large)
                const double growth = noncentral_t(t, df, delta).lower - normal_cdf(-delta);
                EXPECT_NEAR(growth / normal_cdf(-delta), t * density / normal_cdf(-delta),
                            t * delta * t * delta * 10 + 1e-14)
                    << t << ' ' << df << ' ' << delta;
            }
}

TEST(NoncentralF, FarBelowItsModeIsTheFirstTermOfTheMixture) {
    // P(F <= x) -> e^(-h) P(central F <= x) for x -> 0; with df1 = 2 the latter is 1 - (1 + 2 x / df2)^(-df2
    // / 2).
    for (double x : {1e-12, 1e-15, 1e-30, 1e-190, 1e-250})
        EXPECT_NEAR(noncentral_f(x, 2, 8, 60).lower / (std::exp(-30) * x), 1, 5e-11) << x;
}

TEST(NoncentralF, ContinuesAsAPowerBeyondTheRangeOfRatios) {
    // P(F > x) falls as x^(-df2 / 2), P(F <= x) as x^(df1 / 2).
    const double b = 0.005, a = 0.01;
    EXPECT_NEAR(noncentral_f(1e260, 3, 2 * b, 5).upper / noncentral_f(1e180, 3, 2 * b, 5).upper,
                std::pow(1e-80, b), 1e-13);
    EXPECT_NEAR(noncentral_f(1e-260, 2 * a, 4, 5).lower / noncentral_f(1e-180, 2 * a, 4, 5).lower,
                std::pow(1e-80, a), 1e-13);
}

TEST(NoncentralT, ContinuesAsAPowerBeyondTheRangeOfT) {
    EXPECT_NEAR(noncentral_t(1e140, 0.05, 2).upper / noncentral_t(1e90, 0.05, 2).upper, std::pow(1e-50, 0.05),
                1e-13);
    EXPECT_EQ(noncentral_t(1e-110, 4, 1).lower, normal_cdf(-1));
}

TEST(NoncentralF, AboveTheLargestMeansIsAsOneGammaVariable) {
    // With the noncentrality growing, F over its mean tends to the inverse of a chi-square variable over
    // df2.
    for (double noncentrality : {1e29, 1e31, 1e200, 1e308}) {
        const double f = 1.5 * (noncentrality / 2);
        EXPECT_NEAR(noncentral_f(f, 2, 2, noncentrality).lower, std::exp(-1 / 1.5), 1e-14) << noncentrality;
    }
}

TEST(TQuantile, IsElementaryForOneAndTwoDegreesOfFreedom) {
    for (double p : {1e-200, 1e-9, 0.01, 0.3, 0.45}) {
        EXPECT_NEAR(t_quantile(p, 1) * std::tan(M_PI * p), -1, 1e-14) << p;
        const double exact = (2 * p - 1) / std::sqrt(2 * p * (1 - p));
        EXPECT_NEAR(t_quantile(p, 2) / exact, 1, 2e-14) << p;
    }
}

TEST(BetaQuantile, InvertsPowerFunctionsFromAnyStart) {
    for (double p : {1e-300, 1e-30, 1e-3, 0.4, 0.9})
        for (double a : {0.02, 0.3, 4.0, 500.0}) {
            const double exact = std::pow(p, 1 / a);
            if (exact < 1e-290) continue;
            EXPECT_NEAR(beta_quantile(p, a, 1) / exact, 1, 1e-13 * (1 + 1 / a)) << p << ' ' << a;
        }
}

TEST(FQuantile, IsInfiniteOrZeroWhereADoubleCannotHoldIt) {
    EXPECT_EQ(f_quantile(0.999, 3, 1e-3), std::numeric_limits<double>::infinity());
    EXPECT_EQ(f_quantile(0.001, 1e-3, 3), 0);
}

}  // namespace
