// Curves and surfaces of the test of one proportion.
#include "proportions/one/curves.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>

#include "proportions/grids.h"
#include "statpower/one_sample_binomial.h"
#include "support/values.h"

using namespace testing_support;

namespace {

/// A valid call, of which a test breaks one argument.
struct Call {
    int method = 1;
    int sides = 0;
    int n_min = 30;
    int n_max = 40;
    bool correction = false;
    double N = 25;
    double p1 = 0.6;
    double p0 = 0.4;
    double alpha = 0.05;
    double step = 0.1;

    double power(double n, double alternative, double null) const {
        return PowerOneSampBinom(n, alternative, null, alpha, method, sides, correction, nullptr);
    }
    XYPlot sizes() const {
        return PlotNOneSampBinom(method, sides, n_min, n_max, correction, N, p1, p0, alpha);
    }
    XYPlot nulls() const { return PlotNullOneSampBinom(method, sides, correction, N, p1, alpha, step); }
    XYPlot alternatives() const {
        return PlotAlterOneSampBinom(method, sides, correction, N, p0, alpha, step);
    }
    XYPlot differences() const {
        return PlotRiskDiffOneSampBionm(method, sides, correction, N, p0, alpha, step);
    }
    XYZPlot sizes_differences() const {
        return PlotNRiskDiffOneSampBinom(method, sides, n_min, n_max, correction, N, p1, p0, alpha, step);
    }
    XYZPlot sizes_nulls() const {
        return PlotNNullOneSampBinom(method, sides, n_min, n_max, correction, N, p1, p0, alpha, step);
    }
    XYZPlot sizes_alternatives() const {
        return PlotNAlterOneSampBinom(method, sides, n_min, n_max, correction, N, p1, p0, alpha, step);
    }
    XYZPlot nulls_alternatives() const {
        return PlotNullAlterOneSampBinom(method, sides, correction, N, alpha, step);
    }
};

using Change = std::function<void(Call&)>;

Call with(const Change& change) {
    Call call;
    change(call);
    return call;
}

/// The same call in every form of the test.
std::vector<Call> forms() {
    std::vector<Call> calls;
    for (int method : {0, 1})
        for (int sides : {0, 1})
            for (bool correction : {false, true}) {
                Call call;
                call.method = method;
                call.sides = sides;
                call.correction = correction;
                calls.push_back(call);
            }
    return calls;
}

TEST(OneSampleCurves, PowerAgainstNTakesEveryWholeNumberOfTheRange) {
    for (const Call& c : forms())
        expect_curve(c.sizes(), whole_numbers(30, 40), [&](double n) { return c.power(n, c.p1, c.p0); });
}

TEST(OneSampleCurves, TheRangeOfNIsTakenLiterally) {
    Call c;
    c.n_min = 0;
    c.n_max = 3;
    const Curve curve = c.sizes();
    EXPECT_EQ(curve.x, whole_numbers(0, 3));
    EXPECT_EQ(curve.y[0], -1);
    EXPECT_GE(curve.y[1], 0);
    c.n_max = 0;
    const Curve at_zero = c.sizes();
    EXPECT_EQ(at_zero.x, whole_numbers(0, 0));
    EXPECT_EQ(at_zero.y[0], -1);
}

TEST(OneSampleCurves, TheRangeOfNHasLimits) {
    const auto is_empty = [](int n_min, int n_max) {
        Call c;
        c.method = 0;
        c.n_min = n_min;
        c.n_max = n_max;
        const bool no_curve = Curve(c.sizes()).empty();
        // Surfaces have the same limits where neither end is 0.
        if (n_min != 0 && n_max != 0) {
            EXPECT_EQ(Surface(c.sizes_nulls()).empty(), no_curve);
            EXPECT_EQ(Surface(c.sizes_alternatives()).empty(), no_curve);
            EXPECT_EQ(Surface(c.sizes_differences()).empty(), no_curve);
        }
        return no_curve;
    };
    EXPECT_FALSE(is_empty(4998, 5000));
    EXPECT_TRUE(is_empty(4998, 5001));
    EXPECT_TRUE(is_empty(-1, 10));
    EXPECT_TRUE(is_empty(10, 9));
    EXPECT_TRUE(is_empty(10, 10));
    EXPECT_FALSE(is_empty(10, 11));
    EXPECT_TRUE(is_empty(5000, 5000));
    EXPECT_TRUE(is_empty(std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

TEST(OneSampleCurves, NOfTheSizeCurveIsOnlyChecked) {
    Call a, b;
    b.N = 1;
    EXPECT_EQ(Curve(a.sizes()).y, Curve(b.sizes()).y);
}

TEST(OneSampleCurves, PowerAgainstAProportionTakesTheMultiplesOfTheStep) {
    for (const Call& c : forms()) {
        const auto grid = steps(9, 0.1);
        expect_curve(c.nulls(), grid, [&](double p0) { return c.power(c.N, c.p1, p0); });
        expect_curve(c.alternatives(), grid, [&](double p1) { return c.power(c.N, p1, c.p0); });
        expect_surface(c.nulls_alternatives(), grid, grid,
                       [&](double p0, double p1) { return c.power(c.N, p1, p0); });
    }
}

TEST(OneSampleCurves, PowerAgainstTheDifferenceTakesTheMultiplesOfTheStepLessTheNull) {
    for (const Call& c : forms())
        expect_curve(c.differences(), steps(9, 0.1, 0.4),
                     [&](double d) { return c.power(c.N, d + c.p0, c.p0); });
}

TEST(OneSampleCurves, TheNumberOfPointsIsTheWholePartOfOneOverTheStepLessOne) {
    const struct {
        double step;
        std::size_t count;
    } cases[] = {{0.5, 1}, {0.3, 2}, {0.34, 1}, {0.25, 3}, {0.01, 99}};
    for (const auto& expected : cases) {
        Call c;
        c.step = expected.step;
        EXPECT_EQ(Curve(c.nulls()).x.size(), expected.count) << c.step;
        EXPECT_EQ(Curve(c.alternatives()).x.size(), expected.count) << c.step;
        EXPECT_EQ(Curve(c.differences()).x.size(), expected.count) << c.step;
        EXPECT_EQ(Surface(c.nulls_alternatives()).x.size(), expected.count) << c.step;
    }
    Call c;
    c.step = 0.3;
    EXPECT_EQ(Curve(c.nulls()).x, (std::vector<double>{0.3, 0.6}));
}

TEST(OneSampleCurves, AStepThatGivesNoPointsIsTheEmptyResult) {
    for (double step : {std::nextafter(0.5, 1.0), 1.0, 0.0, -0.1, -kSmallest, kSmallest, 1e-300, kNaN}) {
        Call c;
        c.step = step;
        EXPECT_TRUE(Curve(c.nulls()).empty()) << step;
        EXPECT_TRUE(Curve(c.alternatives()).empty()) << step;
        EXPECT_TRUE(Curve(c.differences()).empty()) << step;
        EXPECT_TRUE(Surface(c.sizes_nulls()).empty()) << step;
        EXPECT_TRUE(Surface(c.sizes_alternatives()).empty()) << step;
        EXPECT_TRUE(Surface(c.sizes_differences()).empty()) << step;
        EXPECT_TRUE(Surface(c.nulls_alternatives()).empty()) << step;
    }
}

TEST(OneSampleCurves, SurfacesOverNHoldOneRowForEachN) {
    for (const Call& c : forms()) {
        const auto sizes = whole_numbers(30, 40);
        expect_surface(c.sizes_differences(), sizes, steps(9, 0.1, 0.4),
                       [&](double n, double d) { return c.power(n, d + c.p0, c.p0); });
        expect_surface(c.sizes_nulls(), sizes, steps(9, 0.1),
                       [&](double n, double p0) { return c.power(n, c.p1, p0); });
        expect_surface(c.sizes_alternatives(), sizes, steps(9, 0.1),
                       [&](double n, double p1) { return c.power(n, p1, c.p0); });
    }
}

TEST(OneSampleCurves, AZeroEndOfASurfaceMeansTheDefaultRange) {
    for (Call c : forms()) {
        const double power = c.power(c.N, c.p1, c.p0);
        const auto sizes =
            whole_numbers(std::max(1.0, std::floor((1 - power) * c.N)), std::ceil((2 - power) * c.N));
        ASSERT_GT(sizes.size(), 20u);
        for (auto [n_min, n_max] :
             {std::pair(0, 0), std::pair(0, 7000), std::pair(12, 0), std::pair(-3, 0)}) {
            c.n_min = n_min;
            c.n_max = n_max;
            EXPECT_EQ(Surface(c.sizes_nulls()).x, sizes);
            EXPECT_EQ(Surface(c.sizes_alternatives()).x, sizes);
            EXPECT_EQ(Surface(c.sizes_differences()).x, sizes);
        }
    }
}

TEST(OneSampleCurves, TheDefaultRangeStartsAtOneAndIsNotClippedAbove) {
    int n_min = -7, n_max = -7;
    POWER_NAMESPACE::_SetPlotRangeN(1e4, 0.6, 0.4, 0, 0, 0.05, n_min, n_max, false);
    EXPECT_EQ(n_min, 1);
    EXPECT_EQ(n_max, 10000);
    // Power 0: from N to 2 N.
    POWER_NAMESPACE::_SetPlotRangeN(3, 0.2, 0.2, 1, 1, 0.1, n_min, n_max, false);
    EXPECT_EQ(n_min, 3);
    EXPECT_EQ(n_max, 6);
    POWER_NAMESPACE::_SetPlotRangeN(1e4, 0.2, 0.2, 1, 1, 1e-300, n_min, n_max, false);
    EXPECT_EQ(n_min, 10000);
    EXPECT_EQ(n_max, 20000);
}

TEST(OneSampleCurves, TheDefaultRangeReadsSidesMethodAndCorrection) {
    for (const Call& c : forms()) {
        int n_min = 0, n_max = 0;
        POWER_NAMESPACE::_SetPlotRangeN(c.N, c.p1, c.p0, c.method, c.sides, c.alpha, n_min, n_max,
                                        c.correction);
        const double power = c.power(c.N, c.p1, c.p0);
        EXPECT_EQ(n_min, static_cast<int>(std::floor((1 - power) * c.N)));
        EXPECT_EQ(n_max, static_cast<int>(std::ceil((2 - power) * c.N)));
    }
}

TEST(OneSampleCurves, InvalidArgumentsGiveTheEmptyResult) {
    const auto expect_empty_over_n = [](const Call& c) {
        EXPECT_TRUE(Curve(c.sizes()).empty());
        EXPECT_TRUE(Surface(c.sizes_nulls()).empty());
        EXPECT_TRUE(Surface(c.sizes_alternatives()).empty());
        EXPECT_TRUE(Surface(c.sizes_differences()).empty());
    };
    const auto expect_all_empty = [&](const Call& c) {
        expect_empty_over_n(c);
        EXPECT_TRUE(Curve(c.nulls()).empty());
        EXPECT_TRUE(Curve(c.alternatives()).empty());
        EXPECT_TRUE(Curve(c.differences()).empty());
        EXPECT_TRUE(Surface(c.nulls_alternatives()).empty());
    };
    for (double alpha : {0.0, -0.1, 1.0, 2.0, kNaN})
        expect_all_empty(with([=](Call& c) { c.alpha = alpha; }));
    for (double N : {0.0, kBelowOne, -5.0, kNaN}) expect_all_empty(with([=](Call& c) { c.N = N; }));
    for (double p : {-kSmallest, kAboveOne, kNaN}) {
        const Call bad_p1 = with([=](Call& c) { c.p1 = p; });
        expect_empty_over_n(bad_p1);
        EXPECT_TRUE(Curve(bad_p1.nulls()).empty());
        const Call bad_p0 = with([=](Call& c) { c.p0 = p; });
        expect_empty_over_n(bad_p0);
        EXPECT_TRUE(Curve(bad_p0.alternatives()).empty());
        EXPECT_TRUE(Curve(bad_p0.differences()).empty());
    }
}

TEST(OneSampleCurves, ProportionsAtTheEndsAreAccepted) {
    for (double p : {0.0, 1.0}) {
        Call c;
        c.p1 = c.p0 = p;
        EXPECT_FALSE(Curve(c.sizes()).empty());
        EXPECT_FALSE(Curve(c.nulls()).empty());
        EXPECT_FALSE(Curve(c.alternatives()).empty());
        EXPECT_FALSE(Surface(c.sizes_nulls()).empty());
    }
}

#ifndef __SANITIZE_ADDRESS__  // whose shadow of all memory is beyond the limit
#ifndef __SANITIZE_THREAD__
TEST(OneSampleSurfaces, AGridBeyondMemoryIsRefusedBeforeAnyOfItIsTouched) {
    const auto within_a_gigabyte = [](int nMax, double N, double p1) {
        const rlimit limit{1u << 30, 1u << 30};
        if (setrlimit(RLIMIT_AS, &limit) != 0) std::exit(3);
        rusage before, after;
        getrusage(RUSAGE_SELF, &before);
        int status = 0;
        try {
            FreeMemXYZPlot(PlotNNullOneSampBinom(0, 0, 0, nMax, false, N, p1, 0.5, 0.05, 0.05));
        } catch (const std::bad_alloc&) {
            status = 10;
        }
        getrusage(RUSAGE_SELF, &after);
        std::exit(after.ru_maxrss - before.ru_maxrss < 10'000 ? status : 2);  // kilobytes
    };
    // The default range of certain rejection: 1 to 2 000 000 000 by 19 null proportions.
    EXPECT_EXIT(within_a_gigabyte(0, 1e9, 0.9), testing::ExitedWithCode(10), "");
    // One that begins and ends where int does: a single size.
    EXPECT_EXIT(within_a_gigabyte(-2147483647, 4294967296.0, 0.5), testing::ExitedWithCode(0), "");
}
#endif
#endif

}  // namespace
