// Which distribution operations the t tests call, with which arguments, and what they make of the results.
// The distribution operations are stand-ins here.
#include <deque>

#include "means/expectations.h"
#include "means/one.h"
#include "means/paired.h"
#include "means/two.h"
#include "statpower/means.h"
#include "support/distribution_stand_in.h"

using namespace POWER_NAMESPACE;
using testing::ElementsAre;

namespace {

/// Calls `power` with these results of the noncentral distribution, of which the last one stays.
template <class Power>
auto with_cdf(std::deque<double> results, Power power) {
    distribution_calls = {};
    distribution_calls.t_quantile = [](const Arguments&) { return 2.5; };
    distribution_calls.t_cdf = [&](const Arguments&) {
        const double result = results.front();
        if (results.size() > 1) results.pop_front();
        return result;
    };
    return power();
}

constexpr double kAlpha = 0.05;

struct Case {
    const char* name;
    double df;
    double noncentrality;
    std::function<double()> power;
};

// Sizes 16 and 48 (one-sample: 16) make the square roots whole: sqrt(16) = 4, sqrt(16 * 48 / 64) = sqrt(12).
const double kPooled = std::sqrt(12.0);
// sd 2 and 6: q1 = 4 / 16 = 1 / 4 and q2 = 36 / 48 = 3 / 4, so the standard error is 1 and the Welch degrees
// of freedom 1 / ((1 / 16) / 15 + (9 / 16) / 47).
const double kWelchDf = 1 / (1.0 / 16 / 15 + 9.0 / 16 / 47);

const Case kTwoSided[] = {
    {"one-sample, es", 15, -2, [] { return PowerOneSampleNondirectionalES(16, -0.5, kAlpha); }},
    {"one-sample", 15, -2, [] { return PowerOneSampleNondirectional(16, 9, 2, 10, kAlpha); }},
    {"related, es", 15, -2, [] { return PowerRelatedNondirectionalES(16, -0.5, kAlpha); }},
    {"related", 15, -2, [] { return PowerRelatedNondirectional(16, 9, 2, 10, 2, 0.5, kAlpha); }},
    {"independent, es", 62, -kPooled, [] { return PowerIndependentNondirectionalES(16, 48, -1, kAlpha); }},
    {"pooled", 62, -kPooled, [] { return PowerIndependentNondirectional(16, 8, 2, 48, 10, 2, kAlpha); }},
    {"Welch", kWelchDf, -2, [] { return PowerIndependentNondirectional(16, 8, 2, 48, 10, 6, kAlpha); }},
    {"Welch, internal", kWelchDf, -2,
     [] { return _PowerIndependentNondirectional(64, 3, -2, 2, 6, kAlpha); }},
};

const Case kOneSided[] = {
    {"one-sample, es", 15, 2, [] { return PowerOneSampleDirectionalES(16, -0.5, kAlpha); }},
    {"one-sample", 15, 2, [] { return PowerOneSampleDirectional(16, 9, 2, 10, kAlpha); }},
    {"related, es", 15, 2, [] { return PowerRelatedDirectionalES(16, -0.5, kAlpha); }},
    {"related", 15, 2, [] { return PowerRelatedDirectional(16, 9, 2, 10, 2, 0.5, kAlpha); }},
    {"independent, es", 62, kPooled, [] { return PowerIndependentDirectionalES(16, 48, -1, kAlpha); }},
    {"pooled", 62, kPooled, [] { return PowerIndependentDirectional(16, 8, 2, 48, 10, 2, kAlpha); }},
    {"Welch", kWelchDf, 2, [] { return PowerIndependentDirectional(16, 8, 2, 48, 10, 6, kAlpha); }},
    {"Welch, internal", kWelchDf, 2, [] { return _PowerIndependentDirectional(64, 3, -2, 2, 6, kAlpha); }},
};

void expect_call(const Arguments& call, const Arguments& expected, const char* name) {
    ASSERT_EQ(call.size(), expected.size()) << name;
    for (std::size_t i = 0; i < call.size(); ++i) EXPECT_DOUBLE_EQ(call[i], expected[i]) << name << " " << i;
}

TEST(TwoSidedPower, IsTheSumOfBothTailsBeyondTheQuantileOfOneMinusHalfAlpha) {
    for (const Case& c : kTwoSided) {
        EXPECT_EQ(with_cdf({0.25, 0.125}, c.power), 0.75 + 0.125) << c.name;
        ASSERT_EQ(distribution_calls.idf_t.size(), 1u) << c.name;
        ASSERT_EQ(distribution_calls.noncentral_t.size(), 2u) << c.name;
        expect_call(distribution_calls.idf_t[0], {1 - kAlpha / 2, c.df, 1e-40, 1e-30}, c.name);
        expect_call(distribution_calls.noncentral_t[0], {2.5, c.df, c.noncentrality, 1e-12}, c.name);
        expect_call(distribution_calls.noncentral_t[1], {-2.5, c.df, c.noncentrality, 1e-12}, c.name);
    }
}

TEST(TwoSidedPower, CountsAMissingUpperTailAsOneAndAMissingLowerTailAsZero) {
    for (const Case& c : kTwoSided) {
        EXPECT_EQ(with_cdf({kMissing, 0.125}, c.power), 1.125) << c.name;  // not clipped
        EXPECT_EQ(with_cdf({0.25, kMissing}, c.power), 0.75) << c.name;
        EXPECT_EQ(with_cdf({kMissing, kMissing}, c.power), 1) << c.name;
    }
}

TEST(OneSidedPower, IsTheTailAboveTheQuantileOfOneMinusAlphaAtTheAbsoluteEffect) {
    for (const Case& c : kOneSided) {
        EXPECT_EQ(with_cdf({0.25}, c.power), 0.75) << c.name;
        ASSERT_EQ(distribution_calls.idf_t.size(), 1u) << c.name;
        ASSERT_EQ(distribution_calls.noncentral_t.size(), 1u) << c.name;
        expect_call(distribution_calls.idf_t[0], {1 - kAlpha, c.df, 1e-40, 1e-30}, c.name);
        expect_call(distribution_calls.noncentral_t[0], {2.5, c.df, c.noncentrality, 1e-12}, c.name);
    }
}

TEST(OneSidedPower, CountsAMissingTailAsOne) {
    for (const Case& c : kOneSided) EXPECT_EQ(with_cdf({kMissing}, c.power), 1) << c.name;
}

TEST(HalfWidth, UsesTheQuantileOfOneMinusHalfAlpha) {
    const Case cases[] = {
        {"one-sample", 15, 2.5 * 3 / 4, [] { return HalfCIOneSampleMeans(16, 3, kAlpha); }},
        {"related", 15, 2.5 * 3 / 4, [] { return HalfCIRelatedMeans(16, 3, 3, 0.5, kAlpha); }},
        {"pooled", 62, 2.5 * 2 / kPooled, [] { return HalfCIIndependentMeans(16, 2, 48, 2, kAlpha); }},
        {"Welch", kWelchDf, 2.5, [] { return HalfCIIndependentMeans(16, 2, 48, 6, kAlpha); }},
    };
    for (const Case& c : cases) {
        EXPECT_DOUBLE_EQ(with_cdf({}, c.power), c.noncentrality) << c.name;
        ASSERT_EQ(distribution_calls.idf_t.size(), 1u) << c.name;
        expect_call(distribution_calls.idf_t[0], {1 - kAlpha / 2, c.df, 1e-40, 1e-30}, c.name);
    }
}

// ---- Implausible values in curves ------------------------------------------------------------------------

std::vector<double> ys(XYPlot plot) {
    std::vector<double> values(plot.y, plot.y + plot.count);
    FreeMemXYPlot(plot);
    return values;
}

// Cumulative probabilities that no distribution has: the powers are -0.25, 0.5, 1.25, -0.5, 0.75.
const std::deque<double> kImplausible = {1.25, 0.5, -0.25, 1.5, 0.25};

TEST(RatioCurve, ReplacesAnImplausiblePowerByTheOneBeforeExceptAtTheFirstPoint) {
    const auto expected = ElementsAre(-0.25, 0.5, 0.5, 0.5, 0.75);
    EXPECT_THAT(
        with_cdf(kImplausible, [] { return ys(PlotRatioIndependentFES(1, 52, 1, 0.5, 2, kAlpha, 0.25)); }),
        expected);
    for (double sd2 : {1.0, 2.0})
        EXPECT_THAT(
            with_cdf(kImplausible,
                     [&] { return ys(PlotRatioIndependent(1, 52, 1, 1, 0, sd2, 0.5, 2, kAlpha, 0.25)); }),
            expected);
}

TEST(Curves, WithoutARatioReplaceNothing) {
    const auto expected = ElementsAre(-0.25, 0.5, 1.25, -0.5, 0.75);
    const std::function<XYPlot()> curves[] = {
        [] { return PlotNOneSample(2, 6, 1, 0, 1, 1, 0, kAlpha); },
        [] { return PlotNOneSampleFES(2, 6, 1, 1, kAlpha); },
        [] { return PlotESOneSample(1, 10, 0, 1, kAlpha, 0.25); },
        [] { return PlotNRelated(2, 6, 1, 0, 1, 1, 0, 1, 0.5, kAlpha); },
        [] { return PlotNRelatedFES(2, 6, 1, 1, kAlpha); },
        [] { return PlotESRelated(1, 10, 0, 1, kAlpha, 0.25); },
        [] { return PlotESIndepended(1, 10, 10, 0, 1, kAlpha, 0.25); },
        [] { return PlotMeanDiffIndepended(1, 10, 0, 1, 10, 0, 1, 0, 1, kAlpha, 0.25); },
    };
    for (const auto& curve : curves)
        EXPECT_THAT(with_cdf(kImplausible, [&] { return ys(curve()); }), expected);
}

TEST(RatioSurface, ReplacesByTheSecondCoordinateInTheFirstRowAndByThePowerBeforeInTheOthers) {
    // Three ratios and three effect sizes 0.1, 0.2, 0.3 (steps of half the range); every second power
    // is 1.25.
    const auto plot = with_cdf({0.5, -0.25, 0.5, 0.25, -0.25, -0.25, 1.25, 1.25, 0.75},
                               [] { return PlotRatioaESIndependent(1, 52, 0.5, 2, 0.1, 0.3, kAlpha, 0.5); });
    ASSERT_EQ(plot.nx * plot.ny, 9);
    const double second = static_cast<float>(plot.y[0]);
    EXPECT_NE(second, plot.y[0]);  // narrowed
    EXPECT_THAT(std::vector<double>(plot.z, plot.z + 9),
                ElementsAre(0.5, second, 0.5, 0.75, 0.75, 0.75, -0.25, -0.25, 0.25));
    FreeMemXYZPlot(plot);
}

TEST(RatioSurface, OverMeanDifferencesReplacesInTheSameWay) {
    // Five ratios and three differences.
    const auto plot = with_cdf({1.25, 1.25, -0.25, 0.25, 1.25, 0.5}, [] {
        return PlotRatioaMeanDiffIndependent(1, 52, 1, 1, 0, 1, 0.5, 2, 0.1, 0.3, kAlpha, 0.25);
    });
    ASSERT_EQ(plot.nx, 5);
    ASSERT_EQ(plot.ny, 3);
    EXPECT_THAT(
        std::vector<double>(plot.z, plot.z + 6),
        ElementsAre(-0.25, static_cast<float>(plot.y[0]), static_cast<float>(plot.y[1]), 0.75, 0.75, 0.5));
    FreeMemXYZPlot(plot);
}

TEST(SizeSurface, ReplacesNothing) {
    for (auto surface : {PlotNaESOneSample, PlotNaESRelated}) {
        const auto plot =
            with_cdf({1.25, -0.25, 0.5, 1.5, 0.25}, [&] { return surface(2, 3, 1, 0, 1, kAlpha, 0.5); });
        ASSERT_EQ(plot.nx * plot.ny, 6);
        EXPECT_THAT(std::vector<double>(plot.z, plot.z + 6), ElementsAre(-0.25, 1.25, 0.5, -0.5, 0.75, 0.75));
        FreeMemXYZPlot(plot);
    }
}

}  // namespace
