// The independent-samples t test.
#include "means/two.h"

#include "means/expectations.h"
#include "orvcommon/dist_fun.h"
#include "statpower/means.h"

using namespace POWER_NAMESPACE;
using testing::ElementsAre;

namespace {

using Sizes = std::vector<double>;

/// A valid design of two groups, of which a test breaks one argument.
struct Groups {
    double N1 = 20;
    double mean1 = 5;
    double sd1 = 2;
    double N2 = 30;
    double mean2 = 4;
    double sd2 = 3;
    double alpha = 0.05;

    double two_sided() const { return PowerIndependentNondirectional(N1, mean1, sd1, N2, mean2, sd2, alpha); }
    double one_sided() const { return PowerIndependentDirectional(N1, mean1, sd1, N2, mean2, sd2, alpha); }
};

void expect_refused(const Groups& groups) {
    EXPECT_MISSING(groups.two_sided());
    EXPECT_MISSING(groups.one_sided());
}

/// The searches, with their vector as the result.
struct Search {
    double target = 0.8;
    double ratio = 1;
    double mean1 = 1;
    double sd1 = 1;
    double mean2 = 0;
    double sd2 = 2;
    double alpha = 0.05;
    double half_width = 0.5;

    double es() const { return (mean1 - mean2) / sd1; }
    Sizes two_sided(Sizes sizes = {}) const {
        PowerReverseIndependentNondirectional(target, ratio, mean1, sd1, mean2, sd2, alpha, sizes);
        return sizes;
    }
    Sizes one_sided(Sizes sizes = {}) const {
        PowerReverseIndependentDirectional(target, ratio, mean1, sd1, mean2, sd2, alpha, sizes);
        return sizes;
    }
    Sizes two_sided_es(Sizes sizes = {}) const {
        PowerReverseIndependentNondirectionalES(target, ratio, es(), alpha, sizes);
        return sizes;
    }
    Sizes one_sided_es(Sizes sizes = {}) const {
        PowerReverseIndependentDirectionalES(target, ratio, es(), alpha, sizes);
        return sizes;
    }
    Sizes by_half_width(Sizes sizes = {}) const {
        PowerReversebyHalfCIIndependentMeans(half_width, ratio, sd1, sd2, alpha, sizes);
        return sizes;
    }
};

const auto kBothMissing = ElementsAre(kMissing, kMissing);

// ---- Power -----------------------------------------------------------------------------------------------

TEST(IndependentPower, OfEqualStandardDeviationsAgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("means/two_pooled_power.csv")) {
        const double N1 = row[0], N2 = row[1], es = row[2], alpha = row[3];
        EXPECT_NEAR(PowerIndependentNondirectionalES(N1, N2, es, alpha), row[4], 1e-12) << row.line;
        EXPECT_NEAR(PowerIndependentDirectionalES(N1, N2, es, alpha), row[5], 1e-12) << row.line;
        EXPECT_NEAR(PowerIndependentNondirectional(N1, 4 * es, 4, N2, 0, 4, alpha), row[4], 1e-12)
            << row.line;
        EXPECT_NEAR(PowerIndependentDirectional(N1, 4 * es, 4, N2, 0, 4, alpha), row[5], 1e-12) << row.line;
    }
}

TEST(IndependentPower, OfDifferentStandardDeviationsAgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("means/two_welch_power.csv")) {
        const double N1 = row[0], N2 = row[1], sd1 = row[2], sd2 = row[3], diff = row[4], alpha = row[5];
        EXPECT_NEAR(_PowerIndependentNondirectional(N1 + N2, N2 / N1, diff, sd1, sd2, alpha), row[6], 1e-12)
            << row.line;
        EXPECT_NEAR(_PowerIndependentDirectional(N1 + N2, N2 / N1, diff, sd1, sd2, alpha), row[7], 1e-12)
            << row.line;
        if (sd1 == sd2) continue;
        EXPECT_NEAR(PowerIndependentNondirectional(N1, diff, sd1, N2, 0, sd2, alpha), row[6], 1e-12)
            << row.line;
        EXPECT_NEAR(PowerIndependentDirectional(N1, diff, sd1, N2, 0, sd2, alpha), row[7], 1e-12) << row.line;
    }
}

