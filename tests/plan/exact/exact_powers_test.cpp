// Exact tests of proportions: the textbook's definitions table by table, and the functions of the C interface where
// these are the textbook's tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "designs.h"
#include "orvcommon/dist_fun.h"
#include "plan/exact_binomial.h"
#include "plan/exact_two_proportions.h"
#include "statpower/independent_binomial.h"
#include "statpower/one_sample_binomial.h"
#include "statpower/related_binomial.h"

using namespace statplan;
using namespace testing_support;
using OrvMath_940::OrvDistFun;
using enum TwoProportions::Statistic;

namespace {

double binomial(int x, int n, double p) {
    return std::exp(std::lgamma(n + 1) - std::lgamma(x + 1) - std::lgamma(n - x + 1)) * std::pow(p, x) *
           std::pow(1 - p, n - x);
}

/// One-sided p-value of a table in favour of p1 > p2, as textbooks define it.
double p_value(const TwoProportions& test, int x1, int n1, int x2, int n2) {
    const double q1 = double(x1) / n1, q2 = double(x2) / n2, N = n1 + n2, q = (x1 + x2) / N, d = q1 - q2;
    if (test.statistic == fisher) {
        double tail = 0, all = 0;
        for (int u = std::max(0, x1 + x2 - n2); u <= std::min(n1, x1 + x2); ++u) {
            const double weight = binomial(u, n1, 0.5) * binomial(x1 + x2 - u, n2, 0.5);
            all += weight;
            if (u >= x1) tail += weight;
        }
        return tail / all;
    }
    if (test.statistic == likelihood_ratio) {
        const auto term = [](double x, double expected) { return x > 0 ? x * std::log(x / expected) : 0; };
        const double G2 = 2 * (term(x1, n1 * q) + term(n1 - x1, n1 * (1 - q)) + term(x2, n2 * q) +
                               term(n2 - x2, n2 * (1 - q)));
        return 1 - OrvDistFun::CdfStdNorm(std::copysign(std::sqrt(std::max(G2, 0.0)), d));
    }
    const double c = test.continuity ? (1.0 / n1 + 1.0 / n2) / 2 : 0;
    if (test.statistic == t) {
        const double S2 = (n1 * q1 * (1 - q1) + n2 * q2 * (1 - q2)) / (N - 2) * (1.0 / n1 + 1.0 / n2);
        if (S2 == 0) return d > 0 ? 0 : 1;
        return OrvDistFun::NonCentralCdfT(-d / std::sqrt(S2), N - 2, 0, 1e-12);
    }
    const double S2 =
        test.pooled ? q * (1 - q) * (1.0 / n1 + 1.0 / n2) : q1 * (1 - q1) / n1 + q2 * (1 - q2) / n2;
    if (S2 < 1e-30) return d - c > 0 ? 0 : 1;
    return OrvDistFun::CdfStdNorm(-(d - c) / std::sqrt(S2));
}

double brute_force(const TwoProportions& test, int n1, int n2, double p1, double p2) {
    const double tail = (test.tails == Tails::both ? test.alpha / 2 : test.alpha) * (1 + 1e-11);
    double power = 0;
    for (int x1 = 0; x1 <= n1; ++x1)
        for (int x2 = 0; x2 <= n2; ++x2) {
            const bool first = p_value(test, x1, n1, x2, n2) <= tail;
            const bool second = p_value(test, n1 - x1, n1, n2 - x2, n2) <= tail;
            if ((first && test.tails != Tails::small) || (second && test.tails != Tails::large))
                power += binomial(x1, n1, p1) * binomial(x2, n2, p2);
        }
    return power;
}

class ExactTwoProportions : public testing::TestWithParam<TwoProportions::Statistic> {};

TEST_P(ExactTwoProportions, CountsTheTablesThatRejectByTheTextbookTest) {
    Random random(10 + GetParam());
    for (int i = 0; i < 400; ++i) {
        TwoGroups design(random, GetParam());
        if (design.test.alpha > 0.3) continue;  // a one-sided critical value on the other side of 0
        if (random.chance(0.2)) design.test.alpha = 0.1;
        const int n1 = random.whole(2, 14), n2 = random.whole(2, 14);
        const double by_tables = brute_force(design.test, n1, n2, design.p1, design.p2);
        EXPECT_NEAR(design.test.power(n1, n2, design.p1, design.p2), by_tables, 1e-12)
            << design << " " << n1 << " " << n2;
    }
}

TEST_P(ExactTwoProportions, AgreesWithTheCInterfaceWhereThatIsTheTextbookTest) {
    Random random(20 + GetParam());
    int compared = 0;
    for (int i = 0; i < 1000; ++i) {
        const TwoGroups design(random, GetParam());
        const TwoProportions& test = design.test;
        const bool sided = test.tails != Tails::both;
        const bool differs = (GetParam() == chi_square && (!test.pooled || (sided && test.continuity))) ||
                             (GetParam() == likelihood_ratio && sided);
        if (differs) continue;
        const double n1 = random.whole(2, 300), n2 = random.whole(2, 300);
        const double theirs = PowerIndSampBinom(n1, n2, design.p1, design.p2, test.alpha, 1, GetParam(),
                                                sided, test.continuity, true, nullptr);
        EXPECT_NEAR(test.power(n1, n2, design.p1, design.p2), theirs, 1e-11)
            << design << " " << n1 << " " << n2;
        ++compared;
    }
    EXPECT_GT(compared, 400);
}

/// The level against the largest of 10 001 evenly spaced proportions.
TEST_P(ExactTwoProportions, HasTheLargestProbabilityOfATypeOneErrorAsItsLevel) {
    Random random(30 + GetParam());
    for (int i = 0; i < 12; ++i) {
        const TwoGroups design(random, GetParam());
        const double n1 = random.whole(2, 40), n2 = random.whole(2, 40);
        double largest = 0;
        constexpr int kPoints = 10000;
        for (int k = 0; k <= kPoints; ++k) {
            const double p = k / double(kPoints);
            largest = std::max(largest, design.test.power(n1, n2, p, p));
        }
        const double level = design.test.level(n1, n2, nullptr);
        EXPECT_GE(level, largest - 1e-13) << design;
        EXPECT_NEAR(level, largest, 1e-6) << design;
        if (GetParam() == fisher) {
            EXPECT_LE(level, design.test.alpha * (1 + 1e-10)) << design;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Tests, ExactTwoProportions,
                         testing::Values(chi_square, TwoProportions::t, likelihood_ratio, fisher));

TEST(ExactTwoProportionsOneSided, DoesNotRejectOnTheOtherSide) {
    // At p1 = p2 far more tables point the other way than alpha allows; the C interface rejects them.
    const TwoProportions test{likelihood_ratio, true, false, Tails::large, 0.025};
    EXPECT_LT(test.power(30, 30, 0.2, 0.9), 1e-9);
    EXPECT_GT(test.power(30, 30, 0.9, 0.2), 0.999);
}

TEST(ExactTwoProportionsOneSided, RejectsLessWithAContinuityCorrection) {
    const TwoProportions plain{chi_square, true, false, Tails::large, 0.025},
        corrected{chi_square, true, true, Tails::large, 0.025};
    EXPECT_LT(corrected.power(30, 40, 0.6, 0.3), plain.power(30, 40, 0.6, 0.3));
    EXPECT_LT(corrected.level(30, 40, nullptr), 0.025);
}

TEST(FishersExactTest, RejectsWhereThePValueIsExactlyAlpha) {
    // 3 of 3 against 0 of 3: 1 of the 20 equally probable ways to choose 3 of 6.
    const TwoProportions test{fisher, true, false, Tails::large, 0.05};
    EXPECT_NEAR(test.power(3, 3, 0.9, 0.2), std::pow(0.9, 3) * std::pow(0.8, 3), 1e-15);
}

// ---- One proportion and pairs ----------------------------------------------------------------------------

TEST(ExactOneProportion, AgreesWithTheCInterface) {
    Random random(40);
    for (int i = 0; i < 3000; ++i) {
        const double p0 = random.proportion(), p = random.proportion(), alpha = random.alpha();
        const int n = random.whole(1, 500);
        const bool sided = random.chance(0.5);
        const Tails tails = !sided ? Tails::both : p > p0 ? Tails::large : Tails::small;
        EXPECT_NEAR(BinomialTest(p0, alpha, tails).power(n, p),
                    PowerOneSampBinom(n, p, p0, alpha, 1, sided, false, nullptr), 1e-12);
    }
}

TEST(ExactOneProportion, RejectsWhereThePValueIsExactlyAlpha) {
    // One trial: a success has probability 0.05, whichever way that is rounded.
    EXPECT_NEAR(BinomialTest(0.05, 0.05, Tails::large).power(1, 0.7), 0.7, 1e-15);
    EXPECT_NEAR(BinomialTest(0.95, 0.05, Tails::small).power(1, 0.7), 0.3, 1e-15);
    EXPECT_NEAR(BinomialTest(0.5, 0.0625, Tails::both).level(5), 0.0625, 1e-15);
}

TEST(ExactOneProportion, LiesBetweenBoundsThatNeverFall) {
    Random random(50);
    for (int i = 0; i < 200; ++i) {
        const double p0 = random.proportion(), p = random.proportion();
        const Tails tails = random.chance(0.5) ? Tails::both : p > p0 ? Tails::large : Tails::small;
        const BinomialTest test(p0, random.alpha(), tails);
        auto before = test.bounds(1, p);
        for (int n = 2; n < 300; ++n) {
            const auto now = test.bounds(n, p);
            EXPECT_LE(now.least, now.power + 1e-13);
            EXPECT_GE(now.most + now.other, now.power - 1e-13);
            EXPECT_GE(now.least, before.least - 1e-13);
            EXPECT_GE(now.most, before.most - 1e-13);
            EXPECT_LE(now.other, before.other + 1e-13);
            before = now;
        }
    }
}

TEST(ExactPairs, AgreeWithTheCInterface) {
    Random random(60);
    for (int i = 0; i < 1000; ++i) {
        const double discordant = random.between(0.02, 1), p10 = discordant * random.proportion();
        const double p01 = discordant - p10, alpha = random.alpha();
        const int n = random.whole(2, 300);
        const bool sided = random.chance(0.5);
        const Tails tails = !sided ? Tails::both : p10 > p01 ? Tails::large : Tails::small;
        EXPECT_NEAR(PairedTest(p10, p01, alpha, tails).power(n),
                    PowerbyPRelSampBionm(sided, 1, nullptr, n, p10, p01, alpha), 1e-12)
            << p10 << " " << p01 << " " << alpha << " " << n;
    }
}

TEST(ExactPairs, RejectInBothTailsWhereThePValueIsExactlyAlpha) {
    // 5 discordant pairs of 5: none and all of one kind have probability 1/32 each under the null hypothesis.
    EXPECT_NEAR(PairedTest(0.75, 0.25, 0.0625, Tails::both).power(5), std::pow(0.75, 5) + std::pow(0.25, 5),
                1e-15);
}

TEST(ExactPairs, HaveTheLargestProbabilityOfATypeOneErrorAsTheirLevel) {
    Random random(70);
    for (int i = 0; i < 12; ++i) {
        const double alpha = random.alpha();
        const Tails tails = random.chance(0.5) ? Tails::both : Tails::large;
        const int n = random.whole(2, 60);
        double largest = 0;
        for (int k = 1; k <= 4000; ++k) {
            const double kind = k / 8000.0;
            largest = std::max(largest, PairedTest(kind, kind, alpha, tails).power(n));
        }
        const double level = PairedTest(0.2, 0.1, alpha, tails).level(n, nullptr);
        EXPECT_GE(level, largest - 1e-13);
        EXPECT_NEAR(level, largest, 1e-6);
        EXPECT_LE(level, alpha * (1 + 1e-11));
    }
}

}  // namespace
