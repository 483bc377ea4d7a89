#include "anova/plot_range.h"

#include <cmath>

#include "anova/allocation.h"
#include "core/integers.h"
#include "statpower/anova.h"

namespace statpower {

namespace {

/// The totals between which the smallest group has at least 2 observations and the largest at most 5000.
SampleSizeRange bounds(std::span<const double> sizes) {
    if (sizes.empty()) return {0, 0};
    const auto shares = proportions(sizes);
    const auto [smallest, largest] = std::minmax_element(shares.begin(), shares.end());
    return {to_int(std::ceil(2 / *smallest)), to_int(std::floor(5000 / *largest))};
}

struct StandardDeviationRange {
    double min;
    double max;
};

StandardDeviationRange default_deviations(std::span<const double> means, std::span<const double> sizes) {
    const double grand_mean = weighted_mean(means, sizes);
    double between = 0;
    for (std::size_t i = 0; i < means.size(); ++i) between += sizes[i] * square(means[i] - grand_mean);
    const double spread = std::sqrt(between);
    return {spread / 5, 5 * spread};
}

}  // namespace

SampleSizeRange default_totals(std::span<const double> sizes, double power) {
    const auto [lowest, highest] = bounds(sizes);
    const auto [first, last] = default_range(power, sum(sizes), lowest);
    return {first, std::min(last, highest)};
}

Axis standard_deviations(std::span<const double> means, std::span<const double> sizes, double sdMin,
                         double sdMax, double step) {
    const auto [low, high] =
        sdMin != 0 && sdMax != 0 ? StandardDeviationRange{sdMin, sdMax} : default_deviations(means, sizes);
    return fractions(low, high, step);
}

}  // namespace statpower

using namespace statpower;

namespace {

void store(SampleSizeRange range, int& nMin, int& nMax) {
    nMin = range.min;
    nMax = range.max;
}

}  // namespace

namespace POWER_NAMESPACE {

void _MinMaxNR(int k, double* sizes, int& nMin, int& nMax) {
    store(bounds(groups(k, sizes)), nMin, nMax);
}

void _SetPlotRangeN(int k, double* means, double sigma, double* sizes, int& nMin, int& nMax, double alpha) {
    const double power = PowerOverallTest(k, means, sizes, sigma, alpha);
    store(default_totals(groups(k, sizes), power), nMin, nMax);
}

void _SetPlotRangeN(int k, double es, int esType, double* sizes, int& nMin, int& nMax, double alpha) {
    const double power = PowerOverallTestwES(k, esType, sizes, es, alpha);
    store(default_totals(groups(k, sizes), power), nMin, nMax);
}

void _SetPlotRangeN(int k, double* means, double sigma, double* sizes, int& nMin, int& nMax,
                    double* coefficients, int directional, double alpha) {
    const double power = PowerSC(k, means, sizes, coefficients, directional, sigma, alpha);
    store(default_totals(groups(k, sizes), power), nMin, nMax);
}

void _SetPlotRangeSD(int k, double* means, double* sizes, double& sdMin, double& sdMax) {
    const auto [low, high] = default_deviations(groups(k, means), groups(k, sizes));
    sdMin = low;
    sdMax = high;
}

}  // namespace POWER_NAMESPACE
