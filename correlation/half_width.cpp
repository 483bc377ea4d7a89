// Half-width of the confidence interval of a correlation, and the sample size that reaches a half-width.
#include <cmath>

#include "core/design.h"
#include "correlation/correlation.h"
#include "correlation/fisher_z.h"
#include "orvcommon/dist_fun.h"
#include "statpower/correlation.h"

using namespace statpower;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;

namespace {

double fisher_z(double r) {
    return 0.5 * std::log((1 + r) / (1 - r));
}

/// Half the length of the interval z -/+ q sd, transformed back to the correlation scale.
double half_width(double z, double variance, double alpha) {
    const double margin = OrvDistFun::IdfStdNorm(1 - alpha / 2) * std::sqrt(variance);
    return (std::tanh(z + margin) - std::tanh(z - margin)) / 2;
}

/// Smallest whole N whose half-width does not exceed the target. The quantile is asked for and not used: the
/// call belongs to what a platform's common library sees of this search.
double search_half_width(const std::vector<double>& design, POWER_NAMESPACE::Objective objective,
                         OrvQueryCancel* cancel, double low, double high, double alpha) {
    constexpr double kTolerance = 1e-9;
    static_cast<void>(OrvDistFun::IdfStdNorm(1 - alpha / 2));
    return std::ceil(PowerReverse(design, objective, cancel, low, high, kTolerance));
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
    DesignReader d(design);
    const auto [target, r] = d.numbers<2>();
    const bool bias = d.flag();
    const double alpha = d.number();
    return target - HalfCIOneSampPearson(bias, N, r, alpha);
}

double _SampleSizebyHalfCIOneSampSpearman(double N, std::vector<double> design, OrvQueryCancel*) {
    DesignReader d(design);
    const auto [target, r] = d.numbers<2>();
    const int method = d.integer();
    const double alpha = d.number();
    return target - HalfCIOneSampSpearman(method, N, r, alpha);
}

double _SampleSizebyHalfCIOneSampPartial(double N, std::vector<double> design, OrvQueryCancel*) {
    DesignReader d(design);
    const auto [target, k, r, alpha] = d.numbers<4>();
    return target - HalfCIOneSampPartial(N, k, r, alpha);
}

}  // namespace POWER_NAMESPACE

double PowerReversebyHalfCIOneSampPearson(bool bias, OrvQueryCancel* cancel, double halfWidth, double r,
                                          double alpha) {
    return search_half_width(pack_design(halfWidth, r, bias, alpha),
                             POWER_NAMESPACE::_SampleSizebyHalfCIOneSampPearson, cancel, 4, 400, alpha);
}

double PowerReversebyHalfCIOneSampSpearman(int method, OrvQueryCancel* cancel, double halfWidth, double r,
                                           double alpha) {
    return search_half_width(pack_design(halfWidth, r, method, alpha),
                             POWER_NAMESPACE::_SampleSizebyHalfCIOneSampSpearman, cancel, 4, 400, alpha);
}

double PowerReversebyHalfCIOneSampPartial(OrvQueryCancel* cancel, double halfWidth, double k, double r,
                                          double alpha) {
    return search_half_width(pack_design(halfWidth, k, r, alpha),
                             POWER_NAMESPACE::_SampleSizebyHalfCIOneSampPartial, cancel, k + 4, k + 404,
                             alpha);
}
