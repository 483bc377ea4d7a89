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

/// Powers of an odds ratio, those of small counts from a table that grows as far as it is looked at.
class OddsPowers {
  public:
    OddsPowers(double odds, int highest) : odds_(odds), size_(std::min(highest + 1, kTable)) {}
    double odds() const { return odds_; }
    double operator()(int u) const {
        if (u < 0 || u >= size_) return std::pow(odds_, u);
        fill(u);
        return powers_[static_cast<std::size_t>(u)];
    }
    double of_fraction(double u) const { return u == 0 ? 1 : std::pow(odds_, u); }

    /// The powers of first..last side by side; none where the table does not reach that far.
    std::span<const double> values(int first, int last) const {
        if (first < 0 || first > last || last >= size_) return {};
        fill(last);
        return std::span(powers_).subspan(static_cast<std::size_t>(first),
                                          static_cast<std::size_t>(last - first) + 1);
    }

  private:
    static constexpr int kTable = 4096;

    void fill(int last) const {
        if (odds_ == 1 && static_cast<std::size_t>(last) >= powers_.size())
            powers_.resize(static_cast<std::size_t>(size_), 1);
        for (auto u = static_cast<int>(powers_.size()); u <= last; ++u) powers_.push_back(std::pow(odds_, u));
    }

    double odds_;
    int size_;
    mutable std::vector<double> powers_;
};

/// Tables of whole counts with a given total: C(trials1, x1) C(trials2, total - x1) are their weights at odds
/// ratio 1.
struct WholeTables {
    int trials1;
    int trials2;
    int total;

    int first() const { return std::max(0, total - trials2); }
    int last() const { return std::min(total, trials1); }

    /// The weights of x + 1 and x are as numerator to denominator; their quotient falls as x rises.
    struct Ratio {
        double numerator;
        double denominator;
    };
    Ratio ratio(int x1, double odds) const {
        const double x = x1;
        return {(trials1 - x) * (total - x) * odds, (x + 1) * (trials2 - total + x + 1)};
    }

    int mode(double odds) const {
        int low = first();
        for (int high = last(); low < high;) {
            const int middle = low + (high - low) / 2;
            const Ratio next = ratio(middle, odds);
            if (next.numerator < next.denominator)
                high = middle;
            else
                low = middle + 1;
        }
        return low;
    }
};

/// The coefficients of both groups at the counts of every grid: whole ones, those upwards from t - n2, at
/// -fraction2 beside a whole number, and those downwards from n1, at fraction1 beside one.
struct DesignCoefficients {
    DesignCoefficients(double n1, double n2)
        : group1(n1),
          group2(n2 == n1 ? group1 : Coefficients(n2)),
          fraction1(n1 - group1.trials()),
          fraction2(n2 - group2.trials()),
          whole1(group1, 0),
          whole2(group2, 0),
          upwards1(group1, -fraction2),
          upwards2(group2, fraction2),
          downwards1(group1, fraction1),
          downwards2(group2, -fraction1) {}

    Coefficients group1, group2;
    double fraction1, fraction2;
    CoefficientTable whole1, whole2, upwards1, upwards2, downwards1, downwards2;
};

/// The weights of the counts on one grid, by the whole number that the count is next to.
struct Weights {
    CountFunction weight;
    int first = 0;
    int last = 0;

    std::int64_t terms() const { return std::int64_t{last} - first + 1; }
    double operator[](int k) const { return weight[k]; }
    std::span<const double> values() const { return values(first, last); }
    std::span<const double> values(int from, int to) const {
        from = std::max(from, first);
        to = std::min(to, last);
        return from > to ? std::span<const double>() : weight.values(from, to);
    }
    double sum(int from, int to) const {
        const auto terms = values(from, to);
        return std::accumulate(terms.begin(), terms.end(), 0.0);
    }
    double sum() const { return sum(first, last); }
};

