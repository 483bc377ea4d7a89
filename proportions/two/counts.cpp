#include "proportions/two/counts.h"

#include <cmath>

#include "core/integers.h"
#include "orvcommon/dist_fun.h"

using OrvMath_940::OrvDistFun;

namespace statpower {

BinomialGroup::BinomialGroup(double n, double p) : trials_(to_int(n)) {
    const auto probability = [=](int x) {
        long status = 0;
        const double value = OrvDistFun::PdfBin(x, n, p, status);
        return status == 0 ? value : std::numeric_limits<double>::quiet_NaN();
    };
    const int mode = std::min(to_int((n + 1) * p), trials_);
    probability_ = around_mode(
        mode, probability(mode), 0, trials_, kNegligible, [&](int x, double) { return probability(x - 1); },
        [&](int x, double) { return probability(x + 1); });
}

Tails::Tails(const BinomialGroup& group) : first_(group.probability().first()) {
    const CountFunction& probability = group.probability();
    const auto counts = static_cast<std::size_t>(probability.last() - first_) + 1;
    below_.resize(counts + 1);
    from_.resize(counts + 1);
    for (std::size_t i = 0; i < counts; ++i)
        below_[i + 1] = below_[i] + probability[first_ + static_cast<int>(i)];
    for (std::size_t i = counts; i > 0; --i)
        from_[i - 1] = from_[i] + probability[first_ + static_cast<int>(i) - 1];
}

}  // namespace statpower
