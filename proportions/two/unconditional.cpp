#include "proportions/two/unconditional.h"

#include <cmath>
#include <cstdint>

#include "core/cancel.h"
#include "core/integers.h"
#include "core/rejection.h"
#include "core/result_codes.h"
#include "orvcommon/mv.h"
#include "proportions/two/counts.h"
#include "proportions/two/design.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

namespace {

struct Proportions {
    double first;
    double second;
};

/// Observed proportions; 0.001 successes or failures a group stand for none at all, which would leave no
/// standard error.
Proportions observed_proportions(double n1, double n2, int x1, int x2) {
    constexpr double kZeroCell = 0.001;
    const double total = static_cast<double>(x1) + x2;
    if (total == 0) return {kZeroCell / n1, kZeroCell / n2};
    if (total == n1 + n2) return {(n1 - kZeroCell) / n1, (n2 - kZeroCell) / n2};
    return {x1 / n1, x2 / n2};
}

/// The difference that the alternative p1 against p2 makes large.
double difference(Proportions phat, double p1, double p2, int sides) {
    if (sides == STATPOWER_TWO_SIDED) return std::abs(phat.first - phat.second);
    return p1 > p2 ? phat.first - phat.second : phat.second - phat.first;
}

bool is_table(double n1, double n2, double x1, double x2) {
    return x1 >= 0 && x1 <= n1 && x2 >= 0 && x2 <= n2;
}

/// The first count of first..last - 1 at which `holds` fails, `last` if it does at none; it is known to hold
/// below that count and to fail from it on. Searched from `guess` outwards in doubling steps, then by
/// bisection.
template <class Holds>
int first_failure(int first, int last, int guess, Holds holds) {
    std::int64_t low = first;
    std::int64_t high = last;
    bool held = false;
    bool failed = false;
    std::int64_t probe = guess;
    for (std::int64_t step = 1; low < high; step *= 2) {
        probe = std::clamp(probe, low, high - 1);
        if (holds(static_cast<int>(probe))) {
            low = probe + 1;
            held = true;
        } else {
            high = probe;
            failed = true;
        }
        probe = !failed ? low + step - 1 : !held ? high - step : low + (high - low) / 2;
    }
    return static_cast<int>(low);
}

/// Which tables beside x1 successes of the first group can reject: those of few successes in the second
/// group, of many, or both. Returns the number of x2, from 0, that count as few.
int few_successes(double n1, double n2, int sides, bool first_is_larger, int x1) {
    if (sides == STATPOWER_TWO_SIDED) return to_int(std::floor(n2 * x1 / n1)) + 1;
    return first_is_larger ? to_int(n2) + 1 : 0;
}

/// Whether the cancel object is asked again for a table that rejects, besides once for every table: as often as by a
/// visit to each (TwoProportionsEnumerated.EveryDesignUpToTwelveInAGroupIsDecidedAsTranscribed counts).
enum class AskedAgain : bool { kNo, kYes };

/// Probability of the tables that reject.
///
/// Tables are visited while their counts are below the sizes plus 1. A fractional size thus has a count
/// beyond it, of probability 0.
/// @param few      few(x1): below this x2 the tables that reject are the lowest ones, from it on the highest
/// ones
/// @param rejects  rejects(x1, x2)
template <class Few, class Rejects>
double probability_of_rejection(double n1, double n2, double p1, double p2, Few few, Rejects rejects,
                                AskedAgain asked_again, OrvQueryCancel* cancel) {
    // Asked before each group is built (TwoProportionsSize.ACancelObjectIsHeardBeforeBigGroupsAreBuilt).
    Questions questions(cancel);
    if (questions.stop_ahead()) return OrvMV::Missing();
    const BinomialGroup group1(n1, p1);
    if (questions.stop_ahead()) return OrvMV::Missing();
    const BinomialGroup group2(n2, p2);
    const CountFunction& probability1 = group1.probability();
    const CountFunction& probability2 = group2.probability();
    const Tails tails(group2);
    const int trials1 = group1.trials();
    const int trials2 = group2.trials();
    const bool beyond1 = n1 > trials1;
    const bool beyond2 = n2 > trials2;
    // A cancel object is asked for all tables, so that none are left out for their negligible probability.
    const bool all = questions.any();
    const int first1 = all ? 0 : probability1.first();
    const int last1 = all ? trials1 : probability1.last();
    const int first2 = all ? 0 : probability2.first();
    const int last2 = all ? trials2 : probability2.last();

    double power = 0;
    std::int64_t rejected = 0;
    int lower = 0;            // x2 below this reject ...
    int upper = trials2 + 1;  // ... and from this on
    for (int x1 = first1; x1 <= last1; ++x1) {
        double probability = 0;
        const std::int64_t rejected_before = rejected;
        if (x1 == 0 || x1 == trials1) {
            for (int x2 = first2; x2 <= last2; ++x2) {
                if (questions.stop()) return OrvMV::Missing();
                if (!rejects(x1, x2)) continue;
                probability += probability2[x2];
                ++rejected;
            }
        } else {
            if (questions.stop(std::int64_t{trials2} + 1)) return OrvMV::Missing();
            const int split = few(x1);
            lower = first_failure(0, split, lower, [&](int x2) { return rejects(x1, x2); });
            upper = first_failure(split, trials2 + 1, upper, [&](int x2) { return !rejects(x1, x2); });
            probability = tails.below(lower) + tails.from(upper);
            rejected += lower + (trials2 + 1 - upper);
        }
        if (rejected > rejected_before) power += probability1[x1] * probability;
        if (beyond2 && questions.stop()) return OrvMV::Missing();
    }
    const std::int64_t counts2 = std::int64_t{trials2} + 1 + beyond2;
    if (beyond1 && questions.stop(counts2)) return OrvMV::Missing();
    // All tables beyond a size have one statistic, that of no table.
    if (beyond1 && rejects(trials1 + 1, 0)) rejected += counts2;
    if (beyond2 && rejects(0, trials2 + 1)) rejected += std::int64_t{trials1} + 1;
    if (asked_again == AskedAgain::kYes && questions.stop(rejected)) return OrvMV::Missing();
    return std::isnan(power) ? kDistributionFailure : power;
}

bool can_enumerate(double n1, double n2, double p1, double p2, double alpha) {
    return are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha) && are_countable(n1, n2);
}

}  // namespace

