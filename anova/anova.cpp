#include "anova/anova.h"

#include <cmath>

#include "anova/allocation.h"
#include "core/checks.h"
#include "core/rejection.h"
#include "statpower/anova.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

std::optional<FTest> statpower::overall_test(double k, double N, double alpha) {
    if (!(k >= 2 && N >= k && is_between_0_and_1(alpha))) return std::nullopt;
    return FTest(alpha, k - 1, N - k);
}

double statpower::between_variance(std::span<const double> means, std::span<const double> weights) {
    const double grand_mean = weighted_mean(means, weights);
    const double total = sum(weights);
    double between = 0;
    for (std::size_t i = 0; i < means.size(); ++i)
        between += weights[i] / total * square(means[i] - grand_mean);
    return between;
}

double statpower::overall_noncentrality(int es_type, double es, double N) {
    return es_type != 0 ? N * es / (1 - es) : N * square(es);
}

double statpower::overall_f_power(std::span<const double> means, double sigma,
                                  std::span<const double> weights, double N, double alpha) {
    const auto test = overall_test(static_cast<double>(means.size()), N, alpha);
    if (!(test && weights.size() == means.size() && sigma > 0)) return OrvMV::Missing();
    return test->power(between_variance(means, weights) / (square(sigma) / N));
}

namespace POWER_NAMESPACE {

double _PowerOverallTestwithN(int k, double* means, double sigma, double* sizes, double N, double alpha) {
    return overall_f_power(groups(k, means), sigma, groups(k, sizes), N, alpha);
}

double _PowerOverallTestwithES(int k, double es, int esType, double N, double alpha) {
    const auto test = overall_test(k, N, alpha);
    return test ? test->power(overall_noncentrality(esType, es, N)) : OrvMV::Missing();
}

double OverallTestFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<OverallSearch>(design);
    return overall_f_power(d.means, d.sigma, d.weights, N, d.alpha) - d.target;
}

double OverallTestwESFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<OverallEffectSearch>(design);
    return _PowerOverallTestwithES(d.k, d.es, d.es_type, N, d.alpha) - d.target;
}

double _SampleSizebyHalfCIOverallTestFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<OverallHalfWidthSearch>(design);
    return N * (square(d.target) / square(d.sigma)) - square(t_critical(d.alpha / 2, N - d.k));
}

}  // namespace POWER_NAMESPACE

using namespace POWER_NAMESPACE;

double PowerOverallTest(int k, const double* means, const double* sizes, double sigma, double alpha) {
    if (!(k >= 2 && sigma > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return overall_f_power(groups(k, means), sigma, groups(k, sizes), SampleSizeTotal(k, sizes), alpha);
}

double PowerOverallTestwES(int k, int esType, const double* sizes, double es, double alpha) {
    if (!(k >= 2 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return _PowerOverallTestwithES(k, es, esType, SampleSizeTotal(k, sizes), alpha);
}

double RMSSEOverallTest(int k, const double* means, const double* sizes, double sigma, double alpha) {
    if (!(k >= 2 && sigma > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    const double grand_mean = weighted_mean(groups(k, means), groups(k, sizes));
    double deviations = 0;
    for (double mean : groups(k, means)) deviations += square(mean - grand_mean);
    return std::sqrt(deviations / (k - 1)) / sigma;
}

double PowerReverseOverallTest(int k, const double* means, const double* sizes,
                               std::vector<double>* groupSizes, double sigma, double power, double alpha) {
    if (!(k >= 2 && sigma > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const auto weights = proportions(groups(k, sizes));
    const OverallSearch design{power, k, sigma, alpha, groups(k, means), weights};
    const double rate = between_variance(design.means, weights) / square(sigma);
    const double N = search_total(design, OverallTestFunc, f_test_start(power, alpha, k - 1, rate));
    return allocate(*groupSizes, [&](std::size_t i) { return weights[i] * N; });
}

double PowerReverseOverallTestwES(int k, int esType, const double* sizes, std::vector<double>* groupSizes,
                                  double es, double power, double alpha) {
    if (!(k >= 2 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const auto weights = proportions(groups(k, sizes));
    const OverallEffectSearch design{power, k, es, esType, alpha};
    const double rate = overall_noncentrality(esType, es, 1);
    const double N = search_total(design, OverallTestwESFunc, f_test_start(power, alpha, k - 1, rate));
    return allocate(*groupSizes, [&](std::size_t i) { return weights[i] * N; });
}

double HalfCIOverallTest(int k, double N, double sigma, double alpha) {
    return t_critical(alpha / 2, N - k) * sigma / std::sqrt(N);
}

double PowerReversebyHalfCIOverallTest(int k, const double* sizes, std::vector<double>* groupSizes,
                                       double halfWidth, double sigma, double alpha) {
    if (!(k >= 2 && sigma > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const OverallHalfWidthSearch design{halfWidth, k, sigma, alpha};
    const double N = search_total(design, _SampleSizebyHalfCIOverallTestFunc, kSizeTolerance);
    // Multiplied before it is divided, unlike the power searches: the last bit decides at whole shares.
    const double total = SampleSizeTotal(k, sizes);
    return allocate(*groupSizes, [&](std::size_t i) { return sizes[i] * N / total; });
}
