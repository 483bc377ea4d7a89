// Power curves and surfaces of the tests of a correlation. A test is its flags, its power and the sample
// sizes that it allows; the shapes of the curves are the same for all.
#include <cmath>
#include <optional>

#include "core/checks.h"
#include "core/curves.h"
#include "core/integers.h"
#include "correlation/correlation.h"
#include "correlation/fisher_z.h"
#include "statpower/correlation.h"

using namespace statpower;

namespace {

/// A sample size, the alternative and the null correlation, and a level.
struct Setting {
    double N;
    double r;
    double r0;
    double alpha;
};

struct Pearson {
    int sided;
    bool bias;

    bool allows(double N) const { return N > 3; }
    double power(double N, double r, double r0, double alpha) const {
        return to_single(PowerbyOneSampPearson(sided, bias, N, r, r0, alpha));
    }
};

struct Spearman {
    int method;
    int sided;

    bool allows(double N) const { return N > 3; }
    double power(double N, double r, double r0, double alpha) const {
        return to_single(PowerbyOneSampSpearman(method, sided, N, r, r0, alpha));
    }
};

struct Partial {
    int sided;
    double k;

    bool allows(double N) const { return k >= 0 && N > k + 3; }
    double power(double N, double r, double r0, double alpha) const {
        return to_single(PowerbyOneSampPartial(sided, N, k, r, r0, alpha));
    }
};

// ---- Axes ------------------------------------------------------------------------------------------------

/// The whole range of a correlation, from -1 upwards.
Axis correlations(double step) {
    return multiples(std::trunc(2 / step) + 1, -1, step);
}

double width_of_differences(double r0) {
    return (1 - r0) - (-1 - r0);
}

/// The whole range of r - r0, from r = -1 upwards.
Axis differences(double r0, double step) {
    return multiples(std::trunc(width_of_differences(r0) / step) + 1, -1 - r0, step);
}

/// The lower half of the range of r - r0: as many points as steps of that fraction of the width need, but
/// laid out with the plain step.
Axis lower_differences(double r0, double step) {
    const double width = width_of_differences(r0);
    return multiples(std::ceil(width / (width * step)) + 1, -1 - r0, step);
}

// ---- Ranges of the sample size: nothing where nMin and nMax are refused ----------------------------------

using Range = std::optional<SampleSizeRange>;

constexpr int kLargestSize = 5000;

Axis sizes(const SampleSizeRange& range) {
    return sample_sizes(range.min, range.max);
}

bool is_too_small(int nMin) {
    return nMin >= 1 && nMin <= 3;
}

/// Both ends as they are, and at least two sizes that the tests allow.
Range strict_range(int nMin, int nMax) {
    if (nMin < 4 || nMax <= nMin || nMax > kLargestSize) return {};
    return {{nMin, nMax}};
}

/// Pearson: no default, a range that starts at 0 is meant.
Range pearson_range(int nMin, int nMax) {
    if (nMax > kLargestSize || nMax < nMin || is_too_small(nMin)) return {};
    return {{nMin, nMax}};
}

Range pearson_curve_range(int nMin, int nMax) {
    return nMin != nMax ? pearson_range(nMin, nMax) : std::nullopt;
}

Range pearson_surface_range(int nMin, int nMax) {
    return nMin != nMax || nMin == 0 ? pearson_range(nMin, nMax) : std::nullopt;
}

Range spearman_range(const Spearman& test, int nMin, int nMax, const Setting& d) {
    if (is_too_small(nMin) || nMax > kLargestSize) return {};
    if (nMin == 0 || nMax == 0)
        POWER_NAMESPACE::_SetPlotRangeN(d.N, d.r, d.r0, test.method, test.sided, d.alpha, nMin, nMax);
    return {{nMin, nMax}};
}

Range partial_range(const Partial& test, int nMin, int nMax, const Setting& d) {
    if (nMin > nMax || (nMin != 0 && (nMin == nMax || nMin < test.k + 4)) || nMax > test.k + kLargestSize)
        return {};
    if (nMin == 0 || nMax == 0)
        POWER_NAMESPACE::_SetPlotRangeN(d.N, test.k, d.r, d.r0, test.sided, d.alpha, nMin, nMax);
    return {{nMin, nMax}};
}

// ---- Curves ----------------------------------------------------------------------------------------------

template <class Test>
bool is_valid(const Test& test, double N, double alpha) {
    return test.allows(N) && is_inside_unit_interval(alpha);
}

/// Both correlations are checked, even where the curve varies one of them.
template <class Test>
bool is_valid(const Test& test, const Setting& d) {
    return is_valid(test, d.N, d.alpha) && is_correlation(d.r) && is_correlation(d.r0);
}

template <class Test>
XYPlot over_size(const Test& test, const Range& range, const Setting& d) {
    if (!(range && is_valid(test, d))) return {};
    return curve(sizes(*range), [&](double N) { return test.power(N, d.r, d.r0, d.alpha); });
}

template <class Test>
XYPlot over_null(const Test& test, double N, double r, double alpha, double step) {
    if (!(is_valid(test, N, alpha) && is_correlation(r) && is_grid_step(step))) return {};
    return curve(correlations(step), [&](double r0) { return test.power(N, r, r0, alpha); });
}

template <class Test>
XYPlot over_alternative(const Test& test, double N, double r0, double alpha, double step) {
    if (!(is_valid(test, N, alpha) && is_correlation(r0) && is_grid_step(step))) return {};
    return curve(correlations(step), [&](double r) { return test.power(N, r, r0, alpha); });
}

template <class Test>
XYPlot over_difference(const Test& test, double N, double r0, double alpha, double step) {
    if (!(is_valid(test, N, alpha) && is_correlation(r0) && is_grid_step(step))) return {};
    return curve(differences(r0, step), [&](double d) { return test.power(N, d + r0, r0, alpha); });
}

// ---- Surfaces --------------------------------------------------------------------------------------------

template <class Test>
XYZPlot over_size_and_difference(const Test& test, const Range& range, const Setting& d, double step) {
    if (!(range && is_valid(test, d) && is_grid_step(step))) return {};
    return surface(surface_sample_sizes(range->min, range->max), lower_differences(d.r0, step),
                   [&](double N, double y) { return test.power(N, y + d.r0, d.r0, d.alpha); });
}

template <class Test>
XYZPlot over_size_and_null(const Test& test, const Range& range, const Setting& d, double step) {
    if (!(range && is_valid(test, d) && is_grid_step(step))) return {};
    return surface(sizes(*range), correlations(step),
                   [&](double N, double r0) { return test.power(N, d.r, r0, d.alpha); });
}

template <class Test>
XYZPlot over_size_and_alternative(const Test& test, const Range& range, const Setting& d, double step) {
    if (!(range && is_valid(test, d) && is_grid_step(step))) return {};
    return surface(sizes(*range), correlations(step),
                   [&](double N, double r) { return test.power(N, r, d.r0, d.alpha); });
}

/// The first axis is the null correlation, the second the alternative.
template <class Test>
XYZPlot over_null_and_alternative(const Test& test, double N, double alpha, double step) {
    if (!(is_valid(test, N, alpha) && is_grid_step(step))) return {};
    const Axis axis = correlations(step);
    return surface(axis, axis, [&](double r0, double r) { return test.power(N, r, r0, alpha); });
}

}  // namespace

