// Curves and surfaces of the t tests.
#include <cmath>

#include "core/checks.h"
#include "core/curves.h"
#include "means/one.h"
#include "means/paired.h"
#include "means/two.h"
#include "statpower/means.h"

using namespace statpower;
using namespace POWER_NAMESPACE;

namespace {

// ---- One mean and paired means ---------------------------------------------------------------------------

/// Power for a size and an effect size.
using PowerOfSize = double (*)(double N, double es, double alpha);

PowerOfSize one_mean_power(int directional) {
    return directional != STATPOWER_TWO_SIDED ? PowerOneSampleDirectionalES : PowerOneSampleNondirectionalES;
}

PowerOfSize paired_means_power(int directional) {
    return directional != STATPOWER_TWO_SIDED ? PowerRelatedDirectionalES : PowerRelatedNondirectionalES;
}

/// The curve of power(N), checked as every curve over the sample size is.
template <class Power>
XYPlot curve_over_size(int nLow, int nHigh, double alpha, Power power) {
    if (nLow < 2 || nHigh <= nLow || is_refused_level(alpha)) return {};
    return curve(sample_sizes(nLow, nHigh), [&](double N) { return to_single(power(N)); });
}

struct Interval {
    double low;
    double high;
};

/// The range of effect sizes. A low end of -5 is the caller's way to leave it open: 0 for a two-sided test,
/// which has no use for negative effects, and -5 for a one-sided one.
Interval effect_size_range(int directional, double low, double high) {
    constexpr double kLeftOpen = -5;
    return {directional == STATPOWER_TWO_SIDED && low == kLeftOpen ? 0 : low, high};
}

bool effect_sizes_refused(int directional, Interval es, double alpha) {
    return (directional == STATPOWER_TWO_SIDED && es.low < 0) || es.low >= es.high || is_refused_level(alpha);
}

/// The curve of power(es).
template <class Power>
XYPlot curve_over_effect_size(int directional, double esLow, double esHigh, double alpha, double stepFraction,
                              Power power) {
    const Interval es = effect_size_range(directional, esLow, esHigh);
    if (effect_sizes_refused(directional, es, alpha)) return {};
    return curve(fractions(es.low, es.high, stepFraction), [&](double x) { return to_single(power(x)); });
}

/// The surface over effect size and sample size, the latter in steps of 2 where the range is long.
XYZPlot surface_over_effect_size_and_size(int nLow, int nHigh, int directional, double esLow, double esHigh,
                                          double alpha, double stepFraction) {
    const Interval es = effect_size_range(directional, esLow, esHigh);
    if (nLow < 2 || nHigh <= nLow || effect_sizes_refused(directional, es, alpha)) return {};
    return surface_by_columns(
        fractions(es.low, es.high, stepFraction), surface_sample_sizes(nLow, nHigh), [&](double N) {
            return [test = OneMeanTest(directional, N, alpha)](double x) { return to_single(test.power(x)); };
        });
}

// ---- Two means -------------------------------------------------------------------------------------------

using PowerOfSizes = double (*)(double N1, double N2, double es, double alpha);
using PowerOfRatio = double (*)(double Ntotal, double ratio, double diff, double sd1, double sd2,
                                double alpha);

PowerOfSizes pooled_power(int directional) {
    return directional != STATPOWER_TWO_SIDED ? PowerIndependentDirectionalES
                                              : PowerIndependentNondirectionalES;
}

PowerOfRatio welch_power(int directional) {
    return directional != STATPOWER_TWO_SIDED ? _PowerIndependentDirectional
                                              : _PowerIndependentNondirectional;
}

double pooled_power_at_ratio(PowerOfSizes power, double Ntotal, double ratio, double es, double alpha) {
    const double N1 = Ntotal / (ratio + 1);
    return power(N1, ratio * N1, es, alpha);
}

/// The range of allocation ratios. An end of 0 leaves it open: then it reaches from nearly everyone in group
/// 1 to nearly everyone in group 2.
Interval ratio_range(double Ntotal, double low, double high) {
    if (low != 0 && high != 0) return {low, high};
    const double reach = 0.8 * (Ntotal - 2);
    return {1 / reach, reach};
}

/// The range of mean differences. One that is not ascending leaves it open: five times the difference of the
/// means to either side of 0.
Interval difference_range(double mean1, double mean2, double low, double high) {
    if (!(high <= low)) return {low, high};
    const double difference = std::abs(mean1 - mean2);
    const double reach = difference == 0 ? 100 : 5 * difference;
    return {-reach, reach};
}

/// An interval divided into steps of `fraction` of its width, the last point exactly its high end. Unlike in
/// fractions(), the fraction alone decides how many steps there are, so an interval of zero width has them
/// too.
Axis parts(Interval range, double fraction) {
    if (!is_step(fraction)) return {};
    return multiples_to(std::ceil(1 / fraction) + 1, range.low, fraction * (range.high - range.low),
                        range.high);
}

bool is_implausible(double power) {
    return power > 1 || power < 0;
}

/// A point, the first apart, that is no probability (a missing one, where a ratio leaves a group with less
/// than two observations) takes the value of the point before it.
void replace_implausible(XYPlot& plot) {
    for (int i = 1; i < plot.count; ++i)
        if (is_implausible(plot.y[i])) plot.y[i] = plot.y[i - 1];
}

/// The same within each row of a surface; only in the first row the replacement is the coordinate of the
/// point before.
void replace_implausible(XYZPlot& plot) {
    double* row = plot.z;
    for (int i = 0; i < plot.nx; ++i, row += plot.ny)
        for (int j = 1; j < plot.ny; ++j)
            if (is_implausible(row[j])) row[j] = i == 0 ? to_single(plot.y[j - 1]) : row[j - 1];
}

}  // namespace

