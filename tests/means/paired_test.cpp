// The related-samples t test.
#include "means/paired.h"

#include "means/expectations.h"
#include "statpower/means.h"

using namespace POWER_NAMESPACE;

namespace {

/// A valid paired design, of which a test breaks one argument.
struct Pairs {
    double N = 20;
    double mean1 = 5;
    double sd1 = 2;
    double mean2 = 4;
    double sd2 = 3;
    double corr = 0.5;
    double alpha = 0.05;
    double target = 0.8;

    double two_sided() const { return PowerRelatedNondirectional(N, mean1, sd1, mean2, sd2, corr, alpha); }
    double one_sided() const { return PowerRelatedDirectional(N, mean1, sd1, mean2, sd2, corr, alpha); }
    double two_sided_size() const {
        return PowerReverseRelatedNondirectional(target, mean1, sd1, mean2, sd2, corr, alpha);
    }
    double one_sided_size() const {
        return PowerReverseRelatedDirectional(target, mean1, sd1, mean2, sd2, corr, alpha);
    }
    double es() const { return EffectSizeRelated(mean1, sd1, mean2, sd2, corr); }
};

void expect_refused(const Pairs& pairs) {
    EXPECT_MISSING(pairs.two_sided());
    EXPECT_MISSING(pairs.one_sided());
    EXPECT_MISSING(pairs.two_sided_size());
    EXPECT_MISSING(pairs.one_sided_size());
}

void expect_accepted(const Pairs& pairs) {
    EXPECT_PRESENT(pairs.two_sided());
    EXPECT_PRESENT(pairs.one_sided());
    EXPECT_PRESENT(pairs.two_sided_size());
    EXPECT_PRESENT(pairs.one_sided_size());
}

// ---- Power -----------------------------------------------------------------------------------------------

TEST(RelatedPower, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("means/paired_power.csv")) {
        const Pairs pairs{.N = row[0],
                          .mean1 = row[1],
                          .sd1 = row[2],
                          .mean2 = row[3],
                          .sd2 = row[4],
                          .corr = row[5],
                          .alpha = row[6]};
        EXPECT_NEAR(pairs.two_sided(), row[7], 1e-12) << row.line;
        EXPECT_NEAR(pairs.one_sided(), row[8], 1e-12) << row.line;
    }
}

TEST(RelatedPower, ForAnEffectSizeAgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("means/one_power.csv")) {
        EXPECT_NEAR(PowerRelatedNondirectionalES(row[0], row[1], row[2]), row[3], 1e-12) << row.line;
        EXPECT_NEAR(PowerRelatedDirectionalES(row[0], row[1], row[2]), row[4], 1e-12) << row.line;
    }
}

TEST(RelatedPower, OfMeansIsThatOfTheirEffectSize) {
    const Pairs pairs;
    EXPECT_EQ(pairs.two_sided(), PowerRelatedNondirectionalES(20, pairs.es(), 0.05));
    EXPECT_EQ(pairs.one_sided(), PowerRelatedDirectionalES(20, pairs.es(), 0.05));
}

TEST(RelatedPower, OneSidedTakesTheEffectWithoutItsSign) {
    EXPECT_EQ(PowerRelatedDirectionalES(17, -0.5, 0.05), PowerRelatedDirectionalES(17, 0.5, 0.05));
    EXPECT_EQ((Pairs{.mean1 = 4, .mean2 = 5}).one_sided(), Pairs().one_sided());
}

TEST(RelatedPower, ForAnEffectSizeIsMissingUnlessAlphaIsBetweenZeroAndOneUnlikeTheOneSampleTest) {
    for (double alpha : {0.0, -0.1, 1.0, 1.5, kNaN}) {
        EXPECT_MISSING(PowerRelatedNondirectionalES(10, 0.5, alpha));
        EXPECT_MISSING(PowerRelatedDirectionalES(10, 0.5, alpha));
        EXPECT_PRESENT(PowerOneSampleNondirectionalES(10, 0.5, alpha));
    }
    for (double alpha : {kSmallest, kBelowOne}) {
        EXPECT_PRESENT(PowerRelatedNondirectionalES(10, 0.5, alpha));
        EXPECT_PRESENT(PowerRelatedDirectionalES(10, 0.5, alpha));
    }
}