/// The conditional distribution of x1 given x1 + x2 = t, up to a factor.
///
/// The possible counts are taken in steps of one upwards from lo = max(0, t - n2) and downwards from
/// hi = min(t, n1). For whole sizes these are the same counts; a fractional size shifts those that start from
/// it. Probabilities are fractions of the sum over the counts upwards.
///
/// The weights are those of _CondDisProb, so that the quotient by their sum is the same double, as long as
/// none of them leaves the range of a double. Where one does, they are scaled to 1 at the mode of the whole
/// counts and computed from there by the ratio of neighbours, until they are negligible beside `level`.
class ConditionalDistribution {
  public:
    /// @param downwards_too  whether the counts downwards from hi are needed
    ConditionalDistribution(const DesignCoefficients& coefficients, double odds, double level,
                            bool downwards_too)
        : coefficients_(coefficients),
          trials1_(coefficients.group1.trials()),
          trials2_(coefficients.group2.trials()),
          odds_power_(odds, trials1_ + 2),
          negligible_(kNegligibleShare * level),
          downwards_too_(downwards_too) {}

    /// Both distributions given the total t. Their sums, each one addition after the other, run side by side.
    static void condition_on(int t, ConditionalDistribution& first, ConditionalDistribution& second) {
        first.prepare(t);
        second.prepare(t);
        const bool first_is_plain = first.weigh_plainly(), second_is_plain = second.weigh_plainly();
        const auto terms1 = first_is_plain ? first.upwards_.values() : std::span<const double>();
        const auto terms2 = second_is_plain ? second.upwards_.values() : std::span<const double>();
        const std::size_t both = std::min(terms1.size(), terms2.size());
        double total1 = 0;
        double total2 = 0;
        for (std::size_t i = 0; i < both; ++i) {
            total1 += terms1[i];
            total2 += terms2[i];
        }
        first.finish(first_is_plain, std::accumulate(terms1.subspan(both).begin(), terms1.end(), total1));
        second.finish(second_is_plain, std::accumulate(terms2.subspan(both).begin(), terms2.end(), total2));
    }

    /// The counts whose weights are not negligible: all possible ones, as long as nothing is scaled.
    const Weights& upwards() const { return upwards_; }
    const Weights& downwards() const { return one_grid_ ? upwards_ : downwards_; }
    std::int64_t terms() const { return upwards_.terms() + (one_grid_ ? 0 : downwards_.terms()); }
    double total() const { return total_; }

  private:
    void prepare(int t) {
        t_ = t;
        lo_ = std::max(0.0, t - coefficients_.group2.n());
        hi_ = std::min<double>(t, coefficients_.group1.n());
        lo_is_whole_ = t <= trials2_ || coefficients_.fraction2 == 0;
        hi_is_whole_ = t <= trials1_ || coefficients_.fraction1 == 0;
        one_grid_ = !downwards_too_ || (lo_is_whole_ && hi_is_whole_);
    }

    /// Takes the sum of the plain weights, or scaled ones where it is beyond the range of a double.
    void finish(bool is_plain, double total) {
        total_ = total;
        if (!(is_plain && std::isfinite(total) && (one_grid_ || std::isfinite(downwards_.sum()))))
            weigh_from_mode();
    }

    WholeTables whole_tables() const { return {trials1_, trials2_, t_}; }

    /// False where a weight is beyond the range of a double, or a power of the odds below it.
    bool weigh_plainly() {
        const int mode = whole_tables().mode(odds_power_.odds());
        if (!std::isfinite(coefficients_.whole1(mode) * coefficients_.whole2(t_ - mode) * odds_power_(mode)))
            return false;
        if (!(std::isnormal(odds_power_(to_int(lo_))) && std::isnormal(odds_power_(to_int(std::ceil(hi_))))))
            return false;
        upwards_ = weigh_upwards();
        if (!one_grid_) downwards_ = weigh_downwards();
        return true;
    }

    Weights weigh_upwards() const {
        if (lo_is_whole_)
            return weigh(to_int(lo_), to_int(hi_), 0, coefficients_.whole1, coefficients_.whole2);
        const double fraction = -coefficients_.fraction2;
        const int first = to_int(std::ceil(lo_));
        int last = to_int(std::ceil(hi_));
        if (last + fraction > hi_) --last;
        // Adding 1 again and again rounds where the counts outgrow the precision of their fraction, and a
        // rounded count may have another coefficient.
        if ((last + fraction) - last == fraction)
            return weigh(first, last, fraction, coefficients_.upwards1, coefficients_.upwards2);
        std::vector<double> counts{lo_ - 1};
        double u = lo_;
        for (; u <= hi_; ++u) counts.push_back(u);
        counts.push_back(u);
        return weigh(first, fraction, counts);
    }

