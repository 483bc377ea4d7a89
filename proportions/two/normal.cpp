#include "proportions/two/normal.h"

#include <algorithm>
#include <cmath>

#include "core/rejection.h"
#include "core/result_codes.h"
#include "orvcommon/dist_fun.h"
#include "proportions/two/design.h"

using namespace statpower;
using OrvMath_940::OrvDistFun;

namespace {

double Phi(double x) {
    return OrvDistFun::CdfStdNorm(x);
}

/// sqrt(p) as an angle. The slack in the group size can leave a corrected proportion a hair outside [0, 1].
double angle(double p) {
    return std::asin(std::sqrt(std::clamp(p, 0.0, 1.0)));
}

/// Whether both proportions can be moved half an observation towards each other and stay in [0, 1].
bool arcsine_applies(double n1, double n2, double p1, double p2) {
    if (p1 == p2) return true;
    const double inner1 = p1 > p2 ? p1 : 1 - p1;
    const double inner2 = p1 > p2 ? 1 - p2 : p2;
    return n1 >= 0.5 / inner1 - tol1 && n2 >= 0.5 / inner2 - tol1;
}

/// Signed distance of the transformed proportions: positive when p2 is the larger one.
double arcsine_distance(double n1, double n2, double p1, double p2) {
    if (p1 == p2) return 0;
    const double towards = p1 > p2 ? 0.5 : -0.5;
    const double scale = 2 * std::sqrt(n1 * n2 / (n1 + n2));
    return scale * (angle(p2 + towards / n2) - angle(p1 - towards / n1));
}

}  // namespace

namespace POWER_NAMESPACE {

double _PowerIndSamBinNormalApproxChisq(double n1, double n2, double p1, double p2, int sides, double alpha,
                                        bool continuityCorrection, bool pooled) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha))) return kInvalid;
    const double d = p1 - p2;
    const double S1 = std::sqrt(p2 * (1 - p2) / n2 + p1 * (1 - p1) / n1);
    const double pbar = (n2 * p2 + n1 * p1) / (n1 + n2);
    const double S0 = pooled ? std::sqrt(pbar * (1 - pbar) * (1 / n1 + 1 / n2)) : S1;
    const double c = continuityCorrection ? (1 / n1 + 1 / n2) / 2 : 0;
    const double z = z_critical(tail_level(sides, alpha));
    const double below = Phi((d - S0 * z - c) / S1);
    const double up_to = Phi((d + S0 * z + c) / S1);
    if (sides == STATPOWER_TWO_SIDED) return below + 1 - up_to;
    return p1 > p2 ? below : 1 - up_to;
}

double _PowerIndSamBinNormalApproxT(double n1, double n2, double p1, double p2, int sides, double alpha,
                                    bool pooled) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha) && n1 + n2 > 2)) return kInvalid;
    const double v1 = p1 * (1 - p1);
    const double v2 = p2 * (1 - p2);
    const double V = pooled ? n2 * v2 + n1 * v1 : n1 * v2 + n2 * v1;
    const double df = n1 + n2 - 2;
    const double delta = (p1 - p2) * std::sqrt(n1 * n2) / std::sqrt(V);
    const QuantileAccuracy accuracy{1e-20, 1e-12};
    return sides == STATPOWER_TWO_SIDED ? t_test_power_two_sided(alpha, df, delta, accuracy)
                                        : t_test_power_one_sided(alpha, df, std::abs(delta), accuracy);
}

double _PowerIndSamBinNormalApproxLRT(double n1, double n2, double p1, double p2, int sides, double alpha) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha))) return kInvalid;
    const double pbar = (n1 * p1 + n2 * p2) / (n1 + n2);
    const double G = n1 * p1 * std::log(p1 / pbar) + n1 * (1 - p1) * std::log((1 - p1) / (1 - pbar)) +
                     n2 * p2 * std::log(p2 / pbar) + n2 * (1 - p2) * std::log((1 - p2) / (1 - pbar));
    const double L = std::sqrt(std::abs(2 * G));
    const double z = z_critical(tail_level(sides, alpha));
    if (sides == STATPOWER_TWO_SIDED) return Phi(L - z) + 1 - Phi(L + z);
    return p1 > p2 ? Phi(L - z) : 1 - Phi(z - L);
}

double _PowerIndSamBinNormalApproxFisher(double n1, double n2, double p1, double p2, int sides,
                                         double alpha) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha))) return kInvalid;
    if (!arcsine_applies(n1, n2, p1, p2)) return kInvalid;
    const double h = arcsine_distance(n1, n2, p1, p2);
    const double z = z_critical(tail_level(sides, alpha));
    if (sides == STATPOWER_TWO_SIDED) return Phi(h - z) + 1 - Phi(h + z);
    return p1 < p2 ? Phi(h - z) : 1 - Phi(h + z);
}

}  // namespace POWER_NAMESPACE
