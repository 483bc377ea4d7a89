// Paired proportions: curves and surfaces.
#include <algorithm>
#include <cmath>

#include "core/curves.h"
#include "core/sums.h"
#include "proportions/paired/power.h"
#include "proportions/proportion.h"
#include "statpower/related_binomial.h"

using namespace statpower;

namespace {

/// From `low` in steps of `fraction` of the width to the first point that reaches `high`, which may lie
/// below.
Axis stepped_range(double low, double high, double fraction) {
    if (!is_step(fraction)) return {};
    const double width = high - low;
    const double step = fraction * width;
    return multiples(std::ceil(width / step) + 1, low, step);
}

}  // namespace

XYPlot PlotNRelSampBionm(int nMin, int nMax, int sided, int exact, double N, double p1, double p2,
                         double alpha) {
    constexpr int kLargest = 2500;
    if (!(is_proportion(p2) && is_proportion(p1) && N >= 2 && is_between_0_and_1(alpha) && nMax <= kLargest &&
          nMin >= 0 && nMax >= nMin))
        return {};
    PairedTest test(sided, exact, alpha);
    return curve(sample_sizes(nMin, nMax), [&](double n) { return to_single(test.power(n, p1, p2)); });
}

XYPlot PlotRiskDiffRelSampBionm(int sided, int exact, double N, double p1, double alpha, double step) {
    if (!(is_between_0_and_1(alpha) && is_proportion(p1) && N >= 2)) return {};
    const double count = std::trunc((1 - p1) / ((1 - p1) * step) - 1 + 0.5);
    const Axis differences = axis(count, [=](double i) { return (i + 1) * (1 - p1) * step + (2 * p1 - 1); });
    PairedTest test(sided, exact, alpha);
    return curve(differences, [&](double d) { return to_single(test.power(N, p1, p1 - d)); });
}

XYPlot PlotRiskRatioRelSampBionm(int sided, int exact, double N, double p1, double p2, double low,
                                 double high, double alpha, double step) {
    const bool holds_p1 = p1 <= 0.5;
    const double smallest = p1 / (1 - p1);
    const double largest = (1 - p2) / p2;
    if (!(is_proportion(p2) && is_proportion(p1) && N >= 2 && is_between_0_and_1(alpha))) return {};
    if (!(high <= 10 && (low == 0 || low >= 0.1))) return {};
    if (holds_p1 ? low != 0 && low < smallest : high != 0 && high > largest) return {};
    if (low == 0 || high == 0) {
        low = holds_p1 ? smallest : 1.0 / 3;
        high = holds_p1 ? 3 : largest;
    }
    const Axis ratios = stepped_range(low, high, step);
    PairedTest test(sided, exact, alpha);
    return curve(ratios, [&](double ratio) {
        const double first = holds_p1 ? p1 : ratio * p2;
        const double second = holds_p1 ? p1 / ratio : p2;
        const bool is_last = ratio == ratios.back();
        return to_single(test.power(N, is_last ? std::min(first, 1 - p2) : first, second));
    });
}

XYPlot PlotOddsRatioRelSampBionm(int sided, int exact, double N, double p1, double low, double high,
                                 double alpha, double step) {
    const double smallest = square(p1 / (1 - p1));
    if (!(is_proportion(p1) && N >= 2 && low <= high && (low == 0 || low >= smallest) &&
          is_between_0_and_1(alpha) && high <= 10 + smallest))
        return {};
    if (low == 0 || high == 0) {
        low = smallest;
        high = smallest + 3;
    }
    PairedTest test(sided, exact, alpha);
    return curve(stepped_range(low, high, step),
                 [&](double ratio) { return to_single(test.power(N, p1, p1 / ((1 - p1) * ratio + p1))); });
}

XYPlot PlotCorrRelSampBionm(int sided, int exact, double N, double pA, double pB, double alpha, double step) {
    if (!(is_between_0_and_1(alpha) && is_between_0_and_1(pB) && is_between_0_and_1(pA) && N >= 2 &&
          is_step(step)))
        return {};
    const double largest = std::min((1 - pA) * pB, (1 - pB) * pA) / std::sqrt((1 - pB) * pB * pA * (1 - pA));
    const Axis correlations = multiples_to(std::ceil((1 + largest) / step) + 1, -1, step, largest);
    PairedTest test(sided, exact, alpha);
    return curve(correlations,
                 [&](double rho) { return to_single(test.power_from_margins(N, pA, pB, rho)); });
}

XYZPlot PlotPropRelSampBionm(int sided, int exact, double N, double alpha, double step) {
    if (!(is_between_0_and_1(alpha) && N >= 2)) return {};
    const Axis grid = proportion_grid(step);
    PairedTest test(sided, exact, alpha);
    return surface(grid, grid, [&](double p1, double p2) {
        return p1 != p2 && p1 + p2 <= 1 ? to_single(test.power(N, p1, p2)) : 0;
    });
}

XYZPlot PlotMargPropRelSampBionm(int sided, int exact, double N, double rho, double alpha, double step) {
    if (!(is_between_0_and_1(alpha) && rho > -1 && rho < 1 && N >= 2)) return {};
    const Axis grid = proportion_grid(step);
    PairedTest test(sided, exact, alpha);
    return surface(grid, grid, [&](double pA, double pB) {
        return pA + pB <= 1 ? to_single(test.power_from_margins(N, pA, pB, rho)) : 0;
    });
}
