// Curves and surfaces of the overall F test.
#include "anova/anova.h"
#include "anova/plot_range.h"
#include "core/checks.h"
#include "statpower/anova.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using POWER_NAMESPACE::_PowerOverallTestwithES;

namespace {

/// The axis of the effect size; an upper end of 0 stands for the whole range, from 0 to 2 for f and to 1 for
/// a proportion of variance. The latter leaves its last point out: at 1 the noncentrality is infinite.
Axis effect_sizes(int esType, double esMin, double esMax, double step) {
    const bool is_proportion = esType != STATPOWER_COHENS_F;
    const double low = esMax == 0 ? 0 : esMin;
    const double high = esMax != 0 ? esMax : is_proportion ? 1 : 2;
    const auto [size, count] = steps(low, high, step);
    return multiples(is_proportion ? count : count + 1, low, size);
}

}  // namespace

XYPlot PlotNOverallTest(int k, const double* means, const double* sizes, int nMin, int nMax, double sigma,
                        double alpha) {
    if (!(k >= 2 && sigma > 0 && valid_ends(nMin, nMax) && is_between_0_and_1(alpha))) return {};
    const auto power = [&](double N) {
        return overall_f_power(groups(k, means), sigma, groups(k, sizes), N, alpha);
    };
    const auto [first, last] = total_range(nMin, nMax, groups(k, sizes), power);
    return curve(sample_sizes(first, last), power);
}

XYPlot PlotNOverallTestFES(int k, int esType, const double* sizes, int nMin, int nMax, double es,
                           double alpha) {
    if (!(k >= 2 && valid_ends(nMin, nMax) && is_between_0_and_1(alpha))) return {};
    const auto power = [&](double N) { return _PowerOverallTestwithES(k, es, esType, N, alpha); };
    const auto [first, last] = total_range(nMin, nMax, groups(k, sizes), power);
    return curve(sample_sizes(first, last), power);
}

XYPlot PlotESOverallTest(int k, int esType, const double* sizes, double esMin, double esMax, double alpha,
                         double step) {
    if (!(k >= 2 && esMin <= esMax && is_between_0_and_1(alpha))) return {};
    return curve(effect_sizes(esType, esMin, esMax, step),
                 [&](double es) { return to_single(PowerOverallTestwES(k, esType, sizes, es, alpha)); });
}

XYPlot PlotSDOverallTest(int k, const double* means, const double* sizes, double sigma, double sdMin,
                         double sdMax, double alpha, double step) {
    if (!(k >= 2 && sigma > 0 && sdMin <= sdMax && is_between_0_and_1(alpha))) return {};
    return curve(standard_deviations(groups(k, means), groups(k, sizes), sdMin, sdMax, step),
                 [&](double sd) { return to_single(PowerOverallTest(k, means, sizes, sd, alpha)); });
}

XYZPlot PlotNaSDOverallTest(int k, const double* means, const double* sizes, int nMin, int nMax, double sigma,
                            double sdMin, double sdMax, double alpha, double step) {
    if (!(k >= 2 && sigma > 0 && valid_ends(nMin, nMax) && sdMin <= sdMax && alpha > 0)) return {};
    const auto [first, last] = total_range(nMin, nMax, groups(k, sizes), [&](double N) {
        return overall_f_power(groups(k, means), sigma, groups(k, sizes), N, alpha);
    });
    const double between = between_variance(groups(k, means), groups(k, sizes));
    return surface_by_rows(
        surface_sample_sizes(first, last),
        standard_deviations(groups(k, means), groups(k, sizes), sdMin, sdMax, step), [&](double N) {
            return [=, test = overall_test(k, N, alpha)](double sd) {
                return test && sd > 0 ? test->power(between / (square(sd) / N)) : OrvMV::Missing();
            };
        });
}

XYZPlot PlotNaESOverallTest(int k, int esType, const double* sizes, int nMin, int nMax, double es,
                            double esMin, double esMax, double alpha, double step) {
    if (!(k >= 2 && valid_ends(nMin, nMax) && esMin <= esMax && alpha > 0)) return {};
    const auto [first, last] = total_range(nMin, nMax, groups(k, sizes), [&](double N) {
        return _PowerOverallTestwithES(k, es, esType, N, alpha);
    });
    return surface_by_rows(
        surface_sample_sizes(first, last), effect_sizes(esType, esMin, esMax, step), [&](double N) {
            return [=, test = overall_test(k, N, alpha)](double effect) {
                return test ? test->power(overall_noncentrality(esType, effect, N)) : OrvMV::Missing();
            };
        });
}