XYPlot PlotNOneSample(int nLow, int nHigh, int directional, double, double mean, double sd, double mean0,
                      double alpha) {
    if (sd <= 0) return {};
    const auto power =
        directional != STATPOWER_TWO_SIDED ? PowerOneSampleDirectional : PowerOneSampleNondirectional;
    return curve_over_size(nLow, nHigh, alpha, [&](double N) { return power(N, mean, sd, mean0, alpha); });
}

XYPlot PlotNOneSampleFES(int nLow, int nHigh, int directional, double es, double alpha) {
    const auto power = one_mean_power(directional);
    return curve_over_size(nLow, nHigh, alpha, [&](double N) { return power(N, es, alpha); });
}

XYPlot PlotESOneSample(int directional, double N, double esLow, double esHigh, double alpha,
                       double stepFraction) {
    if (N <= 1) return {};
    const auto power = one_mean_power(directional);
    return curve_over_effect_size(directional, esLow, esHigh, alpha, stepFraction,
                                  [&](double es) { return power(N, es, alpha); });
}

XYZPlot PlotNaESOneSample(int nLow, int nHigh, int directional, double esLow, double esHigh, double alpha,
                          double stepFraction) {
    return surface_over_effect_size_and_size(nLow, nHigh, directional, esLow, esHigh, alpha, stepFraction);
}

XYPlot PlotNRelated(int nLow, int nHigh, int directional, double, double mean1, double sd1, double mean2,
                    double sd2, double corr, double alpha) {
    if (paired_design_refused(sd1, sd2, corr, alpha)) return {};
    const auto power =
        directional != STATPOWER_TWO_SIDED ? PowerRelatedDirectional : PowerRelatedNondirectional;
    return curve_over_size(nLow, nHigh, alpha,
                           [&](double N) { return power(N, mean1, sd1, mean2, sd2, corr, alpha); });
}

XYPlot PlotNRelatedFES(int nLow, int nHigh, int directional, double es, double alpha) {
    const auto power = paired_means_power(directional);
    return curve_over_size(nLow, nHigh, alpha, [&](double N) { return power(N, es, alpha); });
}

XYPlot PlotESRelated(int directional, double N, double esLow, double esHigh, double alpha,
                     double stepFraction) {
    if (N <= 1) return {};
    const auto power = paired_means_power(directional);
    return curve_over_effect_size(directional, esLow, esHigh, alpha, stepFraction,
                                  [&](double es) { return power(N, es, alpha); });
}

XYZPlot PlotNaESRelated(int nLow, int nHigh, int directional, double esLow, double esHigh, double alpha,
                        double stepFraction) {
    return surface_over_effect_size_and_size(nLow, nHigh, directional, esLow, esHigh, alpha, stepFraction);
}