TEST(RelatedPower, ForAnEffectSizeIsMissingUnlessThereIsMoreThanOnePair) {
    for (double N : {1.0, 0.0, -2.0, kNaN}) {
        EXPECT_MISSING(PowerRelatedNondirectionalES(N, 0.5, 0.05));
        EXPECT_MISSING(PowerRelatedDirectionalES(N, 0.5, 0.05));
    }
    EXPECT_PRESENT(PowerRelatedNondirectionalES(kAboveOne, 0.5, 0.05));
    EXPECT_PRESENT(PowerRelatedDirectionalES(kAboveOne, 0.5, 0.05));
}

TEST(RelatedPower, IsMissingForOnePairOrLess) {
    for (double N : {1.0, 0.5, -2.0, kNaN}) {
        EXPECT_MISSING((Pairs{.N = N}).two_sided());
        EXPECT_MISSING((Pairs{.N = N}).one_sided());
    }
}

// ---- Which designs are refused, by the powers and by the searches ----------------------------------------

TEST(RelatedDesign, AZeroCorrelationIsRefused) {
    expect_refused({.corr = 0});
    expect_refused({.corr = -0.0});
    expect_accepted({.corr = 1e-300});
    expect_accepted({.corr = -1e-300});
}

TEST(RelatedDesign, ANaNCorrelationIsNotRefusedAndThePowerCountsAsOne) {
    EXPECT_EQ((Pairs{.corr = kNaN}).two_sided(), 1);
    EXPECT_EQ((Pairs{.corr = kNaN}).one_sided(), 1);
    EXPECT_EQ((Pairs{.corr = kNaN}).two_sided_size(), 2);
}

TEST(RelatedDesign, ACorrelationBelowMinusOneIsRefused) {
    expect_refused({.corr = std::nextafter(-1.0, -2.0)});
    expect_accepted({.corr = -1});
}

TEST(RelatedDesign, ACorrelationAboveOneIsRefused) {
    expect_refused({.corr = kAboveOne});
    expect_accepted({.corr = kBelowOne});
}

TEST(RelatedDesign, APerfectCorrelationIsRefusedByTheOneSidedTestOnly) {
    const Pairs pairs{.mean1 = 5, .sd1 = 2, .mean2 = 4, .sd2 = 1, .corr = 1};
    EXPECT_EQ(pairs.two_sided(), PowerRelatedNondirectionalES(20, 1, 0.05));  // sdd = 1
    EXPECT_PRESENT(pairs.two_sided_size());
    EXPECT_MISSING(pairs.one_sided());
    EXPECT_MISSING(pairs.one_sided_size());
}

TEST(RelatedDesign, APerfectCorrelationOfEqualStandardDeviationsIsRefusedWhateverItsSign) {
    expect_refused({.sd1 = 2, .sd2 = 2, .corr = 1});
    expect_refused({.sd1 = 2, .sd2 = 2, .corr = -1});
    expect_accepted({.sd1 = 2, .sd2 = 2, .corr = kBelowOne});
    expect_accepted({.sd1 = 2, .sd2 = 2, .corr = -kBelowOne});
}

TEST(RelatedDesign, TheFirstStandardDeviationIsAboveZero) {
    expect_refused({.sd1 = 0});
    expect_refused({.sd1 = -1});
    expect_refused({.sd1 = 0, .sd2 = 0});
}

TEST(RelatedDesign, TheSecondStandardDeviationIsNotNegative) {
    expect_refused({.sd2 = -kSmallest});
    expect_accepted({.sd2 = 0});
}

TEST(RelatedDesign, AlphaIsBetweenZeroAndOneForEqualAndForDifferentStandardDeviations) {
    for (double sd2 : {2.0, 3.0})
        for (double alpha : {0.0, -1.0, 1.0, 2.0, kNaN}) expect_refused({.sd2 = sd2, .alpha = alpha});
}

