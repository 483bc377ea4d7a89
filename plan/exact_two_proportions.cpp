#include "plan/exact_two_proportions.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orvcommon/dist_fun.h"
#include "plan/binomial_counts.h"
#include "plan/largest.h"

namespace statplan {

using OrvMath_940::OrvDistFun;

namespace {

constexpr double kMost = 2e7;  // observations: counts are ints, and Fisher's boundary takes a step for each

/// Does a table reject in favour of p1 > p2?
class Decision {
  public:
    Decision(const TwoProportions& test, double n1, double n2)
        : test_(test), n1_(n1), n2_(n2), correction_(test.continuity ? (1 / n1 + 1 / n2) / 2 : 0) {
        const double tail = test.tails == Tails::both ? test.alpha / 2 : test.alpha;
        critical_ = test.statistic == TwoProportions::t ? -OrvDistFun::IdfT(tail, n1 + n2 - 2, 1e-20, 1e-12)
                                                        : -OrvDistFun::IdfStdNorm(tail);
        if (test.statistic != TwoProportions::likelihood_ratio) return;
        for (double x = 0; x <= n1 + n2; ++x) x_log_x_.push_back(x > 0 ? x * std::log(x) : 0);
        all_ = x_log_x(n1 + n2) - x_log_x(n1) - x_log_x(n2);
    }

    bool operator()(double x1, double x2) const {
        const double N = n1_ + n2_, successes = x1 + x2;
        const double d = x1 / n1_ - x2 / n2_ - correction_;
        const double v1 = x1 * (n1_ - x1) / n1_, v2 = x2 * (n2_ - x2) / n2_;  // sums of squares
        switch (test_.statistic) {
            case TwoProportions::likelihood_ratio: {
                const double G2 = 2 * (x_log_x(x1) + x_log_x(n1_ - x1) + x_log_x(x2) + x_log_x(n2_ - x2) -
                                       x_log_x(successes) - x_log_x(N - successes) + all_);
                return std::copysign(std::sqrt(std::max(G2, 0.0)), d) > critical_;
            }
            case TwoProportions::t:
                return d * std::sqrt(n1_ * n2_ / N * (N - 2)) > critical_ * std::sqrt(v1 + v2);
            default:
                return d > critical_ * std::sqrt(test_.pooled ? successes * (N - successes) / (N * n1_ * n2_)
                                                              : v1 / (n1_ * n1_) + v2 / (n2_ * n2_));
        }
    }

  private:
    double x_log_x(double x) const { return x_log_x_[static_cast<std::size_t>(x)]; }

    const TwoProportions& test_;
    double n1_, n2_, correction_, critical_, all_ = 0;
    std::vector<double> x_log_x_;
};

/// The first x from 0 to n at which `holds` fails, n + 1 if it fails at none; sought from a guess outwards.
template <typename Holds>
int first_failure(int n, int guess, Holds holds) {
    int low = 0, high = n + 1, probe = std::min(guess, n);
    bool held = false, failed = false;
    // In long: the steps of a bisection that follows, and sums with them, leave the range of int.
    for (long step = 1; low < high; step = std::min(2 * step, long{n} + 1)) {
        if (holds(probe))
            low = probe + 1, held = true;
        else
            high = probe, failed = true;
        const long next = held && failed ? low + (long{high} - low) / 2 : held ? low + step - 1 : high - step;
        probe = static_cast<int>(std::clamp<long>(next, low, std::max(high - 1, low)));
    }
    return low;
}

/// How many x2, from 0, reject beside each x1 of a stretch in favour of p1 > p2. Zeros from where it was cancelled.
class Boundary {
  public:
    Boundary(const TwoProportions& test, double n1, double n2, int first, int last, Cancel* cancel)
        : first_(first), cancel_(cancel) {
        const int length = last - first + 1;
        rejected_.reserve(static_cast<std::size_t>(length));
        if (test.statistic == TwoProportions::fisher)
            walk(test, n1, n2, last);
        else
            search({test, n1, n2}, static_cast<int>(n2), last);
        rejected_.resize(static_cast<std::size_t>(length));
    }
    int operator[](int x1) const { return rejected_[static_cast<std::size_t>(x1 - first_)]; }

  private:
    void search(const Decision& rejects, int n2, int last) {
        int guess = 0;
        for (int x1 = first_; x1 <= last && !is_cancelled(x1); ++x1)
            rejected_.push_back(guess = first_failure(n2, guess, [&](int x2) { return rejects(x1, x2); }));
    }

