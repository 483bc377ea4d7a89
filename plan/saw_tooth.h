// Sizes for exact powers, which jump up and down as sizes grow.
#pragma once

#include <functional>
#include <vector>

#include "statplan/catalogue.h"

namespace statplan {

/// Ever larger allocations: the one of a real size, and the next after one.
struct Chain {
    std::function<GroupSizes(double)> at;
    std::function<GroupSizes(const GroupSizes&)> above;
};

/// The least allocation that reaches a power, and the least from which every larger one does, too. Empty where
/// there is none up to the largest size.
struct FoundSizes {
    GroupSizes smallest, guaranteed;
    bool cancelled = false;
};

/// Searches the chain: by bisection the stretch outside of which the bounds tell whether the target is reached,
/// then every allocation of it.
/// @param target   power to reach
/// @param largest  real size at which the search ends
FoundSizes find_sizes(const SawTooth& powers, const Chain& chain, double target, double largest,
                      Cancel* cancel);

/// The least allocation that reaches a power alone, where no larger one need to reach it, as when the other group
/// does not grow: none where the target is not reached at any power of 2 up to the largest size.
FoundSizes find_smallest(const SawTooth& powers, const Chain& chain, double target, double largest,
                         Cancel* cancel);

}  // namespace statplan