TEST(IndependentPower, PoolsForEqualStandardDeviationsWhereTheInternalFormKeepsWelch) {
    // 10 and 30 observations: pooled 38 degrees of freedom, Welch's 15.66.
    const double pooled = PowerIndependentNondirectional(10, 1, 1, 30, 0, 1, 0.05);
    EXPECT_EQ(pooled, PowerIndependentNondirectionalES(10, 30, 1, 0.05));
    EXPECT_LT(_PowerIndependentNondirectional(40, 3, 1, 1, 1, 0.05), pooled - 0.01);
    const double pooled_one_sided = PowerIndependentDirectional(10, 1, 1, 30, 0, 1, 0.05);
    EXPECT_EQ(pooled_one_sided, PowerIndependentDirectionalES(10, 30, 1, 0.05));
    EXPECT_LT(_PowerIndependentDirectional(40, 3, 1, 1, 1, 0.05), pooled_one_sided - 0.01);
}

TEST(IndependentPower, OneSidedTakesTheDifferenceWithoutItsSign) {
    for (double sd2 : {2.0, 3.0})
        EXPECT_EQ((Groups{.mean1 = 4, .mean2 = 5, .sd2 = sd2}).one_sided(), (Groups{.sd2 = sd2}).one_sided());
    EXPECT_EQ(PowerIndependentDirectionalES(10, 12, -0.8, 0.05),
              PowerIndependentDirectionalES(10, 12, 0.8, 0.05));
    EXPECT_EQ(_PowerIndependentDirectional(40, 1, -0.8, 1, 2, 0.05),
              _PowerIndependentDirectional(40, 1, 0.8, 1, 2, 0.05));
}

TEST(IndependentPower, TwoSidedIsSymmetricInTheDifference) {
    EXPECT_DOUBLE_EQ((Groups{.mean1 = 4, .mean2 = 5}).two_sided(), Groups().two_sided());
    EXPECT_DOUBLE_EQ(PowerIndependentNondirectionalES(10, 12, -0.8, 0.05),
                     PowerIndependentNondirectionalES(10, 12, 0.8, 0.05));
}

TEST(IndependentPower, DoesNotDependOnTheScaleOfTheData) {
    const Groups g;
    for (double scale : {1e-150, 1e-9, 1e9, 1e150}) {
        const Groups scaled{
            .mean1 = scale * g.mean1, .sd1 = scale * g.sd1, .mean2 = scale * g.mean2, .sd2 = scale * g.sd2};
        EXPECT_NEAR(scaled.two_sided(), g.two_sided(), 1e-14);
        EXPECT_NEAR(scaled.one_sided(), g.one_sided(), 1e-14);
    }
}

TEST(IndependentPower, IsMissingUnlessBothGroupsHaveMoreThanOneObservation) {
    for (double N : {1.0, 0.0, -5.0, kNaN}) {
        expect_refused({.N1 = N});
        expect_refused({.N2 = N});
    }
    EXPECT_PRESENT((Groups{.N1 = kAboveOne, .N2 = kAboveOne}).two_sided());
}

TEST(IndependentPower, IsMissingUnlessBothStandardDeviationsAreAboveZero) {
    for (double sd : {0.0, -1.0, kNaN}) {
        expect_refused({.sd1 = sd});
        expect_refused({.sd2 = sd});
        EXPECT_MISSING(_PowerIndependentNondirectional(40, 1, 1, std::isnan(sd) ? 0 : sd, 1, 0.05));
        EXPECT_MISSING(_PowerIndependentDirectional(40, 1, 1, 1, std::isnan(sd) ? 0 : sd, 0.05));
    }
}

TEST(IndependentPower, IsMissingUnlessAlphaIsBetweenZeroAndOne) {
    for (double alpha : {0.0, -1.0, 1.0, 2.0}) {
        expect_refused({.alpha = alpha});
        EXPECT_MISSING(PowerIndependentNondirectionalES(10, 10, 1, alpha));
        EXPECT_MISSING(PowerIndependentDirectionalES(10, 10, 1, alpha));
        EXPECT_MISSING(_PowerIndependentNondirectional(40, 1, 1, 1, 2, alpha));
        EXPECT_MISSING(_PowerIndependentDirectional(40, 1, 1, 1, 2, alpha));
    }
    expect_refused({.alpha = kNaN});
    EXPECT_MISSING(PowerIndependentDirectionalES(10, 10, 1, kNaN));
}

