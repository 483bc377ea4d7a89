#include "proportions/two/fisher.h"

#include <cmath>
#include <numeric>

#include "core/cancel.h"
#include "core/integers.h"
#include "core/rejection.h"
#include "core/result_codes.h"
#include "orvcommon/dist_fun.h"
#include "orvcommon/mv.h"
#include "proportions/two/counts.h"
#include "proportions/two/design.h"

using namespace statpower;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Terms that are smaller by this factor do not change a sum, nor do all of them together.
constexpr double kNegligibleShare = 1e-25;

/// The count after u, and the one before; beyond all counts where one more does not move a double.
double next_count(double u) {
    return u + 1 > u ? u + 1 : kInfinity;
}
double previous_count(double u) {
    return u - 1 < u ? u - 1 : -kInfinity;
}

/// The sum of probability(u) for u = first..last, the missing value as soon as the cancel object or a
/// probability says so.
template <class Probability>
double sum_of(double first, double last, Probability probability, OrvQueryCancel* cancel) {
    double sum = 0;
    for (double u = first; u <= last; u = next_count(u)) {
        if (stop_requested(cancel)) return OrvMV::Missing();
        const double p = probability(u);
        if (OrvMV::IsMissing(p)) return OrvMV::Missing();
        sum += p;
    }
    return sum;
}

bool has_quantile(double n1, double n2, int t, double a) {
    return is_group_size(n1) && is_group_size(n2) && is_between_0_and_1(a) && t >= 0;
}

/// Powers of an odds ratio, those of small counts from a table.
class OddsPowers {
  public:
    OddsPowers(double odds, int highest) : odds_(odds) {
        constexpr int kTable = 4096;
        const int count = std::min(highest + 1, kTable);
        for (int u = 0; u < count; ++u) powers_.push_back(std::pow(odds, u));
    }
    double odds() const { return odds_; }
    double operator()(int u) const {
        const auto i = static_cast<std::size_t>(u);
        return i < powers_.size() ? powers_[i] : std::pow(odds_, u);
    }

  private:
    double odds_;
    std::vector<double> powers_;
};

/// The conditional distribution of x1 given x1 + x2 = t, up to a factor.
///
/// The weights are those of _CondDisProb, so that the quotient by their sum is the same double, as long as
/// none of them leaves the range of a double. Where one does, they are scaled to 1 at the mode and computed
/// from there by the ratio of neighbours, until they are negligible beside `level`.
class ConditionalDistribution {
  public:
    ConditionalDistribution(const Coefficients& coefficients1, const Coefficients& coefficients2,
                            const BinomialGroup& group1, const BinomialGroup& group2, double odds,
                            double level)
        : coefficient1_(coefficients1),
          coefficient2_(coefficients2),
          trials1_(group1.trials()),
          trials2_(group2.trials()),
          odds_power_(odds, group1.trials()),
          negligible_(kNegligibleShare * level) {}

    void condition_on(int t) {
        t_ = t;
        lo_ = std::max(0, t - trials2_);
        hi_ = std::min(t, trials1_);
        if (!weigh_plainly()) weigh_from_mode();
    }

    /// The counts whose weights are not negligible: all possible ones, as long as nothing is scaled.
    int lo() const { return lo_; }
    int hi() const { return hi_; }
    std::int64_t terms() const { return std::int64_t{hi_} - lo_ + 1; }
    double total() const { return total_; }
    double weight(int u) const { return weight_[u]; }

    /// Probability of first..last as a quotient of sums; 0 for an empty stretch.
    double probability(int first, int last) const {
        return sum_of_weights(std::max(first, lo_), std::min(last, hi_)) / total_;
    }

    /// The same as a sum of quotients.
    double sum_of_quotients(int first, int last) const {
        double sum = 0;
        for (double w : weight_.values(first, last)) sum += w / total_;
        return sum;
    }

  private:
    double plain_weight(int u) const {
        return u < 0 || u > t_ ? 0 : coefficient1_(u) * coefficient2_(t_ - u) * odds_power_(u);
    }

    double sum_of_weights(int first, int last) const {
        if (first > last) return 0;
        const auto weights = weight_.values(first, last);
        return std::accumulate(weights.begin(), weights.end(), 0.0);
    }

    /// The weights of u + 1 and u are as numerator to denominator; their quotient falls as u rises.
    struct Ratio {
        double numerator;
        double denominator;
    };
    Ratio ratio(int u) const {
        const double x = u;
        return {(trials1_ - x) * (t_ - x) * odds_power_.odds(), (x + 1) * (trials2_ - t_ + x + 1)};
    }

    int mode() const {
        int low = lo_;
        for (int high = hi_; low < high;) {
            const int middle = low + (high - low) / 2;
            const Ratio next = ratio(middle);
            if (next.numerator < next.denominator)
                high = middle;
            else
                low = middle + 1;
        }
        return low;
    }

