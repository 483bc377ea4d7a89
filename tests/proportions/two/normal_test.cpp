// Two independent proportions: powers by normal approximation.
#include "proportions/two/normal.h"

#include <gtest/gtest.h>

#include <cmath>

#include "orvcommon/dist_fun.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using OrvMath_940::OrvDistFun;
using testing_support::kNaN;

namespace {

struct Design {
    double n1 = 30;
    double n2 = 40;
    double p1 = 0.3;
    double p2 = 0.6;
    double alpha = 0.05;
    int sides = 0;

    double chi_square(bool correction = false, bool pooled = false) const {
        return _PowerIndSamBinNormalApproxChisq(n1, n2, p1, p2, sides, alpha, correction, pooled);
    }
    double t(bool pooled = false) const {
        return _PowerIndSamBinNormalApproxT(n1, n2, p1, p2, sides, alpha, pooled);
    }
    double likelihood_ratio() const { return _PowerIndSamBinNormalApproxLRT(n1, n2, p1, p2, sides, alpha); }
    double fisher() const { return _PowerIndSamBinNormalApproxFisher(n1, n2, p1, p2, sides, alpha); }
};

TEST(TwoProportionsNormal, EveryTestRefusesArgumentsOutOfTheirRanges) {
    const auto expect_refused = [](double Design::*argument, double bad) {
        Design d;
        d.*argument = bad;
        EXPECT_EQ(d.chi_square(), -1) << bad;
        EXPECT_EQ(d.t(), -1) << bad;
        EXPECT_EQ(d.likelihood_ratio(), -1) << bad;
        EXPECT_EQ(d.fisher(), -1) << bad;
    };
    for (double Design::*argument : {&Design::p1, &Design::p2, &Design::alpha})
        for (double bad : {0.0, 1.0, -0.1, 1.1, kNaN}) expect_refused(argument, bad);
    for (double Design::*argument : {&Design::n1, &Design::n2})
        for (double bad : {0.99, 1 - 3e-12, 0.0, -5.0, kNaN}) expect_refused(argument, bad);
}

TEST(TwoProportionsNormal, AGroupSizeAHairBelowOneCountsAsOne) {
    const Design d{0.9999999999995, 40, 0.6, 0.3};
    EXPECT_GE(d.chi_square(), 0);
    EXPECT_GE(d.t(), 0);
    EXPECT_GE(d.likelihood_ratio(), 0);
    EXPECT_GE(d.fisher(), 0);
}

TEST(TwoProportionsNormal, ChiSquareAtEqualProportionsHasItsLevelAndLessWithTheCorrection) {
    const Design d{30, 40, 0.4, 0.4};
    EXPECT_NEAR(d.chi_square(), 0.05, 1e-14);
    EXPECT_LT(d.chi_square(true), 0.04);
}

TEST(TwoProportionsNormal, TwoSidedPowersAreSummedFromTheLeft) {
    const double z = OrvDistFun::IdfStdNorm(0.975);
    const double a = OrvDistFun::CdfStdNorm(-z);
    const double b = OrvDistFun::CdfStdNorm(z);
    ASSERT_NE(a + 1 - b, a + (1 - b));
    const Design d{30, 30, 0.5, 0.5};
    EXPECT_EQ(d.chi_square(), a + 1 - b);
    EXPECT_EQ(d.likelihood_ratio(), a + 1 - b);
    EXPECT_EQ(d.fisher(), a + 1 - b);
}

TEST(TwoProportionsNormal, OneSidedTestsLookInTheDirectionOfTheDifference) {
    Design falling{30, 40, 0.6, 0.3, 0.05, 1};
    const Design rising{40, 30, 0.3, 0.6, 0.05, 1};
    EXPECT_NEAR(falling.chi_square(true, true), rising.chi_square(true, true), 1e-14);
    EXPECT_NEAR(falling.t(), rising.t(), 1e-14);
    EXPECT_NEAR(falling.likelihood_ratio(), rising.likelihood_ratio(), 1e-14);
    EXPECT_NEAR(falling.fisher(), rising.fisher(), 1e-14);
    const double one_sided = falling.fisher();
    falling.sides = 0;
    EXPECT_GT(one_sided, falling.fisher());
}

TEST(TwoProportionsNormal, TheTTestNeedsMoreThanTwoObservations) {
    EXPECT_EQ((Design{1, 1, 0.3, 0.6}.t()), -1);
    EXPECT_GE((Design{1, 1.0001, 0.3, 0.6}.t()), 0);
}

TEST(TwoProportionsNormal, TheSeparateVariancesOfTheTTestAreThoseOfTheGroupMeans) {
    // With p1 = 0.5 and p2 near 0 almost all variance is in group 1; a large group 1 makes the separate
    // standard error small and the pooled one large.
    const Design d{400, 10, 0.5, 0.01};
    EXPECT_GT(d.t(false), d.t(true));
}

TEST(TwoProportionsNormal, FishersTestIsUsableWhereHalfAnObservationFits) {
    // p1 > p2: from n1 p1 = 0.5 and n2 (1 - p2) = 0.5 on.
    EXPECT_EQ((Design{4.99, 40, 0.1, 0.05}.fisher()), -1);
    EXPECT_GE((Design{5, 40, 0.1, 0.05}.fisher()), 0);
    EXPECT_EQ((Design{40, 4.99, 0.95, 0.9}.fisher()), -1);
    EXPECT_GE((Design{40, 5.01, 0.95, 0.9}.fisher()), 0);
    // p2 > p1: from n1 (1 - p1) = 0.5 and n2 p2 = 0.5 on.
    EXPECT_EQ((Design{4.99, 40, 0.9, 0.95}.fisher()), -1);
    EXPECT_GE((Design{5.01, 40, 0.9, 0.95}.fisher()), 0);
    EXPECT_EQ((Design{40, 4.99, 0.05, 0.1}.fisher()), -1);
    EXPECT_GE((Design{40, 5, 0.05, 0.1}.fisher()), 0);
}

TEST(TwoProportionsNormal, TheOtherCellsOfFishersTestNeedNoRoom) {
    // p1 = 0.02 of 10 is moved inwards: the bounds are 0.5 / 0.98 and 0.5 / 0.5.
    EXPECT_GE((Design{10, 10, 0.02, 0.5}.fisher()), 0);
}

TEST(TwoProportionsNormal, FishersTestIsAlwaysUsableAtEqualProportions) {
    EXPECT_NEAR((Design{2, 2, 0.01, 0.01}.fisher()), 0.05, 1e-14);
    EXPECT_NEAR((Design{2, 2, 0.01, 0.01, 0.05, 1}.fisher()), 0.05, 1e-14);
}

TEST(TwoProportionsNormal, AProportionThatTheSlackLeavesBelowZeroCountsAsZero) {
    // The smallest usable n2 is 0.5 / 0.41, and 0.41 - 0.5 / n2 comes out below 0.
    const double n2 = 0.5 / 0.41;
    ASSERT_LT(0.41 - 0.5 / n2, 0);
    const double h = -2 * std::sqrt(30 * n2 / (30 + n2)) * std::asin(std::sqrt(0.32 + 0.5 / 30));
    const double z = OrvDistFun::IdfStdNorm(0.95);
    EXPECT_DOUBLE_EQ((Design{30, n2, 0.32, 0.41, 0.05, 1}.fisher()), OrvDistFun::CdfStdNorm(h - z));
}

TEST(TwoProportionsNormal, AProportionThatTheSlackLeavesAboveOneCountsAsOne) {
    const double n1 = 0.5 / 0.41 - 5e-13;
    const double p1 = 1 - 0.41;
    ASSERT_GT(p1 + 0.5 / n1, 1);
    EXPECT_GE((Design{n1, 30, p1, 0.9}.fisher()), 0);
}

TEST(TwoProportionsNormal, TheLikelihoodRatioTakesWhatIsMissingAtAnInfiniteSizeAsANumber) {
    // Failures of the distributions are not looked for: 1 - Phi(z - L).
    EXPECT_EQ(_PowerIndSamBinNormalApproxLRT(testing_support::kInfinity, 20, 0.2, 0.5, 1, 0.05),
              1 - testing_support::kMissing);
}

}  // namespace
