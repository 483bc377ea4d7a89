// Curves and surfaces of the t tests.
#include <functional>

#include "means/expectations.h"
#include "means/two.h"
#include "statpower/means.h"
#include "support/curves.h"

using namespace POWER_NAMESPACE;

namespace {

void expect_empty(const Curve& curve) {
    EXPECT_TRUE(curve.empty());
}
void expect_empty(const Surface& surface) {
    EXPECT_TRUE(surface.empty());
}

void expect_powers(const Curve& curve, const std::function<double(double)>& power) {
    ASSERT_FALSE(curve.empty());
    for (std::size_t i = 0; i < curve.x.size(); ++i) EXPECT_EQ(curve.y[i], narrowed(power(curve.x[i]))) << i;
}

void expect_powers(const Surface& surface, const std::function<double(double, double)>& power) {
    ASSERT_FALSE(surface.empty());
    for (std::size_t i = 0; i < surface.x.size(); ++i)
        for (std::size_t j = 0; j < surface.y.size(); ++j)
            EXPECT_EQ(surface.at(i, j), narrowed(power(surface.x[i], surface.y[j]))) << i << ", " << j;
}

/// c + 1 points low + i * step, the last exactly high.
std::vector<double> grid(double low, double step, int c, double high) {
    std::vector<double> points;
    for (int i = 0; i < c; ++i) points.push_back(low + i * step);
    points.push_back(high);
    return points;
}

/// The grid whose steps are a fraction of the range, with the count from the range.
std::vector<double> grid(double low, double high, double fraction) {
    const double step = fraction * (high - low);
    return grid(low, step, static_cast<int>(std::ceil((high - low) / step)), high);
}

// ---- The designs of the tests, each with one argument to break -------------------------------------------

struct OverSize {
    int low = 2;
    int high = 10;
    int directional = 0;
    double mean1 = 1;
    double sd1 = 2;
    double mean2 = 0;
    double sd2 = 3;
    double corr = 0.5;
    double es = 0.5;
    double alpha = 0.05;
    double unused = kNaN;

    Curve one_sample() const {
        return PlotNOneSample(low, high, directional, unused, mean1, sd1, mean2, alpha);
    }
    Curve one_sample_es() const { return PlotNOneSampleFES(low, high, directional, es, alpha); }
    Curve related() const {
        return PlotNRelated(low, high, directional, unused, mean1, sd1, mean2, sd2, corr, alpha);
    }
    Curve related_es() const { return PlotNRelatedFES(low, high, directional, es, alpha); }

    std::vector<Curve> all() const { return {one_sample(), one_sample_es(), related(), related_es()}; }
};

struct OverEffect {
    int directional = 0;
    double N = 20;
    double N2 = 30;
    double low = 0;
    double high = 1;
    double alpha = 0.05;
    double fraction = 0.1;

    Curve one_sample() const { return PlotESOneSample(directional, N, low, high, alpha, fraction); }
    Curve related() const { return PlotESRelated(directional, N, low, high, alpha, fraction); }
    Curve independent() const { return PlotESIndepended(directional, N, N2, low, high, alpha, fraction); }

    std::vector<Curve> all() const { return {one_sample(), related(), independent()}; }
};

struct OverSizeAndEffect {
    int size_low = 2;
    int size_high = 10;
    int directional = 0;
    double low = 0;
    double high = 1;
    double alpha = 0.05;
    double fraction = 0.25;

    Surface one_sample() const {
        return PlotNaESOneSample(size_low, size_high, directional, low, high, alpha, fraction);
    }
    Surface related() const {
        return PlotNaESRelated(size_low, size_high, directional, low, high, alpha, fraction);
    }

    std::vector<Surface> all() const { return {one_sample(), related()}; }
};

struct OverRatio {
    int directional = 0;
    double total = 52;
    double mean1 = 1;
    double sd1 = 2;
    double mean2 = 0;
    double sd2 = 3;
    double es = 0.5;
    double low = 0.25;
    double high = 4;
    double es_low = 0;
    double es_high = 1;
    double diff_low = -1;
    double diff_high = 2;
    double alpha = 0.05;
    double fraction = 0.1;