    /// False where a weight, or the sum, is beyond the range of a double, or a power of the odds below it.
    bool weigh_plainly() {
        if (!std::isfinite(plain_weight(mode()))) return false;
        if (!(std::isnormal(odds_power_(lo_)) && std::isnormal(odds_power_(hi_)))) return false;
        // One more on each side: the search for a critical value looks there too.
        std::vector<double> weights;
        for (int u = lo_ - 1; u <= hi_ + 1; ++u) weights.push_back(plain_weight(u));
        weight_ = CountFunction(lo_ - 1, std::move(weights));
        total_ = sum_of_weights(lo_, hi_);
        return std::isfinite(total_);
    }

    void weigh_from_mode() {
        weight_ = around_mode(
            mode(), 1, lo_, hi_, negligible_,
            [&](int u, double w) {
                const Ratio r = ratio(u - 1);
                return w * (r.denominator / r.numerator);
            },
            [&](int u, double w) {
                const Ratio r = ratio(u);
                return w * (r.numerator / r.denominator);
            });
        lo_ = weight_.first();
        hi_ = weight_.last();
        total_ = sum_of_weights(lo_, hi_);
    }

    const Coefficients& coefficient1_;
    const Coefficients& coefficient2_;
    int trials1_;
    int trials2_;
    OddsPowers odds_power_;
    double negligible_;
    int t_ = 0;
    int lo_ = 0;
    int hi_ = 0;
    CountFunction weight_;
    double total_ = 0;
};

/// _quantileDescending without its repeated sums: the tail is accumulated downwards, and only where it comes
/// close to the level, or passes it, summed as the definition says and compared. The two sums differ by
/// rounding alone, at most 515 terms of a relative 2^-53 each where the weights are not scaled. Beyond all
/// counts where no tail qualifies.
int upper_critical_value(const ConditionalDistribution& null, double a) {
    constexpr double kClose = 1e-12;
    const double level = a * null.total();
    double tail = 0;
    for (int k = null.hi(); k >= null.lo(); --k) {
        tail += null.weight(k);
        if (tail + null.weight(k - 1) < (1 - kClose) * level) continue;
        if (tail > (1 + kClose) * level) break;
        const double S = null.sum_of_quotients(k, null.hi());
        if (S <= a && S + null.weight(k - 1) / null.total() > a) return k;
    }
    return std::numeric_limits<int>::max();
}

/// _quantileAscending: its sums, each one term longer than the last, are running sums.
int lower_critical_value(const ConditionalDistribution& null, double a) {
    double S = 0;
    for (int k = null.lo(); k <= null.hi(); ++k) {
        S += null.weight(k) / null.total();
        if (S > a) break;
        if (S + null.weight(k + 1) / null.total() > a) return k;
    }
    return std::numeric_limits<int>::min();
}

/// The probability of a total of t successes as the sum over x1 from the first to the last possible one.
class TotalTerms {
  public:
    TotalTerms(const CountFunction& probability1, const CountFunction& probability2, int t) {
        const int first = std::max(probability1.first(), t - probability2.last());
        const int last = std::min(probability1.last(), t - probability2.first());
        if (first > last) return;
        factors1_ = probability1.values(first, last);
        factors2_ = probability2.values(t - last, t - first);
    }

    std::int64_t count() const { return static_cast<std::int64_t>(factors1_.size()); }

    /// As in _ProbTotalSucc, the terms from the first one that cannot be computed on are left out.
    double sum() const {
        const double all = std::transform_reduce(factors1_.begin(), factors1_.end(), factors2_.rbegin(), 0.0);
        if (!std::isnan(all)) return all;
        double sum = 0;
        for (std::size_t i = 0; i < factors1_.size(); ++i) {
            const double term = factors1_[i] * factors2_[factors2_.size() - 1 - i];
            if (std::isnan(term)) break;
            sum += term;
        }
        return sum;
    }

  private:
    std::span<const double> factors1_;
    std::span<const double> factors2_;
};

}  // namespace

statpower::Coefficients::Coefficients(int n) : n_(n) {
    constexpr int kLargestFinite = 519;  // 2k over k exceeds a double for any larger k
    const int highest = std::min(n / 2, kLargestFinite);
    // The sums of logarithms of Combination for all k at once, each in its own order.
    std::vector<double> log_product(static_cast<std::size_t>(highest) + 1);
    for (int first_k = highest; first_k >= 1; --first_k) {
        const double log_factor = std::log(static_cast<double>(n) - first_k + 1);
        for (int k = first_k; k <= highest; ++k) log_product[static_cast<std::size_t>(k)] += log_factor;
    }
    double log_factorial = 0;
    for (int k = 0; k <= highest; ++k) {
        if (k > 0) log_factorial += std::log(static_cast<double>(k));
        values_.push_back(std::exp(std::abs(log_factorial - log_product[static_cast<std::size_t>(k)])));
    }
}

double statpower::Coefficients::operator()(int k) const {
    if (k < 0 || k > n_) return 1;
    const auto m = static_cast<std::size_t>(std::min(k, n_ - k));
    return m < values_.size() ? values_[m] : kInfinity;
}

