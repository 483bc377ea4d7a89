#include "proportions/one/power.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "core/cancel.h"
#include "core/rejection.h"
#include "core/result_codes.h"
#include "core/sums.h"
#include "orvcommon/dist_fun.h"
#include "proportions/proportion.h"
#include "proportions/search.h"
#include "statpower/one_sample_binomial.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;

namespace {

bool is_design(double N, double p1, double p0, double alpha) {
    return is_between_0_and_1(alpha) && is_proportion(p0) && is_proportion(p1) && N >= 1;
}

double standard_deviation(double p) {
    return std::sqrt(p * (1 - p));
}

/// F(x) = P(X <= x) of a binomial distribution; NaN where the distribution library fails.
struct BinomialCdf {
    double N;
    double p;

    double operator()(double x) const {
        long status = 0;
        const double probability = OrvDistFun::CdfBin(x, N, p, status);
        return status == 0 ? probability : std::numeric_limits<double>::quiet_NaN();
    }

    /// F(x + 1), given F(x): by the probability of x + 1 alone where that is enough to tell on which side of the
    /// level it lies.
    double after(double x, double at_x, double level) const {
        constexpr double kClose = 1e-12;
        long status = 0;
        const double sum = at_x + OrvDistFun::PdfBin(x + 1, N, p, status);
        const bool tells = status == 0 && x + 1 < N && std::abs(sum - level) > kClose;
        return tells ? sum : (*this)(x + 1);
    }
};

/// The candidates of a critical count in the order in which they are looked at, from the outside in.
struct Candidates {
    double first;
    double last;

    double step() const { return first <= last ? 1 : -1; }
    double end() const { return last + step(); }
};

/// The first candidate at which `matches` is true, or the end of the candidates; nothing when cancelled.
template <class Matches>
std::optional<double> walk(Candidates counts, Matches matches, OrvQueryCancel* cancel) {
    for (double k = counts.first; k != counts.end(); k += counts.step()) {
        if (stop_requested(cancel)) return std::nullopt;
        if (matches(k)) return k;
    }
    return counts.end();
}

/// About the largest count k with F(k) <= probability: the Cornish-Fisher expansion to its third cumulant.
double approximate_quantile(const BinomialCdf& F, double probability) {
    const double q = 1 - F.p, z = OrvDistFun::IdfStdNorm(probability);
    return std::floor(F.N * F.p + std::sqrt(F.N * F.p * q) * z + (q - F.p) * (square(z) - 1) / 6 - 0.5);
}

/// The candidate k at which F passes a level, beyond(F(k + 1)) and not beyond(F(k)): from a guess outwards by
/// doubling, then by bisection. The end of the candidates where there is none, nothing when the distribution
/// library fails on the way.
template <class Beyond>
std::optional<double> passing_count(Candidates counts, const BinomialCdf& F, double level, Beyond beyond) {
    const double guess = approximate_quantile(F, level);
    const double lowest = std::min(counts.first, counts.last);
    const double highest = std::max(counts.first, counts.last) + 1;
    double low = guess >= lowest ? std::min(guess, highest) : lowest;
    double high = low;
    double at_low = F(low);
    double at_high = at_low;
    for (double step = 1; beyond(at_low); step *= 2) {
        if (low == lowest) return counts.end();
        high = low;
        low = std::max(lowest, low - step);
        at_low = F(low);
    }
    for (double step = 1; !beyond(at_high); step *= 2) {
        if (std::isnan(at_high)) return std::nullopt;
        if (high == highest) return counts.end();
        low = high;
        high = std::min(highest, high + step);
        at_high = step == 1 ? F.after(low, at_low, level) : F(high);
    }
    if (std::isnan(at_low)) return std::nullopt;
    for (;;) {
        const double middle = low + std::floor((high - low) / 2);
        // Neighbours; beyond 2^53 neighbouring doubles.
        if (middle == low || middle == high) return low;
        const double at_middle = F(middle);
        if (std::isnan(at_middle)) return std::nullopt;
        (beyond(at_middle) ? high : low) = middle;
    }
}

/// The critical count: the first candidate k at which F passes a level, both F(k) and F(k + 1) being computed
/// without failure; the end of the candidates where there is none, nothing when cancelled.
///
/// The rule is a walk over the candidates. As F increases there is one such count at most, and it is looked for
/// around a guess; the cancel object is asked as often as the walk would ask it
/// (OneSampleBinomial.TheCancelObjectIsAskedOnceAtEveryCountOfTheWalks). Only where the distribution
/// library fails, so that candidates have to be passed over, is the walk really made.
template <class Beyond>
std::optional<double> critical_count(Candidates counts, const BinomialCdf& F, double level, Beyond beyond,
                                     OrvQueryCancel* cancel) {
    if (const auto found = passing_count(counts, F, level, beyond)) {
        if (cancel == nullptr) return found;
        return walk(
            counts, [&](double k) { return k == *found; }, cancel);
    }
    constexpr double kLargestWalk = 0x1p53;  // beyond it adding one no longer moves a double
    if (std::max(counts.first, counts.last) > kLargestWalk) return counts.end();
    const auto passes = [&](double k) {
        const double at = F(k);
        return !std::isnan(at) && !beyond(at) && beyond(F(k + 1));
    };
    return walk(counts, passes, cancel);
}

/// Largest count whose lower tail does not exceed alpha, looked for from -1 up to `last`.
std::optional<double> lower_critical_count(const BinomialCdf& F, double alpha, double last,
                                           OrvQueryCancel* cancel) {
    return critical_count(
        {-1, last}, F, alpha, [=](double cumulative) { return cumulative > alpha; }, cancel);
}

/// Smallest count that the upper tail, not exceeding alpha, lies above: looked for from N down to 0.
std::optional<double> upper_critical_count(const BinomialCdf& F, double alpha, OrvQueryCancel* cancel) {
    const auto below = critical_count(
        {std::floor(F.N), 0}, F, 1 - alpha, [=](double cumulative) { return cumulative >= 1 - alpha; },
        cancel);
    return below ? std::optional(*below + 1) : std::nullopt;
}

/// A probability that is NaN because the distribution library failed gives the failure code of the power.
double power_or_failure(double probability) {
    return std::isnan(probability) ? kDistributionFailure : probability;
}

double lower_tail_power(const BinomialCdf& null, const BinomialCdf& alternative, double alpha,
                        OrvQueryCancel* cancel) {
    const auto L = lower_critical_count(null, alpha, std::ceil(null.N) - 1, cancel);
    return L ? power_or_failure(alternative(*L)) : OrvMV::Missing();
}

double upper_tail_power(const BinomialCdf& null, const BinomialCdf& alternative, double alpha,
                        OrvQueryCancel* cancel) {
    const auto U = upper_critical_count(null, alpha, cancel);
    return U ? power_or_failure(1 - alternative(*U)) : OrvMV::Missing();
}

double two_sided_power(const BinomialCdf& null, const BinomialCdf& alternative, double alpha,
                       OrvQueryCancel* cancel) {
    const double last = std::floor(null.N) - 1;
    const auto L = lower_critical_count(null, alpha / 2, last, cancel);
    if (!L) return OrvMV::Missing();
    const auto U = upper_critical_count(null, alpha / 2, cancel);
    if (!U) return OrvMV::Missing();
    // With no critical count on the way every outcome is rejected, a fractional N included.
    const double lower = alternative(*L > last ? null.N : *L);
    return power_or_failure((1 - alternative(*U)) + lower);
}

}  // namespace

