#include "proportions/one/half_width.h"

#include <cmath>

#include "core/rejection.h"
#include "core/sums.h"
#include "orvcommon/dist_fun.h"
#include "proportions/search.h"
#include "statpower/one_sample_binomial.h"

using namespace statpower;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;

namespace {

double wald(double N, double p, double z, bool continuity_correction) {
    return z * std::sqrt(p * (1 - p) / N) + (continuity_correction ? 0.5 / N : 0);
}

/// Half-width of the interval from L - z s to L + z s on the logit scale.
double logit_scale(double L, double z, double s) {
    const auto logistic = [](double u) { return 1 / (1 + std::exp(-u)); };
    return (logistic(L + z * s) - logistic(L - z * s)) / 2;
}

double logit_corrected(double N, double p, double z) {
    const double x = p * N;
    const double f = N - x;
    // (N + 2) (N + 1) / ((f + 1) (x + 1) N), in an order that cannot overflow.
    const double variance = (N + 2) / (f + 1) * ((N + 1) / (x + 1)) / N;
    return logit_scale(std::log((x + 0.5) / (f + 0.5)), z, std::sqrt(variance));
}

double logit(double N, double p, double z) {
    return logit_scale(std::log(p / (1 - p)), z, std::sqrt(1 / ((N - p * N) * p)));
}

double exact(double N, double p, double alpha) {
    const double x = p * N;
    const double f = N - x;
    return (OrvDistFun::IdfBeta(1 - alpha / 2, x + 1, f) - OrvDistFun::IdfBeta(alpha / 2, x, f + 1)) / 2;
}

double jeffreys(double N, double p, double alpha) {
    const double a = p * N + 0.5;
    const double b = N - p * N + 0.5;
    return (OrvDistFun::IdfBeta(1 - alpha / 2, a, b) - OrvDistFun::IdfBeta(alpha / 2, a, b)) / 2;
}

double score(double N, double p, double z, bool continuity_correction) {
    const double z2 = square(z);
    if (!continuity_correction) return std::sqrt(N) * z * std::sqrt(z2 / (4 * N) + p * (1 - p)) / (N + z2);
    const double A = 4 * N * p * (1 - p) + z2 - 1 / N;
    return (2 + z * std::sqrt(A + 2 - 4 * p) + z * std::sqrt(A - 2 + 4 * p)) / (4 * (N + z2));
}

double adjusted_wald(double N, double p, double z) {
    const double n = square(z) + N;
    return wald(n, (square(z) / 2 + p * N) / n, z, false);
}

}  // namespace

double HalfCIOneSampBinom(double N, double p, double alpha, int method, bool continuityCorrection) {
    const double z = z_critical(alpha / 2);
    switch (method) {
        case STATPOWER_ONE_PROPORTION_WALD:
            return wald(N, p, z, continuityCorrection);
        case STATPOWER_ONE_PROPORTION_LOGIT_ADDED:
            return logit_corrected(N, p, z);
        case STATPOWER_ONE_PROPORTION_LOGIT:
            return logit(N, p, z);
        case STATPOWER_ONE_PROPORTION_EXACT:
            return exact(N, p, alpha);
        case STATPOWER_ONE_PROPORTION_JEFFREYS:
            return jeffreys(N, p, alpha);
        case STATPOWER_ONE_PROPORTION_SCORE:
            return score(N, p, z, continuityCorrection);
        case STATPOWER_ONE_PROPORTION_ADJUSTED_WALD:
            return adjusted_wald(N, p, z);
        default:
            return 0;
    }
}

double POWER_NAMESPACE::_SampleSizebyHalfCIOneSampBinom(double N, std::vector<double> design,
                                                        OrvQueryCancel*) {
    const auto d = unpack<OneProportionHalfWidthSearch>(design);
    if (d.method < STATPOWER_ONE_PROPORTION_LOGIT_ADDED || d.method > STATPOWER_ONE_PROPORTION_ADJUSTED_WALD)
        return 0;
    return d.target - HalfCIOneSampBinom(N, d.p, d.alpha, d.method, d.continuity_correction);
}

double PowerReversebyHalfCIOneSampBinom(double halfWidth, double p, double alpha, int method,
                                        bool continuityCorrection, OrvQueryCancel* cancel) {
    if (method == STATPOWER_ONE_PROPORTION_WALD) {
        const double z = z_critical(alpha / 2);
        const double pq = p * (1 - p);
        if (!continuityCorrection) return square(z) * pq / square(halfWidth);
        return square((std::sqrt(square(z) * pq + 2 * halfWidth) + z * std::sqrt(pq)) / (2 * halfWidth));
    }
    const OneProportionHalfWidthSearch design{halfWidth, p, method, alpha, continuityCorrection};
    return search_size(design, POWER_NAMESPACE::_SampleSizebyHalfCIOneSampBinom, cancel);
}
