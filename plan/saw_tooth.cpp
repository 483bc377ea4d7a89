#include "plan/saw_tooth.h"

#include <algorithm>

namespace statplan {

namespace {

/// Real sizes, a quarter apart, between which a property begins that larger sizes have, too.
struct Begin {
    double before, after;
    bool comes;  // up to the largest size
};

template <typename Holds>
Begin begin_of(double low, double largest, Holds holds) {
    double high = low;
    for (double step = 1; high < largest && !holds(high); step *= 2) low = high, high += step;
    high = std::min(high, largest);
    const bool comes = high < largest || holds(largest);
    while (comes && high - low > 0.25) {
        const double middle = low + (high - low) / 2;
        (holds(middle) ? high : low) = middle;
    }
    return {low, high, comes};
}

}  // namespace

FoundSizes find_sizes(const SawTooth& powers, const Chain& chain, double target, double largest,
                      Cancel* cancel) {
    FoundSizes found;
    const auto stopped = [&] {
        if (cancel && cancel->IsCancelRequested()) found.cancelled = true;
        return found.cancelled;
    };
    // The tighter the bound the larger the size that it holds from: first from the least size, then from there.
    Begin may_reach{0, 0, true};
    for (int pass = 0; pass < 2 && may_reach.comes; ++pass) {
        const GroupSizes from = chain.at(may_reach.before);
        may_reach = begin_of(may_reach.before, largest, [&](double size) {
            return stopped() || powers.most(chain.at(size), from) >= target;
        });
    }
    if (!may_reach.comes) return found;
    const Begin always = begin_of(may_reach.before, largest, [&](double size) {
        return stopped() || powers.least(chain.at(size)) >= target;
    });
    const GroupSizes end = chain.at(always.after);
    for (GroupSizes sizes = chain.at(may_reach.before); !stopped(); sizes = chain.above(sizes)) {
        if (!(powers.power(sizes) >= target)) {
            found.guaranteed.clear();
        } else {
            if (found.smallest.empty()) found.smallest = sizes;
            if (found.guaranteed.empty()) found.guaranteed = sizes;
        }
        if (sizes >= end) break;
    }
    if (!always.comes) found.guaranteed.clear();
    return found;
}

}  // namespace statplan
