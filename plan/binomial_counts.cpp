#include "plan/binomial_counts.h"

#include <algorithm>
#include <cmath>

#include "orvcommon/dist_fun.h"

namespace statplan {

BinomialCounts::BinomialCounts(double n, double p) {
    constexpr double kNegligible = 1e-18;
    const int mode = static_cast<int>(std::min(std::floor((n + 1) * p), n));
    const double odds = p / (1 - p);
    long status = 0;
    const double at_mode = OrvMath_940::OrvDistFun::PdfBin(mode, n, p, status);
    probabilities_.push_back(at_mode);
    double probability = at_mode;
    for (int x = mode; x > 0; --x) {
        probability *= x / ((n - x + 1) * odds);
        if (probability < kNegligible) break;
        probabilities_.push_back(probability);
    }
    std::ranges::reverse(probabilities_);
    first_ = mode - static_cast<int>(probabilities_.size()) + 1;
    probability = at_mode;
    for (int x = mode; x < n; ++x) {
        probability *= (n - x) / (x + 1) * odds;
        if (probability < kNegligible) break;
        probabilities_.push_back(probability);
    }
}

BinomialTails::BinomialTails(const BinomialCounts& counts) : first_(counts.first()) {
    const int values = counts.last() - counts.first() + 1;
    below_.resize(static_cast<std::size_t>(values) + 1);
    from_ = below_;
    for (int i = 0; i < values; ++i)
        below_[static_cast<std::size_t>(i) + 1] = below_[static_cast<std::size_t>(i)] + counts[first_ + i];
    for (int i = values; i-- > 0;)
        from_[static_cast<std::size_t>(i)] = from_[static_cast<std::size_t>(i) + 1] + counts[first_ + i];
}

std::size_t BinomialTails::place(int x) const {
    return static_cast<std::size_t>(std::clamp(x - first_, 0, static_cast<int>(below_.size()) - 1));
}

}  // namespace statplan
