// Power curves and surfaces of a multiple linear regression. Random predictors make each power a series, so
// grids are coarsened for a random flag of exactly 1.
#include <cmath>

#include "core/checks.h"
#include "core/curves.h"
#include "core/integers.h"
#include "regression/regression.h"
#include "regression/squared_correlations.h"
#include "statpower/regression.h"

using namespace statpower;

namespace {

constexpr int kWidestRange = 5000;

// ---- Checks ----------------------------------------------------------------------------------------------

bool is_valid(double p, double q, double alpha) {
    return p >= 1 && q >= 1 && q <= p && is_inside_unit_interval(alpha);
}

/// The error degrees of freedom at N are at least 1.
bool leaves_error(bool intercept, double N, double p) {
    return p + 1 + intercept <= N;
}

bool is_range(bool intercept, int nMin, int nMax, double p) {
    const bool ordered = nMin != 0 ? intercept + p <= nMin && nMin <= nMax : nMax >= 0;
    return ordered && nMax <= p + kWidestRange;
}

// ---- Axes ------------------------------------------------------------------------------------------------

double width(const SampleSizeRange& range) {
    return static_cast<double>(range.max) - range.min;
}

/// The range as given, or the default one where an end is 0.
template <class SetDefault>
SampleSizeRange range_or_default(int nMin, int nMax, SetDefault set_default) {
    if (nMin == 0 || nMax == 0) set_default(nMin, nMax);
    return {nMin, nMax};
}

Axis curve_sizes(int random, bool intercept, int nMin, int nMax, double p) {
    const auto range = range_or_default(
        nMin, nMax, [&](int& min, int& max) { POWER_NAMESPACE::_SetPlotRangeN(p, intercept, min, max); });
    const double w = width(range);
    const double step = random != STATPOWER_RANDOM_PREDICTORS || w < 150 ? 1
                        : w < 500                                        ? 5
                        : w < 1000                                       ? 10
                        : w < 2000                                       ? 20
                                                                         : 50;
    return sample_sizes(range.min, range.max, step);
}

/// @param set_random_default  the default range of random predictors
template <class SetDefault>
Axis surface_sizes(int random, bool intercept, int nMin, int nMax, double p, SetDefault set_random_default) {
    const auto range = range_or_default(nMin, nMax, [&](int& min, int& max) {
        if (random != STATPOWER_FIXED_PREDICTORS)
            set_random_default(min, max);
        else
            POWER_NAMESPACE::_SetPlotRangeN(p, intercept, min, max);
    });
    return sample_sizes(range.min, range.max,
                        random == STATPOWER_RANDOM_PREDICTORS && width(range) > 99 ? 2 : 1);
}

/// The step of an effect, which random predictors set themselves.
double effect_step(int random, double step) {
    return random == STATPOWER_RANDOM_PREDICTORS ? 0.05 : step;
}

/// `count` multiple correlations -1 + step, -1 + 2 step, ...
Axis correlations(double count, double step) {
    return axis(count, [=](double i) { return (i + 1) * step - 1; });
}

/// f^2 = step, 2 step, ... below 1.
Axis effect_sizes(double step) {
    return axis(std::ceil(1 / step) - 1, [=](double i) { return (i + 1) * step; });
}

}  // namespace

// ---- Default ranges --------------------------------------------------------------------------------------

namespace POWER_NAMESPACE {

void _SetPlotRangeN(double p, bool intercept, int& nMin, int& nMax) {
    nMin = to_int(std::trunc(p) + intercept + 1);
    nMax = to_int(std::trunc(p) + kWidestRange);
}

namespace {

void set_random_range(double power, double N, double p, int& nMin, int& nMax) {
    const auto range = default_range(power, N, to_int(std::trunc(p) + 2));
    nMin = range.min;
    nMax = range.max;
}

}  // namespace

void _SetRandomPlotRangeN(double N, double p, double q, double R2full, double R2red, int random,
                          bool intercept, double alpha, int& nMin, int& nMax) {
    set_random_range(Powerbymlr(random, intercept, N, p, q, R2full, R2red, alpha), N, p, nMin, nMax);
}

void _SetRandomPlotRangeN(double N, double p, double q, double f2, int random, bool intercept, double alpha,
                          int& nMin, int& nMax) {
    set_random_range(PowerbymlrwES(random, intercept, N, p, q, f2, alpha), N, p, nMin, nMax);
}

}  // namespace POWER_NAMESPACE

