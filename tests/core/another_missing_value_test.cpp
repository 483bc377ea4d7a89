// The library with another missing value than the replacement's: a fraction, which a ceiling would change, and NaN, which is
// not equal to itself. This program defines it and so takes the place of the common library.
#include "orvcommon/mv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "statpower/anova.h"
#include "statpower/independent_binomial.h"
#include "statpower/means.h"
#include "statpower/related_binomial.h"

namespace {

double missing = -7.25;

}  // namespace

double OrvCommon_940::OrvMV::Missing() noexcept {
    return missing;
}

bool OrvCommon_940::OrvMV::IsMissing(double value) noexcept {
    return std::isnan(missing) ? std::isnan(value) : value == missing;
}

namespace {

class AnotherMissingValue : public testing::TestWithParam<double> {
  protected:
    AnotherMissingValue() { missing = GetParam(); }

    static void expect_missing(const std::vector<double>& sizes) {
        ASSERT_EQ(sizes.size(), 2U);
        for (double size : sizes) EXPECT_TRUE(OrvCommon_940::OrvMV::IsMissing(size)) << size;
    }
};

TEST_P(AnotherMissingValue, IsAppendedAsItIsWhenASearchFails) {
    std::vector<double> sizes;
    PowerReverseIndependentNondirectional(0.8, 1, 3, 1, 3, 1, 0.05, sizes);
    expect_missing(sizes);
    sizes.clear();
    PowerReverseIndependentDirectionalES(0.8, 1, 0, 0.05, sizes);
    expect_missing(sizes);
    sizes.clear();
    PowerReverseIndSampBinom(0.8, 0.3, 0.3, 1, 0.05, sizes, 0, 0, 0, false, false, nullptr);
    expect_missing(sizes);
    sizes.clear();
    PowerReversebyHalfCIIndSampBinom(-0.1, 0.3, 0.4, 1, 0.05, sizes, 1, false, nullptr);
    expect_missing(sizes);
}

TEST_P(AnotherMissingValue, IsRecognisedAsAProbabilityThatCannotBeComputed) {
    // An infinite noncentrality: the upper tail counts as 1, the lower one as 0.
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(PowerOneSampleNondirectionalES(20, infinity, 0.05), 1);
    EXPECT_EQ(PowerIndependentDirectionalES(20, 20, infinity, 0.05), 1);
    EXPECT_EQ(PowerOverallTestwES(3, 0, std::vector<double>{10, 10, 10}.data(), infinity, 0.05), 1);
}

TEST_P(AnotherMissingValue, EndsTheRefinementOfAnExactSearch) {
    double n = 50;
    const POWER_NAMESPACE::Objective never = [](double, std::vector<double>, OrvCommon_940::OrvQueryCancel*) {
        return -1.0;
    };
    OptimizeRtbBionm(&n, {0.8}, never, nullptr);
    EXPECT_EQ(n, 50);
}

INSTANTIATE_TEST_SUITE_P(Fraction, AnotherMissingValue, testing::Values(-7.25));
INSTANTIATE_TEST_SUITE_P(NaN, AnotherMissingValue, testing::Values(std::numeric_limits<double>::quiet_NaN()));

}  // namespace