    Weights weigh_downwards() const {
        if (hi_is_whole_)
            return weigh(to_int(std::ceil(lo_)), to_int(hi_), 0, coefficients_.whole1, coefficients_.whole2);
        const double fraction = coefficients_.fraction1;
        const int last = to_int(hi_);
        int first = to_int(lo_);
        if (first + fraction < lo_) ++first;
        const int farthest = t_ - first + 1;
        if (farthest - (farthest - fraction) == fraction)
            return weigh(first, last, fraction, coefficients_.downwards1, coefficients_.downwards2);
        std::vector<double> counts;
        for (int k = last + 1; k >= first - 1; --k) counts.insert(counts.begin(), hi_ - (last - k));
        return weigh(first, fraction, counts);
    }

    // One more on each side: the search for a critical value looks there too.

    /// The weights of the counts k + fraction for k = first..last.
    Weights weigh(int first, int last, double fraction, const CoefficientTable& coefficient1,
                  const CoefficientTable& coefficient2) const {
        const double shift = odds_power_.of_fraction(fraction);
        std::vector<double> weights(static_cast<std::size_t>(last - first) + 3);
        int from = first - 1;
        int to = last + 1;
        while (from <= to && !(from + fraction >= 0)) ++from;
        while (to >= from && !(to + fraction <= t_)) --to;
        double* weight = weights.data() + (from - (first - 1));
        const auto factors1 = coefficient1.values(from, to);
        const auto factors2 = coefficient2.values(t_ - to, t_ - from);
        const auto powers = odds_power_.values(from, to);
        if (factors1.empty() || factors2.empty() || powers.empty()) {
            for (int k = from; k <= to; ++k)
                *weight++ = coefficient1(k) * coefficient2(t_ - k) * odds_power_(k) * shift;
        } else {  // the same with nothing to look up, which the compiler makes vectors of
            const std::size_t count = factors1.size();
            const double* opposite = factors2.data() + (count - 1);
            for (std::size_t i = 0; i < count; ++i)
                weight[i] = factors1[i] * *(opposite - i) * powers[i] * shift;
        }
        return {CountFunction(first - 1, std::move(weights)), first, last};
    }

    /// The weights of counts as they are, one more on each side included.
    Weights weigh(int first, double fraction, const std::vector<double>& counts) const {
        const double shift = odds_power_.of_fraction(fraction);
        std::vector<double> weights;
        int k = first - 1;
        for (double u : counts) {
            const bool possible = u >= 0 && u <= t_;
            weights.push_back(possible ? coefficients_.group1(u) * coefficients_.group2(t_ - u) *
                                             odds_power_(k) * shift
                                       : 0);
            ++k;
        }
        return {CountFunction(first - 1, std::move(weights)), first, k - 2};
    }

    // The coefficients use the integer parts of fractional counts, so that the weights are those of tables of
    // whole counts, up to a factor: with e = 0 where the fractions of the sizes make a whole trial, else 1,
    //
    //     k - fraction2, upwards:    C(trials1 - e, k - 1) C(trials2, t - k)  trials1^e
    //     k + fraction1, downwards:  C(trials1, k) C(trials2 - e, t - 1 - k)  trials2^e
    //
    // or, divided by the weight C(trials1, k) C(trials2, t - k) of the whole count k,
    //
    //     upwards:    k / (trials1 - k + 1)^(1 - e)
    //     downwards:  (t - k) / (trials2 - t + k + 1)^(1 - e)

    void weigh_from_mode() {
        const bool spare = coefficients_.fraction1 + coefficients_.fraction2 >= 1;
        const int e = spare ? 0 : 1;
        const int k = whole_tables().mode(odds_power_.odds());
        upwards_ = lo_is_whole_ ? weigh_from(k, 1, whole_tables(), 0)
                                : weigh_from(k,
                                             k / (spare ? trials1_ - k + 1.0 : 1.0) *
                                                 odds_power_.of_fraction(-coefficients_.fraction2),
                                             {trials1_ - e, trials2_, t_ - 1}, 1);
        total_ = upwards_.sum();
        if (one_grid_) return;
        downwards_ = hi_is_whole_ ? weigh_from(k, 1, whole_tables(), 0)
                                  : weigh_from(k,
                                               (t_ - k) / (spare ? trials2_ - t_ + k + 1.0 : 1.0) *
                                                   odds_power_.of_fraction(coefficients_.fraction1),
                                               {trials1_, trials2_ - e, t_ - 1}, 0);
    }

