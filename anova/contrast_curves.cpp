// Curves and the surface of a specified contrast. Powers are evaluated with the caller's coefficients, so the
// first one repairs them for all that follow.
#include "anova/contrast.h"
#include "anova/plot_range.h"
#include "core/checks.h"
#include "statpower/anova.h"

using namespace statpower;

XYPlot PlotNSC(int k, const double* means, const double* sizes, double* coefficients, int nMin, int nMax,
               int directional, double sigma, double alpha) {
    if (!(k >= 2 && sigma > 0 && valid_ends(nMin, nMax) && is_between_0_and_1(alpha))) return {};
    const auto power = [&](double N) {
        return contrast_power(groups(k, means), sigma, groups(k, sizes), N, groups(k, coefficients),
                              directional != STATPOWER_TWO_SIDED, alpha);
    };
    const auto [first, last] = total_range(nMin, nMax, groups(k, sizes), power);
    return curve(sample_sizes(first, last), power);
}

XYPlot PlotNSCFES(int k, const double* sizes, const double* coefficients, int nMin, int nMax, int directional,
                  double es, double alpha) {
    if (!(k >= 2 && valid_ends(nMin, nMax) && is_between_0_and_1(alpha))) return {};
    return curve(sample_sizes(nMin, nMax), [&](double N) {
        return contrast_power_of_effect(es, groups(k, sizes), N, groups(k, coefficients),
                                        directional != STATPOWER_TWO_SIDED, alpha);
    });
}

XYPlot PlotSDSC(int k, const double* means, const double* sizes, double* coefficients, int directional,
                double sigma, double sdMin, double sdMax, double alpha, double step) {
    if (!(k >= 2 && sigma > 0 && sdMin <= sdMax && is_between_0_and_1(alpha))) return {};
    return curve(standard_deviations(groups(k, means), groups(k, sizes), sdMin, sdMax, step), [&](double sd) {
        return to_single(PowerSC(k, means, sizes, coefficients, directional, sd, alpha));
    });
}

XYZPlot PlotNaSDSC(int k, const double* means, const double* sizes, double* coefficients, int nMin, int nMax,
                   int directional, double sigma, double sdMin, double sdMax, double alpha, double step) {
    if (!(sigma > 0 && valid_ends(nMin, nMax) && sdMin <= sdMax && is_between_0_and_1(alpha))) return {};
    const auto power = [&](double N, double sd) {
        return contrast_power(groups(k, means), sd, groups(k, sizes), N, groups(k, coefficients),
                              directional != STATPOWER_TWO_SIDED, alpha);
    };
    const auto [first, last] =
        total_range(nMin, nMax, groups(k, sizes), [&](double N) { return power(N, sigma); });
    return surface(surface_sample_sizes(first, last),
                   standard_deviations(groups(k, means), groups(k, sizes), sdMin, sdMax, step), power);
}