TEST(IndependentPower, ForAnEffectSizeIsMissingForOneObservationOrLessInAGroup) {
    for (double N : {1.0, 0.5, 0.0, -4.0}) {
        EXPECT_MISSING(PowerIndependentNondirectionalES(N, 10, 1, 0.05));
        EXPECT_MISSING(PowerIndependentNondirectionalES(10, N, 1, 0.05));
        EXPECT_MISSING(PowerIndependentDirectionalES(N, 10, 1, 0.05));
        EXPECT_MISSING(PowerIndependentDirectionalES(10, N, 1, 0.05));
    }
    EXPECT_PRESENT(PowerIndependentNondirectionalES(kAboveOne, kAboveOne, 1, 0.05));
    EXPECT_PRESENT(PowerIndependentDirectionalES(kAboveOne, kAboveOne, 1, 0.05));
}

TEST(IndependentPower, TwoSidedForAnEffectSizeChecksGroup2ByTheRatio) {
    // Just above 1 observation in group 2; back from a ratio that is subnormal it is exactly 1.
    const double N1 = 1.06e308;
    ASSERT_EQ(kAboveOne / N1 * N1, 1);
    EXPECT_MISSING(PowerIndependentNondirectionalES(N1, kAboveOne, 1, 0.05));
    EXPECT_PRESENT(PowerIndependentDirectionalES(N1, kAboveOne, 1, 0.05));
}

TEST(IndependentPower, TwoSidedForAnEffectSizeLetsNaNThroughWhereTheOneSidedDoesNot) {
    EXPECT_EQ(PowerIndependentNondirectionalES(kNaN, 10, 1, 0.05), 1);
    // A missing quantile is far below 0, and both tails are whole.
    EXPECT_EQ(PowerIndependentNondirectionalES(10, 10, 1, kNaN), 2);
    EXPECT_MISSING(PowerIndependentDirectionalES(kNaN, 10, 1, 0.05));
    EXPECT_MISSING(PowerIndependentDirectionalES(10, kNaN, 1, 0.05));
}

TEST(IndependentPower, ByTotalAndRatioSplitsTheTotal) {
    // 10 and 30
    EXPECT_EQ(_PowerIndependentNondirectional(40, 3, 1, 2, 3, 0.05),
              PowerIndependentNondirectional(10, 1, 2, 30, 0, 3, 0.05));
    EXPECT_EQ(_PowerIndependentDirectional(40, 3, 1, 2, 3, 0.05),
              PowerIndependentDirectional(10, 1, 2, 30, 0, 3, 0.05));
}

TEST(IndependentPower, ByTotalAndRatioIsMissingForARatioOfZeroOrLessAndForOneObservationOrLess) {
    for (const auto& [total, ratio] : std::vector<std::pair<double, double>>{
             {40, 0}, {40, -0.5}, {2, 1}, {40, 39}, {40, 1.0 / 39}, {-40, 1}}) {
        EXPECT_MISSING(_PowerIndependentNondirectional(total, ratio, 1, 1, 2, 0.05)) << ratio;
        EXPECT_MISSING(_PowerIndependentDirectional(total, ratio, 1, 1, 2, 0.05)) << ratio;
    }
    EXPECT_PRESENT(_PowerIndependentNondirectional(40, 38.9, 1, 1, 2, 0.05));
    EXPECT_PRESENT(_PowerIndependentDirectional(2.001, 1, 1, 1, 2, 0.05));
}

// ---- Effect size -----------------------------------------------------------------------------------------

TEST(IndependentEffectSize, IsTheDifferenceInStandardDeviations) {
    EXPECT_EQ(EffectSizeIndependent(5, 3, 2), 1);
    EXPECT_EQ(EffectSizeIndependent(5, 3, -2), -1);
}

TEST(IndependentEffectSize, IsMissingForAStandardDeviationOfExactlyZero) {
    EXPECT_MISSING(EffectSizeIndependent(5, 3, 0));
    EXPECT_EQ(EffectSizeIndependent(5, 3, kSmallest), kInfinity);
}