namespace POWER_NAMESPACE {

void _SetPlotRangeN(double N, double k, double r, double r0, int sided, double alpha, int& nMin, int& nMax) {
    // As for the other tests, though the range is the same for every power
    // (CorrelationCalls.ThePartialDefaultRangeEvaluatesThePowerAndDiscardsIt).
    static_cast<void>(PowerbyOneSampPartial(sided, N, k, r, r0, alpha));
    nMin = to_int(std::trunc(k) + 4);
    nMax = to_int(std::trunc(k) + kLargestSize);
}

void _SetPlotRangeN(double N, double r, double r0, int method, int sided, double alpha, int& nMin,
                    int& nMax) {
    const auto range = default_range(PowerbyOneSampSpearman(method, sided, N, r, r0, alpha), N, 4);
    nMin = range.min;
    nMax = range.max;
}

}  // namespace POWER_NAMESPACE

// ---- Pearson ---------------------------------------------------------------------------------------------

XYPlot PlotNOneSampPearson(int sided, bool bias, int nMin, int nMax, double N, double r, double r0,
                           double alpha) {
    return over_size(Pearson{sided, bias}, pearson_curve_range(nMin, nMax), {N, r, r0, alpha});
}

XYPlot PlotNullOneSampPearson(int sided, bool bias, double N, double r, double alpha, double step) {
    return over_null(Pearson{sided, bias}, N, r, alpha, step);
}

XYPlot PlotAlterOneSampPearson(int sided, bool bias, double N, double r0, double alpha, double step) {
    return over_alternative(Pearson{sided, bias}, N, r0, alpha, step);
}

XYPlot PlotRiskDiffOneSampPearson(int sided, bool bias, double N, double r0, double alpha, double step) {
    return over_difference(Pearson{sided, bias}, N, r0, alpha, step);
}

XYZPlot PlotNRiskDiffOneSampPearson(int sided, bool bias, int nMin, int nMax, double N, double r, double r0,
                                    double alpha, double step) {
    return over_size_and_difference(Pearson{sided, bias}, strict_range(nMin, nMax), {N, r, r0, alpha}, step);
}

XYZPlot PlotNNullOneSampPearson(int sided, bool bias, int nMin, int nMax, double N, double r, double r0,
                                double alpha, double step) {
    return over_size_and_null(Pearson{sided, bias}, pearson_surface_range(nMin, nMax), {N, r, r0, alpha},
                              step);
}

XYZPlot PlotNAlterOneSampPearson(int sided, bool bias, int nMin, int nMax, double N, double r, double r0,
                                 double alpha, double step) {
    return over_size_and_alternative(Pearson{sided, bias}, pearson_surface_range(nMin, nMax),
                                     {N, r, r0, alpha}, step);
}

