// Two independent proportions: power and sample size.
#include "proportions/two/power.h"

#include <algorithm>
#include <cmath>

#include "core/cancel.h"
#include "core/design.h"
#include "orvcommon/mv.h"
#include "proportions/result_codes.h"
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

constexpr double kTolerance = 1e-9;

enum Method { kNormal = 0, kExact = 1 };
enum Test { kChiSquare = 0, kT = 1, kLikelihoodRatio = 2, kFisher = 3, kChiSquareSearch = 4 };

/// Design vector of a sample-size search.
struct Search {
    double power;
    double p1;
    double p2;
    double r;
    int method;
    int test;
    int sides;
    double alpha;
    bool continuity_correction;
    bool pooled;

    static Search from(const std::vector<double>& design) {
        DesignReader d(design);
        Search s{};
        s.power = d.number();
        s.p1 = d.number();
        s.p2 = d.number();
        s.r = d.number();
        s.method = d.integer();
        s.test = d.integer();
        s.sides = d.integer();
        s.alpha = d.number();
        s.continuity_correction = d.flag();
        s.pooled = d.flag();
        return s;
    }

    std::vector<double> packed() const {
        return pack_design(power, p1, p2, r, method, test, sides, alpha, continuity_correction, pooled);
    }

    double power_at(double n1, double n2, OrvQueryCancel* cancel) const {
        return PowerIndSampBinom(n1, n2, p1, p2, alpha, method, test, sides, continuity_correction, pooled,
                                 cancel);
    }

    /// The smallest n1 at which the normal approximation of Fisher's test is usable.
    double smallest_for_arcsine() const {
        const double a = 0.5 / (p1 <= p2 ? 1 - p1 : p1);
        const double b = 0.5 / (r * (p1 <= p2 ? p2 : 1 - p2));
        return a > b ? a : b;
    }
};

}  // namespace

double PowerIndSampBinom(double n1, double n2, double p1, double p2, double alpha, int method, int test,
                         int sides, bool continuityCorrection, bool pooled, OrvQueryCancel* cancel) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha))) return kInvalid;
    const bool normal = method == kNormal;
    switch (test) {
        case kChiSquare:
            return normal ? _PowerIndSamBinNormalApproxChisq(n1, n2, p1, p2, sides, alpha,
                                                             continuityCorrection, pooled)
                          : _PowerIndSamBinBinEnumChisq(n1, n2, p1, p2, sides, alpha, continuityCorrection,
                                                        cancel);
        case kT:
            return normal ? _PowerIndSamBinNormalApproxT(n1, n2, p1, p2, sides, alpha, pooled)
                          : _PowerIndSamBinBinEnumT(n1, n2, p1, p2, sides, alpha, pooled, cancel);
        case kLikelihoodRatio:
            return normal ? _PowerIndSamBinNormalApproxLRT(n1, n2, p1, p2, sides, alpha)
                          : _PowerIndSamBinBinEnumLRT(n1, n2, p1, p2, sides, alpha, cancel);
        default:
            return normal ? _PowerIndSamBinNormalApproxFisher(n1, n2, p1, p2, sides, alpha)
                          : _PowerIndSamBinBinEnumFisher(n1, n2, p1, p2, sides, alpha, cancel);
    }
}

double POWER_NAMESPACE::IndSampBinomFunc(double N, std::vector<double> design, OrvQueryCancel* cancel) {
    Search search = Search::from(design);
    if (search.method == kExact && search.test == kChiSquareSearch) search.test = kChiSquare;
    return search.power_at(N, std::max(search.r * N, 1.0), cancel) - search.power;
}

void POWER_NAMESPACE::PowerReverseU4Binom(std::vector<double>& result, std::vector<double> design,
                                          OrvQueryCancel* cancel) {
    double& result1 = result.at(0);
    double& result2 = result.at(1);
    Search search = Search::from(design);
    search.method = kExact;
    if (search.test == kFisher) design.at(5) = kChiSquare;

    std::vector<double> candidates{result1};
    for (;;) {
        if (stop_requested(cancel)) return;
        const double n1 =
            std::ceil(PowerReverse(design, IndSampBinomFunc, cancel, 1, candidates.back(), kTolerance));
        if (OrvMV::IsMissing(n1) || std::ranges::find(candidates, n1) != candidates.end()) break;
        candidates.push_back(n1);
    }

    double n1 = *std::ranges::min_element(candidates);
    for (;; ++n1) {
        const double n2 = std::max(std::trunc(search.r * n1 + 0.5), 1.0);
        const double power = search.power_at(n1, n2, cancel);
        if (!(power < search.power)) {
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
    const Search search{power, p1, p2, r, method, test, sides, alpha, continuityCorrection, pooled};
    const auto design = search.packed();
    const double low = test == kFisher ? search.smallest_for_arcsine() : 2;
    const double high = test == kFisher ? low + 400 : 400;
    const double N = stop_requested(cancel)
                         ? OrvMV::Missing()
                         : PowerReverse(design, IndSampBinomFunc, cancel, low, high, kTolerance);
    if (OrvMV::IsMissing(N)) {
        result.assign(2, OrvMV::Missing());
        return;
    }
    // The exception multiplies by N twice; answers of this kind are relied upon.
    const bool squared = test == kChiSquare && sides != 0 && continuityCorrection && pooled;
    result.push_back(std::ceil(N));
    result.push_back(std::max(std::ceil(squared ? N * N * r : r * N), 1.0));
    if (method == kExact) PowerReverseU4Binom(result, design, cancel);
}
