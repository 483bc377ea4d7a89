// Power curves and surfaces of a multiple regression.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "regression/regression.h"
#include "statpower/regression.h"
#include "support/curves.h"
#include "support/values.h"

using namespace testing_support;

namespace {

constexpr int kFixed = 0, kRandom = 1, kRandomToo = 2;

std::vector<double> points(int count, std::function<double(int)> value) {
    std::vector<double> result;
    for (int i = 0; i < count; ++i) result.push_back(value(i));
    return result;
}

std::vector<double> sizes(int from, int step, int count) {
    return points(count, [=](int i) { return from + i * step; });
}

/// A design of which a test changes one argument.
struct Design {
    int random = kFixed;
    bool intercept = true;
    int nMin = 20, nMax = 24;
    double N = 30, p = 4, q = 2, R2full = 0.5, R2red = 0.4, f2 = 0.2, alpha = 0.05, step = 0.5;

    Curve over_size() const {
        return take(PlotNmlr(random, intercept, nMin, nMax, p, q, R2full, R2red, alpha));
    }
    Curve over_size_es() const { return take(PlotNmlrFES(random, intercept, nMin, nMax, p, q, f2, alpha)); }
    Curve over_correlation() const { return take(PlotCorrmlr(random, intercept, N, p, q, alpha, step)); }
    Curve over_effect() const { return take(PlotESmlr(random, intercept, N, p, q, alpha, step)); }
    Surface over_size_and_correlation() const {
        return take(PlotNaCorrmlr(random, intercept, nMin, nMax, N, p, q, R2full, R2red, alpha, step));
    }
    Surface over_size_and_effect() const {
        return take(PlotNaESmlr(random, intercept, nMin, nMax, N, p, q, f2, alpha, step));
    }
    /// Which of the six, in this order, are not empty.
    std::vector<bool> present() const {
        return {!over_size().x.empty(),
                !over_size_es().x.empty(),
                !over_correlation().x.empty(),
                !over_effect().x.empty(),
                !over_size_and_correlation().x.empty(),
                !over_size_and_effect().x.empty()};
    }
};

Design with(std::function<void(Design&)> change) {
    Design d;
    change(d);
    return d;
}

Design with_range(int random, int nMin, int nMax) {
    return with([=](Design& d) { d.random = random, d.nMin = nMin, d.nMax = nMax; });
}

Design with_step(int random, double step) {
    return with([=](Design& d) { d.random = random, d.step = step; });
}

const std::vector<bool> kAll(6, true), kNone(6, false);

// ---- Points ----------------------------------------------------------------------------------------------

TEST(RegressionCurve, HoldsThePowerAtEveryPoint) {
    for (int random : {kFixed, kRandom, kRandomToo})
        for (bool intercept : {false, true}) {
            const Design d =
                with([=](Design& b) { b.random = random, b.intercept = intercept, b.step = 0.3; });
            const auto check = [](const Curve& c, std::function<double(double)> power) {
                ASSERT_FALSE(c.x.empty());
                for (std::size_t i = 0; i < c.x.size(); ++i) EXPECT_EQ(c.y[i], narrowed(power(c.x[i])));
            };
            check(d.over_size(),
                  [&](double N) { return Powerbymlr(random, intercept, N, 4, 2, 0.5, 0.4, 0.05); });
            check(d.over_size_es(),
                  [&](double N) { return PowerbymlrwES(random, intercept, N, 4, 2, 0.2, 0.05); });
            check(d.over_correlation(),
                  [&](double R) { return Powerbymlr(random, intercept, 30, 4, 2, R, 0, 0.05); });
            check(d.over_effect(),
                  [&](double f2) { return PowerbymlrwES(random, intercept, 30, 4, 2, f2, 0.05); });
        }
}

TEST(RegressionSurface, HoldsThePowerAtEveryPointRowByRow) {
    for (int random : {kFixed, kRandom, kRandomToo}) {
        const Design d = with_step(random, 0.3);
        const auto check = [](const Surface& s, std::function<double(double, double)> power) {
            ASSERT_FALSE(s.x.empty());
            ASSERT_EQ(s.z.size(), s.x.size() * s.y.size());
            for (std::size_t i = 0; i < s.x.size(); ++i)
                for (std::size_t j = 0; j < s.y.size(); ++j)
                    EXPECT_EQ(s.z[i * s.y.size() + j], narrowed(power(s.x[i], s.y[j])));
        };
        check(d.over_size_and_correlation(),
              [&](double N, double R) { return Powerbymlr(random, true, N, 4, 2, R, 0, 0.05); });
        check(d.over_size_and_effect(),
              [&](double N, double f2) { return PowerbymlrwES(random, true, N, 4, 2, f2, 0.05); });
    }
}

TEST(RegressionCurve, OfAReducedModelThatFitsBetterHoldsMinusOne) {
    const Design d = with([](Design& b) { b.R2full = 0.3; });
    EXPECT_EQ(d.over_size().y, std::vector<double>(5, -1));
    for (double power : d.over_size_and_correlation().z) EXPECT_GE(power, 0);  // which has no reduced model
}

TEST(RegressionCurve, HoldsMinusOneWhereNoErrorDegreeOfFreedomIsLeft) {
    const Curve c = with_range(kFixed, 5, 7).over_size();
    EXPECT_EQ(c.y[0], -1);
    EXPECT_GE(c.y[1], 0);
}

// ---- Grids of the sample size ----------------------------------------------------------------------------

TEST(RegressionCurve, CoarsensTheSizesForARandomFlagOfExactlyOne) {
    const auto check = [](int width, int step, int count) {
        for (const Curve& c : {with_range(kRandom, 10, 10 + width).over_size(),
                               with_range(kRandom, 10, 10 + width).over_size_es()})
            EXPECT_EQ(c.x, sizes(10, step, count)) << width;
        EXPECT_EQ(with_range(kFixed, 10, 10 + width).over_size_es().x, sizes(10, 1, width + 1));
    };
    check(149, 1, 150);
    check(150, 5, 31);
    check(151, 5, 32);  // the last one passes nMax
    check(499, 5, 101);
    check(500, 10, 51);
    check(999, 10, 101);
    check(1000, 20, 51);
    check(1999, 20, 101);
    check(2000, 50, 41);
    EXPECT_EQ(with_range(kRandom, 10, 2010).over_size().x.back(), 2010);
}

TEST(RegressionCurve, DoesNotCoarsenForAnyOtherRandomFlag) {
    for (int random : {2, -1}) {
        EXPECT_EQ(with_range(random, 10, 210).over_size().x, sizes(10, 1, 201));
        EXPECT_EQ(with_range(random, 10, 210).over_size_es().x, sizes(10, 1, 201));
        EXPECT_EQ(with_range(random, 10, 210).over_size_and_correlation().x, sizes(10, 1, 201));
        EXPECT_EQ(with_range(random, 10, 210).over_size_and_effect().x, sizes(10, 1, 201));
    }
}

TEST(RegressionSurface, TakesEverySecondSizeForARandomFlagOfExactlyOne) {
    for (const auto surface : {&Design::over_size_and_correlation, &Design::over_size_and_effect}) {
        EXPECT_EQ((with_range(kRandom, 10, 109).*surface)().x, sizes(10, 1, 100));
        EXPECT_EQ((with_range(kRandom, 10, 110).*surface)().x, sizes(10, 2, 51));
        EXPECT_EQ((with_range(kRandom, 10, 111).*surface)().x, sizes(10, 2, 52));
        EXPECT_EQ((with_range(kFixed, 10, 210).*surface)().x, sizes(10, 1, 201));
    }
}

TEST(RegressionRange, DefaultsToFiveThousandSizesWhereAnEndIsZero) {
    for (bool intercept : {false, true}) {
        const int first = 4 + intercept + 1;
        for (int nMax : {0, 100}) {
            const Design d = with([=](Design& b) { b.intercept = intercept, b.nMin = 0, b.nMax = nMax; });
            const auto expected = sizes(first, 1, 5004 - first + 1);
            EXPECT_EQ(d.over_size().x, expected);
            EXPECT_EQ(d.over_size_es().x, expected);
            EXPECT_EQ(d.over_size_and_correlation().x, expected);
            EXPECT_EQ(d.over_size_and_effect().x, expected);
        }
    }
    EXPECT_EQ(with([](Design& d) { d.nMin = 0, d.p = 4.75; }).over_size().x.front(), 6);
    EXPECT_EQ(with_range(kRandom, 0, 0).over_size().x, sizes(6, 50, 101));  // curves of random predictors too
}

TEST(RegressionRange, OfASurfaceWithRandomPredictorsDefaultsToTheNeighbourhoodOfTheDesign) {
    for (int random : {kRandom, kRandomToo}) {
        const Design d = with_range(random, 0, 0);
        const auto expected = [](double power) {
            const int first = std::max(6, static_cast<int>(std::floor((1 - power) * 30)));
            return sizes(first, 1, static_cast<int>(std::ceil((2 - power) * 30)) - first + 1);
        };
        EXPECT_EQ(d.over_size_and_correlation().x,
                  expected(Powerbymlr(random, true, 30, 4, 2, 0.5, 0.4, 0.05)));
        EXPECT_EQ(d.over_size_and_effect().x, expected(PowerbymlrwES(random, true, 30, 4, 2, 0.2, 0.05)));
    }
    const Design refused = with([](Design& d) { d.random = kRandomToo, d.nMin = 0, d.R2full = 0.3; });
    EXPECT_EQ(refused.over_size_and_correlation().x, sizes(60, 1, 31));  // power -1: 2 N to 3 N
}

TEST(RegressionRange, HelpersKeepTheirLowerBoundsAndSaturate) {
    int nMin = 0, nMax = 0;
    POWER_NAMESPACE::_SetPlotRangeN(4.75, true, nMin, nMax);
    EXPECT_EQ(nMin, 6);
    EXPECT_EQ(nMax, 5004);
    POWER_NAMESPACE::_SetPlotRangeN(1e10, false, nMin, nMax);
    EXPECT_EQ(nMax, std::numeric_limits<int>::max());
    POWER_NAMESPACE::_SetRandomPlotRangeN(20, 5.5, 2, 0.999, 0.1, 1, true, 0.05, nMin, nMax);  // power 1
    EXPECT_EQ(nMin, 7);
    EXPECT_EQ(nMax, 20);
    POWER_NAMESPACE::_SetRandomPlotRangeN(20, 5.5, 2, 1e3, 1, true, 0.05, nMin, nMax);
    EXPECT_EQ(nMin, 7);
    EXPECT_EQ(nMax, 20);
}

// ---- Grids of the effect ---------------------------------------------------------------------------------

TEST(RegressionCurve, OverTheCorrelationExcludesBothEnds) {
    const std::pair<double, int> counts[] = {{0.1, 19}, {0.05, 39}, {0.3, 5}, {0.49, 3}, {0.5, 3}, {1, 1}};
    for (int random : {kFixed, kRandomToo})
        for (const auto& [step, count] : counts)
            EXPECT_EQ(with_step(random, step).over_correlation().x,
                      points(count, [s = step](int i) { return (i + 1) * s - 1; }));
}

TEST(RegressionSurface, OverTheCorrelationRoundsItsCountUp) {
    const std::pair<double, int> counts[] = {{0.1, 19}, {0.05, 39}, {0.3, 6}, {0.49, 4}, {0.5, 3}, {1, 1}};
    for (int random : {kFixed, kRandomToo})
        for (const auto& [step, count] : counts)
            EXPECT_EQ(with_step(random, step).over_size_and_correlation().y,
                      points(count, [s = step](int i) { return (i + 1) * s - 1; }));
}

TEST(RegressionCurve, OverTheEffectSizeKeepsTheCallersStepForEveryRandomFlag) {
    const std::pair<double, int> counts[] = {{0.1, 9}, {0.05, 19}, {0.3, 3}, {0.49, 2}, {0.5, 1}};
    for (int random : {kFixed, kRandom, kRandomToo})
        for (const auto& [step, count] : counts)
            EXPECT_EQ(with_step(random, step).over_effect().x,
                      points(count, [s = step](int i) { return (i + 1) * s; }));
}

TEST(RegressionSurface, OverTheEffectSizeKeepsTheCallersStepExceptForARandomFlagOfOne) {
    const std::pair<double, int> counts[] = {{0.1, 9}, {0.05, 19}, {0.3, 3}, {0.49, 2}, {0.5, 1}};
    for (int random : {kFixed, kRandomToo})
        for (const auto& [step, count] : counts)
            EXPECT_EQ(with_step(random, step).over_size_and_effect().y,
                      points(count, [s = step](int i) { return (i + 1) * s; }));
}

TEST(RegressionGrids, OfTheEffectIgnoreTheCallersStepForARandomFlagOfExactlyOne) {
    const auto correlations = points(39, [](int i) { return (i + 1) * 0.05 - 1; });
    for (double step : {0.3, 0.0, -1.0, 5.0, kNaN}) {
        const Design d = with_step(kRandom, step);
        EXPECT_EQ(d.over_correlation().x, correlations);
        EXPECT_EQ(d.over_size_and_correlation().y, correlations);
        EXPECT_EQ(d.over_size_and_effect().y, points(19, [](int i) { return (i + 1) * 0.05; }));
    }
}

TEST(RegressionGrids, AreEmptyForAStepThatGivesNoWholeNumberOfPoints) {
    for (double step : {0.0, -0.0, -0.3, -5.0, 3.0, kInfinity, -kInfinity, kNaN, 1e-300, 1e-10})
        EXPECT_EQ(with_step(kFixed, step).present(),
                  std::vector<bool>({true, true, false, false, false, false}))
            << step;
}

// ---- Checks ----------------------------------------------------------------------------------------------

TEST(RegressionCurves, CheckTheRangeOfTheSampleSize) {
    const std::vector<bool> without_range = {false, false, true, true, false, false};
    EXPECT_EQ(with_range(kFixed, 5, 5).present(), kAll);  // p + intercept exactly, a single size
    EXPECT_EQ(with_range(kFixed, 4, 10).present(), without_range);
    EXPECT_EQ(with([](Design& d) { d.intercept = false, d.nMin = 4; }).present(), kAll);
    EXPECT_EQ(with_range(kFixed, -10, 10).present(), without_range);
    EXPECT_EQ(with_range(kFixed, 10, 9).present(), without_range);
    EXPECT_EQ(with_range(kFixed, 10, 0).present(), without_range);  // reversed, before the default
    EXPECT_EQ(with_range(kFixed, 0, -1).present(), without_range);
    EXPECT_EQ(with_range(kFixed, 5000, 5004).present(), kAll);
    EXPECT_EQ(with_range(kFixed, 5000, 5005).present(), without_range);
    EXPECT_EQ(with_range(kFixed, 0, 5005).present(), without_range);
}

TEST(RegressionCurves, CheckThePredictorsAndAlpha) {
    for (int random : {kFixed, kRandom}) {
        const auto none = [=](std::function<void(Design&)> change) {
            Design d = with(change);
            d.random = random;
            EXPECT_EQ(d.present(), kNone);
        };
        none([](Design& d) { d.q = 5; });
        none([](Design& d) { d.q = 0.5; });
        none([](Design& d) { d.p = d.q = 0.5; });
        none([](Design& d) { d.p = kNaN; });
        none([](Design& d) { d.q = kNaN; });
        for (double alpha : {0.0, 1.0, kNaN}) none([=](Design& d) { d.alpha = alpha; });
    }
}

TEST(RegressionCurves, OverAnEffectCheckTheSampleSize) {
    const std::vector<bool> without_N = {true, true, false, false, false, false};
    for (double N : {5.99, -1.0, kNaN}) EXPECT_EQ(with([=](Design& d) { d.N = N; }).present(), without_N);
    EXPECT_EQ(with([](Design& d) { d.N = 6; }).present(), kAll);
    EXPECT_EQ(with([](Design& d) { d.N = 5, d.intercept = false; }).present(), kAll);
}

TEST(RegressionCurves, CheckTheFitOfTheModelsThatTheyTake) {
    const std::vector<bool> without_models = {false, true, true, true, false, true};
    for (double bad : {-0.2, 1.0, kNaN}) {
        EXPECT_EQ(with([=](Design& d) { d.R2full = bad; }).present(), without_models);
        EXPECT_EQ(with([=](Design& d) { d.R2red = bad; }).present(), without_models);
    }
    EXPECT_EQ(with([](Design& d) { d.R2red = 0, d.R2full = -0.5; }).present(), kAll);
    EXPECT_EQ(with([](Design& d) { d.R2red = 0, d.R2full = 1; }).present(), without_models);
    EXPECT_EQ(with([](Design& d) { d.R2red = 0.4, d.R2full = 0; }).present(), without_models);
}

}  // namespace
