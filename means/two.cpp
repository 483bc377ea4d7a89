#include "means/two.h"

#include <algorithm>
#include <cmath>
#include <optional>

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

// The searches for a target that no sample size reaches evaluate these formulas up to N of about 1e308. They
// are written so that nothing overflows or cancels to 0 / 0 there: a probability that cannot be computed
// would count as certain rejection, and the search would take it for success.

/// Standard error of the difference: the root of sd1^2 / N1 + sd2^2 / N2. Where sizes are not checked they may
/// be negative.
double standard_error(double N1, double sd1, double N2, double sd2) {
    if (!(N1 > 0 && N2 > 0)) return std::sqrt(square(sd1) / N1 + square(sd2) / N2);
    return std::hypot(sd1 / std::sqrt(N1), sd2 / std::sqrt(N2));
}

/// The share of sd^2 / N in the variance of the difference.
double variance_share(double N, double sd, double other_N, double other_sd) {
    return 1 / (1 + square(other_sd / sd) * (N / other_N));
}

/// Welch-Satterthwaite degrees of freedom: (q1 + q2)^2 / (q1^2 / (N1 - 1) + q2^2 / (N2 - 1)) for
/// qi = sdi^2 / Ni, by the shares qi / (q1 + q2).
double welch_df(double N1, double sd1, double N2, double sd2) {
    const double share1 = variance_share(N1, sd1, N2, sd2);
    const double share2 = variance_share(N2, sd2, N1, sd1);
    return 1 / (square(share1) / (N1 - 1) + square(share2) / (N2 - 1));
}

double pooled_df(double N1, double N2) {
    return N1 + N2 - 2;
}

/// Pooled for equal standard deviations, else Welch's.
double degrees_of_freedom(double N1, double sd1, double N2, double sd2) {
    return sd1 == sd2 ? pooled_df(N1, N2) : welch_df(N1, sd1, N2, sd2);
}

/// The t test of a difference: what its power depends on besides alpha.
struct NoncentralT {
    double df;
    double noncentrality;
};

/// Noncentrality es sqrt(N1 N2 / (N1 + N2)).
NoncentralT pooled_test(double N1, double N2, double es) {
    return {pooled_df(N1, N2), es / std::sqrt(1 / N1 + 1 / N2)};
}

NoncentralT welch_test(double N1, double sd1, double N2, double sd2, double diff) {
    return {welch_df(N1, sd1, N2, sd2), diff / standard_error(N1, sd1, N2, sd2)};
}

/// The test for means and standard deviations; none where they are refused.
std::optional<NoncentralT> test_of_means(double N1, double mean1, double sd1, double N2, double mean2,
                                         double sd2, double alpha) {
    if (!(N1 > 1 && N2 > 1 && sd1 > 0 && sd2 > 0 && is_between_0_and_1(alpha))) return std::nullopt;
    const double diff = mean1 - mean2;
    return sd1 == sd2 ? pooled_test(N1, N2, diff / sd1) : welch_test(N1, sd1, N2, sd2, diff);
}

/// Welch's test for a total size and an allocation ratio; none where they are refused.
std::optional<NoncentralT> test_at_ratio(double Ntotal, double ratio, double diff, double sd1, double sd2,
                                         double alpha) {
    if (ratio <= 0 || sd1 <= 0 || sd2 <= 0 || is_refused_level(alpha)) return std::nullopt;
    const double N1 = Ntotal / (1 + ratio);
    const double N2 = ratio * N1;
    if (N1 <= 1 || N2 <= 1) return std::nullopt;
    return welch_test(N1, sd1, N2, sd2, diff);
}

double two_sided_power(double alpha, std::optional<NoncentralT> test) {
    if (!test) return OrvMV::Missing();
    return t_test_power_two_sided(alpha, test->df, test->noncentrality);
}

/// The true difference is taken to lie on the side of the alternative.
double one_sided_power(double alpha, std::optional<NoncentralT> test) {
    if (!test) return OrvMV::Missing();
    return t_test_power_one_sided(alpha, test->df, std::abs(test->noncentrality));
}

using PowerOfMeans = double (*)(double N1, double mean1, double sd1, double N2, double mean2, double sd2,
                                double alpha);
using PowerOfEffectSize = double (*)(double N1, double N2, double es, double alpha);

double above_target(PowerOfMeans power, double N, const std::vector<double>& design) {
    const auto d = unpack<TwoMeansSearch>(design);
    return power(N, d.mean1, d.sd1, d.ratio * N, d.mean2, d.sd2, d.alpha) - d.target;
}

double above_target(PowerOfEffectSize power, double N, const std::vector<double>& design) {
    const auto d = unpack<TwoMeansEffectSearch>(design);
    return power(N, d.ratio * N, d.es, d.alpha) - d.target;
}

/// The start of the search for the size of group 1, `tail` the level of one tail.
SteadyStart start_of(const TwoMeansSearch& d, double tail) {
    const double diff = d.mean1 - d.mean2;
    const auto test =
        d.sd1 == d.sd2 ? pooled_test(1, d.ratio, diff / d.sd1) : welch_test(1, d.sd1, d.ratio, d.sd2, diff);
    return t_test_start(d.target, tail, test.noncentrality, 1 + d.ratio);
}

SteadyStart start_of(const TwoMeansEffectSearch& d, double tail) {
    return t_test_start(d.target, tail, pooled_test(1, d.ratio, d.es).noncentrality, 1 + d.ratio);
}