namespace POWER_NAMESPACE {

std::pair<double, double> _BinEnumChisqTestStatsZ(double n1, double n2, double p1, double p2, int x1, int x2,
                                                  int sides, bool continuityCorrection) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_table(n1, n2, x1, x2))) return {kInvalid, kInvalid};
    const Proportions phat = observed_proportions(n1, n2, x1, x2);
    const double pbar = (n2 * phat.second + n1 * phat.first) / (n1 + n2);
    const double S = std::sqrt(pbar * (1 - pbar) * (1 / n1 + 1 / n2));
    const double c = 0.5 * (1 / n1 + 1 / n2);
    const double d = difference(phat, p1, p2, sides);
    if (!continuityCorrection) return {d / S, c};
    return {(sides == STATPOWER_TWO_SIDED ? d - c : d + c) / S, c};
}

double _BinEnumTTestStatsT(double n1, double n2, double p1, double p2, int x1, int x2, int sides,
                           bool pooled) {
    if (!(are_two_samples(n1, n2, p1, p2) && n1 + n2 > 2 && is_table(n1, n2, x1, x2))) return kInvalid;
    const Proportions phat = observed_proportions(n1, n2, x1, x2);
    const double v1 = phat.first * (1 - phat.first);
    const double v2 = phat.second * (1 - phat.second);
    const double N = n1 + n2;
    const double V = pooled ? n2 * v2 + n1 * v1 : n2 * v1 + n1 * v2;
    return std::sqrt(n1 * n2) * difference(phat, p1, p2, sides) / std::sqrt(V * N / (N - 2));
}

double _logLRT(double x) {
    if (x < 0) return -1;
    return x == 0 ? 0 : x * std::log(x);
}

double _BinEnumLRTTestStatsL(double n1, double n2, double x1, double x2) {
    if (!(is_group_size(n1) && is_group_size(n2) && is_table(n1, n2, x1, x2))) return kInvalid;
    return 2 * (_logLRT(x1) + _logLRT(n1 - x1) + _logLRT(x2) + _logLRT(n2 - x2) + _logLRT(n1 + n2)) -
           2 * (_logLRT(x1 + x2) + _logLRT(n1 + n2 - x1 - x2) + _logLRT(n1) + _logLRT(n2));
}

double _PowerIndSamBinBinEnumChisq(double n1, double n2, double p1, double p2, int sides, double alpha,
                                   bool continuityCorrection, OrvQueryCancel* cancel) {
    if (!can_enumerate(n1, n2, p1, p2, alpha)) return kInvalid;
    const double critical = z_critical(tail_level(sides, alpha));
    return probability_of_rejection(
        n1, n2, p1, p2, [&](int x1) { return few_successes(n1, n2, sides, p1 > p2, x1); },
        [&](int x1, int x2) {
            return _BinEnumChisqTestStatsZ(n1, n2, p1, p2, x1, x2, sides, continuityCorrection).first >
                   critical;
        },
        AskedAgain::kNo, cancel);
}

double _PowerIndSamBinBinEnumT(double n1, double n2, double p1, double p2, int sides, double alpha,
                               bool pooled, OrvQueryCancel* cancel) {
    if (!(can_enumerate(n1, n2, p1, p2, alpha) && n1 + n2 > 2)) return kInvalid;
    const double critical = t_critical(tail_level(sides, alpha), n1 + n2 - 2, {1e-20, 1e-12});
    return probability_of_rejection(
        n1, n2, p1, p2, [&](int x1) { return few_successes(n1, n2, sides, p1 > p2, x1); },
        [&](int x1, int x2) { return _BinEnumTTestStatsT(n1, n2, p1, p2, x1, x2, sides, pooled) > critical; },
        AskedAgain::kYes, cancel);
}

double _PowerIndSamBinBinEnumLRT(double n1, double n2, double p1, double p2, int sides, double alpha,
                                 OrvQueryCancel* cancel) {
    if (!can_enumerate(n1, n2, p1, p2, alpha)) return kInvalid;
    const double critical = z_critical(tail_level(sides, alpha));
    return probability_of_rejection(
        n1, n2, p1, p2,
        // The statistic does not know the direction of a difference.
        [&](int x1) { return few_successes(n1, n2, STATPOWER_TWO_SIDED, p1 > p2, x1); },
        [&](int x1, int x2) {
            const double G2 = _BinEnumLRTTestStatsL(n1, n2, x1, x2);
            return G2 >= 0 && std::sqrt(G2) > critical;
        },
        AskedAgain::kYes, cancel);
}

}  // namespace POWER_NAMESPACE
