// What the overall F test asks of the distribution library: arguments, tolerances, and the totals that the
// searches look at. The distribution operations are stand-ins here.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "anova/anova.h"
#include "orvcommon/mv.h"
#include "statpower/anova.h"
#include "support/distribution_stand_in.h"

using OrvCommon_940::OrvMV;
using testing::ElementsAre;
using testing_support::Arguments;
using testing_support::distribution_calls;

namespace {

const double kMeans[] = {0, 0, 3};
const double kSizes[] = {10, 10, 20};

class OverallFCalls : public testing::Test {
  protected:
    void SetUp() override {
        distribution_calls = {};
        distribution_calls.f_quantile = [](const Arguments&) { return 2.5; };
        distribution_calls.t_quantile = [](const Arguments&) { return 2.0; };
        distribution_calls.f_cdf = [](const Arguments&) { return 0.25; };
    }

    // The first two totals of a search with three groups, from the error degrees of freedom of its calls.
    static std::vector<double> first_totals(const std::vector<Arguments>& calls, std::size_t df) {
        return {calls.at(0)[df] + 3, calls.at(1)[df] + 3};
    }
};

TEST_F(OverallFCalls, ThePowerIsOneQuantileAndOneNoncentralProbability) {
    // N = 40: proportions 1/4, 1/4, 1/2, grand mean 1.5, weighted squares 2.25, lambda = 2.25 * 40 / 4.
    EXPECT_EQ(PowerOverallTest(3, kMeans, kSizes, 2, 0.05), 0.75);
    EXPECT_THAT(distribution_calls.idf_f, ElementsAre(ElementsAre(0.95, 2, 37)));
    EXPECT_THAT(distribution_calls.noncentral_f, ElementsAre(ElementsAre(2.5, 2, 37, 22.5, 1e-12)));
}

TEST_F(OverallFCalls, ThePowerOfAnEffectSizeUsesItsNoncentrality) {
    PowerOverallTestwES(3, 0, kSizes, 0.5, 0.05);
    PowerOverallTestwES(3, 1, kSizes, 0.2, 0.05);
    EXPECT_EQ(distribution_calls.noncentral_f[0], (Arguments{2.5, 2, 37, 10, 1e-12}));
    EXPECT_EQ(distribution_calls.noncentral_f[1], (Arguments{2.5, 2, 37, 40 * 0.2 / (1 - 0.2), 1e-12}));
}

TEST_F(OverallFCalls, AMissingProbabilityIsAPowerOfOne) {
    distribution_calls.f_cdf = [](const Arguments&) { return OrvMV::Missing(); };
    EXPECT_EQ(PowerOverallTest(3, kMeans, kSizes, 2, 0.05), 1);
    EXPECT_EQ(PowerOverallTestwES(3, 0, kSizes, 0.5, 0.05), 1);
}

TEST_F(OverallFCalls, TheHalfWidthUsesTheQuantileWithItsAccuracySettings) {
    EXPECT_EQ(HalfCIOverallTest(3, 16, 10, 0.05), 2.0 * 10 / 4);
    EXPECT_THAT(distribution_calls.idf_t, ElementsAre(ElementsAre(0.975, 13, 1e-40, 1e-30)));
}

// A target below alpha tells nothing about where to look, so that the search looks everywhere. The power crosses
// it at a total of 150.3, so that 2k + 400 stays the upper end.
constexpr double kTargetBelowAlpha = 1e-6;
double crossing(const Arguments& f) {
    return f[2] + 3 < 150.3 ? 1 : 0.1;
}

TEST_F(OverallFCalls, ThePowerSearchStartsAtTwoInEachGroupAndFourHundredMoreAndEndsBelowOneMillionth) {
    distribution_calls.f_cdf = crossing;
    std::vector<double> sizes;
    for (bool by_effect : {false, true}) {
        distribution_calls.noncentral_f.clear();
        if (by_effect)
            PowerReverseOverallTestwES(3, 0, kSizes, &sizes, 0.25, kTargetBelowAlpha, 0.05);
        else
            PowerReverseOverallTest(3, kMeans, kSizes, &sizes, 2, kTargetBelowAlpha, 0.05);
        EXPECT_THAT(first_totals(distribution_calls.noncentral_f, 2), ElementsAre(406, 6));
        EXPECT_EQ(distribution_calls.noncentral_f.size(), 2u + 29u);  // 400 / 2^29 is the first below 1e-6
    }
}

TEST_F(OverallFCalls, TheHalfWidthSearchEndsBelowOneBillionth) {
    // t = 2 and sigma = 1: N h^2 = t^2 at N = 4 / h^2, here 150.3.
    std::vector<double> sizes;
    PowerReversebyHalfCIOverallTest(3, kSizes, &sizes, std::sqrt(4 / 150.3), 1, 0.05);
    EXPECT_THAT(first_totals(distribution_calls.idf_t, 1), ElementsAre(406, 6));
    EXPECT_EQ(distribution_calls.idf_t.size(), 2u + 39u);  // 400 / 2^39 is the first below 1e-9
}

}  // namespace
