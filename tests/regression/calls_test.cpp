// What the powers ask of the noncentral F distribution, as a program that stands in for it sees them.
#include <gtest/gtest.h>

#include <vector>

#include "orvcommon/dist_fun.h"
#include "statpower/regression.h"
#include "support/distribution_stand_in.h"

using namespace testing_support;

namespace {

TEST(RegressionCalls, FixedPredictorsHandTheNoncentralityAndTheLibrarysToleranceOn) {
    const double dfe = 40 - 1 - 5, critical = OrvMath_940::OrvDistFun::IdfF(1 - 0.1, 2, dfe);
    distribution_calls = {};
    Powerbymlr(0, true, 40, 5, 2, 0.5, 0.25, 0.1);
    const double e = (0.5 - 0.25) / (1 - 0.25);
    PowerbymlrwES(0, true, 40, 5, 2, 0.25, 0.1);
    EXPECT_EQ(distribution_calls.noncentral_f,
              std::vector<Arguments>({{critical, 2, dfe, 40 * e / (1 - e), POWER_NAMESPACE::tol},
                                      {critical, 2, dfe, 40 * 0.25, POWER_NAMESPACE::tol}}));
}

TEST(RegressionCalls, RandomPredictorsOfOrdinaryDesignsNeedNoNoncentralDistribution) {
    distribution_calls = {};
    for (double N : {10.0, 100.0, 5000.0})
        for (double R : {0.0, 0.2, 0.97}) Powerbymlr(1, true, N, 5, 5, R, 0, 0.05);
    EXPECT_TRUE(distribution_calls.noncentral_f.empty());
}

TEST(RegressionCalls, AnUnreachableSearchWithRandomPredictorsAsksWithinBounds) {
    distribution_calls = {};
    PowerReversebymlrwES(1, true, 1.5, 5, 5, 0.3, 0.05);
    EXPECT_GT(distribution_calls.noncentral_f.size(), 0u);
    EXPECT_LT(distribution_calls.noncentral_f.size(), 200u * 1024);
}

}  // namespace