    Curve means() const {
        return PlotRatioIndependent(directional, total, mean1, sd1, mean2, sd2, low, high, alpha, fraction);
    }
    Curve effect() const {
        return PlotRatioIndependentFES(directional, total, es, low, high, alpha, fraction);
    }
    Surface effects() const {
        return PlotRatioaESIndependent(directional, total, low, high, es_low, es_high, alpha, fraction);
    }
    Surface differences() const {
        return PlotRatioaMeanDiffIndependent(directional, total, mean1, sd1, mean2, sd2, low, high, diff_low,
                                             diff_high, alpha, fraction);
    }

    std::vector<std::vector<double>> ratio_axes() const {
        return {means().x, effect().x, effects().x, differences().x};
    }
};

struct OverDifference {
    int directional = 0;
    double N1 = 10;
    double mean1 = 1;
    double sd1 = 2;
    double N2 = 30;
    double mean2 = 0;
    double sd2 = 3;
    double low = -1;
    double high = 2;
    double alpha = 0.05;
    double step = 0.4;

    Curve curve() const {
        return PlotMeanDiffIndepended(directional, N1, mean1, sd1, N2, mean2, sd2, low, high, alpha, step);
    }
};

constexpr double kLevelsRefused[] = {0, -0.1, 1, 1.5};

// ---- Over the sample size --------------------------------------------------------------------------------

TEST(SizeCurves, HaveAPointForEveryWholeNumberOfTheRange) {
    for (const Curve& curve : OverSize().all())
        EXPECT_EQ(curve.x, (std::vector<double>{2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(SizeCurves, HoldTheNarrowedPowersOfTheirTest) {
    const OverSize d{.directional = 0};
    expect_powers(d.one_sample(), [](double N) { return PowerOneSampleNondirectional(N, 1, 2, 0, 0.05); });
    expect_powers(d.one_sample_es(), [](double N) { return PowerOneSampleNondirectionalES(N, 0.5, 0.05); });
    expect_powers(d.related(), [](double N) { return PowerRelatedNondirectional(N, 1, 2, 0, 3, 0.5, 0.05); });
    expect_powers(d.related_es(), [](double N) { return PowerRelatedNondirectionalES(N, 0.5, 0.05); });
}

TEST(SizeCurves, AreOneSidedForAnyFlagThatIsNotZero) {
    for (int directional : {1, -1, 256}) {
        const OverSize d{.directional = directional};
        expect_powers(d.one_sample(), [](double N) { return PowerOneSampleDirectional(N, 1, 2, 0, 0.05); });
        expect_powers(d.one_sample_es(), [](double N) { return PowerOneSampleDirectionalES(N, 0.5, 0.05); });
        expect_powers(d.related(),
                      [](double N) { return PowerRelatedDirectional(N, 1, 2, 0, 3, 0.5, 0.05); });
        expect_powers(d.related_es(), [](double N) { return PowerRelatedDirectionalES(N, 0.5, 0.05); });
    }
}

TEST(SizeCurves, NeverReadTheUnusedArgument) {
    for (double unused : {0.0, -1.0, kInfinity}) {
        EXPECT_EQ((OverSize{.unused = unused}).one_sample().y, OverSize().one_sample().y);
        EXPECT_EQ((OverSize{.unused = unused}).related().y, OverSize().related().y);
    }
}

TEST(SizeCurves, AreEmptyBelowTwoAsThereIsNoDefaultRange) {
    for (int low : {1, 0, -3, std::numeric_limits<int>::min()})
        for (const Curve& curve : (OverSize{.low = low}).all()) expect_empty(curve);
    for (const Curve& curve : (OverSize{.low = 0, .high = 0}).all()) expect_empty(curve);
}

TEST(SizeCurves, AreEmptyUnlessTheRangeAscends) {
    for (int high : {5, 4, 0, std::numeric_limits<int>::min()})
        for (const Curve& curve : (OverSize{.low = 5, .high = high}).all()) expect_empty(curve);
    for (const Curve& curve : (OverSize{.low = 5, .high = 6}).all()) EXPECT_EQ(curve.x.size(), 2u);
}

TEST(SizeCurves, AreEmptyForAlphaOutsideZeroToOne) {
    for (double alpha : kLevelsRefused)
        for (const Curve& curve : (OverSize{.alpha = alpha}).all()) expect_empty(curve);
}

TEST(SizeCurves, OfOneSampleAreEmptyForAStandardDeviationOfZeroOrLess) {
    expect_empty((OverSize{.sd1 = 0}).one_sample());
    expect_empty((OverSize{.sd1 = -1}).one_sample());
}

TEST(SizeCurves, OfPairsAreEmptyForADesignThatIsRefusedAtAnySize) {
    for (const OverSize& d :
         {OverSize{.sd2 = -1}, OverSize{.sd1 = 0}, OverSize{.sd1 = -1}, OverSize{.corr = 0},
          OverSize{.corr = -1.5}, OverSize{.sd2 = 2, .corr = 1}, OverSize{.sd2 = 2, .corr = -1}})
        expect_empty(d.related());
}

TEST(SizeCurves, OfPairsWithACorrelationThatOnlyThePowerRefusesHoldMissingPoints) {
    for (const OverSize& d : {OverSize{.corr = 1.5}, OverSize{.directional = 1, .corr = 1.5},
                              OverSize{.directional = 1, .corr = 1}}) {
        const Curve curve = d.related();
        EXPECT_EQ(curve.x.size(), 9u);
        for (double y : curve.y) EXPECT_MISSING(y);
    }
    for (double y : (OverSize{.corr = 1}).related().y) EXPECT_PRESENT(y);
}

// ---- Over the effect size --------------------------------------------------------------------------------

TEST(EffectCurves, DivideTheRangeIntoFractionsOfItAndEndExactlyAtItsEnd) {
    for (const Curve& curve : OverEffect().all()) {
        EXPECT_EQ(curve.x.size(), 11u);
        EXPECT_EQ(curve.x.back(), 1);
    }
    for (const Curve& curve : (OverEffect{.low = 0.1, .high = 0.7, .fraction = 0.3}).all()) {
        EXPECT_EQ(curve.x, grid(0.1, 0.7, 0.3));  // the last step is shorter
        EXPECT_EQ(curve.x.size(), 5u);
        EXPECT_EQ(curve.x.back(), 0.7);
    }
}

TEST(EffectCurves, CountTheirStepsFromTheRangeWhereTheRatioCountsThemFromTheFraction) {
    // In double precision (0.7 - 0.2) / (0.004 * (0.7 - 0.2)) is just above 250, and 1 / 0.004 is 250.
    for (const Curve& curve : (OverEffect{.low = 0.2, .high = 0.7, .fraction = 0.004}).all())
        EXPECT_EQ(curve.x.size(), 252u);
    const OverRatio ratio{.low = 0.2, .high = 0.7, .es_low = 0.2, .es_high = 0.7, .fraction = 0.004};
    for (const auto& axis : ratio.ratio_axes()) EXPECT_EQ(axis.size(), 251u);
    EXPECT_EQ(ratio.effects().y.size(), 251u);
}

TEST(EffectCurves, HoldTheNarrowedPowersOfTheirTest) {
    const OverEffect two_sided;
    expect_powers(two_sided.one_sample(),
                  [](double es) { return PowerOneSampleNondirectionalES(20, es, 0.05); });
    expect_powers(two_sided.related(), [](double es) { return PowerRelatedNondirectionalES(20, es, 0.05); });
    expect_powers(two_sided.independent(),
                  [](double es) { return PowerIndependentNondirectionalES(20, 30, es, 0.05); });
    const OverEffect one_sided{.directional = 2, .low = -1};
    expect_powers(one_sided.one_sample(),
                  [](double es) { return PowerOneSampleDirectionalES(20, es, 0.05); });
    expect_powers(one_sided.related(), [](double es) { return PowerRelatedDirectionalES(20, es, 0.05); });
    expect_powers(one_sided.independent(),
                  [](double es) { return PowerIndependentDirectionalES(20, 30, es, 0.05); });
}

TEST(EffectCurves, ALowerEndOfMinusFiveIsZeroForTwoSidedCurvesAndStaysForOneSidedOnes) {
    for (const Curve& curve : (OverEffect{.low = -5}).all()) EXPECT_EQ(curve.x, grid(0, 1, 0.1));
    for (const Curve& curve : (OverEffect{.directional = 1, .low = -5}).all())
        EXPECT_EQ(curve.x, grid(-5, 1, 0.1));
    const OverSizeAndEffect sizes{.low = -5};
    for (const Surface& surface : sizes.all()) EXPECT_EQ(surface.x, grid(0, 1, 0.25));
    const OverSizeAndEffect one_sided{.directional = 1, .low = -5};
    for (const Surface& surface : one_sided.all()) EXPECT_EQ(surface.x, grid(-5, 1, 0.25));
    EXPECT_EQ((OverRatio{.es_low = -5}).effects().y.front(), 0);
    EXPECT_EQ((OverRatio{.directional = 1, .es_low = -5}).effects().y.front(), -5);
}

TEST(EffectCurves, ThatAreTwoSidedAreEmptyFromANegativeEffect) {
    for (double low : {-1.0, -kSmallest, std::nextafter(-5.0, 0.0), -6.0}) {
        for (const Curve& curve : (OverEffect{.low = low}).all()) expect_empty(curve);
        for (const Surface& surface : (OverSizeAndEffect{.low = low}).all()) expect_empty(surface);
        expect_empty((OverRatio{.es_low = low}).effects());
    }
    for (const Curve& curve : (OverEffect{.directional = 1, .low = -1}).all()) EXPECT_EQ(curve.x.front(), -1);
}

TEST(EffectCurves, AreEmptyUnlessTheRangeAscends) {
    for (double low : {1.0, 1.5}) {
        for (const Curve& curve : (OverEffect{.low = low}).all()) expect_empty(curve);
        for (const Surface& surface : (OverSizeAndEffect{.low = low}).all()) expect_empty(surface);
        expect_empty((OverRatio{.es_low = low}).effects());
    }
    // The default lower end is put in first.
    for (const Curve& curve : (OverEffect{.low = -5, .high = -1}).all()) expect_empty(curve);
}

TEST(EffectCurves, AreEmptyForOneObservationOrLess) {
    for (double N : {1.0, 0.0, -2.0}) {
        expect_empty((OverEffect{.N = N}).one_sample());
        expect_empty((OverEffect{.N = N}).related());
        expect_empty((OverEffect{.N = N}).independent());
        expect_empty((OverEffect{.N2 = N}).independent());
    }
}

TEST(EffectCurves, AreEmptyForAlphaOutsideZeroToOne) {
    for (double alpha : kLevelsRefused) {
        for (const Curve& curve : (OverEffect{.alpha = alpha}).all()) expect_empty(curve);
        for (const Surface& surface : (OverSizeAndEffect{.alpha = alpha}).all()) expect_empty(surface);
    }
}

TEST(EffectCurves, AreEmptyForAStepThatMakesNoGrid) {
    for (double fraction : {0.0, -0.1, -2.0, kInfinity, kNaN, 1e-300}) {
        for (const Curve& curve : (OverEffect{.fraction = fraction}).all()) expect_empty(curve);
        for (const Surface& surface : (OverSizeAndEffect{.fraction = fraction}).all()) expect_empty(surface);
    }
    for (double high : {kNaN, kInfinity})
        for (const Curve& curve : (OverEffect{.high = high}).all()) expect_empty(curve);
}

TEST(EffectCurves, WithAStepAsWideAsTheRangeHaveItsEndsOnly) {
    for (double fraction : {1.0, 3.0})
        for (const Curve& curve : (OverEffect{.fraction = fraction}).all())
            EXPECT_EQ(curve.x, (std::vector<double>{0, 1}));
}

// ---- Over sample size and effect size --------------------------------------------------------------------

TEST(SizeSurfaces, HaveTheEffectSizeAsXAndTheSampleSizeAsY) {
    for (const Surface& surface : OverSizeAndEffect().all()) {
        EXPECT_EQ(surface.x, (std::vector<double>{0, 0.25, 0.5, 0.75, 1}));
        EXPECT_EQ(surface.y, (std::vector<double>{2, 3, 4, 5, 6, 7, 8, 9, 10}));
    }
}

TEST(SizeSurfaces, HoldTheNarrowedPowersOfTheirTest) {
    const OverSizeAndEffect two_sided;
    expect_powers(two_sided.one_sample(),
                  [](double es, double N) { return PowerOneSampleNondirectionalES(N, es, 0.05); });
    expect_powers(two_sided.related(),
                  [](double es, double N) { return PowerRelatedNondirectionalES(N, es, 0.05); });
    const OverSizeAndEffect one_sided{.directional = 1, .low = -1};
    expect_powers(one_sided.one_sample(),
                  [](double es, double N) { return PowerOneSampleDirectionalES(N, es, 0.05); });
    expect_powers(one_sided.related(),
                  [](double es, double N) { return PowerRelatedDirectionalES(N, es, 0.05); });
}

TEST(SizeSurfaces, StepByTwoFromARangeOfAThousandUpwards) {
    for (const Surface& surface : (OverSizeAndEffect{.size_high = 1001, .fraction = 1}).all()) {
        EXPECT_EQ(surface.y.size(), 1000u);  // 999 steps of 1
        EXPECT_EQ(surface.y[1], 3);
    }
    for (const Surface& surface : (OverSizeAndEffect{.size_high = 1002, .fraction = 1}).all()) {
        EXPECT_EQ(surface.y.size(), 501u);
        EXPECT_EQ(surface.y[1], 4);
        EXPECT_EQ(surface.y.back(), 1002);
    }
}

TEST(SizeSurfaces, MayOvershootTheEndByOneInStepsOfTwo) {
    for (const Surface& surface : (OverSizeAndEffect{.size_high = 1003, .fraction = 1}).all()) {
        EXPECT_EQ(surface.y.size(), 502u);
        EXPECT_EQ(surface.y.back(), 1004);
    }
}

TEST(SizeSurfaces, AreEmptyForARangeThatACurveRefuses) {
    for (const auto& d : {OverSizeAndEffect{.size_low = 1}, OverSizeAndEffect{.size_low = 0},
                          OverSizeAndEffect{.size_low = 10}, OverSizeAndEffect{.size_low = 11},
                          OverSizeAndEffect{.size_low = std::numeric_limits<int>::min(),
                          .size_high = std::numeric_limits<int>::max()}})
        for (const Surface& surface : d.all()) expect_empty(surface);
}

// ---- Over the allocation ratio ---------------------------------------------------------------------------

TEST(RatioCurves, DivideTheRangeIntoFractionsOfItAndEndExactlyAtItsEnd) {
    const OverRatio d{.low = 0.5, .high = 1.1, .fraction = 0.3};
    for (const auto& axis : d.ratio_axes()) {
        EXPECT_EQ(axis, grid(0.5, 0.3 * (1.1 - 0.5), 4, 1.1));
        EXPECT_EQ(axis.back(), 1.1);
    }
}

TEST(RatioCurves, HoldTheNarrowedPowersAtTheSizesThatTheRatioGives) {
    const double total = 52;
    for (int directional : {0, 1}) {
        const auto effect_power =
            directional ? PowerIndependentDirectionalES : PowerIndependentNondirectionalES;
        const auto at_ratio = [=](double ratio, double es) {
            const double N1 = total / (ratio + 1);
            return effect_power(N1, ratio * N1, es, 0.05);
        };
        const OverRatio d{.directional = directional};
        expect_powers(d.effect(), [=](double ratio) { return at_ratio(ratio, 0.5); });
        expect_powers(d.effects(), at_ratio);
    }
}

TEST(RatioCurves, OfMeansPoolForEqualStandardDeviationsAndElseUseWelch) {
    for (int directional : {0, 1}) {
        const OverRatio equal{.directional = directional, .sd2 = 2};
        EXPECT_EQ(equal.means().y, equal.effect().y);
        const auto welch = directional ? _PowerIndependentDirectional : _PowerIndependentNondirectional;
        const OverRatio different{.directional = directional, .mean1 = -1, .mean2 = 1};
        expect_powers(different.means(), [=](double ratio) { return welch(52, ratio, -2, 2, 3, 0.05); });
    }
}

TEST(RatioCurves, OverDifferencesUseWelchEvenForEqualStandardDeviations) {
    for (int directional : {0, 1})
        for (double sd2 : {2.0, 3.0}) {
            const auto welch = directional ? _PowerIndependentDirectional : _PowerIndependentNondirectional;
            expect_powers((OverRatio{.directional = directional, .sd2 = sd2}).differences(),
                          [=](double ratio, double diff) { return welch(52, ratio, diff, 2, sd2, 0.05); });
        }
}

TEST(RatioCurves, AnEndOfZeroLeavesTheRangeOpen) {
    // 0.8 (52 - 2) = 40
    for (const auto& d : {OverRatio{.low = 0}, OverRatio{.high = 0}, OverRatio{.low = -0.0, .high = 0},
                          OverRatio{.low = 0, .high = -7}})
        for (const auto& axis : d.ratio_axes()) {
            ASSERT_EQ(axis.size(), 11u);
            EXPECT_EQ(axis.front(), 1.0 / 40);
            EXPECT_EQ(axis.back(), 40);
        }
}

TEST(RatioCurves, WithoutRoomForTheOpenRangeAreEmpty) {
    for (double total : {2.0, 3.0}) {
        const OverRatio d{.total = total, .low = 0};
        expect_empty(d.means());
        expect_empty(d.effect());
        expect_empty(d.effects());
        expect_empty(d.differences());
    }
}

TEST(RatioCurves, AcceptARangeOfZeroWidthExceptOverEffects) {
    const OverRatio d{.low = 2, .high = 2};
    for (const auto& axis : {d.means().x, d.effect().x, d.differences().x})
        EXPECT_EQ(axis, std::vector<double>(11, 2));
    expect_empty(d.effects());
}

TEST(RatioCurves, AreEmptyForADescendingRange) {
    const OverRatio d{.low = 4, .high = 0.25};
    expect_empty(d.means());
    expect_empty(d.effect());
    expect_empty(d.effects());
    expect_empty(d.differences());
}

TEST(RatioCurves, ButNotTheSurfacesAreEmptyWhereAGroupWouldHaveOneObservationOrLess) {
    for (const auto& d : {OverRatio{.low = 1.0 / 51}, OverRatio{.high = 51}, OverRatio{.high = 60}}) {
        expect_empty(d.means());
        expect_empty(d.effect());
        EXPECT_FALSE(d.effects().empty());
        EXPECT_FALSE(d.differences().empty());
    }
    const OverRatio inside{.low = 1.0 / 50.9, .high = 50.9};
    EXPECT_FALSE(inside.means().empty());
    EXPECT_FALSE(inside.effect().empty());
}

TEST(RatioCurves, AreEmptyForAlphaOutsideZeroToOneAndForATotalOfOneOrLess) {
    for (double alpha : kLevelsRefused) {
        const OverRatio d{.alpha = alpha};
        expect_empty(d.means());
        expect_empty(d.effect());
        expect_empty(d.effects());
        expect_empty(d.differences());
    }
    for (double total : {1.0, 0.0, -4.0}) {
        const OverRatio d{.total = total};
        expect_empty(d.means());
        expect_empty(d.effect());
        expect_empty(d.effects());
        expect_empty(d.differences());
    }
}

TEST(RatioCurves, OfMeansAndOverDifferencesAreEmptyUnlessTheStandardDeviationsAreAboveZeroAndNothingIsNaN) {
    for (const auto& d :
         {OverRatio{.sd1 = 0}, OverRatio{.sd1 = -1}, OverRatio{.sd1 = kNaN}, OverRatio{.sd2 = 0},
          OverRatio{.sd2 = -1}, OverRatio{.sd2 = kNaN}, OverRatio{.total = kNaN}, OverRatio{.low = kNaN},
          OverRatio{.high = kNaN}, OverRatio{.alpha = kNaN}}) {
        expect_empty(d.means());
        expect_empty(d.differences());
    }
}

TEST(RatioCurves, AreEmptyForAStepThatMakesNoGrid) {
    for (double fraction : {0.0, -0.1, -2.0, kInfinity, kNaN, 1e-300}) {
        const OverRatio d{.fraction = fraction};
        expect_empty(d.means());
        expect_empty(d.effect());
        expect_empty(d.effects());
        expect_empty(d.differences());
    }
}

TEST(RatioSurfaces, HaveAsManyEffectsAsRatios) {
    const Surface surface = (OverRatio{.es_low = 0.1, .es_high = 0.7, .fraction = 0.3}).effects();
    EXPECT_EQ(surface.x.size(), 5u);
    EXPECT_EQ(surface.y, grid(0.1, 0.3 * (0.7 - 0.1), 4, 0.7));
}

TEST(RatioSurfaces, HaveDifferencesInStepsTwiceAsWide) {
    const Surface surface = OverRatio().differences();
    EXPECT_EQ(surface.x.size(), 11u);
    EXPECT_EQ(surface.y, grid(-1, 2 * 0.1 * 3, 5, 2));
    // ceil(0.5 / 0.3) = 2 steps of 1.8, the second cut short.
    EXPECT_EQ((OverRatio{.fraction = 0.3}).differences().y, grid(-1, 2 * 0.3 * 3, 2, 2));
}

TEST(RatioSurfaces, InTheFirstRowReplaceAMissingPowerByTheCoordinateBefore) {
    // At the first ratio, 1/100, group 2 has 0.51 observations.
    for (int directional : {0, 1}) {
        const OverRatio d{.directional = directional, .low = 0.01, .es_low = 0.1, .es_high = 0.7};
        const Surface effects = d.effects(), differences = d.differences();
        for (const Surface* surface : {&effects, &differences}) {
            EXPECT_MISSING(surface->at(0, 0));
            for (std::size_t j = 1; j < surface->y.size(); ++j)
                EXPECT_EQ(surface->at(0, j), narrowed(surface->y[j - 1])) << j;
            EXPECT_PRESENT(surface->at(1, 0));
        }
    }
}

TEST(RatioSurfaces, InALaterRowReplaceAMissingPowerByTheOneBefore) {
    // At the last ratio, 60, group 1 has 0.85 observations: the first point is missing, and handed on.
    for (int directional : {0, 1}) {
        const OverRatio d{.directional = directional, .high = 60};
        const Surface effects = d.effects(), differences = d.differences();
        for (const Surface* surface : {&effects, &differences})
            for (std::size_t j = 0; j < surface->y.size(); ++j) EXPECT_MISSING(surface->at(10, j));
    }
}

// ---- Over the mean difference ----------------------------------------------------------------------------

TEST(DifferenceCurve, TakesItsStepInTheUnitsOfTheDataAndEndsExactlyAtItsEnd) {
    EXPECT_EQ(OverDifference().curve().x, grid(-1, 0.4, 8, 2));
    EXPECT_EQ((OverDifference{.step = 100}).curve().x, (std::vector<double>{-1, 2}));
}

TEST(DifferenceCurve, HoldsTheNarrowedPowersOfWelchsTestEvenForEqualStandardDeviations) {
    for (double sd2 : {2.0, 3.0}) {
        expect_powers((OverDifference{.sd2 = sd2}).curve(), [=](double diff) {
            return _PowerIndependentNondirectional(40, 3, diff, 2, sd2, 0.05);
        });
        expect_powers((OverDifference{.directional = 1, .sd2 = sd2}).curve(),
                      [=](double diff) { return _PowerIndependentDirectional(40, 3, diff, 2, sd2, 0.05); });
    }
}

TEST(DifferenceCurve, ARangeThatDoesNotAscendIsFiveDifferencesOfTheMeansToEitherSide) {
    for (double high : {-1.0, -2.0})
        for (double mean2 : {3.0, -1.0}) {
            const Curve curve = (OverDifference{.mean2 = mean2, .high = high}).curve();
            EXPECT_EQ(curve.x.front(), -10);
            EXPECT_EQ(curve.x.back(), 10);
            const Surface surface = (OverRatio{.mean2 = mean2, .diff_high = high}).differences();
            EXPECT_EQ(surface.y.front(), -10);
            EXPECT_EQ(surface.y.back(), 10);
        }
}

TEST(DifferenceCurve, OfEqualMeansThatRangeIsOneHundredToEitherSide) {
    const Curve curve = (OverDifference{.mean2 = 1, .high = -1, .step = 10}).curve();
    EXPECT_EQ(curve.x, grid(-100, 10, 20, 100));
    const Surface surface = (OverRatio{.mean2 = 1, .diff_high = -1}).differences();
    EXPECT_EQ(surface.y.front(), -100);
    EXPECT_EQ(surface.y.back(), 100);
}

TEST(DifferenceCurve, UsesTheMeansForNothingElse) {
    EXPECT_EQ((OverDifference{.mean1 = 7, .mean2 = kNaN}).curve().y, OverDifference().curve().y);
    EXPECT_EQ((OverRatio{.mean1 = 7, .mean2 = kNaN}).differences().z, OverRatio().differences().z);
}

TEST(DifferenceCurve, IsEmptyUnlessEveryArgumentIsInItsRange) {
    for (const auto& d :
         {OverDifference{.N1 = 1}, OverDifference{.N2 = 1}, OverDifference{.sd1 = 0},
          OverDifference{.sd2 = 0}, OverDifference{.alpha = 0}, OverDifference{.alpha = 1},
          OverDifference{.N1 = kNaN}, OverDifference{.N2 = kNaN}, OverDifference{.sd1 = kNaN},
          OverDifference{.sd2 = kNaN}, OverDifference{.alpha = kNaN}, OverDifference{.low = kNaN},
          OverDifference{.high = kNaN}, OverDifference{.mean1 = kNaN, .high = -1}, OverDifference{.step = 0},
          OverDifference{.step = -1}, OverDifference{.step = -1e9}, OverDifference{.step = kInfinity},
          OverDifference{.step = kNaN}})
        expect_empty(d.curve());
    expect_empty((OverRatio{.diff_low = kNaN}).differences());
}

TEST(MeansCurves, ATotalOfOneOrLessHasNoRatios) {
    // With one observation or less even a ratio range that is in order leaves the groups empty.
    for (double total : {1.0, 0.5, 0.0, -3.0, -50.0}) {
        EXPECT_EMPTY(PlotRatioIndependent(0, total, 1, 1, 0, 2, 0.5, 2, 0.05, 0.1)) << total;
        EXPECT_EMPTY(PlotRatioIndependent(0, total, 1, 1, 0, 2, 0, 0, 0.05, 0.1)) << total;
        EXPECT_EMPTY(PlotRatioIndependentFES(0, total, 0.5, 0.5, 2, 0.05, 0.1)) << total;
    }
    // Ratios below 1 / (Ntotal - 1), a negative bound, and not above a negative end.
    EXPECT_EMPTY(PlotRatioIndependent(0, -3, 1, 1, 0, 2, -0.2, -5, 0.05, 0.1));
    // Ratios between 1 / (Ntotal - 1) and Ntotal - 1, which below 1 are negative bounds in order.
    EXPECT_EMPTY(PlotRatioIndependent(0, 0.5, 1, 1, 0, 2, -1.5, -1, 0.05, 0.1));
    EXPECT_EMPTY(PlotRatioIndependentFES(0, 0.5, 0.5, -1.5, -1, 0.05, 0.1));
    EXPECT_EMPTY(PlotRatioaMeanDiffIndependent(0, 0.5, 1, 1, 0, 2, 0.5, 2, -1, 1, 0.05, 0.1));
    EXPECT_EMPTY(PlotRatioaESIndependent(0, 1, 0.5, 2, 0, 1, 0.05, 0.1));
}

TEST(MeansCurves, TheDefaultRangeOfATinyDifferenceIsFiveTimesTheDifference) {
    for (double d : {1e-300, 1e-20, -3e-9, 1e-5}) {
        const auto curve =
            testing_support::take(PlotMeanDiffIndepended(0, 20, d, 1, 20, 0, 2, 0, 0, 0.05, std::abs(d)));
        EXPECT_EQ(curve.x.front(), -5 * std::abs(d));
        EXPECT_EQ(curve.x.back(), 5 * std::abs(d));
    }
    const auto zero = testing_support::take(PlotMeanDiffIndepended(0, 20, 1, 1, 20, 1, 2, 0, 0, 0.05, 10));
    EXPECT_EQ(zero.x.front(), -100);
    EXPECT_EQ(zero.x.back(), 100);
}

}  // namespace