/// Appends the sizes of both groups: whole numbers, group 2 never below 2; twice the missing value where the
/// search fails.
template <class Design>
void append_sizes(const Design& design, double N1, std::vector<double>& sizes) {
    if (OrvMV::IsMissing(N1))
        sizes.insert(sizes.end(), {N1, N1});
    else
        sizes.insert(sizes.end(), {std::ceil(N1), std::max(std::ceil(design.ratio * N1), 2.0)});
}

}  // namespace

namespace POWER_NAMESPACE {

double _PowerIndependentNondirectional(double Ntotal, double ratio, double diff, double sd1, double sd2,
                                       double alpha) {
    return two_sided_power(alpha, test_at_ratio(Ntotal, ratio, diff, sd1, sd2, alpha));
}

double _PowerIndependentDirectional(double Ntotal, double ratio, double diff, double sd1, double sd2,
                                    double alpha) {
    return one_sided_power(alpha, test_at_ratio(Ntotal, ratio, diff, sd1, sd2, alpha));
}

double PowerIndependentNondirectionalFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    return above_target(PowerIndependentNondirectional, N, design);
}

double IndependentDirectionalFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    return above_target(PowerIndependentDirectional, N, design);
}

double IndependentNondirectionalESFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    return above_target(PowerIndependentNondirectionalES, N, design);
}

double IndependentDirectionalESFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    return above_target(PowerIndependentDirectionalES, N, design);
}

double _SampleSizebyHalfWidthCIIndependentFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<TwoMeansHalfWidthSearch>(design);
    const double t = t_critical(d.alpha / 2, degrees_of_freedom(N, d.sd1, d.ratio * N, d.sd2));
    return d.sd1 == d.sd2 ? square(d.target) / square(d.sd1) * N - square(t) * (1 + 1 / d.ratio)
                          : square(d.target) * N - square(t) * (square(d.sd2) / d.ratio + square(d.sd1));
}

}  // namespace POWER_NAMESPACE

double EffectSizeIndependent(double mean1, double mean2, double sd) {
    return sd == 0 ? OrvMV::Missing() : (mean1 - mean2) / sd;
}

double PowerIndependentNondirectional(double N1, double mean1, double sd1, double N2, double mean2,
                                      double sd2, double alpha) {
    return two_sided_power(alpha, test_of_means(N1, mean1, sd1, N2, mean2, sd2, alpha));
}

double PowerIndependentDirectional(double N1, double mean1, double sd1, double N2, double mean2, double sd2,
                                   double alpha) {
    return one_sided_power(alpha, test_of_means(N1, mean1, sd1, N2, mean2, sd2, alpha));
}

double PowerIndependentNondirectionalES(double N1, double N2, double es, double alpha) {
    if (N1 <= 1) return OrvMV::Missing();
    const double ratio = N2 / N1;
    if (ratio <= 0 || ratio * N1 <= 1 || is_refused_level(alpha)) return OrvMV::Missing();
    return two_sided_power(alpha, pooled_test(N1, N2, es));
}

double PowerIndependentDirectionalES(double N1, double N2, double es, double alpha) {
    if (!(N1 > 1 && N2 > 1 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    return one_sided_power(alpha, pooled_test(N1, N2, es));
}

void PowerReverseIndependentNondirectional(double power, double ratio, double mean1, double sd1, double mean2,
                                           double sd2, double alpha, std::vector<double>& sizes) {
    if (!sizes.empty()) return;
    const TwoMeansSearch design{power, ratio, mean1, sd1, mean2, sd2, alpha};
    append_sizes(design, search_size(design, PowerIndependentNondirectionalFunc, start_of(design, alpha / 2)),
                 sizes);
}

void PowerReverseIndependentDirectional(double power, double ratio, double mean1, double sd1, double mean2,
                                        double sd2, double alpha, std::vector<double>& sizes) {
    if (!sizes.empty()) return;
    const TwoMeansSearch design{power, ratio, mean1, sd1, mean2, sd2, alpha};
    append_sizes(design, search_size(design, IndependentDirectionalFunc, start_of(design, alpha)), sizes);
}

void PowerReverseIndependentNondirectionalES(double power, double ratio, double es, double alpha,
                                             std::vector<double>& sizes) {
    const TwoMeansEffectSearch design{power, ratio, es, alpha};
    append_sizes(design, search_size(design, IndependentNondirectionalESFunc, start_of(design, alpha / 2)),
                 sizes);
}

void PowerReverseIndependentDirectionalES(double power, double ratio, double es, double alpha,
                                          std::vector<double>& sizes) {
    const TwoMeansEffectSearch design{power, ratio, es, alpha};
    append_sizes(design, search_size(design, IndependentDirectionalESFunc, start_of(design, alpha)), sizes);
}

void PowerReversebyHalfCIIndependentMeans(double halfWidth, double ratio, double sd1, double sd2,
                                          double alpha, std::vector<double>& sizes) {
    const TwoMeansHalfWidthSearch design{halfWidth, ratio, sd1, sd2, alpha};
    append_sizes(design, search_size(design, _SampleSizebyHalfWidthCIIndependentFunc), sizes);
}

double HalfCIIndependentMeans(double N1, double sd1, double N2, double sd2, double alpha) {
    return t_critical(alpha / 2, degrees_of_freedom(N1, sd1, N2, sd2)) * standard_error(N1, sd1, N2, sd2);
}
