// Half-width of the confidence interval of a correlation, and the sample size that reaches a half-width.
#include <cmath>

#include "core/rejection.h"
#include "core/search.h"
#include "correlation/correlation.h"
#include "correlation/fisher_z.h"
#include "statpower/correlation.h"

using namespace statpower;
using OrvCommon_940::OrvQueryCancel;

namespace {

double fisher_z(double r) {
    return 0.5 * std::log((1 + r) / (1 - r));
}

/// Half the length of the interval z -/+ q sd, transformed back to the correlation scale.
double half_width(double z, double variance, double alpha) {
    const double margin = z_critical(alpha / 2) * std::sqrt(variance);
    return (std::tanh(z + margin) - std::tanh(z - margin)) / 2;
}

/// Smallest whole N whose half-width does not exceed the target. The quantile is asked for and not used: the
/// call belongs to what a platform's common library sees of this search
/// (CorrelationCalls.TheHalfWidthSearchesAskForTheQuantileAndDiscardIt).
template <class Design>
double search_half_width(const Design& design, POWER_NAMESPACE::Objective objective, OrvQueryCancel* cancel,
                         double low, double high) {
    static_cast<void>(z_critical(design.alpha / 2));
    return std::ceil(search_size(design, objective, cancel, low, high));
}

}  // namespace

double HalfCIOneSampPearson(bool bias, double N, double r, double alpha) {
    const double z = bias ? fisher_z(r) - r / (2 * (N - 1)) : fisher_z(r);
    return half_width(z, 1 / (N - 3), alpha);
}

double HalfCIOneSampSpearman(int method, double N, double r, double alpha) {
    return half_width(fisher_z(r), spearman_variance(method, N, r).value_or(0), alpha);
}

double HalfCIOneSampPartial(double N, double k, double r, double alpha) {
    return half_width(fisher_z(r), 1 / (N - 3 - k), alpha);
}

namespace POWER_NAMESPACE {

double _SampleSizebyHalfCIOneSampPearson(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<PearsonHalfWidthSearch>(design);
    return d.target - HalfCIOneSampPearson(d.bias, N, d.r, d.alpha);
}

double _SampleSizebyHalfCIOneSampSpearman(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<SpearmanHalfWidthSearch>(design);
    return d.target - HalfCIOneSampSpearman(d.method, N, d.r, d.alpha);
}

double _SampleSizebyHalfCIOneSampPartial(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<PartialHalfWidthSearch>(design);
    return d.target - HalfCIOneSampPartial(N, d.k, d.r, d.alpha);
}

}  // namespace POWER_NAMESPACE

using namespace POWER_NAMESPACE;

double PowerReversebyHalfCIOneSampPearson(bool bias, OrvQueryCancel* cancel, double halfWidth, double r,
                                          double alpha) {
    return search_half_width(PearsonHalfWidthSearch{halfWidth, r, bias, alpha},
                             _SampleSizebyHalfCIOneSampPearson, cancel, 4, kFirstReach);
}

double PowerReversebyHalfCIOneSampSpearman(int method, OrvQueryCancel* cancel, double halfWidth, double r,
                                           double alpha) {
    return search_half_width(SpearmanHalfWidthSearch{halfWidth, r, method, alpha},
                             _SampleSizebyHalfCIOneSampSpearman, cancel, 4, kFirstReach);
}

double PowerReversebyHalfCIOneSampPartial(OrvQueryCancel* cancel, double halfWidth, double k, double r,
                                          double alpha) {
    return search_half_width(PartialHalfWidthSearch{halfWidth, k, r, alpha},
                             _SampleSizebyHalfCIOneSampPartial, cancel, k + 4, k + 404);
}