namespace POWER_NAMESPACE {

double _CondDisProb(double n1, double n2, double x, double t, double psi, double lo, double hi,
                    OrvQueryCancel* cancel) {
    if (!(is_group_size(n1) && is_group_size(n2) && t >= 0)) return kInvalid;
    if (x < 0 || x > t) return 0;
    const auto weight = [=](double u) {
        return Combination(n1, u) * Combination(n2, t - u) * std::pow(psi, u);
    };
    const double total = sum_of(lo, hi, weight, cancel);
    return OrvMV::IsMissing(total) ? OrvMV::Missing() : weight(x) / total;
}

double _ProbTotalSucc(double n1, double n2, double p1, double p2, int t, double lo, double hi,
                      OrvQueryCancel* cancel) {
    if (!are_two_samples(n1, n2, p1, p2)) return kInvalid;
    long status1 = 0;
    long status2 = 0;
    const auto term = [&](double x) {
        const double probability1 = OrvDistFun::PdfBin(x, n1, p1, status1);
        const double probability2 = OrvDistFun::PdfBin(t - x, n2, p2, status2);
        return status1 == 0 && status2 == 0 ? probability1 * probability2 : 0;
    };
    return sum_of(std::trunc(lo), std::trunc(hi), term, cancel);
}

double _quantileDescending(double n1, double n2, int t, double lo, double hi, double psi, double a,
                           OrvQueryCancel* cancel) {
    if (!has_quantile(n1, n2, t, a)) return kInvalid;
    const auto P = [=](double u) { return _CondDisProb(n1, n2, u, t, psi, lo, hi, cancel); };
    double k = hi;
    for (; k >= lo; k = previous_count(k)) {
        const double S = sum_of(k, hi, P, cancel);
        const double next = OrvMV::IsMissing(S) ? S : P(k - 1);
        if (OrvMV::IsMissing(next)) return next;
        if (S <= a && S + next > a) return k;
    }
    return k;
}

double _quantileAscending(double n1, double n2, int t, double lo, double hi, double psi, double a,
                          OrvQueryCancel* cancel) {
    if (!has_quantile(n1, n2, t, a)) return kInvalid;
    const auto P = [=](double u) { return _CondDisProb(n1, n2, u, t, psi, lo, hi, cancel); };
    for (double k = lo; k <= hi; k = next_count(k)) {
        const double S = sum_of(lo, k, P, cancel);
        const double next = OrvMV::IsMissing(S) ? S : P(k + 1);
        if (OrvMV::IsMissing(next)) return next;
        if (S <= a && S + next > a) return k;
    }
    return hi + 1;
}

double _PowerIndSamBinBinEnumFisher(double n1, double n2, double p1, double p2, int sides, double alpha,
                                    OrvQueryCancel* cancel) {
    if (!(are_two_samples(n1, n2, p1, p2) && is_between_0_and_1(alpha) && are_countable(n1, n2)))
        return kInvalid;
    const double psi = (p1 / (1 - p1)) / (p2 / (1 - p2));
    const double level = tail_level(sides, alpha);
    const bool rejects_high = sides == 0 || p1 > p2;
    const bool rejects_low = sides == 0 || !(p1 > p2);

    const BinomialGroup group1(n1, p1);
    const BinomialGroup group2(n2, p2);
    const CountFunction& probability1 = group1.probability();
    const CountFunction& probability2 = group2.probability();
    const Coefficients coefficients1(group1.trials());
    const Coefficients coefficients2(group2.trials());
    ConditionalDistribution null(coefficients1, coefficients2, group1, group2, 1, level);
    ConditionalDistribution alternative(coefficients1, coefficients2, group1, group2, psi, level);

    double power = 0;
    const auto add_total = [&](int t) {
        const TotalTerms terms(probability1, probability2, t);
        if (stop_requested(cancel, 1 + terms.count())) return false;
        const double total = terms.sum();
        if (total < kNegligible || total < kNegligibleShare * power) return true;
        null.condition_on(t);
        alternative.condition_on(t);
        if (stop_requested(cancel, null.terms() + alternative.terms())) return false;
        double rejected = 0;
        if (rejects_high)
            rejected += alternative.probability(upper_critical_value(null, level), alternative.hi());
        if (rejects_low)
            rejected += alternative.probability(alternative.lo(), lower_critical_value(null, level));
        power += total * rejected;
        return true;
    };
    // The probable totals first, so that those that cannot change the power any more need no distribution.
    const int typical = to_int(n1 * p1 + n2 * p2);
    for (int t = typical; t <= probability1.last() + probability2.last(); ++t)
        if (!add_total(t)) return OrvMV::Missing();
    for (int t = typical - 1; t >= probability1.first() + probability2.first(); --t)
        if (!add_total(t)) return OrvMV::Missing();
    return power;
}

}  // namespace POWER_NAMESPACE
