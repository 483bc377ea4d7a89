#include "proportions/paired/power.h"

#include <algorithm>
#include <cmath>

#include "core/cancel.h"
#include "core/rejection.h"
#include "core/result_codes.h"
#include "core/sums.h"
#include "orvcommon/dist_fun.h"
#include "proportions/paired/many_pairs.h"
#include "proportions/proportion.h"
#include "proportions/search.h"
#include "statpower/related_binomial.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;

namespace {

double flush(double cell) {
    return std::abs(cell) < 1e-14 ? 0 : cell;
}

/// The quantile as a count: its nearest integer.
double quantile_count(double probability, double m, long& status) {
    return std::trunc(OrvDistFun::IdfBin(probability, m, 0.5, status) + 0.5);
}

/// The largest count whose lower tail under the null hypothesis does not exceed `level`, where there is one.
std::optional<double> lower_critical(double m, double level, long& status) {
    const double k = quantile_count(level, m, status);
    const double at = OrvDistFun::CdfBin(k, m, 0.5, status);
    const double next = OrvDistFun::CdfBin(k + 1, m, 0.5, status);
    return at <= level && level < next ? std::optional(k) : std::nullopt;
}

/// The count above which the upper tail lies, where there is one.
std::optional<double> upper_critical(double m, double level, long& status) {
    const double k = quantile_count(1 - level, m, status);
    const double at = OrvDistFun::CdfBin(k, m, 0.5, status);
    const double next = OrvDistFun::CdfBin(k + 1, m, 0.5, status);
    return at <= 1 - level && 1 - level <= next ? std::optional(k + 1) : std::nullopt;
}

bool are_margins(double pA, double pB, double rho) {
    return is_between_0_and_1(pA) && is_between_0_and_1(pB) && rho >= -1 && rho <= 1;
}

/// Whether no number of pairs reaches the target: where the proportions are equal the exact test rejects with
/// probability alpha at most.
bool is_out_of_reach(int exact, double power, bool are_equal, double alpha) {
    constexpr double kHit = 1e-14;
    return exact != STATPOWER_NORMAL_APPROXIMATION && are_equal && power > alpha + kHit;
}

double sample_size(int sided, int exact, OrvQueryCancel* cancel, double power, DiscordantCells cells,
                   double alpha) {
    const PairedProportionsSearch design{power, cells.p1, cells.p2, sided, exact, alpha};
    return exact != STATPOWER_NORMAL_APPROXIMATION
               ? search_exact_size(design, POWER_NAMESPACE::PRelSampBionmFunc, cancel)
               : search_size(design, POWER_NAMESPACE::PRelSampBionmFunc, nullptr);
}

}  // namespace

