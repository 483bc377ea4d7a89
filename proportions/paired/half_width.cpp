#include "proportions/paired/half_width.h"

#include <cmath>

#include "core/rejection.h"
#include "core/sums.h"
#include "proportions/search.h"
#include "statpower/related_binomial.h"

using namespace statpower;
using OrvCommon_940::OrvQueryCancel;

namespace {

/// Variance of the difference within one pair.
double pair_variance(double p1, double p2) {
    return p1 + p2 - square(p1 - p2);
}

/// With `added` pairs among the discordant ones, and two among all.
double adjusted_wald(double N, double p1, double p2, double z, double added) {
    const double s = ((p1 + p2) * N + added) / (N + 2);
    const double t = (p1 - p2) * N / (N + 2);
    return z * std::sqrt((s - square(t)) / (N + 2));
}

}  // namespace

double HalfCIRelSampBinom(int method, bool continuityCorrection, double N, double p1, double p2,
                          double alpha) {
    const double z = z_critical(alpha / 2);
    switch (method) {
        case STATPOWER_PAIRED_PROPORTIONS_WALD:
            return z * std::sqrt(pair_variance(p1, p2) / N) + (continuityCorrection ? 1 / N : 0);
        case STATPOWER_PAIRED_PROPORTIONS_ONE_PAIR_ADDED:
            return adjusted_wald(N, p1, p2, z, 1);
        case STATPOWER_PAIRED_PROPORTIONS_TWO_PAIRS_ADDED:
            return adjusted_wald(N, p1, p2, z, 2);
        default:
            return 0;
    }
}

double POWER_NAMESPACE::_SampleSizebyHalfCIRelSampBinom(double N, std::vector<double> design,
                                                        OrvQueryCancel*) {
    const auto d = unpack<PairedProportionsHalfWidthSearch>(design);
    if (d.method != STATPOWER_PAIRED_PROPORTIONS_ONE_PAIR_ADDED &&
        d.method != STATPOWER_PAIRED_PROPORTIONS_TWO_PAIRS_ADDED)
        return 0;
    return d.target - HalfCIRelSampBinom(d.method, d.continuity_correction, N, d.p1, d.p2, d.alpha);
}

double PowerReversebyHalfCIRelSampBinom(int method, bool continuityCorrection, OrvQueryCancel* cancel,
                                        double halfWidth, double p1, double p2, double alpha) {
    if (method == STATPOWER_PAIRED_PROPORTIONS_WALD) {
        const double a = pair_variance(p1, p2) * square(z_critical(alpha / 2));
        if (!continuityCorrection) return std::ceil(a / square(halfWidth));
        return std::ceil(square((std::sqrt(4 * halfWidth + a) + std::sqrt(a)) / (2 * halfWidth)));
    }
    const PairedProportionsHalfWidthSearch design{halfWidth, p1, p2, method, alpha, continuityCorrection};
    return std::ceil(search_size(design, POWER_NAMESPACE::_SampleSizebyHalfCIRelSampBinom, cancel));
}
