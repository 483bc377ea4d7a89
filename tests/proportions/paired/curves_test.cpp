// Curves and surfaces of the test of paired proportions.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "proportions/grids.h"
#include "statpower/related_binomial.h"
#include "support/values.h"

using namespace testing_support;

namespace {

/// A valid call of every curve, of which a test breaks one argument.
struct Call {
    int n_min = 20;
    int n_max = 30;
    int sided = 0;
    int exact = 1;
    double N = 25;
    double p1 = 0.3;
    double p2 = 0.1;
    double low = 0;
    double high = 0;
    double pA = 0.6;
    double pB = 0.4;
    double rho = 0.25;
    double alpha = 0.05;
    double step = 0.1;

    double power(double n, double first, double second) const {
        return PowerbyPRelSampBionm(sided, exact, nullptr, n, first, second, alpha);
    }
    double margins(double a, double b, double r) const {
        return PowerbyMargPRelSampBionm(sided, exact, N, a, b, r, alpha);
    }
    XYPlot sizes() const { return PlotNRelSampBionm(n_min, n_max, sided, exact, N, p1, p2, alpha); }
    XYPlot differences() const { return PlotRiskDiffRelSampBionm(sided, exact, N, p1, alpha, step); }
    XYPlot ratios() const {
        return PlotRiskRatioRelSampBionm(sided, exact, N, p1, p2, low, high, alpha, step);
    }
    XYPlot odds() const { return PlotOddsRatioRelSampBionm(sided, exact, N, p1, low, high, alpha, step); }
    XYPlot correlations() const { return PlotCorrRelSampBionm(sided, exact, N, pA, pB, alpha, step); }
    XYZPlot cells() const { return PlotPropRelSampBionm(sided, exact, N, alpha, step); }
    XYZPlot marginals() const { return PlotMargPropRelSampBionm(sided, exact, N, rho, alpha, step); }
};

using Change = std::function<void(Call&)>;

Call with(const Change& change) {
    Call call;
    change(call);
    return call;
}

/// The call after the change, in every form of the test.
std::vector<Call> forms(const Change& change = [](Call&) {}) {
    std::vector<Call> calls;
    for (int sided : {0, 1})
        for (int exact : {0, 1}) {
            Call call = with(change);
            call.sided = sided;
            call.exact = exact;
            calls.push_back(call);
        }
    return calls;
}

TEST(PairedCurves, AllAreEmptyForABadLevelOrFewerThanTwoPairs) {
    const auto expect_all_empty = [](const Call& c) {
        EXPECT_TRUE(Curve(c.sizes()).empty());
        EXPECT_TRUE(Curve(c.differences()).empty());
        EXPECT_TRUE(Curve(c.ratios()).empty());
        EXPECT_TRUE(Curve(c.odds()).empty());
        EXPECT_TRUE(Curve(c.correlations()).empty());
        EXPECT_TRUE(Surface(c.cells()).empty());
        EXPECT_TRUE(Surface(c.marginals()).empty());
    };
    for (double alpha : {0.0, -0.1, 1.0, kNaN}) expect_all_empty(with([=](Call& c) { c.alpha = alpha; }));
    for (double N : {kBelowTwo, -3.0, kNaN}) expect_all_empty(with([=](Call& c) { c.N = N; }));
}

TEST(PairedCurves, AProportionOutsideItsRangeIsTheEmptyResult) {
    for (double p : {-kSmallest, kAboveOne, kNaN}) {
        const Call bad_p1 = with([=](Call& c) { c.p1 = p; });
        EXPECT_TRUE(Curve(bad_p1.sizes()).empty());
        EXPECT_TRUE(Curve(bad_p1.differences()).empty());
        EXPECT_TRUE(Curve(bad_p1.ratios()).empty());
        EXPECT_TRUE(Curve(bad_p1.odds()).empty());
        const Call bad_p2 = with([=](Call& c) { c.p2 = p; });
        EXPECT_TRUE(Curve(bad_p2.sizes()).empty());
        EXPECT_TRUE(Curve(bad_p2.ratios()).empty());
    }
    for (double p : {0.0, 1.0, -0.5, kNaN}) {
        EXPECT_TRUE(Curve(with([=](Call& c) { c.pA = p; }).correlations()).empty());
        EXPECT_TRUE(Curve(with([=](Call& c) { c.pB = p; }).correlations()).empty());
    }
    for (double rho : {-1.0, 1.0, 1.5, kNaN})
        EXPECT_TRUE(Surface(with([=](Call& c) { c.rho = rho; }).marginals()).empty());
}

TEST(PairedCurves, AStepThatGivesNoPointsIsTheEmptyResult) {
    for (double step : {0.0, -0.1, -2.0, -1e9, -kSmallest, kSmallest, 1e-300, kNaN,
                        std::numeric_limits<double>::infinity()}) {
        const Call c = with([=](Call& e) { e.step = step; });
        EXPECT_TRUE(Curve(c.differences()).empty()) << step;
        EXPECT_TRUE(Curve(c.ratios()).empty()) << step;
        EXPECT_TRUE(Curve(c.odds()).empty()) << step;
        EXPECT_TRUE(Curve(c.correlations()).empty()) << step;
        EXPECT_TRUE(Surface(c.cells()).empty()) << step;
        EXPECT_TRUE(Surface(c.marginals()).empty()) << step;
    }
}

// ---- Number of pairs

TEST(PairedCurves, PowerAgainstNTakesEveryWholeNumberOfTheRange) {
    for (const Call& c : forms())
        expect_curve(c.sizes(), whole_numbers(20, 30), [&](double n) { return c.power(n, c.p1, c.p2); });
}

TEST(PairedCurves, TheRangeOfNHasLimitsAndNoDefault) {
    const auto points = [](int n_min, int n_max) {
        return Curve(with([=](Call& c) { c.exact = 0, c.n_min = n_min, c.n_max = n_max; }).sizes()).x.size();
    };
    EXPECT_EQ(points(2499, 2500), 2u);
    EXPECT_EQ(points(2499, 2501), 0u);
    EXPECT_EQ(points(-1, 10), 0u);
    EXPECT_EQ(points(10, 9), 0u);
    EXPECT_EQ(points(10, 10), 1u);
    EXPECT_EQ(points(0, 0), 1u);
    EXPECT_EQ(points(0, 4), 5u);
}

TEST(PairedCurves, PointsThatThePowerRefusesHoldMinusOne) {
    const Curve below_two(with([](Call& c) { c.n_min = 0, c.n_max = 2; }).sizes());
    EXPECT_EQ(below_two.y[0], -1);
    EXPECT_EQ(below_two.y[1], -1);
    EXPECT_GE(below_two.y[2], 0);
    const Curve impossible(with([](Call& c) { c.p1 = 0.7, c.p2 = 0.4; }).sizes());
    EXPECT_EQ(impossible.y, std::vector<double>(11, -1));
}

TEST(PairedCurves, NOfTheSizeCurveIsOnlyChecked) {
    EXPECT_EQ(Curve(with([](Call& c) { c.N = 2; }).sizes()).y, Curve(Call().sizes()).y);
}

// ---- Differences

TEST(PairedCurves, DifferencesRunThroughTheRangeThatTheFirstProbabilityLeaves) {
    for (const Call& c : forms()) {
        std::vector<double> xs;
        for (int k = 1; k <= 9; ++k) xs.push_back(k * (1 - 0.3) * 0.1 + (2 * 0.3 - 1));
        expect_curve(c.differences(), xs, [&](double d) { return c.power(c.N, c.p1, c.p1 - d); });
    }
}

TEST(PairedCurves, TheNumberOfDifferencesIsRounded) {
    const auto points = [](double step) {
        return Curve(with([=](Call& c) { c.exact = 0, c.step = step; }).differences()).x.size();
    };
    EXPECT_EQ(points(0.1), 9u);
    EXPECT_EQ(points(0.25), 3u);
    EXPECT_EQ(points(0.28), 3u);  // 3.57 - 1 + 0.5
    EXPECT_EQ(points(0.29), 2u);  // 3.45 - 1 + 0.5
    EXPECT_EQ(points(0.66), 1u);  // 1.52 - 1 + 0.5
    EXPECT_EQ(points(0.67), 0u);  // 1.49 - 1 + 0.5
}

TEST(PairedCurves, ACertainFirstProbabilityLeavesNoDifference) {
    EXPECT_TRUE(Curve(with([](Call& c) { c.p1 = 1; }).differences()).empty());
    EXPECT_FALSE(Curve(with([](Call& c) { c.p1 = 0; }).differences()).empty());
}

// ---- Ratios

/// lower + i (step * width) for i = 0 .. count - 1.
std::vector<double> stepped(double lower, double upper, double step, int count) {
    std::vector<double> points;
    const double width = upper - lower;
    for (int i = 0; i < count; ++i) points.push_back(lower + i * (step * width));
    return points;
}

TEST(PairedCurves, RatiosHoldTheFirstProbabilityUpToOneHalf) {
    for (const Call& c : forms()) {
        const auto xs = stepped(0.3 / (1 - 0.3), 3, 0.1, 11);
        expect_curve(c.ratios(), xs, [&](double x) { return c.power(c.N, 0.3, 0.3 / x); });
    }
    for (const Call& c : forms([](Call& e) { e.p1 = 0.5, e.low = 1, e.high = 4; }))
        expect_curve(c.ratios(), stepped(1, 4, 0.1, 11),
                     [&](double x) { return c.power(c.N, 0.5, 0.5 / x); });
}

TEST(PairedCurves, RatiosHoldTheSecondProbabilityAboveOneHalf) {
    for (const Call& c : forms([](Call& e) { e.p1 = 0.6, e.p2 = 0.25; })) {
        const auto xs = stepped(1.0 / 3, 3, 0.1, 11);  // (1 - p2) / p2 = 3
        const double last = xs.back();
        expect_curve(c.ratios(), xs, [&](double x) {
            return c.power(c.N, x == last ? std::min(x * 0.25, 0.75) : x * 0.25, 0.25);
        });
    }
}

TEST(PairedCurves, ARangeOfRatiosIsTakenWhenBothEndsAreGiven) {
    const auto first_and_last = [](double p1, double low, double high) {
        const Curve curve(
            with([=](Call& c) { c.exact = 0, c.p1 = p1, c.p2 = 0.2, c.low = low, c.high = high; }).ratios());
        return std::pair(curve.x.front(), curve.x.back());
    };
    EXPECT_EQ(first_and_last(0.25, 0.5, 2.5), std::pair(0.5, 2.5));
    EXPECT_EQ(first_and_last(0.25, 0, 2.5).first, 0.25 / 0.75);
    EXPECT_EQ(first_and_last(0.25, 0.5, 0).second, 0.25 / 0.75 + 10 * (0.1 * (3 - 0.25 / 0.75)));
    EXPECT_EQ(first_and_last(0.75, 0.5, 0).first, 1.0 / 3);
}

TEST(PairedCurves, TheCapAtTheLastRatioChangesTheFirstProbabilityOnly) {
    // p1 held: 0.5 at all points but the last, where it is 1 - p2 = 0.3.
    for (const Call& c : forms([](Call& e) { e.p1 = 0.5, e.p2 = 0.7, e.low = 1, e.high = 4; })) {
        const Curve curve(c.ratios());
        const double second = 0.5 / curve.x.back();
        EXPECT_EQ(curve.y.back(), static_cast<float>(c.power(c.N, 1 - 0.7, second)));
        EXPECT_EQ(curve.y.at(9), static_cast<float>(c.power(c.N, 0.5, 0.5 / curve.x.at(9))));
    }
    // p2 held, and the last ratio times p2 above 1 - p2 by rounding or by an overshooting step: capped.
    for (const Call& c :
         forms([](Call& e) { e.p1 = 0.6, e.p2 = 0.25, e.low = 1, e.high = 3, e.step = 0.3; })) {
        const Curve curve(c.ratios());
        EXPECT_GT(curve.x.back() * 0.25, 0.75);
        EXPECT_EQ(curve.y.back(), static_cast<float>(c.power(c.N, 0.75, 0.25)));
    }
}

TEST(PairedCurves, TheLastStepOfTheRatiosMayOvershoot) {
    // ceil(width / h) = ceil(1 / 0.3) = 4 steps.
    const Curve curve(with([](Call& c) { c.exact = 0, c.low = 1, c.high = 2, c.step = 0.3; }).ratios());
    EXPECT_EQ(curve.x, stepped(1, 2, 0.3, 5));
    EXPECT_GT(curve.x.back(), 2);
    EXPECT_EQ(Curve(with([](Call& c) { c.low = 1, c.high = 2, c.step = 5; }).ratios()).x.size(), 2u);
}

TEST(PairedCurves, RatiosHaveLimits) {
    const auto is_empty = [](double p1, double p2, double low, double high) {
        return Curve(with([=](Call& c) {
                         c.exact = 0, c.p1 = p1, c.p2 = p2, c.low = low, c.high = high;
                     }).ratios())
            .empty();
    };
    EXPECT_FALSE(is_empty(0.05, 0.1, 0.1, 10));
    EXPECT_TRUE(is_empty(0.05, 0.1, 0.1, std::nextafter(10, 11)));
    EXPECT_TRUE(is_empty(0.05, 0.1, std::nextafter(0.1, 0), 10));
    EXPECT_TRUE(is_empty(0.05, 0.1, -1, 10));
    EXPECT_TRUE(is_empty(0.05, 0.1, kNaN, 10));
    EXPECT_TRUE(is_empty(0.05, 0.1, 1, kNaN));
    // p1 held: low at least p1 / (1 - p1) = 1/3, high free up to 10.
    EXPECT_FALSE(is_empty(0.25, 0.8, 0.25 / 0.75, 9));
    EXPECT_TRUE(is_empty(0.25, 0.8, std::nextafter(0.25 / 0.75, 0), 9));
    EXPECT_FALSE(is_empty(0.25, 0.8, 0, 9));
    // p2 held: high at most (1 - p2) / p2 = 4, low free from 0.1.
    EXPECT_FALSE(is_empty(0.75, 0.2, 0.1, 4));
    EXPECT_TRUE(is_empty(0.75, 0.2, 0.1, std::nextafter(4, 5)));
    EXPECT_FALSE(is_empty(0.75, 0.2, 0.1, 0));
    // p1 = 1/2 is held: its smallest ratio is 1.
    EXPECT_TRUE(is_empty(0.5, 0.2, 0.9, 4));
}

TEST(PairedCurves, ARangeOfRatiosWithoutWidthOrEndIsTheEmptyResult) {
    EXPECT_TRUE(Curve(with([](Call& c) { c.low = c.high = 2; }).ratios()).empty());
    EXPECT_TRUE(Curve(with([](Call& c) { c.p1 = 0.6, c.p2 = 0; }).ratios()).empty());  // up to infinity
    EXPECT_TRUE(Curve(with([](Call& c) { c.low = c.high = 2; }).odds()).empty());
    EXPECT_TRUE(Curve(with([](Call& c) { c.p1 = 1; }).odds()).empty());
}

TEST(PairedCurves, RatiosMayRunDownwards) {
    // Nothing orders the ends of a ratio's range.
    const Curve curve(with([](Call& c) { c.exact = 0, c.low = 3, c.high = 1; }).ratios());
    EXPECT_EQ(curve.x, stepped(3, 1, 0.1, 11));
}

// ---- Odds ratios

TEST(PairedCurves, OddsRatiosGiveTheSecondProbability) {
    const double o2 = (0.3 / (1 - 0.3)) * (0.3 / (1 - 0.3));
    for (const Call& c : forms())
        expect_curve(c.odds(), stepped(o2, o2 + 3, 0.1, 11),
                     [&](double x) { return c.power(c.N, 0.3, 0.3 / ((1 - 0.3) * x + 0.3)); });
    for (const Call& c : forms([](Call& e) { e.low = 1, e.high = 5, e.step = 0.3; }))
        expect_curve(c.odds(), stepped(1, 5, 0.3, 5),
                     [&](double x) { return c.power(c.N, 0.3, 0.3 / ((1 - 0.3) * x + 0.3)); });
}

TEST(PairedCurves, OddsRatiosHaveLimits) {
    const auto is_empty = [](double low, double high) {
        return Curve(with([=](Call& c) { c.exact = 0, c.p1 = 0.5, c.low = low, c.high = high; }).odds())
            .empty();
    };
    EXPECT_FALSE(is_empty(1, 11));  // o2 = 1
    EXPECT_TRUE(is_empty(1, std::nextafter(11, 12)));
    EXPECT_TRUE(is_empty(kBelowOne, 11));
    EXPECT_TRUE(is_empty(3, 2));
    EXPECT_TRUE(is_empty(kNaN, 2));
    EXPECT_TRUE(is_empty(1, kNaN));
    EXPECT_FALSE(is_empty(0, 0));
    EXPECT_FALSE(is_empty(0, 5));
    EXPECT_TRUE(is_empty(2, 0));  // low above high, though 0 means the default
    EXPECT_EQ(Curve(with([](Call& c) { c.exact = 0, c.p1 = 0.5, c.high = 5; }).odds()).x,
              stepped(1, 4, 0.1, 11));
}

// ---- Correlations

TEST(PairedCurves, CorrelationsRunFromMinusOneToTheLargestThatTheMarginsAllow) {
    const double largest =
        std::min((1 - 0.6) * 0.4, (1 - 0.4) * 0.6) / std::sqrt((1 - 0.4) * 0.4 * 0.6 * (1 - 0.6));
    EXPECT_NEAR(largest, 2.0 / 3, 1e-15);
    std::vector<double> xs;
    for (int i = 0; i < 17; ++i) xs.push_back(i * 0.1 - 1);
    xs.push_back(largest);
    for (const Call& c : forms())
        expect_curve(c.correlations(), xs, [&](double rho) { return c.margins(0.6, 0.4, rho); });
}

TEST(PairedCurves, TheLastCorrelationIsExactlyTheLargest) {
    const Curve half(with([](Call& c) { c.pA = c.pB = 0.5, c.step = 0.3; }).correlations());
    EXPECT_EQ(half.x.size(), 8u);
    EXPECT_EQ(half.x.back(), 1);
    EXPECT_EQ(half.x.at(6), 6 * 0.3 - 1);
    const Curve wide(with([](Call& c) { c.pA = c.pB = 0.5, c.step = 7; }).correlations());
    EXPECT_EQ(wide.x, (std::vector<double>{-1, 1}));
}

// ---- Surfaces

TEST(PairedCurves, CellsSurfaceIsZeroOnTheDiagonalAndAboveASumOfOne) {
    for (const Call& c : forms())
        expect_surface(c.cells(), steps(9, 0.1), steps(9, 0.1), [&](double p1, double p2) {
            return p1 != p2 && p1 + p2 <= 1 ? c.power(c.N, p1, p2) : 0;
        });
    const Surface surface(Call().cells());
    for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(surface.at(i, i), 0);
    EXPECT_GT(surface.at(0, 7), 0);
    EXPECT_EQ(surface.at(8, 8), 0);
    EXPECT_EQ(surface.at(8, 7), 0);
}

TEST(PairedCurves, MarginsSurfaceIsZeroAboveASumOfOneAndComputedOnTheDiagonal) {
    for (const Call& c : forms())
        expect_surface(c.marginals(), steps(9, 0.1), steps(9, 0.1),
                       [&](double pA, double pB) { return pA + pB <= 1 ? c.margins(pA, pB, 0.25) : 0; });
    const Surface surface(Call().marginals());
    EXPECT_GT(surface.at(3, 3), 0);
    EXPECT_EQ(surface.at(8, 2), 0);
    // Margins that the correlation does not fit hold the failure value.
    EXPECT_EQ(Surface(with([](Call& c) { c.rho = 0.9; }).marginals()).at(0, 7), -1);
}

TEST(PairedCurves, TheNumberOfSurfacePointsIsTheWholePartOfOneOverTheStepLessOne) {
    const auto points = [](double step) {
        const Call c = with([=](Call& e) { e.exact = 0, e.step = step; });
        EXPECT_EQ(Surface(c.cells()).x.size(), Surface(c.marginals()).y.size());
        return Surface(c.cells()).x.size();
    };
    EXPECT_EQ(points(0.5), 1u);
    EXPECT_EQ(points(0.3), 2u);
    EXPECT_EQ(points(0.51), 0u);
    EXPECT_EQ(points(2), 0u);
}

}  // namespace
