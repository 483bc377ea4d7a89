// Two independent proportions: power and sample size.
#include "proportions/two/power.h"

#include <algorithm>
#include <cmath>

#include "core/cancel.h"
#include "core/result_codes.h"
#include "core/search.h"
#include "orvcommon/mv.h"
#include "proportions/two/design.h"
#include "proportions/two/fisher.h"
#include "proportions/two/normal.h"
#include "proportions/two/unconditional.h"
#include "statpower/independent_binomial.h"

using namespace statpower;
using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

namespace {

/// Stands for the chi-square test where an exact one is searched for.
constexpr int kChiSquareSearch = 4;

double power_at(const TwoProportionsSearch& d, double n1, double n2, OrvQueryCancel* cancel) {
    return PowerIndSampBinom(n1, n2, d.p1, d.p2, d.alpha, d.method, d.test, d.sides, d.continuity_correction,
                             d.pooled, cancel);
}

/// The smallest n1 at which the normal approximation of Fisher's test is usable.
double smallest_for_arcsine(const TwoProportionsSearch& d) {
    const double a = 0.5 / (d.p1 <= d.p2 ? 1 - d.p1 : d.p1);
    const double b = 0.5 / (d.r * (d.p1 <= d.p2 ? d.p2 : 1 - d.p2));
    return a > b ? a : b;
}

/// Whether no size reaches the target: at equal proportions Fisher's test rejects with probability alpha at
/// most.
bool is_beyond_exact_fisher(const TwoProportionsSearch& d) {
    constexpr double kHit = 1e-14;
    return d.method != STATPOWER_NORMAL_APPROXIMATION && d.test == STATPOWER_FISHER && d.p1 == d.p2 &&
           d.target > d.alpha + kHit;
}

}  // namespace

double PowerIndSampBinom(double n1, double n2, double p1, double p2, double alpha, int method, int test,
                         int sides, bool continuityCorrection, bool pooled, OrvQueryCancel* cancel) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha))) return kInvalid;
    const bool normal = method == STATPOWER_NORMAL_APPROXIMATION;
    switch (test) {
        case STATPOWER_CHI_SQUARE:
            return normal ? _PowerIndSamBinNormalApproxChisq(n1, n2, p1, p2, sides, alpha,
                                                             continuityCorrection, pooled)
                          : _PowerIndSamBinBinEnumChisq(n1, n2, p1, p2, sides, alpha, continuityCorrection,
                                                        cancel);
        case STATPOWER_T_OF_PROPORTIONS:
            return normal ? _PowerIndSamBinNormalApproxT(n1, n2, p1, p2, sides, alpha, pooled)
                          : _PowerIndSamBinBinEnumT(n1, n2, p1, p2, sides, alpha, pooled, cancel);
        case STATPOWER_LIKELIHOOD_RATIO:
            return normal ? _PowerIndSamBinNormalApproxLRT(n1, n2, p1, p2, sides, alpha)
                          : _PowerIndSamBinBinEnumLRT(n1, n2, p1, p2, sides, alpha, cancel);
        default:
            return normal ? _PowerIndSamBinNormalApproxFisher(n1, n2, p1, p2, sides, alpha)
                          : _PowerIndSamBinBinEnumFisher(n1, n2, p1, p2, sides, alpha, cancel);
    }
}

double POWER_NAMESPACE::IndSampBinomFunc(double N, std::vector<double> design, OrvQueryCancel* cancel) {
    auto d = unpack<TwoProportionsSearch>(design);
    if (d.method == STATPOWER_EXACT && d.test == kChiSquareSearch) d.test = STATPOWER_CHI_SQUARE;
    return power_at(d, N, std::max(d.r * N, 1.0), cancel) - d.target;
}

void POWER_NAMESPACE::PowerReverseU4Binom(std::vector<double>& result, std::vector<double> design,
                                          OrvQueryCancel* cancel) {
    double& result1 = result.at(0);
    double& result2 = result.at(1);
    auto exact = unpack<TwoProportionsSearch>(design);
    auto continuous = exact;
    exact.method = STATPOWER_EXACT;
    if (continuous.test == STATPOWER_FISHER) continuous.test = STATPOWER_CHI_SQUARE;

    // Asked once a round and once a step, besides what searches and powers ask
    // (TwoProportionsSize.TheRefinementAsksOnceARoundAndOnceAStepBesidesItsSearchesAndPowers).
    std::vector<double> candidates{result1};
    for (;;) {
        if (stop_requested(cancel)) return;
        const double n1 = std::ceil(search_size(continuous, IndSampBinomFunc, cancel, 1, candidates.back()));
        if (OrvMV::IsMissing(n1) || std::ranges::find(candidates, n1) != candidates.end()) break;
        candidates.push_back(n1);
    }

    double n1 = *std::ranges::min_element(candidates);
    for (;; ++n1) {
        const double n2 = std::max(std::trunc(exact.r * n1 + 0.5), 1.0);
        const double power = power_at(exact, n1, n2, cancel);
        if (!(power < exact.target)) {
            result1 = n1;
            result2 = n2;
            return;
        }
        // Sizes too small for the t test have no power yet; any other refusal, or a failure, is final.
        const bool too_small = n1 >= 0 && n1 + n2 <= 2;
        if ((power < 0 && !too_small) || stop_requested(cancel)) return;
    }
}

void PowerReverseIndSampBinom(double power, double p1, double p2, double r, double alpha,
                              std::vector<double>& result, int method, int test, int sides,
                              bool continuityCorrection, bool pooled, OrvQueryCancel* cancel) {
    if (!result.empty()) return;
    const TwoProportionsSearch design{power, p1, p2, r, method, test, sides, alpha, continuityCorrection,
                                      pooled};
    const double low = test == STATPOWER_FISHER ? smallest_for_arcsine(design) : 2;
    const double high = test == STATPOWER_FISHER ? low + kFirstReach : kFirstReach;
    // Asked once before the search too (TwoProportionsSize.CancelledBeforeTheSearchBothSizesAreMissing).
    const bool hopeless = stop_requested(cancel) || is_beyond_exact_fisher(design);
    const double N = hopeless ? OrvMV::Missing() : search_size(design, IndSampBinomFunc, cancel, low, high);
    if (OrvMV::IsMissing(N)) {
        result.assign(2, OrvMV::Missing());
        return;
    }
    // The exception multiplies by N twice; answers of this kind are relied upon.
    const bool squared =
        test == STATPOWER_CHI_SQUARE && sides != STATPOWER_TWO_SIDED && continuityCorrection && pooled;
    result.push_back(std::ceil(N));
    result.push_back(std::max(std::ceil(squared ? N * N * r : r * N), 1.0));
    if (method == STATPOWER_EXACT) PowerReverseU4Binom(result, pack(design), cancel);
}
