// Curves and surfaces of the overall F test.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "anova/anova.h"
#include "anova/one_way.h"
#include "anova/plot_range.h"
#include "statpower/anova.h"
#include "support/curves.h"
#include "support/table.h"

using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using testing::Each;
using testing::ElementsAre;
using namespace testing_support;

namespace {

/// The arguments of all six, valid as they stand; a test changes one.
struct Request {
    int k = 3;
    int es_type = 0;
    std::vector<double> means = {0, 1, 2};
    std::vector<double> sizes = {10, 10, 20};
    int n_min = 10, n_max = 20;
    double sigma = 2;
    double es = 0.25;
    double es_min = 0.1, es_max = 0.6;
    double sd_min = 1, sd_max = 2;
    double alpha = 0.05;
    double step = 0.25;

    XYPlot over_n() { return PlotNOverallTest(k, means.data(), sizes.data(), n_min, n_max, sigma, alpha); }
    XYPlot over_n_es() { return PlotNOverallTestFES(k, es_type, sizes.data(), n_min, n_max, es, alpha); }
    XYPlot over_es() { return PlotESOverallTest(k, es_type, sizes.data(), es_min, es_max, alpha, step); }
    XYPlot over_sd() {
        return PlotSDOverallTest(k, means.data(), sizes.data(), sigma, sd_min, sd_max, alpha, step);
    }
    XYZPlot over_n_and_sd() {
        return PlotNaSDOverallTest(k, means.data(), sizes.data(), n_min, n_max, sigma, sd_min, sd_max, alpha,
                                   step);
    }
    XYZPlot over_n_and_es() {
        return PlotNaESOverallTest(k, es_type, sizes.data(), n_min, n_max, es, es_min, es_max, alpha, step);
    }
    double power_at_n(double N) {
        return _PowerOverallTestwithN(k, means.data(), sigma, sizes.data(), N, alpha);
    }
    double power_at_n_and_sd(double N, double sd) {
        return _PowerOverallTestwithN(k, means.data(), sd, sizes.data(), N, alpha);
    }
};

Request with(std::function<void(Request&)> change) {
    Request request;
    change(request);
    return request;
}

// ---- What is refused -------------------------------------------------------------------------------------

TEST(OverallFCurves, AreEmptyForFewerThanTwoGroups) {
    for (int k : {1, 0, -1, kSmallestInt}) {
        Request r = with([=](Request& q) { q.k = k; });
        EXPECT_EMPTY(r.over_n());
        EXPECT_EMPTY(r.over_n_es());
        EXPECT_EMPTY(r.over_es());
        EXPECT_EMPTY(r.over_sd());
        EXPECT_EMPTY(r.over_n_and_sd());
        EXPECT_EMPTY(r.over_n_and_es());
    }
    Request two = with([](Request& q) { q.k = 2; });
    EXPECT_EQ(take(two.over_n()).x.size(), 11u);
    EXPECT_EQ(take(two.over_n_es()).x.size(), 11u);
    EXPECT_EQ(take(two.over_es()).x.size(), 5u);
    EXPECT_EQ(take(two.over_sd()).x.size(), 5u);
    EXPECT_EQ(take(two.over_n_and_sd()).x.size(), 11u);
    EXPECT_EQ(take(two.over_n_and_es()).x.size(), 11u);
}

TEST(OverallFCurves, AreEmptyUnlessSigmaIsAboveZeroWhereThereIsOne) {
    for (double sigma : {0.0, -1.0, kNaN}) {
        Request r = with([=](Request& q) { q.sigma = sigma; });
        EXPECT_EMPTY(r.over_n());
        EXPECT_EMPTY(r.over_sd());
        EXPECT_EMPTY(r.over_n_and_sd());
        EXPECT_EQ(take(r.over_n_es()).x.size(), 11u);
        EXPECT_EQ(take(r.over_es()).x.size(), 5u);
        EXPECT_EQ(take(r.over_n_and_es()).x.size(), 11u);
    }
    Request smallest = with([](Request& q) { q.sigma = kSmallest; });
    EXPECT_EQ(take(smallest.over_n()).x.size(), 11u);
    EXPECT_EQ(take(smallest.over_sd()).x.size(), 5u);
    EXPECT_EQ(take(smallest.over_n_and_sd()).x.size(), 11u);
}

TEST(OverallFCurves, AreEmptyUnlessAlphaIsAboveZero) {
    for (double alpha : {0.0, -0.5, kNaN}) {
        Request r = with([=](Request& q) { q.alpha = alpha; });
        EXPECT_EMPTY(r.over_n());
        EXPECT_EMPTY(r.over_n_es());
        EXPECT_EMPTY(r.over_es());
        EXPECT_EMPTY(r.over_sd());
        EXPECT_EMPTY(r.over_n_and_sd());
        EXPECT_EMPTY(r.over_n_and_es());
    }
}

TEST(OverallFCurves, AcceptAnyAlphaAboveZero) {
    Request r = with([](Request& q) { q.alpha = 1e-300; });
    EXPECT_FALSE(take(r.over_n()).x.empty());
    EXPECT_FALSE(take(r.over_n_es()).x.empty());
    EXPECT_FALSE(take(r.over_es()).x.empty());
    EXPECT_FALSE(take(r.over_sd()).x.empty());
    EXPECT_FALSE(take(r.over_n_and_sd()).x.empty());
    EXPECT_FALSE(take(r.over_n_and_es()).x.empty());
}

TEST(OverallFCurves, AreEmptyUnlessAlphaIsBelowOne) {
    for (double alpha : {1.0, 2.0, kInfinity}) {
        Request r = with([=](Request& q) { q.alpha = alpha; });
        EXPECT_EMPTY(r.over_n());
        EXPECT_EMPTY(r.over_n_es());
        EXPECT_EMPTY(r.over_es());
        EXPECT_EMPTY(r.over_sd());
    }
    Request r = with([](Request& q) { q.alpha = kBelowOne; });
    EXPECT_EQ(take(r.over_n()).x.size(), 11u);
    EXPECT_EQ(take(r.over_n_es()).x.size(), 11u);
    EXPECT_EQ(take(r.over_es()).x.size(), 5u);
    EXPECT_EQ(take(r.over_sd()).x.size(), 5u);
}

TEST(OverallFSurfaces, DoNotCheckAlphaAgainstOneAndEveryPowerIsThenMissing) {
    for (double alpha : {1.0, 2.0, kInfinity}) {
        Request r = with([=](Request& q) { q.alpha = alpha; });
        for (const Surface& s : {take(r.over_n_and_sd()), take(r.over_n_and_es())}) {
            EXPECT_EQ(s.x.size(), 11u);
            EXPECT_EQ(s.z.size(), 55u);
            EXPECT_THAT(s.z, Each(OrvMV::Missing()));
        }
    }
}

TEST(OverallFSurfaces, WithSuchAnAlphaHaveNoDefaultSampleSizes) {
    Request r = with([](Request& q) { q.alpha = 1, q.n_min = q.n_max = 0; });
    EXPECT_EMPTY(r.over_n_and_sd());
    EXPECT_EMPTY(r.over_n_and_es());
}

TEST(OverallFCurves, AreEmptyUnlessTheSampleSizesAreInOrderAndEachAtLeastTwoOrExactlyZero) {
    for (const auto& n : kRefusedSampleSizes) {
        Request r = with([&](Request& q) { q.n_min = n.min, q.n_max = n.max; });
        EXPECT_EMPTY(r.over_n()) << n.min << ' ' << n.max;
        EXPECT_EMPTY(r.over_n_es()) << n.min << ' ' << n.max;
        EXPECT_EMPTY(r.over_n_and_sd()) << n.min << ' ' << n.max;
        EXPECT_EMPTY(r.over_n_and_es()) << n.min << ' ' << n.max;
    }
    Request r = with([](Request& q) { q.n_min = q.n_max = 2; });
    EXPECT_THAT(take(r.over_n()).x, ElementsAre(2));
    EXPECT_THAT(take(r.over_n_es()).x, ElementsAre(2));
    EXPECT_THAT(take(r.over_n_and_sd()).x, ElementsAre(2));
    EXPECT_THAT(take(r.over_n_and_es()).x, ElementsAre(2));
}

TEST(OverallFCurves, AreEmptyForAReversedNaNZeroOrOverflowingContinuousRange) {
    for (const auto& range : kRefusedRanges)
        for (int type : {0, 1}) {
            Request r = with([&](Request& q) {
                q.es_type = type;
                q.es_min = q.sd_min = range.min;
                q.es_max = q.sd_max = range.max;
            });
            EXPECT_EMPTY(r.over_es()) << range.min << ' ' << range.max;
            EXPECT_EMPTY(r.over_sd()) << range.min << ' ' << range.max;
            EXPECT_EMPTY(r.over_n_and_sd()) << range.min << ' ' << range.max;
            EXPECT_EMPTY(r.over_n_and_es()) << range.min << ' ' << range.max;
        }
}

TEST(OverallFCurves, AreEmptyForAStepThatIsZeroNegativeOrNaNAndForMorePointsThanAnIntCounts) {
    for (double step : kRefusedSteps) {
        Request r = with([=](Request& q) { q.step = step; });
        for (int type : {0, 1}) {
            r.es_type = type;
            EXPECT_EMPTY(r.over_es()) << step;
            EXPECT_EMPTY(r.over_n_and_es()) << step;
        }
        EXPECT_EMPTY(r.over_sd()) << step;
        EXPECT_EMPTY(r.over_n_and_sd()) << step;
    }
}

TEST(OverallFCurves, DoNotCheckTheEffectSize) {
    for (double es : {-1.0, 5.0, kNaN, kInfinity}) {
        Request r = with([=](Request& q) { q.es = es; });
        EXPECT_EQ(take(r.over_n_es()).x.size(), 11u);
        EXPECT_EQ(take(r.over_n_and_es()).x.size(), 11u);
    }
}

// ---- Over the sample size --------------------------------------------------------------------------------

TEST(OverallFCurveOverN, HoldsThePowerOfEveryTotalAtFullPrecision) {
    Request r;
    const Curve by_means = take(r.over_n()), by_effect = take(r.over_n_es());
    ASSERT_EQ(by_means.x.size(), 11u);
    for (std::size_t i = 0; i < 11; ++i) {
        const double N = 10 + static_cast<double>(i);
        EXPECT_EQ(by_means.x[i], N);
        EXPECT_EQ(by_means.y[i], r.power_at_n(N));
        EXPECT_NE(by_means.y[i], static_cast<float>(by_means.y[i]));
        EXPECT_EQ(by_effect.x[i], N);
        EXPECT_EQ(by_effect.y[i], _PowerOverallTestwithES(3, 0.25, 0, N, 0.05));
        EXPECT_NE(by_effect.y[i], static_cast<float>(by_effect.y[i]));
    }
}

TEST(OverallFCurveOverN, AgreesWithHighPrecisionValues) {
    for (const auto& row : read_table("anova/anova_power.csv")) {
        auto lists = lists_in(row.label);
        const int k = static_cast<int>(row[0]);
        const double total = SampleSizeTotal(k, lists[1].data());
        if (total != std::floor(total)) continue;
        const int N = static_cast<int>(total);
        const Curve c = take(PlotNOverallTest(k, lists[0].data(), lists[1].data(), N, N, row[1], row[2]));
        ASSERT_EQ(c.y.size(), 1u);
        EXPECT_NEAR(c.y[0], row[3], 1e-12) << "line " << row.line;
    }
}

TEST(OverallFCurveOverN, ForAnEffectSizeTakesEitherKind) {
    for (int type : {0, 1}) {
        Request r = with([=](Request& q) { q.es_type = type; });
        const Curve c = take(r.over_n_es());
        for (std::size_t i = 0; i < c.x.size(); ++i)
            EXPECT_EQ(c.y[i], _PowerOverallTestwithES(3, 0.25, type, c.x[i], 0.05));
        // The default range follows the power of that kind of effect at the current 40.
        Request open = with([=](Request& q) { q.es_type = type, q.n_min = q.n_max = 0; });
        const double power = _PowerOverallTestwithES(3, 0.25, type, 40, 0.05);
        EXPECT_EQ(take(open.over_n_es()).x.back(), std::ceil((2 - power) * 40));
        EXPECT_EQ(take(open.over_n_and_es()).x.back(), std::ceil((2 - power) * 40));
    }
}

TEST(OverallFCurveOverN, OfOneSampleSizeHasOnePoint) {
    Request r = with([](Request& q) { q.n_min = q.n_max = 10; });
    EXPECT_THAT(take(r.over_n()).x, ElementsAre(10));
    EXPECT_THAT(take(r.over_n_es()).x, ElementsAre(10));
}

TEST(OverallFCurveOverN, HoldsTheMissingValueBelowTheNumberOfGroups) {
    Request r = with([](Request& q) { q.n_min = 2, q.n_max = 4; });
    for (const Curve& c : {take(r.over_n()), take(r.over_n_es())}) {
        EXPECT_MISSING(c.y[0]);
        EXPECT_EQ(c.y[1], 1);  // N = k: no error degree of freedom
        EXPECT_LT(c.y[2], 1);
    }
}

TEST(OverallFCurveOverN, TakesEverySampleSizeAlsoInAWideRange) {
    Request r = with([](Request& q) { q.n_min = 10, q.n_max = 2010; });
    EXPECT_EQ(take(r.over_n_es()).x.size(), 2001u);
}

TEST(OverallFCurveOverN, TakesBothEndsFromTheDefaultRangeWhenEitherIsZero) {
    int low = 0, high = 0;
    Request r;
    _SetPlotRangeN(r.k, r.means.data(), r.sigma, r.sizes.data(), low, high, r.alpha);
    int low_es = 0, high_es = 0;
    _SetPlotRangeN(r.k, r.es, r.es_type, r.sizes.data(), low_es, high_es, r.alpha);
    ASSERT_NE(high, 50);
    ASSERT_NE(high_es, 50);
    ASSERT_NE(high, high_es);
    for (int max : {0, 50}) {
        r.n_min = 0, r.n_max = max;
        const Curve by_means = take(r.over_n()), by_effect = take(r.over_n_es());
        EXPECT_EQ(by_means.x.front(), low);
        EXPECT_EQ(by_means.x.back(), high);
        EXPECT_EQ(by_effect.x.front(), low_es);
        EXPECT_EQ(by_effect.x.back(), high_es);
    }
}

TEST(OverallFCurveOverN, IsEmptyWhereTheDefaultRangeIsReversed) {
    // Power near alpha at N = 40000: from 38000, but at most 10000.
    Request r = with([](Request& q) {
        q.means = {0, 0, 0};
        q.sizes = {10000, 10000, 20000};
        q.n_min = q.n_max = 0;
        q.es = 0;
    });
    EXPECT_EMPTY(r.over_n());
    EXPECT_EMPTY(r.over_n_es());
    EXPECT_EMPTY(r.over_n_and_sd());
    EXPECT_EMPTY(r.over_n_and_es());
    r.sizes = {10, 10, 0};  // no total gives an empty group two observations
    EXPECT_EMPTY(r.over_n());
}

// ---- Over the effect size --------------------------------------------------------------------------------

TEST(OverallFCurveOverEffectSize, IsNarrowedToSinglePrecision) {
    for (int type : {0, 1}) {
        Request r = with([=](Request& q) { q.es_type = type; });
        const Curve c = take(r.over_es());
        for (std::size_t j = 0; j < c.x.size(); ++j) {
            const double power = PowerOverallTestwES(3, type, r.sizes.data(), c.x[j], 0.05);
            EXPECT_EQ(c.y[j], static_cast<double>(static_cast<float>(power)));
            EXPECT_NE(c.y[j], power);
        }
    }
}

TEST(OverallFCurveOverEffectSize, LeavesTheUpperEndOutForAProportionOfVarianceOnly) {
    Request r = with([](Request& q) { q.es_max = 0, q.es_min = 0, q.step = 0.1; });
    const Curve f = take(r.over_es());
    ASSERT_EQ(f.x.size(), 11u);
    for (int j = 0; j <= 10; ++j) EXPECT_EQ(f.x[static_cast<std::size_t>(j)], j * 0.2);
    for (int type : {1, 2, -1}) {
        r.es_type = type;
        const Curve proportion = take(r.over_es());
        ASSERT_EQ(proportion.x.size(), 10u);
        for (int j = 0; j <= 9; ++j) EXPECT_EQ(proportion.x[static_cast<std::size_t>(j)], j * 0.1);
    }
}

TEST(OverallFCurveOverEffectSize, RunsFromZeroToTheDefaultUpperEndWhenItsUpperEndIsZero) {
    for (double es_min : {0.0, -0.5, -3.0}) {
        Request r = with([=](Request& q) { q.es_min = es_min, q.es_max = 0, q.step = 0.5; });
        EXPECT_THAT(take(r.over_es()).x, ElementsAre(0, 1, 2));
        EXPECT_THAT(take(r.over_n_and_es()).y, ElementsAre(0, 1, 2));
        r.es_type = 1;
        EXPECT_THAT(take(r.over_es()).x, ElementsAre(0, 0.5));
        EXPECT_THAT(take(r.over_n_and_es()).y, ElementsAre(0, 0.5));
    }
}

TEST(OverallFCurveOverEffectSize, TakesALowerEndOfZeroAsItIs) {
    Request r = with([](Request& q) { q.es_min = 0, q.es_max = 0.5, q.step = 0.5; });
    EXPECT_THAT(take(r.over_es()).x, ElementsAre(0, 0.25, 0.5));
}

TEST(OverallFCurveOverEffectSize, ContinuesInWholeStepsBeyondAnEndThatTheyDoNotMeet) {
    // Steps of 0.375 from 0.25 to 1.5, the fourth of them beyond.
    Request r = with([](Request& q) { q.es_min = 0.25, q.es_max = 1.5, q.step = 0.3; });
    const double d = 0.3 * 1.25;
    EXPECT_THAT(take(r.over_es()).x, ElementsAre(0.25, 0.25 + d, 0.25 + 2 * d, 0.25 + 3 * d, 0.25 + 4 * d));
    r.es_type = 1;
    EXPECT_THAT(take(r.over_es()).x, ElementsAre(0.25, 0.25 + d, 0.25 + 2 * d, 0.25 + 3 * d));
}

TEST(OverallFCurveOverEffectSize, CountsTheWidthOverTheStep) {
    // The step of a third of 5 is rounded down, so that 5 over it rounds up to 4: see OfFractionsCounts...
    Request r = with([](Request& q) { q.es_min = 0, q.es_max = 5, q.step = 1.0 / 3; });
    EXPECT_EQ(take(r.over_es()).x.size(), 5u);
    r.es_type = 1;
    EXPECT_EQ(take(r.over_es()).x.size(), 4u);
}

TEST(OverallFCurveOverEffectSize, HoldsOneWhereAProportionOfVarianceIsOneOrMore) {
    Request r = with([](Request& q) { q.es_type = 1, q.es_min = 0.5, q.es_max = 2, q.step = 1.0 / 3; });
    const Curve c = take(r.over_es());
    EXPECT_THAT(c.x, ElementsAre(0.5, 1, 1.5));
    EXPECT_LT(c.y[0], 1);
    EXPECT_EQ(c.y[1], 1);
    EXPECT_EQ(c.y[2], 1);
}

// ---- Over the standard deviation -------------------------------------------------------------------------

TEST(OverallFCurveOverDeviation, IsNarrowedToSinglePrecision) {
    Request r;
    const Curve c = take(r.over_sd());
    for (std::size_t j = 0; j < c.x.size(); ++j) {
        const double power = PowerOverallTest(3, r.means.data(), r.sizes.data(), c.x[j], 0.05);
        EXPECT_EQ(c.y[j], static_cast<double>(static_cast<float>(power)));
        EXPECT_NE(c.y[j], power);
    }
}

TEST(OverallFCurveOverDeviation, EndsExactlyAtItsUpperEnd) {
    Request r = with([](Request& q) { q.step = 0.3; });
    EXPECT_THAT(take(r.over_sd()).x, ElementsAre(1, 1 + 0.3, 1 + 2 * 0.3, 1 + 3 * 0.3, 2));
    EXPECT_THAT(take(r.over_n_and_sd()).y, ElementsAre(1, 1 + 0.3, 1 + 2 * 0.3, 1 + 3 * 0.3, 2));
}

TEST(OverallFCurveOverDeviation, TakesBothEndsFromTheDefaultRangeWhenEitherIsZero) {
    // Means 0, 1, 2 with sizes 10, 10, 20: grand mean 1.25, D^2 = 15.625 + 0.625 + 11.25.
    const double d = std::sqrt(27.5);
    expect_default_deviations<Request>(d);
}

TEST(OverallFCurveOverDeviation, IsEmptyWhereEqualMeansGiveADefaultRangeOfZeroWidth) {
    Request r = with([](Request& q) { q.means = {1, 1, 1}, q.sd_min = q.sd_max = 0; });
    EXPECT_EMPTY(r.over_sd());
    EXPECT_EMPTY(r.over_n_and_sd());
}

TEST(OverallFCurveOverDeviation, HoldsTheMissingValueWhereItIsNotPositive) {
    Request r = with([](Request& q) { q.sd_min = -1, q.sd_max = 1, q.step = 0.5; });
    const Curve c = take(r.over_sd());
    EXPECT_THAT(c.x, ElementsAre(-1, 0, 1));
    EXPECT_MISSING(c.y[0]);
    EXPECT_MISSING(c.y[1]);
    EXPECT_GT(c.y[2], 0.05);
}

TEST(OverallFCurveOverDeviation, ChecksSigmaButDoesNotUseIt) {
    Request r, other = with([](Request&q) { q.sigma = 77; });
    EXPECT_EQ(take(r.over_sd()).y, take(other.over_sd()).y);
}

// ---- Surfaces --------------------------------------------------------------------------------------------

TEST(OverallFSurfaceOverNAndDeviation, HoldsThePowersRowByRowAtFullPrecision) {
    Request r;
    const Surface s = take(r.over_n_and_sd());
    ASSERT_EQ(s.x.size(), 11u);
    ASSERT_EQ(s.y.size(), 5u);
    for (std::size_t i = 0; i < s.x.size(); ++i)
        for (std::size_t j = 0; j < s.y.size(); ++j)
            EXPECT_EQ(s.at(i, j), r.power_at_n_and_sd(10 + static_cast<double>(i), s.y[j]));
    EXPECT_NE(s.at(0, 0), static_cast<float>(s.at(0, 0)));
}

TEST(OverallFSurfaceOverNAndEffectSize, HoldsThePowersRowByRowAtFullPrecision) {
    for (int type : {0, 1}) {
        Request r = with([=](Request& q) { q.es_type = type; });
        const Surface s = take(r.over_n_and_es());
        ASSERT_EQ(s.x.size(), 11u);
        ASSERT_EQ(s.y.size(), type == 0 ? 5u : 4u);
        for (std::size_t i = 0; i < s.x.size(); ++i)
            for (std::size_t j = 0; j < s.y.size(); ++j)
                EXPECT_EQ(s.at(i, j), _PowerOverallTestwithES(3, 0.1 + static_cast<double>(j) * 0.125, type,
                                                              10 + static_cast<double>(i), 0.05));
        EXPECT_NE(s.at(0, 0), static_cast<float>(s.at(0, 0)));
    }
}

TEST(OverallFSurfaces, TakeEverySecondSampleSizeFromAWidthOfAThousandUpwards) {
    Request r = with([](Request& q) { q.n_min = 10, q.n_max = 1010, q.step = 1; });
    for (const Surface& s : {take(r.over_n_and_sd()), take(r.over_n_and_es())}) {
        EXPECT_EQ(s.x.size(), 501u);
        EXPECT_EQ(s.x[1], 12);
        EXPECT_EQ(s.x.back(), 1010);
    }
    r.n_max = 1009;
    for (const Surface& s : {take(r.over_n_and_sd()), take(r.over_n_and_es())}) {
        EXPECT_EQ(s.x.size(), 1000u);
        EXPECT_EQ(s.x.back(), 1009);
    }
    r.n_max = 1011;
    for (const Surface& s : {take(r.over_n_and_sd()), take(r.over_n_and_es())}) {
        EXPECT_EQ(s.x.size(), 502u);
        EXPECT_EQ(s.x.back(), 1012);
    }
}

TEST(OverallFSurfaces, TakeBothEndsOfTheSampleSizesFromTheDefaultRangeWhenEitherIsZero) {
    int low = 0, high = 0, low_es = 0, high_es = 0;
    Request r;
    _SetPlotRangeN(r.k, r.means.data(), r.sigma, r.sizes.data(), low, high, r.alpha);
    _SetPlotRangeN(r.k, r.es, r.es_type, r.sizes.data(), low_es, high_es, r.alpha);
    for (int max : {0, 50}) {
        r.n_min = 0, r.n_max = max;
        const Surface by_means = take(r.over_n_and_sd()), by_effect = take(r.over_n_and_es());
        EXPECT_EQ(by_means.x.front(), low);
        EXPECT_EQ(by_means.x.back(), high);
        EXPECT_EQ(by_effect.x.front(), low_es);
        EXPECT_EQ(by_effect.x.back(), high_es);
    }
}

TEST(OverallFSurfaces, BeyondTheAddressSpaceAreRefusedByTheStandardException) {
    // A thousand million sample sizes by two thousand million values.
    Request r = with([](Request& q) { q.n_max = 2000000010, q.step = 5e-10; });
    EXPECT_THROW(r.over_n_and_sd(), std::bad_alloc);
    EXPECT_THROW(r.over_n_and_es(), std::bad_alloc);
}

}  // namespace
