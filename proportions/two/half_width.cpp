// Two independent proportions: confidence intervals of their difference.
#include <algorithm>
#include <cmath>

#include "core/rejection.h"
#include "core/search.h"
#include "core/sums.h"
#include "orvcommon/mv.h"
#include "proportions/two/power.h"
#include "statpower/independent_binomial.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

namespace {

double variance(double p) {
    return p * (1 - p);
}

/// The proportion after adding `successes` to p n of n, and `trials` to n.
double adjusted(double n, double p, double successes, double trials) {
    return (p * n + successes) / (n + trials);
}

struct Limits {
    double lower;
    double upper;
};

/// Score interval of a single proportion.
Limits score_limits(double n, double p, double z, bool continuity_correction) {
    const double q = 1 - p;
    const double zz = square(z);
    if (!continuity_correction) {
        const double centre = (p + zz / (2 * n)) / (1 + zz / n);
        const double spread = z * std::sqrt(p * q / n + zz / (4 * square(n))) / (1 + zz / n);
        return {centre - spread, centre + spread};
    }
    const double A = 4 * n * p * q + zz - 1 / n;
    const double denominator = 2 * (n + zz);
    return {(2 * n * p + zz - 1 - z * std::sqrt(A + 4 * p - 2)) / denominator,
            (2 * n * p + zz + 1 + z * std::sqrt(A - 4 * p + 2)) / denominator};
}

double hybrid_score_half_width(double n1, double n2, double p1, double p2, double z,
                               bool continuity_correction) {
    const auto [l1, u1] = score_limits(n1, p1, z, continuity_correction);
    const auto [l2, u2] = score_limits(n2, p2, z, continuity_correction);
    return (std::sqrt(square(p2 - l2) + square(u1 - p1)) + std::sqrt(square(u2 - p2) + square(p1 - l1))) / 2;
}

/// Sample size of the first group whose Wald interval has the half-width W at n2 = r n1.
double wald_sample_size(double W, double p1, double p2, double r, double z, bool continuity_correction) {
    const double V = variance(p1) + variance(p2) / r;
    if (!continuity_correction) return square(z) * V / square(W);
    return square((std::sqrt(square(z) * V + 2 * W * (r + 1) / r) + z * std::sqrt(V)) / (2 * W));
}

}  // namespace

double HalfCIIndSampBinom(double n1, double n2, double p1, double p2, double alpha, int method,
                          bool continuityCorrection) {
    const double z = z_critical(alpha / 2);
    switch (method) {
        case STATPOWER_TWO_PROPORTIONS_WALD: {
            const double correction = continuityCorrection ? 0.5 * (1 / n1 + 1 / n2) : 0;
            return z * std::sqrt(variance(p2) / n2 + variance(p1) / n1) + correction;
        }
        case STATPOWER_TWO_PROPORTIONS_AGRESTI_CAFFO:
        case STATPOWER_TWO_PROPORTIONS_AGRESTI_CAFFO3: {
            const double added = method == STATPOWER_TWO_PROPORTIONS_AGRESTI_CAFFO ? 2 : 3;
            return z * std::sqrt(variance(adjusted(n1, p1, 1, 2)) / (n1 + added) +
                                 variance(adjusted(n2, p2, 1, 2)) / (n2 + added));
        }
        case STATPOWER_TWO_PROPORTIONS_HALF_ADDED:
            return z * std::sqrt(variance(adjusted(n1, p1, 0.5, 1)) / n1 +
                                 variance(adjusted(n2, p2, 0.5, 1)) / n2);
        case STATPOWER_TWO_PROPORTIONS_UNBIASED: {
            const double smaller = n2 / n1 < 1 ? n2 : n1;
            return z * std::sqrt(variance(p1) / (n1 - 1) + variance(p2) / (n2 - 1)) + 0.5 / smaller;
        }
        case STATPOWER_TWO_PROPORTIONS_HYBRID_SCORE:
            return hybrid_score_half_width(n1, n2, p1, p2, z, continuityCorrection);
        default:
            return 0;
    }
}

double POWER_NAMESPACE::_SampleSizebyHalfCIIndSampBinom(double n1, std::vector<double> design,
                                                        OrvQueryCancel*) {
    const auto d = unpack<TwoProportionsHalfWidthSearch>(design);
    if (d.method < STATPOWER_TWO_PROPORTIONS_AGRESTI_CAFFO ||
        d.method > STATPOWER_TWO_PROPORTIONS_HYBRID_SCORE)
        return 0;
    return d.target -
           HalfCIIndSampBinom(n1, d.r * n1, d.p1, d.p2, d.alpha, d.method, d.continuity_correction);
}

void PowerReversebyHalfCIIndSampBinom(double halfWidth, double p1, double p2, double r, double alpha,
                                      std::vector<double>& result, int method, bool continuityCorrection,
                                      OrvQueryCancel* cancel) {
    const TwoProportionsHalfWidthSearch design{halfWidth, p1, p2, r, method, alpha, continuityCorrection};
    const double n1 =
        method == STATPOWER_TWO_PROPORTIONS_WALD
            ? wald_sample_size(halfWidth, p1, p2, r, z_critical(alpha / 2), continuityCorrection)
            : search_size(design, POWER_NAMESPACE::_SampleSizebyHalfCIIndSampBinom, cancel, 2, kFirstReach);
    if (OrvMV::IsMissing(n1))
        result.assign(2, OrvMV::Missing());
    else
        result.assign({std::ceil(n1), std::max(std::ceil(r * n1), 2.0)});
}
