// What the tests of a contrast ask of the distribution library. The distribution operations are stand-ins here.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "statpower/anova.h"
#include "support/distribution_stand_in.h"

using testing::ElementsAre;
using testing_support::Arguments;
using testing_support::distribution_calls;

namespace {

const double kMeans[] = {0, 1, 3};
const double kSizes[] = {10, 10, 20};

class ContrastCalls : public testing::Test {
  protected:
    void SetUp() override {
        distribution_calls = {};
        distribution_calls.f_quantile = [](const Arguments&) { return 2.5; };
        distribution_calls.t_quantile = [](const Arguments&) { return 2.0; };
        distribution_calls.f_cdf = [](const Arguments& f) { return f[2] + 3 < 150.3 ? 0.5 : 0.1; };
        distribution_calls.t_cdf = [](const Arguments&) { return 0.25; };
    }

    double coefficients[3] = {1, 0, -1};
    std::vector<double> sizes;
};

// psi = -3, sigma = 2, W = 40, Q = 1/10 + 1/20 = 0.15: lambda = 2.25 / 0.15 = 15 at N = 40.
constexpr double kLambda = 2.25 / (1.0 / 10 + 1.0 / 20);

TEST_F(ContrastCalls, TheTwoSidedPowerIsAnFTestWithOneDegreeOfFreedom) {
    EXPECT_EQ(PowerSC(3, kMeans, kSizes, coefficients, 0, 2, 0.05), 0.5);
    EXPECT_THAT(distribution_calls.idf_f, ElementsAre(ElementsAre(0.95, 1, 37)));
    EXPECT_THAT(distribution_calls.noncentral_f, ElementsAre(ElementsAre(2.5, 1, 37, kLambda, 1e-12)));
}

TEST_F(ContrastCalls, TheOneSidedPowerIsATTestInTheDirectionOfTheContrast) {
    EXPECT_EQ(PowerSC(3, kMeans, kSizes, coefficients, 1, 2, 0.05), 0.75);
    EXPECT_THAT(distribution_calls.idf_t, ElementsAre(ElementsAre(0.95, 37, 1e-40, 1e-30)));
    EXPECT_THAT(distribution_calls.noncentral_t,
                ElementsAre(ElementsAre(2.0, 37, std::sqrt(kLambda), 1e-12)));
}

TEST_F(ContrastCalls, TheHalfWidthUsesTheQuantileWithItsAccuracySettings) {
    // sqrt(W Q / N) t sigma.
    EXPECT_DOUBLE_EQ(HalfCISCTest(3, kSizes, coefficients, 60, 10, 0.05), std::sqrt(40 * 0.15 / 60) * 2 * 10);
    EXPECT_THAT(distribution_calls.idf_t, ElementsAre(ElementsAre(0.975, 57, 1e-40, 1e-30)));
}

TEST_F(ContrastCalls, SearchesStartAtTwoInEachGroupAndFourHundredMore) {
    // A target below alpha tells nothing about where to look, so that the search looks everywhere.
    constexpr double kTargetBelowAlpha = 1e-6;
    distribution_calls.f_cdf = [](const Arguments& f) { return f[2] + 3 < 150.3 ? 1 : 0.1; };
    for (bool by_effect : {false, true}) {
        distribution_calls.noncentral_f.clear();
        if (by_effect)
            PowerReverseSCwES(3, kSizes, coefficients, &sizes, 0, 0.5, kTargetBelowAlpha, 0.05);
        else
            PowerReverseSC(3, kMeans, kSizes, coefficients, &sizes, 0, 2, kTargetBelowAlpha, 0.05);
        EXPECT_EQ(distribution_calls.noncentral_f.at(0)[2] + 3, 406);
        EXPECT_EQ(distribution_calls.noncentral_f.at(1)[2] + 3, 6);
        EXPECT_EQ(distribution_calls.noncentral_f.size(), 2u + 29u);  // 400 / 2^29 is the first below 1e-6
    }
    // t = 2, sigma = 1: N h^2 / W = t^2 Q at N = 4 Q W / h^2, here 150.3.
    PowerReversebyHalfCISCTest(3, kSizes, coefficients, &sizes, std::sqrt(4 * 0.15 * 40 / 150.3), 1, 0.05);
    EXPECT_EQ(distribution_calls.idf_t.at(0)[1] + 3, 406);
    EXPECT_EQ(distribution_calls.idf_t.at(1)[1] + 3, 6);
    EXPECT_EQ(distribution_calls.idf_t.size(), 2u + 39u);  // 400 / 2^39 is the first below 1e-9
}

}  // namespace
