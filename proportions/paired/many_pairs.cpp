#include "proportions/paired/many_pairs.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "orvcommon/dist_fun.h"

using OrvMath_940::OrvDistFun;

namespace statpower {

namespace {

/// Terms from one computation of the distribution functions to the next.
constexpr double kBlock = 256;
/// The largest number of blocks: with their terms some twenty milliseconds.
constexpr double kMostBlocks = 2048;

/// A binomial count k with its probability and that of 0..k, carried on from m trials to m + 1 and from k to
/// k + 1.
class Cumulative {
  public:
    bool start(double k, double m, double p) {
        long status = 0;
        k_ = k;
        m_ = m;
        p_ = p;
        at_ = OrvDistFun::PdfBin(k, m, p, status);
        up_to_ = OrvDistFun::CdfBin(k, m, p, status);
        return status == 0;
    }

    double k() const { return k_; }
    double up_to() const { return up_to_; }
    double up_to_next() const { return up_to_ + next(); }

    void add_trial() {
        up_to_ -= p_ * at_;
        ++m_;
        at_ *= m_ / (m_ - k_) * (1 - p_);
    }
    void add_count() {
        at_ = next();
        up_to_ += at_;
        ++k_;
    }

  private:
    double next() const { return at_ == 0 ? 0 : at_ * ((m_ - k_) / (k_ + 1)) * (p_ / (1 - p_)); }

    double k_ = 0, m_ = 0, p_ = 0;
    double at_ = 0, up_to_ = 0;
};

/// The critical count of a tail, the largest k whose cumulative probability under the null hypothesis does not
/// exceed a level, and the probability under the alternative of at most k + `beyond`.
class CriticalCount {
  public:
    CriticalCount(double level, double pc, int beyond) : level_(level), pc_(pc), beyond_(beyond) {}

    bool start(double m) {
        long status = 0;
        m_ = m;
        const double k = std::trunc(OrvDistFun::IdfBin(level_, m, 0.5, status) + 0.5);
        return status == 0 && null_.start(k, m, 0.5) && alternative_.start(k + beyond_, m, pc_) &&
               null_.up_to() <= level_ && level_ < null_.up_to_next() * (1 + kClose);
    }

    void add_trial() {
        ++m_;
        null_.add_trial();
        alternative_.add_trial();
        if (next_is_within_level()) {
            null_.add_count();
            alternative_.add_count();
        }
    }

    double up_to() const { return alternative_.up_to(); }

  private:
    static constexpr double kClose = 1e-12;

    bool next_is_within_level() const {
        const double next = null_.up_to_next();
        if (std::abs(next - level_) > kClose * level_) return next < level_;
        long status = 0;
        return OrvDistFun::CdfBin(null_.k() + 1, m_, 0.5, status) <= level_;
    }

    double level_, pc_;
    int beyond_;
    double m_ = 0;
    Cumulative null_, alternative_;
};

/// The part of `range` whose weights are above `smallest`, on the way out from `mode`.
DiscordantRange heavier_than(double smallest, double N, double psi, double mode, DiscordantRange range) {
    const auto outermost = [&](double inside, double outside) {
        while (std::abs(outside - inside) > kBlock) {
            const double middle = std::floor((inside + outside) / 2);
            long status = 0;
            (OrvDistFun::PdfBin(middle, N, psi, status) > smallest ? inside : outside) = middle;
        }
        return outside;
    };
    return {outermost(mode, range.first), outermost(mode, range.last)};
}

}  // namespace

DiscordantRange likely_discordant(double N, double psi) {
    constexpr double kDeviations = 40;
    constexpr double kFarFromNormal = 600;
    const double reach = kDeviations * std::sqrt(N * psi * (1 - psi)) + kFarFromNormal;
    return {std::max(1.0, std::floor(N * psi - reach)), std::min(std::floor(N), std::ceil(N * psi + reach))};
}

std::optional<double> power_of_many_pairs(double N, double psi, double pc, RejectedTails tails,
                                          DiscordantRange range) {
    CriticalCount lower(tails.level, pc, 0);
    CriticalCount upper(1 - tails.level, pc, 1);
    const auto start = [&](double m) {
        return (!tails.lower || lower.start(m)) && (!tails.upper || upper.start(m));
    };
    const auto rejection = [&] {
        return (tails.lower ? lower.up_to() : 0) + (tails.upper ? 1 - upper.up_to() : 0);
    };

    // The term of the mode is a part of the sum: what is far below it in weight does not change the sum.
    constexpr double kNegligible = 0x1p-60;
    const double mode = std::floor(N * psi);
    if (!start(mode)) return std::nullopt;
    long status = 0;
    const double at_mode = OrvDistFun::PdfBin(mode, N, psi, status) * rejection();
    if (status != 0) return std::nullopt;
    const double smallest = std::max(at_mode * kNegligible, std::numeric_limits<double>::min());
    const DiscordantRange heavy = heavier_than(smallest, N, psi, mode, range);

    const double blocks = std::min(std::ceil(heavy.count() / kBlock), kMostBlocks);
    const double stride = heavy.count() / blocks;
    const bool has_gaps = stride > kBlock;
    const double odds = psi / (1 - psi);
    double power = 0;
    double visited = 0;
    for (double block = 0; block < blocks; ++block) {
        const double first = heavy.first + std::floor(block * stride);
        const double end = std::min(first + kBlock, heavy.first + std::floor((block + 1) * stride));
        if (!start(first)) return std::nullopt;
        double weight = OrvDistFun::PdfBin(first, N, psi, status);
        if (status != 0) return std::nullopt;
        for (double m = first;;) {
            power += weight * rejection();
            visited += weight;
            if (++m >= end) break;
            weight *= (N - m + 1) / m * odds;
            if (tails.lower) lower.add_trial();
            if (tails.upper) upper.add_trial();
        }
    }
    return has_gaps ? power / visited : power;
}

}  // namespace statpower