// ---- Sample size -----------------------------------------------------------------------------------------

TEST(IndependentSize, IsTheSmallestByHighPrecisionPowers) {
    for (const auto& row : read_table("means/two_size.csv")) {
        ASSERT_LT(row[9], 0);
        ASSERT_GE(row[10], 0);
        const Search search{.target = row[1],
                            .ratio = row[2],
                            .mean1 = row[5],
                            .sd1 = row[3],
                            .sd2 = row[4],
                            .alpha = row[6]};
        const bool directional = row[0] != 0;
        const auto expected = ElementsAre(row[7], row[8]);
        EXPECT_THAT(directional ? search.one_sided() : search.two_sided(), expected) << row.line;
        if (search.sd1 != search.sd2) continue;
        EXPECT_THAT(directional ? search.one_sided_es() : search.two_sided_es(), expected) << row.line;
    }
}

TEST(IndependentSize, IsRoundedUpForEachGroupUnlikeInTheOtherTests) {
    const Search search{.ratio = 1.3, .sd2 = 1};
    for (const Sizes& sizes : {search.two_sided(), search.one_sided(), search.two_sided_es(),
                               search.one_sided_es(), search.by_half_width()}) {
        ASSERT_EQ(sizes.size(), 2u);
        EXPECT_EQ(sizes[0], std::floor(sizes[0]));
        EXPECT_EQ(sizes[1], std::floor(sizes[1]));
    }
}

TEST(IndependentSize, OfGroup2IsRoundedFromTheSizeThatIsFoundNotFromTheRoundedOne) {
    // A row of the table: the root lies between 249 and 249.5.
    const Search search{.target = 0.9, .ratio = 2, .mean1 = -0.6, .sd1 = 2, .sd2 = 2, .alpha = 0.01};
    EXPECT_THAT(search.two_sided(), ElementsAre(250, 499));
}

TEST(IndependentSize, OfGroup2IsNeverBelowTwo) {
    EXPECT_THAT((Search{.ratio = 0.01, .sd2 = 1, .half_width = 3.77}).by_half_width(), ElementsAre(30, 2));
    EXPECT_THAT((Search{.ratio = 0.3, .sd2 = 1, .half_width = 1e12}).by_half_width(), ElementsAre(2, 2));
}

TEST(IndependentSize, OfMeansIsNotSearchedUnlessTheVectorIsEmpty) {
    EXPECT_THAT(Search().two_sided({7}), ElementsAre(7));
    EXPECT_THAT(Search().one_sided({7}), ElementsAre(7));
    EXPECT_THAT(Search().two_sided({}), testing::SizeIs(2));
}

TEST(IndependentSize, ForAnEffectSizeAndForAHalfWidthIsAppended) {
    const Search search;
    const Sizes es = search.two_sided_es(), directional = search.one_sided_es(),
                width = search.by_half_width();
    EXPECT_THAT(search.two_sided_es({7}), ElementsAre(7, es[0], es[1]));
    EXPECT_THAT(search.one_sided_es({7, 8}), ElementsAre(7, 8, directional[0], directional[1]));
    EXPECT_THAT(search.by_half_width({7}), ElementsAre(7, width[0], width[1]));
}

TEST(IndependentSize, ChecksNoArgument) {
    for (double alpha : {0.0, 1.0, 2.0}) {
        const Search search{.alpha = alpha};
        EXPECT_THAT(search.two_sided(), kBothMissing);
        EXPECT_THAT(search.one_sided(), kBothMissing);
        EXPECT_THAT(search.two_sided_es(), kBothMissing);
        EXPECT_THAT(search.one_sided_es(), kBothMissing);
    }
    EXPECT_THAT((Search{.sd1 = 0}).two_sided(), kBothMissing);
    EXPECT_THAT((Search{.ratio = -1}).one_sided(), kBothMissing);
    EXPECT_THAT((Search{.ratio = 0}).two_sided_es(), kBothMissing);
    EXPECT_THAT((Search{.target = 0.01}).two_sided(), ElementsAre(2, 2));
}

