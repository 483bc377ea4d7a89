#include "means/one.h"

#include <cmath>

#include "core/checks.h"
#include "core/curves.h"
#include "core/rejection.h"
#include "core/sums.h"
#include "means/search.h"
#include "statpower/means.h"

using namespace statpower;
using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

namespace {

constexpr int kTwoSided = 0, kOneSided = 1;

}  // namespace

statpower::OneMeanTest::OneMeanTest(int directional, double N, double alpha)
    : one_sided_(directional != 0), root_N_(std::sqrt(N)) {
    const bool refused = one_sided_ ? !(N > 1 && is_between_0_and_1(alpha)) : N <= 1;
    if (!refused) test_.emplace(tail_level(directional, alpha), N - 1);
}

double statpower::OneMeanTest::power(double es) const {
    if (!test_) return OrvMV::Missing();
    return one_sided_ ? test_->power_one_sided(root_N_ * std::abs(es)) : test_->power_two_sided(root_N_ * es);
}

namespace POWER_NAMESPACE {

double NondirectionalFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    return power_above_target(PowerOneSampleNondirectionalES, N, design);
}

double DirectionalFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    return power_above_target(PowerOneSampleDirectionalES, N, design);
}

double _SampleSizebyHalfWidthCIOneSampleFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<OneMeanHalfWidthSearch>(design);
    return N * (square(d.target) / square(d.sd)) - square(t_critical(d.alpha / 2, N - 1));
}

void _SetPlotRangeN(double N, double mean, double sd, int& nMin, int& nMax, int directional, double mean0,
                    double alpha) {
    const auto power =
        directional != STATPOWER_TWO_SIDED ? PowerOneSampleDirectional : PowerOneSampleNondirectional;
    const auto range = default_range(power(N, mean, sd, mean0, alpha), N, 2);
    nMin = range.min;
    nMax = range.max;
}

}  // namespace POWER_NAMESPACE

double EffectSizeOneSample(double mean, double sd, double mean0) {
    return sd == 0 ? OrvMV::Missing() : (mean - mean0) / sd;
}

double PowerOneSampleNondirectionalES(double N, double es, double alpha) {
    return OneMeanTest(kTwoSided, N, alpha).power(es);
}

double PowerOneSampleDirectionalES(double N, double es, double alpha) {
    return OneMeanTest(kOneSided, N, alpha).power(es);
}

double PowerOneSampleNondirectional(double N, double mean, double sd, double mean0, double alpha) {
    if (!(N > 1 && sd > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return PowerOneSampleNondirectionalES(N, EffectSizeOneSample(mean, sd, mean0), alpha);
}

double PowerOneSampleDirectional(double N, double mean, double sd, double mean0, double alpha) {
    if (!(N > 1 && sd > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return PowerOneSampleDirectionalES(N, EffectSizeOneSample(mean, sd, mean0), alpha);
}

double PowerReverseOneSampleNondirectionalES(double power, double es, double alpha) {
    return search_size(EffectSearch{power, es, alpha}, NondirectionalFunc,
                       t_test_start(power, alpha / 2, es));
}

double PowerReverseOneSampleDirectionalES(double power, double es, double alpha) {
    return search_size(EffectSearch{power, es, alpha}, DirectionalFunc, t_test_start(power, alpha, es));
}

double PowerReverseOneSampleNondirectional(double power, double mean, double sd, double mean0, double alpha) {
    if (!(sd > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return PowerReverseOneSampleNondirectionalES(power, EffectSizeOneSample(mean, sd, mean0), alpha);
}

double PowerReverseOneSampleDirectional(double power, double mean, double sd, double mean0, double alpha) {
    if (!(sd > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return PowerReverseOneSampleDirectionalES(power, EffectSizeOneSample(mean, sd, mean0), alpha);
}

double PowerReversebyHalfCIOneSampleMeans(double halfWidth, double sd, double alpha) {
    return std::ceil(
        search_size(OneMeanHalfWidthSearch{halfWidth, sd, alpha}, _SampleSizebyHalfWidthCIOneSampleFunc));
}

double HalfCIOneSampleMeans(double N, double sd, double alpha) {
    return t_critical(alpha / 2, N - 1) * sd / std::sqrt(N);
}
