#include "proportions/one/curves.h"

#include "core/curves.h"
#include "proportions/proportion.h"
#include "statpower/one_sample_binomial.h"

using namespace statpower;

namespace {

/// The test whose power is drawn.
struct DrawnTest {
    int method;
    int sides;
    bool continuity_correction;
    double alpha;

    double power(double N, double p1, double p0) const {
        return to_single(PowerOneSampBinom(N, p1, p0, alpha, method, sides, continuity_correction, nullptr));
    }
};

bool is_drawable(const DrawnTest& test, double N) {
    return is_between_0_and_1(test.alpha) && N >= 1;
}

bool is_range(int nMin, int nMax) {
    constexpr int kLargest = 5000;
    return nMax <= kLargest && nMin >= 0 && (nMin < nMax || (nMin == 0 && nMax == 0));
}

/// The sample sizes of a surface: as passed where neither end is 0, else the default range around (N, p1,
/// p0).
Axis surface_sizes(const DrawnTest& test, int nMin, int nMax, double N, double p1, double p0) {
    if (nMin == 0 || nMax == 0)
        POWER_NAMESPACE::_SetPlotRangeN(N, p1, p0, test.method, test.sides, test.alpha, nMin, nMax,
                                        test.continuity_correction);
    else if (!is_range(nMin, nMax))
        return {};
    return sample_sizes(nMin, nMax);
}

bool is_surface(const DrawnTest& test, double N, double p1, double p0, double step) {
    return is_drawable(test, N) && is_proportion(p1) && is_proportion(p0) && is_grid_step(step);
}

}  // namespace

void POWER_NAMESPACE::_SetPlotRangeN(double N, double p1, double p0, int method, int sides, double alpha,
                                     int& nMin, int& nMax, bool continuityCorrection) {
    const double power = PowerOneSampBinom(N, p1, p0, alpha, method, sides, continuityCorrection, nullptr);
    const SampleSizeRange range = default_range(power, N, 1);
    nMin = range.min;
    nMax = range.max;
}

XYPlot PlotNOneSampBinom(int method, int sides, int nMin, int nMax, bool continuityCorrection, double N,
                         double p1, double p0, double alpha) {
    const DrawnTest test{method, sides, continuityCorrection, alpha};
    if (!(is_drawable(test, N) && is_proportion(p1) && is_proportion(p0) && is_range(nMin, nMax))) return {};
    return curve(sample_sizes(nMin, nMax), [&](double n) { return test.power(n, p1, p0); });
}

XYPlot PlotNullOneSampBinom(int method, int sides, bool continuityCorrection, double N, double p1,
                            double alpha, double step) {
    const DrawnTest test{method, sides, continuityCorrection, alpha};
    if (!(is_drawable(test, N) && is_proportion(p1) && is_grid_step(step))) return {};
    return curve(proportion_grid(step), [&](double p0) { return test.power(N, p1, p0); });
}

XYPlot PlotAlterOneSampBinom(int method, int sides, bool continuityCorrection, double N, double p0,
                             double alpha, double step) {
    const DrawnTest test{method, sides, continuityCorrection, alpha};
    if (!(is_drawable(test, N) && is_proportion(p0) && is_grid_step(step))) return {};
    return curve(proportion_grid(step), [&](double p1) { return test.power(N, p1, p0); });
}

XYPlot PlotRiskDiffOneSampBionm(int method, int sides, bool continuityCorrection, double N, double p0,
                                double alpha, double step) {
    const DrawnTest test{method, sides, continuityCorrection, alpha};
    if (!(is_drawable(test, N) && is_proportion(p0) && is_grid_step(step))) return {};
    return curve(proportion_grid(step, p0), [&](double d) { return test.power(N, d + p0, p0); });
}

XYZPlot PlotNRiskDiffOneSampBinom(int method, int sides, int nMin, int nMax, bool continuityCorrection,
                                  double N, double p1, double p0, double alpha, double step) {
    const DrawnTest test{method, sides, continuityCorrection, alpha};
    if (!is_surface(test, N, p1, p0, step)) return {};
    return surface(surface_sizes(test, nMin, nMax, N, p1, p0), proportion_grid(step, p0),
                   [&](double n, double d) { return test.power(n, d + p0, p0); });
}

XYZPlot PlotNNullOneSampBinom(int method, int sides, int nMin, int nMax, bool continuityCorrection, double N,
                              double p1, double p0, double alpha, double step) {
    const DrawnTest test{method, sides, continuityCorrection, alpha};
    if (!is_surface(test, N, p1, p0, step)) return {};
    return surface(surface_sizes(test, nMin, nMax, N, p1, p0), proportion_grid(step),
                   [&](double n, double null) { return test.power(n, p1, null); });
}

XYZPlot PlotNAlterOneSampBinom(int method, int sides, int nMin, int nMax, bool continuityCorrection, double N,
                               double p1, double p0, double alpha, double step) {
    const DrawnTest test{method, sides, continuityCorrection, alpha};
    if (!is_surface(test, N, p1, p0, step)) return {};
    return surface(surface_sizes(test, nMin, nMax, N, p1, p0), proportion_grid(step),
                   [&](double n, double alternative) { return test.power(n, alternative, p0); });
}

XYZPlot PlotNullAlterOneSampBinom(int method, int sides, bool continuityCorrection, double N, double alpha,
                                  double step) {
    const DrawnTest test{method, sides, continuityCorrection, alpha};
    if (!(is_drawable(test, N) && is_grid_step(step))) return {};
    const Axis grid = proportion_grid(step);
    return surface(grid, grid, [&](double p0, double p1) { return test.power(N, p1, p0); });
}