    /// The weights of `tables`, whose counts are less by `shift`, from that of count k outwards.
    Weights weigh_from(int k, double at_k, const WholeTables& tables, int shift) const {
        const double odds = odds_power_.odds();
        CountFunction weight = around_mode(
            k, at_k, tables.first() + shift, tables.last() + shift, negligible_ * at_k,
            [tables, shift, odds](int u, double w) {
                const auto ratio = tables.ratio(u - shift - 1, odds);
                return w * (ratio.denominator / ratio.numerator);
            },
            [tables, shift, odds](int u, double w) {
                const auto ratio = tables.ratio(u - shift, odds);
                return w * (ratio.numerator / ratio.denominator);
            });
        const int first = weight.first();
        const int last = weight.last();
        return {std::move(weight), first, last};
    }

    const DesignCoefficients& coefficients_;
    int trials1_;
    int trials2_;
    OddsPowers odds_power_;
    double negligible_;
    bool downwards_too_;
    int t_ = 0;
    double lo_ = 0;
    double hi_ = 0;
    bool lo_is_whole_ = true;
    bool hi_is_whole_ = true;
    bool one_grid_ = true;
    Weights upwards_;
    Weights downwards_;
    double total_ = 0;
};

/// _quantileDescending without its repeated sums: the tail is accumulated downwards, and only where it comes
/// close to the level, or passes it, summed as the definition says and compared. The two sums differ by
/// rounding alone, at most 515 terms of a relative 2^-53 each where the weights are not scaled. Beyond all
/// counts where no tail qualifies.
int upper_critical_value(const ConditionalDistribution& null, double a) {
    constexpr double kClose = 1e-12;
    const Weights& weights = null.downwards();
    const double level = a * null.total();
    double tail = 0;
    double next = weights[weights.last];
    for (int k = weights.last; k >= weights.first; --k) {
        tail += next;
        next = weights[k - 1];
        if (tail + next < (1 - kClose) * level) continue;
        if (tail > (1 + kClose) * level) break;
        double S = 0;
        for (double w : weights.values(k, weights.last)) S += w / null.total();
        if (S <= a && S + next / null.total() > a) return k;
    }
    return std::numeric_limits<int>::max();
}

