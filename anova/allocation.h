// The sample-size searches of a one-way design: where they look for the total, and the group sizes that a
// total gives.
#pragma once

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "core/sums.h"
#include "statpower/core.h"

namespace statpower {

inline constexpr double kPowerTolerance = 1e-6;
inline constexpr double kHalfWidthTolerance = 1e-9;

/// Total sample size of a design with k groups: searched from two observations in each group upwards.
inline double search_total(const std::vector<double>& design, POWER_NAMESPACE::Objective objective, int k,
                           double tolerance) {
    const double smallest = 2.0 * k;
    return PowerReverse(design, objective, nullptr, smallest, smallest + 400, tolerance);
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
