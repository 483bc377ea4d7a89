// The paired t test is the one-sample test of the differences: its powers for an effect size are those of the
// one-sample test, behind checks of its own.
#include "means/paired.h"

#include <cmath>

#include "core/checks.h"
#include "core/rejection.h"
#include "core/sums.h"
#include "means/search.h"
#include "statpower/means.h"

using namespace statpower;
using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

namespace {

double variance_of_differences(double sd1, double sd2, double corr) {
    return square(sd1) + square(sd2) - 2 * corr * sd1 * sd2;
}

}  // namespace

bool statpower::paired_design_refused(double sd1, double sd2, double corr, double alpha) {
    const bool no_spread = sd1 == sd2 && std::abs(corr) == 1;
    return sd2 < 0 || sd1 <= 0 || corr == 0 || corr < -1 || no_spread || is_refused_level(alpha);
}

namespace POWER_NAMESPACE {

double RelatedNondirectionalFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    return power_above_target(PowerRelatedNondirectionalES, N, design);
}

double RelatedDirectionalFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    return power_above_target(PowerRelatedDirectionalES, N, design);
}

double _SampleSizebyHalfWidthCIRelatedFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<PairedMeansHalfWidthSearch>(design);
    return N * square(d.target) / variance_of_differences(d.sd1, d.sd2, d.corr) -
           square(t_critical(d.alpha / 2, N - 1));
}

}  // namespace POWER_NAMESPACE

double EffectSizeRelated(double mean1, double sd1, double mean2, double sd2, double corr) {
    return (mean1 - mean2) / (sd2 == 0 ? sd1 : std::sqrt(variance_of_differences(sd1, sd2, corr)));
}

double PowerRelatedNondirectionalES(double N, double es, double alpha) {
    if (!(N > 1 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return PowerOneSampleNondirectionalES(N, es, alpha);
}

double PowerRelatedDirectionalES(double N, double es, double alpha) {
    return PowerOneSampleDirectionalES(N, es, alpha);
}

double PowerRelatedNondirectional(double N, double mean1, double sd1, double mean2, double sd2, double corr,
                                  double alpha) {
    if (N <= 1 || corr > 1 || paired_design_refused(sd1, sd2, corr, alpha)) return OrvMV::Missing();
    return PowerRelatedNondirectionalES(N, EffectSizeRelated(mean1, sd1, mean2, sd2, corr), alpha);
}

double PowerRelatedDirectional(double N, double mean1, double sd1, double mean2, double sd2, double corr,
                               double alpha) {
    if (N <= 1 || corr >= 1 || paired_design_refused(sd1, sd2, corr, alpha)) return OrvMV::Missing();
    return PowerRelatedDirectionalES(N, EffectSizeRelated(mean1, sd1, mean2, sd2, corr), alpha);
}

double PowerReverseRelatedNondirectionalES(double power, double es, double alpha) {
    return search_size(EffectSearch{power, es, alpha}, RelatedNondirectionalFunc,
                       t_test_start(power, alpha / 2, es));
}

double PowerReverseRelatedDirectionalES(double power, double es, double alpha) {
    return search_size(EffectSearch{power, es, alpha}, RelatedDirectionalFunc,
                       t_test_start(power, alpha, es));
}

double PowerReverseRelatedNondirectional(double power, double mean1, double sd1, double mean2, double sd2,
                                         double corr, double alpha) {
    if (corr > 1 || paired_design_refused(sd1, sd2, corr, alpha)) return OrvMV::Missing();
    return PowerReverseRelatedNondirectionalES(power, EffectSizeRelated(mean1, sd1, mean2, sd2, corr), alpha);
}

double PowerReverseRelatedDirectional(double power, double mean1, double sd1, double mean2, double sd2,
                                      double corr, double alpha) {
    if (corr >= 1 || paired_design_refused(sd1, sd2, corr, alpha)) return OrvMV::Missing();
    return PowerReverseRelatedDirectionalES(power, EffectSizeRelated(mean1, sd1, mean2, sd2, corr), alpha);
}

double PowerReversebyHalfCIRelatedMeans(double halfWidth, double sd1, double sd2, double corr, double alpha) {
    return std::ceil(search_size(PairedMeansHalfWidthSearch{halfWidth, sd1, sd2, corr, alpha},
                                 _SampleSizebyHalfWidthCIRelatedFunc));
}

double HalfCIRelatedMeans(double N, double sd1, double sd2, double corr, double alpha) {
    return t_critical(alpha / 2, N - 1) * std::sqrt(variance_of_differences(sd1, sd2, corr)) / std::sqrt(N);
}
