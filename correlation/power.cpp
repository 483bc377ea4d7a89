// Power of the tests of a correlation, and the sample size that reaches a power.
#include <cmath>
#include <limits>

#include "core/checks.h"
#include "core/rejection.h"
#include "core/result_codes.h"
#include "core/search.h"
#include "core/sums.h"
#include "correlation/correlation.h"
#include "correlation/fisher_z.h"
#include "orvcommon/dist_fun.h"
#include "statpower/correlation.h"

using namespace statpower;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;

namespace {

bool is_valid(double N, double r, double r0, double alpha) {
    return std::isfinite(N) && is_correlation(r) && is_correlation(r0) && is_inside_unit_interval(alpha);
}

/// Difference of z under the alternative and under the null. The largest finite double stands for an infinite
/// one; where both correlations are at an end, r = 1 and r0 = -1 decide first.
double fisher_difference(double r, double r0) {
    if (r == 1 || r0 == -1) return std::numeric_limits<double>::max();
    if (r == -1 || r0 == 1) return std::numeric_limits<double>::lowest();
    return InvTanh(r) - InvTanh(r0);
}

/// Power of the normal test of z.
/// @param distance  between alternative and null, in standard deviations of z under the null
/// @param ratio     standard deviation of z under the alternative to that under the null
double z_test_power(int sided, double r, double r0, double alpha, double distance, double ratio) {
    const double q = z_critical(tail_level(sided, alpha));
    const auto above = [&] { return OrvDistFun::CdfStdNorm((distance - q) / ratio); };
    const auto below = [&] { return 1 - OrvDistFun::CdfStdNorm((q + distance) / ratio); };
    if (sided == STATPOWER_TWO_SIDED) return above() + below();
    return r > r0 ? above() : below();
}

/// Difference of the small-sample biases of z under the alternative and under the null, m = N - 1 (Hotelling
/// 1953).
double bias_difference(double r, double r0, double m) {
    const double r2 = square(r), r4 = std::pow(r, 4);
    return (r * (1 + (5 + r2) / (4 * m) + (11 + 2 * r2 + 3 * r4) / (8 * square(m))) - r0) / (2 * m);
}

/// Variance of z under the alternative in a small sample, m = N - 1 (Hotelling 1953).
double small_sample_variance(double r, double m) {
    const double r2 = square(r), r4 = std::pow(r, 4);
    return (1 + (4 - r2) / (2 * m) + (22 - 6 * r2 - 3 * r4) / (6 * square(m))) / m;
}

double pearson_power(int sided, bool bias, double N, double r, double r0, double alpha) {
    const double null_sd = std::sqrt(1 / (N - 3));
    double distance = fisher_difference(r, r0) / null_sd;
    double ratio = 1;
    if (bias) {
        distance += bias_difference(r, r0, N - 1) / null_sd;
        ratio = std::sqrt(small_sample_variance(r, N - 1)) / null_sd;
    }
    return z_test_power(sided, r, r0, alpha, distance, ratio);
}

}  // namespace

// ---- Power -----------------------------------------------------------------------------------------------

double PowerbyOneSampPearson(int sided, bool bias, double N, double r, double r0, double alpha) {
    if (!(N > 3 && is_valid(N, r, r0, alpha))) return kInvalid;
    return pearson_power(sided, bias, N, r, r0, alpha);
}

double PowerbyOneSampSpearman(int method, int sided, double N, double r, double r0, double alpha) {
    if (!(N >= 3 && is_valid(N, r, r0, alpha))) return kInvalid;
    if (N == 3 && method != STATPOWER_CARUSO_CLIFF) return 1;
    const auto variance = spearman_variance(method, N, r);
    if (!variance) return kInvalid;
    return z_test_power(sided, r, r0, alpha, fisher_difference(r, r0) / std::sqrt(*variance), 1);
}

double PowerbyOneSampPartial(int sided, double N, double k, double r, double r0, double alpha) {
    if (!(k >= 0 && N > k + 3 && is_valid(N, r, r0, alpha))) return kInvalid;
    return pearson_power(sided, true, N - k, r, r0, alpha);
}

// ---- Sample size -----------------------------------------------------------------------------------------

namespace POWER_NAMESPACE {

double PowerbyOneSampPearsonFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<PearsonSearch>(design);
    return PowerbyOneSampPearson(d.sided, d.bias, N, d.r, d.r0, d.alpha) - d.target;
}

double PowerbyOneSampSpearmanFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<SpearmanSearch>(design);
    return PowerbyOneSampSpearman(d.method, d.sided, N, d.r, d.r0, d.alpha) - d.target;
}

double PowerbyOneSampPartialFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<PartialSearch>(design);
    return PowerbyOneSampPartial(d.sided, N, d.k, d.r, d.r0, d.alpha) - d.target;
}

}  // namespace POWER_NAMESPACE

using namespace POWER_NAMESPACE;

double PowerReversebyOneSampPearson(int sided, bool bias, OrvQueryCancel* cancel, double power, double r,
                                    double r0, double alpha) {
    const PearsonSearch design{power, r, r0, sided, bias, alpha};
    return search_size(design, PowerbyOneSampPearsonFunc, cancel, 4, kFirstReach);
}

double PowerReversebyOneSampSpearman(int method, int sided, double power, double r, double r0, double alpha) {
    const SpearmanSearch design{power, r, r0, method, sided, alpha};
    const double smallest = method == STATPOWER_CARUSO_CLIFF ? 3 : 4;
    return search_size(design, PowerbyOneSampSpearmanFunc, nullptr, smallest, kFirstReach);
}

double PowerReversebyOneSampPartial(int sided, double power, double k, double r, double r0, double alpha) {
    const PartialSearch design{power, k, r, r0, sided, alpha};
    return search_size(design, PowerbyOneSampPartialFunc, nullptr, k + 3, k + kFirstReach);
}
