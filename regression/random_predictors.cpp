// The distribution of the sample squared multiple correlation with random predictors.
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "core/rejection.h"
#include "orvcommon/dist_fun.h"
#include "regression/regression.h"

using namespace statpower;
using OrvMath_940::OrvDistFun;

namespace {

constexpr double kHalfLog2Pi = 0.91893853320467274178;
constexpr double kNegligible = 1e-17;
constexpr int kLongestSum = 1 << 16;

// ---- Gamma functions without cancellation ----------------------------------------------------------------
//
// orvcommon/ has the like of both (stirling_error, log1p_deficit), but those are the replacement's own: where the
// platform brings its common library, only the operations of include/orvcommon are there.

/// log Gamma(x) minus its leading terms (x - 1/2) log x - x + log(2 pi) / 2, for x > 0.
double stirling_error(double x) {
    if (x < 16) return OrvDistFun::vorndnlgam(x) - ((x - 0.5) * std::log(x) - x + kHalfLog2Pi);
    const double y = 1 / (x * x);
    return (1.0 / 12 - (1.0 / 360 - (1.0 / 1260 - (1.0 / 1680 - y / 1188) * y) * y) * y) / x;
}

/// u - log_1p, where log_1p = log(1 + u): without cancellation for small u.
double log_deficit(double u, double log_1p) {
    if (std::abs(u) > 0.1) return u - log_1p;
    // log(1 + u) = 2 (r + r^3 / 3 + r^5 / 5 + ...) with r = u / (2 + u), and u - 2 r = r u.
    const double r = u / (2 + u), r2 = r * r;
    return r * (u - 2 * r2 * (1.0 / 3 + r2 * (1.0 / 5 + r2 * (1.0 / 7 + r2 * (1.0 / 9 + r2 / 11)))));
}

/// Logarithm of the negative binomial probability Gamma(a + k) / (Gamma(a) Gamma(k + 1)) e^k (1 - e)^a, k
/// real, by the deviances of k and a from their means (C. Loader, Fast and accurate computation of binomial
/// probabilities, 2000).
double log_negative_binomial(double k, double a, double e) {
    if (k == 0) return a * std::log1p(-e);
    const double n = a + k, excess = n * e - k;
    return stirling_error(n) - stirling_error(a) - stirling_error(k) -
           k * log_deficit(excess / k, std::log(n / k * e)) -
           a * log_deficit(-excess / a, std::log(n / a * (1 - e))) + 0.5 * std::log(a / n / k) - kHalfLog2Pi;
}

// ---- The series ------------------------------------------------------------------------------------------

/// log(exp(s) + exp(t)).
double log_sum(double s, double t) {
    const double larger = std::max(s, t);
    return std::isinf(larger) ? larger : larger + std::log(std::exp(s - larger) + std::exp(t - larger));
}

/// log of the sum over k of w_k I_x(b + k, d), w_k the negative binomial probabilities of shape a = b + d and
/// parameter e; nothing when it is too long.
///
/// An incomplete beta function is itself a sum, I_x(b + k, d) = c_k + c_(k+1) + ..., where c_j is the
/// negative binomial probability of b + j for shape d and parameter x. Exchanging the two sums leaves that of
/// c_j W_j, W_j = w_0 + ... + w_j, and once the weights are exhausted W_j no longer changes and one
/// incomplete beta function is the rest. Both running sums are kept in units of their last term, whose
/// logarithm has a closed form: nothing overflows, and a term costs three divisions.
std::optional<double> log_series(double x, double e, double a, double b, double d) {
    const auto next_weight = [=](double k) { return e * ((a + k) / (k + 1)); };        // w_(k+1) / w_k
    const auto next_beta = [=](double k) { return x * ((b + d + k) / (b + k + 1)); };  // c_(k+1) / c_k
    const double last = next_weight(kLongestSum);
    if (last > 1 && next_beta(kLongestSum) * last > 1) return std::nullopt;  // the terms would still grow

    double weights = 1;  // W_k / w_k
    double sum = 1;      // (c_0 W_0 + ... + c_k W_k) / (c_k w_k)
    double k = 0;
    for (;; ++k) {
        // The ratio of weights falls, that of betas tends to x: both bound all later ones, and geometric
        // series bound what is left. NaN ends the sum too.
        const double weight_ratio = next_weight(k), beta_ratio = next_beta(k);
        const double growth = std::max(beta_ratio, x) * (1 + weight_ratio / weights);
        const bool weights_left = weight_ratio > kNegligible * weights * (1 - weight_ratio);
        const bool terms_left = weights * growth > kNegligible * sum * (1 - growth);
        if (!(weights_left && terms_left)) break;
        if (k == kLongestSum) return std::nullopt;
        weights = weights / weight_ratio + 1;
        sum = sum / (weight_ratio * beta_ratio) + weights;
    }
    const double head = log_negative_binomial(b + k, d, x) + std::log(sum);
    const double rest = std::log(weights * OrvDistFun::CdfBeta(x, b + k + 1, d));
    return log_negative_binomial(k, a, e) + log_sum(head, rest);
}

/// The same for sums that are too long, where absolute accuracy is enough: the mixture over the mean of the
/// Poisson variable k, a gamma variable of shape a. Given this mean the statistic is noncentral F. The
/// trapezoidal rule in the logarithm of the mean converges faster than any power of the step; it normalises
/// itself.
double log_mixture(double x, double e, double a, double b, double d) {
    const double F = d / b * (x / (1 - x));
    const double mean = a * (e / (1 - e));
    const double step = 0.25 / std::min(std::sqrt(a), a);
    double total = 0;
    double below = 0;
    const auto add = [&](double t) {
        const double weight = std::exp(-a * log_deficit(std::expm1(t), t));
        const double noncentrality = 2 * mean * std::exp(t);
        total += weight;
        below += weight *
                 lower_tail(OrvDistFun::NonCentralCdfF(F, 2 * b, 2 * d, noncentrality, kNoncentralTolerance));
        return weight > kNegligible;
    };
    add(0);
    for (double t = step; add(t);) t += step;
    for (double t = -step; add(t);) t -= step;
    return std::log(below / total);
}

}  // namespace

