// Curves and the surface of a specified contrast.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "anova/contrast.h"
#include "anova/one_way.h"
#include "anova/plot_range.h"
#include "statpower/anova.h"
#include "support/curves.h"

using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using testing::Each;
using testing::ElementsAre;
using namespace testing_support;

namespace {

/// The arguments of all four, valid as they stand; a test changes one.
struct Request {
    int k = 3;
    std::vector<double> means = {0, 1, 3};
    std::vector<double> sizes = {10, 10, 20};
    std::vector<double> coefficients = {0.5, 0.5, -1};
    int n_min = 10, n_max = 20;
    int directional = 0;
    double sigma = 4;
    double es = 0.5;
    double sd_min = 2, sd_max = 3;
    double alpha = 0.05;
    double step = 0.25;

    XYPlot over_n() {
        return PlotNSC(k, means.data(), sizes.data(), coefficients.data(), n_min, n_max, directional, sigma,
                       alpha);
    }
    XYPlot over_n_es() {
        return PlotNSCFES(k, sizes.data(), coefficients.data(), n_min, n_max, directional, es, alpha);
    }
    XYPlot over_sd() {
        return PlotSDSC(k, means.data(), sizes.data(), coefficients.data(), directional, sigma, sd_min,
                        sd_max, alpha, step);
    }
    XYZPlot over_n_and_sd() {
        return PlotNaSDSC(k, means.data(), sizes.data(), coefficients.data(), n_min, n_max, directional,
                          sigma, sd_min, sd_max, alpha, step);
    }
    double power_at(double N, double sd) {
        return _PowerSCwithN(k, means.data(), sd, sizes.data(), N, coefficients.data(), directional, alpha);
    }
};

Request with(std::function<void(Request&)> change) {
    Request request;
    change(request);
    return request;
}

// ---- What is refused -------------------------------------------------------------------------------------

TEST(ContrastCurves, AreEmptyForFewerThanTwoGroups) {
    for (int k : {1, 0, -1, kSmallestInt}) {
        Request r = with([=](Request& q) { q.k = k; });
        EXPECT_EMPTY(r.over_n());
        EXPECT_EMPTY(r.over_n_es());
        EXPECT_EMPTY(r.over_sd());
    }
    Request two = with([](Request& q) { q.k = 2, q.coefficients = {1, -1}; });
    EXPECT_EQ(take(two.over_n()).x.size(), 11u);
    EXPECT_EQ(take(two.over_n_es()).x.size(), 11u);
    EXPECT_EQ(take(two.over_sd()).x.size(), 5u);
    EXPECT_EQ(take(two.over_n_and_sd()).x.size(), 11u);
}

TEST(ContrastSurface, DoesNotCheckTheNumberOfGroupsAndEveryPowerIsThenMissing) {
    for (int k : {1, 0, -1, kSmallestInt}) {
        Request r = with([=](Request& q) { q.k = k; });
        const Surface s = take(r.over_n_and_sd());
        EXPECT_EQ(s.x.size(), 11u);
        EXPECT_EQ(s.z.size(), 55u);
        EXPECT_THAT(s.z, Each(OrvMV::Missing()));
    }
}

TEST(ContrastSurface, WithoutGroupsHasADefaultSampleSizeOfZeroAndNoDefaultDeviations) {
    Request r = with([](Request& q) { q.k = 0, q.n_min = q.n_max = 0; });
    const Surface s = take(r.over_n_and_sd());
    EXPECT_THAT(s.x, ElementsAre(0));
    EXPECT_THAT(s.z, Each(OrvMV::Missing()));
    r.n_min = 10, r.n_max = 20, r.sd_min = 0;
    EXPECT_EMPTY(r.over_n_and_sd());
}

TEST(ContrastCurves, AreEmptyUnlessSigmaIsAboveZeroWhereThereIsOne) {
    for (double sigma : {0.0, -1.0, kNaN}) {
        Request r = with([=](Request& q) { q.sigma = sigma; });
        EXPECT_EMPTY(r.over_n());
        EXPECT_EMPTY(r.over_sd());
        EXPECT_EMPTY(r.over_n_and_sd());
        EXPECT_EQ(take(r.over_n_es()).x.size(), 11u);
    }
    Request smallest = with([](Request& q) { q.sigma = kSmallest; });
    EXPECT_EQ(take(smallest.over_n()).x.size(), 11u);
    EXPECT_EQ(take(smallest.over_sd()).x.size(), 5u);
    EXPECT_EQ(take(smallest.over_n_and_sd()).x.size(), 11u);
}

TEST(ContrastCurves, AreEmptyUnlessAlphaIsAboveZeroAndBelowOneAlsoInTheSurface) {
    for (double alpha : {0.0, -0.5, 1.0, 2.0, kNaN, kInfinity}) {
        Request r = with([=](Request& q) { q.alpha = alpha; });
        EXPECT_EMPTY(r.over_n());
        EXPECT_EMPTY(r.over_n_es());
        EXPECT_EMPTY(r.over_sd());
        EXPECT_EMPTY(r.over_n_and_sd());
    }
    for (double alpha : {1e-300, kBelowOne}) {
        Request r = with([=](Request& q) { q.alpha = alpha; });
        EXPECT_EQ(take(r.over_n()).x.size(), 11u);
        EXPECT_EQ(take(r.over_n_es()).x.size(), 11u);
        EXPECT_EQ(take(r.over_sd()).x.size(), 5u);
        EXPECT_EQ(take(r.over_n_and_sd()).x.size(), 11u);
    }
}

TEST(ContrastCurves, AreEmptyUnlessTheSampleSizesAreInOrderAndEachAtLeastTwoOrExactlyZero) {
    for (const auto& n : kRefusedSampleSizes) {
        Request r = with([&](Request& q) { q.n_min = n.min, q.n_max = n.max; });
        EXPECT_EMPTY(r.over_n()) << n.min << ' ' << n.max;
        EXPECT_EMPTY(r.over_n_es()) << n.min << ' ' << n.max;
        EXPECT_EMPTY(r.over_n_and_sd()) << n.min << ' ' << n.max;
    }
    Request r = with([](Request& q) { q.n_min = q.n_max = 2; });
    EXPECT_THAT(take(r.over_n()).x, ElementsAre(2));
    EXPECT_THAT(take(r.over_n_es()).x, ElementsAre(2));
    EXPECT_THAT(take(r.over_n_and_sd()).x, ElementsAre(2));
}

TEST(ContrastCurves, AreEmptyForAReversedNaNZeroOrOverflowingDeviationRange) {
    for (const auto& range : kRefusedRanges) {
        Request r = with([&](Request& q) { q.sd_min = range.min, q.sd_max = range.max; });
        EXPECT_EMPTY(r.over_sd()) << range.min;
        EXPECT_EMPTY(r.over_n_and_sd()) << range.min;
    }
}

TEST(ContrastCurves, AreEmptyForAStepThatIsZeroNegativeOrNaNAndForMorePointsThanAnIntCounts) {
    for (double step : kRefusedSteps) {
        Request r = with([=](Request& q) { q.step = step; });
        EXPECT_EMPTY(r.over_sd()) << step;
        EXPECT_EMPTY(r.over_n_and_sd()) << step;
    }
}

TEST(ContrastCurves, LeaveTheCoefficientsAloneWhenAnArgumentIsRefused) {
    Request r = with([](Request& q) { q.coefficients[2] = 0.25, q.alpha = 1; });
    EXPECT_EMPTY(r.over_n());
    EXPECT_EMPTY(r.over_sd());
    EXPECT_EMPTY(r.over_n_and_sd());
    EXPECT_EQ(r.coefficients[2], 0.25);
}

// ---- Over the sample size --------------------------------------------------------------------------------

TEST(ContrastCurveOverN, HoldsThePowerOfEveryTotalAtFullPrecision) {
    for (int directional : {0, 1}) {
        Request r = with([=](Request& q) { q.directional = directional; });
        const Curve by_means = take(r.over_n()), by_effect = take(r.over_n_es());
        ASSERT_EQ(by_means.x.size(), 11u);
        for (std::size_t i = 0; i < 11; ++i) {
            const double N = 10 + static_cast<double>(i);
            EXPECT_EQ(by_means.x[i], N);
            EXPECT_EQ(by_means.y[i], r.power_at(N, 4));
            EXPECT_NE(by_means.y[i], static_cast<float>(by_means.y[i]));
            EXPECT_EQ(by_effect.x[i], N);
            EXPECT_EQ(by_effect.y[i],
                      _PowerSCwithES(3, 0.5, r.sizes.data(), N, r.coefficients.data(), directional, 0.05));
            EXPECT_NE(by_effect.y[i], static_cast<float>(by_effect.y[i]));
        }
    }
}

TEST(ContrastCurveOverN, TakesBothEndsFromTheDefaultRangeWhenEitherIsZero) {
    for (int directional : {0, 1})
        for (int max : {0, 50}) {
            int low = 0, high = 0;
            Request r = with([=](Request& q) { q.directional = directional, q.n_min = 0, q.n_max = max; });
            _SetPlotRangeN(r.k, r.means.data(), r.sigma, r.sizes.data(), low, high, r.coefficients.data(),
                           directional, r.alpha);
            ASSERT_NE(high, 50);
            const Curve c = take(r.over_n());
            EXPECT_EQ(c.x.front(), low);
            EXPECT_EQ(c.x.back(), high);
            const Surface s = take(r.over_n_and_sd());
            EXPECT_EQ(s.x.front(), low);
            EXPECT_EQ(s.x.back(), high);
        }
}

TEST(ContrastCurveOverN, ForAnEffectSizeHasNoDefaultRange) {
    Request r = with([](Request& q) { q.n_min = q.n_max = 0; });
    const Curve point = take(r.over_n_es());
    EXPECT_THAT(point.x, ElementsAre(0));
    EXPECT_MISSING(point.y[0]);
    r.n_max = 5;
    const Curve c = take(r.over_n_es());
    EXPECT_THAT(c.x, ElementsAre(0, 1, 2, 3, 4, 5));
    EXPECT_MISSING(c.y[2]);
    EXPECT_EQ(c.y[3], 1);  // N = k: no error degree of freedom
    EXPECT_LT(c.y[4], 1);
}

TEST(ContrastCurveOverN, IsEmptyWhereTheDefaultRangeIsReversed) {
    Request r = with([](Request& q) {
        q.means = {0, 0, 0};
        q.sizes = {10000, 10000, 20000};
        q.n_min = q.n_max = 0;
    });
    EXPECT_EMPTY(r.over_n());
    EXPECT_EMPTY(r.over_n_and_sd());
}

TEST(ContrastCurveOverN, RepairsTheCallersCoefficients) {
    for (int n_min : {10, 0}) {
        Request r = with([=](Request& q) { q.coefficients[2] = 0.25, q.n_min = n_min; });
        Request sound = with([=](Request& q) { q.n_min = n_min; });
        EXPECT_EQ(take(r.over_n()).y, take(sound.over_n()).y);
        EXPECT_EQ(r.coefficients[2], -1);
    }
}

TEST(ContrastCurveOverN, ForAnEffectSizeTakesTheCoefficientsAsTheyAre) {
    Request r = with([](Request& q) { q.coefficients[2] = 0.25; });
    EXPECT_NE(take(r.over_n_es()).y, take(Request().over_n_es()).y);
    EXPECT_EQ(r.coefficients[2], 0.25);
}

TEST(ContrastCurveOverN, HasOnlyAtItsFirstPowerAnEffectThatTheRepairMakesMissing) {
    Request r = with([](Request& q) { q.coefficients = {1, 1, 0}, q.n_min = 2, q.n_max = 6; });
    const Curve c = take(r.over_n());
    EXPECT_EQ(r.coefficients[2], -2);
    EXPECT_MISSING(c.y[0]);  // N < k: refused before the repair
    EXPECT_EQ(c.y[1], 1);
    EXPECT_EQ(c.y[2], r.power_at(4, 4));
    EXPECT_LT(c.y[2], 0.5);
    // With default ends that first power decides the range: 1, so up to the current total, from
    // what gives the smallest group two observations.
    Request open = with([](Request& q) { q.coefficients = {1, 1, 0}, q.n_min = q.n_max = 0; });
    const Curve whole = take(open.over_n());
    EXPECT_EQ(whole.x.front(), 8);
    EXPECT_EQ(whole.x.back(), 40);
    EXPECT_EQ(whole.y[0], open.power_at(8, 4));
    EXPECT_LT(whole.y[0], 0.9);
}

// ---- Over the standard deviation -------------------------------------------------------------------------

TEST(ContrastCurveOverDeviation, IsNarrowedToSinglePrecision) {
    for (int directional : {0, 1}) {
        Request r = with([=](Request& q) { q.directional = directional; });
        const Curve c = take(r.over_sd());
        ASSERT_EQ(c.x.size(), 5u);
        for (std::size_t j = 0; j < 5; ++j) {
            const double power = r.power_at(40, c.x[j]);
            EXPECT_EQ(c.y[j], static_cast<double>(static_cast<float>(power)));
            EXPECT_NE(c.y[j], power);
        }
    }
}

TEST(ContrastCurveOverDeviation, EndsExactlyAtItsUpperEnd) {
    Request r = with([](Request& q) { q.step = 0.3; });
    EXPECT_THAT(take(r.over_sd()).x, ElementsAre(2, 2 + 0.3, 2 + 2 * 0.3, 2 + 3 * 0.3, 3));
    EXPECT_THAT(take(r.over_n_and_sd()).y, ElementsAre(2, 2 + 0.3, 2 + 2 * 0.3, 2 + 3 * 0.3, 3));
}

TEST(ContrastCurveOverDeviation, TakesBothEndsFromTheDefaultRangeWhenEitherIsZero) {
    // Means 0, 1, 3 with sizes 10, 10, 20: grand mean 1.75, D^2 = 30.625 + 5.625 + 31.25.
    const double d = std::sqrt(67.5);
    expect_default_deviations<Request>(d);
}

TEST(ContrastCurveOverDeviation, HoldsTheMissingValueWhereItIsNotPositiveAndRepairsNothingThere) {
    Request r = with([](Request& q) { q.sd_min = -1, q.sd_max = 1, q.step = 1; });
    EXPECT_THAT(take(r.over_sd()).x, ElementsAre(-1, 1));
    EXPECT_MISSING(take(r.over_sd()).y[0]);
    r.coefficients[2] = 0.25, r.sd_max = -0.5;
    EXPECT_THAT(take(r.over_sd()).y, Each(OrvMV::Missing()));
    EXPECT_EQ(r.coefficients[2], 0.25);
}

TEST(ContrastCurveOverDeviation, RepairsTheCallersCoefficients) {
    Request r = with([](Request& q) { q.coefficients[2] = 0.25; });
    EXPECT_EQ(take(r.over_sd()).y, take(Request().over_sd()).y);
    EXPECT_EQ(r.coefficients[2], -1);
}

TEST(ContrastCurveOverDeviation, ChecksSigmaButDoesNotUseIt) {
    EXPECT_EQ(take(Request().over_sd()).y, take(with([](Request& q) { q.sigma = 77; }).over_sd()).y);
}

// ---- Surface ---------------------------------------------------------------------------------------------

TEST(ContrastSurface, HoldsThePowersRowByRowAtFullPrecision) {
    for (int directional : {0, 1}) {
        Request r = with([=](Request& q) { q.directional = directional; });
        const Surface s = take(r.over_n_and_sd());
        ASSERT_EQ(s.x.size(), 11u);
        ASSERT_EQ(s.y.size(), 5u);
        for (std::size_t i = 0; i < s.x.size(); ++i)
            for (std::size_t j = 0; j < s.y.size(); ++j)
                EXPECT_EQ(s.at(i, j),
                          r.power_at(10 + static_cast<double>(i), 2 + 0.25 * static_cast<double>(j)));
        EXPECT_NE(s.at(0, 0), static_cast<float>(s.at(0, 0)));
    }
}

TEST(ContrastSurface, TakesEverySecondSampleSizeFromAWidthOfAThousandUpwards) {
    const struct {
        int n_max;
        std::size_t count;
        double last;
    } cases[] = {{1009, 1000, 1009}, {1010, 501, 1010}, {1011, 502, 1012}};
    for (const auto& c : cases) {
        Request r = with([&](Request& q) { q.n_max = c.n_max, q.step = 1; });
        const Surface s = take(r.over_n_and_sd());
        EXPECT_EQ(s.x.size(), c.count);
        EXPECT_EQ(s.x.back(), c.last);
    }
}

TEST(ContrastSurface, RepairsTheCallersCoefficients) {
    Request r = with([](Request& q) { q.coefficients[2] = 0.25; });
    EXPECT_EQ(take(r.over_n_and_sd()).z, take(Request().over_n_and_sd()).z);
    EXPECT_EQ(r.coefficients[2], -1);
}

TEST(ContrastSurface, BeyondTheAddressSpaceIsRefusedByTheStandardException) {
    Request r = with([](Request& q) { q.n_max = 2000000010, q.step = 5e-10; });
    EXPECT_THROW(r.over_n_and_sd(), std::bad_alloc);
}

}  // namespace
