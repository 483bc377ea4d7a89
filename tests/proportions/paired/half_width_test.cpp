// Confidence intervals of the difference of paired proportions.
#include "proportions/paired/half_width.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "statpower/related_binomial.h"
#include "support/record.h"
#include "support/table.h"

using OrvCommon_940::OrvMV;
using testing_support::CountingCancel;
using testing_support::read_table;

namespace {

TEST(PairedInterval, HalfWidthsAreThoseToFortyDigits) {
    for (const auto& row : read_table("proportions/paired_half_width.csv"))
        EXPECT_NEAR(HalfCIRelSampBinom(static_cast<int>(row[4]), row[5] != 0, row[0], row[1], row[2], row[3]),
                    row[6], 1e-14)
            << "line " << row.line;
}

TEST(PairedInterval, TheCorrectionAddsOneOverNToTheWaldMethodOnly) {
    EXPECT_EQ(HalfCIRelSampBinom(0, true, 64, 0.3, 0.1, 0.05),
              HalfCIRelSampBinom(0, false, 64, 0.3, 0.1, 0.05) + 1.0 / 64);
    for (int method : {1, 2})
        EXPECT_EQ(HalfCIRelSampBinom(method, true, 64, 0.3, 0.1, 0.05),
                  HalfCIRelSampBinom(method, false, 64, 0.3, 0.1, 0.05));
}

TEST(PairedInterval, AMethodOutsideTheTableHasHalfWidthZero) {
    for (int method : {-1, 3, std::numeric_limits<int>::max()})
        for (bool correction : {false, true})
            EXPECT_EQ(HalfCIRelSampBinom(method, correction, 64, 0.3, 0.1, 0.05), 0);
}

TEST(PairedInterval, SampleSizesAreThoseToFortyDigitsRoundedUp) {
    for (const auto& row : read_table("proportions/paired_half_width_size.csv")) {
        ASSERT_GT(std::ceil(row[6]) - row[6], 1e-6) << "a root so close to a whole number decides nothing";
        EXPECT_EQ(PowerReversebyHalfCIRelSampBinom(static_cast<int>(row[4]), row[5] != 0, nullptr, row[0],
                                                   row[1], row[2], row[3]),
                  std::ceil(row[6]))
            << "line " << row.line;
    }
}

TEST(PairedInterval, TheWaldSampleSizeAsksNothingAndTheOthersDo) {
    for (int method : {0, 1, 2}) {
        CountingCancel cancel(1);
        const double N = PowerReversebyHalfCIRelSampBinom(method, false, &cancel, 0.1, 0.25, 0.125, 0.05);
        EXPECT_EQ(cancel.queries, method == 0 ? 0 : 1);
        EXPECT_EQ(OrvMV::IsMissing(N), method != 0);
    }
}

TEST(PairedInterval, TheWaldSampleSizeMayLieBelowTheSearchedOnes) {
    // No discordant pairs: the closed form is 0, a search starts at 1.
    EXPECT_EQ(PowerReversebyHalfCIRelSampBinom(0, false, nullptr, 0.5, 0, 0, 0.05), 0);
    EXPECT_GE(PowerReversebyHalfCIRelSampBinom(1, false, nullptr, 0.5, 0, 0, 0.05), 1);
}

TEST(PairedInterval, AMethodOutsideTheTableGivesTheUpperEndOfTheFirstInterval) {
    for (int method : {-1, 3})
        EXPECT_EQ(PowerReversebyHalfCIRelSampBinom(method, false, nullptr, 0.1, 0.25, 0.125, 0.05), 400);
}

TEST(PairedInterval, AHalfWidthThatIsNeverReachedIsMissing) {
    for (int method : {1, 2})
        EXPECT_TRUE(
            OrvMV::IsMissing(PowerReversebyHalfCIRelSampBinom(method, false, nullptr, -0.1, 0.3, 0.1, 0.05)));
}

TEST(PairedInterval, TheObjectiveIsTheTargetMinusTheHalfWidthForTheSearchedMethods) {
    for (int method : {1, 2})
        for (double correction : {0.0, 1.0})
            EXPECT_EQ(POWER_NAMESPACE::_SampleSizebyHalfCIRelSampBinom(
                          64, {0.07, 0.3, 0.1, method + 0.5, 0.05, correction}, nullptr),
                      0.07 - HalfCIRelSampBinom(method, correction != 0, 64, 0.3, 0.1, 0.05));
    for (double method : {-1.0, 0.0, 3.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(
            POWER_NAMESPACE::_SampleSizebyHalfCIRelSampBinom(64, {0.07, 0.3, 0.1, method, 0.05, 0}, nullptr),
            0);
}

}  // namespace