TEST(RelatedDesign, WithoutASecondStandardDeviationTheFirstIsThatOfTheDifferences) {
    for (double corr : {0.5, -0.9, 1e-9}) {
        const Pairs pairs{.sd1 = 4, .sd2 = 0, .corr = corr};
        EXPECT_EQ(pairs.two_sided(), PowerRelatedNondirectionalES(20, 0.25, 0.05));
        EXPECT_EQ(pairs.one_sided(), PowerRelatedDirectionalES(20, 0.25, 0.05));
    }
    expect_refused({.sd2 = 0, .corr = 0});  // the correlation is checked all the same
}

// ---- Effect size -----------------------------------------------------------------------------------------

TEST(RelatedEffectSize, IsTheDifferenceInStandardDeviationsOfTheDifferences) {
    // 4 + 9 - 2 * 0.25 * 2 * 3 = 10; 9 + 25 + 2 * 0.5 * 3 * 5 = 49.
    EXPECT_DOUBLE_EQ(EffectSizeRelated(5, 2, 3, 3, 0.25), 2 / std::sqrt(10.0));
    EXPECT_EQ(EffectSizeRelated(0, 3, 14, 5, -0.5), -2);
}

TEST(RelatedEffectSize, WithoutASecondStandardDeviationUsesTheFirstWithItsSign) {
    EXPECT_EQ(EffectSizeRelated(5, 2, 4, 0, 0.9), 0.5);
    EXPECT_EQ(EffectSizeRelated(5, -2, 4, 0, 0.9), -0.5);
}

TEST(RelatedEffectSize, ChecksNothingAndIsNeverMissing) {
    EXPECT_EQ(EffectSizeRelated(5, 0, 4, 0, 0.5), kInfinity);
    EXPECT_EQ(EffectSizeRelated(4, 2, 5, 2, 1), -kInfinity);
    EXPECT_TRUE(std::isnan(EffectSizeRelated(4, 2, 4, 2, 1)));
    EXPECT_TRUE(std::isnan(EffectSizeRelated(5, 2, 4, 2, 1.5)));
    EXPECT_EQ(EffectSizeRelated(5, 3, 0, 4, 0), 1);
}

// ---- Number of pairs -------------------------------------------------------------------------------------

TEST(RelatedSize, LiesWhereTheHighPrecisionPowerCrossesTheTarget) {
    for (const auto& row : read_table("means/one_size.csv")) {
        const bool directional = row[0] != 0;
        const double N = directional ? PowerReverseRelatedDirectionalES(row[1], row[2], row[3])
                                     : PowerReverseRelatedNondirectionalES(row[1], row[2], row[3]);
        EXPECT_GE(N, row[4]) << row.line;
        EXPECT_LE(N, row[5]) << row.line;
    }
}

TEST(RelatedSize, IsNotRounded) {
    for (double N : {Pairs().two_sided_size(), Pairs().one_sided_size(),
                     PowerReverseRelatedNondirectionalES(0.8, 0.5, 0.05),
                     PowerReverseRelatedDirectionalES(0.8, 0.5, 0.05)})
        EXPECT_NE(N, std::floor(N));
}

TEST(RelatedSize, OfMeansIsThatOfTheirEffectSize) {
    const Pairs pairs{.mean1 = 4, .mean2 = 5};
    EXPECT_EQ(pairs.two_sided_size(), PowerReverseRelatedNondirectionalES(0.8, pairs.es(), 0.05));
    EXPECT_EQ(pairs.one_sided_size(), PowerReverseRelatedDirectionalES(0.8, -pairs.es(), 0.05));
}

TEST(RelatedSize, ForAnEffectSizeChecksNothingAndAMissingPowerIsTooSmall) {
    for (double alpha : {0.0, 1.0, kNaN}) {
        EXPECT_MISSING(PowerReverseRelatedNondirectionalES(0.8, 0.5, alpha));
        EXPECT_MISSING(PowerReverseRelatedDirectionalES(0.8, 0.5, alpha));
    }
}

