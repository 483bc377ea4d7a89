// Two independent proportions: power curves and surfaces.
#include <algorithm>
#include <cmath>

#include "core/curves.h"
#include "core/integers.h"
#include "proportions/two/design.h"
#include "statpower/independent_binomial.h"

using namespace statpower;

namespace {

/// The test of a curve.
struct DrawnTest {
    int method;
    int test;
    int sides;
    bool continuity_correction;
    bool pooled;

    double power(double n1, double n2, double p1, double p2, double alpha) const {
        return to_single(PowerIndSampBinom(n1, n2, p1, p2, alpha, method, test, sides, continuity_correction,
                                           pooled, nullptr));
    }

    bool is_arcsine() const { return method == STATPOWER_NORMAL_APPROXIMATION && test == STATPOWER_FISHER; }
};

bool are_group_sizes(double n1, double n2) {
    return is_group_size(n1) && is_group_size(n2);
}

/// Smallest proportion left to move half an observation into: of group 1 below p1 or above it, of group 2 the
/// other way.
double room1(double p1, double p2) {
    return p2 <= p1 ? p1 : 1 - p1;
}
double room2(double p1, double p2) {
    return p2 <= p1 ? 1 - p2 : p2;
}

/// Allocation ratios n2 / n1 of a total N.
Axis ratio_axis(const DrawnTest& test, double N, double p1, double p2, double r_min, double r_max,
                double step) {
    const double smallest = 1 / (N - 1);
    const double points = std::ceil(1 / step);
    if (r_min != 0 && r_max != 0) {
        const double low = std::max(r_min, smallest);
        return multiples_to(points + 1, low, (r_max - low) * step, r_max);
    }
    double low = smallest;
    double high = N - 1;
    if (test.is_arcsine()) {
        low = std::max(1 / (2 * N * (p1 > p2 ? 1 - p2 : p2) - 1), smallest);
        high = std::min(2 * N * (p2 < p1 ? p1 : 1 - p1) - 1, N - 1);
    }
    const double d = (high - low) * step;
    return axis(points - 1, [=](double i) { return low + (i + 1) * d; });
}

/// Group sizes from lowest to highest, about 250 at most up to a span of 1000.
Axis size_axis(int lowest, int highest) {
    const double span = static_cast<double>(highest) - lowest;
    if (span < 250) return multiples_to(span + 1, lowest, 1, highest);
    if (span <= 1000) return multiples_to(std::ceil(0.2 * span) + 1, lowest, 5, highest);
    return multiples_to(std::ceil(0.1 * span) + 1, lowest, 10, highest);
}

/// Bounds of a size axis that chooses what the caller left open.
void choose_bounds(int& lowest, int& highest, double room, double n) {
    if (lowest == 0 || lowest == 2) lowest = to_int(std::ceil(0.5 / room));
    if (highest == 0 || highest == 2500) highest = to_int(std::trunc(n) + lowest);
}

}  // namespace

XYZPlot PlotPropIndSampBinom(int method, int test, int sides, bool continuityCorrection, bool pooled,
                             double n1, double n2, double p1, double p2, double alpha, double step) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha) && is_grid_step(step))) return {};
    const DrawnTest t{method, test, sides, continuityCorrection, pooled};
    const Axis proportions = axis(std::trunc(1 / step) - 1, [=](double i) { return (i + 1) * step; });
    return surface(proportions, proportions,
                   [&](double x, double y) { return t.power(n1, n2, x, y, alpha); });
}

XYPlot PlotRiskDiffIndSampBinom(int method, int test, int sides, bool continuityCorrection, bool pooled,
                                double n1, double n2, double p1, double alpha, double step) {
    if (!(are_group_sizes(n1, n2) && is_between_0_and_1(p1) && is_between_0_and_1(alpha) &&
          is_grid_step(step)))
        return {};
    const DrawnTest t{method, test, sides, continuityCorrection, pooled};
    const Axis differences =
        axis(std::trunc(1 / step + 0.5) - 1, [=](double i) { return (i + 1) * step + (p1 - 1); });
    return curve(differences, [&](double x) { return t.power(n1, n2, p1, p1 - x, alpha); });
}

XYPlot PlotRiskRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection, bool pooled,
                                 double n1, double n2, double p1, double alpha, double rMin, double rMax,
                                 double step) {
    if (!(are_group_sizes(n1, n2) && is_between_0_and_1(p1) && is_between_0_and_1(alpha) &&
          is_grid_step(step)))
        return {};
    if (!((rMin == 0 || p1 < rMin) && rMin <= rMax && rMax <= 10)) return {};
    const DrawnTest t{method, test, sides, continuityCorrection, pooled};
    const double d = (rMax - rMin) * step;
    const double start = rMin == 0 ? d + p1 : rMin;
    return curve(multiples(std::floor((rMax - start) / d) + 1, start, d),
                 [&](double x) { return t.power(n1, n2, p1, p1 / x, alpha); });
}

XYPlot PlotOddsRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection, bool pooled,
                                 double n1, double n2, double p1, double alpha, double rMin, double rMax,
                                 double step) {
    if (!(are_group_sizes(n1, n2) && is_between_0_and_1(p1) && is_between_0_and_1(alpha) &&
          is_grid_step(step)))
        return {};
    if (!((rMin == 0 || rMin >= 0.1) && rMin <= rMax && rMax <= 10)) return {};
    const DrawnTest t{method, test, sides, continuityCorrection, pooled};
    const double start = rMin == 0 ? 1.0 / 3 : rMin;
    const double range = rMax - start;
    const double d = step * range;
    return curve(multiples(std::floor(range / d) + 1, start, d),
                 [&](double x) { return t.power(n1, n2, p1, p1 / ((1 - p1) * x + p1), alpha); });
}

XYPlot PlotNRatioIndSampBinom(int method, int test, int sides, bool continuityCorrection, bool pooled,
                              double N, double p1, double p2, double alpha, double rMin, double rMax,
                              double step) {
    if (!(N >= 2 && is_between_0_and_1(p1) && is_between_0_and_1(p2) && is_between_0_and_1(alpha) &&
          is_grid_step(step)))
        return {};
    if (!((rMin == 0 || rMin >= 1 / (N - 1)) && rMax <= N - 1 && rMin <= rMax)) return {};
    const DrawnTest t{method, test, sides, continuityCorrection, pooled};
    return curve(ratio_axis(t, N, p1, p2, rMin, rMax, step),
                 [&](double x) { return t.power(N / (x + 1), x * N / (x + 1), p1, p2, alpha); });
}

XYZPlot PlotNIndSampBinom(int method, int test, int sides, bool continuityCorrection, bool pooled, int nMin1,
                          int nMax1, int nMin2, int nMax2, double n1, double n2, double p1, double p2,
                          double alpha) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha))) return {};
    if (nMin1 > nMax1 || nMin2 > nMax2) return {};
    const DrawnTest t{method, test, sides, continuityCorrection, pooled};
    const auto is_lowest = [&](int n) { return n == 0 || n >= 2 || t.is_arcsine(); };
    if (!(is_lowest(nMin1) && is_lowest(nMin2))) return {};
    if (t.is_arcsine()) {
        choose_bounds(nMin1, nMax1, room1(p1, p2), n1);
        choose_bounds(nMin2, nMax2, room2(p1, p2), n2);
    }
    return surface(size_axis(nMin1, nMax1), size_axis(nMin2, nMax2),
                   [&](double x, double y) { return t.power(x, y, p1, p2, alpha); });
}