namespace statpower {

DiscordantCells cells_from_margins(double pA, double pB, double rho) {
    const double p2 = flush((1 - pA) * pB - rho * std::sqrt((1 - pB) * pB * pA * (1 - pA)));
    const double p1 = flush(p2 + pA - pB);
    return {p1, p2};
}

PairedTest::PairedTest(int sided, int exact, double alpha) : sided_(sided), exact_(exact), alpha_(alpha) {}

double PairedTest::power(double N, double p1, double p2, OrvQueryCancel* cancel) {
    if (!(N >= 2 && is_between_0_and_1(alpha_) && p1 >= 0 && p2 >= 0 && p1 + p2 <= 1)) return kInvalid;
    return exact_ != STATPOWER_NORMAL_APPROXIMATION ? exact_power(N, p1, p2, cancel)
                                                    : normal_power(N, p1, p2);
}

double PairedTest::power_from_margins(double N, double pA, double pB, double rho) {
    if (!are_margins(pA, pB, rho)) return kInvalid;
    const DiscordantCells cells = cells_from_margins(pA, pB, rho);
    return power(N, cells.p1, cells.p2);
}

double PairedTest::normal_power(double N, double p1, double p2) const {
    const double psi = p1 + p2;
    const double d = p1 - p2;
    const double q = z_critical(tail_level(sided_, alpha_));
    const double A = std::sqrt(N) * d;
    const double B = q * std::sqrt(psi);
    const double C = std::abs(std::sqrt(psi - square(d)));
    const double upper = upper_tail(OrvDistFun::CdfStdNorm((A + B) / C));
    const double lower = lower_tail(OrvDistFun::CdfStdNorm((A - B) / C));
    if (sided_ == STATPOWER_TWO_SIDED) return upper + lower;
    return p1 > p2 ? lower : upper;
}

PairedTest::Tail PairedTest::tail(double p1, double p2) const {
    if (sided_ == STATPOWER_TWO_SIDED) return kBoth;
    return p2 > p1 ? kUpper : kLower;
}

PairedTest::Region PairedTest::find_region(Tail tail, double discordant) const {
    const double level = tail_level(sided_, alpha_);
    long status = 0;
    Region region{};
    if (tail != kUpper) region.lower = lower_critical(discordant, level, status);
    if (tail != kLower) region.upper = upper_critical(discordant, level, status);
    // A two-sided test needs both tails.
    if (tail == kBoth && !(region.lower && region.upper)) region.lower = region.upper = std::nullopt;
    region.failed = status != 0;
    return region;
}

const PairedTest::Region& PairedTest::region(Tail tail, double discordant) {
    auto& known = regions_[tail];
    const auto found = known.find(discordant);
    if (found != known.end()) return found->second;
    return known.emplace(discordant, find_region(tail, discordant)).first->second;
}

double PairedTest::exact_power(double N, double p1, double p2, OrvQueryCancel* cancel) {
    const double psi = p1 + p2;
    if (psi == 0) return 0;  // no discordant pair, no rejection
    // Beyond these bounds the sum is taken in other ways, after the cancel object has been asked for every m
    // (PairedProportions.TheCancelObjectIsAskedForEveryOneOfManyPairs).
    constexpr double kFewPairs = 2000;
    constexpr double kManyTerms = 2000;
    constexpr double kCountable = 0x1p50;  // the normal approximation is as good from here on
    if (N <= kFewPairs) return sum_of_terms({1, N}, 0, N, p1, p2, cancel);
    for (double m = 1; cancel != nullptr && m <= N; ++m)
        if (stop_requested(cancel)) return OrvMV::Missing();
    if (N > kCountable) return normal_power(N, p1, p2);
    const DiscordantRange range = likely_discordant(N, psi);
    if (range.count() > kManyTerms) {
        const Tail rejected = tail(p1, p2);
        const RejectedTails tails{rejected != kUpper, rejected != kLower, tail_level(sided_, alpha_)};
        if (const auto power = power_of_many_pairs(N, psi, p2 / psi, tails, range)) return *power;
    }
    const double mode = std::max(1.0, std::floor(N * psi));
    const double at_mode = sum_of_terms({mode, mode}, 0, N, p1, p2, nullptr);
    return sum_of_terms(range, at_mode, N, p1, p2, nullptr);
}

/// The terms of the exact power for the numbers of discordant pairs in `range`.
/// @param part  what the sum is known to exceed
double PairedTest::sum_of_terms(DiscordantRange range, double part, double N, double p1, double p2,
                                OrvQueryCancel* cancel) {
    const double psi = p1 + p2;
    const double pc = p2 / psi;
    const Tail rejected = tail(p1, p2);
    bool failed = false;
    double power = 0;
    for (double m = range.first; m <= range.last; ++m) {
        if (stop_requested(cancel)) return OrvMV::Missing();
        long status = 0;
        const double weight = OrvDistFun::PdfBin(m, N, psi, status);
        // Less than half a unit in the last place of the sum: adding the term would not change it. What is
        // not computed cannot fail either.
        if (status == 0 && (weight <= power * 0x1p-55 || weight <= part * 0x1p-65)) continue;
        const Region& region = this->region(rejected, m);
        failed = failed || region.failed;
        if (!region.lower && !region.upper) continue;
        const auto F = [&](double x) { return OrvDistFun::CdfBin(x, m, pc, status); };
        const double rejection = !region.upper   ? F(*region.lower)
                                 : !region.lower ? 1 - F(*region.upper)
                                                 : F(*region.lower) + 1 - F(*region.upper);
        if (failed || status != 0) return kDistributionFailure;
        power += weight * rejection;
    }
    return power;
}

}  // namespace statpower

double POWER_NAMESPACE::PRelSampBionmFunc(double N, std::vector<double> design, OrvQueryCancel* cancel) {
    const auto d = unpack<PairedProportionsSearch>(design);
    return PowerbyPRelSampBionm(d.sided, d.exact, cancel, N, d.p1, d.p2, d.alpha) - d.target;
}

double PowerbyPRelSampBionm(int sided, int exact, OrvQueryCancel* cancel, double N, double p1, double p2,
                            double alpha) {
    return PairedTest(sided, exact, alpha).power(N, p1, p2, cancel);
}

double PowerbyCRelSampBionm(int sided, int exact, double N, double c1, double c2, double alpha) {
    if (!(N >= 2 && c2 >= 0 && c1 >= 0 && c1 + c2 <= N)) return kInvalid;
    return PowerbyPRelSampBionm(sided, exact, nullptr, N, c1 / N, c2 / N, alpha);
}

double PowerbyMargPRelSampBionm(int sided, int exact, double N, double pA, double pB, double rho,
                                double alpha) {
    return PairedTest(sided, exact, alpha).power_from_margins(N, pA, pB, rho);
}

double PowerbyMargCRelSampBionm(int sided, int exact, double N, double cA, double cB, double rho,
                                double alpha) {
    if (!(cA < N && N >= 2 && cA * cB > 0 && cB < N)) return kInvalid;
    return PowerbyMargPRelSampBionm(sided, exact, N, cA / N, cB / N, rho, alpha);
}

double PowerReversebyPRelSampBionm(int sided, int exact, OrvQueryCancel* cancel, double power, double p1,
                                   double p2, double alpha) {
    if (is_out_of_reach(exact, power, p1 == p2, alpha)) return OrvMV::Missing();
    return sample_size(sided, exact, cancel, power, {p1, p2}, alpha);
}

double PowerReversebyMargPRelSampBionm(int sided, int exact, OrvQueryCancel* cancel, double power, double pA,
                                       double pB, double rho, double alpha) {
    if (!(is_between_0_and_1(alpha) && are_margins(pA, pB, rho))) return kInvalid;
    // Rounding can make cells of equal margins differ in their last digit.
    if (is_out_of_reach(exact, power, pA == pB, alpha)) return OrvMV::Missing();
    return sample_size(sided, exact, cancel, power, cells_from_margins(pA, pB, rho), alpha);
}