TEST(IndependentSize, OfATargetThatIsNeverReachedIsMissingForBothGroups) {
    for (double ratio : {0.01, 0.5, 1.0, 3.0, 100.0})
        for (double sd2 : {1.0, 2.0}) {
            const Search no_effect{.ratio = ratio, .mean1 = 0, .sd2 = sd2};
            const Search above_one{.target = 1.5, .ratio = ratio, .sd2 = sd2};
            for (const auto& search : {no_effect, above_one}) {
                EXPECT_THAT(search.two_sided(), kBothMissing) << ratio;
                EXPECT_THAT(search.one_sided(), kBothMissing) << ratio;
                EXPECT_THAT(search.two_sided_es(), kBothMissing) << ratio;
                EXPECT_THAT(search.one_sided_es(), kBothMissing) << ratio;
            }
            EXPECT_THAT((Search{.ratio = ratio, .sd2 = sd2, .half_width = 0}).by_half_width(), kBothMissing);
        }
}

TEST(IndependentSize, OfNoEffectIsMissingOnEveryScaleOfTheData) {
    for (double scale : {1e-100, 1e-9, 1e9, 1e100}) {
        const Search search{.mean1 = 0, .sd1 = scale, .sd2 = 2 * scale};
        EXPECT_THAT(search.two_sided(), kBothMissing) << scale;
        EXPECT_THAT(search.one_sided(), kBothMissing) << scale;
    }
}

TEST(IndependentSize, OfASmallRatioStartsFromTooSmall) {
    for (double ratio : {0.01, 0.05, 0.1, 0.3, 0.5})
        for (double sd2 : {1.0, 2.0}) {
            const Search search{.ratio = ratio, .mean1 = 2, .sd2 = sd2, .half_width = 1};
            for (bool directional : {false, true}) {
                const Sizes sizes = directional ? search.one_sided() : search.two_sided();
                const auto power = [&](double N1) {
                    const Groups groups{
                        .N1 = N1, .mean1 = 2, .sd1 = 1, .N2 = ratio * N1, .mean2 = 0, .sd2 = sd2};
                    return directional ? groups.one_sided() : groups.two_sided();
                };
                EXPECT_GE(power(sizes[0]), 0.8) << ratio;
                EXPECT_LT(power(sizes[0] - 1), 0.8) << ratio;
            }
            const Sizes sizes = search.by_half_width();
            EXPECT_LE(HalfCIIndependentMeans(sizes[0], 1, ratio * sizes[0], sd2, 0.05), 1) << ratio;
            if (ratio * (sizes[0] - 1) > 1) {
                EXPECT_GT(HalfCIIndependentMeans(sizes[0] - 1, 1, ratio * (sizes[0] - 1), sd2, 0.05), 1)
                    << ratio;
            }
        }
}

TEST(IndependentSize, ObjectivesReadTheirDesignVectorsInOrder) {
    const double N = 12.5, ratio = 1.5;
    const Groups g{.N1 = N, .mean1 = 5, .sd1 = 2, .N2 = ratio * N, .mean2 = 4, .sd2 = 3, .alpha = 0.1};
    const std::vector<double> means = {0.8, ratio, 5, 2, 4, 3, 0.1}, es = {0.8, ratio, -0.5, 0.1};
    EXPECT_EQ(PowerIndependentNondirectionalFunc(N, means, nullptr), g.two_sided() - 0.8);
    EXPECT_EQ(IndependentDirectionalFunc(N, means, nullptr), g.one_sided() - 0.8);
    EXPECT_EQ(IndependentNondirectionalESFunc(N, es, nullptr),
              PowerIndependentNondirectionalES(N, g.N2, -0.5, 0.1) - 0.8);
    EXPECT_EQ(IndependentDirectionalESFunc(N, es, nullptr),
              PowerIndependentDirectionalES(N, g.N2, 0.5, 0.1) - 0.8);
}

// ---- Half-width ------------------------------------------------------------------------------------------

TEST(IndependentHalfWidth, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("means/two_half_width.csv"))
        EXPECT_NEAR(HalfCIIndependentMeans(row[0], row[1], row[2], row[3], row[4]), row[5], 1e-12 * row[5])
            << row.line;
}