/// _quantileAscending: its sums, each one term longer than the last, are running sums.
int lower_critical_value(const ConditionalDistribution& null, double a) {
    const Weights& weights = null.upwards();
    double S = 0;
    double next = weights[weights.first] / null.total();
    for (int k = weights.first; k <= weights.last; ++k) {
        S += next;
        if (S > a) break;
        next = weights[k + 1] / null.total();
        if (S + next > a) return k;
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

statpower::Coefficients::Coefficients(double n) : n_(n), trials_(to_int(n)) {
    constexpr int kLargestFinite = 519;  // 2k over k exceeds a double for any larger k
    const int highest = std::min(trials_ / 2, kLargestFinite);
    // The sums of logarithms of Combination for all k at once, each in its own order.
    std::vector<double> log_product(static_cast<std::size_t>(highest) + 2);
    for (int first_k = highest + 1; first_k >= 1; --first_k) {
        const double log_factor = std::log(static_cast<double>(trials_) - first_k + 1);
        for (int k = first_k; k <= highest + 1; ++k) log_product[static_cast<std::size_t>(k)] += log_factor;
    }
    double log_factorial = 0;
    for (int k = 0; k <= highest; ++k) {
        if (k > 0) log_factorial += std::log(static_cast<double>(k));
        const auto product = log_product.begin() + k;
        whole_.push_back(std::exp(std::abs(log_factorial - product[0])));
        one_factor_more_.push_back(std::exp(std::abs(log_factorial - product[1])));
    }
}

double statpower::Coefficients::operator()(double k) const {
    const double m = std::min(n_ - k, k);
    if (m < 0) return 1;
    const auto factors_below = static_cast<int>(m);
    if (static_cast<std::size_t>(factors_below) >= whole_.size()) return kInfinity;
    const int factors_above = trials_ - static_cast<int>(n_ - m + 1) + 1;
    const auto i = static_cast<std::size_t>(factors_below);
    if (factors_above == factors_below) return whole_[i];
    if (factors_above == factors_below + 1 && m > factors_below) return one_factor_more_[i];
    return Combination(n_, k);
}

statpower::CoefficientTable::CoefficientTable(const Coefficients& coefficients, double fraction)
    : trials_(coefficients.trials()) {
    constexpr int kLargestList = 2048;
    if (trials_ <= kLargestList) {
        for (int k = -1; k <= trials_ + 2; ++k)
            list_.push_back(k < 0 || k > trials_ + 1 ? 1 : coefficients(k + fraction));
        return;
    }
    for (int k = 0; k <= trials_ / 2; ++k) {
        low_.push_back(coefficients(k + fraction));
        if (low_.back() == kInfinity) break;
    }
    for (int k = trials_ + 1; k > trials_ / 2; --k) {
        high_.push_back(coefficients(k + fraction));
        if (high_.back() == kInfinity) break;
    }
}

double statpower::CoefficientTable::operator()(int k) const {
    if (k < 0 || k > trials_ + 1) return 1;
    if (!list_.empty()) return list_[static_cast<std::size_t>(k) + 1];
    const bool is_low = k <= trials_ / 2;
    const auto i = static_cast<std::size_t>(is_low ? k : trials_ + 1 - k);
    const std::vector<double>& side = is_low ? low_ : high_;
    return i < side.size() ? side[i] : kInfinity;
}

std::span<const double> statpower::CoefficientTable::values(int first, int last) const {
    if (list_.empty() || first < -1 || last > trials_ + 2 || first > last) return {};
    return std::span(list_).subspan(static_cast<std::size_t>(first) + 1,
                                    static_cast<std::size_t>(last - first) + 1);
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
    const bool rejects_high = sides == STATPOWER_TWO_SIDED || p1 > p2;
    const bool rejects_low = sides == STATPOWER_TWO_SIDED || !(p1 > p2);

    Questions questions(cancel);
    if (questions.stop_ahead()) return OrvMV::Missing();
    const BinomialGroup group1(n1, p1);
    if (questions.stop_ahead()) return OrvMV::Missing();
    const BinomialGroup group2(n2, p2);
    const CountFunction& probability1 = group1.probability();
    const CountFunction& probability2 = group2.probability();
    const DesignCoefficients coefficients(n1, n2);
    ConditionalDistribution null(coefficients, 1, level, rejects_high);
    ConditionalDistribution alternative(coefficients, psi, level, rejects_high);
    // Between shifted grids a sum of probabilities may be as large as the odds of the fractions.
    const bool whole = n1 == std::trunc(n1) && n2 == std::trunc(n2);
    const double largest_sum = whole ? 1 : std::max(1.0, psi * psi);

    // Outwards the probabilities of the totals fall, unless some could not be computed.
    const bool may_end_early = !questions.any() && probability1.is_known() && probability2.is_known();

    double power = 0;
    bool more = true;
    const auto add_total = [&](int t) {
        const TotalTerms terms(probability1, probability2, t);
        // As often as one by one (FisherExact.AsksForEveryTotalAndEveryTermThatItComputes), here and below.
        if (questions.stop(1 + terms.count())) return false;
        const double total = terms.sum();
        if (total < kNegligible || total * largest_sum < kNegligibleShare * power) {
            more = !may_end_early;
            return true;
        }
        ConditionalDistribution::condition_on(t, null, alternative);
        if (questions.stop(null.terms() + alternative.terms())) return false;
        double rejected = 0;
        if (rejects_high) {
            const Weights& weights = alternative.downwards();
            rejected += weights.sum(upper_critical_value(null, level), weights.last) / alternative.total();
        }
        if (rejects_low) {
            const Weights& weights = alternative.upwards();
            rejected += weights.sum(weights.first, lower_critical_value(null, level)) / alternative.total();
        }
        power += total * rejected;
        return true;
    };
    // The probable totals first, so that those that cannot change the power any more need no distribution.
    const int typical = to_int(n1 * p1 + n2 * p2);
    for (int t = typical; more && t <= probability1.last() + probability2.last(); ++t)
        if (!add_total(t)) return OrvMV::Missing();
    more = true;
    for (int t = typical - 1; more && t >= probability1.first() + probability2.first(); --t)
        if (!add_total(t)) return OrvMV::Missing();
    return power;
}

}  // namespace POWER_NAMESPACE
