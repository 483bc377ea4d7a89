#include "anova/contrast.h"

#include <cmath>
#include <numeric>

#include "anova/allocation.h"
#include "core/checks.h"
#include "core/rejection.h"
#include "statpower/anova.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

namespace {

constexpr double kZeroSum = 1e-14;

/// Q, the variance of the estimated contrast when sigma is 1: the sum of coefficients[i]^2 / sizes[i].
double unit_variance(std::span<const double> coefficients, std::span<const double> sizes) {
    double variance = 0;
    for (std::size_t i = 0; i < coefficients.size(); ++i) variance += square(coefficients[i]) / sizes[i];
    return variance;
}

/// N / W es^2 / Q, W the sum of the weights.
double noncentrality_of_effect(double es, std::span<const double> weights, double N,
                               std::span<const double> coefficients) {
    return N / sum(weights) * square(es) / unit_variance(coefficients, weights);
}

/// The start of the search for the total.
SteadyStart start_of(double es, std::span<const double> weights, std::span<const double> coefficients,
                     int directional, double power, double alpha) {
    const double rate = noncentrality_of_effect(es, weights, 1, coefficients);
    return t_test_start(power, tail_level(directional, alpha), std::sqrt(rate));
}

}  // namespace

double statpower::contrast_effect(std::span<const double> means, std::span<double> coefficients,
                                  double sigma) {
    if (coefficients.empty()) return OrvMV::Missing();
    double& last = coefficients.back();
    const double others = sum(coefficients.first(coefficients.size() - 1));
    if (std::abs(last + others) >= kZeroSum) {
        last = -others;
        if (last > 1 || last < -1) return OrvMV::Missing();
    }
    const double psi = std::inner_product(means.begin(), means.end(), coefficients.begin(), 0.0);
    return sigma > 0 ? psi / sigma : OrvMV::Missing();
}

double statpower::contrast_power(std::span<const double> means, double sigma, std::span<const double> weights,
                                 double N, std::span<double> coefficients, bool directional, double alpha) {
    const auto k = static_cast<double>(means.size());
    if (!(k >= 2 && coefficients.size() == means.size() && sigma > 0 && N >= k && is_between_0_and_1(alpha)))
        return OrvMV::Missing();
    const double es = contrast_effect(means, coefficients, sigma);
    return contrast_power_of_effect(es, weights, N, coefficients, directional, alpha);
}

double statpower::contrast_power_of_effect(double es, std::span<const double> weights, double N,
                                           std::span<const double> coefficients, bool directional,
                                           double alpha) {
    const auto k = static_cast<double>(weights.size());
    if (!(k >= 2 && coefficients.size() == weights.size() && N >= k && is_between_0_and_1(alpha)))
        return OrvMV::Missing();
    const double noncentrality = noncentrality_of_effect(es, weights, N, coefficients);
    return directional ? t_test_power_one_sided(alpha, N - k, std::sqrt(noncentrality))
                       : f_test_power(alpha, 1, N - k, noncentrality);
}

namespace POWER_NAMESPACE {

double _PowerSCwithN(int k, double* means, double sigma, double* sizes, double N, double* coefficients,
                     int directional, double alpha) {
    return contrast_power(groups(k, means), sigma, groups(k, sizes), N, groups(k, coefficients),
                          directional != STATPOWER_TWO_SIDED, alpha);
}

double _PowerSCwithES(int k, double es, double* sizes, double N, double* coefficients, int directional,
                      double alpha) {
    return contrast_power_of_effect(es, groups(k, sizes), N, groups(k, coefficients),
                                    directional != STATPOWER_TWO_SIDED, alpha);
}

double SCFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<ContrastSearch>(design);
    std::vector<double> coefficients(d.coefficients.begin(), d.coefficients.end());
    return contrast_power(d.means, d.sigma, d.weights, N, coefficients, d.directional != STATPOWER_TWO_SIDED,
                          d.alpha) -
           d.target;
}

double SCwESFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<ContrastEffectSearch>(design);
    return contrast_power_of_effect(d.es, d.weights, N, d.coefficients, d.directional != STATPOWER_TWO_SIDED,
                                    d.alpha) -
           d.target;
}

double _SampleSizebyHalfCISCTestFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<ContrastHalfWidthSearch>(design);
    return N * square(d.target) / (square(d.sigma) * d.total_weight) -
           square(t_critical(d.alpha / 2, N - d.k)) * d.unit_variance;
}

}  // namespace POWER_NAMESPACE

using namespace POWER_NAMESPACE;

double statpower::contrast_allocation(std::span<const double> means, std::span<const double> sizes,
                                      std::span<const double> coefficients, std::vector<double>& groupSizes,
                                      int directional, double sigma, double power, double alpha) {
    const int k = static_cast<int>(means.size());
    const auto weights = proportions(sizes);
    const ContrastSearch design{power, k, sigma, alpha, directional, means, weights, coefficients};
    std::vector<double> repaired(coefficients.begin(), coefficients.end());
    const double es = contrast_effect(means, repaired, sigma);
    const double N = search_total(design, SCFunc, start_of(es, weights, repaired, directional, power, alpha));
    return allocate(groupSizes, [&](std::size_t i) { return weights[i] * N; });
}

double EffectSizeSC(int k, const double* means, double* coefficients, double sigma) {
    return contrast_effect(groups(k, means), groups(k, coefficients), sigma);
}

double PowerSC(int k, const double* means, const double* sizes, double* coefficients, int directional,
               double sigma, double alpha) {
    if (!(k >= 2 && sigma > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return contrast_power(groups(k, means), sigma, groups(k, sizes), SampleSizeTotal(k, sizes),
                          groups(k, coefficients), directional != STATPOWER_TWO_SIDED, alpha);
}

double PowerSCwES(int k, const double* sizes, const double* coefficients, int directional, double es,
                  double alpha) {
    if (!(k >= 2 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return contrast_power_of_effect(es, groups(k, sizes), SampleSizeTotal(k, sizes), groups(k, coefficients),
                                    directional != STATPOWER_TWO_SIDED, alpha);
}

double PowerReverseSC(int k, const double* means, const double* sizes, const double* coefficients,
                      std::vector<double>* groupSizes, int directional, double sigma, double power,
                      double alpha) {
    if (!(k >= 2 && sigma > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    return contrast_allocation(groups(k, means), groups(k, sizes), groups(k, coefficients), *groupSizes,
                               directional, sigma, power, alpha);
}

double PowerReverseSCwES(int k, const double* sizes, const double* coefficients,
                         std::vector<double>* groupSizes, int directional, double es, double power,
                         double alpha) {
    if (!(k >= 2 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const auto weights = proportions(groups(k, sizes));
    const ContrastEffectSearch design{power, k, es, alpha, directional, weights, groups(k, coefficients)};
    const double N = search_total(design, SCwESFunc,
                                  start_of(es, weights, design.coefficients, directional, power, alpha));
    return allocate(*groupSizes, [&](std::size_t i) { return weights[i] * N; });
}

double HalfCISCTest(int k, const double* sizes, const double* coefficients, double N, double sigma,
                    double alpha) {
    const double variance = unit_variance(groups(k, coefficients), groups(k, sizes));
    return std::sqrt(SampleSizeTotal(k, sizes) * variance / N) * t_critical(alpha / 2, N - k) * sigma;
}

double PowerReversebyHalfCISCTest(int k, const double* sizes, const double* coefficients,
                                  std::vector<double>* groupSizes, double halfWidth, double sigma,
                                  double alpha) {
    if (!(k >= 2 && sigma > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    groupSizes->resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const double total = SampleSizeTotal(k, sizes);
    const double variance = unit_variance(groups(k, coefficients), groups(k, sizes));
    const ContrastHalfWidthSearch design{halfWidth, k, sigma, alpha, total, variance};
    const double N = search_total(design, _SampleSizebyHalfCISCTestFunc, kSizeTolerance);
    return allocate(*groupSizes, [&](std::size_t i) { return sizes[i] * N / total; });
}