TEST(IndependentHalfWidth, PoolsTheDegreesOfFreedomForEqualStandardDeviations) {
    // Two pairs of observations: 2 degrees of freedom.
    EXPECT_NEAR(HalfCIIndependentMeans(2, 3, 2, 3, 0.05), t_quantile_2(0.975) * 3, 1e-12);
}

TEST(IndependentHalfWidth, UsesWelchsDegreesOfFreedomForDifferentStandardDeviations) {
    // All of the variance in a group of two: 1 degree of freedom. Negligible variance elsewhere.
    EXPECT_NEAR(HalfCIIndependentMeans(2, 3, 50, 0, 0.05), t_quantile_1(0.975) * 3 / std::sqrt(2.0), 1e-11);
    EXPECT_NEAR(HalfCIIndependentMeans(50, 0, 3, 3, 0.05), t_quantile_2(0.975) * 3 / std::sqrt(3.0), 1e-12);
}

TEST(IndependentHalfWidth, TakesNegativeSizesAsTheFormulaDoes) {
    // q1 = -0.1, q2 = 0.8: the variance of the difference is 0.7.
    const double df = 0.7 * 0.7 / (0.1 * 0.1 / -11 + 0.8 * 0.8 / 4);
    EXPECT_NEAR(HalfCIIndependentMeans(-10, 1, 5, 2, 0.05),
                OrvMath_940::OrvDistFun::IdfT(0.975, df, 1e-40, 1e-30) * std::sqrt(0.7), 1e-13);
    // Ratio -2 at N = 10: q1 = 0.9, q2 = -0.05.
    const double df2 = 0.85 * 0.85 / (0.81 / 9 + 0.0025 / -21);
    const double t = OrvMath_940::OrvDistFun::IdfT(0.975, df2, 1e-40, 1e-30);
    EXPECT_NEAR(_SampleSizebyHalfWidthCIIndependentFunc(10, {0.5, -2, 3, 1, 0.05}, nullptr),
                0.25 * 10 - t * t * (1 / -2.0 + 9), 1e-12);
}

TEST(IndependentHalfWidth, ChecksNothing) {
    EXPECT_EQ(HalfCIIndependentMeans(10, 0, 10, 0, 0.05), 0);
    EXPECT_EQ(HalfCIIndependentMeans(10, 1, 12, 2, 1), 0);
    EXPECT_LT(HalfCIIndependentMeans(10, 1, 12, 2, 1.5), 0);
    EXPECT_LT(HalfCIIndependentMeans(1, 1, 1, 1, 0.05), 0);  // the quantile is missing
}

TEST(IndependentHalfWidth, SizeIsTheSmallestByHighPrecisionHalfWidths) {
    for (const auto& row : read_table("means/two_half_width_size.csv")) {
        ASSERT_GT(row[7], row[0]);
        ASSERT_LE(row[8], row[0]);
        const Search search{
            .ratio = row[1], .sd1 = row[2], .sd2 = row[3], .alpha = row[4], .half_width = row[0]};
        EXPECT_THAT(search.by_half_width(), ElementsAre(row[5], row[6])) << row.line;
    }
}

TEST(IndependentHalfWidth, ObjectiveDividesByTheVarianceOnlyForEqualStandardDeviations) {
    const double t = t_quantile_2(0.975);
    EXPECT_NEAR(_SampleSizebyHalfWidthCIIndependentFunc(2, {0.5, 1, 3, 3, 0.05}, nullptr),
                0.25 / 9 * 2 - t * t * 2, 1e-11);
    // Group 1 without variance, 1.5 * 2 = 3 observations in group 2: 2 degrees of freedom.
    EXPECT_NEAR(_SampleSizebyHalfWidthCIIndependentFunc(2, {0.5, 1.5, 0, 3, 0.05}, nullptr),
                0.25 * 2 - t * t * 9 / 1.5, 1e-11);
}

TEST(IndependentHalfWidth, WhereWelchsDegreesOfFreedomCannotBeComputedTheObjectiveIsTooSmall) {
    // One observation in group 2.
    EXPECT_LT(_SampleSizebyHalfWidthCIIndependentFunc(2, {0.5, 0.5, 1, 2, 0.05}, nullptr), -1e70);
}

}  // namespace