namespace POWER_NAMESPACE {

double _EstCseriesRoutine(double, double e, double q, double dfe, double n, double x2) {
    if (!(e >= 0 && e <= 1)) return std::numeric_limits<double>::quiet_NaN();
    if (std::isinf(n)) return -std::numeric_limits<double>::infinity();  // the power then counts as 1
    const double a = n / 2, b = q / 2, d = dfe / 2;
    const auto series = log_series(x2, e, a, b, d);
    return std::min(series ? *series : log_mixture(x2, e, a, b, d), 0.0);  // rounding above 0 taken off
}

double _LogCk(double k, double e, double q, double dfe, double n, double x) {
    const double b = q / 2, d = dfe / 2;
    return 2 * _Logt(n / 2, k) + k * std::log(e) + OrvDistFun::vorndnlgam(b + k) + OrvDistFun::vorndnlgam(d) -
           OrvDistFun::vorndnlgam(b + k + d) + std::log(OrvDistFun::CdfBeta(x, b + k, d)) - _Logt(b, k) -
           OrvDistFun::vorndnlgam(k + 1);
}

double _Logt(double a, double t) {
    constexpr double kDirect = 16;
    const double count = t >= 1 ? std::floor(t) : 0;
    double sum = 0;
    for (double i = 0; i < std::min(count, kDirect); ++i) sum += std::log(a + i);
    if (count <= kDirect) return sum;
    // The rest as log Gamma(z + m) - log Gamma(z), which however long it is costs the same.
    const double z = a + kDirect, m = count - kDirect;
    return sum + m * (std::log(z + m) - 1) + (z - 0.5) * std::log1p(m / z) + stirling_error(z + m) -
           stirling_error(z);
}

}  // namespace POWER_NAMESPACE
