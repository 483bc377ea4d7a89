// Power curves and surfaces of the tests of a correlation.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "correlation/correlation.h"
#include "correlation/kinds.h"
#include "support/curves.h"

using namespace testing_support;

namespace {

/// The curves of one test with its flags and its number of variables partialled out, behind one set of
/// arguments.
struct Family {
    std::string name;
    double k;  // 0 where there is none
    std::function<double(double N, double r, double r0, double alpha)> power;
    std::function<XYPlot(int nMin, int nMax, double N, double r, double r0, double alpha)> over_size;
    std::function<XYPlot(double N, double r, double alpha, double step)> over_null;
    std::function<XYPlot(double N, double r0, double alpha, double step)> over_alternative;
    std::function<XYPlot(double N, double r0, double alpha, double step)> over_difference;
    using OverSizeAnd =
        std::function<XYZPlot(int nMin, int nMax, double N, double r, double r0, double alpha, double step)>;
    OverSizeAnd over_size_and_difference, over_size_and_null, over_size_and_alternative;
    std::function<XYZPlot(double N, double alpha, double step)> over_null_and_alternative;
};

Family pearson(int sided, bool bias) {
    const auto with = [=](auto f) { return [=](auto... rest) { return f(sided, bias, rest...); }; };
    return {"Pearson",
            0,
            with(PowerbyOneSampPearson),
            with(PlotNOneSampPearson),
            with(PlotNullOneSampPearson),
            with(PlotAlterOneSampPearson),
            with(PlotRiskDiffOneSampPearson),
            with(PlotNRiskDiffOneSampPearson),
            with(PlotNNullOneSampPearson),
            with(PlotNAlterOneSampPearson),
            with(PlotNullAlterOneSampPearson)};
}

Family spearman(int method, int sided) {
    const auto with = [=](auto f) { return [=](auto... rest) { return f(method, sided, rest...); }; };
    return {"Spearman",
            0,
            with(PowerbyOneSampSpearman),
            with(PlotNOneSampSpearman),
            with(PlotNullOneSampSpearman),
            with(PlotAlterOneSampSpearman),
            with(PlotRiskDiffOneSampSpearman),
            with(PlotNRiskDiffOneSampSpearman),
            with(PlotNNullOneSampSpearman),
            with(PlotNAlterOneSampSpearman),
            with(PlotNullAlterOneSampSpearman)};
}

Family partial(int sided, double k) {
    const auto with_k = [=](auto f) {
        return
            [=](int nMin, int nMax, double N, auto... rest) { return f(sided, nMin, nMax, N, k, rest...); };
    };
    const auto at_N = [=](auto f) { return [=](double N, auto... rest) { return f(sided, N, k, rest...); }; };
    return {"partial",
            k,
            at_N(PowerbyOneSampPartial),
            with_k(PlotNOneSampPartial),
            at_N(PlotNullOneSampPartial),
            at_N(PlotAlterOneSampPartial),
            at_N(PlotRiskDiffOneSampPartial),
            with_k(PlotNRiskDiffOneSampPartial),
            with_k(PlotNNullOneSampPartial),
            with_k(PlotNAlterOneSampPartial),
            at_N(PlotNullAlterOneSampPartial)};
}

// The flags differ from one another and from zero, so that a mix-up would show.
std::vector<Family> families() {
    return {pearson(1, false), pearson(0, true), spearman(2, 1), spearman(0, 0), partial(1, 2)};
}

std::vector<double> points(int count, std::function<double(int)> value) {
    std::vector<double> result;
    for (int i = 0; i < count; ++i) result.push_back(value(i));
    return result;
}

// ---- Grids -----------------------------------------------------------------------------------------------

/// Counts worked out by hand from 2 / step, and from 1 / step for the half range of the surface over N and
/// the difference.
struct Count {
    double step;
    int whole_range;
    int half_range;
};
constexpr Count kCounts[] = {{0.1, 21, 11}, {0.05, 41, 21}, {0.3, 7, 5}, {0.49, 5, 4}, {0.5, 5, 3}};

TEST(CorrelationCurve, OverSizeHoldsThePowerAtEveryWholeSize) {
    for (const auto& f : families()) {
        const Curve c = take(f.over_size(6, 20, 30, 0.4, 0.1, 0.05));
        EXPECT_EQ(c.x, whole_numbers(6, 20)) << f.name;
        for (std::size_t i = 0; i < c.x.size(); ++i)
            EXPECT_EQ(c.y[i], narrowed(f.power(c.x[i], 0.4, 0.1, 0.05))) << f.name;
    }
}

TEST(CorrelationCurve, OverTheNullStepsFromMinusOneUpwards) {
    for (const auto& f : families())
        for (const auto& n : kCounts) {
            const Curve c = take(f.over_null(30, 0.4, 0.05, n.step));
            EXPECT_EQ(c.x, points(n.whole_range, [&](int i) { return i * n.step - 1; })) << f.name;
            for (std::size_t i = 0; i < c.x.size(); ++i)
                EXPECT_EQ(c.y[i], narrowed(f.power(30, 0.4, c.x[i], 0.05))) << f.name;
        }
}

TEST(CorrelationCurve, OverTheAlternativeStepsFromMinusOneUpwards) {
    for (const auto& f : families())
        for (const auto& n : kCounts) {
            const Curve c = take(f.over_alternative(30, 0.4, 0.05, n.step));
            EXPECT_EQ(c.x, points(n.whole_range, [&](int i) { return i * n.step - 1; })) << f.name;
            for (std::size_t i = 0; i < c.x.size(); ++i)
                EXPECT_EQ(c.y[i], narrowed(f.power(30, c.x[i], 0.4, 0.05))) << f.name;
        }
}

TEST(CorrelationCurve, OverTheDifferenceCoversTheWholeRange) {
    for (const auto& f : families())
        for (const auto& n : kCounts) {
            const Curve c = take(f.over_difference(30, 0.3, 0.05, n.step));
            EXPECT_EQ(c.x, points(n.whole_range, [&](int i) { return i * n.step + (-1 - 0.3); })) << f.name;
            for (std::size_t i = 0; i < c.x.size(); ++i)
                EXPECT_EQ(c.y[i], narrowed(f.power(30, c.x[i] + 0.3, 0.3, 0.05))) << f.name;
        }
}

TEST(CorrelationCurve, OverTheDifferenceHoldsMinusOneWhereRoundingCarriesTheAlternativeBeyondOne) {
    for (const auto& f : families()) {
        const Curve c = take(f.over_difference(30, -0.16, 0.05, 0.1));
        ASSERT_EQ(c.x.size(), 21u);
        ASSERT_GT(c.x.back() + -0.16, 1);
        EXPECT_EQ(c.y.back(), -1);
    }
}

TEST(CorrelationSurface, OverSizeAndDifferenceCoversTheLowerHalfOfTheDifferencesOnly) {
    for (const auto& f : families())
        for (const auto& n : kCounts) {
            const Surface s = take(f.over_size_and_difference(10, 12, 30, 0.4, 0.3, 0.05, n.step));
            EXPECT_EQ(s.x, whole_numbers(10, 12)) << f.name;
            EXPECT_EQ(s.y, points(n.half_range, [&](int j) { return j * n.step + (-1 - 0.3); })) << f.name;
            for (std::size_t i = 0; i < s.x.size(); ++i)
                for (std::size_t j = 0; j < s.y.size(); ++j)
                    EXPECT_EQ(s.z[i * s.y.size() + j], narrowed(f.power(s.x[i], s.y[j] + 0.3, 0.3, 0.05)));
            EXPECT_LE(s.y.back() + 0.3, 0.5);
        }
}

TEST(CorrelationSurface, OverSizeAndDifferenceStepsBySizesOfTwoInALongRange) {
    for (const auto& f : families()) {
        const auto sizes = [&](int nMin, int nMax) {
            return take(f.over_size_and_difference(nMin, nMax, 30, 0.4, 0.3, 0.05, 0.5)).x;
        };
        EXPECT_EQ(sizes(10, 1009), whole_numbers(10, 1009)) << f.name;  // 999 apart
        EXPECT_EQ(sizes(10, 1010), points(501, [](int i) { return 10 + 2 * i; })) << f.name;
        EXPECT_EQ(sizes(10, 2010), points(1001, [](int i) { return 10 + 2 * i; })) << f.name;
        EXPECT_EQ(sizes(10, 1011).back(), 1012) << f.name;  // passes nMax
    }
}

TEST(CorrelationSurface, OverSizeAndNullFeedsTheSecondAxisToTheNull) {
    for (const auto& f : families())
        for (const auto& n : kCounts) {
            const Surface s = take(f.over_size_and_null(10, 12, 30, 0.4, 0.3, 0.05, n.step));
            EXPECT_EQ(s.x, whole_numbers(10, 12)) << f.name;
            EXPECT_EQ(s.y, points(n.whole_range, [&](int j) { return j * n.step - 1; })) << f.name;
            for (std::size_t i = 0; i < s.x.size(); ++i)
                for (std::size_t j = 0; j < s.y.size(); ++j)
                    EXPECT_EQ(s.z[i * s.y.size() + j], narrowed(f.power(s.x[i], 0.4, s.y[j], 0.05)));
        }
}

TEST(CorrelationSurface, OverSizeAndAlternativeFeedsTheSecondAxisToTheAlternative) {
    for (const auto& f : families()) {
        const Surface s = take(f.over_size_and_alternative(10, 1211, 30, 0.4, 0.3, 0.05, 0.3));
        EXPECT_EQ(s.x, whole_numbers(10, 1211)) << f.name;  // in steps of one even here
        EXPECT_EQ(s.y, points(7, [](int j) { return j * 0.3 - 1; })) << f.name;
        for (std::size_t i = 0; i < s.x.size(); i += 97)
            for (std::size_t j = 0; j < s.y.size(); ++j)
                EXPECT_EQ(s.z[i * s.y.size() + j], narrowed(f.power(s.x[i], s.y[j], 0.3, 0.05)));
    }
}

TEST(CorrelationSurface, OverNullAndAlternativeFeedsTheOuterAxisToTheNull) {
    for (const auto& f : families()) {
        const Surface s = take(f.over_null_and_alternative(30, 0.05, 0.3));
        EXPECT_EQ(s.x, points(7, [](int i) { return i * 0.3 - 1; })) << f.name;
        EXPECT_EQ(s.y, s.x);
        for (std::size_t i = 0; i < s.x.size(); ++i)
            for (std::size_t j = 0; j < s.y.size(); ++j)
                EXPECT_EQ(s.z[i * s.y.size() + j], narrowed(f.power(30, s.y[j], s.x[i], 0.05)));
    }
}

TEST(PartialCurve, OverTheVariablesPartialledOutStartsAtNone) {
    const Curve c = take(PlotNPartialoutOneSampPartial(1, 10, 0.4, 0.1, 0.05));
    EXPECT_EQ(c.x, whole_numbers(0, 5));
    for (std::size_t i = 0; i < c.x.size(); ++i)
        EXPECT_EQ(c.y[i], narrowed(PowerbyOneSampPartial(1, 10, c.x[i], 0.4, 0.1, 0.05)));
    EXPECT_EQ(take(PlotNPartialoutOneSampPartial(1, 10.75, 0.4, 0.1, 0.05)).x, whole_numbers(0, 5));
    EXPECT_EQ(take(PlotNPartialoutOneSampPartial(1, 5, 0.4, 0.1, 0.05)).x, whole_numbers(0, 0));
}

TEST(PartialCurve, OverTheVariablesPartialledOutIsEmptyBelowASampleOfFive) {
    for (double N : {3.0, 3.5, 4.0, 4.75, -7.0, kNaN, kInfinity, 1e12})
        EXPECT_TRUE(take(PlotNPartialoutOneSampPartial(1, N, 0.4, 0.1, 0.05)).x.empty()) << N;
}

TEST(PartialCurve, OverTheVariablesPartialledOutChecksItsArguments) {
    for (double bad : {1.5, -1.5, kNaN}) {
        EXPECT_TRUE(take(PlotNPartialoutOneSampPartial(1, 10, bad, 0.1, 0.05)).x.empty());
        EXPECT_TRUE(take(PlotNPartialoutOneSampPartial(1, 10, 0.4, bad, 0.05)).x.empty());
        EXPECT_TRUE(take(PlotNPartialoutOneSampPartial(1, 10, 0.4, 0.1, bad)).x.empty());
    }
}

// ---- Checks ----------------------------------------------------------------------------------------------

/// Which of the curves and surfaces of a family come out, in the order in which Family lists them. r goes to
/// those that take it, and so on.
std::vector<bool> present(const Family& f, double N, double r, double r0, double alpha, double step) {
    return {!take(f.over_size(8, 12, N, r, r0, alpha)).x.empty(),
            !take(f.over_null(N, r, alpha, step)).x.empty(),
            !take(f.over_alternative(N, r0, alpha, step)).x.empty(),
            !take(f.over_difference(N, r0, alpha, step)).x.empty(),
            !take(f.over_size_and_difference(8, 12, N, r, r0, alpha, step)).x.empty(),
            !take(f.over_size_and_null(8, 12, N, r, r0, alpha, step)).x.empty(),
            !take(f.over_size_and_alternative(8, 12, N, r, r0, alpha, step)).x.empty(),
            !take(f.over_null_and_alternative(N, alpha, step)).x.empty()};
}

const std::vector<bool> kAll(8, true), kNone(8, false);

TEST(CorrelationCurves, CheckTheSampleSizeEvenWhereTheyVaryIt) {
    for (const auto& f : families()) {
        EXPECT_EQ(present(f, std::nextafter(3 + f.k, 10.0), 0.3, 0.1, 0.05, 0.5), kAll) << f.name;
        for (double N : {3 + f.k, -1.0, kNaN}) EXPECT_EQ(present(f, N, 0.3, 0.1, 0.05, 0.5), kNone) << f.name;
    }
    for (double k : {-1e-9, -1.0, kNaN}) EXPECT_EQ(present(partial(1, k), 20, 0.3, 0.1, 0.05, 0.5), kNone);
}

TEST(CorrelationCurves, CheckTheCorrelationsThatTheyTake) {
    for (const auto& f : families())
        for (double beyond : {std::nextafter(1.0, 2.0), -1.1, kNaN}) {
            EXPECT_EQ(present(f, 20, beyond, 0.1, 0.05, 0.5),
                      std::vector<bool>({false, false, true, true, false, false, false, true}));
            EXPECT_EQ(present(f, 20, 0.3, beyond, 0.05, 0.5),
                      std::vector<bool>({false, true, false, false, false, false, false, true}));
        }
    for (const auto& f : families()) EXPECT_EQ(present(f, 20, 1, -1, 0.05, 0.5), kAll);
}

TEST(CorrelationCurves, CheckAlpha) {
    for (const auto& f : families())
        for (double alpha : {0.0, 1.0, -1.0, kNaN}) EXPECT_EQ(present(f, 20, 0.3, 0.1, alpha, 0.5), kNone);
}

TEST(CorrelationCurves, RefuseAStepAboveOneHalf) {
    const std::vector<bool> without_step = {true, false, false, false, false, false, false, false};
    for (const auto& f : families())
        for (double step : {std::nextafter(0.5, 1.0), 1.0, kInfinity, kNaN})
            EXPECT_EQ(present(f, 20, 0.3, 0.1, 0.05, step), without_step);
}

TEST(CorrelationCurves, AreEmptyForAStepThatGivesNoWholeNumberOfPoints) {
    const std::vector<bool> without_step = {true, false, false, false, false, false, false, false};
    for (const auto& f : families())
        for (double step : {0.0, -0.0, -0.1, -1e300, 1e-300, 1e-10, -kInfinity})
            EXPECT_EQ(present(f, 20, 0.3, 0.1, 0.05, step), without_step) << step;
}

TEST(CorrelationCurves, OfAnUnknownSpearmanMethodHoldMinusOne) {
    const Family f = spearman(5, 0);
    EXPECT_EQ(take(f.over_size(4, 6, 20, 0.3, 0.1, 0.05)).y, std::vector<double>(3, -1));
    EXPECT_EQ(take(f.over_null(20, 0.3, 0.05, 0.5)).y, std::vector<double>(5, -1));
    EXPECT_EQ(take(f.over_null_and_alternative(20, 0.05, 0.5)).z, std::vector<double>(25, -1));
    const Surface defaulted = take(f.over_size_and_null(0, 0, 20, 0.3, 0.1, 0.05, 0.5));
    EXPECT_EQ(defaulted.x, whole_numbers(40, 60));  // (1 - -1) 20 to (2 - -1) 20
    EXPECT_EQ(defaulted.z, std::vector<double>(21 * 5, -1));
}

// ---- Ranges of the sample size ---------------------------------------------------------------------------

/// First and last sample size of a curve or surface; nothing for the empty result.
using Ends = std::vector<double>;

Ends ends(const std::vector<double>& x) {
    return x.empty() ? Ends() : Ends{x.front(), x.back()};
}

enum Member { kOverSize, kDifference, kNull, kAlternative };

Ends range(const Family& f, Member member, int nMin, int nMax) {
    if (member == kOverSize) return ends(take(f.over_size(nMin, nMax, 30, 0.4, 0.1, 0.05)).x);
    const auto& surface = member == kDifference ? f.over_size_and_difference
                          : member == kNull     ? f.over_size_and_null
                                                : f.over_size_and_alternative;
    return ends(take(surface(nMin, nMax, 30, 0.4, 0.1, 0.05, 0.5)).x);
}

TEST(PearsonRange, HasNoDefaultAndTakesZeroLiterally) {
    const Family f = pearson(1, true);
    for (Member member : {kOverSize, kNull, kAlternative}) {
        EXPECT_EQ(range(f, member, 0, 8), Ends({0, 8}));
        EXPECT_EQ(range(f, member, -3, 0), Ends({-3, 0}));
        EXPECT_EQ(range(f, member, 0, -1), Ends());
    }
    const Curve c = take(f.over_size(0, 4, 30, 0.4, 0.1, 0.05));
    EXPECT_EQ(std::vector<double>(c.y.begin(), c.y.end() - 1), std::vector<double>(4, -1));
    EXPECT_GE(c.y.back(), 0);
}

TEST(PearsonRange, RefusesASmallestSizeOfOneToThreeALargestAboveFiveThousandAndAReversedRange) {
    const Family f = pearson(1, true);
    for (Member member : {kOverSize, kNull, kAlternative}) {
        for (int nMin : {1, 2, 3}) EXPECT_EQ(range(f, member, nMin, 10), Ends());
        EXPECT_EQ(range(f, member, 4, 10), Ends({4, 10}));
        EXPECT_EQ(range(f, member, 4990, 5000), Ends({4990, 5000}));
        EXPECT_EQ(range(f, member, 4990, 5001), Ends());
        EXPECT_EQ(range(f, member, 10, 9), Ends());
        EXPECT_EQ(range(f, member, std::numeric_limits<int>::min(), 5000), Ends());  // too many to count
    }
}

TEST(PearsonRange, OfASingleSizeIsRefusedExceptForZeroInTheSurfacesOverACorrelation) {
    const Family f = pearson(1, true);
    EXPECT_EQ(range(f, kOverSize, 10, 10), Ends());
    EXPECT_EQ(range(f, kOverSize, 0, 0), Ends());
    for (Member member : {kNull, kAlternative}) {
        EXPECT_EQ(range(f, member, 10, 10), Ends());
        EXPECT_EQ(range(f, member, 0, 0), Ends({0, 0}));
    }
}

TEST(StrictRange, OfTheSizeAndDifferenceSurfacesAndTheSpearmanCurveHasNoDefault) {
    const auto check = [](const Family& f, Member member) {
        EXPECT_EQ(range(f, member, 4, 5), Ends({4, 5}));
        EXPECT_EQ(range(f, member, 4990, 5000), Ends({4990, 5000}));
        for (int nMin : {3, 2, 1, 0, -4}) EXPECT_EQ(range(f, member, nMin, 10), Ends());
        EXPECT_EQ(range(f, member, 10, 10), Ends());
        EXPECT_EQ(range(f, member, 10, 9), Ends());
        EXPECT_EQ(range(f, member, 10, 0), Ends());
        EXPECT_EQ(range(f, member, 0, 0), Ends());
        EXPECT_EQ(range(f, member, 4990, 5001), Ends());
    };
    check(pearson(1, true), kDifference);
    check(spearman(0, 1), kDifference);
    check(spearman(0, 1), kOverSize);
}

TEST(SpearmanRange, OfTheSurfacesOverACorrelationDefaultsWhereAnEndIsZero) {
    const Family f = spearman(0, 1);
    const double power = f.power(30, 0.4, 0.1, 0.05);
    const Ends expected = {std::max(4.0, std::floor((1 - power) * 30)), std::ceil((2 - power) * 30)};
    for (Member member : {kNull, kAlternative}) {
        EXPECT_EQ(range(f, member, 0, 0), expected);
        EXPECT_EQ(range(f, member, 0, 100), expected);
        EXPECT_EQ(range(f, member, 0, -3), expected);
        EXPECT_EQ(range(f, member, 10, 0), expected);
        EXPECT_EQ(range(f, member, -5, 0), expected);
    }
}

TEST(SpearmanRange, OfTheSurfacesOverACorrelationIsOtherwiseLiteral) {
    const Family f = spearman(0, 1);
    for (Member member : {kNull, kAlternative}) {
        EXPECT_EQ(range(f, member, 10, 10), Ends({10, 10}));
        EXPECT_EQ(range(f, member, -2, 5), Ends({-2, 5}));
        EXPECT_EQ(range(f, member, 10, 9), Ends());
        EXPECT_EQ(range(f, member, 10, 8), Ends());
        for (int nMin : {1, 2, 3})
            for (int nMax : {0, 10}) EXPECT_EQ(range(f, member, nMin, nMax), Ends());
        EXPECT_EQ(range(f, member, 4999, 5001), Ends());
        EXPECT_EQ(range(f, member, 0, 5001), Ends());
    }
}

TEST(SpearmanRange, DefaultIsNeverBelowFour) {
    int nMin = 0, nMax = 0;
    POWER_NAMESPACE::_SetPlotRangeN(4.5, 1.0, 0.0, 0, 0, 0.05, nMin, nMax);  // power 1
    EXPECT_EQ(nMin, 4);
    EXPECT_EQ(nMax, 5);
    POWER_NAMESPACE::_SetPlotRangeN(30, 0.4, 0.1, 2, 1, 0.05, nMin, nMax);
    const double power = PowerbyOneSampSpearman(2, 1, 30, 0.4, 0.1, 0.05);
    EXPECT_EQ(nMin, std::floor((1 - power) * 30));
    EXPECT_EQ(nMax, std::ceil((2 - power) * 30));
}

TEST(PartialRange, DefaultsWhereAnEndIsZeroInEveryMember) {
    const Family f = partial(1, 2);
    for (Member member : {kOverSize, kDifference, kNull, kAlternative}) {
        EXPECT_EQ(range(f, member, 0, 0), Ends({6, 5002}));
        EXPECT_EQ(range(f, member, 0, 100), Ends({6, 5002}));
    }
    EXPECT_EQ(range(partial(1, 2.75), kOverSize, 0, 0), Ends({6, 5002}));  // k truncated
}

TEST(PartialRange, IsCheckedAgainstTheVariablesPartialledOut) {
    const Family f = partial(1, 2);
    for (Member member : {kOverSize, kDifference, kNull, kAlternative}) {
        EXPECT_EQ(range(f, member, 6, 7), Ends({6, 7}));
        EXPECT_EQ(range(f, member, 5, 7), Ends());
        EXPECT_EQ(range(f, member, -1, 7), Ends());
        EXPECT_EQ(range(f, member, 10, 10), Ends());
        EXPECT_EQ(range(f, member, 10, 9), Ends());
        EXPECT_EQ(range(f, member, 10, 0), Ends());  // reversed, before the default
        EXPECT_EQ(range(f, member, 0, -1), Ends());
        EXPECT_EQ(range(f, member, 4990, 5002), Ends({4990, 5002}));
        EXPECT_EQ(range(f, member, 4990, 5003), Ends());
        EXPECT_EQ(range(f, member, 0, 5003), Ends());
    }
    EXPECT_EQ(range(partial(1, 2.5), kOverSize, 6, 8), Ends());
    EXPECT_EQ(range(partial(1, 2.5), kOverSize, 7, 8), Ends({7, 8}));
}

TEST(PartialRange, OfTooManyVariablesForAnIntIsDefined) {
    int nMin = 0, nMax = 0;
    for (double k : {1e10, kInfinity}) {
        POWER_NAMESPACE::_SetPlotRangeN(20, k, 0.3, 0.0, 1, 0.05, nMin, nMax);
        EXPECT_EQ(nMin, std::numeric_limits<int>::max());
        EXPECT_EQ(nMax, std::numeric_limits<int>::max());
    }
}

}  // namespace