XYZPlot PlotNullAlterOneSampPearson(int sided, bool bias, double N, double alpha, double step) {
    return over_null_and_alternative(Pearson{sided, bias}, N, alpha, step);
}

// ---- Spearman --------------------------------------------------------------------------------------------

XYPlot PlotNOneSampSpearman(int method, int sided, int nMin, int nMax, double N, double r, double r0,
                            double alpha) {
    return over_size(Spearman{method, sided}, strict_range(nMin, nMax), {N, r, r0, alpha});
}

XYPlot PlotNullOneSampSpearman(int method, int sided, double N, double r, double alpha, double step) {
    return over_null(Spearman{method, sided}, N, r, alpha, step);
}

XYPlot PlotAlterOneSampSpearman(int method, int sided, double N, double r0, double alpha, double step) {
    return over_alternative(Spearman{method, sided}, N, r0, alpha, step);
}

XYPlot PlotRiskDiffOneSampSpearman(int method, int sided, double N, double r0, double alpha, double step) {
    return over_difference(Spearman{method, sided}, N, r0, alpha, step);
}

XYZPlot PlotNRiskDiffOneSampSpearman(int method, int sided, int nMin, int nMax, double N, double r, double r0,
                                     double alpha, double step) {
    return over_size_and_difference(Spearman{method, sided}, strict_range(nMin, nMax), {N, r, r0, alpha},
                                    step);
}

XYZPlot PlotNNullOneSampSpearman(int method, int sided, int nMin, int nMax, double N, double r, double r0,
                                 double alpha, double step) {
    return over_size_and_null(Spearman{method, sided},
                              spearman_range({method, sided}, nMin, nMax, {N, r, r0, alpha}),
                              {N, r, r0, alpha}, step);
}

XYZPlot PlotNAlterOneSampSpearman(int method, int sided, int nMin, int nMax, double N, double r, double r0,
                                  double alpha, double step) {
    return over_size_and_alternative(Spearman{method, sided},
                                     spearman_range({method, sided}, nMin, nMax, {N, r, r0, alpha}),
                                     {N, r, r0, alpha}, step);
}

XYZPlot PlotNullAlterOneSampSpearman(int method, int sided, double N, double alpha, double step) {
    return over_null_and_alternative(Spearman{method, sided}, N, alpha, step);
}

// ---- Partial correlation ---------------------------------------------------------------------------------

XYPlot PlotNOneSampPartial(int sided, int nMin, int nMax, double N, double k, double r, double r0,
                           double alpha) {
    return over_size(Partial{sided, k}, partial_range({sided, k}, nMin, nMax, {N, r, r0, alpha}),
                     {N, r, r0, alpha});
}

XYPlot PlotNPartialoutOneSampPartial(int sided, double N, double r, double r0, double alpha) {
    if (!(N > 3 && is_correlation(r) && is_correlation(r0) && is_inside_unit_interval(alpha))) return {};
    return curve(multiples(std::trunc(N) - 4, 0, 1), [&](double k) {
        return Partial{sided, k}.power(N, r, r0, alpha);
    });
}

XYPlot PlotNullOneSampPartial(int sided, double N, double k, double r, double alpha, double step) {
    return over_null(Partial{sided, k}, N, r, alpha, step);
}

XYPlot PlotAlterOneSampPartial(int sided, double N, double k, double r0, double alpha, double step) {
    return over_alternative(Partial{sided, k}, N, r0, alpha, step);
}

XYPlot PlotRiskDiffOneSampPartial(int sided, double N, double k, double r0, double alpha, double step) {
    return over_difference(Partial{sided, k}, N, r0, alpha, step);
}

XYZPlot PlotNRiskDiffOneSampPartial(int sided, int nMin, int nMax, double N, double k, double r, double r0,
                                    double alpha, double step) {
    return over_size_and_difference(
        Partial{sided, k}, partial_range({sided, k}, nMin, nMax, {N, r, r0, alpha}), {N, r, r0, alpha}, step);
}

XYZPlot PlotNNullOneSampPartial(int sided, int nMin, int nMax, double N, double k, double r, double r0,
                                double alpha, double step) {
    return over_size_and_null(Partial{sided, k}, partial_range({sided, k}, nMin, nMax, {N, r, r0, alpha}),
                              {N, r, r0, alpha}, step);
}

XYZPlot PlotNAlterOneSampPartial(int sided, int nMin, int nMax, double N, double k, double r, double r0,
                                 double alpha, double step) {
    return over_size_and_alternative(
        Partial{sided, k}, partial_range({sided, k}, nMin, nMax, {N, r, r0, alpha}), {N, r, r0, alpha}, step);
}

XYZPlot PlotNullAlterOneSampPartial(int sided, double N, double k, double alpha, double step) {
    return over_null_and_alternative(Partial{sided, k}, N, alpha, step);
}