XYPlot PlotRatioIndependent(int directional, double Ntotal, double mean1, double sd1, double mean2,
                            double sd2, double ratioLow, double ratioHigh, double alpha,
                            double stepFraction) {
    const Interval ratio = ratio_range(Ntotal, ratioLow, ratioHigh);
    if (!(Ntotal > 1 && 1 / (Ntotal - 1) < ratio.low && ratio.low <= ratio.high && ratio.high < Ntotal - 1 &&
          sd1 > 0 && sd2 > 0 && is_between_0_and_1(alpha)))
        return {};
    const auto pooled = pooled_power(directional);
    const auto welch = welch_power(directional);
    const double diff = mean1 - mean2;
    auto plot = curve(parts(ratio, stepFraction), [&](double r) {
        return to_single(sd1 == sd2 ? pooled_power_at_ratio(pooled, Ntotal, r, diff / sd1, alpha)
                                    : welch(Ntotal, r, diff, sd1, sd2, alpha));
    });
    replace_implausible(plot);
    return plot;
}

XYPlot PlotRatioIndependentFES(int directional, double Ntotal, double es, double ratioLow, double ratioHigh,
                               double alpha, double stepFraction) {
    const Interval ratio = ratio_range(Ntotal, ratioLow, ratioHigh);
    if (Ntotal <= 1 || ratio.low <= 1 / (Ntotal - 1) || ratio.low > ratio.high || ratio.high >= Ntotal - 1 ||
        is_refused_level(alpha))
        return {};
    const auto power = pooled_power(directional);
    auto plot = curve(parts(ratio, stepFraction), [&](double r) {
        return to_single(pooled_power_at_ratio(power, Ntotal, r, es, alpha));
    });
    replace_implausible(plot);
    return plot;
}

XYPlot PlotESIndepended(int directional, double N1, double N2, double esLow, double esHigh, double alpha,
                        double stepFraction) {
    if (N1 <= 1 || N2 <= 1) return {};
    const auto power = pooled_power(directional);
    return curve_over_effect_size(directional, esLow, esHigh, alpha, stepFraction,
                                  [&](double es) { return power(N1, N2, es, alpha); });
}

XYPlot PlotMeanDiffIndepended(int directional, double N1, double mean1, double sd1, double N2, double mean2,
                              double sd2, double diffLow, double diffHigh, double alpha, double diffStep) {
    const Interval diff = difference_range(mean1, mean2, diffLow, diffHigh);
    if (!(N1 > 1 && N2 > 1 && sd1 > 0 && sd2 > 0 && diff.low <= diff.high && is_between_0_and_1(alpha) &&
          is_step(diffStep)))
        return {};
    const auto power = welch_power(directional);
    const double intervals = std::ceil((diff.high - diff.low) / diffStep);
    return curve(multiples_to(intervals + 1, diff.low, diffStep, diff.high), [&](double difference) {
        return to_single(power(N1 + N2, N2 / N1, difference, sd1, sd2, alpha));
    });
}

XYZPlot PlotRatioaESIndependent(int directional, double Ntotal, double ratioLow, double ratioHigh,
                                double esLow, double esHigh, double alpha, double stepFraction) {
    const Interval ratio = ratio_range(Ntotal, ratioLow, ratioHigh);
    const Interval es = effect_size_range(directional, esLow, esHigh);
    if (Ntotal <= 1 || ratio.low >= ratio.high || effect_sizes_refused(directional, es, alpha)) return {};
    const auto power = pooled_power(directional);
    auto plot = surface(parts(ratio, stepFraction), parts(es, stepFraction), [&](double r, double effect) {
        return to_single(pooled_power_at_ratio(power, Ntotal, r, effect, alpha));
    });
    replace_implausible(plot);
    return plot;
}

XYZPlot PlotRatioaMeanDiffIndependent(int directional, double Ntotal, double mean1, double sd1, double mean2,
                                      double sd2, double ratioLow, double ratioHigh, double diffLow,
                                      double diffHigh, double alpha, double stepFraction) {
    const Interval ratio = ratio_range(Ntotal, ratioLow, ratioHigh);
    const Interval diff = difference_range(mean1, mean2, diffLow, diffHigh);
    if (!(Ntotal > 1 && ratio.low <= ratio.high && sd1 > 0 && sd2 > 0 && diff.low <= diff.high &&
          is_between_0_and_1(alpha)))
        return {};
    const auto power = welch_power(directional);
    auto plot =
        surface(parts(ratio, stepFraction), parts(diff, 2 * stepFraction), [&](double r, double difference) {
            return to_single(power(Ntotal, r, difference, sd1, sd2, alpha));
        });
    replace_implausible(plot);
    return plot;
}
