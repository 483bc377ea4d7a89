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

/// Where the bounds begin to leave it possible that the target is reached. The tighter they are the larger the
/// size that they hold from: first from the least size, then from there.
template <typename Stopped>
Begin possible(const SawTooth& powers, const Chain& chain, double target, double largest, Stopped stopped) {
    Begin begin{0, 0, true};
    for (int pass = 0; pass < 2 && begin.comes; ++pass) {
        const GroupSizes from = chain.at(begin.before);
        begin = begin_of(begin.before, largest, [&](double size) {
            return stopped() || powers.most(chain.at(size), from) >= target;
        });
    }
    return begin;
}

}  // namespace

FoundSizes find_sizes(const SawTooth& powers, const Chain& chain, double target, double largest,
                      Cancel* cancel) {
    FoundSizes found;
    const auto stopped = [&] {
        if (cancel && cancel->IsCancelRequested()) found.cancelled = true;
        return found.cancelled;
    };
    const Begin may_reach = possible(powers, chain, target, largest, stopped);
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

FoundSizes find_smallest(const SawTooth& powers, const Chain& chain, double target, double largest,
                         Cancel* cancel) {
    FoundSizes found;
    const auto stopped = [&] {
        if (cancel && cancel->IsCancelRequested()) found.cancelled = true;
        return found.cancelled;
    };
    // In doubling steps first: one group alone may not be able to reach the target, however large it is.
    double reached = 1;
    while (!stopped() && !(powers.power(chain.at(reached)) >= target)) {
        if (reached >= largest) return found;
        reached = std::min(2 * reached, largest);
    }
    const Begin may_reach = possible(powers, chain, target, reached, stopped);
    for (GroupSizes sizes = chain.at(may_reach.before); !stopped(); sizes = chain.above(sizes))
        if (powers.power(sizes) >= target) {
            found.smallest = sizes;
            break;
        }
    return found;
}

}  // namespace statplan
