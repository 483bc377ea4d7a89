// The sample-size searches of a one-way design: where they look for the total, and the group sizes that a
// total gives.
#pragma once

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "core/groups.h"
#include "core/search.h"
#include "core/sums.h"
#include "statpower/core.h"

namespace statpower {

/// How closely a total is searched that reaches a power; one that reaches a half-width, kSizeTolerance.
inline constexpr double kPowerTolerance = 1e-6;

/// Total sample size of a design with k groups: searched from two observations in each group upwards.
template <class Design>
double search_total(const Design& design, POWER_NAMESPACE::Objective objective, double tolerance) {
    const double smallest = 2.0 * design.k;
    return search_size(design, objective, nullptr, smallest, smallest + kFirstReach, tolerance);
}

/// The same for a power that grows with the total.
template <class Design>
double search_total(const Design& design, POWER_NAMESPACE::Objective objective, const SteadyStart& start) {
    const double smallest = 2.0 * design.k;
    return search_size(design, objective, start, smallest, smallest + kFirstReach, kPowerTolerance);
}

/// Allocation weights as proportions of their sum.
inline std::vector<double> proportions(std::span<const double> weights) {
    const double total = sum(weights);
    std::vector<double> result(weights.begin(), weights.end());
    for (double& p : result) p /= total;
    return result;
}

/// Gives group i the ceiling of share(i), but at least 2, and returns the sum. A share that is NaN or
/// negative (the missing total of a failed search) counts as "at least 2".
template <class Share>
double allocate(std::vector<double>& groupSizes, Share share) {
    for (std::size_t i = 0; i < groupSizes.size(); ++i) groupSizes[i] = std::max(2.0, std::ceil(share(i)));
    return sum(groupSizes);
}

}  // namespace statpower