// ---- Curves ----------------------------------------------------------------------------------------------

XYPlot PlotNmlr(int random, bool intercept, int nMin, int nMax, double p, double q, double R2full,
                double R2red, double alpha) {
    if (!(is_range(intercept, nMin, nMax, p) && is_valid(p, q, alpha) &&
          are_squared_correlations(R2full, R2red)))
        return {};
    return curve(curve_sizes(random, intercept, nMin, nMax, p), [&](double N) {
        return to_single(Powerbymlr(random, intercept, N, p, q, R2full, R2red, alpha));
    });
}

XYPlot PlotNmlrFES(int random, bool intercept, int nMin, int nMax, double p, double q, double f2,
                   double alpha) {
    if (!(is_range(intercept, nMin, nMax, p) && is_valid(p, q, alpha))) return {};
    return curve(curve_sizes(random, intercept, nMin, nMax, p),
                 [&](double N) { return to_single(PowerbymlrwES(random, intercept, N, p, q, f2, alpha)); });
}

XYPlot PlotCorrmlr(int random, bool intercept, double N, double p, double q, double alpha, double step) {
    if (!(is_valid(p, q, alpha) && leaves_error(intercept, N, p))) return {};
    const double s = effect_step(random, step);
    return curve(correlations(std::trunc(2 / s) - 1, s),
                 [&](double R) { return to_single(Powerbymlr(random, intercept, N, p, q, R, 0, alpha)); });
}

XYPlot PlotESmlr(int random, bool intercept, double N, double p, double q, double alpha, double step) {
    if (!(is_valid(p, q, alpha) && leaves_error(intercept, N, p))) return {};
    return curve(effect_sizes(step),
                 [&](double f2) { return to_single(PowerbymlrwES(random, intercept, N, p, q, f2, alpha)); });
}

// ---- Surfaces --------------------------------------------------------------------------------------------

XYZPlot PlotNaCorrmlr(int random, bool intercept, int nMin, int nMax, double N, double p, double q,
                      double R2full, double R2red, double alpha, double step) {
    if (!(is_range(intercept, nMin, nMax, p) && is_valid(p, q, alpha) && leaves_error(intercept, N, p) &&
          are_squared_correlations(R2full, R2red)))
        return {};
    const Axis sizes = surface_sizes(random, intercept, nMin, nMax, p, [&](int& min, int& max) {
        POWER_NAMESPACE::_SetRandomPlotRangeN(N, p, q, R2full, R2red, random, intercept, alpha, min, max);
    });
    const double s = effect_step(random, step);
    return surface_by_rows(sizes, correlations(std::ceil(2 / s) - 1, s), [&](double n) {
        return [test = PredictorTest(random, intercept, n, p, q, alpha)](double R) {
            return to_single(test.power_of_fit(R, 0));
        };
    });
}

XYZPlot PlotNaESmlr(int random, bool intercept, int nMin, int nMax, double N, double p, double q, double f2,
                    double alpha, double step) {
    if (!(is_range(intercept, nMin, nMax, p) && is_valid(p, q, alpha) && leaves_error(intercept, N, p)))
        return {};
    const Axis sizes = surface_sizes(random, intercept, nMin, nMax, p, [&](int& min, int& max) {
        POWER_NAMESPACE::_SetRandomPlotRangeN(N, p, q, f2, random, intercept, alpha, min, max);
    });
    return surface_by_rows(sizes, effect_sizes(effect_step(random, step)), [&](double n) {
        return [test = PredictorTest(random, intercept, n, p, q, alpha)](double y) {
            return to_single(test.power_of_effect(y));
        };
    });
}
