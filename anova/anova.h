// The overall F test of a one-way analysis of variance: kernels and objectives.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "core/design.h"
#include "core/rejection.h"
#include "statpower/core.h"

namespace statpower {

/// The overall F test of k groups and a total N; nothing unless there are at least two groups, N >= k and alpha
/// is between 0 and 1.
std::optional<FTest> overall_test(double k, double N, double alpha);

/// Variance between the groups: the sum of (weights[i] / W) (means[i] - m)^2, m the weighted grand mean.
double between_variance(std::span<const double> means, std::span<const double> weights);

/// N es^2 for f (es_type 0), else N es / (1 - es).
double overall_noncentrality(int es_type, double es, double N);

/// Power for one mean and one allocation weight a group (of the weights only the proportions matter) and a
/// total N: noncentrality lambda = sum of (weights[i] / W) (means[i] - m)^2 / (sigma^2 / N).
/// The missing value unless there are at least two groups, alpha > 0, sigma > 0, N >= k and alpha < 1.
double overall_f_power(std::span<const double> means, double sigma, std::span<const double> weights, double N,
                       double alpha);

// ---- Design vectors of the sample-size searches ----------------------------------------------------------

struct OverallSearch {
    double target;
    int k;
    double sigma, alpha;
    std::span<const double> means, weights;
    auto fields() { return std::tuple_cat(std::tie(target, k, sigma, alpha), arrays(k, means, weights)); }
};

struct OverallEffectSearch {
    double target;
    int k;
    double es;
    int es_type;
    double alpha;
    auto fields() { return std::tie(target, k, es, es_type, alpha); }
};

struct OverallHalfWidthSearch {
    double target;
    int k;
    double sigma, alpha;
    auto fields() { return std::tie(target, k, sigma, alpha); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// overall_f_power for k means and k allocation weights.
STATPOWER_API double _PowerOverallTestwithN(int k, double* means, double sigma, double* sizes, double N,
                                            double alpha);

/// Power for an effect size and a total N: lambda = N es^2 for f (esType 0), else N es / (1 - es).
/// The missing value unless k >= 2, alpha > 0, N >= k and alpha < 1; the effect size is not checked.
STATPOWER_API double _PowerOverallTestwithES(int k, double es, int esType, double N, double alpha);

/// Power at N minus the target. Design: OverallSearch.
STATPOWER_API double OverallTestFunc(double N, std::vector<double> design,
                                     OrvCommon_940::OrvQueryCancel* cancel);

/// Power at N minus the target. Design: OverallEffectSearch.
STATPOWER_API double OverallTestwESFunc(double N, std::vector<double> design,
                                        OrvCommon_940::OrvQueryCancel* cancel);

/// N halfWidth^2 / sigma^2 - t^2, negative while t sigma / sqrt(N) exceeds the half-width.
/// Design: OverallHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfCIOverallTestFunc(double N, std::vector<double> design,
                                                        OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