    /// Fisher's test, along its boundary: the probability `tail` of at least x1 successes in the first group given
    /// x1 + x2 changes by its own term with each step, and that by a ratio.
    void walk(const TwoProportions& test, double n1, double n2, int last) {
        constexpr double kRounding = 1e-11;  // of a tail that equals alpha
        const double N = n1 + n2;
        const double level = (test.tails == Tails::both ? test.alpha / 2 : test.alpha) * (1 + kRounding);
        double x2 = 0, term = 1, tail = 1;
        for (int x1 = 0; x1 <= last && !is_cancelled(x1); ++x1) {
            while (x2 < n2 && tail <= level) {
                const double left = N - x1 - x2;
                tail += term * x1 * (n2 - x2) / ((x2 + 1) * left);
                term *= (n2 - x2) / (x2 + 1) * (x1 + x2 + 1) / left;
                ++x2;
            }
            const bool all = x2 == n2 && tail <= level;
            if (x1 >= first_) rejected_.push_back(static_cast<int>(x2) + all);
            if (all || x1 == n1) continue;
            const double left = N - x1 - x2;
            const double next = term * (n1 - x1) / (x1 + 1) * (x1 + x2 + 1) / left;
            tail = x2 == 0 ? next : tail - term * (n2 - x2) / left;
            term = next;
        }
    }

    bool is_cancelled(int x1) const { return x1 % 65536 == 0 && cancel_ && cancel_->IsCancelRequested(); }

    int first_;
    Cancel* cancel_;
    std::vector<int> rejected_;
};

/// The tables that reject, for the x1 of a stretch.
class Rejection {
  public:
    Rejection(const TwoProportions& test, double n1, double n2, int first, int last, Cancel* cancel = nullptr)
        : tails_(test.tails),
          n1_(static_cast<int>(n1)),
          n2_(static_cast<int>(n2)),
          few_(test, n1, n2, first, tails_ == Tails::small ? first - 1 : last, cancel),
          many_(test, n1, n2, n1_ - last, tails_ == Tails::large ? n1_ - last - 1 : n1_ - first, cancel) {}

    /// The probability of those beside x1.
    double beside(int x1, const BinomialTails& second) const {
        return (tails_ == Tails::small ? 0 : second.below(few_[x1])) +
               (tails_ == Tails::large ? 0 : second.from(n2_ + 1 - many_[n1_ - x1]));
    }

  private:
    Tails tails_;
    int n1_, n2_;
    Boundary few_, many_;
};

}  // namespace

double TwoProportions::power(double n1, double n2, double p1, double p2) const {
    if (!(n1 + n2 <= kMost)) return kNotGiven;
    const BinomialCounts first(n1, p1);
    const BinomialTails second{BinomialCounts(n2, p2)};
    const Rejection rejection(*this, n1, n2, first.first(), first.last());
    return first.mean([&](int x1) { return rejection.beside(x1, second); });
}

double TwoProportions::level(double n1, double n2, Cancel* cancel) const {
    if (!(n1 + n2 <= kMost)) return kNotGiven;
    const Rejection rejection(*this, n1, n2, 0, static_cast<int>(n1), cancel);
    return largest_over_probabilities(n1 + n2, cancel, [&](double p) {
        const BinomialTails second{BinomialCounts(n2, p)};
        return BinomialCounts(n1, p).mean([&](int x1) { return rejection.beside(x1, second); });
    });
}

SawTooth TwoProportions::powers(double p1, double p2) const {
    const auto power_of = [*this, p1, p2](const GroupSizes& n) { return power(n[0], n[1], p1, p2); };
    // The power when the boundary of rejection moves by so many successes of the smaller group.
    const auto shifted = [=](const GroupSizes& n, double successes) {
        const double error = std::sqrt(p1 * (1 - p1) / n[0] + p2 * (1 - p2) / n[1]);
        return OrvDistFun::CdfStdNorm(OrvDistFun::IdfStdNorm(std::clamp(power_of(n), 0.0, 1.0)) +
                                      successes / (error * std::min(n[0], n[1])));
    };
    return {.power = power_of,
            .least = [=](const GroupSizes& n) { return shifted(n, -2); },
            .most = [=](const GroupSizes& n,
                        const GroupSizes& from) { return std::max(shifted(n, 2), power_of(from)); }};
}

}  // namespace statplan