TEST(RelatedSize, OfATargetThatIsNeverReachedIsMissing) {
    EXPECT_MISSING((Pairs{.mean2 = 5}).two_sided_size());
    EXPECT_MISSING((Pairs{.mean2 = 5}).one_sided_size());
    EXPECT_MISSING((Pairs{.target = 1.5}).two_sided_size());
    EXPECT_MISSING((Pairs{.target = 1.5}).one_sided_size());
}

TEST(RelatedSize, ObjectivesReadTheirDesignVectorsInOrder) {
    EXPECT_EQ(RelatedNondirectionalFunc(12.5, {0.8, -0.4, 0.1}, nullptr),
              PowerRelatedNondirectionalES(12.5, -0.4, 0.1) - 0.8);
    EXPECT_EQ(RelatedDirectionalFunc(12.5, {0.8, -0.4, 0.1}, nullptr),
              PowerRelatedDirectionalES(12.5, 0.4, 0.1) - 0.8);
    EXPECT_EQ(RelatedNondirectionalFunc(12.5, {0.0, -0.4, 0}, nullptr), kMissing);
}

// ---- Half-width ------------------------------------------------------------------------------------------

TEST(RelatedHalfWidth, IsTheQuantileTimesTheStandardErrorOfTheDifference) {
    // 4 + 9 - 2 * 0.25 * 2 * 3 = 10
    EXPECT_NEAR(HalfCIRelatedMeans(3, 2, 3, 0.25, 0.05), t_quantile_2(0.975) * std::sqrt(10.0 / 3), 1e-12);
}

TEST(RelatedHalfWidth, AgreesWithHighPrecisionValuesOfTheDifferences) {
    // sd1 = sd2 = sd and corr = 1/2: the differences have the standard deviation sd.
    for (const auto& row : read_table("means/one_half_width.csv"))
        EXPECT_NEAR(HalfCIRelatedMeans(row[0], row[1], row[1], 0.5, row[2]), row[3], 1e-12 * row[3])
            << row.line;
}

TEST(RelatedHalfWidth, UsesTheFormulaEvenWithoutASecondStandardDeviation) {
    EXPECT_EQ(HalfCIRelatedMeans(10, -2, 0, 0.5, 0.05), HalfCIRelatedMeans(10, 2, 0, 0.5, 0.05));
    EXPECT_GT(HalfCIRelatedMeans(10, -2, 0, 0.5, 0.05), 0);
}

TEST(RelatedHalfWidth, ChecksNothing) {
    EXPECT_PRESENT(HalfCIRelatedMeans(10, 2, 3, 0, 0.05));
    EXPECT_EQ(HalfCIRelatedMeans(10, 2, 2, 1, 0.05), 0);
    EXPECT_TRUE(std::isnan(HalfCIRelatedMeans(10, 2, 2, 1.5, 0.05)));
    EXPECT_EQ(HalfCIRelatedMeans(1, 1, 1, 0.5, 0.05), kMissing);
}

TEST(RelatedHalfWidth, SizeIsTheSmallestWholeNumberByHighPrecisionHalfWidths) {
    for (const auto& row : read_table("means/one_half_width_size.csv"))
        EXPECT_EQ(PowerReversebyHalfCIRelatedMeans(row[0], row[1], row[1], 0.5, row[2]), row[3]) << row.line;
}

TEST(RelatedHalfWidth, SizeAcceptsAZeroCorrelation) {
    EXPECT_EQ(PowerReversebyHalfCIRelatedMeans(5, 3, 4, 0, 0.05),
              PowerReversebyHalfCIOneSampleMeans(5, 5, 0.05));
}

TEST(RelatedHalfWidth, OfZeroIsReachedByNoSize) {
    EXPECT_MISSING(PowerReversebyHalfCIRelatedMeans(0, 1, 2, 0.5, 0.05));
}

TEST(RelatedHalfWidth, ObjectiveIsNegativeWhileTheIntervalIsTooWide) {
    const double t = t_quantile_2(0.975);
    EXPECT_NEAR(_SampleSizebyHalfWidthCIRelatedFunc(3, {0.5, 2, 3, 0.25, 0.05}, nullptr),
                3 * 0.25 / 10 - t * t, 1e-12);
}

}  // namespace
