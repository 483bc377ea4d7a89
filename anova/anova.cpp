#include "anova/anova.h"

#include <cmath>

#include "anova/allocation.h"
#include "core/design.h"
#include "core/rejection.h"
#include "statpower/anova.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

double statpower::overall_f_power(std::span<const double> means, double sigma,
                                  std::span<const double> weights, double N, double alpha) {
    const auto k = static_cast<double>(means.size());
    if (!(k >= 2 && weights.size() == means.size() && alpha > 0 && sigma > 0 && N >= k && alpha < 1))
        return OrvMV::Missing();
    const double grand_mean = weighted_mean(means, weights);
    const double total = sum(weights);
    double between = 0;
    for (std::size_t i = 0; i < means.size(); ++i)
        between += weights[i] / total * square(means[i] - grand_mean);
    const double noncentrality = between / (square(sigma) / N);
    return f_test_power(alpha, k - 1, N - k, noncentrality);
}

namespace POWER_NAMESPACE {

double _PowerOverallTestwithN(int k, double* means, double sigma, double* sizes, double N, double alpha) {
    return overall_f_power(groups(k, means), sigma, groups(k, sizes), N, alpha);
}

double _PowerOverallTestwithES(int k, double es, int esType, double N, double alpha) {
    if (!(k >= 2 && alpha > 0 && N >= k && alpha < 1)) return OrvMV::Missing();
    const double noncentrality = esType != 0 ? N * es / (1 - es) : N * square(es);
    return f_test_power(alpha, k - 1, N - k, noncentrality);
}

double OverallTestFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    DesignReader d(design);
    const double target = d.number();
    const int k = d.integer();
    const auto [sigma, alpha] = d.numbers<2>();
    const auto means = d.array(k);
    const auto weights = d.array(k);
    return overall_f_power(means, sigma, weights, N, alpha) - target;
}

double OverallTestwESFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    DesignReader d(design);
    const double target = d.number();
    const int k = d.integer();
    const double es = d.number();
    const int es_type = d.integer();
    const double alpha = d.number();
    return _PowerOverallTestwithES(k, es, es_type, N, alpha) - target;
}

double _SampleSizebyHalfCIOverallTestFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    DesignReader d(design);
    const double half_width = d.number();
    const int k = d.integer();
    const auto [sigma, alpha] = d.numbers<2>();
    return N * (square(half_width) / square(sigma)) - square(t_critical(alpha / 2, N - k));
}

}  // namespace POWER_NAMESPACE

using namespace POWER_NAMESPACE;

double PowerOverallTest(int k, const double* means, const double* sizes, double sigma, double alpha) {
    if (!(alpha > 0 && k >= 2 && sigma > 0 && alpha < 1)) return OrvMV::Missing();
    return overall_f_power(groups(k, means), sigma, groups(k, sizes), SampleSizeTotal(k, sizes), alpha);
}

double PowerOverallTestwES(int k, int esType, const double* sizes, double es, double alpha) {
    if (!(alpha > 0 && k >= 2 && alpha < 1)) return OrvMV::Missing();
    return _PowerOverallTestwithES(k, es, esType, SampleSizeTotal(k, sizes), alpha);
}

double RMSSEOverallTest(int k, const double* means, const double* sizes, double sigma, double alpha) {
    if (!(alpha > 0 && k >= 2 && sigma > 0 && alpha < 1)) return OrvMV::Missing();
    const double grand_mean = weighted_mean(groups(k, means), groups(k, sizes));
    double deviations = 0;
    for (double mean : groups(k, means)) deviations += square(mean - grand_mean);
    return std::sqrt(deviations / (k - 1)) / sigma;
}

double PowerReverseOverallTest(int k, const double* means, const double* sizes,
                               std::vector<double>* groupSizes, double sigma, double power, double alpha) {
    if (!(alpha > 0 && k >= 2 && sigma > 0 && alpha < 1)) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const auto weights = proportions(groups(k, sizes));
    const auto design = pack_design(power, k, sigma, alpha, groups(k, means), weights);
    const double N = search_total(design, OverallTestFunc, k, kPowerTolerance);
    return allocate(*groupSizes, [&](std::size_t i) { return weights[i] * N; });
}

double PowerReverseOverallTestwES(int k, int esType, const double* sizes, std::vector<double>* groupSizes,
                                  double es, double power, double alpha) {
    if (!(alpha > 0 && k >= 2 && alpha < 1)) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const auto weights = proportions(groups(k, sizes));
    const auto design = pack_design(power, k, es, esType, alpha);
    const double N = search_total(design, OverallTestwESFunc, k, kPowerTolerance);
    return allocate(*groupSizes, [&](std::size_t i) { return weights[i] * N; });
}

double HalfCIOverallTest(int k, double N, double sigma, double alpha) {
    return t_critical(alpha / 2, N - k) * sigma / std::sqrt(N);
}

double PowerReversebyHalfCIOverallTest(int k, const double* sizes, std::vector<double>* groupSizes,
                                       double halfWidth, double sigma, double alpha) {
    if (!(alpha > 0 && k >= 2 && sigma > 0 && alpha < 1)) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const auto design = pack_design(halfWidth, k, sigma, alpha);
    const double N = search_total(design, _SampleSizebyHalfCIOverallTestFunc, k, kHalfWidthTolerance);
    // Multiplied before it is divided, unlike the power searches: the last bit decides at whole shares.
    const double total = SampleSizeTotal(k, sizes);
    return allocate(*groupSizes, [&](std::size_t i) { return sizes[i] * N / total; });
}