namespace POWER_NAMESPACE {

double _ConCorrValue(double N, double, double) {
    return N >= 1 ? 1 / (2 * std::sqrt(N)) : kInvalid;
}

double _POSBNormalAppro(double N, double p1, double p0, int, int sides, double alpha,
                        bool continuityCorrection) {
    if (!is_design(N, p1, p0, alpha)) return kInvalid;
    const double d = (p0 - p1) * std::sqrt(N);
    const double s0 = standard_deviation(p0);
    const double s1 = standard_deviation(p1);
    const double c = continuityCorrection ? _ConCorrValue(N, p1, p0) : 0;
    const double z = z_critical(tail_level(sides, alpha));
    const double below = lower_tail(OrvDistFun::CdfStdNorm((d - s0 * z - c) / s1));
    const double up_to = lower_tail(OrvDistFun::CdfStdNorm((d + s0 * z + c) / s1));
    if (sides == STATPOWER_TWO_SIDED) return below + 1 - up_to;
    return p1 > p0 ? 1 - up_to : below;
}

double _POSBBinEnum(double N, double p1, double p0, int, int sides, double alpha, OrvQueryCancel* cancel) {
    if (!is_design(N, p1, p0, alpha)) return kInvalid;
    const BinomialCdf null{N, p0};
    const BinomialCdf alternative{N, p1};
    if (sides == STATPOWER_TWO_SIDED) return two_sided_power(null, alternative, alpha, cancel);
    return (p1 > p0 ? upper_tail_power : lower_tail_power)(null, alternative, alpha, cancel);
}

double _POSBNormalApproFunc(double N, std::vector<double> design, OrvQueryCancel*) {
    const auto d = unpack<OneProportionNormalSearch>(design);
    return _POSBNormalAppro(N, d.p1, d.p0, d.method, d.sides, d.alpha, d.continuity_correction) - d.target;
}

double _POSBBinEnumFunc(double N, std::vector<double> design, OrvQueryCancel* cancel) {
    const auto d = unpack<OneProportionExactSearch>(design);
    return _POSBBinEnum(N, d.p1, d.p0, d.method, d.sides, d.alpha, cancel) - d.target;
}

double _POSBReverseNormalAppro(double power, double p1, double p0, int method, int sides, double alpha,
                               bool continuityCorrection) {
    const OneProportionNormalSearch design{power, p1, p0, method, sides, alpha, continuityCorrection};
    return search_size(design, _POSBNormalApproFunc, nullptr);
}

double _POSBReverseBinEnum(double power, double p1, double p0, int method, int sides, double alpha,
                           OrvQueryCancel* cancel) {
    const OneProportionExactSearch design{power, p1, p0, method, sides, alpha};
    return search_exact_size(design, _POSBBinEnumFunc, cancel);
}

}  // namespace POWER_NAMESPACE

using namespace POWER_NAMESPACE;

double PowerOneSampBinom(double N, double p1, double p0, double alpha, int method, int sides,
                         bool continuityCorrection, OrvQueryCancel* cancel) {
    if (method == STATPOWER_NORMAL_APPROXIMATION)
        return _POSBNormalAppro(N, p1, p0, method, sides, alpha, continuityCorrection);
    return _POSBBinEnum(N, p1, p0, method, sides, alpha, cancel);
}

double PowerReverseOneSampBinom(double power, double p1, double p0, double alpha, int method, int sides,
                                bool continuityCorrection, OrvQueryCancel* cancel) {
    constexpr double kSmallestEffect = 1e-14;
    if (!(is_proportion(p0) && is_proportion(p1) && is_between_0_and_1(alpha) &&
          std::abs(p0 - p1) > kSmallestEffect))
        return kInvalid;
    if (method == STATPOWER_NORMAL_APPROXIMATION)
        return _POSBReverseNormalAppro(power, p1, p0, method, sides, alpha, continuityCorrection);
    return _POSBReverseBinEnum(power, p1, p0, method, sides, alpha, cancel);
}
